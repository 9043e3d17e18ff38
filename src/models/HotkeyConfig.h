#pragma once

#include "hotkey/ModifierFlags.h"

#include <QString>

namespace vellumry {

/// A hot key as the settings keep it.
struct HotkeyConfig {
    QString key; ///< the key's name in lower case: "t", "5", "space", "f1"
    hotkey::ModifierFlags modifiers;

    friend bool operator==(const HotkeyConfig&, const HotkeyConfig&) = default;
};

} // namespace vellumry
