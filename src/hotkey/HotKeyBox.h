#pragma once

#include "hotkey/HotKeyBackend.h"
#include "hotkey/Identifier.h"

#include <cstdint>
#include <optional>

namespace vellumry::hotkey {

class HotKey;

/// An entry of the registry.
class HotKeyBox {
public:
    Identifier identifier;            ///< The hot key's.
    HotKey* hotKey = nullptr;         ///< Not owned; empty once it has ended.
    std::uint32_t carbonHotKeyID = 0; ///< The number of the registration.
    std::optional<HotKeyBackend::Reference> carbonEventHotKey; ///< Empty when it was refused.
};

} // namespace vellumry::hotkey
