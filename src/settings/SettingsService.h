#pragma once

#include "models/HotkeyConfig.h"

#include <QObject>

namespace vellumry {

class HotkeyServiceProtocol;
class NotificationCenter;
class PreferencesStore;

/// What the user sets outside the library. Each change is stored as it happens, on this machine
/// alone. Main thread only.
class SettingsService : public QObject {
    Q_OBJECT

public:
    /// What the service works with; all outlive it.
    struct Dependencies {
        PreferencesStore& preferences;
        HotkeyServiceProtocol& hotkeyService;
        NotificationCenter& notifications;
    };

    /// Reads the stored settings; missing or strange ones mean the defaults. A negative modifier
    /// mask ends the program.
    explicit SettingsService(const Dependencies& dependencies, QObject* parent = nullptr);

    /// The hot key that raises the palette: at first option and "t".
    [[nodiscard]] const HotkeyConfig& quickSearchHotkey() const { return hotkey; }

    /// Stores the hot key, takes the old one off the system and announces hotkeyDidChange, upon
    /// which the application registers the new one. Each call does, also with an equal value.
    void setQuickSearchHotkey(const HotkeyConfig& config);

Q_SIGNALS:
    void quickSearchHotkeyChanged();

private:
    void saveHotkey();

    Dependencies services;
    HotkeyConfig hotkey;
};

} // namespace vellumry
