#include "hotkey/NullHotKeyBackend.h"

namespace vellumry::hotkey {

HotKeyBackend::Registration NullHotKeyBackend::registerHotKey(std::uint32_t, std::uint32_t,
                                                              HotKeyID)
{
    return {hotKeyUnavailable, std::nullopt};
}

void NullHotKeyBackend::unregisterHotKey(Reference) {}

HotKeyBackend::EventHandlerReference NullHotKeyBackend::installEventHandler(EventHandler)
{
    return nullptr;
}

std::optional<std::vector<SymbolicHotKey>> NullHotKeyBackend::copySymbolicHotKeys()
{
    return std::nullopt;
}

void NullHotKeyBackend::releaseKeyboard() {}

} // namespace vellumry::hotkey
