#include "app/MainWindowKeeper.h"

#include "notifications/NotificationCenter.h"
#include "support/FakeApplicationWindows.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"

#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

const QString mainClass = QStringLiteral("SwiftUI.AppKitWindow");

class MainWindowKeeperTest : public testing::Test {
protected:
    /// What was printed since the last call.
    QStringList printed() { return std::exchange(log.lines, {}); }

    LogCapture log;
    ManualScheduler scheduler;
    NotificationCenter center;
    FakeApplicationWindows windows;
    std::unique_ptr<MainWindowKeeper> ownKeeper = std::make_unique<MainWindowKeeper>(
        MainWindowKeeper::Dependencies{windows, center, scheduler});
    MainWindowKeeper& keeper = *ownKeeper;
};

TEST_F(MainWindowKeeperTest, theFullTestLooksAtKindAndClassNameAlone)
{
    EXPECT_TRUE(MainWindowKeeper::isSwiftUIMainWindow(FakeWindow(mainClass)));
    EXPECT_TRUE(MainWindowKeeper::isSwiftUIMainWindow(FakeWindow(QStringLiteral("AppKitWindow"))));
    EXPECT_FALSE(MainWindowKeeper::isSwiftUIMainWindow(FakeWindow(mainClass, true)));
    EXPECT_FALSE(MainWindowKeeper::isSwiftUIMainWindow(FakeWindow(QStringLiteral("NSWindow"))));
    EXPECT_FALSE(MainWindowKeeper::isSwiftUIMainWindow(FakeWindow(QStringLiteral("appkitwindow"))));
    for (const char* word :
         {"Settings", "About", "Alert", "Popover", "Menu", "StatusBar", "Toast"}) {
        EXPECT_FALSE(MainWindowKeeper::isSwiftUIMainWindow(
            FakeWindow(QLatin1StringView(word) + QStringLiteral("AppKitWindow"))))
            << word;
    }
}

TEST_F(MainWindowKeeperTest, adoptsTheWindowThatTheGroupHasMade)
{
    windows.add(mainClass, true);
    windows.add(QStringLiteral("AppKitWindowSettings"));
    windows.add(QStringLiteral("NSWindow"));
    FakeWindow& window = windows.add(QStringLiteral("AlertAppKitWindow"));
    keeper.setupMainWindowWithRetry(5, 300ms);
    scheduler.advance(299ms);
    EXPECT_EQ(keeper.mainWindow(), nullptr);
    scheduler.advance(1ms);
    EXPECT_EQ(keeper.mainWindow(), &window) << "the narrow test knows two words only";
    EXPECT_EQ(window.frontCount, 1);
    EXPECT_NE(window.delegate, nullptr);
    EXPECT_FALSE(window.releasedWhenClosed);
    EXPECT_THAT(printed(),
                ElementsAre(QStringLiteral("Main window delegate set: AlertAppKitWindow, attempts "
                                           "remaining: 5")));
    EXPECT_EQ(scheduler.pending(), 0U);
}

TEST_F(MainWindowKeeperTest, adoptsAWindowThatComesLate)
{
    keeper.setupMainWindowWithRetry(5, 300ms);
    scheduler.advance(1'499ms);
    windows.add(mainClass);
    printed();
    scheduler.advance(1ms);
    EXPECT_NE(keeper.mainWindow(), nullptr);
    EXPECT_THAT(printed(), ElementsAre(QStringLiteral("Main window delegate set: "
                                                      "SwiftUI.AppKitWindow, attempts "
                                                      "remaining: 1")));
}

TEST_F(MainWindowKeeperTest, withoutAWindowTheAttemptsPrintSixLinesInOneAndAHalfSeconds)
{
    keeper.setupMainWindowWithRetry(5, 300ms);
    scheduler.advance(1'500ms);
    const QString retrying = QStringLiteral(
        "setupMainWindowWithRetry: Window not found, retrying... attempts remaining: %1");
    EXPECT_THAT(printed(),
                ElementsAre(retrying.arg(4), retrying.arg(3), retrying.arg(2), retrying.arg(1),
                            retrying.arg(0),
                            QStringLiteral("setupMainWindowWithRetry: All attempts exhausted, no "
                                           "main window found")));
    EXPECT_EQ(scheduler.pending(), 0U);
    EXPECT_EQ(keeper.mainWindow(), nullptr);
}

TEST_F(MainWindowKeeperTest, opensTheWindowThatIsThere)
{
    windows.add(QStringLiteral("Panel"), true);
    FakeWindow& window = windows.add(mainClass);
    window.visible = false;
    keeper.openOrCreateMainWindow();
    EXPECT_TRUE(window.visible);
    EXPECT_EQ(keeper.mainWindow(), &window);
    EXPECT_NE(window.delegate, nullptr);
    EXPECT_FALSE(window.releasedWhenClosed);
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate")));
    EXPECT_THAT(
        printed(),
        ElementsAre(
            QStringLiteral("openOrCreateMainWindow called"),
            QStringLiteral("All windows: [\"Panel - visible: true\", "
                           "\"SwiftUI.AppKitWindow - visible: false\"]"),
            QStringLiteral("Found 1 main window(s)"),
            QStringLiteral("Using existing main window: SwiftUI.AppKitWindow, visible: false")));
}

TEST_F(MainWindowKeeperTest, twoRequestsWithinTheGuardsTimeAreOne)
{
    FakeWindow& window = windows.add(mainClass);
    keeper.openOrCreateMainWindow();
    printed();
    scheduler.advance(299ms);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(window.frontCount, 1);
    EXPECT_THAT(
        printed(),
        ElementsAre(QStringLiteral("openOrCreateMainWindow called"),
                    QStringLiteral("openOrCreateMainWindow: already in progress, skipping")));
    scheduler.advance(1ms);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(window.frontCount, 2);
}

TEST_F(MainWindowKeeperTest, closesAllMainWindowsButTheFirst)
{
    FakeWindow& first = windows.add(mainClass);
    FakeWindow& settings = windows.add(QStringLiteral("SettingsAppKitWindow"));
    FakeWindow& second = windows.add(QStringLiteral("AppKitWindow2"));
    keeper.openOrCreateMainWindow();
    EXPECT_FALSE(first.closed);
    EXPECT_FALSE(settings.closed);
    EXPECT_TRUE(second.closed);
    EXPECT_EQ(keeper.mainWindow(), &first);
    EXPECT_THAT(
        printed().mid(2, 4),
        ElementsAre(QStringLiteral("Found 2 main window(s)"),
                    QStringLiteral("WARNING: Multiple main windows detected, closing extras"),
                    QStringLiteral("Closing duplicate window: AppKitWindow2"),
                    QStringLiteral("Using existing main window: SwiftUI.AppKitWindow, "
                                   "visible: true")));
}

TEST_F(MainWindowKeeperTest, closingTheMainWindowHidesItAndItReturnsAsItWas)
{
    FakeWindow& window = windows.add(mainClass);
    keeper.openOrCreateMainWindow();
    scheduler.advance(300ms);
    window.performClose();
    EXPECT_FALSE(window.visible);
    EXPECT_FALSE(window.closed);
    printed();
    EXPECT_FALSE(keeper.applicationShouldHandleReopen(false));
    EXPECT_TRUE(window.visible);
    EXPECT_EQ(keeper.mainWindow(), &window);
    EXPECT_EQ(printed().first(),
              QStringLiteral("applicationShouldHandleReopen called, hasVisibleWindows: false"));
}

TEST_F(MainWindowKeeperTest, reopeningWithVisibleWindowsOnlyRaisesTheMainWindow)
{
    EXPECT_TRUE(keeper.applicationShouldHandleReopen(true));
    EXPECT_TRUE(windows.all.empty()) << "with none, nothing";
    windows.add(QStringLiteral("NSWindow"));
    FakeWindow& window = windows.add(mainClass);
    EXPECT_TRUE(keeper.applicationShouldHandleReopen(true));
    EXPECT_EQ(window.frontCount, 1);
    EXPECT_EQ(keeper.mainWindow(), nullptr);
    const QString line =
        QStringLiteral("applicationShouldHandleReopen called, hasVisibleWindows: true");
    EXPECT_THAT(printed(), ElementsAre(line, line));
}

TEST_F(MainWindowKeeperTest, withoutAFileMenuAWindowIsMadeThatTheWaitDoesNotSee)
{
    windows.menus = {{QStringLiteral("Vellumry"), {{QStringLiteral("New Window"), [] {}}}}};
    keeper.openOrCreateMainWindow();
    ASSERT_EQ(windows.all.size(), 1U);
    FakeWindow& window = *windows.all.front();
    EXPECT_TRUE(window.visible);
    EXPECT_EQ(keeper.mainWindow(), &window);
    EXPECT_NE(window.delegate, nullptr);
    EXPECT_FALSE(window.releasedWhenClosed);
    EXPECT_THAT(
        printed(),
        ElementsAre(QStringLiteral("openOrCreateMainWindow called"),
                    QStringLiteral("All windows: []"), QStringLiteral("Found 0 main window(s)"),
                    QStringLiteral("Clearing invalid mainWindowRef"),
                    QStringLiteral("No window found, attempting to create new window..."),
                    QStringLiteral("Menu method failed, creating window programmatically..."),
                    QStringLiteral("Main window created programmatically")));
    scheduler.advance(999ms);
    const QString retrying =
        QStringLiteral("waitForWindowCreation: Window not ready, retrying... attempts: %1");
    EXPECT_THAT(printed(),
                ElementsAre(retrying.arg(4), retrying.arg(3), retrying.arg(2), retrying.arg(1)));
    scheduler.advance(1ms);
    EXPECT_THAT(printed(),
                ElementsAre(retrying.arg(0),
                            QStringLiteral("waitForWindowCreation: All attempts exhausted")));

    scheduler.advance(299ms);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(printed().last(),
              QStringLiteral("openOrCreateMainWindow: already in progress, skipping"));
    scheduler.advance(1ms);
    window.performClose();
    keeper.openOrCreateMainWindow();
    EXPECT_TRUE(window.visible);
    EXPECT_EQ(windows.all.size(), 1U);
    EXPECT_EQ(printed().last(), QStringLiteral("Using saved window reference: NSWindow"));
}

TEST_F(MainWindowKeeperTest, aWindowThatHasGoneIsMadeAnew)
{
    keeper.openOrCreateMainWindow();
    scheduler.advance(2s);
    windows.remove(*windows.all.front());
    EXPECT_EQ(keeper.mainWindow(), nullptr);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(windows.all.size(), 1U);
    EXPECT_EQ(keeper.mainWindow(), windows.all.front().get());
}

TEST_F(MainWindowKeeperTest, aWindowThatIsNoLongerListedIsNotUsed)
{
    keeper.openOrCreateMainWindow();
    scheduler.advance(2s);
    windows.all.front()->closed = true;
    printed();
    bool isForgotten = false;
    windows.menus = {{QStringLiteral("File"), {{QStringLiteral("New Window"), [&] {
                                                    isForgotten = keeper.mainWindow() == nullptr;
                                                    windows.add(mainClass);
                                                }}}}};
    keeper.openOrCreateMainWindow();
    EXPECT_THAT(printed(), testing::Contains(QStringLiteral("Clearing invalid mainWindowRef")));
    EXPECT_TRUE(isForgotten);
    scheduler.advance(200ms);
    EXPECT_EQ(keeper.mainWindow(), windows.all.back().get());
}

TEST_F(MainWindowKeeperTest, theFileMenuMakesTheWindow)
{
    windows.menus = {{QStringLiteral("Vellumry"), {}},
                     {QStringLiteral("File"),
                      {{QStringLiteral("新建窗口"), [] { FAIL() << "a later title"; }},
                       {QStringLiteral("New Window"), {}},
                       {QStringLiteral("New"), [this] {
                            scheduler.after(250ms, &windows, [this] { windows.add(mainClass); });
                        }}}}};
    keeper.openOrCreateMainWindow();
    EXPECT_THAT(printed().mid(4),
                ElementsAre(QStringLiteral("No window found, attempting to create new window..."),
                            QStringLiteral("Trying menu item: New")));
    scheduler.advance(399ms);
    EXPECT_EQ(keeper.mainWindow(), nullptr);
    scheduler.advance(1ms);
    ASSERT_NE(keeper.mainWindow(), nullptr);
    const FakeWindow& window = *windows.all.front();
    EXPECT_EQ(window.frontCount, 1);
    EXPECT_NE(window.delegate, nullptr);
    EXPECT_FALSE(window.releasedWhenClosed);
    EXPECT_THAT(printed(),
                ElementsAre(QStringLiteral(
                                "waitForWindowCreation: Window not ready, retrying... attempts: 4"),
                            QStringLiteral("Window found after waiting: SwiftUI.AppKitWindow")));
    scheduler.advance(299ms);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(printed().last(),
              QStringLiteral("openOrCreateMainWindow: already in progress, skipping"));
    scheduler.advance(1ms);
    keeper.openOrCreateMainWindow();
    EXPECT_EQ(window.frontCount, 2);
    EXPECT_EQ(windows.calls.count(QStringLiteral("create")), 0);
}

TEST_F(MainWindowKeeperTest, aFileMenuWithoutAFittingItemIsNoWay)
{
    windows.menus = {{QStringLiteral("File"), {{QStringLiteral("New Snippet"), [] {}}}}};
    keeper.openOrCreateMainWindow();
    EXPECT_TRUE(windows.calls.contains(QStringLiteral("create")));
}

TEST_F(MainWindowKeeperTest, theWaitEndsWithItsCompletionAlsoWithoutTheKeeper)
{
    int completions = 0;
    keeper.waitForWindowCreation(5, 200ms, [&completions] { ++completions; });
    ownKeeper.reset();
    scheduler.advance(200ms);
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(scheduler.pending(), 0U);
    EXPECT_TRUE(printed().isEmpty());
}

TEST_F(MainWindowKeeperTest, noAttemptsAreExhaustedAtOnce)
{
    int completions = 0;
    keeper.waitForWindowCreation(0, 200ms, [&completions] { ++completions; });
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(printed(),
                ElementsAre(QStringLiteral("waitForWindowCreation: All attempts exhausted")));
}

TEST_F(MainWindowKeeperTest, aMainWindowThatBecomesKeyIsTheOnlyOne)
{
    keeper.setupWindowMonitor();
    FakeWindow& first = windows.add(mainClass);
    FakeWindow& hidden = windows.add(mainClass);
    hidden.visible = false;
    FakeWindow& second = windows.add(mainClass);
    FakeWindow& other = windows.add(QStringLiteral("NSWindow"));
    // Each closing makes another window key.
    first.onClose = [&] { Q_EMIT windows.windowDidBecomeKey(&hidden); };
    Q_EMIT windows.windowDidBecomeKey(&other);
    EXPECT_TRUE(printed().isEmpty());
    Q_EMIT windows.windowDidBecomeKey(&second);
    EXPECT_TRUE(first.closed);
    EXPECT_TRUE(hidden.closed) << "visible or not";
    EXPECT_FALSE(second.closed);
    EXPECT_FALSE(other.closed);
    EXPECT_EQ(keeper.mainWindow(), &second);
    EXPECT_NE(second.delegate, nullptr);
    EXPECT_FALSE(second.releasedWhenClosed);
    const auto line = [](const FakeWindow& window) {
        return QStringLiteral("Closing duplicate window: SwiftUI.AppKitWindow - "
                              "<SwiftUI.AppKitWindow: 0x%1>")
            .arg(reinterpret_cast<quintptr>(static_cast<const ApplicationWindow*>(&window)), 0, 16);
    };
    EXPECT_THAT(printed(),
                ElementsAre(QStringLiteral("WARNING: Detected 3 main windows, closing duplicates"),
                            line(first), line(hidden)));

    windows.add(mainClass);
    Q_EMIT windows.windowDidBecomeKey(&second);
    EXPECT_EQ(printed().first(),
              QStringLiteral("WARNING: Detected 2 main windows, closing duplicates"))
        << "the guard is free again";
}

TEST_F(MainWindowKeeperTest, oneMainWindowIsNotAdoptedByBecomingKey)
{
    FakeWindow& window = windows.add(mainClass);
    keeper.closeDuplicateMainWindows(window);
    EXPECT_EQ(keeper.mainWindow(), nullptr);
    EXPECT_EQ(window.delegate, nullptr);
    EXPECT_TRUE(printed().isEmpty());
}

TEST_F(MainWindowKeeperTest, theAppearanceBringsTheFirstWindowToTheFrontWhicheverItIs)
{
    keeper.onMainWindowAppear();
    scheduler.advance(100ms);
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("activate")));
    FakeWindow& panel = windows.add(QStringLiteral("Panel"), true);
    const FakeWindow& window = windows.add(mainClass);
    keeper.onMainWindowAppear();
    scheduler.advance(99ms);
    EXPECT_EQ(panel.frontCount, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(panel.frontCount, 1);
    EXPECT_EQ(window.frontCount, 0);
}

TEST_F(MainWindowKeeperTest, activatingPrefersAVisibleMainWindow)
{
    const QSignalSpy requests(&center, &NotificationCenter::openMainWindow);
    windows.add(mainClass, true);
    windows.add(QStringLiteral("AppKitWindowSettings"));
    keeper.activateMainWindow();
    EXPECT_EQ(requests.count(), 1) << "neither a panel nor the settings";

    FakeWindow& hidden = windows.add(mainClass);
    hidden.visible = false;
    keeper.activateMainWindow();
    EXPECT_EQ(hidden.frontCount, 1);
    hidden.visible = false;
    const FakeWindow& visible = windows.add(QStringLiteral("MenuAppKitWindow"));
    keeper.activateMainWindow();
    EXPECT_EQ(visible.frontCount, 1);
    EXPECT_EQ(hidden.frontCount, 1);
    EXPECT_EQ(requests.count(), 1);
    EXPECT_EQ(windows.calls.count(QStringLiteral("activate")), 3);
}

} // namespace

} // namespace vellumry::test
