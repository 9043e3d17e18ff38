#pragma once

#include "hotkey/HotKeyBackend.h"

namespace vellumry::hotkey {

/// Stands in where there is no window system with global hot keys: refuses every combination.
class NullHotKeyBackend final : public HotKeyBackend {
public:
    [[nodiscard]] Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                              HotKeyID hotKeyID) override;
    void unregisterHotKey(Reference reference) override;
    EventHandlerReference installEventHandler(EventHandler handler) override;
    [[nodiscard]] std::optional<std::vector<SymbolicHotKey>> copySymbolicHotKeys() override;
    void releaseKeyboard() override;
};

} // namespace vellumry::hotkey
