#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

namespace vellumry {

class Button;
class ContentSearchBar;
class MacTextEditor;

/// A large sheet in which the text of a snippet alone is edited. It has no Save of its own.
class FullScreenEditorView : public QWidget {
    Q_OBJECT

public:
    struct Request {
        QString content;
        QString title;
        std::function<void()> onDismiss; ///< closes the sheet
        std::function<void(const QString& text)> onTextChange;
        QPointer<QWidget> window; ///< the main window
    };

    /// The theme and the scheduler outlive the view.
    FullScreenEditorView(const Theme& theme, Scheduler& scheduler, Request request,
                         QWidget* parent = nullptr);

    /// The size of the sheet over a main window of this size, or without one.
    [[nodiscard]] static QSize windowSize(std::optional<QSize> mainWindow);
    [[nodiscard]] QSize sizeHint() const override;

    /// Closes the search, or else the sheet.
    void escape();

    [[nodiscard]] MacTextEditor& textEditor() const { return *editor; }
    [[nodiscard]] ContentSearchBar& search() const { return *searchBar; }
    [[nodiscard]] Button& doneButton() const { return *done; }
    /// How many characters the text has, in words.
    [[nodiscard]] QString count() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] int headerHeight() const;

    const Theme& theme;
    Scheduler& timing;
    Request request;
    Button* done;
    MacTextEditor* editor;
    ContentSearchBar* searchBar;
    qsizetype characters = 0;
    bool hasAppeared = false;
};

} // namespace vellumry
