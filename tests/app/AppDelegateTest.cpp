#include "app/AppDelegate.h"

#include "hotkey/HotKeysController.h"
#include "hotkey/NullHotKeyBackend.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/CommandPaletteViewModel.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchServiceProtocol.h"
#include "platform/PanelActivation.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "storage/StorageServiceProtocol.h"
#include "support/FakeAppearance.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"
#include "views/common/ToastWindow.h"
#include "views/palette/KeyablePanel.h"
#include "views/window/MainWindow.h"

#include <QApplication>
#include <QLabel>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;

class NoStorage final : public StorageServiceProtocol {
public:
    std::optional<VellumryData> loadFullData() override { return std::nullopt; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override { return {}; }
    bool saveSnippets(const QList<Snippet>&) override { return true; }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}
};

class NoSearch final : public SearchServiceProtocol {
public:
    QList<Snippet> search(const QString&, const QList<Snippet>&) const override { return {}; }
};

class NoClipboard final : public ClipboardServiceProtocol {
public:
    void copy(const QString&) override {}
    void copySecret(const QString&) override {}
};

class RecordingHotkeyService final : public HotkeyServiceProtocol {
public:
    void registerGlobalHotkey(const QString& key, hotkey::ModifierFlags modifiers,
                              std::function<void()> action) override
    {
        calls.append(QStringLiteral("register ") + QString::fromStdString(modifiers.description()) +
                     key);
        press = std::move(action);
    }
    void unregisterHotkey() override { calls.append(QStringLiteral("unregister")); }
    void pauseHotkey() override {}
    void resumeHotkey() override {}

    QStringList calls;
    std::function<void()> press;
};

class PlainDesktop final : public PanelActivation {
public:
    void prepareToShow(QWindow&, quint32) override {}
    void activate(QWindow&, quint32) override {}
    bool isCompositing() const override { return true; }
};

class AppDelegateTest : public testing::Test {
protected:
    void SetUp() override { delegate.applicationDidFinishLaunching(); }

    AppDelegate::Dependencies dependencies()
    {
        return {storage,
                search,
                clipboard,
                RandomPasswordService::shared(),
                hotkeys,
                settings,
                center,
                desktop,
                scheduler,
                clock,
                [](const QString&) { return QColor(Qt::gray); },
                [] { return QStringLiteral("~/Documents/Apps/Vellumry"); },
                [this] { return uptime; },
                [this] { hotkeys.calls.append(QStringLiteral("watch")); }};
    }

    void showPalette()
    {
        delegate.togglePalette();
        scheduler.advance(0ms);
    }

    static qsizetype toastCount()
    {
        qsizetype count = 0;
        for (const QWidget* window : QApplication::topLevelWidgets())
            count += window->isVisible() && qobject_cast<const ToastWindow*>(window) ? 1 : 0;
        return count;
    }

    LogCapture log;
    ManualScheduler scheduler;
    ManualClock clock;
    MemoryPreferences preferences;
    NotificationCenter center;
    NoStorage storage;
    NoSearch search;
    NoClipboard clipboard;
    RecordingHotkeyService hotkeys;
    PlainDesktop desktop;
    FakeAppearance appearance;
    SettingsService settings{{preferences, hotkeys, center, appearance, scheduler, nullptr}};
    std::chrono::duration<double> uptime = 500s;
    AppDelegate delegate{dependencies()};
};

TEST_F(AppDelegateTest, startsWithAHiddenPaletteAndTheStoredHotKey)
{
    ASSERT_NE(delegate.palettePanel(), nullptr);
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_EQ(delegate.palettePanel()->size(), QSize(680, 480));
    EXPECT_THAT(hotkeys.calls, ElementsAre(QStringLiteral("watch"), QStringLiteral("register ⌥t")));
    EXPECT_THAT(log.lines,
                ElementsAre(QStringLiteral("Vellumry launched, isLaunchAtLoginStart: false"),
                            QStringLiteral("AppDelegate: setupHotkey - key: t, modifiers: ⌥")));
}

TEST_F(AppDelegateTest, tellsAStartSoonAfterTheMachinesOnlyInItsLine)
{
    const QStringList atAnyTime = log.lines;
    for (const auto& [time, word] :
         {std::pair{119.9, QStringLiteral("true")}, std::pair{120.0, QStringLiteral("false")}}) {
        log.lines.clear();
        uptime = std::chrono::duration<double>(time);
        delegate.applicationDidFinishLaunching();
        EXPECT_EQ(log.lines.value(0),
                  QStringLiteral("Vellumry launched, isLaunchAtLoginStart: ") + word);
        EXPECT_EQ(log.lines.mid(1), atAnyTime.mid(1));
    }
}

TEST_F(AppDelegateTest, theHotKeyShowsAndHidesThePalette)
{
    log.lines.clear();
    hotkeys.press();
    EXPECT_FALSE(delegate.isPaletteShown()) << "it shows in the next turn of the event loop";
    scheduler.advance(0ms);
    EXPECT_TRUE(delegate.palettePanel()->isVisible());
    EXPECT_TRUE(delegate.isPaletteShown());
    hotkeys.press();
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_FALSE(delegate.isPaletteShown());
    EXPECT_THAT(
        log.lines,
        ElementsAre(QStringLiteral("AppDelegate: hotkey callback triggered"),
                    QStringLiteral("AppDelegate: calling togglePalette"),
                    QStringLiteral("AppDelegate: togglePalette called, paletteWindow: true"),
                    QStringLiteral("AppDelegate: showing palette"),
                    QStringLiteral("AppDelegate: palette shown, isPalettePresented = true"),
                    QStringLiteral("AppDelegate: hotkey callback triggered"),
                    QStringLiteral("AppDelegate: calling togglePalette"),
                    QStringLiteral("AppDelegate: togglePalette called, paletteWindow: true"),
                    QStringLiteral("AppDelegate: hiding palette")));
}

TEST_F(AppDelegateTest, aVisiblePanelThatIsNotPresentedShowsAgain)
{
    delegate.palettePanel()->show();
    showPalette();
    EXPECT_TRUE(delegate.palettePanel()->isVisible());
    EXPECT_TRUE(delegate.isPaletteShown());
}

TEST_F(AppDelegateTest, raisingThePaletteHidesTheMainWindowUntilItIsAskedFor)
{
    Q_EMIT center.openMainWindow();
    ASSERT_TRUE(delegate.mainWindow()->isVisible());
    showPalette();
    EXPECT_FALSE(delegate.mainWindow()->isVisible());
    delegate.togglePalette();
    scheduler.advance(1s);
    EXPECT_FALSE(delegate.mainWindow()->isVisible());
    Q_EMIT center.openMainWindow();
    EXPECT_TRUE(delegate.mainWindow()->isVisible());
}

TEST_F(AppDelegateTest, losingTheKeyboardHidesThePaletteAfterAMoment)
{
    showPalette();
    log.lines.clear();
    Q_EMIT delegate.palettePanel()->resignedKeyStatus();
    QWidget other;
    other.show();
    other.activateWindow();
    QApplication::processEvents();
    ASSERT_FALSE(delegate.palettePanel()->isKey());
    scheduler.advance(99ms);
    EXPECT_TRUE(delegate.palettePanel()->isVisible());
    scheduler.advance(1ms);
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_FALSE(delegate.isPaletteShown());
    EXPECT_THAT(log.lines, ElementsAre(QStringLiteral("AppDelegate: palette lost focus, hiding")));
}

TEST_F(AppDelegateTest, aMomentsLossOfTheKeyboardPasses)
{
    showPalette();
    delegate.palettePanel()->activateWindow();
    QApplication::processEvents();
    ASSERT_TRUE(delegate.palettePanel()->isKey());
    Q_EMIT delegate.palettePanel()->resignedKeyStatus();
    scheduler.advance(100ms);
    EXPECT_TRUE(delegate.palettePanel()->isVisible());
}

TEST_F(AppDelegateTest, aPaletteRaisedAgainOutlivesTheEarlierLossOfTheKeyboard)
{
    showPalette();
    Q_EMIT delegate.palettePanel()->resignedKeyStatus();
    delegate.togglePalette();
    showPalette();
    QWidget other;
    other.show();
    {
        // The keyboard is still on its way, not lost a second time.
        const QSignalBlocker quiet(delegate.palettePanel());
        other.activateWindow();
        QApplication::processEvents();
    }
    ASSERT_FALSE(delegate.palettePanel()->isKey());
    scheduler.advance(100ms);
    EXPECT_TRUE(delegate.palettePanel()->isVisible());
}

TEST_F(AppDelegateTest, anAbsentPaletteIsMadeAnew)
{
    AppDelegate fresh(dependencies());
    log.lines.clear();
    fresh.togglePalette();
    scheduler.advance(0ms);
    EXPECT_TRUE(fresh.isPaletteShown());
    EXPECT_THAT(
        log.lines,
        ElementsAre(QStringLiteral("AppDelegate: togglePalette called, paletteWindow: false"),
                    QStringLiteral("AppDelegate: paletteWindow is nil, recreating..."),
                    QStringLiteral("AppDelegate: showing palette"),
                    QStringLiteral("AppDelegate: palette shown, isPalettePresented = true")));
}

TEST_F(AppDelegateTest, preparingLeavesAPaletteInUseAlone)
{
    delegate.preparePalette();
    showPalette();
    delegate.paletteModel()->setQuery(QStringLiteral("typed at once"));
    delegate.preparePalette();
    EXPECT_EQ(delegate.paletteModel()->query(), QStringLiteral("typed at once"));
}

TEST_F(AppDelegateTest, dismissingClosesOnlyAnOpenPalette)
{
    log.lines.clear();
    Q_EMIT center.dismissQuickSearch();
    EXPECT_TRUE(log.lines.isEmpty());
    showPalette();
    Q_EMIT center.dismissQuickSearch();
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_FALSE(delegate.isPaletteShown());
    EXPECT_THAT(log.lines, Contains(QStringLiteral("AppDelegate: dismissPalette called")));
}

TEST_F(AppDelegateTest, theToggleAnnouncementShowsThePalette)
{
    Q_EMIT center.togglePalette();
    scheduler.advance(0ms);
    EXPECT_TRUE(delegate.isPaletteShown());
}

TEST_F(AppDelegateTest, theModelsWishToCloseHidesThePalette)
{
    showPalette();
    delegate.paletteModel()->dismiss();
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_FALSE(delegate.isPaletteShown());
}

TEST_F(AppDelegateTest, theToastStandsInTheMiddleOfThePaletteAndGoesByItself)
{
    showPalette();
    Q_EMIT center.quickSearchShowToast(QStringLiteral("Hello"));
    ASSERT_NE(delegate.toast(), nullptr);
    EXPECT_EQ(delegate.toast()->text(), QStringLiteral("Hello"));
    EXPECT_EQ(delegate.toast()->size(), QSize(300, 90));
    EXPECT_EQ(delegate.toast()->geometry().center(), delegate.palettePanel()->geometry().center());
    scheduler.advance(799ms);
    EXPECT_TRUE(delegate.toast()->isVisible());
    EXPECT_DOUBLE_EQ(delegate.toast()->windowOpacity(), 1.0);
    scheduler.advance(1ms);
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (delegate.toast() && std::chrono::steady_clock::now() < deadline)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(delegate.toast(), nullptr);
    EXPECT_EQ(toastCount(), 0);
}

TEST_F(AppDelegateTest, aToastWithoutPaletteHasAPlaceOfItsOwn)
{
    AppDelegate fresh(dependencies());
    fresh.showQuickSearchToast(QStringLiteral("Hello"));
    ASSERT_NE(fresh.toast(), nullptr);
    EXPECT_EQ(fresh.toast()->geometry(), QRect(190, 195, 300, 90));
}

TEST_F(AppDelegateTest, aToastWithoutTextSaysThatTheTextIsOnTheClipboard)
{
    Q_EMIT center.quickSearchShowToast(std::nullopt);
    ASSERT_NE(delegate.toast(), nullptr);
    EXPECT_EQ(delegate.toast()->text(), QStringLiteral("Copied to Clipboard"));
}

TEST_F(AppDelegateTest, theFirstToastsTimeEndsANewerToastToo)
{
    Q_EMIT center.quickSearchShowToast(QStringLiteral("first"));
    scheduler.advance(500ms);
    Q_EMIT center.quickSearchShowToast(QStringLiteral("second"));
    EXPECT_EQ(toastCount(), 2) << "one stands over the other";
    EXPECT_EQ(delegate.toast()->text(), QStringLiteral("second"));
    scheduler.advance(300ms);
    const auto deadline = std::chrono::steady_clock::now() + 20s;
    while (delegate.toast() && std::chrono::steady_clock::now() < deadline)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(toastCount(), 0);
    scheduler.advance(500ms);
    EXPECT_EQ(delegate.toast(), nullptr);
}

TEST_F(AppDelegateTest, twoRequestsForTheMainWindowWithinItsGuardsTimeAreOne)
{
    log.lines.clear();
    Q_EMIT center.openMainWindow();
    delegate.mainWindow()->hide();
    scheduler.advance(299ms);
    Q_EMIT center.openMainWindow();
    EXPECT_FALSE(delegate.mainWindow()->isVisible());
    EXPECT_THAT(
        log.lines,
        ElementsAre(QStringLiteral("openOrCreateMainWindow called"),
                    QStringLiteral("openOrCreateMainWindow called"),
                    QStringLiteral("openOrCreateMainWindow: already in progress, skipping")));
    scheduler.advance(1ms);
    Q_EMIT center.openMainWindow();
    EXPECT_TRUE(delegate.mainWindow()->isVisible());
}

TEST_F(AppDelegateTest, closingTheMainWindowOnlyHidesIt)
{
    Q_EMIT center.openMainWindow();
    const MainWindow* window = delegate.mainWindow();
    delegate.mainWindow()->close();
    EXPECT_FALSE(window->isVisible());
    scheduler.advance(300ms);
    Q_EMIT center.openSnippetInApp(QStringLiteral("id"));
    EXPECT_EQ(delegate.mainWindow(), window);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(AppDelegateTest, aMinimisedMainWindowComesBack)
{
    Q_EMIT center.openMainWindow();
    delegate.mainWindow()->showMinimized();
    showPalette();
    scheduler.advance(300ms);
    Q_EMIT center.openMainWindow();
    EXPECT_TRUE(delegate.mainWindow()->isVisible());
    EXPECT_FALSE(delegate.mainWindow()->isMinimized());
}

TEST_F(AppDelegateTest, theMainWindowNamesTheHotKeyAsItIsPrintedOnTheKeys)
{
    Q_EMIT center.openMainWindow();
    QStringList texts;
    for (const QLabel* label : delegate.mainWindow()->findChildren<QLabel*>())
        texts.append(label->text());
    EXPECT_THAT(texts, Contains(QStringLiteral("Press Alt+T anywhere to search your snippets.")));
}

TEST_F(AppDelegateTest, anotherHotKeyIsPutInForceAtOnceAndWithoutALine)
{
    hotkeys.calls.clear();
    Q_EMIT center.hotkeyDidChange({QStringLiteral("k"), hotkey::ModifierFlags::control});
    EXPECT_THAT(hotkeys.calls,
                ElementsAre(QStringLiteral("unregister"), QStringLiteral("register ⌃k")));
    log.lines.clear();
    hotkeys.press();
    scheduler.advance(0ms);
    EXPECT_TRUE(delegate.isPaletteShown());
    EXPECT_EQ(log.lines.value(0),
              QStringLiteral("AppDelegate: togglePalette called, paletteWindow: true"));
}

} // namespace

} // namespace vellumry::test
