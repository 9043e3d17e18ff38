#include "app/VellumryApp.h"

#include "app/AppCommands.h"
#include "app/DependencyContainer.h"
#include "app/FatalErrorNotice.h"
#include "app/MenuBarService.h"
#include "app/SingleInstance.h"
#include "core/BackgroundRunner.h"
#include "core/Log.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/makeHotKeyBackend.h"
#include "notifications/NotificationCenter.h"
#include "palette/FuzzySearchService.h"
#include "palette/RandomPasswordService.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/WaylandWindowActivation.h"
#include "platform/linux/X11WindowActivation.h"
#include "settings/CategoryColorService.h"
#include "settings/HotkeyService.h"
#include "settings/SettingsService.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"
#include "views/common/FileDialog.h"
#include "views/window/ContentsGround.h"

#include <QApplication>
#include <QScopeGuard>
#include <QSessionManager>
#include <QWindow>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <time.h>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// A session bus that is under load answers in time; the start waits no longer for a dead one.
constexpr auto busPatience = 2s;
/// In which a main window that has just got its contents shows them; the palette can wait for it.
constexpr auto contentsTime = 50ms;

/// The GTK theme plugin, which some desktops load by their name alone, doubles the start-up time
/// and triples the memory for looks that this program draws itself. What the user has set wins.
void choosePlatformTheme()
{
    const bool isKde =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1StringView("KDE"));
    if (!isKde && !qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"))
        qputenv("QT_QPA_PLATFORMTHEME", "generic");
}

/// Qt of this age draws on X11 in GNOME's Wayland sessions unless told otherwise. Where its plugin
/// for Wayland is not installed, X11 it is.
void choosePlatform()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "wayland;xcb");
}

/// What the toolkit cannot do without, as a display, ends the program with its line and as an
/// error, not as a crash.
void endWithoutCore()
{
    static QtMessageHandler standard;
    standard = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            standard(type, context, text);
            if (type == QtFatalMsg)
                std::_Exit(EXIT_FAILURE);
        });
}

void postToMainThread(std::function<void()> action)
{
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(action), Qt::QueuedConnection);
}

std::unique_ptr<PanelActivation> makePanelActivation()
{
    if (QGuiApplication::platformName().startsWith(QLatin1StringView("wayland")))
        return std::make_unique<WaylandWindowActivation>();
    return std::make_unique<X11WindowActivation>();
}

std::chrono::duration<double> systemUptime()
{
    timespec time = {};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// Answers what takes no display: --help.
std::optional<int> answerWithoutDisplay(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (!parseCommandLine(arguments).wantsHelp)
        return std::nullopt;
    std::fputs(qPrintable(commandLineHelp()), stdout);
    return EXIT_SUCCESS;
}

/// What the desktop gave this start. To be asked before Qt takes the one of X11 for itself.
QString launchToken()
{
    const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
}

/// Settles whether this process is to be the program; if not, with which status it ends.
std::optional<int> settleRole(const CommandLine& line, const QString& activationToken,
                              SingleInstance& instance)
{
    if (line.unknownArgument) {
        std::fprintf(stderr, "vellumry: there is no switch \"%s\"; see vellumry --help\n",
                     qPrintable(*line.unknownArgument));
        return EXIT_FAILURE;
    }
    const SingleInstance::Role role = instance.claim(line.command, activationToken);
    if (role != SingleInstance::Role::first)
        return role == SingleInstance::Role::forwarded ? EXIT_SUCCESS : EXIT_FAILURE;
    if (line.command == StartCommand::quit) {
        logLine(u"Vellumry is not running");
        return EXIT_SUCCESS;
    }
    return std::nullopt;
}

/// The part of a run that has an application; returns its status.
int runApplication(const QString& ownToken)
{
    QApplication::setApplicationName(QStringLiteral("vellumry"));
    QApplication::setDesktopFileName(SingleInstance::applicationId);
    QApplication::setQuitOnLastWindowClosed(false);
    // Its thread wakes the application's.
    const auto endBackend = qScopeGuard([] { hotkey::HotKeysController::setBackend(nullptr); });

    const QStringList arguments = QApplication::arguments().sliced(1);
    if (const auto report = FatalErrorNotice::reportIn(arguments))
        return FatalErrorNotice::run(*report);
    const CommandLine line = parseCommandLine(arguments);
    SingleInstance instance;
    if (const auto status = settleRole(line, ownToken, instance))
        return *status;

    FatalErrorNotice::install();
    VellumryApp program;
    program.launch(line.command);
    instance.listen([&program](StartCommand command, const QByteArray& activationToken) {
        program.perform(command, activationToken);
    });
    const int status = QApplication::exec();
    DependencyContainer::shared().collectionFileStorageService().stopFileWatching();
    ThreadRunner::shared().drain();
    return status;
}

/// The part of a run that has a display.
int runWithDisplay(int& argc, char** argv)
{
    const QString ownToken = launchToken();
    const QApplication application(argc, argv);
    const int status = runApplication(ownToken);
    // Qt's plugin for Wayland now and then waits for its own event thread for ever when it ends,
    // and a program that does not end is in the way of its next start. Ours has nothing left to do.
    if (QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}

} // namespace

int VellumryApp::run(int& argc, char** argv)
{
    if (const auto status = answerWithoutDisplay(argc, argv))
        return *status;
    endWithoutCore();
    choosePlatform();
    choosePlatformTheme();
    avoidSilentSessionBus(busPatience);
    // A reader of our lines that goes away, as `head` does, is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    hotkey::HotKeysController::setBackend(hotkey::makeHotKeyBackend(
        postToMainThread, {.applicationId = SingleInstance::applicationId,
                           .id = QStringLiteral("toggle-palette"),
                           .description = QStringLiteral("Open the command palette")}));
    return runWithDisplay(argc, argv);
}

VellumryApp::VellumryApp()
    : container(DependencyContainer::shared()), panelActivation(makePanelActivation()),
      statusArea(EventLoopScheduler::shared()),
      launchState(NotificationCenter::defaultCenter(),
                  [] { return StorageLocationManager::shared().needsFirstLaunchSetup(); }),
      contents({.container = container,
                .launchState = launchState,
                .showSettings = [this](SheetHost& sheets) { settingsContents.present(sheets); }}),
      settingsContents(
          {.container = container, .theme = [this]() -> Theme& { return contents.theme(); }}),
      windows({.activation = *panelActivation,
               .commands = [this]() -> AppCommands& { return commands(); },
               .scheduler = EventLoopScheduler::shared(),
               .makeGround =
                   [this] {
                       using Kind = ContentsGround::Kind;
                       const bool isFirstLaunch =
                           StorageLocationManager::shared().needsFirstLaunchSetup();
                       return new ContentsGround(contents.theme(),
                                                 isFirstLaunch ? Kind::welcome : Kind::columns);
                   },
               .makeMainContents = [this] { return contents.make(); },
               .makeSettingsContents = [this] { return settingsContents.make(); }}),
      appDelegate(delegateDependencies()),
      quitSignals([this] { sessionEnds([] { return false; }, [] {}); })
{
    FileDialog::setDesktopChooser(&container.fileChooser());
    MainWindowKeeper& keeper = appDelegate.mainWindowKeeper();
    connect(&windows, &ApplicationWindows::mainWindowDidAppear, this, [this, &keeper] {
        keeper.onMainWindowAppear();
        launchState.mainContentsDidAppear();
    });
    connect(&NotificationCenter::defaultCenter(), &NotificationCenter::createSnippet, &keeper,
            &MainWindowKeeper::activateMainWindow);
    connect(&windows, &QtApplicationWindows::settingsWindowDidDisappear, &container.hotkeyService(),
            &HotkeyService::resumeHotkey);
    // In this very turn: the click that has activated the window comes next, and what it turns to
    // keeps the keyboard.
    connect(qApp, &QGuiApplication::focusWindowChanged, this,
            [this, wasActive = false](const QWindow* window) mutable {
                if (!std::exchange(wasActive, window != nullptr) && window)
                    appDelegate.applicationDidBecomeActive();
            });
    // Answered before the session goes on.
    connect(
        qApp, &QGuiApplication::commitDataRequest, this,
        [this](QSessionManager& session) {
            sessionEnds([&session] { return session.allowsInteraction(); },
                        [&session] { session.cancel(); });
        },
        Qt::DirectConnection);
}

VellumryApp::~VellumryApp()
{
    FileDialog::setDesktopChooser(nullptr);
}

AppDelegate::Dependencies VellumryApp::delegateDependencies()
{
    return {.storageService = container.storageService(),
            .searchService = container.searchService(),
            .clipboardService = container.clipboardService(),
            .passwordService = RandomPasswordService::shared(),
            .hotkeyService = container.hotkeyService(),
            .settings = container.settings(),
            .notifications = NotificationCenter::defaultCenter(),
            .panelActivation = *panelActivation,
            .windows = windows,
            .statusArea = statusArea,
            .scheduler = EventLoopScheduler::shared(),
            .clock = SystemClock::shared(),
            .theme = contents.theme(),
            .collectionColor =
                [](const QString& collection) {
                    return CategoryColorService::shared().getColor(collection);
                },
            .systemUptime = systemUptime,
            .startFileWatching =
                [this] { container.collectionFileStorageService().startFileWatching(); },
            .mainSnippetListViewModel = [this]() -> SnippetListViewModel& {
                return container.mainSnippetListViewModel();
            },
            .applicationShouldTerminate =
                [this] {
                    return termination().applicationShouldTerminate() ==
                           Termination::Reply::terminateNow;
                },
            .applicationWillTerminate = [this] { termination().applicationWillTerminate(); },
            .endProcess = [] { QCoreApplication::exit(EXIT_SUCCESS); }};
}

AppCommands& VellumryApp::commands()
{
    if (!appCommands) {
        appCommands = std::make_unique<AppCommands>(
            AppCommands::Dependencies{.windows = windows,
                                      .notifications = NotificationCenter::defaultCenter(),
                                      .settings = container.settings(),
                                      .showSettings = [this] { windows.showSettingsWindow(); },
                                      .terminate = [this] { appDelegate.terminate(); },
                                      .toggleSidebar = [this] { contents.toggleSidebar(); }});
    }
    return *appCommands;
}

Termination& VellumryApp::termination()
{
    if (!ending) {
        ending.emplace(Termination::Dependencies{
            .list = container.mainSnippetListViewModel(),
            .notifications = NotificationCenter::defaultCenter(),
            .ask = [this](const QuitQuestion& question) { return askBeforeEnd(question); }});
    }
    return *ending;
}

/// In the main window, which is brought up for it.
std::optional<qsizetype> VellumryApp::askBeforeEnd(const QuitQuestion& question)
{
    appDelegate.mainWindowKeeper().openOrCreateMainWindow();
    return contents.ask(question);
}

/// The desktop's session ends, or somebody ends the process: what the person has not saved is not
/// saved behind their back, and the end is held up only where a question may be put.
void VellumryApp::sessionEnds(const std::function<bool()>& mayAsk,
                              const std::function<void()>& refuse)
{
    if (termination().sessionShouldEnd(mayAsk) == Termination::Reply::terminateCancel) {
        refuse();
        return;
    }
    termination().applicationWillTerminate();
    QCoreApplication::exit(EXIT_SUCCESS);
}

void VellumryApp::launch(StartCommand command)
{
    // First of all: the desktop brings the window to the screen while the rest of the start goes
    // on.
    if (command == StartCommand::open)
        windows.openWindowOfGroupAtOnce([this] { preparePalette(contentsTime); });
    appDelegate.applicationDidFinishLaunching();
    if (command != StartCommand::open)
        loadWhenIdle(command);
}

/// What can wait until the hot key is in force, each in a turn of its own, so that a press in
/// between is answered first.
void VellumryApp::loadWhenIdle(StartCommand command)
{
    Scheduler& scheduler = EventLoopScheduler::shared();
    scheduler.after(0ms, this, [this, command, &scheduler] {
        (void)container.storageService().loadSnippets();
        scheduler.after(0ms, this, [this, command] {
            perform(command);
            preparePalette(0ms);
        });
    });
}

/// So that its first press is as quick as the later ones.
void VellumryApp::preparePalette(std::chrono::milliseconds delay)
{
    Scheduler& scheduler = EventLoopScheduler::shared();
    scheduler.after(delay, this, [this, &scheduler] {
        appDelegate.preparePalette();
        scheduler.after(0ms, this, [this] {
            // For fewer it takes no time that anyone could notice at the first search.
            constexpr qsizetype noticeable = 5'000;
            const QList<Snippet> snippets = container.storageService().loadSnippets();
            if (snippets.size() >= noticeable)
                container.fuzzySearchService().prepare(snippets);
        });
    });
}

void VellumryApp::perform(StartCommand command, const QByteArray& activationToken)
{
    panelActivation->offerToken(activationToken);
    windows.fillWindow();
    switch (command) {
    case StartCommand::open:
        appDelegate.applicationShouldHandleReopen(windows.hasVisibleWindows());
        break;
    case StartCommand::stayHidden:
        break;
    case StartCommand::togglePalette:
        Q_EMIT NotificationCenter::defaultCenter().togglePalette();
        break;
    case StartCommand::newSnippet:
        appDelegate.menuBar()->createSnippet();
        break;
    case StartCommand::showSettings:
        appDelegate.menuBar()->openSettings();
        break;
    case StartCommand::quit:
        appDelegate.terminate();
        break;
    }
}

} // namespace vellumry
