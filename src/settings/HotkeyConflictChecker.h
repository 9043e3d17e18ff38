#pragma once

#include "hotkey/ModifierFlags.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace vellumry::hotkey {
class HotKeyBackend;
}

namespace vellumry {

/// Decides whether a combination may become the hot key. An answer is the warning to show; nothing
/// means that it may. Letter case of the key and bits other than the four modifiers do not count.
/// Main thread only.
class HotkeyConflictChecker {
public:
    /// `windowSystem` outlives the checker.
    explicit HotkeyConflictChecker(hotkey::HotKeyBackend& windowSystem) : backend(windowSystem) {}

    /// The three checks below in their order; the first warning counts.
    [[nodiscard]] std::optional<QString> check(const QString& key,
                                               hotkey::ModifierFlags modifiers) const;

    /// Against the shortcuts that every program and the desktop use.
    [[nodiscard]] static std::optional<QString>
    checkSystemShortcuts(const QString& key, hotkey::ModifierFlags modifiers);

    /// Against the program's own commands.
    [[nodiscard]] static std::optional<QString> checkAppShortcuts(const QString& key,
                                                                  hotkey::ModifierFlags modifiers);

    /// Asks the window system for the combination and gives it back at once. The program's own hot
    /// key counts as taken unless it is paused. A key without a code passes.
    [[nodiscard]] std::optional<QString> checkLiveConflict(const QString& key,
                                                           hotkey::ModifierFlags modifiers) const;

    /// Carbon's code of a key that can be registered, by its name as HotkeyService knows it.
    [[nodiscard]] static std::optional<std::uint32_t> carbonKeyCode(const QString& key);

private:
    hotkey::HotKeyBackend& backend;
};

} // namespace vellumry
