#pragma once

#include "core/Date.h"
#include "models/ConflictFile.h"
#include "models/VellumryData.h"
#include "notifications/NotificationCenter.h"
#include "storage/StorageError.h"

#include <QList>
#include <QObject>

#include <optional>

namespace vellumry {

class CollectionFileStorageService;
class StorageLocationManager;

/// A view of the store that loads the library anew when the data folder is another one. Nothing in
/// the program needs it: the store itself is the storage service. Main thread only.
class SyncStorageService final : public QObject {
    Q_OBJECT

public:
    /// All outlive the service.
    SyncStorageService(CollectionFileStorageService& collectionStorage,
                       const StorageLocationManager& locationManager,
                       const NotificationCenter& notifications);

    /// The library as it was after the last change of the folder; nothing before the first, and
    /// when it could not be loaded.
    [[nodiscard]] const std::optional<VellumryData>& currentData() const { return library; }

    // As of the store of the same names; nothing changes them here.
    [[nodiscard]] bool isSaving() const { return saving; }
    [[nodiscard]] std::optional<Date> lastSaveTime() const { return saveTime; }
    [[nodiscard]] const std::optional<StorageError>& lastError() const { return recordedError; }
    [[nodiscard]] bool isWriting() const { return writing; }
    [[nodiscard]] bool isWatchingEnabled() const { return watchingEnabled; }
    [[nodiscard]] const QList<ConflictFile>& detectedConflicts() const { return conflicts; }

    [[nodiscard]] CollectionFileStorageService& collectionStorage() const { return storage; }
    [[nodiscard]] const StorageLocationManager& locationManager() const { return locations; }

Q_SIGNALS:
    void currentDataChanged();

private:
    void handleStorageLocationChange();

    std::optional<VellumryData> library;
    bool saving = false;
    std::optional<Date> saveTime;
    std::optional<StorageError> recordedError;
    CollectionFileStorageService& storage;
    const StorageLocationManager& locations;
    bool writing = false;
    bool watchingEnabled = false;
    QList<ConflictFile> conflicts;
};

} // namespace vellumry
