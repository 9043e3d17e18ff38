#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <Qt>

class QPainter;
class QRectF;

namespace vellumry {

/// A text as one line: what breaks lines becomes a blank, and what could never fit is left out.
[[nodiscard]] QString singleLine(const QString& text);

/// Paints one line of text into the middle of the height of `rect`, cut with an ellipsis where the
/// room ends. A text that runs from right to left keeps its order and stands where it is told to.
void paintLine(QPainter& painter, const QRectF& rect, const QString& text, const QFont& font,
               const QColor& color, Qt::Alignment horizontal = Qt::AlignLeft);

/// The height that a text takes when it is broken into lines of this width.
[[nodiscard]] qreal wrappedHeight(const QString& text, const QFont& font, qreal width);

/// Paints a text from the top of `rect`, broken into lines.
void paintWrapped(QPainter& painter, const QRectF& rect, const QString& text, const QFont& font,
                  const QColor& color);

} // namespace vellumry
