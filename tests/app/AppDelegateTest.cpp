#include "app/AppDelegate.h"

#include "app/MenuBarService.h"
#include "hotkey/FakeHotKeyBackend.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/NullHotKeyBackend.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/CommandPaletteViewModel.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchServiceProtocol.h"
#include "platform/PanelActivation.h"
#include "settings/CategoryColorService.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "storage/StorageServiceProtocol.h"
#include "support/Eventually.h"
#include "support/FakeAppearance.h"
#include "support/FakeApplicationWindows.h"
#include "support/FakeStatusArea.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"
#include "views/common/Theme.h"
#include "views/common/ToastWindow.h"
#include "views/palette/KeyablePanel.h"

#include <QApplication>
#include <QPropertyAnimation>
#include <QSignalSpy>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;

class NoStorage final : public StorageServiceProtocol {
public:
    std::optional<VellumryData> loadFullData() override { return library; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override
    {
        ++readings;
        return {};
    }
    bool saveSnippets(const QList<Snippet>&) override { return true; }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}

    std::optional<VellumryData> library; ///< that the list model loads
    int readings = 0;                    ///< by the palette
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
        if (onRegister)
            onRegister();
    }
    void unregisterHotkey() override { calls.append(QStringLiteral("unregister")); }
    void pauseHotkey() override {}
    void resumeHotkey() override {}

    QStringList calls;
    std::function<void()> press;
    std::function<void()> onRegister;
};

class PlainDesktop final : public PanelActivation {
public:
    void prepareToShow(QWindow&) override {}
    void activate(QWindow&) override {}
    bool isCompositing() const override { return true; }
    bool arrangesWindows() const override { return programsArrange; }
    void offerToken(const QByteArray& token) override { tokens.append(token); }

    bool programsArrange = true;
    QByteArrayList tokens;
};

class AppDelegateTest : public testing::Test {
protected:
    void SetUp() override { delegate.applicationDidFinishLaunching(); }
    /// Toasts that have gone do not stand among the windows of the next test.
    void TearDown() override
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

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
                windows,
                area,
                scheduler,
                clock,
                theme,
                [](const QString&) { return QColor(Qt::gray); },
                [this] { return uptime; },
                [this] { hotkeys.calls.append(QStringLiteral("watch")); },
                [this]() -> SnippetListViewModel& { return list; },
                [this] {
                    ends.append(QStringLiteral("should"));
                    return mayTerminate;
                },
                [this] { ends.append(QStringLiteral("will")); },
                [this] { ends.append(QStringLiteral("end")); }};
    }

    void showPalette()
    {
        delegate.togglePalette();
        scheduler.advance(0ms);
    }

    /// Of those on the screen.
    static qsizetype toastCount()
    {
        const QList<ToastWindow*> toasts = allToasts();
        return std::count_if(toasts.begin(), toasts.end(),
                             [](const ToastWindow* toast) { return toast->isVisible(); });
    }

    static QList<ToastWindow*> allToasts()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QList<ToastWindow*> toasts;
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* toast = qobject_cast<ToastWindow*>(window))
                toasts.append(toast);
        }
        return toasts;
    }

    /// The fading of a toast takes time of its own.
    void waitForTheToastsEnd() const
    {
        EXPECT_TRUE(eventually([this] { return delegate.toast() == nullptr; }));
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
    FakeApplicationWindows windows;
    FakeStatusArea area;
    Theme theme{ColorScheme::light, 1};
    CategoryColorService colors{preferences};
    SnippetListViewModel list{{.storageService = storage,
                               .searchService = search,
                               .colors = colors,
                               .notifications = center,
                               .scheduler = scheduler,
                               .clock = clock}};
    bool mayTerminate = true;
    QStringList ends;
    std::chrono::duration<double> uptime = 500s;
    AppDelegate delegate{dependencies()};
};

TEST_F(AppDelegateTest, startsWithAHiddenPaletteAndTheStoredHotKey)
{
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate")));
    EXPECT_NE(delegate.menuBar(), nullptr);
    ASSERT_NE(delegate.palettePanel(), nullptr);
    EXPECT_FALSE(delegate.palettePanel()->isVisible());
    EXPECT_EQ(delegate.palettePanel()->size(), QSize(680, 480));
    EXPECT_THAT(hotkeys.calls, ElementsAre(QStringLiteral("watch"), QStringLiteral("register ⌥t")));
    EXPECT_THAT(log.lines,
                ElementsAre(QStringLiteral("Vellumry launched, isLaunchAtLoginStart: false"),
                            QStringLiteral("AppDelegate: setupHotkey - key: t, modifiers: ⌥")));
}

TEST_F(AppDelegateTest, theStartHasAFixedOrder)
{
    std::unique_ptr<AppDelegate> fresh;
    QStringList steps;
    const auto note = [&](const char* step) {
        QStringList standing = windows.calls;
        if (fresh->menuBar())
            standing.append(QStringLiteral("menu"));
        if (fresh->palettePanel())
            standing.append(QStringLiteral("palette"));
        steps.append(QLatin1StringView(step) + QStringLiteral(" behind ") +
                     standing.join(QStringLiteral(", ")));
    };
    AppDelegate::Dependencies with = dependencies();
    with.startFileWatching = [&] { note("watching"); };
    hotkeys.onRegister = [&] { note("hot key"); };
    fresh = std::make_unique<AppDelegate>(with);
    windows.calls.clear();
    fresh->applicationDidFinishLaunching();
    EXPECT_THAT(steps,
                ElementsAre(QStringLiteral("watching behind regular, activate"),
                            QStringLiteral("hot key behind regular, activate, menu, palette")));
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
    EXPECT_EQ(storage.readings, 1) << "but the library is read before";
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
    const FakeWindow& window = windows.add(QStringLiteral("AppKitWindow"));
    scheduler.advance(300ms);
    ASSERT_EQ(delegate.mainWindowKeeper().mainWindow(), &window);
    ASSERT_TRUE(window.visible);
    windows.calls.clear();
    delegate.togglePalette();
    EXPECT_FALSE(window.visible);
    EXPECT_THAT(windows.calls, ElementsAre(QStringLiteral("regular"), QStringLiteral("activate")));
    scheduler.advance(0ms);
    delegate.togglePalette();
    scheduler.advance(10s);
    EXPECT_FALSE(window.visible);
    Q_EMIT center.openMainWindow();
    EXPECT_TRUE(window.visible);
}

TEST_F(AppDelegateTest, aMainWindowThatWasNotAdoptedStaysBehindThePalette)
{
    const FakeWindow& window = windows.add(QStringLiteral("AppKitWindow"));
    showPalette();
    EXPECT_TRUE(window.visible);
}

TEST_F(AppDelegateTest, theMainWindowIsAdoptedInTheFirstSecondAndAHalf)
{
    const FakeWindow& window = windows.add(QStringLiteral("AppKitWindow"));
    log.lines.clear();
    scheduler.advance(299ms);
    EXPECT_EQ(delegate.mainWindowKeeper().mainWindow(), nullptr);
    scheduler.advance(1ms);
    EXPECT_EQ(delegate.mainWindowKeeper().mainWindow(), &window);
    EXPECT_THAT(log.lines, ElementsAre(QStringLiteral("Main window delegate set: AppKitWindow, "
                                                      "attempts remaining: 5")));
}

TEST_F(AppDelegateTest, aMainWindowThatBecomesKeyEndsTheOthers)
{
    const FakeWindow& first = windows.add(QStringLiteral("AppKitWindow"));
    FakeWindow& second = windows.add(QStringLiteral("AppKitWindow"));
    Q_EMIT windows.windowDidBecomeKey(&second);
    EXPECT_TRUE(first.closed);
    EXPECT_EQ(delegate.mainWindowKeeper().mainWindow(), &second);
}

TEST_F(AppDelegateTest, becomingActiveGivesTheKeyboardToWhatFillsTheKeyWindow)
{
    const FakeWindow& other = windows.add(QStringLiteral("Other"));
    FakeWindow& window = windows.add(QStringLiteral("Key"));
    delegate.applicationDidBecomeActive();
    EXPECT_EQ(window.firstResponderCount, 0);
    window.key = true;
    delegate.applicationDidBecomeActive();
    EXPECT_EQ(window.firstResponderCount, 1);
    EXPECT_EQ(other.firstResponderCount, 0);
}

TEST_F(AppDelegateTest, startingItAgainOpensTheMainWindow)
{
    FakeWindow& window = windows.add(QStringLiteral("AppKitWindow"));
    window.visible = false;
    EXPECT_FALSE(delegate.applicationShouldHandleReopen(false));
    EXPECT_TRUE(window.visible);
}

TEST_F(AppDelegateTest, everyWayToTheEndAsksFirst)
{
    mayTerminate = false;
    delegate.menuBar()->quitApp();
    EXPECT_THAT(std::exchange(ends, {}), ElementsAre(QStringLiteral("should")));
    mayTerminate = true;
    delegate.terminate();
    EXPECT_THAT(
        ends, ElementsAre(QStringLiteral("should"), QStringLiteral("will"), QStringLiteral("end")));
}

Snippet snippetNamed(const QString& id, const QString& collection)
{
    Snippet snippet;
    snippet.setId(id);
    snippet.setCollection(collection);
    return snippet;
}

TEST_F(AppDelegateTest, openingASnippetSelectsItAndItsCollectionAMomentLater)
{
    windows.add(QStringLiteral("AppKitWindow"));
    storage.library = VellumryData{};
    storage.library->data.snippets = {snippetNamed(QStringLiteral("a"), QStringLiteral("Mail")),
                                      snippetNamed(QStringLiteral("b"), QStringLiteral("Notes"))};
    list.loadSnippets();
    list.setSelectedCollection(QStringLiteral("Mail"));
    Q_EMIT center.openSnippetInApp(QStringLiteral("b"));
    EXPECT_NE(delegate.mainWindowKeeper().mainWindow(), nullptr);
    scheduler.advance(99ms);
    EXPECT_EQ(list.selectedCollection(), QStringLiteral("Mail"));
    scheduler.advance(1ms);
    EXPECT_EQ(list.selectedCollection(), QStringLiteral("Notes"));
    EXPECT_EQ(list.selectedSnippetID(), QStringLiteral("b"));
    ASSERT_EQ(list.filteredSnippets().size(), 1);
    EXPECT_EQ(list.filteredSnippets().first().id(), QStringLiteral("b"))
        << "the list shows the collection that was selected";
}

TEST_F(AppDelegateTest, openingAnUnknownSnippetSelectsItAndLeavesTheCollection)
{
    windows.add(QStringLiteral("AppKitWindow"));
    list.setSelectedCollection(QStringLiteral("Mail"));
    Q_EMIT center.openSnippetInApp(QStringLiteral("unknown"));
    scheduler.advance(100ms);
    EXPECT_EQ(list.selectedCollection(), QStringLiteral("Mail"));
    EXPECT_EQ(list.selectedSnippetID(), QStringLiteral("unknown"));
}

TEST_F(AppDelegateTest, openingNoSnippetInParticularOpensTheWindowAlone)
{
    const FakeWindow& window = windows.add(QStringLiteral("AppKitWindow"));
    list.setSelectedSnippetID(QStringLiteral("before"));
    Q_EMIT center.openSnippetInApp(std::nullopt);
    scheduler.advance(1s);
    EXPECT_GT(window.frontCount, 0);
    EXPECT_EQ(list.selectedSnippetID(), QStringLiteral("before"));
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
    const auto* fading = delegate.toast()->findChild<QPropertyAnimation*>();
    ASSERT_NE(fading, nullptr);
    EXPECT_EQ(fading->duration(), 500);
    waitForTheToastsEnd();
    EXPECT_EQ(toastCount(), 0);
}

TEST_F(AppDelegateTest, aToastWithoutPaletteHasAPlaceOfItsOwn)
{
    AppDelegate fresh(dependencies());
    fresh.showQuickSearchToast(QStringLiteral("Hello"));
    ASSERT_NE(fresh.toast(), nullptr);
    EXPECT_EQ(fresh.toast()->geometry(), QRect(190, 195, 300, 90));
}

TEST_F(AppDelegateTest, whereAToastWouldTakeTheKeyboardThereIsNone)
{
    desktop.programsArrange = false;
    Q_EMIT center.quickSearchShowToast(QStringLiteral("Hello"));
    EXPECT_EQ(delegate.toast(), nullptr);
    scheduler.advance(2s);
    EXPECT_EQ(toastCount(), 0);
}

TEST_F(AppDelegateTest, theTokenOfThePressIsForThePalette)
{
    auto fake = std::make_unique<hotkey::FakeHotKeyBackend>();
    auto& backend = *fake;
    hotkey::HotKeysController::setBackend(std::move(fake));
    backend.activationToken = "first";
    showPalette();
    EXPECT_EQ(desktop.tokens, QByteArrayList{"first"});
    backend.activationToken = "for nothing";
    showPalette();
    EXPECT_EQ(desktop.tokens, QByteArrayList{"first"}) << "the press has hidden the palette";
    backend.activationToken.clear();
    showPalette();
    EXPECT_EQ(desktop.tokens, QByteArrayList{"first"});
    hotkey::HotKeysController::setBackend(nullptr);
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
    waitForTheToastsEnd();
    scheduler.advance(500ms);
    EXPECT_EQ(toastCount(), 0);
    EXPECT_EQ(delegate.toast(), nullptr);
}

TEST_F(AppDelegateTest, aToastThatComesWhileAnotherFadesGoesWithIt)
{
    Q_EMIT center.quickSearchShowToast(QStringLiteral("first"));
    scheduler.advance(800ms);
    Q_EMIT center.quickSearchShowToast(QStringLiteral("second"));
    EXPECT_EQ(delegate.toast()->text(), QStringLiteral("second"));
    waitForTheToastsEnd();
    EXPECT_EQ(toastCount(), 0) << "its own time is not over";
    scheduler.advance(2s);
    EXPECT_TRUE(allToasts().isEmpty());
}

TEST_F(AppDelegateTest, ofManyToastsAtOnceNoneStays)
{
    Q_EMIT center.quickSearchShowToast(QStringLiteral("first"));
    scheduler.advance(100ms);
    Q_EMIT center.quickSearchShowToast(QStringLiteral("second"));
    scheduler.advance(400ms);
    Q_EMIT center.quickSearchShowToast(QStringLiteral("third"));
    EXPECT_EQ(toastCount(), 3);
    scheduler.advance(300ms);
    // The third one goes by the first one's time, before the second one's has faded it.
    EXPECT_TRUE(eventually([this] {
        const ToastWindow* toast = delegate.toast();
        return toast == nullptr || toast->windowOpacity() < 0.9;
    }));
    scheduler.advance(100ms);
    waitForTheToastsEnd();
    scheduler.advance(2s);
    EXPECT_TRUE(eventually([] { return allToasts().isEmpty(); }));
}

TEST_F(AppDelegateTest, aPressThatComesAfterTheDelegatesEndDoesNothing)
{
    auto fresh = std::make_unique<AppDelegate>(dependencies());
    fresh->applicationDidFinishLaunching();
    fresh.reset();
    log.lines.clear();
    hotkeys.press();
    EXPECT_TRUE(log.lines.isEmpty());

    fresh = std::make_unique<AppDelegate>(dependencies());
    fresh->applicationDidFinishLaunching();
    Q_EMIT center.hotkeyDidChange({QStringLiteral("k"), hotkey::ModifierFlags::control});
    fresh.reset();
    log.lines.clear();
    hotkeys.press();
    EXPECT_TRUE(log.lines.isEmpty());
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
