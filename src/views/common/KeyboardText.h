#pragma once

#include "models/HotkeyConfig.h"

#include <QString>
#include <QStringList>

namespace vellumry {

/// The keys of a hot key as they are printed on this system's keyboards, such as "Ctrl", "Alt" and
/// "T".
[[nodiscard]] QStringList keyboardKeys(const HotkeyConfig& config);

/// A hot key as it is printed on this system's keyboards, such as "Ctrl+Alt+T".
[[nodiscard]] QString keyboardText(const HotkeyConfig& config);

} // namespace vellumry
