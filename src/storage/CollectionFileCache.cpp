#include "storage/CollectionFileCache.h"

#include "core/Digest.h"
#include "storage/DataFolder.h"

#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

namespace vellumry {

namespace {

/// The text that comes back from a file: a lone surrogate has no form in UTF-8.
QString storedText(QString text)
{
    if (text.isValidUtf16())
        return text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

std::optional<Date> storedDate(std::optional<Date> date)
{
    return date ? std::optional(truncatedToMilliseconds(*date)) : std::nullopt;
}

SyncCollection storedCollection(const SyncCollection& collection)
{
    return {.id = storedText(collection.id),
            .name = storedText(collection.name),
            .color = collection.color ? std::optional(storedText(*collection.color)) : std::nullopt,
            .createdAt = truncatedToMilliseconds(collection.createdAt)};
}

/// The snippet that comes back from a file; the very same handle where nothing is lost.
Snippet storedSnippet(const Snippet& snippet)
{
    SnippetFields stored = snippet.fields();
    for (QString* text :
         {&stored.id, &stored.title, &stored.subtitle, &stored.collection, &stored.content})
        *text = storedText(*text);
    for (QString& keyword : stored.keywords)
        keyword = storedText(keyword);
    stored.createdAt = truncatedToMilliseconds(stored.createdAt);
    stored.updatedAt = truncatedToMilliseconds(stored.updatedAt);
    stored.lastUsedAt = storedDate(stored.lastUsedAt);
    QMap<QString, QString> variables;
    for (auto it = stored.variables.cbegin(); it != stored.variables.cend(); ++it)
        variables.insert(storedText(it.key()), storedText(it.value()));
    stored.variables = variables;
    return stored == snippet.fields() ? snippet : Snippet(std::move(stored));
}

/// The snippets that come back from a file. `before` are those that it held until now: what they
/// have in common by memory has been through a file already.
QList<Snippet> storedSnippets(const QList<Snippet>& snippets, const QList<Snippet>& before)
{
    QList<Snippet> stored;
    stored.reserve(snippets.size());
    qsizetype next = 0;
    for (const Snippet& snippet : snippets) {
        const auto isAt = [&](qsizetype i) {
            return i < before.size() && before[i].sharesDataWith(snippet);
        };
        if (!isAt(next) && isAt(next + 1))
            ++next;
        if (isAt(next)) {
            stored.append(snippet);
            ++next;
        } else {
            stored.append(storedSnippet(snippet));
        }
    }
    return stored;
}

/// Whether no id stands twice.
bool haveUniqueIds(const QList<Snippet>& snippets)
{
    // Hashes that all differ prove it, and sorting numbers is much cheaper than a set of texts.
    std::vector<size_t> hashes;
    hashes.reserve(static_cast<size_t>(snippets.size()));
    for (const Snippet& snippet : snippets)
        hashes.push_back(qHash(snippet.id()));
    std::sort(hashes.begin(), hashes.end());
    if (std::adjacent_find(hashes.begin(), hashes.end()) == hashes.end())
        return true;
    QSet<QStringView> ids;
    for (const Snippet& snippet : snippets)
        ids.insert(snippet.id());
    return ids.size() == snippets.size();
}

/// Whether both lists have the same ids in the same order.
bool haveSameIds(const QList<Snippet>& a, const QList<Snippet>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const Snippet& one, const Snippet& other) {
                          return one.sharesDataWith(other) || one.id() == other.id();
                      });
}

} // namespace

void CollectionFileCache::beginWalk(const QString& walkedFolder)
{
    ++walk;
    if (folder != walkedFolder) {
        clear();
        folder = walkedFolder;
        folderTime.reset();
    }
    ++walksOfFolder;
}

void CollectionFileCache::beginWalk(const QString& walkedFolder, const QStringList& baseNames)
{
    beginWalk(walkedFolder);
    const QSet<QString> listed(baseNames.cbegin(), baseNames.cend());
    const auto isGone = [&](const auto& entry) { return !listed.contains(entry.key()); };
    if (entries.removeIf(isGone) + unreadable.removeIf(isGone) > 0)
        noteForeignChange();
}

void CollectionFileCache::clear()
{
    entries.clear();
    unreadable.clear();
    walksOfFolder = 0;
    metForeignChange = false;
}

void CollectionFileCache::noteForeignChange()
{
    metForeignChange = metForeignChange || walksOfFolder > 1;
}

QString CollectionFileCache::pathOf(const QString& baseName) const
{
    return collectionFilePath(folder, baseName);
}

bool CollectionFileCache::isStillAsRead(const QString& baseName) const
{
    const auto known = entries.constFind(baseName);
    return known != entries.cend() && files.stamp(pathOf(baseName)) == known->stamp;
}

const CollectionFile& CollectionFileCache::file(const QString& baseName, JSONDecoder& decoder)
{
    const auto known = entries.constFind(baseName);
    if (known == entries.cend() || known->walk != walk)
        check(baseName, decoder);
    const Entry& entry = entries[baseName];
    if (entry.failure)
        throw *entry.failure;
    return entry.file;
}

const CollectionFile* CollectionFileCache::decodableFile(const QString& baseName,
                                                         JSONDecoder& decoder)
{
    try {
        return &file(baseName, decoder);
    } catch (const FileError&) {
        return nullptr;
    } catch (const DecodingError&) {
        return nullptr;
    }
}

void CollectionFileCache::check(const QString& baseName, JSONDecoder& decoder)
{
    const QString path = pathOf(baseName);
    const auto known = entries.find(baseName);
    if (known != entries.end() && known->isSettled && files.stamp(path) == known->stamp) {
        known->walk = walk;
        return;
    }
    // Whatever fails from here on, nothing is known about the file any more.
    std::optional<Entry> before =
        known == entries.end() ? std::nullopt : std::optional(entries.take(baseName));
    try {
        if (before && before->digest) {
            const FileDigest now = files.digest(path);
            if (now.digest == before->digest) {
                before->stamp = now.stamp;
                before->isSettled = isSettled(now);
                before->walk = walk;
                if (before->isSettled)
                    before->digest.reset();
                entries.emplace(baseName, std::move(*before));
                return;
            }
        }
        entries.emplace(baseName, read(path, decoder));
    } catch (const FileError&) {
        const std::optional<FileStamp> stamp = files.stamp(path);
        const auto failed = unreadable.constFind(baseName);
        const bool isAsBefore = stamp ? failed != unreadable.cend() && *failed == *stamp : !before;
        if (!isAsBefore)
            noteForeignChange();
        if (stamp)
            unreadable.insert(baseName, *stamp);
        throw;
    }
    unreadable.remove(baseName);
    noteForeignChange();
}

CollectionFileCache::Entry CollectionFileCache::read(const QString& path, JSONDecoder& decoder)
{
    const FileContents contents = files.read(path);
    Entry entry;
    entry.stamp = contents.stamp;
    entry.isSettled = isSettled(contents);
    entry.walk = walk;
    if (!entry.isSettled)
        entry.digest = Digest::of(contents.bytes.view());
    try {
        CollectionFileData decoded = decoder.decode<CollectionFileData>(contents.bytes);
        // Here, where the ids are at hand, it costs a small part of what it costs a save.
        const bool hasUniqueIds = haveUniqueIds(decoded.snippets);
        entry.file = {.collection = std::move(decoded.collection),
                      .snippets = std::move(decoded.snippets),
                      .hasUniqueIds = hasUniqueIds};
    } catch (const DecodingError& error) {
        entry.failure = error;
    }
    return entry;
}

void CollectionFileCache::remember(const QString& baseName, const std::optional<FileStamp>& stamp,
                                   quint64 digest, const CollectionFileData& written)
{
    const Entry before = entries.take(baseName);
    unreadable.remove(baseName);
    if (!stamp)
        return;
    // A file that is too large to be read will not come back.
    if (stamp->size > FileSystem::largestFile) {
        unreadable.insert(baseName, *stamp);
        return;
    }
    Entry entry;
    entry.stamp = *stamp;
    entry.digest = digest;
    entry.walk = walk;
    entry.file = {.collection = storedCollection(written.collection),
                  .snippets = storedSnippets(written.snippets, before.file.snippets)};
    entry.file.hasUniqueIds =
        (before.file.hasUniqueIds && haveSameIds(entry.file.snippets, before.file.snippets)) ||
        haveUniqueIds(entry.file.snippets);
    entries.emplace(baseName, std::move(entry));
}

void CollectionFileCache::move(const QString& from, const QString& to)
{
    Entry entry = entries.take(from);
    const bool isKnown = entry.walk != 0;
    unreadable.remove(from);
    try {
        const FileDigest moved = files.digest(pathOf(to));
        // A move changes nothing but the change time.
        FileStamp expected = moved.stamp;
        expected.changed = entry.stamp.changed;
        if (!isKnown || entry.stamp != expected)
            return;
        entry.stamp = moved.stamp;
        entry.isSettled = false;
        entry.digest = moved.digest;
        entries.emplace(to, std::move(entry));
    } catch (const FileError&) {
        return; // then it is as new
    }
}

void CollectionFileCache::forget(const QString& baseName)
{
    entries.remove(baseName);
    unreadable.remove(baseName);
}

void CollectionFileCache::noteTime(const std::optional<FileStamp>& stamp)
{
    folderTime = stamp;
}

/// Whether the time on the file's system, when the file was read, was surely another tick than
/// that of the file's last change.
bool CollectionFileCache::isSettled(const FileReading& reading) const
{
    Date now = reading.readAt;
    if (!reading.precision.followsMachineClock) {
        if (!folderTime || folderTime->device != reading.stamp.device)
            return false;
        now = folderTime->modified;
    }
    const Date lastChange = std::max(reading.stamp.modified, reading.stamp.changed);
    // Not their difference, which a file from long ago would make too large.
    return lastChange < now - reading.precision.slack;
}

} // namespace vellumry
