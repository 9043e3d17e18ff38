#include "settings/SettingsService.h"

#include "notifications/NotificationCenter.h"
#include "settings/HotkeyServiceProtocol.h"
#include "support/MemoryPreferences.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

const QString keyName = u"quickSearchHotkeyKey"_s;
const QString modifiersName = u"quickSearchHotkeyModifiers"_s;

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
    [[nodiscard]] SettingsService::Dependencies dependencies()
    {
        return {preferences, hotkeyService, notifications};
    }
    [[nodiscard]] HotkeyConfig storedHotkey()
    {
        return SettingsService(dependencies()).quickSearchHotkey();
    }

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
    EXPECT_EQ(SettingsService({other, hotkeyService, notifications}).quickSearchHotkey(),
              (HotkeyConfig{u"t"_s, ModifierFlags::command}));
}

TEST_F(SettingsServiceTest, ValuesOfAnotherTypeAreTheDefault)
{
    preferences.setInteger(keyName, 5);
    preferences.setString(modifiersName, u"many"_s);
    EXPECT_EQ(storedHotkey(), (HotkeyConfig{u"t"_s, ModifierFlags::option}));
}

TEST_F(SettingsServiceTest, NegativeModifiersAreFatal)
{
    preferences.setInteger(modifiersName, -1);
    EXPECT_DEATH((void)storedHotkey(), "modifiers");
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

} // namespace
} // namespace vellumry
