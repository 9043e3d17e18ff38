#pragma once

#include "models/HotkeyConfig.h"

#include <QString>

namespace vellumry {

/// A hot key as it is printed on this system's keyboards, such as "Ctrl+Alt+T".
[[nodiscard]] QString keyboardText(const HotkeyConfig& config);

} // namespace vellumry
