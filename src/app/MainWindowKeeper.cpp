#include "app/MainWindowKeeper.h"

#include "core/Log.h"
#include "core/Scheduler.h"
#include "notifications/NotificationCenter.h"

#include <QStringBuilder>
#include <QStringList>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// Part of the class name of every window that the window group makes.
constexpr QStringView groupWindowName = u"AppKitWindow";
constexpr std::array<QStringView, 7> excludedWords{u"Settings", u"About",     u"Alert", u"Popover",
                                                   u"Menu",     u"StatusBar", u"Toast"};
constexpr std::array<QStringView, 3> newWindowTitles{u"New Window", u"New", u"新建窗口"};

constexpr auto openingGuardTime = 300ms;
constexpr int creationAttempts = 5;
constexpr auto creationDelay = 200ms;
constexpr auto appearanceDelay = 100ms;

QStringView truth(bool value)
{
    return value ? u"true" : u"false";
}

/// The narrow test for a main window.
bool isGroupWindow(const ApplicationWindow& window)
{
    const QString name = window.className();
    return !window.isPanel() && name.contains(groupWindowName) && !name.contains(u"Settings");
}

QList<ApplicationWindow*> windowsThatPass(ApplicationWindows& windows,
                                          bool (*test)(const ApplicationWindow&))
{
    QList<ApplicationWindow*> found;
    for (ApplicationWindow* window : windows.windows()) {
        if (test(*window))
            found.append(window);
    }
    return found;
}

QString description(const QList<ApplicationWindow*>& windows)
{
    QStringList entries;
    for (const ApplicationWindow* window : windows)
        entries.append(u'"' % window->className() % u" - visible: " % truth(window->isVisible()) %
                       u'"');
    return u'[' % entries.join(u", ") % u']';
}

QString description(const ApplicationWindow& window)
{
    const auto address = reinterpret_cast<quintptr>(&window);
    return u'<' % window.className() % u": 0x" % QString::number(address, 16) % u'>';
}

/// What the first of the titles under which windows are made does, and that title.
ApplicationWindows::MenuItem newWindowItem(ApplicationWindows& windows)
{
    const auto menus = windows.mainMenu();
    const auto file = std::find_if(menus.begin(), menus.end(), [](const auto& menu) {
        return menu.title == QStringLiteral("File");
    });
    if (file == menus.end())
        return {};
    for (const QStringView title : newWindowTitles) {
        const auto item = std::find_if(file->items.begin(), file->items.end(),
                                       [title](const auto& entry) { return entry.title == title; });
        if (item != file->items.end() && item->action)
            return *item;
    }
    return {};
}

} // namespace

bool MainWindowDelegate::windowShouldClose(ApplicationWindow& window)
{
    window.orderOut();
    return false;
}

MainWindowKeeper::MainWindowKeeper(const Dependencies& dependencies, QObject* parent)
    : QObject(parent), services(dependencies)
{
}

bool MainWindowKeeper::isSwiftUIMainWindow(const ApplicationWindow& window)
{
    const QString name = window.className();
    return !window.isPanel() && name.contains(groupWindowName) &&
           std::none_of(excludedWords.begin(), excludedWords.end(),
                        [&name](QStringView word) { return name.contains(word); });
}

void MainWindowKeeper::openOrCreateMainWindow()
{
    logLine(u"openOrCreateMainWindow called");
    if (isOpeningMainWindow) {
        logLine(u"openOrCreateMainWindow: already in progress, skipping");
        return;
    }
    isOpeningMainWindow = true;

    logLine(QString(u"All windows: " % description(services.windows.windows())));
    const QList<ApplicationWindow*> found = mainWindows();
    logLine(QString(u"Found " % QString::number(found.size()) % u" main window(s)"));
    if (found.size() > 1) {
        logLine(u"WARNING: Multiple main windows detected, closing extras");
        for (auto extra = std::next(found.begin()); extra != found.end(); ++extra) {
            logLine(QString(u"Closing duplicate window: " % (*extra)->className()));
            (*extra)->close();
        }
    }
    services.windows.setRegularActivationPolicy();
    services.windows.activateIgnoringOtherApps();

    if (!found.isEmpty()) {
        ApplicationWindow& window = *found.first();
        logLine(QString(u"Using existing main window: " % window.className() % u", visible: " %
                        truth(window.isVisible())));
        window.makeKeyAndOrderFront();
        adopt(window);
        resetOpeningFlag();
        return;
    }
    if (mainWindowRef && services.windows.windows().contains(mainWindowRef)) {
        logLine(QString(u"Using saved window reference: " % mainWindowRef->className()));
        mainWindowRef->makeKeyAndOrderFront();
        adopt(*mainWindowRef);
        resetOpeningFlag();
        return;
    }
    logLine(u"Clearing invalid mainWindowRef");
    mainWindowRef = nullptr;
    logLine(u"No window found, attempting to create new window...");
    if (const ApplicationWindows::MenuItem item = newWindowItem(services.windows); item.action) {
        logLine(QString(u"Trying menu item: " % item.title));
        item.action();
    } else {
        logLine(u"Menu method failed, creating window programmatically...");
        createMainWindowProgrammatically();
    }
    waitForWindowCreation(creationAttempts, creationDelay, [self = QPointer(this)] {
        if (self)
            self->resetOpeningFlag();
    });
}

void MainWindowKeeper::waitForWindowCreation(int attempts, std::chrono::milliseconds delay,
                                             std::function<void()> completion)
{
    if (attempts < 1) {
        logLine(u"waitForWindowCreation: All attempts exhausted");
        completion();
        return;
    }
    // On the windows' account and not the keeper's: the completion is called also without it.
    services.scheduler.after(
        delay, &services.windows,
        [self = QPointer(this), attempts, delay, done = std::move(completion)]() mutable {
            if (!self) {
                done();
                return;
            }
            const QList<ApplicationWindow*> found = self->mainWindows();
            if (found.isEmpty()) {
                logLine(QString(u"waitForWindowCreation: Window not ready, retrying... attempts: " %
                                QString::number(attempts - 1)));
                self->waitForWindowCreation(attempts - 1, delay, std::move(done));
                return;
            }
            ApplicationWindow& window = *found.first();
            logLine(QString(u"Window found after waiting: " % window.className()));
            window.makeKeyAndOrderFront();
            self->adopt(window);
            done();
        });
}

void MainWindowKeeper::createMainWindowProgrammatically()
{
    ApplicationWindow& window = services.windows.createWindow();
    adopt(window);
    window.makeKeyAndOrderFront();
    logLine(u"Main window created programmatically");
}

void MainWindowKeeper::closeDuplicateMainWindows(ApplicationWindow& window)
{
    // Closing a window makes another one key.
    if (isCheckingDuplicateWindows)
        return;
    isCheckingDuplicateWindows = true;
    const QList<ApplicationWindow*> found = mainWindows();
    if (found.size() > 1) {
        logLine(QString(u"WARNING: Detected " % QString::number(found.size()) %
                        u" main windows, closing duplicates"));
        for (ApplicationWindow* duplicate : found) {
            if (duplicate == &window)
                continue;
            logLine(QString(u"Closing duplicate window: " % duplicate->className() % u" - " %
                            description(*duplicate)));
            duplicate->close();
        }
        adopt(window);
    }
    isCheckingDuplicateWindows = false;
}

void MainWindowKeeper::setupMainWindowWithRetry(int attempts, std::chrono::milliseconds delay)
{
    if (attempts < 1) {
        logLine(u"setupMainWindowWithRetry: All attempts exhausted, no main window found");
        return;
    }
    services.scheduler.after(delay, this, [this, attempts, delay] {
        const QList<ApplicationWindow*> found = windowsThatPass(services.windows, isGroupWindow);
        if (found.isEmpty()) {
            logLine(QString(u"setupMainWindowWithRetry: Window not found, retrying... attempts "
                            u"remaining: " %
                            QString::number(attempts - 1)));
            setupMainWindowWithRetry(attempts - 1, delay);
            return;
        }
        ApplicationWindow& window = *found.first();
        window.makeKeyAndOrderFront();
        adopt(window);
        logLine(QString(u"Main window delegate set: " % window.className() %
                        u", attempts remaining: " % QString::number(attempts)));
    });
}

void MainWindowKeeper::setupWindowMonitor()
{
    connect(&services.windows, &ApplicationWindows::windowDidBecomeKey, this,
            [this](ApplicationWindow* window) {
                if (window && isSwiftUIMainWindow(*window))
                    closeDuplicateMainWindows(*window);
            });
}

bool MainWindowKeeper::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    logLine(QString(u"applicationShouldHandleReopen called, hasVisibleWindows: " %
                    truth(hasVisibleWindows)));
    if (!hasVisibleWindows)
        openOrCreateMainWindow();
    else if (const QList<ApplicationWindow*> found = mainWindows(); !found.isEmpty())
        found.first()->makeKeyAndOrderFront();
    return hasVisibleWindows;
}

void MainWindowKeeper::onMainWindowAppear()
{
    services.scheduler.after(appearanceDelay, this, [this] {
        services.windows.activateIgnoringOtherApps();
        if (const auto all = services.windows.windows(); !all.isEmpty())
            all.first()->makeKeyAndOrderFront();
    });
}

void MainWindowKeeper::activateMainWindow()
{
    services.windows.activateIgnoringOtherApps();
    const QList<ApplicationWindow*> found = windowsThatPass(services.windows, isGroupWindow);
    if (found.isEmpty()) {
        Q_EMIT services.notifications.openMainWindow();
        return;
    }
    const auto visible = std::find_if(found.begin(), found.end(),
                                      [](const auto* window) { return window->isVisible(); });
    (visible == found.end() ? found.first() : *visible)->makeKeyAndOrderFront();
}

void MainWindowKeeper::adopt(ApplicationWindow& window)
{
    mainWindowRef = &window;
    window.setDelegate(&windowDelegate);
    window.setReleasedWhenClosed(false);
}

void MainWindowKeeper::resetOpeningFlag()
{
    services.scheduler.after(openingGuardTime, this, [this] { isOpeningMainWindow = false; });
}

QList<ApplicationWindow*> MainWindowKeeper::mainWindows() const
{
    return windowsThatPass(services.windows, isSwiftUIMainWindow);
}

} // namespace vellumry
