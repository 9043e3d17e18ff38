#pragma once

#include <QPointF>
#include <QString>

class QPainter;

namespace vellumry {

class Theme;

/// The small pill in which a number stands beside a title.
namespace CountPill {

[[nodiscard]] int width(const Theme& theme, const QString& text);

/// `left` is the middle of its left edge.
void paint(QPainter& painter, const Theme& theme, const QPointF& left, const QString& text);

} // namespace CountPill

} // namespace vellumry
