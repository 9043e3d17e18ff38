#pragma once

#include "models/HotkeyConfig.h"

#include <QKeySequence>

namespace vellumry {

/// The hot key as menus show and take it: its key with those of the four modifiers that are set.
[[nodiscard]] QKeySequence keyEquivalent(const HotkeyConfig& config);

} // namespace vellumry
