#pragma once

#include <QWidget>

#include <functional>

class QLabel;

namespace vellumry {

/// Tells in the main window where the library is and how to reach it.
class LibrarySummary : public QWidget {
    Q_OBJECT

public:
    /// What is told, asked for anew whenever the summary is shown.
    struct Facts {
        QString hotkey; ///< such as "Alt+T"
        qsizetype snippetCount = 0;
        QString folder; ///< for people
    };

    explicit LibrarySummary(std::function<Facts()> facts, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    std::function<Facts()> currentFacts;
    QLabel* hotkeyLine;
    QLabel* libraryLine;
};

} // namespace vellumry
