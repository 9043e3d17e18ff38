#pragma once

#include <QMainWindow>

namespace vellumry {

/// The window in which the library is managed: a menu bar and, below it, contents that it is given.
/// What its closing means, its owner says.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    /// Takes the contents over.
    explicit MainWindow(QWidget* contents, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The contents are on the screen for the first time.
    void appeared();

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool hasAppeared = false;
};

/// A main window that the window group has made. Its class name is what tells it from the windows
/// that were made in another way.
class AppKitWindow final : public MainWindow {
    Q_OBJECT

public:
    using MainWindow::MainWindow;
};

} // namespace vellumry
