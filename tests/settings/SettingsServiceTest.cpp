#include "settings/SettingsService.h"

#include "notifications/NotificationCenter.h"
#include "platform/linux/SettingsFilePreferencesStore.h"
#include "settings/HotkeyServiceProtocol.h"
#include "support/FakeAppearance.h"
#include "support/FakeLoginItem.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

const QString keyName = u"quickSearchHotkeyKey"_s;
const QString modifiersName = u"quickSearchHotkeyModifiers"_s;
const QString modeName = u"appearanceMode"_s;
const QString launchedName = u"hasLaunchedBefore"_s;

QString notUnderstood(const QString& name)
{
    return u"SettingsService: The stored "_s + name +
           u" is not understood, the default takes its place"_s;
}
const QString notStored =
    u"SettingsService: The settings cannot be stored, they hold until the program ends"_s;

/// Writes down what is asked of it.
class RecordingHotkeyService final : public HotkeyServiceProtocol {
public:
    explicit RecordingHotkeyService(QStringList& list) : events(list) {}

    void registerGlobalHotkey(const QString&, ModifierFlags, std::function<void()>) override
    {
        events.append(u"register"_s);
    }
    void unregisterHotkey() override { events.append(u"unregister"_s); }
    void pauseHotkey() override { events.append(u"pause"_s); }
    void resumeHotkey() override { events.append(u"resume"_s); }

private:
    QStringList& events;
};

class SettingsServiceTest : public testing::Test {
protected:
    [[nodiscard]] SettingsService::Dependencies dependencies() { return with(preferences); }
    [[nodiscard]] SettingsService::Dependencies with(PreferencesStore& store)
    {
        return {store, hotkeyService, notifications, appearance, scheduler, &loginItem};
    }
    [[nodiscard]] SettingsService::Dependencies withoutLoginItem()
    {
        auto result = dependencies();
        result.loginItem = nullptr;
        return result;
    }
    [[nodiscard]] HotkeyConfig storedHotkey()
    {
        return SettingsService(withoutLoginItem()).quickSearchHotkey();
    }
    [[nodiscard]] AppearanceMode storedMode()
    {
        return SettingsService(withoutLoginItem()).appearanceMode();
    }

    /// The next turn of the event loop.
    void turn() { scheduler.advance(std::chrono::milliseconds(0)); }

    test::LogCapture log;
    test::FakeAppearance appearance;
    test::FakeLoginItem loginItem;
    test::ManualScheduler scheduler;

    QStringList events;
    test::MemoryPreferences preferences;
    RecordingHotkeyService hotkeyService{events};
    NotificationCenter notifications;
};

TEST_F(SettingsServiceTest, TheDefaultHotKeyIsOptionT)
{
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"t"_s, ModifierFlags::option}));
    EXPECT_EQ(storedHotkey().modifiers.rawValue, 0x80000U);
    EXPECT_TRUE(preferences.isEmpty());
    EXPECT_TRUE(events.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(SettingsServiceTest, ReadsWhatIsStored)
{
    preferences.setString(keyName, u"f5"_s);
    preferences.setInteger(modifiersName, 0x120000);
    EXPECT_EQ(storedHotkey(),
              (HotkeyConfig{u"f5"_s, ModifierFlags::command | ModifierFlags::shift}));
    // As it stands: other bits stay, and no text is checked.
    preferences.setString(keyName, u"Nonsense"_s);
    preferences.setInteger(modifiersName, 0x10100);
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"Nonsense"_s, ModifierFlags{0x10100}}));
}

TEST_F(SettingsServiceTest, ModifiersOfZeroAreOption)
{
    preferences.setString(keyName, u"f5"_s);
    preferences.setInteger(modifiersName, 0);
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"f5"_s, ModifierFlags::option}));
}

TEST_F(SettingsServiceTest, AMissingHalfIsTheDefault)
{
    preferences.setString(keyName, u"f5"_s);
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"f5"_s, ModifierFlags::option}));
    test::MemoryPreferences other;
    other.setInteger(modifiersName, 0x100000);
    EXPECT_EQ(SettingsService(with(other)).quickSearchHotkey(),
              (HotkeyConfig{u"t"_s, ModifierFlags::command}));
}

TEST_F(SettingsServiceTest, ValuesOfAnotherTypeAreTheDefault)
{
    preferences.setInteger(keyName, 5);
    preferences.setString(modifiersName, u"many"_s);
    preferences.setBoolean(modeName, true);
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"t"_s, ModifierFlags::option}));
    EXPECT_EQ(storedMode(), AppearanceMode::system);
    EXPECT_EQ(log.lines.mid(0, 3),
              (QStringList{notUnderstood(keyName), notUnderstood(modifiersName),
                           notUnderstood(modeName)}));
}

TEST_F(SettingsServiceTest, NegativeModifiersAreFatal)
{
    preferences.setInteger(modifiersName, -1);
    EXPECT_DEATH((void)storedHotkey(), "The stored modifiers of the hot key are negative");
}

TEST_F(SettingsServiceTest, AChangeIsStoredThenUnregisteredThenAnnounced)
{
    SettingsService settings(dependencies());
    const HotkeyConfig config{u"f5"_s, ModifierFlags::control};
    QObject observer;
    QObject::connect(&notifications, &NotificationCenter::hotkeyDidChange, &observer,
                     [&](const HotkeyConfig& announced) {
                         EXPECT_EQ(announced, config);
                         EXPECT_EQ(settings.quickSearchHotkey(), config);
                         EXPECT_EQ(preferences.string(keyName), u"f5"_s);
                         EXPECT_EQ(preferences.integer(modifiersName), 0x40000);
                         events.append(u"announced"_s);
                     });
    QObject::connect(&settings, &SettingsService::quickSearchHotkeyChanged, &observer,
                     [&] { events.append(u"changed"_s); });
    settings.setQuickSearchHotkey(config);
    EXPECT_EQ(events, (QStringList{u"unregister"_s, u"announced"_s, u"changed"_s}));
    EXPECT_EQ(storedHotkey(), config);
}

TEST_F(SettingsServiceTest, AnEqualValueTakesTheSameSteps)
{
    SettingsService settings(dependencies());
    QObject observer;
    QObject::connect(&notifications, &NotificationCenter::hotkeyDidChange, &observer,
                     [&] { events.append(u"announced"_s); });
    QObject::connect(&settings, &SettingsService::quickSearchHotkeyChanged, &observer,
                     [&] { events.append(u"changed"_s); });
    settings.setQuickSearchHotkey(settings.quickSearchHotkey());
    EXPECT_EQ(events, (QStringList{u"unregister"_s, u"announced"_s}));
    EXPECT_EQ(preferences.string(keyName), u"t"_s);
}

TEST_F(SettingsServiceTest, TheFirstStartEnablesTheLaunchAtLogin)
{
    const SettingsService settings(dependencies());
    EXPECT_TRUE(settings.isLaunchAtLoginAvailable());
    EXPECT_TRUE(settings.launchAtLogin());
    EXPECT_TRUE(loginItem.enabled);
    EXPECT_EQ(preferences.boolean(launchedName), true);
    EXPECT_EQ(log.lines, QStringList{u"SettingsService: Launch at login enabled"_s});
}

TEST_F(SettingsServiceTest, ASecondStartOnlyReadsTheStatus)
{
    {
        SettingsService settings(dependencies());
        settings.setLaunchAtLogin(false);
    }
    loginItem.calls.clear();
    log.lines.clear();
    EXPECT_FALSE(SettingsService(dependencies()).launchAtLogin()) << "who turned it off stays off";
    loginItem.enabled = true;
    EXPECT_TRUE(SettingsService(dependencies()).launchAtLogin()) << "turned on from outside";
    EXPECT_TRUE(loginItem.calls.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(SettingsServiceTest, AFirstStartThatIsRegisteredAlreadySkips)
{
    loginItem.enabled = true;
    EXPECT_TRUE(SettingsService(dependencies()).launchAtLogin());
    EXPECT_TRUE(loginItem.calls.isEmpty());
    EXPECT_EQ(log.lines,
              QStringList{u"SettingsService: Launch at login already enabled, skipping"_s});
}

TEST_F(SettingsServiceTest, AStrangeNoteOfTheFirstStartIsNone)
{
    preferences.setString(launchedName, u"yes"_s);
    EXPECT_TRUE(SettingsService(dependencies()).launchAtLogin());
    EXPECT_EQ(loginItem.calls, QStringList{u"register"_s});
    EXPECT_EQ(preferences.boolean(launchedName), true);
    EXPECT_EQ(log.lines.value(0), notUnderstood(launchedName));
}

TEST_F(SettingsServiceTest, LaunchAtLoginFollowsTheSwitch)
{
    SettingsService settings(dependencies());
    QObject::connect(&settings, &SettingsService::launchAtLoginChanged, &settings,
                     [&] { events.append(settings.launchAtLogin() ? u"on"_s : u"off"_s); });
    loginItem.calls.clear();
    log.lines.clear();
    settings.setLaunchAtLogin(false);
    EXPECT_FALSE(settings.launchAtLogin());
    settings.setLaunchAtLogin(false);
    settings.setLaunchAtLogin(true);
    EXPECT_TRUE(settings.launchAtLogin());
    settings.setLaunchAtLogin(true);
    EXPECT_EQ(events, (QStringList{u"off"_s, u"on"_s}));
    EXPECT_EQ(loginItem.calls, (QStringList{u"unregister"_s, u"register"_s}));
    EXPECT_EQ(log.lines,
              (QStringList{u"SettingsService: Launch at login disabled"_s,
                           u"SettingsService: Launch at login already disabled, skipping"_s,
                           u"SettingsService: Launch at login enabled"_s,
                           u"SettingsService: Launch at login already enabled, skipping"_s}));
    EXPECT_EQ(scheduler.pending(), 0U);
}

TEST_F(SettingsServiceTest, ARefusedRegistrationFallsBackToTheTruth)
{
    loginItem.isRefusing = true;
    SettingsService settings(dependencies());
    QObject::connect(&settings, &SettingsService::launchAtLoginChanged, &settings,
                     [&] { events.append(settings.launchAtLogin() ? u"on"_s : u"off"_s); });
    EXPECT_TRUE(settings.launchAtLogin()) << "until the next turn of the event loop";
    turn();
    EXPECT_FALSE(settings.launchAtLogin());
    EXPECT_EQ(events, QStringList{u"off"_s});
    EXPECT_EQ(loginItem.calls, QStringList{u"register"_s});
    EXPECT_EQ(log.lines,
              (QStringList{u"SettingsService: Failed to set launch at login: the system says no"_s,
                           u"SettingsService: Launch at login already disabled, skipping"_s}));
    EXPECT_EQ(scheduler.pending(), 0U);
}

TEST_F(SettingsServiceTest, ARefusedEndOfTheRegistrationDoesToo)
{
    SettingsService settings(dependencies());
    loginItem.isRefusing = true;
    log.lines.clear();
    settings.setLaunchAtLogin(false);
    EXPECT_FALSE(settings.launchAtLogin());
    turn();
    EXPECT_TRUE(settings.launchAtLogin());
    EXPECT_EQ(log.lines,
              (QStringList{u"SettingsService: Failed to set launch at login: the system says no"_s,
                           u"SettingsService: Launch at login already enabled, skipping"_s}));
    EXPECT_EQ(scheduler.pending(), 0U);
}

TEST_F(SettingsServiceTest, ACorrectionEndsWithTheService)
{
    loginItem.isRefusing = true;
    {
        const SettingsService settings(dependencies());
    }
    turn();
    EXPECT_EQ(log.lines.size(), 1);
}

TEST_F(SettingsServiceTest, WithoutALoginItemOnlyTheMemberChanges)
{
    {
        SettingsService settings(withoutLoginItem());
        EXPECT_FALSE(settings.isLaunchAtLoginAvailable());
        EXPECT_FALSE(settings.launchAtLogin());
        settings.setLaunchAtLogin(true);
        EXPECT_TRUE(settings.launchAtLogin());
    }
    EXPECT_FALSE(SettingsService(withoutLoginItem()).launchAtLogin());
    EXPECT_TRUE(loginItem.calls.isEmpty());
    EXPECT_TRUE(preferences.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(SettingsServiceTest, TheAppearanceIsTheSystemsAtFirst)
{
    EXPECT_EQ(storedMode(), AppearanceMode::system);
    EXPECT_TRUE(preferences.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(SettingsServiceTest, TheAppearanceIsStored)
{
    for (const AppearanceMode mode : allAppearanceModes) {
        SettingsService(withoutLoginItem()).setAppearanceMode(mode);
        EXPECT_EQ(preferences.string(modeName), rawValue(mode));
        EXPECT_EQ(storedMode(), mode);
    }
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(SettingsServiceTest, AnUnknownAppearanceIsTheSystems)
{
    preferences.setString(modeName, u"Dark"_s);
    EXPECT_EQ(storedMode(), AppearanceMode::system);
    EXPECT_EQ(preferences.string(modeName), u"Dark"_s) << "nothing is stored unasked";
    EXPECT_EQ(log.lines, QStringList{notUnderstood(modeName)});
}

TEST_F(SettingsServiceTest, LightAndDarkDecideAndSystemFollowsTheDesktop)
{
    SettingsService settings(withoutLoginItem());
    QObject::connect(&settings, &SettingsService::appearanceModeChanged, &settings,
                     [&] { events.append(rawValue(settings.appearanceMode())); });
    QObject::connect(&settings, &SettingsService::colorSchemeChanged, &settings, [&] {
        events.append(settings.colorScheme() == ColorScheme::dark ? u"is dark"_s : u"is light"_s);
    });
    EXPECT_EQ(settings.colorScheme(), ColorScheme::light);
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
    settings.setAppearanceMode(AppearanceMode::light);
    EXPECT_EQ(settings.colorScheme(), ColorScheme::light);
    settings.setAppearanceMode(AppearanceMode::dark);
    settings.setAppearanceMode(AppearanceMode::system);
    settings.setAppearanceMode(AppearanceMode::system);
    EXPECT_EQ(events, (QStringList{u"is dark"_s, u"is light"_s, u"light"_s, u"is dark"_s, u"dark"_s,
                                   u"system"_s}));
    events.clear();
    settings.setAppearanceMode(AppearanceMode::dark);
    appearance.setColorScheme(ColorScheme::light);
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(events, QStringList{u"dark"_s}) << "what nobody sees is not announced";
}

TEST_F(SettingsServiceTest, AStartIsInTheStoredAppearanceAtOnce)
{
    preferences.setString(modeName, u"dark"_s);
    EXPECT_EQ(SettingsService(withoutLoginItem()).colorScheme(), ColorScheme::dark);
    preferences.setString(modeName, u"system"_s);
    appearance.setColorScheme(ColorScheme::dark);
    EXPECT_EQ(SettingsService(withoutLoginItem()).colorScheme(), ColorScheme::dark);
    preferences.setString(modeName, u"light"_s);
    EXPECT_EQ(SettingsService(withoutLoginItem()).colorScheme(), ColorScheme::light);
}

TEST_F(SettingsServiceTest, WhatCannotBeStoredHoldsForTheRunAndIsTold)
{
    preferences.lasts = false;
    SettingsService settings(dependencies());
    EXPECT_EQ(log.lines, (QStringList{notStored, u"SettingsService: Launch at login enabled"_s}));
    log.lines.clear();
    settings.setAppearanceMode(AppearanceMode::dark);
    settings.setQuickSearchHotkey({u"f5"_s, ModifierFlags::control});
    EXPECT_EQ(log.lines, (QStringList{notStored, notStored}));
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(settings.quickSearchHotkey(), (HotkeyConfig{u"f5"_s, ModifierFlags::control}));
}

TEST_F(SettingsServiceTest, AFileThatCannotBeWrittenIsSuchAStore)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    // Below a file there can be no folder, whoever runs the test.
    SettingsFilePreferencesStore store(folder.filePath(u"file/vellumry.conf"_s));
    SettingsService settings(with(store));
    settings.setAppearanceMode(AppearanceMode::dark);
    EXPECT_EQ(settings.appearanceMode(), AppearanceMode::dark);
    EXPECT_EQ(log.lines,
              (QStringList{notStored, u"SettingsService: Launch at login enabled"_s, notStored}));
}

TEST_F(SettingsServiceTest, AFileWithStrangeValuesMeansTheDefaults)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"vellumry.conf"_s);
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[General]\nquickSearchHotkeyKey=a, b\n"
                   "quickSearchHotkeyModifiers=99999999999999999999\n"
                   "appearanceMode=1\nhasLaunchedBefore=1\n");
    }
    SettingsFilePreferencesStore store(path);
    const SettingsService settings(with(store));
    EXPECT_EQ(settings.quickSearchHotkey(), (HotkeyConfig{u"t"_s, ModifierFlags::option}));
    EXPECT_EQ(settings.appearanceMode(), AppearanceMode::system);
    EXPECT_TRUE(settings.launchAtLogin());
    EXPECT_EQ(log.lines, (QStringList{notUnderstood(keyName), notUnderstood(modifiersName),
                                      notUnderstood(modeName), notUnderstood(launchedName),
                                      u"SettingsService: Launch at login enabled"_s}));
}

} // namespace
} // namespace vellumry
