#pragma once

#include "hotkey/ModifierFlags.h"

#include <QString>
#include <QStringList>

namespace vellumry {

/// A hot key as the settings keep it.
struct HotkeyConfig {
    QString key; ///< the key's name in lower case: "t", "5", "space", "f1"
    hotkey::ModifierFlags modifiers;

    /// The key alone as a menu takes it. It knows more names than can be registered: "enter" and
    /// "up", for instance. What it does not know is the "t" of the default hot key.
    [[nodiscard]] Qt::Key keyEquivalent() const;

    /// Such as "⌥T" or "⌥SPACE".
    [[nodiscard]] QString displayString() const;

    /// One text for each key to press, the modifiers first: "⌥" and "T", "⌥" and "␣".
    [[nodiscard]] QStringList keySymbols() const;

    /// One symbol for each of the four modifiers that is set: "⌃", "⌥", "⇧", "⌘", in this order.
    [[nodiscard]] static QStringList modifierSymbols(hotkey::ModifierFlags from);

    friend bool operator==(const HotkeyConfig&, const HotkeyConfig&) = default;
};

} // namespace vellumry
