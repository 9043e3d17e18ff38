#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "models/Snippet.h"
#include "models/VellumryData.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace vellumry {

class ClipboardServiceProtocol;
class FileSystem;
class NotificationCenter;
class SaveFileDialog;
class SnippetListViewModel;
class StorageServiceProtocol;

/// The state behind the editor of one open snippet: the working copy of its fields, whether it
/// differs from what is stored, and every step that the editor can take. It knows nothing of the
/// list and reports through callbacks. Main thread only; built anew for each snippet that is
/// opened.
///
/// Every edit sets isDirty and hands out a draft; nothing is saved by typing and nothing by a
/// timer. Only save(), copyToClipboard() and changeCollection() hand out a snippet to be stored,
/// each with all pending edits, and of those only save() and revertChanges() end isDirty: after a
/// copy the editor may look unsaved over a saved snippet. What becomes of a save is not asked: the
/// editor shows success also when the disk refused it.
///
/// What the editor was opened with stays its measure: revertChanges() goes back to the snippets as
/// they were stored then, also behind a later save, and each save carries the `displayOrder` of
/// then.
///
/// An operation announces when it is complete, each field that is different then once.
class SnippetEditorViewModel : public QObject {
    Q_OBJECT

public:
    static constexpr int maxKeywords = 10;
    /// Of user-perceived characters.
    static constexpr int longestKeyword = 30;

    /// What the model works with; all outlive it, `files` and `saveDialog` also an open dialog.
    struct Dependencies {
        StorageServiceProtocol& storageService;
        std::function<std::optional<VellumryData>()> currentData; ///< what the store has in memory
        ClipboardServiceProtocol& clipboardService;
        FileSystem& files;
        SaveFileDialog& saveDialog;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
    };

    /// What the model reports. None of them may destroy it at once, but for `onDelete`.
    struct Callbacks {
        std::function<void(const Snippet&)> onSave; ///< must be callable; the others may be empty
        std::function<void()> onDelete;
        std::function<void(const QString& title)> onDuplicate;
        std::function<void(const Snippet&)> onDirtyEditChange; ///< with the draft, on every edit
        std::function<void()> onDiscardEdit;
    };

    /// The callbacks of an editor whose snippet, of this id, is one of the list's. The list
    /// outlives them.
    [[nodiscard]] static Callbacks reportingTo(SnippetListViewModel& list, const QString& id);

    /// `snippet` is the draft if there is one, which `isUnsaved` tells; `stored` is the whole
    /// library without drafts.
    SnippetEditorViewModel(Dependencies dependencies, const Snippet& snippet, bool isUnsaved,
                           const QList<Snippet>& stored, Callbacks reports,
                           QObject* parent = nullptr);

    // The working copy

    [[nodiscard]] const QString& title() const { return fields.title; }
    [[nodiscard]] const QString& subtitle() const { return fields.subtitle; }
    [[nodiscard]] const QString& collection() const { return fields.collection; }
    [[nodiscard]] const QString& content() const { return fields.content; }
    [[nodiscard]] const QStringList& keywords() const { return fields.keywords; }
    /// By the names of placeholders; also of those that the content has no more.
    [[nodiscard]] const QMap<QString, QString>& variableValues() const
    {
        return fields.variableValues;
    }
    [[nodiscard]] qint64 usageCount() const { return fields.usageCount; }
    [[nodiscard]] const std::optional<Date>& lastUsedAt() const { return fields.lastUsedAt; }

    /// What the editor was opened with.
    [[nodiscard]] const Snippet& snippet() const { return opened; }
    /// The snippet as a save would store it now.
    [[nodiscard]] Snippet currentSnippet() const;
    /// Whether nothing had been put into the snippet when the editor was opened.
    [[nodiscard]] bool isNewEmptySnippet() const;

    // Edits. What the person has typed counts as an edit, also where the field is the same after
    // it.

    void setTitle(const QString& text);
    void setContent(const QString& text);
    /// Puts line breaks and length right first. The same subtitle is no edit.
    void setSubtitle(const QString& text);
    /// Stores the value of a placeholder, or with an empty value removes it. The value that is
    /// there already is no edit, the removal of one that is not there is.
    void setVariableValue(const QString& value, const QString& name);
    void clearVariableValues();
    /// Adds a search term, trimmed and in lower case. One that is empty, too long, there already
    /// or beyond the limit is dropped. The field it was typed into is emptied in any case.
    void addKeyword(const QString& input);
    /// Removes all that are equal to it.
    void removeKeyword(const QString& keyword);

    // Placeholders of the content

    /// Their names, each once, in the order of the text.
    [[nodiscard]] const QStringList& detectedVariables() const;
    /// The names that have a value of more than white space, in the content at present or not.
    [[nodiscard]] QSet<QString> filledVariables() const;
    /// How many of those the content holds.
    [[nodiscard]] qsizetype filledVariableCount() const;
    /// The content with the values filled in.
    [[nodiscard]] QString resolvedContent() const;

    // Saving

    [[nodiscard]] bool isDirty() const { return fields.isDirty; }
    /// For 1.5 s after a save.
    [[nodiscard]] bool showSaveSuccess() const { return fields.showSaveSuccess; }
    [[nodiscard]] const std::optional<Date>& lastSavedAt() const { return fields.lastSavedAt; }
    /// For 3 s after a copy.
    [[nodiscard]] bool showCopySuccess() const { return fields.showCopySuccess; }

    /// Saves, dirty or not, into the new collection if one was named.
    void save();
    /// Goes back to the stored snippet of the time when the editor was opened, or to what it was
    /// opened with.
    void revertChanges();
    /// Copies resolvedContent, counts the use and saves.
    void copyToClipboard();

    // Collections

    /// The names to choose from.
    [[nodiscard]] const QStringList& availableCollections() const
    {
        return fields.availableCollections;
    }
    void loadCollections();
    /// Moves the snippet to the collection of this name, and saves.
    void changeCollection(const QString& name);

    /// Whether the name of a new collection is being typed.
    [[nodiscard]] bool isAddingNewCollection() const { return fields.isAddingNewCollection; }
    void setIsAddingNewCollection(bool isAdding);
    [[nodiscard]] const QString& newCollectionName() const { return fields.newCollectionName; }
    void setNewCollectionName(const QString& name);
    [[nodiscard]] bool canAddNewCollection() const;

    // Other commands

    /// Asks to delete a snippet that was opened empty, with whatever was typed since; reverts any
    /// other. Then the list takes the keyboard focus. The model may be gone afterwards.
    void escape();
    /// Asks to delete the snippet. The model may be gone afterwards.
    void requestDelete();
    /// Asks for a copy of the stored snippet, named after the title in the editor.
    void duplicate();

    /// Whether the title is that of a text file.
    [[nodiscard]] bool canSaveAsFile() const;
    /// Asks for a place and writes the content there, placeholders unfilled; nothing else changes.
    /// The file is written even if the model has gone by then. Does nothing unless canSaveAsFile.
    void saveAsFile();

    /// No step of the model depends on it.
    [[nodiscard]] bool showDeleteConfirmation() const { return fields.showDeleteConfirmation; }
    void setShowDeleteConfirmation(bool isShown);

    /// How long ago something was: "just now", "1 min ago", "2 hrs ago", "yesterday", "2 days ago".
    [[nodiscard]] static QString relativeTime(Date from, Date now);

Q_SIGNALS:
    void titleChanged();
    void subtitleChanged();
    void collectionChanged();
    void contentChanged();
    void keywordsChanged();
    void variableValuesChanged();
    void usageCountChanged();
    void lastUsedAtChanged();
    void availableCollectionsChanged();
    void isDirtyChanged();
    void showSaveSuccessChanged();
    void lastSavedAtChanged();
    void showCopySuccessChanged();
    void isAddingNewCollectionChanged();
    void newCollectionNameChanged();
    void showDeleteConfirmationChanged();

private:
    class Operation;

    /// The observed fields. Texts share their memory with whoever gave them, so that a copy costs
    /// nothing, and nor does the comparison of one that has not changed.
    struct Fields {
        QString title;
        QString subtitle;
        QString collection;
        QString content;
        QStringList keywords;
        QMap<QString, QString> variableValues;
        qint64 usageCount = 0;
        std::optional<Date> lastUsedAt;
        QStringList availableCollections;
        bool isDirty = false;
        bool showSaveSuccess = false;
        std::optional<Date> lastSavedAt;
        bool showCopySuccess = false;
        bool isAddingNewCollection = false;
        QString newCollectionName;
        bool showDeleteConfirmation = false;
    };

    void observeCollectionChanges();
    void announce(const Fields& before);
    void take(const Snippet& snippet);
    void noteEdit();
    [[nodiscard]] const QMap<QString, QString>& prunedValues() const;

    Dependencies services;
    Snippet opened;
    QList<Snippet> allSnippets; ///< the stored ones when the editor was opened
    Callbacks callbacks;
    Fields fields;
    int operationDepth = 0;

    // A scan of a huge content is slow for a keystroke; these are made anew when they are asked for
    // after a change of what they were made from.

    mutable struct {
        QString content;
        QStringList names;
    } detected;
    mutable struct {
        QString content;
        QMap<QString, QString> values;
        QMap<QString, QString> kept;
    } pruned;
};

} // namespace vellumry
