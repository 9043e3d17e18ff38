#include "storage/PlainStorage.h"

#include "models/CollectionFileName.h"
#include "platform/DeviceIdentifier.h"

#include <algorithm>
#include <map>
#include <set>

namespace vellumry::test {

std::optional<CollectionFileData> PlainStorage::readFile(const QString& baseName)
{
    try {
        const FileContents contents =
            files.read(folder + u'/' + baseName + QStringLiteral(".json"));
        return JSONDecoder::vellumry().decode<CollectionFileData>(contents.bytes);
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

QList<PlainStorage::Entry> PlainStorage::readAll()
{
    QList<Entry> entries;
    for (const QString& name : files.list(folder)) {
        if (!name.endsWith(QLatin1StringView(".json")) || name.size() == 5 ||
            name == QLatin1StringView("_metadata.json"))
            continue;
        const QString baseName = name.chopped(5);
        entries.append({baseName, readFile(baseName)});
    }
    return entries;
}

std::optional<VellumryData> PlainStorage::load()
{
    lines.clear();
    const QString metadataPath = folder + QStringLiteral("/_metadata.json");
    if (!files.exists(metadataPath))
        return std::nullopt;
    MetadataFileData metadata;
    try {
        metadata = JSONDecoder::vellumry().decode<MetadataFileData>(files.read(metadataPath).bytes);
    } catch (const std::exception&) {
        log(QStringLiteral("加载失败 - "));
        return std::nullopt;
    }
    VellumryData data = makeLibrary({}, {});
    data.lastModified = metadata.lastModified;
    data.deviceId = metadata.deviceId;
    data.settings = metadata.settings;
    for (const Entry& entry : readAll()) {
        if (!entry.file) {
            log(QStringLiteral("跳过无效文件 - ") + entry.baseName);
            continue;
        }
        data.data.collections.append(entry.file->collection);
        data.data.snippets.append(entry.file->snippets);
        log(QStringLiteral("加载文件 - ") + entry.baseName);
    }
    std::stable_sort(data.data.collections.begin(), data.data.collections.end(),
                     [&](const SyncCollection& a, const SyncCollection& b) {
                         const auto position = [&](const SyncCollection& collection) {
                             const auto i = metadata.collectionOrder.indexOf(collection.id);
                             return i < 0 ? metadata.collectionOrder.size() : i;
                         };
                         return position(a) < position(b);
                     });
    for (const SyncCollection& collection : std::as_const(data.data.collections)) {
        if (collection.color)
            data.data.categoryColors[collection.name] = *collection.color;
    }
    log(QStringLiteral("加载成功 - %1 snippets, %2 collections")
            .arg(data.data.snippets.size())
            .arg(data.data.collections.size()));
    return data;
}

bool PlainStorage::shouldWrite(const QString& baseName, const SyncCollection& collection,
                               const QList<Snippet>& snippets)
{
    const auto file = readFile(baseName);
    if (!file || file->collection.id != collection.id || file->collection.name != collection.name ||
        file->collection.color != collection.color || file->snippets.size() != snippets.size())
        return true;
    std::map<QString, Snippet> byId;
    for (const Snippet& snippet : file->snippets)
        byId.emplace(snippet.id(), snippet);
    return std::any_of(snippets.begin(), snippets.end(), [&](const Snippet& given) {
        const auto stored = byId.find(given.id());
        if (stored == byId.end())
            return true;
        SnippetFields a = given.fields();
        SnippetFields b = stored->second.fields();
        a.createdAt = b.createdAt;
        a.displayOrder = b.displayOrder;
        a.variables = b.variables;
        return !(a == b);
    });
}

void PlainStorage::write(const QString& fileName, QByteArrayView bytes)
{
    files.write(folder + u'/' + fileName, bytes);
}

bool PlainStorage::save(const VellumryData& data)
{
    lines.clear();
    JSONEncoder encoder = JSONEncoder::vellumry();
    try {
        std::map<QString, QList<Snippet>> groups;
        for (const Snippet& snippet : data.data.snippets)
            groups[snippet.collection()].append(snippet);
        QSet<QString> taken;
        std::map<QString, QString> names;
        try {
            for (const Entry& entry : readAll()) {
                taken.insert(entry.baseName);
                if (entry.file)
                    names[entry.file->collection.id] = entry.baseName;
            }
        } catch (const FileError&) {
            taken.clear();
        }
        std::set<QString> ids;
        QStringList order;
        for (const SyncCollection& collection : data.data.collections) {
            ids.insert(collection.id);
            order.append(collection.id);
            if (!names.count(collection.id)) {
                names[collection.id] =
                    generateUniqueFileName(collectionFileBaseName(collection.name), taken);
                taken.insert(names[collection.id]);
            }
            const QString baseName = names[collection.id];
            const QList<Snippet> snippets = groups[collection.name];
            if (!shouldWrite(baseName, collection, snippets))
                continue;
            const CollectionFileData file{.version = QStringLiteral("1.0"),
                                          .lastModified = clock.now(),
                                          .deviceId = DeviceIdentifier::current(),
                                          .collection = collection,
                                          .snippets = snippets};
            write(baseName + QStringLiteral(".json"), encoder.encode(file));
            log(QStringLiteral("更新 Collection - ") + collection.name);
        }
        for (const auto& [id, baseName] : names) {
            if (ids.count(id))
                continue;
            try {
                files.remove(folder + u'/' + baseName + QStringLiteral(".json"));
            } catch (const FileError&) {
                continue;
            }
        }
        const MetadataFileData metadata{.version = QStringLiteral("3.1"),
                                        .lastModified = clock.now(),
                                        .deviceId = DeviceIdentifier::current(),
                                        .collectionOrder = order,
                                        .settings = data.settings};
        write(QStringLiteral("_metadata.json"), encoder.encode(metadata));
    } catch (const FileError&) {
        return false;
    }
    log(QStringLiteral("保存成功 - %1 snippets, %2 collections")
            .arg(data.data.snippets.size())
            .arg(data.data.collections.size()));
    return true;
}

void PlainStorage::updateMetadata(const std::optional<QString>& removedId)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    MetadataFileData metadata;
    metadata.version = QStringLiteral("3.1");
    try {
        metadata = JSONDecoder::vellumry().decode<MetadataFileData>(
            files.read(folder + QStringLiteral("/_metadata.json")).bytes);
    } catch (const FileError&) {
        metadata.settings.reset();
    } catch (const DecodingError&) {
        metadata.settings.reset();
    }
    if (removedId)
        metadata.collectionOrder.removeAll(*removedId);
    metadata.lastModified = clock.now();
    metadata.deviceId = DeviceIdentifier::current();
    write(QStringLiteral("_metadata.json"), encoder.encode(metadata));
}

bool PlainStorage::remove(const QString& collectionId)
{
    lines.clear();
    try {
        for (const Entry& entry : readAll()) {
            if (!entry.file || entry.file->collection.id != collectionId)
                continue;
            files.remove(folder + u'/' + entry.baseName + QStringLiteral(".json"));
            updateMetadata(collectionId);
            log(QStringLiteral("删除 Collection 文件 - ") + entry.baseName);
            break;
        }
    } catch (const FileError&) {
        return false;
    }
    return true;
}

bool PlainStorage::rename(const QString& collectionId, const QString& newName)
{
    lines.clear();
    try {
        QSet<QString> taken;
        std::optional<QString> found;
        for (const Entry& entry : readAll()) {
            taken.insert(entry.baseName);
            if (entry.file && entry.file->collection.id == collectionId)
                found = entry.baseName;
        }
        if (!found)
            return true;
        taken.remove(*found);
        const QString baseName = generateUniqueFileName(collectionFileBaseName(newName), taken);
        files.move(folder + u'/' + *found + QStringLiteral(".json"),
                   folder + u'/' + baseName + QStringLiteral(".json"));
        updateMetadata(std::nullopt);
        log(QStringLiteral("重命名 Collection 文件 - %1 -> %2").arg(*found, baseName));
    } catch (const FileError&) {
        return false;
    }
    return true;
}

} // namespace vellumry::test
