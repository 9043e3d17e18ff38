#include "views/common/CountPill.h"

#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"
#include "views/common/Theme.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>

namespace vellumry::CountPill {

namespace {

constexpr int pillHeight = 18;
constexpr int leastWidth = 22;
constexpr int padding = 6;

} // namespace

int width(const Theme& theme, const QString& text)
{
    const QFontMetricsF metrics(theme.font(TextStyle::captionMedium));
    return std::max(leastWidth, qCeil(metrics.horizontalAdvance(text)) + 2 * padding);
}

void paint(QPainter& painter, const Theme& theme, const QPointF& left, const QString& text)
{
    const int high = theme.rowHeight(pillHeight, TextStyle::captionMedium);
    const QRectF pill(left.x(), left.y() - high / 2.0, width(theme, text), high);
    fillRounded(painter, pill, high / 2.0, theme.colors().fill);
    paintLine(painter, pill, text, theme.font(TextStyle::captionMedium),
              theme.colors().textSecondary, Qt::AlignHCenter);
}

} // namespace vellumry::CountPill
