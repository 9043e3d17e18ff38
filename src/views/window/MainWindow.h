#pragma once

#include <QWidget>

class QLabel;

namespace vellumry {

/// The window of the program beside the palette: for now it tells where the library is and how to
/// reach it. Closing it only hides it; the program stays.
class MainWindow : public QWidget {
    Q_OBJECT

public:
    explicit MainWindow(QWidget* parent = nullptr);

    /// Shows the hot key in words, such as "Alt+T".
    void setHotkeyText(const QString& text);
    /// Shows how much the library holds and where it lives.
    void setLibrary(qsizetype snippetCount, const QString& folderDisplayName);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QLabel* hotkeyLine;
    QLabel* libraryLine;
};

} // namespace vellumry
