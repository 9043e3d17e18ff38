#include "views/sheets/ConflictRowView.h"

#include "library/ImportPreview.h"
#include "views/common/DateText.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int rowHeight = 32;
constexpr int headHeight = 26;
constexpr int leftPadding = 12;
constexpr int rightPadding = 6;
constexpr int symbolSize = 14;
constexpr int symbolGap = 6;
constexpr int columnGap = 8;
constexpr int infoSide = 24;

struct Columns {
    QRectF type;
    QRectF name;
    QRectF status;
    QRectF decision;
};

/// The columns grow with the text; the name takes what is left, and something is left.
Columns columnsOf(const QRectF& row, qreal textScale)
{
    constexpr qreal typeColumn = 84;
    constexpr qreal statusColumn = 98;
    constexpr qreal decisionColumn = 118;
    constexpr qreal mostOfRow = 0.7;
    const qreal scale =
        std::min(textScale, mostOfRow * row.width() / (typeColumn + statusColumn + decisionColumn));
    const qreal typeWidth = typeColumn * scale;
    const qreal statusWidth = statusColumn * scale;
    const qreal decisionWidth = decisionColumn * scale;
    const qreal left = row.x() + leftPadding;
    const qreal decisionX = ConflictRowView::infoRect(row).x() - decisionWidth - 2;
    const qreal statusX = decisionX - statusWidth;
    const auto column = [&](qreal x, qreal wide) {
        return QRectF(x, row.y(), std::max<qreal>(0, wide), row.height());
    };
    return {.type = column(left, typeWidth - columnGap),
            .name = column(left + typeWidth, statusX - left - typeWidth - columnGap),
            .status = column(statusX, statusWidth - columnGap),
            .decision = column(decisionX, decisionWidth)};
}

} // namespace

int ConflictRowView::height() const
{
    return theme.rowHeight(rowHeight, TextStyle::bodyMedium);
}

int ConflictRowView::headingHeight() const
{
    return theme.rowHeight(headHeight, TextStyle::section);
}

QRectF ConflictRowView::infoRect(const QRectF& row)
{
    return {row.right() - rightPadding - infoSide, row.center().y() - infoSide / 2.0, infoSide,
            infoSide};
}

void ConflictRowView::paintHeading(QPainter& painter, const QRectF& row) const
{
    const Columns columns = columnsOf(row, theme.textScale());
    const auto heading = [&](const QRectF& column, const QString& text) {
        paintLine(painter, column, text, theme.font(TextStyle::section),
                  theme.colors().textTertiary);
    };
    heading(columns.type, QStringLiteral("Type"));
    heading(columns.name, QStringLiteral("Name"));
    heading(columns.status, QStringLiteral("Status"));
    heading(columns.decision, QStringLiteral("Decision"));
}

void ConflictRowView::paint(QPainter& painter, const QRectF& row, const Contents& contents) const
{
    const ColorTokens& token = theme.colors();
    if (contents.isCurrent)
        painter.fillRect(row, token.accentTint);
    painter.fillRect(QRectF(row.x(), row.y(), row.width(), 1), token.stroke);

    const Columns columns = columnsOf(row, theme.textScale());
    const auto withSymbol = [&](const QRectF& column, const SymbolText& shown, TextStyle style,
                                const QColor& color) {
        Icon(shown.symbol)
            .paint(painter, {column.x(), column.center().y() - symbolSize / 2.0}, symbolSize,
                   color);
        paintLine(painter, column.adjusted(symbolSize + symbolGap, 0, 0, 0), shown.text,
                  theme.font(style), color);
    };
    const ImportConflict& conflict = contents.conflict;
    withSymbol(columns.type, ImportPreview::type(conflict), TextStyle::label, token.textSecondary);
    paintLine(painter, columns.name, conflict.name, theme.font(TextStyle::bodyMedium),
              token.textPrimary);
    paintLine(painter, columns.status, ImportPreview::status(conflict),
              theme.font(TextStyle::label), token.textSecondary);
    const SymbolText decision = ImportPreview::decision(conflict, contents.selectedMode);
    const bool keepsLocal = decision.symbol == QLatin1StringView("checkmark.circle.fill");
    withSymbol(columns.decision, decision, TextStyle::labelMedium,
               keepsLocal ? token.success : token.accent);
    const QRectF info = infoRect(row);
    if (contents.isDetailShown)
        fillRounded(painter, info, 6, token.fill);
    Icon(QStringLiteral("info.circle"))
        .paint(painter, info.center() - QPointF(symbolSize, symbolSize) / 2, symbolSize,
               token.textTertiary);
}

QString ConflictRowView::description(const ImportConflict& conflict, ConflictResolutionMode mode)
{
    return QStringLiteral("%1 %2, %3, %4, local %5, imported %6")
        .arg(ImportPreview::type(conflict).text, conflict.name, ImportPreview::status(conflict),
             ImportPreview::decision(conflict, mode).text, mediumDateTime(conflict.localUpdatedAt),
             mediumDateTime(conflict.importedUpdatedAt));
}

} // namespace vellumry
