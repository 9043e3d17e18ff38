#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace vellumry {

/// The width of a line of one device-independent pixel that covers whole pixels of the device.
[[nodiscard]] qreal lineWidth(const QPainter& painter);

/// Fills a rounded rectangle. Leaves the painter's pen and brush changed.
void fillRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color);

/// Draws a thin line along the inside of a rounded rectangle's edge, likewise.
void strokeRounded(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color);

} // namespace vellumry
