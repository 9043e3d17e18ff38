#pragma once

#include <QMainWindow>

namespace vellumry {

/// The window in which the library is managed: a menu bar and, below it, contents that it is given.
/// What its closing means, its owner says.
class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    /// Takes over what stands there until there are contents.
    void setGround(QWidget* ground);
    /// Takes the contents over.
    void setContents(QWidget* contents);

Q_SIGNALS:
    /// The contents are on the screen for the first time.
    void appeared();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void tellOfContents();

    bool hasContents = false;
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
