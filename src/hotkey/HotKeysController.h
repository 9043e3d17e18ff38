#pragma once

#include "hotkey/HotKeyBackend.h"
#include "hotkey/HotKeyBox.h"

#include <cstdint>
#include <map>
#include <memory>

namespace vellumry::hotkey {

class HotKey;

/// The registry between the hot keys and the window system. Main thread only.
class HotKeysController {
public:
    HotKeysController() = delete;

    /// Everything registered, by its number. A refused combination is here too.
    static std::map<std::uint32_t, HotKeyBox> hotKeys;
    /// The last number given; never goes down.
    inline static std::uint32_t hotKeysCount = 0;
    static constexpr std::uint32_t eventHotKeySignature = fourCharacterCode("SSHk");
    /// Set once the handler has been installed, which the first successful registration does.
    inline static HotKeyBackend::EventHandlerReference eventHandler = nullptr;

    /// The window system in use; one that refuses everything until another is set.
    [[nodiscard]] static HotKeyBackend& backend();
    /// To be set before the first hot key is made. At the end of the program an empty pointer
    /// closes the connection to the window system; hot keys that live longer are silent.
    static void setBackend(std::unique_ptr<HotKeyBackend> backend);

    /// Does nothing for a hot key that is registered. A refusal leaves the box without reference
    /// and reaches nobody. Running out of numbers ends the program.
    static void registerHotKey(HotKey& hotKey);
    /// Does nothing for a hot key that is not registered.
    static void unregisterHotKey(const HotKey& hotKey);

    /// Calls the handler that an event is for. Answers hotKeyNoError, hotKeyEventNotHandled, or
    /// the event's own failure.
    static std::int32_t handleEvent(const HotKeyEvent* event);
};

} // namespace vellumry::hotkey
