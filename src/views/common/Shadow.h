#pragma once

#include <QColor>

class QPainter;
class QRectF;

namespace vellumry {

/// The shadow of something that lies above the rest: how far it falls and how soft it is.
struct Shadow {
    int y;
    int blur;

    static const Shadow sheet;
    static const Shadow drag;
    static const Shadow pill;

    /// Paints the shadow of a rounded rectangle, on all sides of it. Drawn from one picture for
    /// each colour, corner and scale.
    void paint(QPainter& painter, const QRectF& rect, int radius, const QColor& color) const;
};

inline constexpr Shadow Shadow::sheet{8, 24};
inline constexpr Shadow Shadow::drag{5, 16};
inline constexpr Shadow Shadow::pill{4, 14};

} // namespace vellumry
