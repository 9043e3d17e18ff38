#include "views/palette/PaletteRowDelegate.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/common/Theme.h"
#include "views/palette/PaletteListModel.h"
#include "views/palette/QuickSearchStyle.h"

#include <QPainter>

#include <algorithm>
#include <optional>
#include <utility>

namespace vellumry {

namespace {

constexpr int cachedRows = 500;
constexpr int dotSize = 8;
constexpr int symbolSize = 18;
constexpr int answerSymbolSize = 20;
constexpr int badgePadding = 8;
constexpr int badgeRadius = 5;
constexpr int leastDetailWidth = 24; ///< below it the detail gives way altogether
constexpr int leastStackPadding = 6; ///< above and below two lines
constexpr int textX = 2 * QuickSearchStyle::rowPadding + QuickSearchStyle::iconSlot;

/// A row with its two texts one below the other, and where the middles of their lines are.
struct StackedRow {
    int height;
    qreal titleMiddle;
    qreal detailMiddle;
};

StackedRow stack(int designedHeight, int titleLine, int detailLine, bool isDetailAbove)
{
    const int lines = titleLine + detailLine;
    const int height = std::max(designedHeight, lines + 2 * leastStackPadding);
    const qreal top = (height - lines) / 2.0;
    return {height, top + (isDetailAbove ? detailLine : 0) + titleLine / 2.0,
            top + (isDetailAbove ? 0 : titleLine) + detailLine / 2.0};
}

/// Nothing for the rows whose texts stand side by side.
std::optional<StackedRow> stackedRow(const Theme& theme, PaletteRowKind kind)
{
    switch (kind) {
    case PaletteRowKind::password:
        return stack(QuickSearchStyle::passwordRowHeight,
                     theme.lineHeight(TextStyle::palettePassword),
                     theme.lineHeight(TextStyle::label), false);
    case PaletteRowKind::calculator:
        return stack(QuickSearchStyle::calculatorRowHeight,
                     theme.lineHeight(TextStyle::paletteResult),
                     theme.lineHeight(TextStyle::contentSmall), true);
    default:
        return std::nullopt;
    }
}

QColor symbolColor(const QString& symbol)
{
    if (symbol == u"macwindow")
        return QuickSearchStyle::iconNeutral;
    if (symbol == u"lock")
        return QuickSearchStyle::iconPink();
    if (symbol == u"lock.shield")
        return QuickSearchStyle::iconGreen();
    return QuickSearchStyle::iconOrange();
}

QStaticText laidOut(const QString& text, const QFont& font)
{
    QStaticText result(text);
    result.setTextFormat(Qt::PlainText);
    result.setPerformanceHint(QStaticText::AggressiveCaching);
    result.prepare({}, font);
    return result;
}

QStaticText fitted(const QString& text, const QFont& font, qreal width)
{
    return laidOut(QFontMetricsF(font).elidedText(text, Qt::ElideRight, width), font);
}

void drawCentered(QPainter& painter, qreal x, qreal centerY, const QStaticText& text)
{
    painter.drawStaticText(QPointF(x, centerY - text.size().height() / 2), text);
}

} // namespace

PaletteRowDelegate::PaletteRowDelegate(const PaletteListModel& lines, const Theme& look,
                                       CollectionColor color, QObject* parent)
    : QAbstractItemDelegate(parent), model(lines), theme(look), collectionColor(std::move(color)),
      texts(cachedRows)
{
    takeFonts();
}

void PaletteRowDelegate::takeFonts()
{
    headerFont = theme.font(TextStyle::section);
    headerFont.setLetterSpacing(QFont::PercentageSpacing, 102);
    titleFont = theme.font(TextStyle::paletteRow);
    detailFont = theme.font(TextStyle::label);
    badgeFont = theme.font(TextStyle::captionMedium);
    passwordFont = theme.font(TextStyle::palettePassword);
    calculationFont = theme.font(TextStyle::contentSmall);
    resultFont = theme.font(TextStyle::paletteResult);
    texts.clear();
}

int PaletteRowDelegate::heightOf(const PaletteRow& row) const
{
    if (row.isHeader())
        return theme.rowHeight(QuickSearchStyle::headerHeight, TextStyle::section);
    const auto stacked = stackedRow(theme, row.kind);
    return stacked ? stacked->height
                   : theme.rowHeight(QuickSearchStyle::rowHeight, TextStyle::paletteRow);
}

int PaletteRowDelegate::lineHeight(int line) const
{
    const int above = line == 0 ? QuickSearchStyle::listTopMargin : 0;
    const int below = line == model.rowCount() - 1 ? QuickSearchStyle::listMargin : 0;
    return above + heightOf(model.line(line)) + below;
}

QRect PaletteRowDelegate::rowRect(int line, const QRect& lineRect) const
{
    const int above = line == 0 ? QuickSearchStyle::listTopMargin : 0;
    const int margin = QuickSearchStyle::listMargin - QuickSearchStyle::listInset;
    return {lineRect.x() + margin, lineRect.y() + above, lineRect.width() - 2 * margin,
            heightOf(model.line(line))};
}

QSize PaletteRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    return {0, lineHeight(index.row())};
}

void PaletteRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const
{
    const PaletteRow& row = model.line(index.row());
    if (row.isHeader())
        paintHeader(*painter, option.rect, row);
    else
        paintRow(*painter, rowRect(index.row(), option.rect), row, index.row() == selectedLine);
}

void PaletteRowDelegate::paintHeader(QPainter& painter, const QRect& line,
                                     const PaletteRow& row) const
{
    constexpr int lowering = 1; // the text stands nearer to the rows below it
    const int x = line.x() + QuickSearchStyle::listMargin - QuickSearchStyle::listInset +
                  QuickSearchStyle::rowPadding;
    const qreal centerY = line.bottom() + 1 - heightOf(row) / 2.0 + lowering;
    painter.setFont(headerFont);
    painter.setPen(QuickSearchStyle::subtleTextColor);
    drawCentered(painter, x, centerY, textsOf(row, line.width())->title);
}

void PaletteRowDelegate::paintRow(QPainter& painter, const QRect& rect, const PaletteRow& row,
                                  bool isSelected) const
{
    if (isSelected) {
        fillRounded(painter, rect, QuickSearchStyle::rowRadius,
                    QuickSearchStyle::selectionBackground);
        strokeRounded(painter, rect, QuickSearchStyle::rowRadius,
                      QuickSearchStyle::selectionStroke);
    } else if (hoveredIndex == row.hoverIndex) {
        fillRounded(painter, rect, QuickSearchStyle::rowRadius, QuickSearchStyle::hoverBackground);
    }
    paintLeading(painter, rect, row);
    const auto text = textsOf(row, rect.width());
    const QColor secondary =
        isSelected ? QuickSearchStyle::textOnSelection : QuickSearchStyle::badgeText;
    paintTexts(painter, rect, row, *text, secondary);
    paintTrailing(painter, rect, row, *text, secondary);
}

void PaletteRowDelegate::paintLeading(QPainter& painter, const QRect& rect,
                                      const PaletteRow& row) const
{
    const QPointF center(rect.x() + QuickSearchStyle::rowPadding + QuickSearchStyle::iconSlot / 2.0,
                         rect.y() + rect.height() / 2.0);
    if (row.symbol.isEmpty()) {
        fillRounded(
            painter,
            QRectF(0, 0, dotSize, dotSize).translated(center - QPointF(dotSize, dotSize) / 2),
            dotSize / 2.0, collectionColor(row.detail));
        return;
    }
    const int size = stackedRow(theme, row.kind) ? answerSymbolSize : symbolSize;
    Icon(row.symbol)
        .paint(painter, center - QPointF(size, size) / 2, size, symbolColor(row.symbol));
}

void PaletteRowDelegate::paintTexts(QPainter& painter, const QRect& rect, const PaletteRow& row,
                                    const RowTexts& text, const QColor& secondary) const
{
    const qreal x = rect.x() + textX;
    const auto stacked = stackedRow(theme, row.kind);
    const qreal centerY = rect.y() + rect.height() / 2.0;
    painter.setFont(titleFontOf(row));
    painter.setPen(QuickSearchStyle::text);
    drawCentered(painter, x, stacked ? rect.y() + stacked->titleMiddle : centerY, text.title);

    const qreal detailX =
        stacked ? x : x + text.title.size().width() + QuickSearchStyle::rowPadding;
    painter.setFont(detailFontOf(row));
    painter.setPen(secondary);
    drawCentered(painter, detailX, stacked ? rect.y() + stacked->detailMiddle : centerY,
                 text.detail);
}

void PaletteRowDelegate::paintTrailing(QPainter& painter, const QRect& rect, const PaletteRow& row,
                                       const RowTexts& text, const QColor& secondary) const
{
    const qreal centerY = rect.y() + rect.height() / 2.0;
    qreal right = rect.right() + 1 - QuickSearchStyle::rowPadding;
    if (row.isCopied) {
        Icon(QStringLiteral("checkmark"))
            .paint(painter, {right - symbolSize, centerY - symbolSize / 2.0}, symbolSize,
                   QuickSearchStyle::iconGreen());
        return;
    }
    if (!row.badge.isEmpty()) {
        const qreal width = text.badge.size().width() + 2 * badgePadding;
        const int height = theme.rowHeight(QuickSearchStyle::badgeHeight, TextStyle::captionMedium);
        const QRectF badge(right - width, centerY - height / 2.0, width, height);
        fillRounded(painter, badge, badgeRadius, QuickSearchStyle::badgeFill);
        painter.setFont(badgeFont);
        painter.setPen(row.kind == PaletteRowKind::calculator ? QuickSearchStyle::iconOrange()
                                                              : secondary);
        drawCentered(painter, badge.x() + badgePadding, centerY, text.badge);
        right = badge.x() - QuickSearchStyle::rowPadding;
    }
    painter.setFont(detailFont);
    painter.setPen(secondary);
    drawCentered(painter, right - text.trailing.size().width(), centerY, text.trailing);
}

const QFont& PaletteRowDelegate::titleFontOf(const PaletteRow& row) const
{
    switch (row.kind) {
    case PaletteRowKind::password:
        return passwordFont;
    case PaletteRowKind::calculator:
        return resultFont;
    default:
        return titleFont;
    }
}

const QFont& PaletteRowDelegate::detailFontOf(const PaletteRow& row) const
{
    return row.kind == PaletteRowKind::calculator ? calculationFont : detailFont;
}

std::shared_ptr<const PaletteRowDelegate::RowTexts>
PaletteRowDelegate::textsOf(const PaletteRow& row, int rowWidth) const
{
    // A password is kept nowhere but in its row.
    if (row.kind == PaletteRowKind::password)
        return layOut(row, rowWidth);
    constexpr QChar separator(0x1f);
    const QString key = QString::number(rowWidth) + separator +
                        QString::number(static_cast<int>(row.kind)) + separator + row.title +
                        separator + row.detail + separator + row.trailing + separator + row.badge;
    if (const auto* known = texts.object(key))
        return *known;
    auto fresh = layOut(row, rowWidth);
    texts.insert(key, new std::shared_ptr(fresh));
    return fresh;
}

std::shared_ptr<const PaletteRowDelegate::RowTexts>
PaletteRowDelegate::layOut(const PaletteRow& row, int rowWidth) const
{
    auto result = std::make_shared<RowTexts>();
    if (row.isHeader()) {
        result->title = laidOut(row.title, headerFont);
        return result;
    }
    constexpr int gap = QuickSearchStyle::rowPadding;
    result->badge = laidOut(row.badge, badgeFont);
    result->trailing = laidOut(row.trailing, detailFont);
    qreal endWidth = result->trailing.size().width();
    if (!row.badge.isEmpty()) {
        const qreal badgeWidth = result->badge.size().width() + 2 * badgePadding;
        endWidth = row.trailing.isEmpty() ? badgeWidth : endWidth + gap + badgeWidth;
    }
    if (row.isCopied)
        endWidth = symbolSize;
    const qreal room = rowWidth - textX - QuickSearchStyle::rowPadding - endWidth - gap;

    const QString title = singleLine(row.title);
    const QString detail = singleLine(row.detail);
    result->title = fitted(title, titleFontOf(row), room);
    if (stackedRow(theme, row.kind)) {
        result->detail = fitted(detail, detailFontOf(row), room);
        return result;
    }
    // Side by side the detail is cut first, the title only when the detail has gone.
    const qreal detailRoom = room - result->title.size().width() - gap;
    if (detailRoom >= leastDetailWidth)
        result->detail = fitted(detail, detailFontOf(row), detailRoom);
    return result;
}

} // namespace vellumry
