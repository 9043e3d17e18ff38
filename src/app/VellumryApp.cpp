#include "app/VellumryApp.h"

#include "app/AppDelegate.h"
#include "app/DependencyContainer.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/makeHotKeyBackend.h"
#include "notifications/NotificationCenter.h"
#include "palette/FuzzySearchService.h"
#include "palette/RandomPasswordService.h"
#include "platform/QuitSignals.h"
#include "platform/linux/X11WindowActivation.h"
#include "settings/CategoryColorService.h"
#include "settings/HotkeyService.h"
#include "settings/SettingsService.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"

#include <QApplication>
#include <QDir>

#include <csignal>
#include <time.h>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// The GTK theme plugin, which some desktops load by their name alone, doubles the start-up time
/// and triples the memory for looks that this program draws itself. What the user has set wins.
void choosePlatformTheme()
{
    const bool isKde =
        qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1StringView("KDE"));
    if (!isKde && !qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"))
        qputenv("QT_QPA_PLATFORMTHEME", "generic");
}

void postToMainThread(std::function<void()> action)
{
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(action), Qt::QueuedConnection);
}

std::chrono::duration<double> systemUptime()
{
    timespec time = {};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// A newcomer's first search is to find something. Only the default folder is filled, and only
/// while nothing at all is in it: a folder with files of any kind, or one that does not tell, is
/// not ours to judge here.
void seedEmptyDefaultFolder(CollectionFileStorageService& storage)
{
    const StorageLocationManager& location = StorageLocationManager::shared();
    const QDir folder(location.currentLocation());
    const bool isDefault = folder.path() == QDir(location.defaultLocation()).path();
    const bool isUnknown = folder.exists() && !folder.isReadable();
    if (isDefault && !isUnknown &&
        folder.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        storage.seedDefaultSnippets();
}

/// What can wait until the hot key is in force, each in a turn of its own, so that a press in
/// between is answered first.
void prepareWhenIdle(AppDelegate& delegate, DependencyContainer& container)
{
    Scheduler& scheduler = EventLoopScheduler::shared();
    scheduler.after(0ms, &delegate, [&delegate, &container, &scheduler] {
        seedEmptyDefaultFolder(container.collectionFileStorageService());
        (void)container.storageService().loadSnippets();
        scheduler.after(0ms, &delegate, [&delegate, &container, &scheduler] {
            delegate.preparePalette();
            scheduler.after(0ms, &delegate, [&container] {
                // For fewer it takes no time that anyone could notice at the first search.
                constexpr qsizetype noticeable = 5'000;
                const QList<Snippet> snippets = container.storageService().loadSnippets();
                if (snippets.size() >= noticeable)
                    container.fuzzySearchService().prepare(snippets);
            });
        });
    });
}

} // namespace

int VellumryApp::run(int& argc, char** argv)
{
    choosePlatformTheme();
    // A reader of our lines that goes away, as `head` does, is no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    hotkey::HotKeysController::setBackend(hotkey::makeHotKeyBackend(postToMainThread));
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vellumry"));
    QApplication::setDesktopFileName(QStringLiteral("vellumry"));
    QApplication::setQuitOnLastWindowClosed(false);

    DependencyContainer& container = DependencyContainer::shared();
    X11WindowActivation panelActivation;
    const QuitSignals quitSignals(&QCoreApplication::quit);
    AppDelegate delegate(
        {container.storageService(), container.searchService(), container.clipboardService(),
         RandomPasswordService::shared(), container.hotkeyService(), container.settings(),
         NotificationCenter::defaultCenter(), panelActivation, EventLoopScheduler::shared(),
         SystemClock::shared(),
         [](const QString& collection) {
             return CategoryColorService::shared().getColor(collection);
         },
         [] { return StorageLocationManager::shared().currentLocationDisplayName(); }, systemUptime,
         [&container] { container.collectionFileStorageService().startFileWatching(); }});
    delegate.applicationDidFinishLaunching();
    prepareWhenIdle(delegate, container);

    const int status = QApplication::exec();
    container.collectionFileStorageService().stopFileWatching();
    hotkey::HotKeysController::setBackend(nullptr);
    return status;
}

} // namespace vellumry
