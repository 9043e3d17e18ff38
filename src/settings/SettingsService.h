#pragma once

#include "core/ColorScheme.h"
#include "models/HotkeyConfig.h"
#include "settings/AppearanceMode.h"

#include <QObject>

namespace vellumry {

class Appearance;
class HotkeyServiceProtocol;
class LoginItem;
class NotificationCenter;
class PreferencesStore;
class Scheduler;

/// What the user sets outside the library. Each change is stored as it happens, on this machine
/// alone; what cannot be stored holds until the program ends, and the log says so. Main thread
/// only.
class SettingsService : public QObject {
    Q_OBJECT

public:
    /// What the service works with; all outlive it.
    struct Dependencies {
        PreferencesStore& preferences;
        HotkeyServiceProtocol& hotkeyService;
        NotificationCenter& notifications;
        const Appearance& appearance;
        Scheduler& scheduler;
        LoginItem* loginItem; ///< none where the system launches nothing at login
    };

    /// Reads the stored settings; missing or strange ones mean the defaults. A negative modifier
    /// mask ends the program. The first construction ever, by what is stored, enables the launch
    /// at login.
    explicit SettingsService(const Dependencies& dependencies, QObject* parent = nullptr);

    /// The hot key that raises the palette: at first option and "t".
    [[nodiscard]] const HotkeyConfig& quickSearchHotkey() const { return hotkey; }

    /// Stores the hot key, takes the old one off the system and announces hotkeyDidChange, upon
    /// which the application registers the new one. Each call does, also with an equal value.
    void setQuickSearchHotkey(const HotkeyConfig& config);

    [[nodiscard]] static HotkeyConfig defaultQuickSearchHotkey();

    /// Whether the system starts the program at login. A change that the system refuses is taken
    /// back in the next turn of the event loop.
    [[nodiscard]] bool launchAtLogin() const { return launches; }
    void setLaunchAtLogin(bool enabled);
    /// Without it launchAtLogin is false at each start and changes nothing.
    [[nodiscard]] bool isLaunchAtLoginAvailable() const { return services.loginItem != nullptr; }

    [[nodiscard]] AppearanceMode appearanceMode() const { return mode; }
    void setAppearanceMode(AppearanceMode newMode);

    /// What the windows are to look like now: the mode, or the desktop's wish where it decides.
    [[nodiscard]] ColorScheme colorScheme() const { return scheme; }

Q_SIGNALS:
    void quickSearchHotkeyChanged();
    void launchAtLoginChanged();
    void appearanceModeChanged();
    void colorSchemeChanged();

private:
    void saveHotkey();
    void warnWhenNotSaved() const;
    void changeLaunches(bool enabled);
    void applyLaunchAtLogin(bool enabled);
    void applyAppearanceMode();

    Dependencies services;
    HotkeyConfig hotkey;
    bool launches = false;
    AppearanceMode mode;
    ColorScheme scheme = ColorScheme::light;
};

} // namespace vellumry
