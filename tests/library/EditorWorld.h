#pragma once

#include "library/LibraryWorld.h"
#include "library/SaveFileDialog.h"
#include "library/SnippetEditorViewModel.h"
#include "palette/ClipboardServiceProtocol.h"
#include "storage/MemoryFileSystem.h"

#include <memory>
#include <utility>

namespace vellumry::test {

class MemoryClipboard final : public ClipboardServiceProtocol {
public:
    void copy(const QString& text) override { texts.append(text); }
    void copySecret(const QString& text) override { secrets.append(text); }

    QStringList texts;
    QStringList secrets;
};

/// A dialog that a test answers.
class ManualSaveDialog final : public SaveFileDialog {
public:
    void ask(const Request& request, std::function<void(const QString&)> onChosen) override
    {
        requests.append(request);
        choose = std::move(onChosen);
    }
    void warn(const QString& message, const QString& informativeText) override
    {
        warnings.append({message, informativeText});
    }

    QList<Request> requests;
    std::function<void(const QString& path)> choose; ///< confirms the last request
    QList<std::pair<QString, QString>> warnings;
};

/// A snippet with an id and a title alone.
inline Snippet bareSnippet(const QString& id, const QString& title = {})
{
    Snippet snippet;
    snippet.setId(id);
    snippet.setTitle(title);
    return snippet;
}

/// Counts the announcements of an editor, by field.
class EditorAnnouncements {
public:
    explicit EditorAnnouncements(SnippetEditorViewModel& editor)
    {
        using E = SnippetEditorViewModel;
        count(editor, &E::titleChanged, "title");
        count(editor, &E::subtitleChanged, "subtitle");
        count(editor, &E::collectionChanged, "collection");
        count(editor, &E::contentChanged, "content");
        count(editor, &E::keywordsChanged, "keywords");
        count(editor, &E::variableValuesChanged, "variableValues");
        count(editor, &E::usageCountChanged, "usageCount");
        count(editor, &E::lastUsedAtChanged, "lastUsedAt");
        count(editor, &E::availableCollectionsChanged, "availableCollections");
        count(editor, &E::isDirtyChanged, "isDirty");
        count(editor, &E::showSaveSuccessChanged, "showSaveSuccess");
        count(editor, &E::lastSavedAtChanged, "lastSavedAt");
        count(editor, &E::showCopySuccessChanged, "showCopySuccess");
        count(editor, &E::isAddingNewCollectionChanged, "isAddingNewCollection");
        count(editor, &E::newCollectionNameChanged, "newCollectionName");
        count(editor, &E::showDeleteConfirmationChanged, "showDeleteConfirmation");
    }

    /// Those since the last call.
    QMap<QString, int> take() { return std::exchange(counts, {}); }

private:
    void count(SnippetEditorViewModel& editor, void (SnippetEditorViewModel::*changed)(),
               const char* field)
    {
        QObject::connect(&editor, changed, &editor,
                         [this, name = QString::fromLatin1(field)] { ++counts[name]; });
    }

    QMap<QString, int> counts;
};

/// A list model with an editor, which the tests open on a snippet of the list as the main window
/// does, or on any other.
class EditorWorld : public LibraryWorld {
public:
    EditorWorld()
    {
        QObject::connect(&notifications, &NotificationCenter::focusSnippetList, &notifications,
                         [this] { ++listFocuses; });
    }

    /// What the callbacks of an editor say, written down.
    SnippetEditorViewModel::Callbacks recording()
    {
        return {.onSave =
                    [this](const Snippet& snippet) {
                        reports.append(QStringLiteral("save"));
                        saved.append(snippet);
                    },
                .onDelete = [this] { reports.append(QStringLiteral("delete")); },
                .onDuplicate =
                    [this](const QString& title) {
                        reports.append(QStringLiteral("duplicate as ") + title);
                    },
                .onDirtyEditChange =
                    [this](const Snippet& draft) {
                        reports.append(QStringLiteral("draft"));
                        drafts.append(draft);
                    },
                .onDiscardEdit = [this] { reports.append(QStringLiteral("discard")); }};
    }

    /// Opens an editor whose reports are written down.
    void openAlone(const Snippet& snippet, bool isUnsaved = false,
                   const QList<Snippet>& stored = {})
    {
        open(snippet, isUnsaved, stored, recording());
    }

    /// Opens a snippet of the list; false if there is none of this id.
    bool openFromList(const QString& id)
    {
        const std::optional<Snippet> snippet = model.effectiveSnippet(id);
        if (snippet)
            open(*snippet, model.isUnsaved(id), model.snippets(),
                 SnippetEditorViewModel::reportingTo(model, id));
        return snippet.has_value();
    }

    void open(const Snippet& snippet, bool isUnsaved, const QList<Snippet>& stored,
              SnippetEditorViewModel::Callbacks callbacks)
    {
        editor = std::make_unique<SnippetEditorViewModel>(
            SnippetEditorViewModel::Dependencies{
                .storageService = storage,
                .currentData =
                    [this] { return hasLibraryInMemory ? storage.stored : std::nullopt; },
                .clipboardService = clipboard,
                .files = files,
                .saveDialog = dialog,
                .notifications = notifications,
                .scheduler = scheduler,
                .clock = clock},
            snippet, isUnsaved, stored, std::move(callbacks));
        edited = std::make_unique<EditorAnnouncements>(*editor);
    }

    MemoryClipboard clipboard;
    MemoryFileSystem files;
    ManualSaveDialog dialog;
    bool hasLibraryInMemory = true;
    int listFocuses = 0;

    QStringList reports;
    QList<Snippet> saved;
    QList<Snippet> drafts;

    std::unique_ptr<SnippetEditorViewModel> editor;
    std::unique_ptr<EditorAnnouncements> edited;
};

} // namespace vellumry::test
