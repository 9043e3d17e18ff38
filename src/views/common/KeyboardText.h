#pragma once

#include "models/HotkeyConfig.h"

#include <QKeySequence>
#include <QString>
#include <QStringList>

namespace vellumry {

/// The keys of a hot key as they are printed on this system's keyboards, such as "Ctrl", "Alt" and
/// "T".
[[nodiscard]] QStringList keyboardKeys(const HotkeyConfig& config);

/// A hot key as it is printed on this system's keyboards, such as "Ctrl+Alt+T".
[[nodiscard]] QString keyboardText(const HotkeyConfig& config);

/// A shortcut of one combination in the same way.
[[nodiscard]] QString shortcutText(const QKeySequence& shortcut);

/// What stands on the caps of this system's keyboards for the symbols of a HotkeyConfig, in the
/// order of keyboardText: "Ctrl", "Alt", "Shift" and "Super" for the modifiers, the rest unchanged.
[[nodiscard]] QStringList keyboardCaps(const QStringList& symbols);

/// What to say for a cap: "Space" for "␣", and for most the cap itself.
[[nodiscard]] QString spokenCap(const QString& cap);

} // namespace vellumry
