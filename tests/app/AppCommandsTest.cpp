#include "app/AppCommands.h"

#include "app/KeyEquivalent.h"
#include "notifications/NotificationCenter.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "support/FakeAppearance.h"
#include "support/FakeApplicationWindows.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using hotkey::ModifierFlags;
using testing::ElementsAre;

class NoHotkeyService final : public HotkeyServiceProtocol {
public:
    void registerGlobalHotkey(const QString&, ModifierFlags, std::function<void()>) override {}
    void unregisterHotkey() override {}
    void pauseHotkey() override {}
    void resumeHotkey() override {}
};

class AppCommandsTest : public testing::Test {
protected:
    QAction& item(const QString& title)
    {
        for (QAction* action : commands.actions()) {
            if (action->text() == title)
                return *action;
        }
        throw std::out_of_range(title.toStdString());
    }

    ManualScheduler scheduler;
    MemoryPreferences preferences;
    NotificationCenter center;
    NoHotkeyService hotkeys;
    FakeAppearance appearance;
    SettingsService settings{{preferences, hotkeys, center, appearance, scheduler, nullptr}};
    FakeApplicationWindows windows;
    int settingsShown = 0;
    int terminations = 0;
    int sidebarToggles = 0;
    AppCommands commands{{.windows = windows,
                          .notifications = center,
                          .settings = settings,
                          .showSettings = [this] { ++settingsShown; },
                          .terminate = [this] { ++terminations; },
                          .toggleSidebar = [this] { ++sidebarToggles; }}};
};

QStringList entriesOf(const AppCommands& commands)
{
    QStringList entries;
    for (const QMenu* menu : commands.menus()) {
        entries.append(menu->title());
        for (const QAction* action : menu->actions()) {
            entries.append(action->isSeparator()
                               ? QStringLiteral("-")
                               : action->text() + u' ' +
                                     action->shortcut().toString(QKeySequence::PortableText));
        }
    }
    return entries;
}

TEST_F(AppCommandsTest, standInTheirMenusInOrder)
{
    EXPECT_THAT(entriesOf(commands),
                ElementsAre(QStringLiteral("Vellumry"), QStringLiteral("Settings... Ctrl+,"),
                            QStringLiteral("Quit Vellumry Ctrl+Q"), QStringLiteral("File"),
                            QStringLiteral("New Snippet Ctrl+N"), QStringLiteral("Save Ctrl+S"),
                            QStringLiteral("Close Window Ctrl+W"), QStringLiteral("-"),
                            QStringLiteral("Import from JSON... Ctrl+Shift+I"),
                            QStringLiteral("Reveal Data in Finder Ctrl+Shift+E"),
                            QStringLiteral("View"), QStringLiteral("Toggle Sidebar Meta+Ctrl+S"),
                            QStringLiteral("Snippets"), QStringLiteral("Toggle Palette Alt+T")));
}

TEST_F(AppCommandsTest, announceThemselves)
{
    const auto announces = [this](const char16_t* title, auto signal) {
        const QSignalSpy spy(&center, signal);
        item(QString::fromUtf16(title)).trigger();
        return spy.count() == 1;
    };
    EXPECT_TRUE(announces(u"New Snippet", &NotificationCenter::createSnippet));
    EXPECT_TRUE(announces(u"Save", &NotificationCenter::performSave));
    EXPECT_TRUE(announces(u"Import from JSON...", &NotificationCenter::importSnippets));
    EXPECT_TRUE(announces(u"Reveal Data in Finder", &NotificationCenter::revealDataInFinder));
    EXPECT_TRUE(announces(u"Toggle Palette", &NotificationCenter::togglePalette));
}

TEST_F(AppCommandsTest, noCommandExports)
{
    const QSignalSpy exports(&center, &NotificationCenter::exportSnippets);
    for (QAction* action : commands.actions())
        action->trigger();
    EXPECT_EQ(exports.count(), 0);
    EXPECT_EQ(settingsShown, 1);
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(sidebarToggles, 1);
}

TEST_F(AppCommandsTest, closeWindowHidesTheKeyWindowIfThereIsOne)
{
    FakeWindow& other = windows.add(QStringLiteral("Other"));
    FakeWindow& window = windows.add(QStringLiteral("Key"));
    item(QStringLiteral("Close Window")).trigger();
    EXPECT_TRUE(window.visible);
    window.key = true;
    item(QStringLiteral("Close Window")).trigger();
    EXPECT_FALSE(window.visible);
    EXPECT_FALSE(window.closed);
    EXPECT_TRUE(other.visible);
}

TEST_F(AppCommandsTest, theShownHotKeyFollowsTheSetting)
{
    settings.setQuickSearchHotkey(
        {QStringLiteral("space"), ModifierFlags::command | ModifierFlags::option});
    EXPECT_EQ(item(QStringLiteral("Toggle Palette")).shortcut(),
              QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_Space));
}

TEST_F(AppCommandsTest, aHotKeyWithoutAnEquivalentShowsTheLetterOfTheDefaultOne)
{
    settings.setQuickSearchHotkey({QStringLiteral("f5"), ModifierFlags::control});
    EXPECT_EQ(item(QStringLiteral("Toggle Palette")).shortcut(),
              QKeySequence(Qt::META | Qt::Key_T));
}

TEST(KeyEquivalentTest, isTheEquivalentWithTheModifiers)
{
    const auto equivalent = [](const char16_t* key, ModifierFlags modifiers) {
        return keyEquivalent({QString::fromUtf16(key), modifiers});
    };
    EXPECT_EQ(equivalent(u"t", ModifierFlags::option), QKeySequence(Qt::ALT | Qt::Key_T));
    EXPECT_EQ(equivalent(u"-", ModifierFlags::command), QKeySequence(Qt::CTRL | Qt::Key_Minus));
    EXPECT_EQ(equivalent(u"delete", ModifierFlags::shift),
              QKeySequence(Qt::SHIFT | Qt::Key_Backspace));
    EXPECT_EQ(equivalent(u"enter", ModifierFlags::control),
              QKeySequence(Qt::META | Qt::Key_Return));
    EXPECT_EQ(equivalent(u"f12", ModifierFlags::control), QKeySequence(Qt::META | Qt::Key_T));
    EXPECT_EQ(equivalent(u"", ModifierFlags::option), QKeySequence(Qt::ALT | Qt::Key_T));
}

TEST(ShownHotKeyTest, knowsTheKeysThatMenusCallOtherwise)
{
    const auto equivalent = [](const char16_t* key, ModifierFlags modifiers) {
        return shownHotKey({QString::fromUtf16(key), modifiers});
    };
    EXPECT_EQ(equivalent(u"t", ModifierFlags::option), QKeySequence(Qt::ALT | Qt::Key_T));
    EXPECT_EQ(equivalent(u"f12", ModifierFlags::control), QKeySequence(Qt::META | Qt::Key_F12));
    EXPECT_EQ(equivalent(u"-", ModifierFlags::command), QKeySequence(Qt::CTRL | Qt::Key_Minus));
    EXPECT_EQ(equivalent(u",", ModifierFlags::shift), QKeySequence(Qt::SHIFT | Qt::Key_Comma));
    EXPECT_EQ(equivalent(u"delete", {}), QKeySequence(Qt::Key_Backspace));
    EXPECT_EQ(equivalent(u"escape", {}), QKeySequence(Qt::Key_Escape));
    EXPECT_EQ(equivalent(u"return", {}), QKeySequence(Qt::Key_Return));
    EXPECT_EQ(equivalent(u"tab", {}), QKeySequence(Qt::Key_Tab));
    EXPECT_TRUE(equivalent(u"", ModifierFlags::option).isEmpty());
}

} // namespace

} // namespace vellumry::test
