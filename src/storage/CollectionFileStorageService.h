#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "models/ConflictFile.h"
#include "models/JSONEncoder.h"
#include "models/VellumryData.h"
#include "notifications/NotificationCenter.h"
#include "platform/FileSystem.h"
#include "settings/CategoryColorService.h"
#include "storage/CollectionFileCache.h"
#include "storage/FileWatcherService.h"
#include "storage/MetadataFile.h"
#include "storage/SnippetsByCollection.h"
#include "storage/StorageError.h"
#include "storage/StorageLocationManager.h"
#include "storage/StorageServiceProtocol.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace vellumry {

/// The storage engine: turns the data folder into one library and back. The folder holds one JSON
/// file for each collection and a metadata file; the link from a collection to its file is the id
/// inside the file, never the file's name. Files that cannot be understood are stepped around and
/// left as they are. Main thread only.
class CollectionFileStorageService final : public QObject, public StorageServiceProtocol {
    Q_OBJECT

public:
    /// Outlive the service.
    struct Dependencies {
        StorageLocationManager& locations;
        FileSystem& files;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
        CategoryColorService& colors;
        /// The bytes of the resource DefaultSnippets.json; nothing when there is none.
        std::function<std::optional<QByteArray>()> defaultSnippets;
        FileEventStream::Factory makeEventStream;
        QObject& watcherQueue; ///< see SerialQueue; where the changes in the folder are heard
    };

    /// Sees to it that the data folder exists, and loads nothing.
    explicit CollectionFileStorageService(Dependencies dependencies);
    ~CollectionFileStorageService() override;

    /// The one that the program uses.
    [[nodiscard]] static CollectionFileStorageService& shared();

    /// The library as last loaded or saved: the very value that was handed in.
    [[nodiscard]] const std::optional<VellumryData>& currentData() const { return library; }
    /// Whether a save is running.
    [[nodiscard]] bool isSaving() const { return saving; }
    /// The end of the last good save.
    [[nodiscard]] std::optional<Date> lastSaveTime() const { return saveTime; }
    /// The last failure that was recorded: of a load's metadata file, or of saveSnippets. A good
    /// save clears it, a good load does not.
    [[nodiscard]] const std::optional<StorageError>& lastError() const { return recordedError; }
    /// Conflict copies that somebody found in the folder; the store never looks for them itself.
    [[nodiscard]] const QList<ConflictFile>& detectedConflicts() const { return conflicts; }
    void setDetectedConflicts(const QList<ConflictFile>& found);

    /// True from the start of a save until 1.0 s after its end, or after the end of one shortly
    /// before it: changes in the folder are then taken for the program's own. At its end the folder
    /// is looked at for others among them.
    [[nodiscard]] bool isWriting() const { return writing; }

    /// Whether changes in the folder are waited for.
    [[nodiscard]] bool isWatchingEnabled() const { return watchingEnabled; }
    /// From now on, changes that others make in the data folder reload the library. Follows the
    /// folder to another location.
    void startFileWatching();
    void stopFileWatching();

    /// Reads the library anew and announces it, unless the program itself is writing.
    void reloadFromDisk();
    /// Forgets everything that was read and reads it anew; announces nothing.
    void clearCacheAndReload();

    std::optional<VellumryData> loadFullData() override;
    void saveFullData(const VellumryData& data, bool createBackup) override;
    [[nodiscard]] QList<Snippet> loadSnippets() override;
    bool saveSnippets(const QList<Snippet>& snippets) override;
    void deleteCollectionFile(const QString& collectionId) override;
    void renameCollectionFile(const QString& collectionId, const QString& newName) override;

    /// Whether the folder has neither a metadata file nor the old single file. A folder with
    /// collection files alone counts as empty.
    [[nodiscard]] bool needsDefaultSnippets() const;

    /// Fills an empty folder with the default library. Collection files in a folder without a
    /// metadata file are removed by it, so validate the folder first.
    void seedDefaultSnippets();

Q_SIGNALS:
    void currentDataChanged();
    void isSavingChanged();
    void lastSaveTimeChanged();
    void lastErrorChanged();
    void isWatchingEnabledChanged();
    void detectedConflictsChanged();

private:
    struct ScannedFolder {
        QList<SyncCollection> collections;
        QList<Snippet> snippets;
    };

    void handleStorageLocationChange();
    void endWriting();
    [[nodiscard]] bool hasForeignChanges();
    [[nodiscard]] ScannedFolder scanAllCollectionFiles();
    [[nodiscard]] std::optional<VellumryData> loadLegacySingleFile();
    [[nodiscard]] std::optional<VellumryData> loadDefaultSnippets() const;
    void setupDefaultCollectionColors(const VellumryData& defaults);

    [[nodiscard]] QStringList walkCollectionFiles(const QString& folder);
    void writeLibrary(const VellumryData& data);
    void removeLeftovers();
    void writeCollectionFile(const QString& folder, const QString& baseName,
                             const CollectionFileData& file, JSONEncoder& encoder);
    [[nodiscard]] bool shouldWriteCollectionFile(const QString& folder, const QString& baseName,
                                                 const SyncCollection& collection,
                                                 const SnippetSelection& snippets,
                                                 JSONDecoder& decoder);

    void setCurrentData(const std::optional<VellumryData>& data);
    void setLastSaveTime(const std::optional<Date>& value);
    void setWatchingEnabled(bool value);
    void setSaving(bool value);
    void setLastError(const std::optional<StorageError>& value);

    Dependencies with;
    CollectionFileCache cache;
    MetadataFile metadataFile;
    SnippetsByCollection groups; ///< of the library saved last
    std::optional<VellumryData> library;
    std::optional<Date> saveTime;
    std::optional<StorageError> recordedError;
    QList<ConflictFile> conflicts;
    QString tidiedFolder; ///< where leftovers were removed last
    bool saving = false;
    bool writing = false;
    bool missedChange = false; ///< a change was told of while writing
    /// Nothing ever sets it, so that the pause after it never comes to pass.
    std::optional<Date> lastWriteTime;
    std::unique_ptr<FileWatcherService> fileWatcher; ///< there while watching
    bool watchingEnabled = false;
};

} // namespace vellumry
