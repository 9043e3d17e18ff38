#include "settings/SettingsService.h"

#include "core/FatalError.h"
#include "core/Log.h"
#include "core/Scheduler.h"
#include "notifications/NotificationCenter.h"
#include "platform/Appearance.h"
#include "platform/LoginItem.h"
#include "platform/PreferencesStore.h"
#include "settings/HotkeyServiceProtocol.h"

#include <chrono>
#include <optional>
#include <utility>

namespace vellumry {

namespace {

using hotkey::ModifierFlags;

constexpr QStringView logName = u"SettingsService";

constexpr QLatin1StringView hotkeyKey("quickSearchHotkeyKey");
constexpr QLatin1StringView hotkeyModifiers("quickSearchHotkeyModifiers");
constexpr QLatin1StringView appearanceModeKey("appearanceMode");
constexpr QLatin1StringView hasLaunchedBeforeKey("hasLaunchedBefore");

/// A value as it was read, or the default. One that is there and could not be read is told.
template <typename T>
T understood(const PreferencesStore& preferences, const QString& key, std::optional<T> value,
             T standard)
{
    if (value)
        return *std::move(value);
    if (preferences.contains(key))
        log(logName, QStringLiteral("The stored %1 is not understood, the default takes its place")
                         .arg(key));
    return standard;
}

HotkeyConfig storedHotkey(const PreferencesStore& preferences)
{
    HotkeyConfig config = SettingsService::defaultQuickSearchHotkey();
    config.key =
        understood(preferences, hotkeyKey, preferences.string(hotkeyKey), std::move(config.key));
    const qint64 modifiers =
        understood(preferences, hotkeyModifiers, preferences.integer(hotkeyModifiers), qint64{0});
    if (modifiers < 0)
        fatalError(u"The stored modifiers of the hot key are negative");
    if (modifiers != 0)
        config.modifiers = ModifierFlags{static_cast<quint64>(modifiers)};
    return config;
}

AppearanceMode storedAppearanceMode(const PreferencesStore& preferences)
{
    const auto text = preferences.string(appearanceModeKey);
    return understood(preferences, appearanceModeKey,
                      text ? appearanceModeFromRawValue(*text) : std::nullopt,
                      AppearanceMode::system);
}

} // namespace

SettingsService::SettingsService(const Dependencies& dependencies, QObject* parent)
    : QObject(parent), services(dependencies), hotkey(storedHotkey(dependencies.preferences)),
      mode(storedAppearanceMode(dependencies.preferences))
{
    if (services.loginItem != nullptr) {
        PreferencesStore& preferences = services.preferences;
        if (understood(preferences, hasLaunchedBeforeKey, preferences.boolean(hasLaunchedBeforeKey),
                       false)) {
            launches = services.loginItem->isEnabled();
        } else {
            preferences.setBoolean(hasLaunchedBeforeKey, true);
            warnWhenNotSaved();
            launches = true;
            applyLaunchAtLogin(true);
        }
    }
    connect(&services.appearance, &Appearance::colorSchemeChanged, this,
            &SettingsService::applyAppearanceMode);
    applyAppearanceMode();
}

HotkeyConfig SettingsService::defaultQuickSearchHotkey()
{
    return {.key = QStringLiteral("t"), .modifiers = ModifierFlags::option};
}

void SettingsService::setQuickSearchHotkey(const HotkeyConfig& config)
{
    const bool isChanged = config != hotkey;
    hotkey = config;
    saveHotkey();
    services.hotkeyService.unregisterHotkey();
    Q_EMIT services.notifications.hotkeyDidChange(hotkey);
    if (isChanged)
        Q_EMIT quickSearchHotkeyChanged();
}

void SettingsService::saveHotkey()
{
    services.preferences.setString(hotkeyKey, hotkey.key);
    services.preferences.setInteger(hotkeyModifiers,
                                    static_cast<qint64>(hotkey.modifiers.rawValue));
    warnWhenNotSaved();
}

void SettingsService::warnWhenNotSaved() const
{
    if (!services.preferences.isSaved())
        log(logName, u"The settings cannot be stored, they hold until the program ends");
}

void SettingsService::setLaunchAtLogin(bool enabled)
{
    changeLaunches(enabled);
    applyLaunchAtLogin(enabled);
}

void SettingsService::changeLaunches(bool enabled)
{
    if (launches == enabled)
        return;
    launches = enabled;
    Q_EMIT launchAtLoginChanged();
}

void SettingsService::applyLaunchAtLogin(bool enabled)
{
    LoginItem* const item = services.loginItem;
    if (item == nullptr)
        return;
    const QStringView word = enabled ? u"enabled" : u"disabled";
    if (enabled == item->isEnabled()) {
        log(logName, QStringLiteral("Launch at login already %1, skipping").arg(word));
        return;
    }
    try {
        if (enabled)
            item->registerItem();
        else
            item->unregisterItem();
        log(logName, QStringLiteral("Launch at login %1").arg(word));
    } catch (const LoginItemError& error) {
        log(logName, QStringLiteral("Failed to set launch at login: ") + error.description());
        // The second call agrees with the system, so that this comes to an end.
        services.scheduler.after(std::chrono::milliseconds(0), this,
                                 [this, item] { setLaunchAtLogin(item->isEnabled()); });
    }
}

void SettingsService::setAppearanceMode(AppearanceMode newMode)
{
    const bool isChanged = newMode != mode;
    mode = newMode;
    services.preferences.setString(appearanceModeKey, rawValue(mode));
    warnWhenNotSaved();
    applyAppearanceMode();
    if (isChanged)
        Q_EMIT appearanceModeChanged();
}

void SettingsService::applyAppearanceMode()
{
    ColorScheme wanted = services.appearance.colorScheme();
    if (mode != AppearanceMode::system)
        wanted = mode == AppearanceMode::dark ? ColorScheme::dark : ColorScheme::light;
    if (wanted == scheme)
        return;
    scheme = wanted;
    Q_EMIT colorSchemeChanged();
}

} // namespace vellumry
