#include "views/sheets/ModeCard.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int cardHeight = 148;
constexpr int padding = 16;
constexpr int tileSide = 40;
constexpr int tileRadius = 10;
constexpr float tileOpacity = 0.15F;
constexpr int symbolSize = 22;
constexpr int titleGap = 12;
constexpr int descriptionGap = 2;
constexpr int markSize = 20;
constexpr int markMargin = 12;

} // namespace

ModeCard::ModeCard(const Theme& theme, const Contents& contents, std::function<void()> action,
                   QWidget* parent)
    : SelectableButton(theme, contents.title, parent), shown(contents)
{
    setAccessibleDescription(contents.description);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    connect(this, &QAbstractButton::clicked, this, std::move(action));
}

QSize ModeCard::sizeHint() const
{
    return {0, cardHeight + 2 * ringRoom};
}

int ModeCard::heightForWidth(int wide) const
{
    const qreal room = wide - 2 * (padding + ringRoom);
    const qreal wanted = 2 * padding + tileSide + titleGap + titleHeight(room) + descriptionGap +
                         wrappedHeight(shown.description, look().font(TextStyle::label), room);
    return std::max(cardHeight, qCeil(wanted)) + 2 * ringRoom;
}

qreal ModeCard::titleHeight(qreal room) const
{
    return std::max<qreal>(look().lineHeight(TextStyle::heading),
                           wrappedHeight(shown.title, look().font(TextStyle::heading), room));
}

void ModeCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintCard(painter);
    const ColorTokens& token = look().colors();
    const QRectF inner = face().adjusted(padding, padding, -padding, -padding);

    const QColor color = token.*shown.iconColor;
    QColor ground = color;
    ground.setAlphaF(tileOpacity);
    const QRectF tile(inner.topLeft(), QSizeF(tileSide, tileSide));
    fillRounded(painter, tile, tileRadius, ground);
    Icon(shown.icon)
        .paint(painter, tile.center() - QPointF(symbolSize, symbolSize) / 2, symbolSize, color);

    const QRectF title(inner.x(), tile.bottom() + titleGap, inner.width(),
                       titleHeight(inner.width()));
    paintWrapped(painter, title, shown.title, look().font(TextStyle::heading), token.textPrimary);
    const qreal y = title.bottom() + descriptionGap;
    paintWrapped(painter, {inner.x(), y, inner.width(), inner.bottom() - y}, shown.description,
                 look().font(TextStyle::label), token.textSecondary);
    if (isSelected())
        Icon(QStringLiteral("checkmark.circle.fill"))
            .paint(painter, {face().right() - markMargin - markSize, face().y() + markMargin},
                   markSize, token.accent);
}

} // namespace vellumry
