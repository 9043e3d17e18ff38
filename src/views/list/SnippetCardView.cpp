#include "views/list/SnippetCardView.h"

#include "views/common/CollectionColors.h"
#include "views/common/HoverFade.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QPainterPath>

namespace vellumry {

namespace {

constexpr int paddingTop = 9;
constexpr int paddingBottom = 10;
constexpr int paddingSide = 12;
constexpr int subtitleGap = 2;
constexpr int metaGap = 7;
constexpr int dotSize = 8;
constexpr int dotGap = 6;
constexpr int dogEar = 15;
constexpr int dogEarRadius = 4;
constexpr int checkSize = 16;
constexpr int checkGap = 7;
constexpr int border = 1;
constexpr qreal litBorder = 1.5;
constexpr qreal openPlaceOpacity = 0.55;

/// The outline of a card, with its upper right corner cut where it is folded.
QPainterPath outline(const QRectF& card, qreal radius, bool isFolded)
{
    QPainterPath path;
    if (!isFolded) {
        path.addRoundedRect(card, radius, radius);
        return path;
    }
    const qreal diameter = 2 * radius;
    path.moveTo(card.left() + radius, card.top());
    path.lineTo(card.right() - dogEar, card.top());
    path.lineTo(card.right(), card.top() + dogEar);
    path.lineTo(card.right(), card.bottom() - radius);
    path.arcTo({card.right() - diameter, card.bottom() - diameter, diameter, diameter}, 0, -90);
    path.lineTo(card.left() + radius, card.bottom());
    path.arcTo({card.left(), card.bottom() - diameter, diameter, diameter}, -90, -90);
    path.lineTo(card.left(), card.top() + radius);
    path.arcTo({card.left(), card.top(), diameter, diameter}, 180, -90);
    path.closeSubpath();
    return path;
}

/// `count` of a unit, or the words for a single one.
QString inUnits(qint64 count, const QString& single, const QString& many)
{
    return count == 1 ? single : QString::number(count) + many;
}

} // namespace

SnippetCardView::SnippetCardView(const Theme& look, const CollectionColors& collectionColors,
                                 const Clock& time)
    : theme(look), colors(collectionColors), clock(time)
{
}

int SnippetCardView::height(bool hasSubtitle) const
{
    int high = paddingTop + theme.lineHeight(TextStyle::bodyStrong) + metaGap +
               theme.lineHeight(TextStyle::caption) + paddingBottom + 2 * border;
    if (hasSubtitle)
        high += subtitleGap + theme.lineHeight(TextStyle::label);
    return high;
}

QString SnippetCardView::relativeTime(Date date, Date now)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 3600;
    constexpr qint64 day = 86400;
    constexpr qint64 week = 604800;
    constexpr qint64 month = 2592000;
    constexpr qint64 year = 31536000;
    const qint64 elapsed = std::chrono::duration_cast<std::chrono::seconds>(now - date).count();
    if (elapsed < minute)
        return QStringLiteral("just now");
    if (elapsed < hour)
        return QString::number(elapsed / minute) + QStringLiteral(" min");
    if (elapsed < day)
        return inUnits(elapsed / hour, QStringLiteral("1 hr"), QStringLiteral(" hrs"));
    if (elapsed < week)
        return inUnits(elapsed / day, QStringLiteral("yesterday"), QStringLiteral(" days"));
    if (elapsed < month)
        return inUnits(elapsed / week, QStringLiteral("last week"), QStringLiteral(" weeks"));
    if (elapsed < year)
        return inUnits(elapsed / month, QStringLiteral("last month"), QStringLiteral(" months"));
    return inUnits(elapsed / year, QStringLiteral("last year"), QStringLiteral(" years"));
}

QString SnippetCardView::metaLine(const Snippet& snippet) const
{
    QString collection = snippet.collection();
    // Isolated, so that a name from right to left does not take the number of the time along.
    if (collection.isRightToLeft())
        collection = QChar(0x2068) + collection + QChar(0x2069);
    QStringList parts{collection, relativeTime(snippet.updatedAt(), clock.now())};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

QString SnippetCardView::description(const Snippet& snippet, bool isUnsaved) const
{
    QStringList parts{singleLine(snippet.title())};
    if (!snippet.subtitle().isEmpty())
        parts.append(singleLine(snippet.subtitle()));
    parts.append(metaLine(snippet));
    if (isUnsaved)
        parts.append(QStringLiteral("unsaved"));
    return parts.join(QStringLiteral(", "));
}

void SnippetCardView::paint(QPainter& painter, const QRectF& card, const Contents& contents) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter, card, contents);
    if (contents.isOpenPlace)
        painter.setOpacity(openPlaceOpacity);
    if (contents.copied < 1)
        paintTexts(painter, card, contents);
    if (contents.copied > 0)
        paintCopied(painter, card, contents);
    if (contents.isUnsaved)
        paintDogEar(painter, card);
    painter.restore();
}

void SnippetCardView::paintGround(QPainter& painter, const QRectF& card,
                                  const Contents& contents) const
{
    const ColorTokens& token = theme.colors();
    QColor line = mixed(token.stroke, token.strokeStrong, contents.hover);
    qreal width = lineWidth(painter);
    QBrush ground = mixed(token.card, token.cardHover, contents.hover);
    Qt::PenStyle pen = Qt::SolidLine;
    if (contents.isOpenPlace) {
        line = token.accentStroke;
        ground = Qt::NoBrush;
        pen = Qt::DashLine;
    } else if (contents.isSelected) {
        ground = token.cardSelected;
        line = contents.isFocused ? token.accent : token.accentStroke;
        if (contents.isFocused)
            width = litBorder;
    }
    // The line lies within the card, and beside the ground rather than over it.
    const qreal half = width / 2;
    const QRectF edge = card.adjusted(half, half, -half, -half);
    painter.setBrush(ground);
    painter.setPen(Qt::NoPen);
    painter.drawPath(outline(card, radius, contents.isUnsaved));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(line, width, pen));
    painter.drawPath(outline(edge, radius - half, contents.isUnsaved));
}

void SnippetCardView::paintTexts(QPainter& painter, const QRectF& card,
                                 const Contents& contents) const
{
    const ColorTokens& token = theme.colors();
    const Snippet& snippet = contents.snippet;
    const QRectF inner = card.adjusted(paddingSide + border, 0, -paddingSide - border, 0);
    qreal y = card.y() + border + paddingTop;
    const auto line = [&](TextStyle style, const QString& text, const QColor& color, qreal from,
                          qreal lessRoom) {
        const int high = theme.lineHeight(style);
        paintLine(painter, QRectF(inner.x() + from, y, inner.width() - from - lessRoom, high), text,
                  theme.font(style), color);
        y += high;
    };
    line(TextStyle::bodyStrong, snippet.title(), token.textPrimary, 0,
         contents.isUnsaved ? paddingSide : 0);
    if (!snippet.subtitle().isEmpty()) {
        y += subtitleGap;
        line(TextStyle::label, snippet.subtitle(), token.textSecondary, 0, 0);
    }
    y += metaGap;
    const qreal middle = y + theme.lineHeight(TextStyle::caption) / 2.0;
    fillRounded(painter, QRectF(inner.x(), middle - dotSize / 2.0, dotSize, dotSize), dotSize / 2.0,
                colors.color(snippet.collection()));
    line(TextStyle::caption, metaLine(snippet),
         contents.isSelected ? token.textSecondary : token.textTertiary, dotSize + dotGap, 0);
}

void SnippetCardView::paintDogEar(QPainter& painter, const QRectF& card) const
{
    const QPointF corner(card.right() - dogEar, card.top() + dogEar);
    QPainterPath flap;
    flap.moveTo(card.right() - dogEar, card.top());
    flap.lineTo(card.right(), card.top() + dogEar);
    flap.lineTo(corner.x() + dogEarRadius, corner.y());
    flap.quadTo(corner, {corner.x(), corner.y() - dogEarRadius});
    flap.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.colors().draft);
    painter.drawPath(flap);
}

void SnippetCardView::paintCopied(QPainter& painter, const QRectF& card,
                                  const Contents& contents) const
{
    const ColorTokens& token = theme.colors();
    painter.setOpacity(contents.copied);
    const qreal inset = contents.isSelected ? litBorder : border;
    painter.setPen(Qt::NoPen);
    painter.setBrush(contents.isSelected ? token.cardSelected : token.card);
    painter.drawPath(
        outline(card.adjusted(inset, inset, -inset, -inset), radius - inset, contents.isUnsaved));
    const QString text = QStringLiteral("Copied");
    const QFont font = theme.font(TextStyle::bodyStrong);
    const qreal textWidth = QFontMetricsF(font).horizontalAdvance(text) + 1;
    const qreal x = card.center().x() - (checkSize + checkGap + textWidth) / 2;
    Icon(QStringLiteral("checkmark"))
        .paint(painter, {x, card.center().y() - checkSize / 2.0}, checkSize, token.success);
    paintLine(painter, QRectF(x + checkSize + checkGap, card.y(), textWidth, card.height()), text,
              font, token.success);
    painter.setOpacity(1);
}

} // namespace vellumry
