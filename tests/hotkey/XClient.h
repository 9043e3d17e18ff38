#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace vellumry::hotkey {

/// Key codes of the keyboard that every test begins with (layout "us").
namespace keycode {
inline constexpr std::uint8_t control = 37;
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t alt = 64;
inline constexpr std::uint8_t super = 133;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t f = 41;
inline constexpr std::uint8_t k = 45;
inline constexpr std::uint8_t t = 28;
inline constexpr std::uint8_t y = 29;
} // namespace keycode

/// Another program on the display: plays the keyboard, holds combinations, or has a window that is
/// typed into.
class XClient {
public:
    explicit XClient(const std::string& display);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    void press(std::uint8_t code);
    void release(std::uint8_t code);
    /// Presses a key while a modifier key is down, and lets go of both.
    void strike(std::uint8_t modifier, std::uint8_t code);
    /// Types small letters, as fast as the server takes them.
    void type(std::string_view letters);

    /// Takes a combination; false when somebody else holds it.
    [[nodiscard]] bool grab(std::uint8_t code, std::uint16_t modifiers);
    void ungrab(std::uint8_t code, std::uint16_t modifiers);
    /// Whether somebody else holds a combination.
    [[nodiscard]] bool isHeldByOther(std::uint8_t code, std::uint16_t modifiers);

    /// Switches to a layout of the keyboard, the first being 0.
    void lockGroup(std::uint8_t group);

    /// The server's clock in milliseconds.
    [[nodiscard]] std::uint32_t serverTime();

    /// Makes the window on the first call, and gives it the focus.
    void focusWindow();
    /// As a window manager: tells all which client's window is the active one, null for none.
    void tellActive(const XClient* client);
    [[nodiscard]] std::uint32_t windowNumber() const { return window; }
    /// Takes the window off the screen, and with it the focus.
    void hideWindow();
    /// Whether the window has been told that it has the focus.
    [[nodiscard]] bool hasFocus();
    /// The small letters that were typed into the window; other keys show as "#<code> ".
    [[nodiscard]] const std::string& typed();
    /// How often a combination was taken away from the window by somebody's grab.
    [[nodiscard]] int grabCount();

private:
    void roundTrip();
    void readEvents();

    xcb_connection_t* connection;
    std::uint32_t root;
    std::uint32_t window = 0;
    bool focused = false;
    std::string text;
    int grabs = 0;
    std::uint32_t lastPropertyTime = 0;
};

} // namespace vellumry::hotkey
