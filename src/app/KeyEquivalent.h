#pragma once

#include "models/HotkeyConfig.h"

#include <QKeySequence>

namespace vellumry {

/// The hot key as the commands take it: HotkeyConfig::keyEquivalent() with those of the four
/// modifiers that are set. A key that has no equivalent, as "f5", is the letter of the default one.
[[nodiscard]] QKeySequence keyEquivalent(const HotkeyConfig& config);

/// The hot key as the status menu shows it: its own key, whatever its name, with those modifiers.
/// Empty for a name that menus do not know.
[[nodiscard]] QKeySequence shownHotKey(const HotkeyConfig& config);

} // namespace vellumry
