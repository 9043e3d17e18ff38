#pragma once

#include "library/EditorWorld.h"
#include "views/MainFixture.h"
#include "views/common/CollectionColors.h"
#include "views/common/PopupMenu.h"
#include "views/common/TextField.h"
#include "views/editor/CollectionChip.h"
#include "views/editor/ContentSearchBar.h"
#include "views/editor/EditorBottomBar.h"
#include "views/editor/EditorCollectionPicker.h"
#include "views/editor/EditorContentSection.h"
#include "views/editor/EditorKeywordsSection.h"
#include "views/editor/EditorTitleSection.h"
#include "views/editor/EditorToolbarView.h"
#include "views/editor/EditorVariablesSection.h"
#include "views/editor/FullScreenEditorView.h"
#include "views/editor/KeywordInputFieldCompat.h"
#include "views/editor/KeywordTag.h"
#include "views/editor/MacTextEditor.h"
#include "views/editor/SearchTextField.h"
#include "views/editor/SectionHeader.h"
#include "views/editor/SnippetEditorView.h"
#include "views/editor/SubtitleTextField.h"
#include "views/editor/TitleTextField.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vellumry::test {

/// The main window with the real editor in it.
class EditorFixture : public MainFixture {
public:
    EditorFixture()
    {
        makeEditor = [this](const SnippetEditorRequest& request, QWidget* parent) {
            ++editors;
            lastRequest = request;
            return SnippetEditorView::maker(
                {{.storageService = world.storage,
                  .currentData = [this] { return world.storage.stored; },
                  .clipboardService = clipboard,
                  .files = world.files,
                  .saveDialog = dialog,
                  .notifications = world.notifications,
                  .scheduler = world.scheduler,
                  .clock = world.clock},
                 theme})(request, parent);
        };
    }

    /// Shows the window with this text in the snippet "One", which is selected.
    void openOn(const QString& text, const QMap<QString, QString>& values = {})
    {
        loadFour();
        Snippet one = world.snippet(QStringLiteral("id-One"));
        one.setContent(text);
        one.setVariables(values);
        openOn(one);
    }
    void openOn(const Snippet& snippet)
    {
        model.updateSnippet(snippet);
        open();
        model.setSelectedSnippetID(snippet.id());
        QApplication::processEvents();
        world.storage.calls.clear();
    }

    SnippetEditorView& editor()
    {
        return static_cast<SnippetEditorView&>(*content().editorPanel()->editor());
    }
    SnippetEditorViewModel& editorModel() { return editor().viewModel(); }
    EditorTitleSection& title() { return editor().titleSection(); }
    EditorContentSection& contents() { return editor().contentSection(); }
    MacTextEditor& text() { return contents().textEditor(); }
    ContentSearchBar& search() { return contents().search(); }
    EditorVariablesSection& variables() { return editor().variablesSection(); }
    EditorKeywordsSection& keywords() { return editor().keywordsSection(); }
    KeywordInputFieldCompat& keywordField() { return keywords().inputField(); }

    void focus(QWidget& widget) { widget.setFocus(Qt::OtherFocusReason); }
    void select(int begin, int end)
    {
        QTextCursor cursor(text().document());
        cursor.setPosition(begin);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        text().setTextCursor(cursor);
    }
    void paste(const QString& pasted)
    {
        QGuiApplication::clipboard()->setText(pasted);
        key(Qt::Key_V, Qt::ControlModifier);
    }
    void openSearch(const QString& term)
    {
        key(Qt::Key_F, Qt::ControlModifier);
        pass(std::chrono::milliseconds(100));
        type(term);
    }
    [[nodiscard]] Snippet stored() const { return world.snippet(QStringLiteral("id-One")); }
    [[nodiscard]] qsizetype saves() const { return world.storage.saves(); }

    MemoryClipboard clipboard;
    ManualSaveDialog dialog;
};

} // namespace vellumry::test
