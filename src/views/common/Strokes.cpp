#include "views/common/Strokes.h"

#include <QPainter>
#include <QtMath>

namespace vellumry {

qreal lineWidth(const QPainter& painter)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    return std::max(1, qFloor(ratio)) / ratio;
}

void fillRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
}

void strokeRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color)
{
    const qreal width = lineWidth(painter);
    const qreal half = width / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace vellumry
