#pragma once

#include "hotkey/Key.h"
#include "models/HotkeyConfig.h"
#include "settings/HotkeyServiceProtocol.h"

#include <memory>
#include <optional>

namespace vellumry::hotkey {
class HotKey;
}

namespace vellumry {

/// The global hot key over the hot key library. Three states: not registered, registered, paused.
class HotkeyService final : public HotkeyServiceProtocol {
    Q_OBJECT

public:
    /// The modifiers that a hot key can have; other bits of a mask are dropped.
    static constexpr hotkey::ModifierFlags allModifiers =
        hotkey::ModifierFlags::command | hotkey::ModifierFlags::option |
        hotkey::ModifierFlags::control | hotkey::ModifierFlags::shift;

    /// `currentSetting` tells the hot key that is set at the moment of the call; it is asked when
    /// a pause ends.
    explicit HotkeyService(std::function<HotkeyConfig()> currentSetting, QObject* parent = nullptr);
    ~HotkeyService() override;

    void registerGlobalHotkey(const QString& newKey, hotkey::ModifierFlags newModifiers,
                              std::function<void()> action) override;
    void unregisterHotkey() override;
    void pauseHotkey() override;
    void resumeHotkey() override;
    [[nodiscard]] std::optional<hotkey::DesktopShortcut> desktopShortcut() const override;

    /// The hot key that was asked for, also during a pause; nothing when none is registered.
    [[nodiscard]] const std::optional<QString>& currentKey() const { return key; }
    [[nodiscard]] std::optional<hotkey::ModifierFlags> currentModifiers() const
    {
        return modifiers;
    }
    [[nodiscard]] bool isPaused() const { return paused; }

    /// The key that a name of the settings stands for, whatever its letter case: one of 64 letters,
    /// digits, punctuation characters, "space", "return", "tab", "delete", "escape", "f1" to "f12".
    [[nodiscard]] static std::optional<hotkey::Key> keyFromString(const QString& name);

private:
    void performRegistration(const HotkeyConfig& config);
    void releaseHotKey();
    void logDesktopShortcut() const;

    std::function<HotkeyConfig()> currentSetting;
    std::unique_ptr<hotkey::HotKey> hotKey; ///< the live registration
    std::function<void()> callback;         ///< what a press runs
    bool paused = false;
    std::optional<QString> key;
    std::optional<hotkey::ModifierFlags> modifiers;
};

} // namespace vellumry
