#include "library/PlainEditor.h"

#include "core/Text.h"
#include "palette/SnippetVariableService.h"

#include <QRegularExpression>

#include <algorithm>

namespace vellumry::test {

namespace {

QString oneLine(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "))
        .replace(u'\n', u' ')
        .replace(u'\r', u' ');
    return prefixOfCharacters(text, 200);
}

bool isBlank(const QString& text)
{
    return trimmedWithLineBreaks(text).isEmpty();
}

} // namespace

PlainEditor::PlainEditor(LibraryParts& parts, PlainListModel& listModel, const Snippet& opened,
                         bool isUnsaved)
    : isDirty(isUnsaved), with(parts), list(listModel), snippet(opened),
      allSnippets(listModel.snippets)
{
    take(opened);
}

void PlainEditor::take(const Snippet& from)
{
    title = from.title();
    subtitle = from.subtitle();
    collection = from.collection();
    content = from.content();
    keywords = from.keywords();
    variableValues = from.variables();
    usageCount = from.usageCount();
    lastUsedAt = from.lastUsedAt();
}

QStringList PlainEditor::detectedVariables() const
{
    static const QRegularExpression pattern(SnippetVariableService::pattern.toString());
    QStringList names;
    auto matches = pattern.globalMatch(content);
    while (matches.hasNext()) {
        const QString name = trimmedHorizontally(matches.next().captured(1)).toString();
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    return names;
}

qsizetype PlainEditor::filledVariableCount() const
{
    qsizetype count = 0;
    for (const QString& name : detectedVariables())
        count += isBlank(variableValues.value(name)) ? 0 : 1;
    return count;
}

QString PlainEditor::resolvedContent() const
{
    return SnippetVariableService::shared().resolve(content, variableValues);
}

Snippet PlainEditor::currentSnippet() const
{
    QMap<QString, QString> kept;
    for (const QString& name : detectedVariables())
        if (!isBlank(variableValues.value(name)))
            kept[name] = variableValues[name];
    SnippetFields fields = snippet.fields();
    fields.title = title;
    fields.subtitle = oneLine(subtitle);
    fields.collection = collection;
    fields.content = content;
    fields.keywords = keywords;
    fields.variables = kept;
    fields.updatedAt = with.clock.now();
    fields.usageCount = usageCount;
    fields.lastUsedAt = lastUsedAt;
    return Snippet(fields);
}

void PlainEditor::noteEdit()
{
    isDirty = true;
    Snippet draft = currentSnippet();
    draft.setUpdatedAt(snippet.updatedAt());
    list.setUnsavedEdit(draft);
}

void PlainEditor::save()
{
    const QString name = trimmedHorizontally(newCollectionName).toString();
    if (isAddingNewCollection && !name.isEmpty()) {
        if (!availableCollections.contains(name)) {
            availableCollections.append(name);
            std::sort(availableCollections.begin(), availableCollections.end());
        }
        collection = name;
        isAddingNewCollection = false;
        newCollectionName = QString();
    }
    list.updateSnippet(currentSnippet());
    isDirty = false;
    lastSavedAt = with.clock.now();
    showSaveSuccess = true;
    saveTimers.append(1500);
}

void PlainEditor::changeCollection(const QString& name)
{
    if (name == collection)
        return;
    collection = name;
    list.updateSnippet(currentSnippet());
}

void PlainEditor::copyToClipboard()
{
    copied.append(resolvedContent());
    usageCount += 1;
    lastUsedAt = with.clock.now();
    list.updateSnippet(currentSnippet());
    showCopySuccess = true;
    copyTimers.append(3000);
}

void PlainEditor::revertChanges()
{
    list.clearUnsavedEdit(snippet.id());
    Snippet target = snippet;
    for (qsizetype i = allSnippets.size() - 1; i >= 0; --i)
        if (allSnippets[i].id() == snippet.id())
            target = allSnippets[i];
    take(target);
    isDirty = false;
}

void PlainEditor::setSubtitle(const QString& text)
{
    const QString line = oneLine(text);
    if (line == subtitle)
        return;
    subtitle = line;
    noteEdit();
}

void PlainEditor::setVariableValue(const QString& value, const QString& name)
{
    if (variableValues.contains(name) && variableValues[name] == value)
        return;
    if (!value.isEmpty())
        variableValues[name] = value;
    else
        variableValues.remove(name);
    noteEdit();
}

void PlainEditor::clearVariableValues()
{
    if (variableValues.isEmpty())
        return;
    variableValues.clear();
    noteEdit();
}

void PlainEditor::addKeyword(const QString& input)
{
    const QString term = trimmedWithLineBreaks(input).toString().toLower();
    if (term.isEmpty())
        return;
    if (prefixOfCharacters(term, 30) != term)
        return;
    if (keywords.contains(term))
        return;
    if (keywords.size() >= 10)
        return;
    keywords.append(term);
    noteEdit();
}

void PlainEditor::removeKeyword(const QString& keyword)
{
    keywords.removeAll(QString(keyword));
    noteEdit();
}

void PlainEditor::escape()
{
    if (snippet.title() == QStringLiteral("New Snippet") && isBlank(snippet.content()))
        list.requestDelete(snippet.id());
    else
        revertChanges();
    ++listFocuses;
}

void PlainEditor::loadCollections()
{
    std::optional<VellumryData> library;
    if (hasLibraryInMemory)
        library = with.storage.stored;
    if (!library)
        library = with.storage.loadFullData();
    if (!library) {
        availableCollections = QStringList(snippet.collection());
        return;
    }
    QStringList names;
    for (const SyncCollection& each : std::as_const(library->data.collections))
        names.append(each.name);
    QStringList used;
    for (const Snippet& each : std::as_const(library->data.snippets))
        if (!used.contains(each.collection()))
            used.append(each.collection());
    std::sort(used.begin(), used.end());
    for (const QString& name : std::as_const(used))
        if (!names.contains(name))
            names.append(name);
    if (!names.contains(snippet.collection()))
        names.append(snippet.collection());
    availableCollections = names;
}

void PlainEditor::collectionsDidChange(const QString& oldName, const QString& newName)
{
    if (collection == oldName)
        collection = newName;
    loadCollections();
}

void PlainEditor::passTime(int milliseconds)
{
    const auto pass = [milliseconds](QList<int>& timers, bool& flag) {
        for (int& timer : timers) {
            timer -= milliseconds;
            if (timer <= 0)
                flag = false;
        }
        timers.removeIf([](int timer) { return timer <= 0; });
    };
    pass(saveTimers, showSaveSuccess);
    pass(copyTimers, showCopySuccess);
}

} // namespace vellumry::test
