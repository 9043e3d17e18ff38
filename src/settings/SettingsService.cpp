#include "settings/SettingsService.h"

#include "core/FatalError.h"
#include "notifications/NotificationCenter.h"
#include "platform/PreferencesStore.h"
#include "settings/HotkeyServiceProtocol.h"

namespace vellumry {

namespace {

using hotkey::ModifierFlags;

const QString hotkeyKey = QStringLiteral("quickSearchHotkeyKey");
const QString hotkeyModifiers = QStringLiteral("quickSearchHotkeyModifiers");

HotkeyConfig storedHotkey(const PreferencesStore& preferences)
{
    const qint64 modifiers = preferences.integer(hotkeyModifiers).value_or(0);
    if (modifiers < 0)
        fatalError(u"The stored modifiers of the hot key are negative");
    return {.key = preferences.string(hotkeyKey).value_or(QStringLiteral("t")),
            .modifiers = modifiers == 0 ? ModifierFlags::option
                                        : ModifierFlags{static_cast<quint64>(modifiers)}};
}

} // namespace

SettingsService::SettingsService(const Dependencies& dependencies, QObject* parent)
    : QObject(parent), services(dependencies), hotkey(storedHotkey(dependencies.preferences))
{
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
}

} // namespace vellumry
