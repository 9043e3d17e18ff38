#pragma once

#include "hotkey/DesktopShortcut.h"
#include "hotkey/HotKeyEvent.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vellumry::hotkey {

/// What the backend and the event handler answer; zero is success.
inline constexpr std::int32_t hotKeyNoError = 0;
inline constexpr std::int32_t hotKeyEventNotHandled = -9874;
inline constexpr std::int32_t hotKeyUnavailable = -9868; ///< No window system to ask.
inline constexpr std::int32_t hotKeyTaken = -9878;       ///< Somebody holds the combination.
inline constexpr std::int32_t hotKeyInvalid = -9879;     ///< The keyboard has no such key.

/// Runs a function on the main thread, later or at once. Called from any thread.
using MainThreadExecutor = std::function<void(std::function<void()>)>;

/// An entry of the operating system's own list of shortcuts; a field is empty when the system
/// does not tell it.
struct SymbolicHotKey {
    std::optional<bool> isEnabled;
    std::optional<std::uint32_t> keyCode;   ///< Carbon's.
    std::optional<std::uint32_t> modifiers; ///< Carbon's.
};

/// The window system's global hot keys. Main thread only, but for releaseKeyboard().
class HotKeyBackend {
public:
    using Reference = std::uint32_t;

    struct Registration {
        std::int32_t status = hotKeyNoError;
        std::optional<Reference> reference; ///< For unregisterHotKey(); empty when refused.
    };

    /// Told each press and release, on the main thread. Answers hotKeyNoError, or why it did not
    /// handle the event. Must not end the backend.
    using EventHandler = std::function<std::int32_t(const HotKeyEvent*)>;
    using EventHandlerReference = const void*;

    HotKeyBackend() = default;
    HotKeyBackend(const HotKeyBackend&) = delete;
    HotKeyBackend& operator=(const HotKeyBackend&) = delete;
    virtual ~HotKeyBackend() = default;

    /// Asks the system for a combination (Carbon's key code and modifiers). A combination that
    /// anybody holds, this program included, is refused.
    [[nodiscard]] virtual Registration
    registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID hotKeyID) = 0;
    virtual void unregisterHotKey(Reference reference) = 0;

    /// From now on all events go to `handler`.
    virtual EventHandlerReference installEventHandler(EventHandler handler) = 0;

    /// The combinations that the operating system reserves, or nothing if it has no such list.
    [[nodiscard]] virtual std::optional<std::vector<SymbolicHotKey>> copySymbolicHotKeys() = 0;

    /// After a press that was handled, what is typed is held back, so that it reaches the window
    /// which the press brings up. This lets the keys go to whatever has the focus now: to be called
    /// when that window has it, or when no window will. Without it the keys go on by themselves
    /// after a fraction of a second. Any thread; harmless when nothing is held.
    virtual void releaseKeyboard() = 0;

    /// The same after a press that takes a window away: the keys go on as soon as another window
    /// than `closing` (the window system's number of it) has the focus. Before that they would go
    /// to nobody. Any thread.
    virtual void releaseKeyboardAfter(std::uint32_t /*closing*/) { releaseKeyboard(); }

    /// What the desktop gave along with the last press, so that the window which the press brings
    /// up may take the keyboard. Serves once, and until releaseKeyboard(); empty when there is
    /// none.
    [[nodiscard]] virtual std::string takeActivationToken() { return {}; }

    /// What the desktop has made of the registrations, where it is the one to decide; nothing where
    /// the combinations themselves are in force.
    [[nodiscard]] virtual std::optional<DesktopShortcut> desktopShortcut() const
    {
        return std::nullopt;
    }
    /// From now on `observer` is told, on the main thread, when that changes.
    virtual void observeDesktopShortcut(const std::function<void()>& /*observer*/) {}
};

} // namespace vellumry::hotkey
