#include "app/MenuBarService.h"

#include "app/KeyEquivalent.h"
#include "core/Log.h"
#include "core/Scheduler.h"
#include "notifications/NotificationCenter.h"
#include "platform/StatusArea.h"
#include "settings/HotkeyServiceProtocol.h"
#include "settings/SettingsService.h"
#include "views/common/Icon.h"

#include <QAction>
#include <QCursor>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QPalette>
#include <QStringBuilder>
#include <QSystemTrayIcon>

#include <algorithm>
#include <array>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr QSizeF leastMainWindow{600.0, 400.0};
constexpr auto windowDelay = 100ms;
constexpr int menuIconSize = 16;
/// Status areas show pixels, each in a size of its own.
constexpr std::array itemIconSizes{16, 18, 22, 24, 32, 48};

template <typename Words>
bool containsAny(const QString& text, const Words& words)
{
    return std::any_of(words.begin(), words.end(),
                       [&text](QStringView word) { return text.contains(word); });
}

/// Whether the window can pass for the main window. A test of its own, wider than those of
/// MainWindowKeeper on purpose.
bool passesForMainWindow(const ApplicationWindow& window)
{
    constexpr std::array<QStringView, 6> excluded{u"Settings", u"About",   u"Alert",
                                                  u"Panel",    u"Popover", u"Menu"};
    constexpr std::array<QStringView, 3> wanted{u"AppKitWindow", u"SwiftUI", u"NSWindow"};
    const QString name = window.className();
    if (window.isPanel() || containsAny(name, excluded))
        return false;
    const QSizeF frame = window.frameSize();
    return containsAny(name, wanted) ||
           (window.hasContentView() && frame.width() > leastMainWindow.width() &&
            frame.height() > leastMainWindow.height());
}

QIcon menuIcon(const QString& symbol)
{
    const QColor color = QGuiApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const int scale : {1, 2})
        icon.addPixmap(Icon(symbol).pixmap(menuIconSize, color, scale));
    return icon;
}

} // namespace

MenuBarService::MenuBarService(Dependencies dependencies, QObject* parent)
    : QObject(parent), services(std::move(dependencies))
{
    connect(&services.statusArea, &StatusArea::appeared, this, &MenuBarService::setupMenuBar);
    connect(&services.statusArea, &StatusArea::missing, this, [] {
        log(u"MenuBarService",
            u"this desktop shows no status area, so Vellumry is reached by its hot key, by its "
            u"windows and by starting it again");
    });
    connect(&services.notifications, &NotificationCenter::hotkeyDidChange, this,
            &MenuBarService::hotkeyDidChange);
    connect(&services.hotkeyService, &HotkeyServiceProtocol::desktopShortcutChanged, this,
            [this] { hotkeyDidChange(services.settings.quickSearchHotkey()); });
    // The start has more urgent things to do.
    services.scheduler.after(0ms, this, [this] { services.statusArea.startLooking(); });
}

MenuBarService::~MenuBarService() = default;

void MenuBarService::setupMenuBar()
{
    statusMenu = createMenu();
    statusItem = std::make_unique<QSystemTrayIcon>(itemIcon());
    statusItem->setToolTip(QStringLiteral("Vellumry"));
    statusItem->setContextMenu(statusMenu.get());
    connect(statusMenu.get(), &QMenu::aboutToHide, this,
            [this] { statusItem->setContextMenu(statusMenu.get()); });
    // Status areas open the menu by themselves at one button only.
    connect(statusItem.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger)
                    statusMenu->popup(QCursor::pos());
            });
    statusItem->show();
}

QIcon MenuBarService::itemIcon() const
{
    const bool hasLogo = QFile::exists(services.logoFile);
    if (!hasLogo)
        log(u"MenuBarService", u"Failed to load SidebarLogo from Bundle.module");
    const Icon picture(hasLogo ? QStringLiteral("SidebarLogo") : QStringLiteral("terminal.fill"));
    const QColor color = QGuiApplication::palette().color(QPalette::WindowText);
    QIcon icon;
    for (const int size : itemIconSizes)
        icon.addPixmap(picture.pixmap(size, color, 1));
    return icon;
}

std::unique_ptr<QMenu> MenuBarService::createMenu()
{
    auto menu = std::make_unique<QMenu>();
    const auto add = [&](const QString& title, const QKeySequence& key, const QIcon& icon,
                         auto action) {
        QAction* item = menu->addAction(icon, title);
        item->setShortcut(key);
        connect(item, &QAction::triggered, this, action);
        return item;
    };
    add(QStringLiteral("Open Vellumry"), Qt::CTRL | Qt::Key_O,
        menuIcon(QStringLiteral("macwindow")), [this] { openMainWindow(); });
    searchMenuItem =
        add(QStringLiteral("Quick Search"), searchKey(services.settings.quickSearchHotkey()),
            menuIcon(QStringLiteral("magnifyingglass")),
            [this] { Q_EMIT services.notifications.togglePalette(); });
    menu->addSeparator();
    add(QStringLiteral("New Snippet"), Qt::CTRL | Qt::Key_N,
        menuIcon(QStringLiteral("plus.square")), [this] { createSnippet(); });
    menu->addSeparator();
    add(QStringLiteral("Settings..."), Qt::CTRL | Qt::Key_Comma,
        menuIcon(QStringLiteral("gearshape")), [this] { openSettings(); });
    menu->addSeparator();
    add(QStringLiteral("Quit Vellumry"), Qt::CTRL | Qt::Key_Q, QIcon(), [this] { quitApp(); });
    return menu;
}

void MenuBarService::hotkeyDidChange(const HotkeyConfig& config)
{
    if (searchMenuItem)
        searchMenuItem->setShortcut(searchKey(config));
}

/// Where the desktop decides on the keys, what it says of them counts, if a menu can show it.
QKeySequence MenuBarService::searchKey(const HotkeyConfig& config) const
{
    const auto shortcut = services.hotkeyService.desktopShortcut();
    if (!shortcut)
        return shownHotKey(config);
    const QKeySequence keys(QString::fromStdString(shortcut->trigger), QKeySequence::PortableText);
    return keys.isEmpty() || keys[0].key() == Qt::Key_unknown ? QKeySequence() : keys;
}

void MenuBarService::openMainWindow()
{
    logLine(u"MenuBarService.openMainWindow called");
    const QList<ApplicationWindow*> all = services.windows.windows();
    logLine(QString(u"Windows count: " % QString::number(all.size())));
    services.windows.setRegularActivationPolicy();
    services.windows.activateIgnoringOtherApps();
    const auto found = std::find_if(all.begin(), all.end(), [](const ApplicationWindow* window) {
        return passesForMainWindow(*window);
    });
    if (found == all.end()) {
        logLine(u"No window found in MenuBarService, posting notification");
        Q_EMIT services.notifications.openMainWindow();
        return;
    }
    logLine(QString(u"Found window in MenuBarService: " % (*found)->className()));
    (*found)->makeKeyAndOrderFront();
    services.windows.activateIgnoringOtherApps();
}

void MenuBarService::createSnippet()
{
    openMainWindow();
    services.scheduler.after(windowDelay, this,
                             [this] { Q_EMIT services.notifications.createSnippet(); });
}

void MenuBarService::openSettings()
{
    Q_EMIT services.notifications.dismissQuickSearch();
    services.hotkeyService.pauseHotkey();
    services.windows.setRegularActivationPolicy();
    services.windows.activateIgnoringOtherApps();

    constexpr std::array<QStringView, 3> titles{u"Settings", u"Preferences", u"设置"};
    if (const auto menus = services.windows.mainMenu(); !menus.empty()) {
        for (const ApplicationWindows::MenuItem& item : menus.front().items) {
            if (!containsAny(item.title, titles))
                continue;
            if (item.action)
                item.action();
            return;
        }
    }
    if (!services.windows.postSettingsShortcut())
        services.windows.showSettingsWindow();
}

void MenuBarService::quitApp()
{
    services.terminate();
}

} // namespace vellumry
