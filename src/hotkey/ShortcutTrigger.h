#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vellumry::hotkey {

/// A combination as the shortcuts specification of the desktops writes it: modifiers and the name
/// of what the key types, joined by plus signs ("CTRL+ALT+t"). Key code and modifiers are Carbon's.
/// Nothing for a key that has no such name.
[[nodiscard]] std::optional<std::string> shortcutTrigger(std::uint32_t keyCode,
                                                         std::uint32_t modifiers);

} // namespace vellumry::hotkey
