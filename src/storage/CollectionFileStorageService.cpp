#include "storage/CollectionFileStorageService.h"

#include "core/Digest.h"
#include "core/Log.h"
#include "core/SerialQueue.h"
#include "models/CollectionFileName.h"
#include "models/JSONDecoder.h"
#include "platform/DeviceIdentifier.h"
#include "storage/CollectionFileComparison.h"
#include "storage/CollectionOrder.h"
#include "storage/DataFolder.h"
#include "storage/DataValidator.h"
#include "storage/DefaultLibrary.h"

#include <QFile>
#include <QHash>
#include <QScopeGuard>
#include <QSet>
#include <QStringBuilder>

#include <algorithm>
#include <utility>
#include <vector>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

void log(const QString& message)
{
    vellumry::log(u"CollectionFileStorageService", message);
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

/// The base names of the files that hold collections, and those that no new file may take.
struct CollectionFileNames {
    QSet<QString> taken;
    QHash<QString, QString> byCollectionId;
};

} // namespace

CollectionFileStorageService::CollectionFileStorageService(Dependencies dependencies)
    : with(std::move(dependencies)), cache(with.files), metadataFile(with.files, with.clock)
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
    if (metadataFile.hasForeignChange(folder))
        return true;
    try {
        JSONDecoder decoder = JSONDecoder::vellumry();
        for (const QString& baseName : walkCollectionFiles(folder))
            (void)cache.decodableFile(baseName, decoder);
    } catch (const FileError&) {
        missedChange = true; // nothing can be told now, so the next save's end asks again
        return false;
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
    if (!with.files.exists(StorageLocationManager::metadataPath(folder))) {
        metadataFile.noteMissing();
        return loadLegacySingleFile();
    }

    MetadataFileData metadata;
    try {
        metadata = metadataFile.read(folder);
    } catch (const StorageError& failure) {
        log(u"加载失败 - " % failure.description());
        setLastError(failure);
        return std::nullopt;
    }

    missedChange = false; // from here on the folder is read
    ScannedFolder scanned = scanAllCollectionFiles();
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
    cache.acceptForeignChanges();
    return scanned;
}

std::optional<VellumryData> CollectionFileStorageService::loadLegacySingleFile()
{
    const QString path = legacyFilePath(with.locations.currentLocation());
    if (!with.files.exists(path))
        return std::nullopt;
    PaddedBytes bytes;
    try {
        bytes = with.files.read(path).bytes;
    } catch (const FileError& failure) {
        log(u"加载旧格式失败 - " % failure.description());
        return std::nullopt;
    }
    auto data = DataValidator::singleFileLibrary(bytes, with.clock);
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
           !with.files.exists(legacyFilePath(folder));
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
    try {
        return defaultLibrary(JSONDecoder::vellumry().decode<DefaultSnippetsContainer>(*bytes),
                              with.clock);
    } catch (const DecodingError& failure) {
        log(u"解析 DefaultSnippets.json 失败 - " % failure.description());
        return std::nullopt;
    }
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
        throw StorageError(failure.description());
    }
    removeLeftovers();
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
        cache.beginWalk(folder);
    }
    for (const QString& baseName : std::as_const(listed)) {
        // A file that cannot be understood keeps its name and is left alone.
        names.taken.insert(baseName);
        if (const CollectionFile* file = cache.decodableFile(baseName, decoder))
            names.byCollectionId.insert(file->collection.id, baseName);
    }

    // All files are judged before the first is written. An id that stands twice in one of them ends
    // the process, and a snippet that is on its way to another collection must not be gone from the
    // one and not yet in the other by then.
    struct Outdated {
        const SyncCollection& collection;
        QString baseName;
        SnippetSelection snippets;
    };
    std::vector<Outdated> outdated;
    QSet<QString> ids;
    for (const SyncCollection& collection : data.data.collections) {
        // Of two collections with one id the second is written over the first.
        const bool isSecond = ids.contains(collection.id);
        ids.insert(collection.id);
        if (!names.byCollectionId.contains(collection.id)) {
            const QString derivedName = collectionFileBaseName(collection.name);
            QString baseName = generateUniqueFileName(derivedName, names.taken);
            // Without a listing, a file that cannot be understood is met only at its name.
            while (!isListed && with.files.exists(collectionFilePath(folder, baseName)) &&
                   !cache.decodableFile(baseName, decoder)) {
                names.taken.insert(baseName);
                baseName = generateUniqueFileName(derivedName, names.taken);
            }
            names.taken.insert(baseName);
            names.byCollectionId.insert(collection.id, baseName);
        }
        const QString baseName = names.byCollectionId.value(collection.id);
        const SnippetSelection snippets = groups.of(collection.name);
        if (isSecond || shouldWriteCollectionFile(folder, baseName, collection, snippets, decoder))
            outdated.push_back({collection, baseName, snippets});
    }
    for (const Outdated& each : outdated) {
        writeCollectionFile(folder, each.baseName,
                            {.version = CollectionFileData::currentVersion.toString(),
                             .lastModified = with.clock.now(),
                             .deviceId = DeviceIdentifier::current(),
                             .collection = each.collection,
                             .snippets = each.snippets.toList()},
                            encoder);
        log(u"更新 Collection - " % each.collection.name);
    }

    // A file that somebody else has just put there, and that no load has shown yet, goes as well:
    // every file that can be understood belongs to a collection of the library or to none.
    for (auto it = names.byCollectionId.cbegin(); it != names.byCollectionId.cend(); ++it) {
        // What has changed since it was read here is not the file that was judged.
        if (ids.contains(it.key()) || !cache.isStillAsRead(it.value()))
            continue;
        try {
            with.files.remove(collectionFilePath(folder, it.value()));
            cache.forget(it.value());
        } catch (const FileError&) {
            continue; // the next save tries again
        }
    }

    cache.noteTime(
        metadataFile.write(folder, {.version = MetadataFileData::currentVersion.toString(),
                                    .lastModified = with.clock.now(),
                                    .deviceId = DeviceIdentifier::current(),
                                    .collectionOrder = idsOf(data.data.collections),
                                    .settings = data.settings}));
}

/// Once in each folder: what a program left there that was killed while it wrote.
void CollectionFileStorageService::removeLeftovers()
{
    const QString folder = with.locations.currentLocation();
    if (std::exchange(tidiedFolder, folder) != folder)
        with.files.removeLeftovers(folder, with.clock.now() - 24h);
}

void CollectionFileStorageService::writeCollectionFile(const QString& folder,
                                                       const QString& baseName,
                                                       const CollectionFileData& file,
                                                       JSONEncoder& encoder)
{
    Digest digest;
    const auto stamp =
        with.files.write(collectionFilePath(folder, baseName), [&](const ByteSink& sink) {
            encoder.encode(file, [&](QByteArrayView piece) {
                digest.add(piece);
                sink(piece);
            });
        });
    cache.remember(baseName, stamp, digest.value(), file);
}

bool CollectionFileStorageService::shouldWriteCollectionFile(const QString& folder,
                                                             const QString& baseName,
                                                             const SyncCollection& collection,
                                                             const SnippetSelection& snippets,
                                                             JSONDecoder& decoder)
{
    const CollectionFile* file = cache.decodableFile(baseName, decoder);
    return !file || !holds(*file, collection, snippets, collectionFilePath(folder, baseName));
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
        with.files.remove(collectionFilePath(folder, *found));
        cache.forget(*found);
        cache.noteTime(metadataFile.update(folder, [&](MetadataFileData& metadata) {
            metadata.collectionOrder.removeAll(collectionId);
        }));
        log(u"删除 Collection 文件 - " % *found);
    } catch (const FileError& failure) {
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
        with.files.move(collectionFilePath(folder, *found),
                        collectionFilePath(folder, newBaseName));
        cache.move(*found, newBaseName);
        cache.noteTime(metadataFile.update(folder, [](MetadataFileData&) {}));
        log(u"重命名 Collection 文件 - " % *found % u" -> " % newBaseName);
    } catch (const FileError& failure) {
        throw StorageError(failure.description());
    }
}

// Files

/// Lists the folder and gives the base names of its collection files, in the order of the listing.
QStringList CollectionFileStorageService::walkCollectionFiles(const QString& folder)
{
    QStringList baseNames;
    for (const QString& fileName : with.files.list(folder)) {
        if (const auto baseName = baseNameOfCollectionFile(fileName))
            baseNames.append(*baseName);
    }
    cache.beginWalk(folder, baseNames);
    return baseNames;
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
