#include "app/QtApplicationWindows.h"

#include "app/AppCommands.h"
#include "app/MainWindowKeeper.h"
#include "notifications/NotificationCenter.h"
#include "platform/PanelActivation.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "support/Eventually.h"
#include "support/FakeAppearance.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"
#include "views/common/Theme.h"
#include "views/common/ToastWindow.h"
#include "views/palette/KeyablePanel.h"
#include "views/window/ContentsGround.h"
#include "views/window/MainWindow.h"
#include "views/window/SettingsWindow.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

class QtActivation final : public PanelActivation {
public:
    void prepareToShow(QWindow&) override {}
    void activate(QWindow& window) override { window.requestActivate(); }
    [[nodiscard]] bool isCompositing() const override { return true; }
};

class IdleHotkeyService final : public HotkeyServiceProtocol {
public:
    void registerGlobalHotkey(const QString&, hotkey::ModifierFlags, std::function<void()>) override
    {
    }
    void unregisterHotkey() override {}
    void pauseHotkey() override {}
    void resumeHotkey() override {}
};

class QtApplicationWindowsTest : public testing::Test {
protected:
    /// The main windows among all windows, by the full test.
    QList<ApplicationWindow*> mainWindows()
    {
        QList<ApplicationWindow*> found;
        for (ApplicationWindow* window : windows.windows()) {
            if (MainWindowKeeper::isSwiftUIMainWindow(*window))
                found.append(window);
        }
        return found;
    }

    static MainWindow& widgetOf(const ApplicationWindow& window)
    {
        return *qobject_cast<MainWindow*>(window.parent());
    }

    LogCapture log;
    ManualScheduler scheduler;
    MemoryPreferences preferences;
    NotificationCenter center;
    IdleHotkeyService hotkeys;
    FakeAppearance appearance;
    SettingsService settings{{preferences, hotkeys, center, appearance, scheduler, nullptr}};
    QtActivation activation;
    Theme theme{ColorScheme::light};
    int contentsMade = 0;
    std::unique_ptr<AppCommands> commands;
    QtApplicationWindows windows{
        {.activation = activation,
         .commands = [this]() -> AppCommands& { return *commands; },
         .scheduler = scheduler,
         .makeGround = [this] { return new ContentsGround(theme, ContentsGround::Kind::columns); },
         .makeMainContents =
             [this] {
                 ++contentsMade;
                 return new QLineEdit;
             },
         .makeSettingsContents = [] { return new QLabel; }}};

    void SetUp() override
    {
        commands = std::make_unique<AppCommands>(
            AppCommands::Dependencies{.windows = windows,
                                      .notifications = center,
                                      .settings = settings,
                                      .showSettings = [this] { windows.showSettingsWindow(); },
                                      .terminate = [] {},
                                      .toggleSidebar = [] {}});
    }
};

TEST_F(QtApplicationWindowsTest, nothingIsBuiltBeforeItIsNeeded)
{
    (void)windows.windows();
    (void)windows.mainMenu();
    EXPECT_FALSE(windows.hasVisibleWindows());
    EXPECT_EQ(contentsMade, 0);
}

TEST_F(QtApplicationWindowsTest, aWindowIsActiveAlsoWhenTheKeyboardComesBackUnnoticed)
{
    KeyablePanel panel(activation);
    const QSignalSpy gained(&panel, &KeyablePanel::gainedKeyStatus);
    panel.orderFront();
    ASSERT_TRUE(eventually([&] { return panel.isKey(); }));
    Q_EMIT activation.keyboardCameBack(panel.windowHandle());
    EXPECT_EQ(gained.size(), 1);
    panel.orderOut();
    ASSERT_FALSE(panel.isKey());
    Q_EMIT activation.keyboardCameBack(panel.windowHandle());
    EXPECT_FALSE(panel.isKey()) << "it is hidden again by now";
    panel.show();
    QApplication::setActiveWindow(nullptr);
    QWidget other;
    other.winId();
    Q_EMIT activation.keyboardCameBack(other.windowHandle());
    EXPECT_FALSE(panel.isKey());
    Q_EMIT activation.keyboardCameBack(panel.windowHandle());
    EXPECT_TRUE(panel.isKey());
    EXPECT_EQ(gained.size(), 2);
}

TEST_F(QtApplicationWindowsTest, whatAClickHasChosenKeepsTheKeyboard)
{
    windows.openWindowOfGroup();
    ApplicationWindow& handle = *mainWindows().first();
    MainWindow& window = widgetOf(handle);
    ASSERT_TRUE(eventually([&] { return window.isActiveWindow(); }));
    QLineEdit field(window.centralWidget());
    field.setGeometry(10, 10, 100, 30);
    field.show();
    const QPoint place = field.mapTo(&window, field.rect().center());
    QTest::mouseMove(window.windowHandle(), place);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, place);
    ASSERT_TRUE(field.hasFocus());
    handle.makeContentViewFirstResponder();
    EXPECT_TRUE(field.hasFocus());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, place);
    handle.makeContentViewFirstResponder();
    EXPECT_FALSE(field.hasFocus());
}

TEST_F(QtApplicationWindowsTest, theGroupsWindowIsAMainWindowAndAnnouncesItselfOnce)
{
    const QSignalSpy appearances(&windows, &ApplicationWindows::mainWindowDidAppear);
    KeyablePanel panel(activation);
    panel.winId();
    windows.openWindowOfGroup();
    ASSERT_EQ(mainWindows().size(), 1);
    ApplicationWindow& window = *mainWindows().first();
    EXPECT_EQ(windows.windows().first(), &window) << "main windows come first";
    EXPECT_TRUE(window.className().endsWith(QStringLiteral("AppKitWindow")));
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(window.hasContentView());
    EXPECT_GE(window.frameSize().width(), 1024);
    EXPECT_EQ(widgetOf(window).centralWidget()->minimumSize(), QSize(928, 560));
    EXPECT_EQ(widgetOf(window).windowTitle(), QStringLiteral("Vellumry"));
    window.orderOut();
    EXPECT_FALSE(window.isVisible());
    window.makeKeyAndOrderFront();
    EXPECT_EQ(appearances.count(), 1);
    EXPECT_TRUE(windows.hasVisibleWindows());
}

TEST_F(QtApplicationWindowsTest, theFirstWindowShowsTheGroundBeforeItsContentsAreMade)
{
    const QSignalSpy appearances(&windows, &ApplicationWindows::mainWindowDidAppear);
    int filled = 0;
    windows.openWindowOfGroupAtOnce([&filled] { ++filled; });
    ASSERT_EQ(mainWindows().size(), 1);
    const MainWindow& window = widgetOf(*mainWindows().first());
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(qobject_cast<ContentsGround*>(window.centralWidget()));
    EXPECT_EQ(window.centralWidget()->minimumSize(), QSize(928, 560));
    EXPECT_EQ(contentsMade, 0);
    EXPECT_EQ(appearances.count(), 0);
    ASSERT_TRUE(eventually([&] { return filled > 0; })) << "no time has passed, but it is painted";
    EXPECT_TRUE(qobject_cast<QLineEdit*>(window.centralWidget()));
    EXPECT_EQ(appearances.count(), 1);
    EXPECT_FALSE(window.menuBar()->actions().isEmpty());
    windows.fillWindow();
    EXPECT_EQ(contentsMade, 1) << "once";
    EXPECT_EQ(filled, 1);
}

TEST_F(QtApplicationWindowsTest, aCommandInBetweenFillsTheFirstWindow)
{
    int filled = 0;
    windows.openWindowOfGroupAtOnce([&filled] { ++filled; });
    windows.fillWindow();
    EXPECT_EQ(contentsMade, 1);
    EXPECT_EQ(filled, 1);
    EXPECT_TRUE(qobject_cast<QLineEdit*>(widgetOf(*mainWindows().first()).centralWidget()));
}

TEST_F(QtApplicationWindowsTest, aFirstWindowThatIsNotPaintedIsFilledNevertheless)
{
    int filled = 0;
    windows.openWindowOfGroupAtOnce([&filled] { ++filled; });
    widgetOf(*mainWindows().first()).hide();
    QCoreApplication::processEvents();
    scheduler.advance(99ms);
    EXPECT_EQ(filled, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(filled, 1);
    EXPECT_EQ(contentsMade, 1);
}

TEST_F(QtApplicationWindowsTest, theContentsGetTheKeyboardThatTheGroundHad)
{
    windows.openWindowOfGroupAtOnce([] {});
    const MainWindow& window = widgetOf(*mainWindows().first());
    ASSERT_TRUE(eventually([&] { return window.isActiveWindow(); }));
    windows.fillWindow();
    EXPECT_EQ(window.focusWidget(), window.centralWidget());
}

TEST_F(QtApplicationWindowsTest, aFirstWindowThatIsGoneIsNotFilled)
{
    int filled = 0;
    windows.openWindowOfGroupAtOnce([&filled] { ++filled; });
    delete &widgetOf(*mainWindows().first());
    windows.fillWindow();
    EXPECT_EQ(contentsMade, 0);
    EXPECT_EQ(filled, 1) << "what waits for it goes on";
}

TEST_F(QtApplicationWindowsTest, panelsAndToastsAreToldApart)
{
    KeyablePanel panel(activation);
    ToastWindow toast(activation);
    panel.show();
    toast.show();
    EXPECT_FALSE(windows.hasVisibleWindows());
    int panels = 0;
    for (const ApplicationWindow* window : windows.windows()) {
        panels += window->isPanel() ? 1 : 0;
        EXPECT_FALSE(MainWindowKeeper::isSwiftUIMainWindow(*window));
    }
    EXPECT_EQ(panels, 1);
    EXPECT_EQ(windows.windows().size(), 2);
}

TEST_F(QtApplicationWindowsTest, aMinimisedWindowIsNotVisibleAndComesBack)
{
    windows.openWindowOfGroup();
    ApplicationWindow& window = *mainWindows().first();
    widgetOf(window).showMinimized();
    EXPECT_FALSE(window.isVisible());
    EXPECT_FALSE(windows.hasVisibleWindows());
    window.makeKeyAndOrderFront();
    EXPECT_TRUE(window.isVisible());
}

TEST_F(QtApplicationWindowsTest, theWindowThatBecomesKeyIsAnnounced)
{
    QList<ApplicationWindow*> announced;
    QObject::connect(&windows, &ApplicationWindows::windowDidBecomeKey, &windows,
                     [&announced](ApplicationWindow* window) { announced.append(window); });
    windows.openWindowOfGroup();
    ApplicationWindow* window = mainWindows().first();
    ASSERT_TRUE(eventually([&] { return windows.keyWindow() == window; }));
    EXPECT_TRUE(announced.contains(window));
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(eventually([&] { return windows.keyWindow() != window; }));
}

TEST_F(QtApplicationWindowsTest, theDelegateDecidesWhetherAClosedWindowEnds)
{
    MainWindowDelegate delegate;
    windows.openWindowOfGroup();
    ApplicationWindow& window = *mainWindows().first();
    window.setDelegate(&delegate);
    window.setReleasedWhenClosed(false);
    const QPointer<MainWindow> widget = &widgetOf(window);
    widget->close();
    EXPECT_FALSE(widget->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(widget);
    EXPECT_EQ(mainWindows().size(), 1);
    EXPECT_EQ(contentsMade, 1);
}

TEST_F(QtApplicationWindowsTest, aWindowThatNobodyAdoptedEndsWhenItIsClosed)
{
    windows.openWindowOfGroup();
    widgetOf(*mainWindows().first()).close();
    EXPECT_TRUE(eventually([&] { return mainWindows().isEmpty(); }));
}

TEST_F(QtApplicationWindowsTest, aClosedDuplicateIsGoneAtOnce)
{
    windows.openWindowOfGroup();
    windows.openWindowOfGroup();
    ASSERT_EQ(mainWindows().size(), 2);
    ApplicationWindow* first = mainWindows().first();
    const QPointer<ApplicationWindow> second = mainWindows().last();
    second->close();
    EXPECT_EQ(mainWindows(), QList<ApplicationWindow*>{first});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(second.isNull());
}

TEST_F(QtApplicationWindowsTest, theKeeperOpensTheGroupsWindowByTheFileMenu)
{
    MainWindowKeeper keeper({windows, center, scheduler});
    keeper.openOrCreateMainWindow();
    EXPECT_THAT(log.lines, testing::Contains(QStringLiteral("Trying menu item: New Window")));
    ASSERT_EQ(mainWindows().size(), 1);
    EXPECT_TRUE(mainWindows().first()->isVisible()) << "at once";
    scheduler.advance(200ms);
    EXPECT_EQ(keeper.mainWindow(), mainWindows().first());
}

TEST_F(QtApplicationWindowsTest, aWindowOutsideTheGroupIsNoMainWindowByTheFullTest)
{
    ApplicationWindow& window = windows.createWindow();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(mainWindows().isEmpty());
    EXPECT_EQ(widgetOf(window).size(), QSize(1024, 680));
    const QPoint off = widgetOf(window).geometry().center() -
                       QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2);
    EXPECT_TRUE(windows.windows().contains(&window));
}

TEST_F(QtApplicationWindowsTest, theMenuBarHoldsTheCommandsAndNoNewWindow)
{
    windows.openWindowOfGroup();
    MainWindow& window = widgetOf(*mainWindows().first());
    QStringList titles;
    for (const QAction* menu : window.menuBar()->actions()) {
        titles.append(menu->text());
        for (const QAction* action : menu->menu()->actions())
            EXPECT_NE(action->text(), QStringLiteral("New Window"));
    }
    EXPECT_THAT(titles, testing::ElementsAre(QStringLiteral("Vellumry"), QStringLiteral("File"),
                                             QStringLiteral("View"), QStringLiteral("Snippets")));
}

TEST_F(QtApplicationWindowsTest, theContentsGetTheKeyboardWithinTheWindow)
{
    windows.openWindowOfGroup();
    ApplicationWindow& window = *mainWindows().first();
    QWidget* contents = widgetOf(window).centralWidget();
    contents->clearFocus();
    window.makeContentViewFirstResponder();
    EXPECT_EQ(widgetOf(window).focusWidget(), contents);
}

TEST_F(QtApplicationWindowsTest, theSettingsWindowIsOneAndTellsWhenItGoes)
{
    const QSignalSpy goings(&windows, &QtApplicationWindows::settingsWindowDidDisappear);
    EXPECT_FALSE(windows.postSettingsShortcut());
    windows.showSettingsWindow();
    windows.showSettingsWindow();
    QList<SettingsWindow*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<SettingsWindow*>(widget))
            found.append(window);
    }
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(mainWindows().isEmpty());
    EXPECT_EQ(goings.count(), 0);
    const QPointer<SettingsWindow> window = found.first();
    window->close();
    EXPECT_EQ(goings.count(), 1);
    EXPECT_TRUE(eventually([&] { return window.isNull(); }));
}

} // namespace

} // namespace vellumry::test
