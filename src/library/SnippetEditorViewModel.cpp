#include "library/SnippetEditorViewModel.h"

#include "core/Log.h"
#include "core/Text.h"
#include "library/SaveFileDialog.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/SnippetVariableService.h"
#include "platform/FileSystem.h"
#include "storage/StorageServiceProtocol.h"

#include <QPointer>
#include <QStringBuilder>

#include <algorithm>
#include <limits>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr auto saveSuccessTime = 1500ms;
constexpr auto copySuccessTime = 3000ms;

bool isLongerThan(int count, const QString& text)
{
    return prefixOfCharacters(text, count).size() < text.size();
}

QStringList sortedCollectionsOf(const QList<Snippet>& snippets)
{
    QSet<QString> names;
    // Snippets that were read from one file share the memory of their collection's name.
    const QString* last = nullptr;
    for (const Snippet& snippet : snippets) {
        const QString& name = snippet.collection();
        if (last && last->constData() == name.constData() && last->size() == name.size())
            continue;
        last = &name;
        names.insert(name);
    }
    QStringList sorted = names.values();
    std::sort(sorted.begin(), sorted.end());
    return sorted;
}

/// "1 min ago", "2 mins ago".
template <typename Unit, typename Elapsed>
QString wholeUnitsAgo(Elapsed elapsed, const QString& unit)
{
    const auto count = std::chrono::duration_cast<Unit>(elapsed).count();
    return QString::number(count) % u' ' % unit % (count == 1 ? u" ago" : u"s ago");
}

void writeFile(FileSystem& files, SaveFileDialog& dialog, const QString& path,
               const QString& content)
{
    try {
        files.write(path, content.toUtf8());
    } catch (const FileError& error) {
        logLine(QString(u"Failed to save file: " % error.description()));
        dialog.warn(QStringLiteral("Save Failed"), error.description());
        return;
    }
    logLine(QString(u"File saved successfully: " % path));
}

} // namespace

/// The time in which an operation changes fields. What is different at its end is announced then.
/// Operations within it join it.
class SnippetEditorViewModel::Operation {
public:
    explicit Operation(SnippetEditorViewModel& owner) : model(owner)
    {
        if (model.operationDepth++ == 0)
            before = model.fields;
    }
    ~Operation()
    {
        if (--model.operationDepth == 0)
            model.announce(before);
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

private:
    SnippetEditorViewModel& model;
    Fields before;
};

SnippetEditorViewModel::Callbacks SnippetEditorViewModel::reportingTo(SnippetListViewModel& list,
                                                                      const QString& id)
{
    return {.onSave = [&list](const Snippet& snippet) { list.updateSnippet(snippet); },
            .onDelete = [&list, id] { list.requestDelete(id); },
            .onDuplicate = [&list, id](const QString& title) { list.duplicateSnippet(id, title); },
            .onDirtyEditChange = [&list](const Snippet& draft) { list.setUnsavedEdit(draft); },
            .onDiscardEdit = [&list, id] { list.clearUnsavedEdit(id); }};
}

SnippetEditorViewModel::SnippetEditorViewModel(Dependencies dependencies, const Snippet& snippet,
                                               bool isUnsaved, const QList<Snippet>& stored,
                                               Callbacks reports, QObject* parent)
    : QObject(parent), services(std::move(dependencies)), opened(snippet), allSnippets(stored),
      callbacks(std::move(reports))
{
    take(snippet);
    fields.isDirty = isUnsaved;
    loadCollections();
    observeCollectionChanges();
}

/// Fills the working copy.
void SnippetEditorViewModel::take(const Snippet& snippet)
{
    fields.title = snippet.title();
    fields.subtitle = snippet.subtitle();
    fields.collection = snippet.collection();
    fields.content = snippet.content();
    fields.keywords = snippet.keywords();
    fields.variableValues = snippet.variables();
    fields.usageCount = snippet.usageCount();
    fields.lastUsedAt = snippet.lastUsedAt();
}

void SnippetEditorViewModel::announce(const Fields& before)
{
    const Fields now = fields;
    if (now.title != before.title)
        Q_EMIT titleChanged();
    if (now.subtitle != before.subtitle)
        Q_EMIT subtitleChanged();
    if (now.availableCollections != before.availableCollections)
        Q_EMIT availableCollectionsChanged();
    if (now.collection != before.collection)
        Q_EMIT collectionChanged();
    if (now.content != before.content)
        Q_EMIT contentChanged();
    if (now.keywords != before.keywords)
        Q_EMIT keywordsChanged();
    if (now.variableValues != before.variableValues)
        Q_EMIT variableValuesChanged();
    if (now.usageCount != before.usageCount)
        Q_EMIT usageCountChanged();
    if (now.lastUsedAt != before.lastUsedAt)
        Q_EMIT lastUsedAtChanged();
    if (now.isDirty != before.isDirty)
        Q_EMIT isDirtyChanged();
    if (now.lastSavedAt != before.lastSavedAt)
        Q_EMIT lastSavedAtChanged();
    if (now.showSaveSuccess != before.showSaveSuccess)
        Q_EMIT showSaveSuccessChanged();
    if (now.showCopySuccess != before.showCopySuccess)
        Q_EMIT showCopySuccessChanged();
    if (now.isAddingNewCollection != before.isAddingNewCollection)
        Q_EMIT isAddingNewCollectionChanged();
    if (now.newCollectionName != before.newCollectionName)
        Q_EMIT newCollectionNameChanged();
    if (now.showDeleteConfirmation != before.showDeleteConfirmation)
        Q_EMIT showDeleteConfirmationChanged();
}

Snippet SnippetEditorViewModel::currentSnippet() const
{
    Snippet snippet = opened;
    snippet.setTitle(fields.title);
    snippet.setSubtitle(fields.subtitle);
    snippet.setCollection(fields.collection);
    snippet.setContent(fields.content);
    snippet.setKeywords(fields.keywords);
    snippet.setVariables(prunedValues());
    snippet.setUpdatedAt(services.clock.now());
    snippet.setUsageCount(fields.usageCount);
    snippet.setLastUsedAt(fields.lastUsedAt);
    return snippet;
}

bool SnippetEditorViewModel::isNewEmptySnippet() const
{
    return opened.title() == QLatin1StringView("New Snippet") &&
           trimmedWithLineBreaks(opened.content()).isEmpty();
}

// Edits

/// Follows on each edit. A draft has the time stamp of what the editor was opened with.
void SnippetEditorViewModel::noteEdit()
{
    fields.isDirty = true;
    if (!callbacks.onDirtyEditChange)
        return;
    Snippet draft = currentSnippet();
    draft.setUpdatedAt(opened.updatedAt());
    callbacks.onDirtyEditChange(draft);
}

void SnippetEditorViewModel::setTitle(const QString& text)
{
    const Operation operation(*this);
    fields.title = text;
    noteEdit();
}

void SnippetEditorViewModel::setContent(const QString& text)
{
    const Operation operation(*this);
    fields.content = text;
    noteEdit();
}

void SnippetEditorViewModel::setSubtitle(const QString& text)
{
    Snippet normalized;
    normalized.setSubtitle(text);
    if (normalized.subtitle() == fields.subtitle)
        return;
    const Operation operation(*this);
    fields.subtitle = normalized.subtitle();
    noteEdit();
}

void SnippetEditorViewModel::setVariableValue(const QString& value, const QString& name)
{
    const auto known = fields.variableValues.constFind(name);
    if (known != fields.variableValues.cend() && *known == value)
        return;
    const Operation operation(*this);
    if (value.isEmpty())
        fields.variableValues.remove(name);
    else
        fields.variableValues.insert(name, value);
    noteEdit();
}

void SnippetEditorViewModel::clearVariableValues()
{
    if (fields.variableValues.isEmpty())
        return;
    const Operation operation(*this);
    fields.variableValues.clear();
    noteEdit();
}

void SnippetEditorViewModel::addKeyword(const QString& input)
{
    const QString term = trimmedWithLineBreaks(input).toString().toLower();
    if (term.isEmpty() || isLongerThan(longestKeyword, term) || fields.keywords.contains(term) ||
        fields.keywords.size() >= maxKeywords)
        return;
    const Operation operation(*this);
    fields.keywords.append(term);
    noteEdit();
}

void SnippetEditorViewModel::removeKeyword(const QString& keyword)
{
    const Operation operation(*this);
    fields.keywords.removeAll(keyword);
    noteEdit();
}

// Placeholders

const QStringList& SnippetEditorViewModel::detectedVariables() const
{
    if (detected.content != fields.content)
        detected = {fields.content, SnippetVariableService::shared().extractNames(fields.content)};
    return detected.names;
}

QSet<QString> SnippetEditorViewModel::filledVariables() const
{
    QSet<QString> filled;
    const auto& values = fields.variableValues;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        if (!trimmedWithLineBreaks(*value).isEmpty())
            filled.insert(value.key());
    }
    return filled;
}

qsizetype SnippetEditorViewModel::filledVariableCount() const
{
    const QStringList& names = detectedVariables();
    const QSet<QString> filled = filledVariables();
    return std::count_if(names.cbegin(), names.cend(),
                         [&](const QString& name) { return filled.contains(name); });
}

QString SnippetEditorViewModel::resolvedContent() const
{
    return SnippetVariableService::shared().resolve(fields.content, fields.variableValues);
}

const QMap<QString, QString>& SnippetEditorViewModel::prunedValues() const
{
    if (pruned.content != fields.content || pruned.values != fields.variableValues)
        pruned = {fields.content, fields.variableValues,
                  fields.variableValues.isEmpty()
                      ? QMap<QString, QString>()
                      : SnippetVariableService::shared().prunedValues(fields.variableValues,
                                                                      detectedVariables())};
    return pruned.kept;
}

// Saving

void SnippetEditorViewModel::save()
{
    const Operation operation(*this);
    if (fields.isAddingNewCollection && canAddNewCollection()) {
        const QString name = trimmedHorizontally(fields.newCollectionName).toString();
        if (!fields.availableCollections.contains(name)) {
            fields.availableCollections.append(name);
            std::sort(fields.availableCollections.begin(), fields.availableCollections.end());
        }
        fields.collection = name;
        fields.isAddingNewCollection = false;
        fields.newCollectionName.clear();
    }
    callbacks.onSave(currentSnippet());
    fields.isDirty = false;
    fields.lastSavedAt = services.clock.now();
    fields.showSaveSuccess = true;
    services.scheduler.after(saveSuccessTime, this, [this] {
        const Operation end(*this);
        fields.showSaveSuccess = false;
    });
}

void SnippetEditorViewModel::revertChanges()
{
    const Operation operation(*this);
    if (callbacks.onDiscardEdit)
        callbacks.onDiscardEdit();
    const auto stored =
        std::find_if(allSnippets.cbegin(), allSnippets.cend(),
                     [&](const Snippet& snippet) { return snippet.id() == opened.id(); });
    take(stored == allSnippets.cend() ? opened : *stored);
    fields.isDirty = false;
}

void SnippetEditorViewModel::copyToClipboard()
{
    const Operation operation(*this);
    services.clipboardService.copy(resolvedContent());
    if (fields.usageCount < std::numeric_limits<qint64>::max())
        ++fields.usageCount;
    fields.lastUsedAt = services.clock.now();
    callbacks.onSave(currentSnippet());
    fields.showCopySuccess = true;
    services.scheduler.after(copySuccessTime, this, [this] {
        const Operation end(*this);
        fields.showCopySuccess = false;
    });
}

// Collections

void SnippetEditorViewModel::loadCollections()
{
    const Operation operation(*this);
    std::optional<VellumryData> library = services.currentData();
    if (!library)
        library = services.storageService.loadFullData();
    QStringList names;
    if (library) {
        for (const SyncCollection& collection : std::as_const(library->data.collections))
            names.append(collection.name);
        QSet<QString> known(names.cbegin(), names.cend());
        for (const QString& name : sortedCollectionsOf(library->data.snippets)) {
            if (!known.contains(name))
                names.append(name);
        }
    }
    if (!names.contains(opened.collection()))
        names.append(opened.collection());
    fields.availableCollections = names;
}

/// The name follows a renamed collection, which is no edit: a draft goes on naming the old one.
void SnippetEditorViewModel::observeCollectionChanges()
{
    connect(&services.notifications, &NotificationCenter::collectionsDidChange, this,
            [this](const QString& oldName, const QString& newName) {
                const Operation operation(*this);
                if (fields.collection == oldName)
                    fields.collection = newName;
                loadCollections();
            });
}

void SnippetEditorViewModel::changeCollection(const QString& name)
{
    if (name == fields.collection)
        return;
    const Operation operation(*this);
    fields.collection = name;
    callbacks.onSave(currentSnippet());
}

void SnippetEditorViewModel::setIsAddingNewCollection(bool isAdding)
{
    const Operation operation(*this);
    fields.isAddingNewCollection = isAdding;
}

void SnippetEditorViewModel::setNewCollectionName(const QString& name)
{
    const Operation operation(*this);
    fields.newCollectionName = name;
}

bool SnippetEditorViewModel::canAddNewCollection() const
{
    return !trimmedHorizontally(fields.newCollectionName).isEmpty();
}

// Other commands

void SnippetEditorViewModel::escape()
{
    NotificationCenter& notifications = services.notifications;
    if (isNewEmptySnippet())
        requestDelete();
    else
        revertChanges();
    Q_EMIT notifications.focusSnippetList();
}

void SnippetEditorViewModel::requestDelete()
{
    // The snippet may go at once, and its editor with it.
    if (const std::function<void()> onDelete = callbacks.onDelete)
        onDelete();
}

void SnippetEditorViewModel::duplicate()
{
    if (callbacks.onDuplicate)
        callbacks.onDuplicate(QString(u"Copy of " % fields.title));
}

bool SnippetEditorViewModel::canSaveAsFile() const
{
    const QString title = fields.title.toLower();
    return title.endsWith(QLatin1StringView(".md")) || title.endsWith(QLatin1StringView(".txt"));
}

void SnippetEditorViewModel::saveAsFile()
{
    if (!canSaveAsFile())
        return;
    const bool isMarkdown = fields.title.toLower().endsWith(QLatin1StringView(".md"));
    const SaveFileDialog::Request request{.title = QStringLiteral("Save Snippet as File"),
                                          .fileName = fields.title,
                                          .mimeType = isMarkdown ? QStringLiteral("text/markdown")
                                                                 : QStringLiteral("text/plain")};
    services.saveDialog.ask(request, [model = QPointer(this), &files = services.files,
                                      &dialog = services.saveDialog,
                                      content = fields.content](const QString& path) {
        writeFile(files, dialog, path, model ? model->content() : content);
    });
}

void SnippetEditorViewModel::setShowDeleteConfirmation(bool isShown)
{
    const Operation operation(*this);
    fields.showDeleteConfirmation = isShown;
}

QString SnippetEditorViewModel::relativeTime(Date from, Date now)
{
    using namespace std::chrono;
    if (from > now)
        return QStringLiteral("just now");
    // Without a sign there is room for the difference of any two dates.
    using Elapsed = duration<quint64, std::nano>;
    const Elapsed elapsed = Elapsed(static_cast<quint64>(now.time_since_epoch().count()) -
                                    static_cast<quint64>(from.time_since_epoch().count()));
    if (elapsed < 1min)
        return QStringLiteral("just now");
    if (elapsed < 1h)
        return wholeUnitsAgo<minutes>(elapsed, QStringLiteral("min"));
    if (elapsed < days(1))
        return wholeUnitsAgo<hours>(elapsed, QStringLiteral("hr"));
    if (elapsed < days(2))
        return QStringLiteral("yesterday");
    return wholeUnitsAgo<days>(elapsed, QStringLiteral("day"));
}

} // namespace vellumry
