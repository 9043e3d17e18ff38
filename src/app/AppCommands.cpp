#include "app/AppCommands.h"

#include "app/KeyEquivalent.h"
#include "notifications/NotificationCenter.h"
#include "platform/ApplicationWindows.h"
#include "settings/SettingsService.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace vellumry {

AppCommands::AppCommands(Dependencies dependencies, QObject* parent)
    : QObject(parent), services(std::move(dependencies))
{
    NotificationCenter& center = services.notifications;

    QMenu& application = addMenu(QStringLiteral("Vellumry"));
    add(application, QStringLiteral("Settings..."), Qt::CTRL | Qt::Key_Comma,
        services.showSettings);
    add(application, QStringLiteral("Quit Vellumry"), Qt::CTRL | Qt::Key_Q, services.terminate);

    QMenu& file = addMenu(QStringLiteral("File"));
    add(file, QStringLiteral("New Snippet"), Qt::CTRL | Qt::Key_N,
        [&center] { Q_EMIT center.createSnippet(); });
    add(file, QStringLiteral("Save"), Qt::CTRL | Qt::Key_S,
        [&center] { Q_EMIT center.performSave(); });
    add(file, QStringLiteral("Close Window"), Qt::CTRL | Qt::Key_W, [&windows = services.windows] {
        if (ApplicationWindow* window = windows.keyWindow())
            window->orderOut();
    });
    file.addSeparator();
    add(file, QStringLiteral("Import from JSON..."), Qt::CTRL | Qt::SHIFT | Qt::Key_I,
        [&center] { Q_EMIT center.importSnippets(); });
    add(file, QStringLiteral("Reveal Data in Finder"), Qt::CTRL | Qt::SHIFT | Qt::Key_E,
        [&center] { Q_EMIT center.revealDataInFinder(); });

    add(addMenu(QStringLiteral("View")), QStringLiteral("Toggle Sidebar"),
        Qt::CTRL | Qt::META | Qt::Key_S, services.toggleSidebar);

    QAction& palette = add(addMenu(QStringLiteral("Snippets")), QStringLiteral("Toggle Palette"),
                           keyEquivalent(services.settings.quickSearchHotkey()),
                           [&center] { Q_EMIT center.togglePalette(); });
    connect(&services.settings, &SettingsService::quickSearchHotkeyChanged, &palette,
            [&palette, &settings = services.settings] {
                palette.setShortcut(keyEquivalent(settings.quickSearchHotkey()));
            });
}

AppCommands::~AppCommands() = default;

QList<QMenu*> AppCommands::menus() const
{
    QList<QMenu*> list;
    for (const auto& menu : ownMenus)
        list.append(menu.get());
    return list;
}

QList<QAction*> AppCommands::actions() const
{
    QList<QAction*> list;
    for (const auto& menu : ownMenus)
        list.append(menu->actions());
    return list;
}

QMenu& AppCommands::addMenu(const QString& title)
{
    return *ownMenus.emplace_back(std::make_unique<QMenu>(title));
}

QAction& AppCommands::add(QMenu& menu, const QString& title, const QKeySequence& shortcut,
                          std::function<void()> action)
{
    QAction* item = menu.addAction(title);
    item->setShortcut(shortcut);
    connect(item, &QAction::triggered, this, [run = std::move(action)] { run(); });
    return *item;
}

} // namespace vellumry
