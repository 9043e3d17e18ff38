#pragma once

#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/ManualFileEvents.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <memory>

namespace vellumry::test {

/// A storage service with everything that it depends on. The library lives in `folder`.
class StorageWorld {
public:
    StorageWorld(FileSystem& fileSystem, const QString& dataFolder)
        : files(fileSystem), folder(dataFolder),
          locations({.preferences = preferences,
                     .files = fileSystem,
                     .notifications = notifications,
                     .documentsFolder = dataFolder + QStringLiteral("-documents"),
                     .homeFolder = QStringLiteral("/home/tester")})
    {
        setFolder(dataFolder);
    }

    /// What currentLocation says, without the validation and the notification.
    void setFolder(const QString& path)
    {
        folder = path;
        preferences.setString(QStringLiteral("Vellumry.customStorageLocation"), path);
        preferences.setBoolean(QStringLiteral("Vellumry.useCustomLocation"), true);
    }

    /// The service, built at the first call.
    CollectionFileStorageService& service()
    {
        if (!built)
            restart();
        return *built;
    }

    /// Builds the service anew, as a new process does.
    void restart()
    {
        built = std::make_unique<CollectionFileStorageService>(
            CollectionFileStorageService::Dependencies{
                .locations = locations,
                .files = files,
                .notifications = notifications,
                .scheduler = scheduler,
                .clock = clock,
                .colors = colors,
                .defaultSnippets = [this] { return defaultSnippets; },
                .makeEventStream = events.factory(),
                .watcherQueue = watcherQueue});
    }

    [[nodiscard]] QString path(const QString& name) const { return folder + u'/' + name; }

    FileSystem& files;
    QString folder;
    MemoryPreferences preferences;
    NotificationCenter notifications;
    ManualScheduler scheduler;
    ManualClock clock;
    CategoryColorService colors{preferences};
    std::optional<QByteArray> defaultSnippets;
    ManualFileEvents events;
    QObject watcherQueue;
    StorageLocationManager locations;

private:
    std::unique_ptr<CollectionFileStorageService> built;
};

/// A line that the service logs.
inline QString line(const QString& message)
{
    return QStringLiteral("CollectionFileStorageService: ") + message;
}

inline Date dateAt(qint64 milliseconds)
{
    return Date(std::chrono::seconds(1'700'000'000) + std::chrono::milliseconds(milliseconds));
}

inline Snippet makeSnippet(const QString& id, const QString& collection,
                           const QString& content = QStringLiteral("content"))
{
    SnippetFields fields;
    fields.id = id;
    fields.title = QStringLiteral("Title of ") + id;
    fields.collection = collection;
    fields.content = content;
    fields.createdAt = dateAt(0);
    fields.updatedAt = dateAt(1);
    return Snippet(fields);
}

inline SyncCollection makeCollection(const QString& id, const QString& name,
                                     const std::optional<QString>& color = std::nullopt)
{
    return {.id = id, .name = name, .color = color, .createdAt = dateAt(0)};
}

inline VellumryData makeLibrary(const QList<SyncCollection>& collections,
                                const QList<Snippet>& snippets)
{
    return {.version = QStringLiteral("3.0"),
            .lastModified = dateAt(5),
            .deviceId = QStringLiteral("test device"),
            .data = {.collections = collections, .snippets = snippets, .categoryColors = {}},
            .settings = std::nullopt};
}

inline QByteArray collectionFileBytes(const SyncCollection& collection,
                                      const QList<Snippet>& snippets,
                                      const QString& version = QStringLiteral("1.0"))
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    const CollectionFileData file{.version = version,
                                  .lastModified = dateAt(2),
                                  .deviceId = QStringLiteral("other device"),
                                  .collection = collection,
                                  .snippets = snippets};
    return encoder.encode(file).toByteArray();
}

inline QByteArray metadataFileBytes(const QStringList& order,
                                    const std::optional<SyncSettings>& settings = std::nullopt,
                                    const QString& version = QStringLiteral("3.1"))
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    const MetadataFileData file{.version = version,
                                .lastModified = dateAt(3),
                                .deviceId = QStringLiteral("other device"),
                                .collectionOrder = order,
                                .settings = settings};
    return encoder.encode(file).toByteArray();
}

inline CollectionFileData decodeCollectionFile(const QByteArray& bytes)
{
    return JSONDecoder::vellumry().decode<CollectionFileData>(QByteArrayView(bytes));
}

inline MetadataFileData decodeMetadataFile(const QByteArray& bytes)
{
    return JSONDecoder::vellumry().decode<MetadataFileData>(QByteArrayView(bytes));
}

inline QStringList idsOf(const QList<Snippet>& snippets)
{
    QStringList ids;
    for (const Snippet& snippet : snippets)
        ids.append(snippet.id());
    return ids;
}

inline QStringList idsOf(const QList<SyncCollection>& collections)
{
    QStringList ids;
    for (const SyncCollection& collection : collections)
        ids.append(collection.id);
    return ids;
}

} // namespace vellumry::test
