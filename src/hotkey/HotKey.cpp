#include "hotkey/HotKey.h"

#include "hotkey/HotKeysController.h"

#include <utility>

namespace vellumry::hotkey {

HotKey::HotKey(KeyCombo combo, Handler keyDown, Handler keyUp)
    : identifier(Identifier::make()), keyCombo(combo), keyDownHandler(std::move(keyDown)),
      keyUpHandler(std::move(keyUp))
{
    HotKeysController::registerHotKey(*this);
}

HotKey::HotKey(Key key, ModifierFlags modifiers, Handler keyDown, Handler keyUp)
    : HotKey(KeyCombo(key, modifiers), std::move(keyDown), std::move(keyUp))
{
}

HotKey::HotKey(std::uint32_t carbonKeyCode, std::uint32_t carbonModifiers, Handler keyDown,
               Handler keyUp)
    : HotKey(KeyCombo(carbonKeyCode, carbonModifiers), std::move(keyDown), std::move(keyUp))
{
}

HotKey::~HotKey()
{
    HotKeysController::unregisterHotKey(*this);
}

void HotKey::setPaused(bool value)
{
    paused = value;
    if (paused)
        HotKeysController::unregisterHotKey(*this);
    else
        HotKeysController::registerHotKey(*this);
}

} // namespace vellumry::hotkey
