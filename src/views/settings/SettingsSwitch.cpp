#include "views/settings/SettingsSwitch.h"

#include "views/common/Strokes.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr QSize track(34, 20);
constexpr qreal radius = 10;
constexpr int knobSide = 16;
constexpr int knobGap = 2;
constexpr qreal disabledOpacity = 0.5;

} // namespace

SettingsSwitch::SettingsSwitch(const Theme& look, const QString& name, QWidget* parent)
    : Button(look, Kind::ghost, {}, parent), theme(look)
{
    setCheckable(true);
    setAccessibleName(name);
}

QSize SettingsSwitch::sizeHint() const
{
    return track + QSize(2 * ringRoom, 2 * ringRoom);
}

void SettingsSwitch::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const QRectF box = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    const QColor off = token.fillPressed;
    const QColor on = mixed(token.accentFill, token.accentFillHover, hoverProgress());
    fillRounded(painter, box, radius, isChecked() ? on : off);
    const qreal x = isChecked() ? box.right() - knobGap - knobSide : box.x() + knobGap;
    const QRectF knob(x, box.y() + knobGap, knobSide, knobSide);
    fillRounded(painter, knob, knobSide / 2.0, Qt::white);
    if (!isChecked())
        strokeRounded(painter, knob, knobSide / 2.0, token.strokeStrong);
    if (isRingShown())
        paintRing(painter, box, radius);
}

} // namespace vellumry
