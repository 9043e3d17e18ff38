#include "views/window/ApplicationMenus.h"

#include "views/common/Button.h"
#include "views/common/KeyEventMonitor.h"
#include "views/common/PopupMenu.h"
#include "views/sidebar/CollectionSidebarView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenuBar>

#include <algorithm>
#include <utility>

namespace vellumry {

ApplicationMenus::ApplicationMenus(CollectionSidebarView& sidebar, const Theme& look,
                                   QWidget& below)
    : QObject(&below), contents(below), sidebarView(sidebar), columns(sidebar.parentWidget()),
      theme(look)
{
    new KeyEventMonitor([this](const QKeyEvent& event) { return handleKey(event); }, &contents);
    qApp->installEventFilter(this);
}

void ApplicationMenus::setBar(QMenuBar& newBar)
{
    bar = &newBar;
    if (!bar->isNativeMenuBar())
        dressMenus();
    if (menu)
        menu->deleteLater();
    menu = makeList();
    applyTheme();
    arrange();
    offerMenus();
}

void ApplicationMenus::setCovered(bool isCovered)
{
    covered = isCovered;
    offerMenus();
}

void ApplicationMenus::offerMenus()
{
    if (!bar)
        return;
    const QList<QAction*> menus = bar->actions();
    for (QAction* each : menus)
        each->setEnabled(!covered || each == menus.constFirst());
}

void ApplicationMenus::dressMenus()
{
    const QList<QAction*> entries = bar->actions();
    for (QAction* each : entries) {
        auto* dressed = new PopupMenu(theme, bar);
        dressed->setTitle(each->menu()->title());
        dressed->addActions(each->menu()->actions());
        bar->removeAction(each);
        bar->addMenu(dressed);
    }
}

void ApplicationMenus::applyTheme()
{
    if (!bar)
        return;
    QList<QWidget*> parts{bar.data(), menu};
    for (const QAction* action : bar->actions())
        parts.append(action->menu());
    for (QWidget* part : parts) {
        part->setPalette(theme.palette());
        part->setFont(theme.font(TextStyle::body));
    }
}

PopupMenu* ApplicationMenus::makeList() const
{
    auto* list = new PopupMenu(theme, &contents);
    // What the bar begins with, the settings and the end, a list ends with.
    QList<QAction*> menus = bar->actions();
    std::rotate(menus.begin(), std::min(menus.begin() + 1, menus.end()), menus.end());
    for (const QAction* each : std::as_const(menus)) {
        if (!list->isEmpty())
            list->addSeparator();
        list->addActions(each->menu()->actions());
    }
    return list;
}

bool ApplicationMenus::isButtonOnScreen() const
{
    const QWidget* button = sidebarView.menuButton();
    return button->isVisibleTo(button->window());
}

void ApplicationMenus::arrange()
{
    if (!bar)
        return;
    const bool isGlobal = bar->isNativeMenuBar();
    sidebarView.setApplicationMenu(isGlobal ? nullptr : menu);
    if (!isGlobal)
        bar->setVisible(!isButtonOnScreen());
}

bool ApplicationMenus::open()
{
    if (isButtonOnScreen()) {
        sidebarView.openApplicationMenu();
        menu->setActiveAction(menu->actions().constFirst());
        return true;
    }
    if (!bar || !bar->isVisible())
        return false;
    bar->setActiveAction(bar->actions().constFirst());
    return true;
}

bool ApplicationMenus::handleKey(const QKeyEvent& event)
{
    // The bar, while it shows, looks after Alt itself.
    isAltAlone = event.key() == Qt::Key_Alt &&
                 (event.modifiers() & ~Qt::AltModifier) == Qt::NoModifier && isButtonOnScreen();
    return event.key() == Qt::Key_F10 && !hasModifier(event) && open();
}

bool ApplicationMenus::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
        if (watched == &sidebarView || watched == columns)
            arrange();
        break;
    case QEvent::KeyRelease:
        // It comes to the window first, then to what has the focus in it.
        if (watched->isWidgetType() && std::exchange(isAltAlone, false) &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt)
            open();
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::MouseButtonPress:
    case QEvent::Move: // of a window that is dragged with Alt
    case QEvent::Shortcut:
    case QEvent::Show: // of the palette, for whose keys Alt was pressed
    case QEvent::Wheel:
        isAltAlone = false;
        break;
    default:
        break;
    }
    return false;
}

} // namespace vellumry
