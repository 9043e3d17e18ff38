#pragma once

#include "platform/ApplicationWindows.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>

namespace vellumry {

class NotificationCenter;
class Scheduler;

/// Keeps the main window when it is closed: closing it only hides it.
class MainWindowDelegate final : public WindowDelegate {
public:
    bool windowShouldClose(ApplicationWindow& window) override;
};

/// Finds, adopts, makes and keeps the main window. The window group gives no handle to the windows
/// that it makes, so the keeper looks for them by their class names, with retries and delays; each
/// step that finds none falls through to the next. Main thread only.
class MainWindowKeeper : public QObject {
    Q_OBJECT

public:
    /// All outlive the keeper.
    struct Dependencies {
        ApplicationWindows& windows;
        NotificationCenter& notifications;
        Scheduler& scheduler;
    };

    explicit MainWindowKeeper(const Dependencies& dependencies, QObject* parent = nullptr);

    /// The adopted main window, if there is one.
    [[nodiscard]] ApplicationWindow* mainWindow() const { return mainWindowRef; }

    /// Brings the main window up, making one if need be. Requests until 0.3 s after the answer are
    /// dropped.
    void openOrCreateMainWindow();

    /// Looks up to `attempts` times, `delay` apart, for a main window that has come into being, and
    /// adopts it. `completion` is called at the end, whatever came of it.
    void waitForWindowCreation(int attempts, std::chrono::milliseconds delay,
                               std::function<void()> completion);

    /// Makes a window outside the window group: the last resort.
    void createMainWindowProgrammatically();

    /// Ends every main window but this one, which is adopted.
    void closeDuplicateMainWindows(ApplicationWindow& window);

    /// Whether the window is a main window, by the full test.
    [[nodiscard]] static bool isSwiftUIMainWindow(const ApplicationWindow& window);

    /// Adopts the window that the window group makes at start, at the latest after `attempts`
    /// looks.
    void setupMainWindowWithRetry(int attempts, std::chrono::milliseconds delay);

    /// From now on a main window that gets the keyboard is the only one.
    void setupWindowMonitor();

    /// The person started the program, or asked for it, once more.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// The main window's contents are there: brings the first window to the front.
    void onMainWindowAppear();

    /// Brings up a main window that the narrow test finds, and asks for one if there is none.
    void activateMainWindow();

private:
    void adopt(ApplicationWindow& window);
    void resetOpeningFlag();
    [[nodiscard]] QList<ApplicationWindow*> mainWindows() const;

    Dependencies services;
    MainWindowDelegate windowDelegate;
    QPointer<ApplicationWindow> mainWindowRef;
    bool isOpeningMainWindow = false;
    bool isCheckingDuplicateWindows = false;
};

} // namespace vellumry
