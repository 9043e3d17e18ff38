#pragma once

#include <QList>
#include <QObject>
#include <QSize>
#include <QString>

#include <functional>
#include <vector>

namespace vellumry {

class ApplicationWindow;

/// Is asked before a window closes by the person's hand.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    /// Whether the window may really close.
    virtual bool windowShouldClose(ApplicationWindow& window) = 0;
};

/// One window of the program. It ends with the window that it stands for, so whoever keeps one
/// keeps a QPointer. Main thread only.
class ApplicationWindow : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// What kind of window it is; the one thing that tells the main window apart.
    [[nodiscard]] virtual QString className() const = 0;
    [[nodiscard]] virtual bool isPanel() const = 0;
    /// Whether it is on the screen; a minimised one is not.
    [[nodiscard]] virtual bool isVisible() const = 0;
    [[nodiscard]] virtual bool hasContentView() const = 0;
    [[nodiscard]] virtual QSizeF frameSize() const = 0;
    /// Whether it has the keyboard.
    [[nodiscard]] virtual bool isKey() const = 0;

    /// Shows the window above the others and asks for the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
    /// Takes the window off the screen.
    virtual void orderOut() = 0;
    /// Ends the window without asking its delegate.
    virtual void close() = 0;
    /// Gives the keyboard within the window to what fills it.
    virtual void makeContentViewFirstResponder() = 0;

    /// `delegate` outlives the window. Without one the window closes when the person closes it.
    virtual void setDelegate(WindowDelegate* delegate) = 0;
    /// Whether the window ends when it is closed.
    virtual void setReleasedWhenClosed(bool isReleased) = 0;
};

/// The windows of the program and its main menu, as far as the rules that join them need to know.
/// The main window is made by the window group, which gives no handle to it: it is found among
/// windows(). Main thread only.
class ApplicationWindows : public QObject {
    Q_OBJECT

public:
    struct MenuItem {
        QString title;
        std::function<void()> action; ///< empty for an item that does nothing
    };
    struct Menu {
        QString title;
        std::vector<MenuItem> items;
    };

    using QObject::QObject;

    /// All windows, shown or not: the main windows first, each kind in the order in which they were
    /// made.
    [[nodiscard]] virtual QList<ApplicationWindow*> windows() = 0;
    /// The window that has the keyboard; null when another program has it.
    [[nodiscard]] ApplicationWindow* keyWindow()
    {
        for (ApplicationWindow* window : windows()) {
            if (window->isKey())
                return window;
        }
        return nullptr;
    }

    /// Makes the program one that the desktop lists among the running ones.
    virtual void setRegularActivationPolicy() = 0;
    /// Brings the program before the others.
    virtual void activateIgnoringOtherApps() = 0;

    /// The menus of the program; the first is the application's own.
    [[nodiscard]] virtual std::vector<Menu> mainMenu() = 0;

    /// Makes a window with the main window's contents outside the window group, in the middle of
    /// the screen, hidden. It is the last resort and bears another class name.
    virtual ApplicationWindow& createWindow() = 0;

    /// Presses the settings' shortcut on the person's behalf; false where no key events can be
    /// made.
    virtual bool postSettingsShortcut() = 0;
    /// Shows the settings window.
    virtual void showSettingsWindow() = 0;

Q_SIGNALS:
    /// The window has the keyboard from now on.
    void windowDidBecomeKey(vellumry::ApplicationWindow* window);
    /// A window that the window group made is on the screen for the first time.
    void mainWindowDidAppear();
};

} // namespace vellumry
