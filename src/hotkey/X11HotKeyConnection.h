#pragma once

#include "hotkey/HotKeyBackend.h"
#include "hotkey/X11KeyboardMap.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct xcb_connection_t;
struct xcb_key_press_event_t;
struct xcb_ge_generic_event_t;

namespace vellumry::hotkey {

/// The hot keys on one connection to an X server: grabs them, follows changes of the keyboard's
/// layout, and turns the server's events into presses and releases, one each however long a key is
/// held. Belongs to one thread at a time.
///
/// The server freezes the keyboard at a press and keeps what is typed from then on, until thaw() or
/// for `holdLimit`; behind a press that closes a window, for as long again. Nothing that is typed
/// goes to the window that had the focus before, or gets lost.
class X11HotKeyConnection {
public:
    using Clock = std::chrono::steady_clock;
    using EventReceiver = std::function<void(const HotKeyEvent&)>;

    /// Connects to a display ("" for the one that the environment names). Nothing when there is no
    /// such server, or one without the XKB and XInput 2 extensions.
    [[nodiscard]] static std::unique_ptr<X11HotKeyConnection> open(const std::string& display,
                                                                   Clock::duration holdLimit);
    ~X11HotKeyConnection();
    X11HotKeyConnection(const X11HotKeyConnection&) = delete;
    X11HotKeyConnection& operator=(const X11HotKeyConnection&) = delete;

    /// Readable when processEvents() has something to do. The other calls may read events without
    /// working on them, so that processEvents() must be the last before a wait for this.
    [[nodiscard]] int fileDescriptor() const;
    /// The server is gone; everything is refused from now on.
    [[nodiscard]] bool isLost() const;

    [[nodiscard]] HotKeyBackend::Registration
    registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID hotKeyID);
    void unregisterHotKey(HotKeyBackend::Reference reference);

    /// The number of presses told so far: the last one's own number.
    [[nodiscard]] std::uint64_t pressCount() const { return presses; }
    /// Lets the keys go on if the press of this number is what holds them.
    void thaw(std::uint64_t pressNumber);
    /// The same once another window than `closing` has the focus, for which there is the time of
    /// the limit again.
    void thawAfter(std::uint32_t closing, std::uint64_t pressNumber);

    /// Works on all events that have come.
    void processEvents(const EventReceiver& receiver);

    /// When runDeadlines() has something to do.
    [[nodiscard]] std::optional<Clock::time_point> nextDeadline() const;
    void runDeadlines(Clock::time_point now);

private:
    struct CloseConnection {
        void operator()(xcb_connection_t* server) const;
    };
    using Connection = std::unique_ptr<xcb_connection_t, CloseConnection>;

    struct Grab {
        std::uint8_t keycode;
        std::uint16_t modifiers;
        friend bool operator==(const Grab&, const Grab&) = default;
    };
    struct HeldRegistration {
        HotKeyID hotKeyID;
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        std::vector<Grab> grabs; ///< One for each state of the locks; empty while not to be had.
    };
    struct Freeze {
        std::uint32_t time; ///< Of the press.
        HotKeyBackend::Reference reference;
        Clock::time_point until;
        std::uint32_t closing = 0;               ///< The window whose focus is waited to go.
        std::optional<Clock::time_point> look{}; ///< When to see where the focus is.
    };

    X11HotKeyConnection(Connection server, std::uint32_t rootWindow, Clock::duration holdLimit);
    [[nodiscard]] bool prepare();

    [[nodiscard]] std::vector<Grab> grabsFor(std::uint32_t keyCode, std::uint32_t modifiers) const;
    [[nodiscard]] bool isHeld(const std::vector<Grab>& grabs) const;
    [[nodiscard]] bool take(const std::vector<Grab>& grabs);
    void giveBack(const std::vector<Grab>& grabs);
    void waitForServer();
    void followKeyboard();

    void handlePress(const xcb_key_press_event_t& event, const EventReceiver& receiver);
    void handleRawRelease(const xcb_ge_generic_event_t& event, const EventReceiver& receiver);
    void watchReleases(bool watch);
    void ungrabKeyboard(std::uint32_t time);
    void lookForFocus();
    [[nodiscard]] bool hasFocusLeft(std::uint32_t closing) const;

    Connection connection;
    const std::uint32_t root;
    const Clock::duration keyboardHoldLimit;
    std::uint8_t xkbEvent = 0;
    std::uint8_t inputOpcode = 0;
    std::uint32_t activeWindowProperty = 0;

    X11KeyboardMap keyboard;
    std::optional<Clock::time_point> nextFollow; ///< When to look at the keyboard again.
    Clock::duration retryDelay{};

    std::map<HotKeyBackend::Reference, HeldRegistration> registrations;
    HotKeyBackend::Reference lastReference = 0;

    std::map<std::uint8_t, HotKeyBackend::Reference> keysDown; ///< By key code.
    std::uint64_t presses = 0;
    std::optional<Freeze> freeze; ///< By the last press.
};

} // namespace vellumry::hotkey
