#pragma once

#include <QFont>

namespace vellumry {

/// The font of the interface: the desktop's own, with the program's choice behind it. The colour
/// emoji font comes second, for otherwise another font's black drawings of emoji win.
/// `pixelSize` is in device-independent pixels.
[[nodiscard]] QFont uiFont(int pixelSize, QFont::Weight weight = QFont::Normal);

/// The font of texts in which each character counts: all of one width, and none drawn together
/// with its neighbour, as "->" would be.
[[nodiscard]] QFont monoFont(int pixelSize, QFont::Weight weight = QFont::Normal);

} // namespace vellumry
