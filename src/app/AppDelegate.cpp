#include "app/AppDelegate.h"

#include "app/MenuBarService.h"
#include "core/Log.h"
#include "hotkey/HotKeysController.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/CommandPaletteViewModel.h"
#include "platform/PanelActivation.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "storage/StorageServiceProtocol.h"
#include "views/common/ToastWindow.h"
#include "views/palette/CommandPaletteView.h"
#include "views/palette/KeyablePanel.h"

#include <QStringBuilder>

#include <algorithm>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr QSize paletteSize{680, 480};
/// A moment's loss of the keyboard, shorter than this, does not close the palette.
constexpr auto focusLossGrace = 100ms;
constexpr int mainWindowAttempts = 5;
constexpr auto mainWindowDelay = 300ms;
/// The main window's contents settle before a snippet is selected in them.
constexpr auto selectionDelay = 100ms;
/// A start so soon after the machine's counts as one by the login.
constexpr std::chrono::duration<double> loginStartLimit = 120s;
/// Where a toast stands when there is no palette.
constexpr QRect toastPlaceWithoutPalette{190, 195, ToastWindow::toastWidth,
                                         ToastWindow::toastHeight};

void log(QStringView message)
{
    vellumry::log(u"AppDelegate", message);
}

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

void dismiss(ToastWindow* toast)
{
    if (!toast)
        return;
    toast->hide();
    toast->deleteLater();
}

/// Lets the keys go that were typed behind the hot key.
void releaseKeyboard()
{
    hotkey::HotKeysController::backend().releaseKeyboard();
}

} // namespace

AppDelegate::AppDelegate(const Dependencies& dependencies, QObject* parent)
    : QObject(parent), services(dependencies),
      windowKeeper({services.windows, services.notifications, services.scheduler})
{
}

AppDelegate::~AppDelegate()
{
    delete toastWindow;
}

ToastWindow* AppDelegate::toast() const
{
    return toastWindow;
}

void AppDelegate::applicationDidFinishLaunching()
{
    const bool isLaunchAtLoginStart = services.systemUptime() < loginStartLimit;
    logLine(QString(u"Vellumry launched, isLaunchAtLoginStart: " % text(isLaunchAtLoginStart)));
    services.windows.setRegularActivationPolicy();
    services.windows.activateIgnoringOtherApps();
    services.startFileWatching();
    menuBarService = std::make_unique<MenuBarService>(MenuBarService::Dependencies{
        services.windows, services.statusArea, services.notifications, services.hotkeyService,
        services.settings, services.scheduler, [this] { terminate(); }});
    setupPalette();
    setupHotkey();
    windowKeeper.setupWindowMonitor();
    windowKeeper.setupMainWindowWithRetry(mainWindowAttempts, mainWindowDelay);
    registerObservers();
}

void AppDelegate::applicationDidBecomeActive()
{
    if (ApplicationWindow* window = services.windows.keyWindow())
        window->makeContentViewFirstResponder();
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    return windowKeeper.applicationShouldHandleReopen(hasVisibleWindows);
}

void AppDelegate::terminate()
{
    if (!services.applicationShouldTerminate())
        return;
    services.applicationWillTerminate();
    services.endProcess();
}

void AppDelegate::setupPalette()
{
    paletteWindow = std::make_unique<KeyablePanel>(services.panelActivation);
    paletteWindow->setFixedSize(paletteSize);
    paletteViewModel = std::make_unique<CommandPaletteViewModel>(
        CommandPaletteViewModel::Dependencies{
            services.storageService, services.searchService, services.clipboardService,
            services.passwordService, services.notifications, services.scheduler, services.clock},
        [](const Snippet&) {}, [this] { hidePalette(); });
    paletteView =
        new CommandPaletteView({*paletteViewModel, services.notifications, services.scheduler,
                                services.clock, services.theme, services.collectionColor});
    paletteWindow->setContentView(paletteView);
    paletteWindow->center();
    connect(paletteWindow.get(), &KeyablePanel::gainedKeyStatus, this, releaseKeyboard);
    connect(paletteWindow.get(), &KeyablePanel::resignedKeyStatus, this,
            &AppDelegate::paletteResignedKey);
}

void AppDelegate::preparePalette()
{
    // A palette that is already in use would lose its query.
    if (isPalettePresented)
        return;
    paletteViewModel->onAppear();
    paletteWindow->prepare();
}

void AppDelegate::togglePalette()
{
    log(QString(u"togglePalette called, paletteWindow: " % text(paletteWindow != nullptr)));
    if (!paletteWindow) {
        log(u"paletteWindow is nil, recreating...");
        setupPalette();
    }
    if (paletteWindow->isVisible() && isPalettePresented) {
        log(u"hiding palette");
        hidePalette();
        hotkey::HotKeysController::backend().releaseKeyboardAfter(
            static_cast<std::uint32_t>(paletteWindow->winId()));
        return;
    }
    log(u"showing palette");
    paletteViewModel->onAppear();
    if (ApplicationWindow* mainWindow = windowKeeper.mainWindow())
        mainWindow->orderOut();
    services.windows.setRegularActivationPolicy();
    services.windows.activateIgnoringOtherApps();
    if (const std::string token = hotkey::HotKeysController::backend().takeActivationToken();
        !token.empty())
        services.panelActivation.offerToken(QByteArray::fromStdString(token));
    services.scheduler.after(0ms, this, [this] {
        paletteWindow->center();
        paletteWindow->orderFront();
        ++showCount;
        setPalettePresented(true);
        log(u"palette shown, isPalettePresented = true");
    });
}

void AppDelegate::showQuickSearchToast(const QString& message)
{
    // It would take the keyboard from the program that the person goes on with.
    if (!services.panelActivation.arrangesWindows())
        return;
    toastWindow = new ToastWindow(services.panelActivation);
    toastWindow->showText(message,
                          paletteWindow ? paletteWindow->place() : toastPlaceWithoutPalette);
    // Each toast's time ends the toast that stands by then, which can be a newer one.
    services.scheduler.after(ToastWindow::holdTime, this, [this, own = toastWindow] {
        // Its own end does not hang on the newer one's fading, which ends with that window.
        if (own && own != toastWindow)
            services.scheduler.after(ToastWindow::fadeTime, own, [own] { dismiss(own); });
        if (!toastWindow)
            return;
        toastWindow->fade(ToastWindow::fadeTime, [this, faded = toastWindow] {
            dismiss(faded);
            dismiss(toastWindow);
            toastWindow = nullptr;
        });
    });
}

void AppDelegate::openOrCreateMainWindow()
{
    windowKeeper.openOrCreateMainWindow();
}

void AppDelegate::openSnippetInApp(const std::optional<QString>& snippetID)
{
    openOrCreateMainWindow();
    if (snippetID)
        services.scheduler.after(selectionDelay, this,
                                 [this, id = *snippetID] { selectSnippet(id); });
}

void AppDelegate::selectSnippet(const QString& snippetID)
{
    SnippetListViewModel& list = services.mainSnippetListViewModel();
    const QList<Snippet>& snippets = list.snippets();
    const auto snippet =
        std::find_if(snippets.begin(), snippets.end(),
                     [&snippetID](const Snippet& each) { return each.id() == snippetID; });
    if (snippet != snippets.end())
        list.setSelectedCollection(snippet->collection());
    list.setSelectedSnippetID(snippetID);
}

void AppDelegate::setupHotkey()
{
    const HotkeyConfig config = services.settings.quickSearchHotkey();
    log(QString(u"setupHotkey - key: " % config.key % u", modifiers: " %
                QString::fromStdString(config.modifiers.description())));
    services.hotkeyService.registerGlobalHotkey(config.key, config.modifiers,
                                                [self = QPointer(this)] {
                                                    if (!self)
                                                        return;
                                                    log(u"hotkey callback triggered");
                                                    log(u"calling togglePalette");
                                                    self->togglePalette();
                                                });
}

void AppDelegate::reregisterHotkey(const HotkeyConfig& config)
{
    services.hotkeyService.unregisterHotkey();
    services.hotkeyService.registerGlobalHotkey(config.key, config.modifiers,
                                                [self = QPointer(this)] {
                                                    if (self)
                                                        self->togglePalette();
                                                });
}

void AppDelegate::registerObservers()
{
    const NotificationCenter& center = services.notifications;
    connect(&center, &NotificationCenter::openMainWindow, this,
            &AppDelegate::openOrCreateMainWindow);
    connect(&center, &NotificationCenter::openSnippetInApp, this, &AppDelegate::openSnippetInApp);
    connect(&center, &NotificationCenter::hotkeyDidChange, this, &AppDelegate::reregisterHotkey);
    connect(&center, &NotificationCenter::quickSearchShowToast, this,
            [this](const std::optional<QString>& message) {
                showQuickSearchToast(message.value_or(QStringLiteral("Copied to Clipboard")));
            });
    connect(&center, &NotificationCenter::togglePalette, this, &AppDelegate::togglePalette);
    connect(&center, &NotificationCenter::dismissQuickSearch, this, [this] {
        if (paletteWindow && paletteWindow->isVisible()) {
            log(u"dismissPalette called");
            hidePalette();
        }
    });
}

void AppDelegate::setPalettePresented(bool isPresented)
{
    isPalettePresented = isPresented;
    paletteView->setPresented(isPresented);
}

void AppDelegate::hidePalette()
{
    paletteWindow->orderOut();
    setPalettePresented(false);
}

void AppDelegate::paletteResignedKey()
{
    // A palette that was closed and raised again meanwhile may not have the keyboard back yet.
    services.scheduler.after(focusLossGrace, this, [this, showing = showCount] {
        if (paletteWindow->isKey() || !isPalettePresented || showing != showCount)
            return;
        log(u"palette lost focus, hiding");
        hidePalette();
    });
}

} // namespace vellumry
