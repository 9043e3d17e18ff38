#pragma once

#include <QRegion>
#include <QSize>

namespace vellumry {

/// The pixels of a rectangle with rounded corners, as a window's mask where no compositor makes
/// its corners translucent.
[[nodiscard]] QRegion roundedMask(const QSize& size, int radius);

} // namespace vellumry
