#include "app/QtApplicationWindows.h"

#include "app/AppCommands.h"
#include "core/Scheduler.h"
#include "platform/PanelActivation.h"
#include "platform/linux/SessionBus.h"
#include "views/common/SheetHost.h"
#include "views/palette/KeyablePanel.h"
#include "views/window/ContentsGround.h"
#include "views/window/MainContentView.h"
#include "views/window/MainWindow.h"
#include "views/window/SettingsWindow.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr auto paintPatience = 100ms;

/// The handle of a top-level widget, and its child.
class WidgetWindow final : public ApplicationWindow {
public:
    WidgetWindow(QWidget& window, ApplicationWindows& program, PanelActivation& manners)
        : ApplicationWindow(&window), widget(window), all(program), activation(manners)
    {
        widget.installEventFilter(this);
    }

    [[nodiscard]] QString className() const override
    {
        return QString::fromLatin1(widget.metaObject()->className());
    }
    [[nodiscard]] bool isPanel() const override
    {
        return qobject_cast<const KeyablePanel*>(&widget) != nullptr;
    }
    [[nodiscard]] bool isVisible() const override
    {
        return widget.isVisible() && !widget.isMinimized();
    }
    [[nodiscard]] bool hasContentView() const override { return !widget.children().isEmpty(); }
    [[nodiscard]] QSizeF frameSize() const override { return widget.frameSize(); }
    [[nodiscard]] bool isKey() const override { return widget.isActiveWindow(); }
    [[nodiscard]] bool isClosed() const { return closed; }

    void makeKeyAndOrderFront() override
    {
        // One that was minimised would come back as it went.
        widget.setWindowState(widget.windowState() & ~Qt::WindowMinimized);
        widget.show();
        widget.raise();
        // In the person's name: the program's own wish can be turned down while it has no event of
        // the person's to show for it, as when it is started a second time.
        activation.activate(*widget.windowHandle());
    }
    void orderOut() override { widget.hide(); }
    void close() override
    {
        closed = true;
        widget.hide();
        widget.deleteLater();
    }
    void makeContentViewFirstResponder() override
    {
        // Wayland tells of the click that activates a window before it tells of the activation.
        const QWidget* focused = widget.focusWidget();
        if (QGuiApplication::mouseButtons() != Qt::NoButton && focused && focused->underMouse())
            return;
        const auto* main = qobject_cast<const QMainWindow*>(&widget);
        QWidget* contents = main ? main->centralWidget() : &widget;
        // A sheet keeps what it has.
        if (!SheetHost::isCovering(*contents))
            contents->setFocus(Qt::ActiveWindowFocusReason);
    }

    void setDelegate(WindowDelegate* newDelegate) override { delegate = newDelegate; }
    void setReleasedWhenClosed(bool isReleased) override
    {
        widget.setAttribute(Qt::WA_DeleteOnClose, isReleased);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::WindowActivate)
            Q_EMIT all.windowDidBecomeKey(this);
        if (event->type() == QEvent::Close && delegate && !delegate->windowShouldClose(*this)) {
            event->ignore();
            return true;
        }
        return false;
    }

private:
    QWidget& widget;
    ApplicationWindows& all;
    PanelActivation& activation;
    WindowDelegate* delegate = nullptr;
    bool closed = false;
};

/// The windows beside the main windows, without menus, in the order in which the system's windows
/// were made.
QList<QWidget*> otherWindows(const QList<QPointer<QWidget>>& mainWindows)
{
    QList<QWidget*> others = QApplication::topLevelWidgets();
    others.removeIf([&mainWindows](QWidget* widget) {
        return mainWindows.contains(widget) || widget->windowType() == Qt::Popup;
    });
    const QWindowList made = QGuiApplication::topLevelWindows();
    const auto place = [&made](const QWidget* widget) {
        const qsizetype index = made.indexOf(widget->windowHandle());
        return index < 0 ? made.size() : index;
    };
    std::stable_sort(others.begin(), others.end(),
                     [&place](const QWidget* a, const QWidget* b) { return place(a) < place(b); });
    return others;
}

} // namespace

QtApplicationWindows::QtApplicationWindows(Dependencies dependencies, QObject* parent)
    : ApplicationWindows(parent), with(std::move(dependencies))
{
    connect(&with.activation, &PanelActivation::keyboardCameBack, this, [](const QWindow* window) {
        for (QWidget* each : QApplication::topLevelWidgets()) {
            if (each->windowHandle() == window && each->isVisible())
                QApplication::setActiveWindow(each);
        }
    });
}

QtApplicationWindows::~QtApplicationWindows()
{
    for (const QPointer<QWidget>& window : std::as_const(mainWindows))
        delete window;
    delete settingsWindow;
}

void QtApplicationWindows::openWindowOfGroup()
{
    MainWindow& window = makeWindowOfGroup();
    fill(window);
    handleOf(window).makeKeyAndOrderFront();
}

void QtApplicationWindows::openWindowOfGroupAtOnce(std::function<void()> whenFilled)
{
    MainWindow& window = makeWindowOfGroup();
    ContentsGround* ground = with.makeGround();
    window.setGround(ground);
    fillFirstWindow = [this, window = QPointer(&window), done = std::move(whenFilled)] {
        if (window) {
            fill(*window);
            if (window->isActiveWindow())
                handleOf(*window).makeContentViewFirstResponder();
        }
        done();
    };
    connect(ground, &ContentsGround::painted, this, &QtApplicationWindows::fillWindow);
    // A desktop need not show a window that it is asked to show. The time counts from when there
    // are events to handle.
    with.scheduler.after(
        0ms, this, [this] { with.scheduler.after(paintPatience, this, [this] { fillWindow(); }); });
    handleOf(window).makeKeyAndOrderFront();
}

void QtApplicationWindows::fillWindow()
{
    if (const auto fillIt = std::exchange(fillFirstWindow, nullptr))
        fillIt();
}

bool QtApplicationWindows::hasVisibleWindows() const
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [](const QWidget* widget) {
        return widget->isVisible() && !widget->isMinimized() &&
               (widget->windowType() == Qt::Window || widget->windowType() == Qt::Dialog);
    });
}

QList<ApplicationWindow*> QtApplicationWindows::windows()
{
    QList<ApplicationWindow*> handles;
    const auto add = [&](QWidget& widget) {
        ApplicationWindow& handle = handleOf(widget);
        if (!static_cast<const WidgetWindow&>(handle).isClosed())
            handles.append(&handle);
    };
    for (const QPointer<QWidget>& window : mainWindows) {
        if (window)
            add(*window);
    }
    for (QWidget* window : otherWindows(mainWindows))
        add(*window);
    return handles;
}

void QtApplicationWindows::setRegularActivationPolicy()
{
    // The desktop lists every program that has a window in the task bar.
}

void QtApplicationWindows::activateIgnoringOtherApps()
{
    // A desktop brings single windows to the front, never a program with all of its own.
}

std::vector<ApplicationWindows::Menu> QtApplicationWindows::mainMenu()
{
    std::vector<Menu> menus;
    for (const QMenu* menu : with.commands().menus()) {
        Menu& entry = menus.emplace_back(Menu{.title = menu->title(), .items = {}});
        for (QAction* action : menu->actions())
            entry.items.push_back({action->text(), [action] { action->trigger(); }});
        // Not on the screen, where New Snippet stands in its place: there, no window is missing.
        if (entry.title == QStringLiteral("File"))
            entry.items.push_back({QStringLiteral("New Window"), [self = QPointer(this)] {
                                       if (self)
                                           self->openWindowOfGroup();
                                   }});
    }
    return menus;
}

ApplicationWindow& QtApplicationWindows::createWindow()
{
    auto* window = new MainWindow;
    add(*window);
    fill(*window);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    window->move(screen.center() - window->rect().center());
    return handleOf(*window);
}

bool QtApplicationWindows::postSettingsShortcut()
{
    // Made-up keys would go to whatever program has the keyboard.
    return false;
}

void QtApplicationWindows::showSettingsWindow()
{
    if (!settingsWindow) {
        settingsWindow = new SettingsWindow(with.makeSettingsContents());
        connect(settingsWindow, &SettingsWindow::disappeared, this,
                &QtApplicationWindows::settingsWindowDidDisappear);
        settingsWindow->addActions(with.commands().actions());
    }
    handleOf(*settingsWindow).makeKeyAndOrderFront();
}

MainWindow& QtApplicationWindows::makeWindowOfGroup()
{
    auto* window = new AppKitWindow;
    add(*window);
    connect(window, &MainWindow::appeared, this, &ApplicationWindows::mainWindowDidAppear);
    return *window;
}

void QtApplicationWindows::add(MainWindow& window)
{
    window.setAttribute(Qt::WA_DeleteOnClose);
    mainWindows.removeAll(nullptr);
    mainWindows.append(&window);
}

void QtApplicationWindows::fill(MainWindow& window)
{
    lookForGlobalMenu();
    window.setContents(with.makeMainContents());
    giveMenuBar(window);
    // Their keys work also where the desktop shows the menus in its own place.
    window.addActions(with.commands().actions());
}

void QtApplicationWindows::lookForGlobalMenu()
{
    if (std::exchange(isLookingForGlobalMenu, true) || !hasSessionBus())
        return;
    connect(&globalMenu, &GlobalMenu::changed, this, [this] {
        for (QWidget* each : std::as_const(mainWindows)) {
            if (auto* main = qobject_cast<MainWindow*>(each))
                giveMenuBar(*main);
        }
    });
    globalMenu.startLooking(QDBusConnection::sessionBus());
}

void QtApplicationWindows::giveMenuBar(MainWindow& window)
{
    // A bar that might be the desktop's would wait for the bus to find out.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar, !globalMenu.isThere());
    auto* bar = new QMenuBar;
    bar->setAccessibleName(QStringLiteral("Menus"));
    for (QMenu* menu : with.commands().menus())
        bar->addMenu(menu);
    window.setMenuBar(bar);
    if (auto* contents = qobject_cast<MainContentView*>(window.centralWidget()))
        contents->setMenuBar(*bar);
}

ApplicationWindow& QtApplicationWindows::handleOf(QWidget& window)
{
    if (auto* handle = window.findChild<ApplicationWindow*>({}, Qt::FindDirectChildrenOnly))
        return *handle;
    return *new WidgetWindow(window, *this, with.activation);
}

} // namespace vellumry
