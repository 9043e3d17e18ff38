#pragma once

#include "library/SnippetEditorViewModel.h"
#include "views/common/Theme.h"
#include "views/window/SnippetEditorPanel.h"

#include <QWidget>

class QScrollArea;

namespace vellumry {

class EditorBottomBar;
class EditorContentSection;
class EditorKeywordsSection;
class EditorTitleSection;
class EditorToolbarView;
class EditorVariablesSection;
class OverlayScrollBar;

/// The right column of the main window: everything of one snippet, to be edited. Holds the model
/// of that snippet, and no rules of its own. Main thread only.
class SnippetEditorView : public QWidget {
    Q_OBJECT

public:
    /// What the view works with; all outlive it.
    struct Dependencies {
        SnippetEditorViewModel::Dependencies model;
        const Theme& theme;
    };

    /// Fills the place of the editor in the main window.
    [[nodiscard]] static MakeSnippetEditor maker(const Dependencies& dependencies);

    /// Uses the sheets and colours of the request.
    SnippetEditorView(const Dependencies& dependencies, const SnippetEditorRequest& request,
                      QWidget* parent = nullptr);
    ~SnippetEditorView() override;

    [[nodiscard]] SnippetEditorViewModel& viewModel() const { return *model; }
    [[nodiscard]] EditorToolbarView& toolbar() const { return *toolbarView; }
    [[nodiscard]] EditorTitleSection& titleSection() const { return *title; }
    [[nodiscard]] EditorContentSection& contentSection() const { return *content; }
    [[nodiscard]] EditorVariablesSection& variablesSection() const { return *variables; }
    [[nodiscard]] EditorKeywordsSection& keywordsSection() const { return *keywords; }
    [[nodiscard]] EditorBottomBar& bottomBar() const { return *bottom; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void layOut();
    void observe();
    void applyTheme();
    void focusTitle();
    void focusListSoon();
    void fitBody();

    Dependencies services;
    bool shouldFocusTitle;
    SnippetEditorViewModel* model;
    EditorToolbarView* toolbarView;
    QScrollArea* scrollArea;
    QWidget* body;
    EditorTitleSection* title;
    EditorContentSection* content;
    EditorVariablesSection* variables;
    EditorKeywordsSection* keywords;
    EditorBottomBar* bottom;
    OverlayScrollBar* scrollBar;
};

} // namespace vellumry
