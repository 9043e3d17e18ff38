#pragma once

#include "hotkey/Identifier.h"
#include "hotkey/KeyCombo.h"

#include <cstdint>
#include <functional>

namespace vellumry::hotkey {

/// A global hot key: as long as the object lives and is not paused, a press of the combination
/// anywhere on the system calls the handler. A combination that the system refuses stays silent.
/// Main thread only.
class HotKey {
public:
    using Handler = std::function<void()>;

    explicit HotKey(KeyCombo combo, Handler keyDown = {}, Handler keyUp = {});
    HotKey(Key key, ModifierFlags modifiers, Handler keyDown = {}, Handler keyUp = {});
    HotKey(std::uint32_t carbonKeyCode, std::uint32_t carbonModifiers, Handler keyDown = {},
           Handler keyUp = {});
    ~HotKey();

    // The registry knows the object by its address.
    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;

    const Identifier identifier;
    const KeyCombo keyCombo;
    Handler keyDownHandler;
    Handler keyUpHandler;

    [[nodiscard]] bool isPaused() const { return paused; }
    /// Takes the combination off the system, or puts it back under a new number. Takes effect also
    /// when the value does not change.
    void setPaused(bool value);

private:
    bool paused = false;
};

} // namespace vellumry::hotkey
