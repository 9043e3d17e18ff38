#include "views/common/TextPainting.h"

#include "core/Text.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace vellumry {

namespace {

constexpr int longestShownText = 300; ///< characters; more never fits, but costs to lay out
constexpr int wrapping = int(Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap);
constexpr qreal plentyOfHeight = 10'000;

} // namespace

QString singleLine(const QString& text)
{
    QString line = prefixOfCharacters(text, longestShownText);
    for (QChar& c : line) {
        if (c == u'\t' || (isSpaceOrLineBreak(c) && !isHorizontalSpace(c)))
            c = u' ';
    }
    return line;
}

void paintLine(QPainter& painter, const QRectF& rect, const QString& text, const QFont& font,
               const QColor& color, Qt::Alignment horizontal)
{
    painter.setFont(font);
    painter.setPen(color);
    const QString shown =
        QFontMetricsF(font).elidedText(singleLine(text), Qt::ElideRight, rect.width());
    // The ellipsis of a text that runs from right to left stands at its left.
    painter.setLayoutDirection(shown.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    painter.drawText(
        rect, int(horizontal | Qt::AlignVCenter | Qt::AlignAbsolute | Qt::TextSingleLine), shown);
}

qreal wrappedHeight(const QString& text, const QFont& font, qreal width)
{
    return std::ceil(
        QFontMetricsF(font).boundingRect({0, 0, width, plentyOfHeight}, wrapping, text).height());
}

void paintWrapped(QPainter& painter, const QRectF& rect, const QString& text, const QFont& font,
                  const QColor& color)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, wrapping, text);
}

} // namespace vellumry
