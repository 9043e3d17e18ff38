#pragma once

#include <string>

namespace vellumry::hotkey {

/// A global shortcut where the desktop, not the program, decides which keys it has.
struct DesktopShortcut {
    enum class State {
        asked,       ///< The desktop has not answered yet, maybe because the person has not.
        granted,     ///< It is in force with the keys that `trigger` names.
        refused,     ///< The desktop or the person has said no, or has taken it back.
        unavailable, ///< The desktop gives programs no global shortcuts.
    };

    State state = State::asked;
    /// The keys in the desktop's own words, UTF-8; empty while there are none.
    std::string trigger;

    friend bool operator==(const DesktopShortcut&, const DesktopShortcut&) = default;
};

} // namespace vellumry::hotkey
