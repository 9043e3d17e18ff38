#pragma once

#include "hotkey/HotKeyBackend.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace vellumry::hotkey {

/// A window system made of plain values. Refuses what is registered already.
class FakeHotKeyBackend final : public HotKeyBackend {
public:
    struct Held {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        HotKeyID hotKeyID;
    };

    /// Answered to the next registrations instead of taking them.
    std::optional<Registration> refusal;
    std::map<Reference, Held> held;
    std::vector<Reference> unregistered;
    EventHandler handler;
    int handlersInstalled = 0;
    std::optional<std::vector<SymbolicHotKey>> symbolicHotKeys;
    std::string activationToken;
    std::optional<DesktopShortcut> shortcut;
    std::function<void()> observer;

    /// The number of the registration of a combination, 0 if there is none.
    [[nodiscard]] std::uint32_t numberOf(std::uint32_t keyCode, std::uint32_t modifiers) const
    {
        for (const auto& [reference, registration] : held) {
            if (registration.keyCode == keyCode && registration.modifiers == modifiers)
                return registration.hotKeyID.number;
        }
        return 0;
    }

    [[nodiscard]] Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                              HotKeyID hotKeyID) override
    {
        if (refusal)
            return *refusal;
        if (numberOf(keyCode, modifiers) != 0)
            return {hotKeyTaken, std::nullopt};
        held[++lastReference] = {keyCode, modifiers, hotKeyID};
        return {hotKeyNoError, lastReference};
    }
    void unregisterHotKey(Reference reference) override
    {
        unregistered.push_back(reference);
        held.erase(reference);
    }
    EventHandlerReference installEventHandler(EventHandler newHandler) override
    {
        handler = std::move(newHandler);
        ++handlersInstalled;
        return this;
    }
    [[nodiscard]] std::optional<std::vector<SymbolicHotKey>> copySymbolicHotKeys() override
    {
        return symbolicHotKeys;
    }
    void releaseKeyboard() override {}
    [[nodiscard]] std::string takeActivationToken() override
    {
        return std::exchange(activationToken, {});
    }
    [[nodiscard]] std::optional<DesktopShortcut> desktopShortcut() const override
    {
        return shortcut;
    }
    void observeDesktopShortcut(const std::function<void()>& newObserver) override
    {
        observer = newObserver;
    }
    /// As a desktop that has the last word on hot keys.
    void decide(const DesktopShortcut& decision)
    {
        shortcut = decision;
        observer();
    }

private:
    Reference lastReference = 100; // Unlike any number of a hot key.
};

} // namespace vellumry::hotkey
