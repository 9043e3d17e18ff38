#pragma once

#include "core/Scheduler.h"
#include "views/common/SheetHost.h"
#include "views/common/Theme.h"
#include "views/editor/FullScreenEditorView.h"

#include <QPointer>
#include <QWidget>

#include <functional>

namespace vellumry {

class Button;
class ContentSearchBar;
class EditorTextBox;
class MacTextEditor;
class SectionHeader;
class SnippetEditorViewModel;

/// The snippet's text with the search in it, and the ways to a file and to the full-screen editor.
class EditorContentSection : public QWidget {
    Q_OBJECT

public:
    /// What Escape and Shift-Tab in the text mean to the editor; it has given up the focus then.
    struct Actions {
        std::function<void()> onEscape;
        std::function<void()> onShiftTab;
    };

    /// All outlive the section.
    EditorContentSection(const Theme& theme, Scheduler& scheduler,
                         SnippetEditorViewModel& viewModel, SheetHost& sheets,
                         const Actions& actions, QWidget* parent = nullptr);
    ~EditorContentSection() override;

    /// Gives the text the focus.
    void focusText();
    /// The box grows with its text up to this height, or to its least.
    void setGreatestHeight(int pixels);

    [[nodiscard]] MacTextEditor& textEditor() const { return *editor; }
    [[nodiscard]] ContentSearchBar& search() const { return *searchBar; }
    [[nodiscard]] Button& saveAsFileButton() const { return *saveAsFile; }
    [[nodiscard]] Button& fullScreenButton() const { return *fullScreen; }
    [[nodiscard]] bool isFullScreenMode() const { return !fullScreenView.isNull(); }
    /// None unless isFullScreenMode.
    [[nodiscard]] FullScreenEditorView* fullScreenEditor() const { return fullScreenView; }

Q_SIGNALS:
    /// What is of interest now is here, in coordinates of the section.
    void revealed(const QRect& rect);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void layOut();
    void observe();
    void showContent();
    void showFilled();
    void placeBox();
    void openFullScreen();
    void closeFullScreen();

    const Theme& theme;
    Scheduler& timing;
    SnippetEditorViewModel& viewModel;
    SheetHost& sheets;
    SectionHeader* header;
    Button* saveAsFile;
    Button* fullScreen;
    EditorTextBox* box;
    MacTextEditor* editor;
    ContentSearchBar* searchBar;
    QPointer<FullScreenEditorView> fullScreenView;
    int greatestHeight = 0;
};

} // namespace vellumry
