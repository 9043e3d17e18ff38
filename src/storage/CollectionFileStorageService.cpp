#include "storage/CollectionFileStorageService.h"

#include "core/FatalError.h"
#include "core/Log.h"
#include "core/SerialQueue.h"
#include "models/CollectionFileName.h"
#include "models/Identifier.h"
#include "models/JSONDecoder.h"
#include "platform/DeviceIdentifier.h"
#include "storage/CollectionOrder.h"
#include "storage/DataValidator.h"

#include <QFile>
#include <QHash>
#include <QScopeGuard>
#include <QSet>
#include <QStringBuilder>

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

void log(const QString& message)
{
    vellumry::log(u"CollectionFileStorageService", message);
}

QString legacyPath(const QString& folder)
{
    return folder % u"/vellumry-data.json";
}

QString collectionPath(const QString& folder, const QString& baseName)
{
    return folder % u'/' % baseName % u".json";
}

/// The base name, if a file of this name is a collection file.
std::optional<QString> collectionBaseName(const QString& fileName)
{
    auto baseName = jsonFileBaseName(fileName);
    return baseName == QLatin1StringView("_metadata") ? std::nullopt : baseName;
}

QString counts(const VellumryData& data)
{
    return QString::number(data.data.snippets.size()) % u" snippets, " %
           QString::number(data.data.collections.size()) % u" collections";
}

QStringList idsOf(const QList<SyncCollection>& collections)
{
    QStringList ids;
    ids.reserve(collections.size());
    for (const SyncCollection& collection : collections)
        ids.append(collection.id);
    return ids;
}

/// Whether a change from `stored` to `given` is one that is written to disk. Creation date, manual
/// position and placeholder values are not: they ride along with the next change that is.
bool differs(const Snippet& given, const Snippet& stored)
{
    return given.title() != stored.title() || given.subtitle() != stored.subtitle() ||
           given.content() != stored.content() || given.collection() != stored.collection() ||
           given.keywords() != stored.keywords() || given.updatedAt() != stored.updatedAt() ||
           given.lastUsedAt() != stored.lastUsedAt() || given.usageCount() != stored.usageCount();
}

/// The first id that stands twice; there is one.
QString duplicateId(const QList<Snippet>& snippets)
{
    QSet<QStringView> ids;
    for (const Snippet& snippet : snippets) {
        if (ids.contains(snippet.id()))
            return snippet.id();
        ids.insert(snippet.id());
    }
    Q_UNREACHABLE();
}

/// The snippets of a file, to be compared with those of the library. Their ids are unique.
class StoredSnippets {
public:
    explicit StoredSnippets(const QList<Snippet>& ofFile) : snippets(ofFile) {}

    /// Whether the file holds the given snippet, the i-th of the library's, without a difference
    /// that is written to disk.
    bool hold(const Snippet& given, qsizetype i)
    {
        // Most snippets stand where they stood and share their data with what the file holds.
        const Snippet& neighbour = snippets[i];
        if (given.sharesDataWith(neighbour) || data.contains(&given.fields()))
            return true;
        if (given.id() == neighbour.id())
            return !differs(given, neighbour);
        if (data.isEmpty()) {
            for (const Snippet& snippet : snippets)
                data.insert(&snippet.fields());
            if (data.contains(&given.fields()))
                return true;
        }
        if (positions.isEmpty()) {
            for (qsizetype position = 0; position < snippets.size(); ++position)
                positions.insert(snippets[position].id(), position);
        }
        const auto found = positions.constFind(given.id());
        return found != positions.cend() && !differs(given, snippets[*found]);
    }

private:
    const QList<Snippet>& snippets;
    QSet<const SnippetFields*> data; ///< filled when the order turns out to differ
    QHash<QStringView, qsizetype> positions;
};

/// The base names of the files that hold collections, and those that no new file may take.
struct CollectionFileNames {
    QSet<QString> taken;
    QHash<QString, QString> byCollectionId;
};

} // namespace

CollectionFileStorageService::CollectionFileStorageService(Dependencies dependencies)
    : with(std::move(dependencies)), cache(with.files)
{
    with.locations.ensureDirectoryExists(with.locations.currentLocation());
    connect(&with.notifications, &NotificationCenter::storageLocationDidChange, this,
            &CollectionFileStorageService::handleStorageLocationChange);
}

CollectionFileStorageService::~CollectionFileStorageService()
{
    stopFileWatching();
}

CollectionFileStorageService& CollectionFileStorageService::shared()
{
    static SerialQueue watcherQueue(FileWatcherService::callbackQueueLabel.toString());
    static CollectionFileStorageService service(
        {.locations = StorageLocationManager::shared(),
         .files = FileSystem::local(),
         .notifications = NotificationCenter::defaultCenter(),
         .scheduler = EventLoopScheduler::shared(),
         .clock = SystemClock::shared(),
         .colors = CategoryColorService::shared(),
         .defaultSnippets = []() -> std::optional<QByteArray> {
             QFile resource(QStringLiteral(":/DefaultSnippets.json"));
             if (!resource.open(QIODevice::ReadOnly))
                 return std::nullopt;
             return resource.readAll();
         },
         .makeEventStream = &FileEventStream::local,
         .watcherQueue = watcherQueue.context()});
    return service;
}

// Watching

void CollectionFileStorageService::startFileWatching()
{
    if (fileWatcher)
        return;
    const QString folder = with.locations.currentLocation();
    fileWatcher = std::make_unique<FileWatcherService>(
        FileWatcherService::Dependencies{.files = with.files,
                                         .scheduler = with.scheduler,
                                         .makeEventStream = with.makeEventStream,
                                         .callbackQueue = with.watcherQueue},
        folder, std::nullopt, [this] { reloadFromDisk(); });
    fileWatcher->startWatching();
    setWatchingEnabled(true);
    log(u"文件监控已启动 - " % folder);
}

void CollectionFileStorageService::stopFileWatching()
{
    if (fileWatcher)
        fileWatcher->stopWatching();
    fileWatcher.reset();
    missedChange = false;
    setWatchingEnabled(false);
}

void CollectionFileStorageService::reloadFromDisk()
{
    if (writing) {
        missedChange = true;
        return;
    }
    constexpr auto pauseAfterWrite = 2s;
    if (lastWriteTime && with.clock.now() - *lastWriteTime < pauseAfterWrite)
        return;
    log(QStringLiteral("检测到外部变化，重新加载数据..."));
    const auto data = loadFullData();
    if (!data)
        return;
    with.scheduler.after(0ms, this,
                         [this, data] { Q_EMIT with.notifications.syncDataDidChange(*data); });
}

/// The end of a save's time. What was taken for the program's own meanwhile may have been somebody
/// else's too.
void CollectionFileStorageService::endWriting()
{
    writing = false;
    if (std::exchange(missedChange, false) && hasForeignChanges())
        reloadFromDisk();
}

/// Whether the folder holds something else than what was last read and written.
bool CollectionFileStorageService::hasForeignChanges()
{
    const QString folder = with.locations.currentLocation();
    if (with.files.stamp(StorageLocationManager::metadataPath(folder)) != metadataStamp)
        return true;
    try {
        JSONDecoder decoder = JSONDecoder::vellumry();
        for (const QString& baseName : walkCollectionFiles(folder))
            (void)cache.decodableFile(baseName, decoder);
    } catch (const FileError&) {
        return false; // there is nothing to load
    }
    return cache.hasForeignChanges();
}

void CollectionFileStorageService::clearCacheAndReload()
{
    cache.clear();
    setCurrentData(std::nullopt);
    setLastSaveTime(std::nullopt);
    setLastError(std::nullopt);
    stopFileWatching();
    startFileWatching();
    loadFullData();
    log(QStringLiteral("已清除缓存并重新加载数据"));
}

/// What was loaded from the folder before stays until something can be loaded from the new one.
void CollectionFileStorageService::handleStorageLocationChange()
{
    cache.clear();
    stopFileWatching();
    startFileWatching();
    loadFullData();
}

// Loading

std::optional<VellumryData> CollectionFileStorageService::loadFullData()
{
    const QString folder = with.locations.currentLocation();
    if (!with.files.exists(StorageLocationManager::metadataPath(folder)))
        return loadLegacySingleFile();

    MetadataFileData metadata;
    try {
        metadata = readMetadataFile(folder);
    } catch (const StorageError& failure) {
        log(u"加载失败 - " % failure.description());
        setLastError(failure);
        return std::nullopt;
    }

    missedChange = false; // from here on the folder is read
    ScannedFolder scanned = scanAllCollectionFiles();
    cache.acceptForeignChanges();
    arrangeByOrder(scanned.collections, metadata.collectionOrder,
                   StorageLocationManager::metadataPath(folder));
    VellumryData data{.version = VellumryData::currentVersion.toString(),
                      .lastModified = metadata.lastModified,
                      .deviceId = metadata.deviceId,
                      .data = {.collections = std::move(scanned.collections),
                               .snippets = std::move(scanned.snippets),
                               .categoryColors = {}},
                      .settings = metadata.settings};
    data.data.categoryColors = colorsByName(data.data.collections);
    setCurrentData(data);
    log(u"加载成功 - " % counts(data));
    return data;
}

CollectionFileStorageService::ScannedFolder CollectionFileStorageService::scanAllCollectionFiles()
{
    QStringList baseNames;
    try {
        baseNames = walkCollectionFiles(with.locations.currentLocation());
    } catch (const FileError& failure) {
        log(u"扫描目录失败 - " % failure.description());
        return {};
    }
    ScannedFolder scanned;
    JSONDecoder decoder = JSONDecoder::vellumry();
    const auto skip = [](const QString& baseName, const QString& description) {
        log(u"跳过无效文件 - " % baseName % u": " % description);
    };
    for (const QString& baseName : std::as_const(baseNames)) {
        try {
            const CollectionFile& file = cache.file(baseName, decoder);
            scanned.collections.append(file.collection);
            scanned.snippets.append(file.snippets);
            log(u"加载文件 - " % baseName);
        } catch (const FileError& failure) {
            skip(baseName, failure.description());
        } catch (const DecodingError& failure) {
            skip(baseName, failure.description());
        }
    }
    return scanned;
}

std::optional<VellumryData> CollectionFileStorageService::loadLegacySingleFile()
{
    const QString path = legacyPath(with.locations.currentLocation());
    if (!with.files.exists(path))
        return std::nullopt;
    PaddedBytes bytes;
    try {
        bytes = with.files.read(path).bytes;
    } catch (const FileError& failure) {
        log(u"加载旧格式失败 - " % failure.description());
        return std::nullopt;
    }

    const auto decode = [&]<typename T>(std::type_identity<T>) -> std::optional<T> {
        try {
            return JSONDecoder::vellumry().decode<T>(bytes);
        } catch (const DecodingError&) {
            return std::nullopt; // another shape, perhaps
        }
    };
    std::optional<VellumryData> data = decode(std::type_identity<VellumryData>());
    if (!data) {
        if (const auto legacy = decode(std::type_identity<LegacyExportData>()))
            data = DataValidator::migrateFromLegacy(*legacy, with.clock);
        else if (const auto snippets = decode(std::type_identity<QList<Snippet>>()))
            data = DataValidator::migrateFromSnippetArray(*snippets, with.clock);
    }
    if (data)
        setCurrentData(*data);
    return data;
}

QList<Snippet> CollectionFileStorageService::loadSnippets()
{
    if (library)
        return library->data.snippets;
    const auto data = loadFullData();
    return data ? data->data.snippets : QList<Snippet>();
}

// The default library

bool CollectionFileStorageService::needsDefaultSnippets() const
{
    const QString folder = with.locations.currentLocation();
    return !with.files.exists(StorageLocationManager::metadataPath(folder)) &&
           !with.files.exists(legacyPath(folder));
}

void CollectionFileStorageService::seedDefaultSnippets()
{
    if (!needsDefaultSnippets()) {
        log(QStringLiteral("已有数据，跳过预置默认 Snippets"));
        return;
    }
    const std::optional<VellumryData> defaults = loadDefaultSnippets();
    if (!defaults) {
        log(QStringLiteral("无法加载 DefaultSnippets.json"));
        return;
    }
    try {
        saveFullData(*defaults, false);
    } catch (const StorageError& failure) {
        log(u"预置默认 Snippets 失败 - " % failure.description());
        return;
    }
    log(QStringLiteral("已预置默认 Snippets"));
    setupDefaultCollectionColors(*defaults);
}

std::optional<VellumryData> CollectionFileStorageService::loadDefaultSnippets() const
{
    const std::optional<QByteArray> bytes = with.defaultSnippets();
    if (!bytes) {
        log(QStringLiteral("无法找到 DefaultSnippets.json"));
        return std::nullopt;
    }
    DefaultSnippetsContainer defaults;
    try {
        defaults = JSONDecoder::vellumry().decode<DefaultSnippetsContainer>(*bytes);
    } catch (const DecodingError& failure) {
        log(u"解析 DefaultSnippets.json 失败 - " % failure.description());
        return std::nullopt;
    }

    const Date now = with.clock.now();
    SyncDataContent content;
    for (const DefaultCollection& collection : std::as_const(defaults.collections)) {
        content.collections.append({.id = makeIdentifier(),
                                    .name = collection.name,
                                    .color = collection.color,
                                    .createdAt = now});
        content.categoryColors.insert(collection.name, collection.color);
        for (const DefaultSnippet& snippet : collection.snippets) {
            SnippetFields fields;
            fields.id = makeIdentifier();
            fields.title = snippet.title;
            fields.collection = collection.name;
            fields.content = snippet.content;
            fields.createdAt = now;
            fields.updatedAt = now;
            content.snippets.append(Snippet(std::move(fields)));
        }
    }
    return VellumryData{.version = VellumryData::currentVersion.toString(),
                        .lastModified = with.clock.now(),
                        .deviceId = DeviceIdentifier::current(),
                        .data = std::move(content),
                        .settings = std::nullopt};
}

void CollectionFileStorageService::setupDefaultCollectionColors(const VellumryData& defaults)
{
    if (defaults.data.categoryColors.isEmpty())
        return;
    QMap<QString, QString> colors = with.colors.loadColors();
    colors.insert(defaults.data.categoryColors);
    with.colors.saveColors(colors);
}

// Saving

void CollectionFileStorageService::saveFullData(const VellumryData& data, bool /*createBackup*/)
{
    writing = true;
    setSaving(true);
    const auto endOfSave = qScopeGuard([this] {
        with.scheduler.after(1s, this, [this] { endWriting(); });
        setSaving(false);
    });

    try {
        writeLibrary(data);
    } catch (const FileError& failure) {
        cache.clear();
        throw StorageError(failure.description());
    }
    setCurrentData(data);
    setLastSaveTime(with.clock.now());
    setLastError(std::nullopt);
    log(u"保存成功 - " % counts(data));
    Q_EMIT with.notifications.syncDataDidSave();
}

void CollectionFileStorageService::writeLibrary(const VellumryData& data)
{
    const QString folder = with.locations.currentLocation();
    with.locations.ensureDirectoryExists(folder);
    groups.regroup(data.data.snippets);
    JSONDecoder decoder = JSONDecoder::vellumry();
    JSONEncoder encoder = JSONEncoder::vellumry();

    CollectionFileNames names;
    QStringList listed;
    bool isListed = true;
    try {
        listed = walkCollectionFiles(folder);
    } catch (const FileError&) {
        // What cannot be listed has no files to find or to remove; the writes below tell more.
        isListed = false;
        cache.beginWalk(folder, {});
    }
    for (const QString& baseName : std::as_const(listed)) {
        // A file that cannot be understood keeps its name and is left alone.
        names.taken.insert(baseName);
        if (const CollectionFile* file = cache.decodableFile(baseName, decoder))
            names.byCollectionId.insert(file->collection.id, baseName);
    }

    QSet<QString> ids;
    for (const SyncCollection& collection : data.data.collections) {
        ids.insert(collection.id);
        if (!names.byCollectionId.contains(collection.id)) {
            const QString derivedName = collectionFileBaseName(collection.name);
            QString baseName = generateUniqueFileName(derivedName, names.taken);
            // Without a listing, a file that cannot be understood is met only at its name.
            while (!isListed && with.files.exists(collectionPath(folder, baseName)) &&
                   !cache.decodableFile(baseName, decoder)) {
                names.taken.insert(baseName);
                baseName = generateUniqueFileName(derivedName, names.taken);
            }
            names.taken.insert(baseName);
            names.byCollectionId.insert(collection.id, baseName);
        }
        const QString baseName = names.byCollectionId.value(collection.id);
        const SnippetSelection snippets = groups.of(collection.name);
        if (!shouldWriteCollectionFile(folder, baseName, collection, snippets, decoder))
            continue;
        writeCollectionFile(folder, baseName,
                            {.version = CollectionFileData::currentVersion.toString(),
                             .lastModified = with.clock.now(),
                             .deviceId = DeviceIdentifier::current(),
                             .collection = collection,
                             .snippets = snippets.toList()},
                            encoder);
        log(u"更新 Collection - " % collection.name);
    }

    for (auto it = names.byCollectionId.cbegin(); it != names.byCollectionId.cend(); ++it) {
        if (ids.contains(it.key()))
            continue;
        try {
            with.files.remove(collectionPath(folder, it.value()));
            cache.forget(it.value());
        } catch (const FileError&) {
            continue; // the next save tries again
        }
    }

    writeMetadataFile(folder, {.version = MetadataFileData::currentVersion.toString(),
                               .lastModified = with.clock.now(),
                               .deviceId = DeviceIdentifier::current(),
                               .collectionOrder = idsOf(data.data.collections),
                               .settings = data.settings});
}

void CollectionFileStorageService::writeCollectionFile(const QString& folder,
                                                       const QString& baseName,
                                                       const CollectionFileData& file,
                                                       JSONEncoder& encoder)
{
    const QByteArrayView bytes = encoder.encode(file);
    const auto stamp = with.files.write(collectionPath(folder, baseName), bytes);
    cache.remember(baseName, stamp, bytes, file);
}

bool CollectionFileStorageService::shouldWriteCollectionFile(const QString& folder,
                                                             const QString& baseName,
                                                             const SyncCollection& collection,
                                                             const SnippetSelection& snippets,
                                                             JSONDecoder& decoder)
{
    const CollectionFile* file = cache.decodableFile(baseName, decoder);
    if (!file || collection.id != file->collection.id || collection.name != file->collection.name ||
        collection.color != file->collection.color || snippets.size() != file->snippets.size())
        return true;

    if (!file->hasUniqueIds)
        fatalDuplicateKey(duplicateId(file->snippets), collectionPath(folder, baseName));
    StoredSnippets stored(file->snippets);
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        if (!stored.hold(snippets[i], i))
            return true;
    }
    return false;
}

bool CollectionFileStorageService::saveSnippets(const QList<Snippet>& snippets)
{
    VellumryData data =
        library.value_or(VellumryData{.version = VellumryData::currentVersion.toString(),
                                      .lastModified = with.clock.now(),
                                      .deviceId = DeviceIdentifier::current(),
                                      .data = {},
                                      .settings = std::nullopt});
    data.data.snippets = snippets;
    try {
        saveFullData(data, false);
    } catch (const StorageError& failure) {
        setLastError(failure);
        return false;
    }
    return true;
}

// Single files

void CollectionFileStorageService::deleteCollectionFile(const QString& collectionId)
{
    try {
        const QString folder = with.locations.currentLocation();
        JSONDecoder decoder = JSONDecoder::vellumry();
        const QStringList baseNames = walkCollectionFiles(folder);
        const auto holdsCollection = [&](const QString& baseName) {
            const CollectionFile* file = cache.decodableFile(baseName, decoder);
            return file && file->collection.id == collectionId;
        };
        const auto found = std::find_if(baseNames.cbegin(), baseNames.cend(), holdsCollection);
        if (found == baseNames.cend())
            return;
        with.files.remove(collectionPath(folder, *found));
        cache.forget(*found);
        updateMetadataFile(folder, [&](MetadataFileData& metadata) {
            metadata.collectionOrder.removeAll(collectionId);
        });
        log(u"删除 Collection 文件 - " % *found);
    } catch (const FileError& failure) {
        cache.clear();
        throw StorageError(failure.description());
    }
}

void CollectionFileStorageService::renameCollectionFile(const QString& collectionId,
                                                        const QString& newName)
{
    try {
        const QString folder = with.locations.currentLocation();
        JSONDecoder decoder = JSONDecoder::vellumry();
        QSet<QString> taken;
        std::optional<QString> found;
        for (const QString& baseName : walkCollectionFiles(folder)) {
            taken.insert(baseName);
            const CollectionFile* file = cache.decodableFile(baseName, decoder);
            if (file && file->collection.id == collectionId)
                found = baseName;
        }
        if (!found)
            return;
        taken.remove(*found);
        // A name that stays the same makes the move fail, since the target exists.
        const QString newBaseName = generateUniqueFileName(collectionFileBaseName(newName), taken);
        with.files.move(collectionPath(folder, *found), collectionPath(folder, newBaseName));
        cache.move(*found, newBaseName);
        updateMetadataFile(folder, [](MetadataFileData&) {});
        log(u"重命名 Collection 文件 - " % *found % u" -> " % newBaseName);
    } catch (const FileError& failure) {
        cache.clear();
        throw StorageError(failure.description());
    }
}

// Files

/// Lists the folder and gives the base names of its collection files, in the order of the listing.
QStringList CollectionFileStorageService::walkCollectionFiles(const QString& folder)
{
    QStringList baseNames;
    try {
        for (const QString& fileName : with.files.list(folder)) {
            if (const auto baseName = collectionBaseName(fileName))
                baseNames.append(*baseName);
        }
    } catch (const FileError&) {
        cache.clear();
        throw;
    }
    cache.beginWalk(folder, baseNames);
    return baseNames;
}

MetadataFileData CollectionFileStorageService::readMetadataFile(const QString& folder)
{
    try {
        const FileContents contents = with.files.read(StorageLocationManager::metadataPath(folder));
        metadataStamp = contents.stamp;
        return JSONDecoder::vellumry().decode<MetadataFileData>(contents.bytes);
    } catch (const FileError& failure) {
        throw StorageError(failure.description());
    } catch (const DecodingError& failure) {
        throw StorageError(failure.description());
    }
}

void CollectionFileStorageService::writeMetadataFile(const QString& folder,
                                                     const MetadataFileData& metadata)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    metadataStamp =
        with.files.write(StorageLocationManager::metadataPath(folder), encoder.encode(metadata));
    cache.noteTime(metadataStamp);
}

void CollectionFileStorageService::updateMetadataFile(
    const QString& folder, const std::function<void(MetadataFileData&)>& modifier)
{
    MetadataFileData metadata;
    try {
        metadata = readMetadataFile(folder);
    } catch (const StorageError&) {
        metadata.version = MetadataFileData::currentVersion.toString();
    }
    modifier(metadata);
    metadata.lastModified = with.clock.now();
    metadata.deviceId = DeviceIdentifier::current();
    writeMetadataFile(folder, metadata);
}

// Observed fields

void CollectionFileStorageService::setDetectedConflicts(const QList<ConflictFile>& found)
{
    conflicts = found;
    Q_EMIT detectedConflictsChanged();
}

void CollectionFileStorageService::setCurrentData(const std::optional<VellumryData>& data)
{
    library = data;
    Q_EMIT currentDataChanged();
}

void CollectionFileStorageService::setLastSaveTime(const std::optional<Date>& value)
{
    saveTime = value;
    Q_EMIT lastSaveTimeChanged();
}

void CollectionFileStorageService::setWatchingEnabled(bool value)
{
    watchingEnabled = value;
    Q_EMIT isWatchingEnabledChanged();
}

void CollectionFileStorageService::setSaving(bool value)
{
    saving = value;
    Q_EMIT isSavingChanged();
}

void CollectionFileStorageService::setLastError(const std::optional<StorageError>& value)
{
    recordedError = value;
    Q_EMIT lastErrorChanged();
}

} // namespace vellumry
