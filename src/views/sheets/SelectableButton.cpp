#include "views/sheets/SelectableButton.h"

#include "views/common/AccessibleRole.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"

#include <QKeyEvent>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int radius = 8;
constexpr qreal chosenLine = 1.5;
constexpr qreal ringWidth = 2;
constexpr qreal disabledOpacity = 0.5;

} // namespace

SelectableButton::SelectableButton(const Theme& theme, const QString& name, QWidget* parent)
    : QAbstractButton(parent), appearance(theme), hover(new HoverFade(this))
{
    makeAccessibleByClicks(staticMetaObject);
    setPlainText(*this, name);
    setAccessibleName(name);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&appearance, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void SelectableButton::setSelected(bool isSelected)
{
    setChecked(isSelected);
}

QRectF SelectableButton::face() const
{
    return QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
}

void SelectableButton::paintCard(QPainter& painter) const
{
    const ColorTokens& token = appearance.colors();
    const QRectF card = face();
    paintRing(painter, radius);
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    if (isSelected()) {
        fillRounded(painter, card, radius, token.cardSelected);
        constexpr qreal half = chosenLine / 2;
        painter.setPen(QPen(token.accent, chosenLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(card.adjusted(half, half, -half, -half), radius - half,
                                radius - half);
    } else {
        fillRounded(
            painter, card, radius,
            mixed(token.card, isDown() ? token.fillPressed : token.cardHover, hover->progress()));
        strokeRounded(painter, card, radius, token.strokeStrong);
    }
}

void SelectableButton::paintRing(QPainter& painter, int corner) const
{
    if (!isRingShown())
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(appearance.colors().focusRing, ringWidth));
    painter.setBrush(Qt::NoBrush);
    constexpr qreal half = ringWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), corner + half,
                            corner + half);
}

void SelectableButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    hover->setHovered(isEnabled());
}

void SelectableButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    hover->setHovered(false);
}

void SelectableButton::focusInEvent(QFocusEvent* event)
{
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        ringShown = event->reason() != Qt::MouseFocusReason;
    QAbstractButton::focusInEvent(event);
}

void SelectableButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace vellumry
