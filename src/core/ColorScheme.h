#pragma once

namespace vellumry {

/// Whether things are dark on light or light on dark.
enum class ColorScheme { light, dark };

} // namespace vellumry
