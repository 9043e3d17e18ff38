#pragma once

#include "models/Snippet.h"

#include <QList>
#include <QWidget>

#include <functional>

namespace vellumry {

class CollectionColors;
class SheetHost;

/// A snippet to be edited, and what comes of it. The callbacks stay good for as long as the editor
/// that they were given to.
struct SnippetEditorRequest {
    Snippet snippet;            ///< with its draft laid over it
    bool isUnsaved = false;     ///< there is a draft
    QList<Snippet> allSnippets; ///< as they are stored
    bool isNewSnippet = false;  ///< just made: its title is to be typed first
    std::function<void(const Snippet&)> onSave;
    std::function<void()> onDelete;
    std::function<void(const QString& newTitle)> onDuplicate;
    std::function<void(const Snippet& draft)> onDirtyChange;
    std::function<void()> onDiscard;
    SheetHost* sheets = nullptr; ///< of the window; outlives the editor, as do the colours
    CollectionColors* colors = nullptr;
};

/// Builds the widget that edits a snippet, as a child of `parent`.
using MakeSnippetEditor =
    std::function<QWidget*(const SnippetEditorRequest& request, QWidget* parent)>;

/// The editor's column with one snippet in it. Another snippet is another panel.
class SnippetEditorPanel : public QWidget {
    Q_OBJECT

public:
    /// `onEditorAppeared` is called when the panel first shows.
    SnippetEditorPanel(const MakeSnippetEditor& makeEditor, const SnippetEditorRequest& request,
                       std::function<void()> onEditorAppeared, QWidget* parent = nullptr);

    [[nodiscard]] const QString& snippetID() const { return id; }
    [[nodiscard]] QWidget* editor() const { return view; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QString id;
    QWidget* view;
    std::function<void()> onEditorAppeared;
};

} // namespace vellumry
