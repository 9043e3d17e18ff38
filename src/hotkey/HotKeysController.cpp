#include "hotkey/HotKeysController.h"

#include "hotkey/HotKey.h"
#include "hotkey/NullHotKeyBackend.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

namespace vellumry::hotkey {

// At namespace scope, so that they outlive hot keys which are held for the life of the process.
std::map<std::uint32_t, HotKeyBox> HotKeysController::hotKeys;

namespace {

NullHotKeyBackend noBackend;
std::unique_ptr<HotKeyBackend> currentBackend;

auto boxOf(const HotKey& hotKey)
{
    return std::ranges::find_if(HotKeysController::hotKeys, [&](const auto& entry) {
        return entry.second.identifier == hotKey.identifier;
    });
}

std::uint32_t nextNumber()
{
    if (HotKeysController::hotKeysCount == std::numeric_limits<std::uint32_t>::max()) {
        std::fputs("HotKeysController: out of numbers for hot keys\n", stderr);
        std::abort();
    }
    return ++HotKeysController::hotKeysCount;
}

void updateEventHandler()
{
    if (HotKeysController::eventHandler != nullptr)
        return;
    HotKeysController::eventHandler =
        HotKeysController::backend().installEventHandler(&HotKeysController::handleEvent);
}

} // namespace

HotKeyBackend& HotKeysController::backend()
{
    return currentBackend ? *currentBackend : noBackend;
}

void HotKeysController::setBackend(std::unique_ptr<HotKeyBackend> backend)
{
    // What the old one gave out means nothing to the new one.
    eventHandler = nullptr;
    for (auto& [number, box] : hotKeys)
        box.carbonEventHotKey.reset();
    currentBackend = std::move(backend);
}

void HotKeysController::registerHotKey(HotKey& hotKey)
{
    if (boxOf(hotKey) != hotKeys.end())
        return;
    const std::uint32_t number = nextNumber();
    HotKeyBox& box = hotKeys[number];
    box.identifier = hotKey.identifier;
    box.hotKey = &hotKey;
    box.carbonHotKeyID = number;

    const HotKeyBackend::Registration registration =
        backend().registerHotKey(hotKey.keyCombo.carbonKeyCode, hotKey.keyCombo.carbonModifiers,
                                 {eventHotKeySignature, number});
    if (registration.status != hotKeyNoError || !registration.reference)
        return;
    box.carbonEventHotKey = registration.reference;
    updateEventHandler();
}

void HotKeysController::unregisterHotKey(const HotKey& hotKey)
{
    const auto entry = boxOf(hotKey);
    if (entry == hotKeys.end())
        return;
    if (entry->second.carbonEventHotKey)
        backend().unregisterHotKey(*entry->second.carbonEventHotKey);
    hotKeys.erase(entry);
}

std::int32_t HotKeysController::handleEvent(const HotKeyEvent* event)
{
    if (event == nullptr)
        return hotKeyEventNotHandled;
    if (event->parameterStatus != hotKeyNoError)
        return event->parameterStatus;
    if (event->hotKeyID.signature != eventHotKeySignature)
        return hotKeyEventNotHandled;

    const auto entry = hotKeys.find(event->hotKeyID.number);
    if (entry == hotKeys.end() || entry->second.hotKey == nullptr)
        return hotKeyEventNotHandled;
    const HotKey& hotKey = *entry->second.hotKey;

    // A copy, since the handler may end the hot key that it belongs to.
    HotKey::Handler handler;
    if (event->kind == HotKeyEvent::pressed)
        handler = hotKey.keyDownHandler;
    else if (event->kind == HotKeyEvent::released)
        handler = hotKey.keyUpHandler;
    if (hotKey.isPaused() || !handler)
        return hotKeyEventNotHandled;
    handler();
    return hotKeyNoError;
}

} // namespace vellumry::hotkey
