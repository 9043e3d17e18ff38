#include "app/MenuBarService.h"

#include "notifications/NotificationCenter.h"
#include "platform/StatusArea.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "support/FakeAppearance.h"
#include "support/FakeApplicationWindows.h"
#include "support/FakeStatusArea.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using hotkey::ModifierFlags;
using testing::ElementsAre;

class PausableHotkeyService final : public HotkeyServiceProtocol {
public:
    void registerGlobalHotkey(const QString&, ModifierFlags, std::function<void()>) override {}
    void unregisterHotkey() override {}
    void pauseHotkey() override { ++pauses; }
    void resumeHotkey() override {}
    [[nodiscard]] std::optional<hotkey::DesktopShortcut> desktopShortcut() const override
    {
        return shortcut;
    }
    void decide(const std::string& trigger)
    {
        shortcut = {hotkey::DesktopShortcut::State::granted, trigger};
        Q_EMIT desktopShortcutChanged();
    }

    int pauses = 0;
    std::optional<hotkey::DesktopShortcut> shortcut;
};

class MenuBarServiceTest : public testing::Test {
protected:
    MenuBarService::Dependencies dependencies()
    {
        return {.windows = windows,
                .statusArea = area,
                .notifications = center,
                .hotkeyService = hotkeys,
                .settings = settings,
                .scheduler = scheduler,
                .terminate = [this] { ++terminations; }};
    }

    QAction& item(const QString& title)
    {
        for (QAction* action : service.menu()->actions()) {
            if (action->text() == title)
                return *action;
        }
        throw std::out_of_range(title.toStdString());
    }

    QStringList printed() { return std::exchange(log.lines, {}); }

    LogCapture log;
    ManualScheduler scheduler;
    MemoryPreferences preferences;
    NotificationCenter center;
    PausableHotkeyService hotkeys;
    FakeAppearance appearance;
    SettingsService settings{{preferences, hotkeys, center, appearance, scheduler, nullptr}};
    FakeApplicationWindows windows;
    FakeStatusArea area;
    int terminations = 0;
    MenuBarService service{dependencies()};
};

TEST_F(MenuBarServiceTest, theItemWaitsForTheStatusArea)
{
    EXPECT_EQ(area.starts, 0) << "the start comes first";
    scheduler.advance(0ms);
    EXPECT_EQ(area.starts, 1);
    EXPECT_EQ(service.item(), nullptr);
    Q_EMIT center.hotkeyDidChange({QStringLiteral("k"), ModifierFlags::command});
    Q_EMIT area.appeared();
    ASSERT_NE(service.item(), nullptr);
    EXPECT_EQ(service.item()->contextMenu(), service.menu());
    EXPECT_FALSE(service.item()->icon().isNull());
    EXPECT_TRUE(printed().isEmpty());
}

TEST_F(MenuBarServiceTest, aMenuThatClosesIsTheItemsMenuAgain)
{
    Q_EMIT area.appeared();
    service.item()->setContextMenu(nullptr);
    Q_EMIT service.menu()->aboutToHide();
    EXPECT_EQ(service.item()->contextMenu(), service.menu());
}

TEST_F(MenuBarServiceTest, saysOnceThatThereIsNoStatusArea)
{
    scheduler.advance(0ms);
    Q_EMIT area.missing();
    EXPECT_EQ(service.item(), nullptr);
    EXPECT_EQ(printed().size(), 1);
    Q_EMIT area.appeared();
    EXPECT_NE(service.item(), nullptr) << "it may still come";
}

TEST_F(MenuBarServiceTest, offersItsCommandsInOrder)
{
    Q_EMIT area.appeared();
    QStringList entries;
    for (const QAction* action : service.menu()->actions()) {
        entries.append(action->isSeparator()
                           ? QStringLiteral("-")
                           : action->text() + u' ' +
                                 action->shortcut().toString(QKeySequence::PortableText) +
                                 (action->icon().isNull() ? QString() : QStringLiteral(" icon")));
    }
    EXPECT_THAT(entries, ElementsAre(QStringLiteral("Open Vellumry Ctrl+O icon"),
                                     QStringLiteral("Quick Search Alt+T icon"), QStringLiteral("-"),
                                     QStringLiteral("New Snippet Ctrl+N icon"), QStringLiteral("-"),
                                     QStringLiteral("Settings... Ctrl+, icon"), QStringLiteral("-"),
                                     QStringLiteral("Quit Vellumry Ctrl+Q")));
}

TEST_F(MenuBarServiceTest, quickSearchShowsTheKeysThatTheDesktopGave)
{
    hotkeys.decide("Ctrl+Alt+V");
    Q_EMIT area.appeared();
    const QAction& search = item(QStringLiteral("Quick Search"));
    EXPECT_EQ(search.shortcut(), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_V));
    hotkeys.decide("Meta+B");
    EXPECT_EQ(search.shortcut(), QKeySequence(Qt::META | Qt::Key_B));
    hotkeys.decide("Press <Super>v");
    EXPECT_TRUE(search.shortcut().isEmpty()) << "which no menu can show";
    hotkeys.decide("");
    EXPECT_TRUE(search.shortcut().isEmpty());
}

TEST_F(MenuBarServiceTest, quickSearchShowsTheHotKeyOfTheMoment)
{
    Q_EMIT area.appeared();
    Q_EMIT center.hotkeyDidChange(
        {QStringLiteral("K"),
         {(ModifierFlags::control | ModifierFlags::shift).rawValue | 0x800000}});
    EXPECT_EQ(item(QStringLiteral("Quick Search")).shortcut(),
              QKeySequence(Qt::META | Qt::SHIFT | Qt::Key_K));
}

TEST_F(MenuBarServiceTest, aMissingLogoIsToldAndReplaced)
{
    MenuBarService::Dependencies changed = dependencies();
    changed.logoFile = QStringLiteral(":/icons/missing.svg");
    const MenuBarService logoless(std::move(changed));
    Q_EMIT area.appeared();
    EXPECT_THAT(printed(), ElementsAre(QStringLiteral("MenuBarService: Failed to load SidebarLogo "
                                                      "from Bundle.module")));
    EXPECT_FALSE(logoless.item()->icon().isNull());
}

TEST_F(MenuBarServiceTest, opensWhateverCanPassForTheMainWindow)
{
    const QSignalSpy requests(&center, &NotificationCenter::openMainWindow);
    Q_EMIT area.appeared();
    windows.add(QStringLiteral("AppKitWindow"), true);
    for (const char* word : {"Settings", "About", "Alert", "Panel", "Popover", "Menu"})
        windows.add(QLatin1StringView(word) + QStringLiteral("AppKitWindow"));
    FakeWindow& narrow = windows.add(QStringLiteral("Unknown"));
    narrow.frame = {600.0, 401.0};
    FakeWindow& low = windows.add(QStringLiteral("Unknown"));
    low.frame = {601.0, 400.0};
    FakeWindow& empty = windows.add(QStringLiteral("Unknown"));
    empty.hasContents = false;
    item(QStringLiteral("Open Vellumry")).trigger();
    EXPECT_EQ(requests.count(), 1);
    EXPECT_THAT(
        printed(),
        ElementsAre(QStringLiteral("MenuBarService.openMainWindow called"),
                    QStringLiteral("Windows count: 10"),
                    QStringLiteral("No window found in MenuBarService, posting notification")));
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate")));

    windows.calls.clear();
    FakeWindow& unknown = windows.add(QStringLiteral("Unknown"));
    unknown.frame = {601.0, 401.0};
    item(QStringLiteral("Open Vellumry")).trigger();
    EXPECT_EQ(unknown.frontCount, 1);
    EXPECT_EQ(requests.count(), 1);
    EXPECT_EQ(printed().last(), QStringLiteral("Found window in MenuBarService: Unknown"));
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate"),
                                           QStringLiteral("activate")));
}

TEST_F(MenuBarServiceTest, knownNamesNeedNoSize)
{
    for (const char* name : {"AppKitWindow", "SwiftUIHost", "NSWindow", "ToastNSWindow"}) {
        FakeWindow& window = windows.add(QString::fromLatin1(name));
        window.frame = {1, 1};
        window.hasContents = false;
        service.openMainWindow();
        EXPECT_EQ(window.frontCount, 1) << name;
        windows.remove(window);
    }
}

TEST_F(MenuBarServiceTest, aNewSnippetComesOnceTheWindowIsUp)
{
    const QSignalSpy requests(&center, &NotificationCenter::openMainWindow);
    const QSignalSpy snippets(&center, &NotificationCenter::createSnippet);
    Q_EMIT area.appeared();
    item(QStringLiteral("New Snippet")).trigger();
    EXPECT_EQ(requests.count(), 1);
    scheduler.advance(99ms);
    EXPECT_EQ(snippets.count(), 0);
    scheduler.advance(1ms);
    EXPECT_EQ(snippets.count(), 1);
}

TEST_F(MenuBarServiceTest, quickSearchAndQuitDoWhatTheySay)
{
    const QSignalSpy toggles(&center, &NotificationCenter::togglePalette);
    Q_EMIT area.appeared();
    item(QStringLiteral("Quick Search")).trigger();
    EXPECT_EQ(toggles.count(), 1);
    item(QStringLiteral("Quit Vellumry")).trigger();
    EXPECT_EQ(terminations, 1);
}

TEST_F(MenuBarServiceTest, theSettingsCloseThePalettePauseTheHotKeyAndOpenByTheMenu)
{
    const QSignalSpy dismissals(&center, &NotificationCenter::dismissQuickSearch);
    Q_EMIT area.appeared();
    for (const QString& title : {QStringLiteral("Settings…"), QStringLiteral("Preferences..."),
                                 QStringLiteral("打开设置")}) {
        int opened = 0;
        windows.menus = {
            {QStringLiteral("Vellumry"),
             {{QStringLiteral("About"), [] { FAIL() << "another item"; }},
              {title, [&opened] { ++opened; }},
              {QStringLiteral("Settings, too"), [] { FAIL() << "the first one counts"; }}}}};
        item(QStringLiteral("Settings...")).trigger();
        EXPECT_EQ(opened, 1) << title.toStdString();
    }
    EXPECT_EQ(dismissals.count(), 3);
    EXPECT_EQ(hotkeys.pauses, 3);
    EXPECT_THAT(windows.calls.mid(0, 2),
                ElementsAre(QStringLiteral("regular"), QStringLiteral("activate")));
    EXPECT_EQ(windows.calls.size(), 6) << "no other way was tried";
}

TEST_F(MenuBarServiceTest, withoutAMenuTheSettingsOpenByTheirShortcutOrElseByName)
{
    windows.menus = {{QStringLiteral("Vellumry"), {{QStringLiteral("Quit"), [] {}}}},
                     {QStringLiteral("File"), {{QStringLiteral("Settings"), [] {}}}}};
    windows.canPostKeys = true;
    service.openSettings();
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate"),
                                           QStringLiteral("shortcut")));
    windows.calls.clear();
    windows.menus.clear();
    windows.canPostKeys = false;
    service.openSettings();
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate"),
                                           QStringLiteral("shortcut"), QStringLiteral("settings")));
}

} // namespace

} // namespace vellumry::test
