#pragma once

#include "hotkey/ModifierFlags.h"

#include <optional>
#include <string>
#include <vector>

namespace vellumry::hotkey {

struct MenuItem;

/// A menu as far as its keys matter: whoever draws the real menu describes it by this value.
struct Menu {
    std::vector<MenuItem> items;

    /// Tells the program's main menu at the moment of the call, or nothing while there is none.
    /// Set by the application; empty at first.
    inline static std::optional<Menu> (*main)() = nullptr;
};

struct MenuItem {
    std::string keyEquivalent; ///< As keyFromString reads it; empty for an item without a key.
    ModifierFlags modifiers;
    Menu subMenu;
};

} // namespace vellumry::hotkey
