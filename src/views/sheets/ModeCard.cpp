#include "views/sheets/ModeCard.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>

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
constexpr int descriptionLines = 2;
constexpr int markSize = 20;
constexpr int markMargin = 12;

} // namespace

ModeCard::ModeCard(const Theme& theme, const Contents& contents, std::function<void()> action,
                   QWidget* parent)
    : SelectableButton(theme, contents.title, parent), shown(contents)
{
    setAccessibleDescription(contents.description);
    connect(this, &QAbstractButton::clicked, this, std::move(action));
}

QSize ModeCard::sizeHint() const
{
    const int texts = look().lineHeight(TextStyle::heading) +
                      descriptionLines * look().lineHeight(TextStyle::label);
    const int wanted = 2 * padding + tileSide + titleGap + descriptionGap + texts;
    return {0, std::max(cardHeight, wanted) + 2 * ringRoom};
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

    const int titleHeight = look().lineHeight(TextStyle::heading);
    const QRectF title(inner.x(), tile.bottom() + titleGap, inner.width(), titleHeight);
    paintLine(painter, title, shown.title, look().font(TextStyle::heading), token.textPrimary);
    painter.setFont(look().font(TextStyle::label));
    painter.setPen(token.textSecondary);
    painter.drawText(QRectF(inner.x(), title.bottom() + descriptionGap, inner.width(),
                            inner.bottom() + padding - title.bottom()),
                     int(Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap), shown.description);
    if (isSelected())
        Icon(QStringLiteral("checkmark.circle.fill"))
            .paint(painter, {face().right() - markMargin - markSize, face().y() + markMargin},
                   markSize, token.accent);
}

} // namespace vellumry
