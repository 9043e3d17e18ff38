#include "storage/SyncStorageService.h"

#include "storage/CollectionFileStorageService.h"

namespace vellumry {

SyncStorageService::SyncStorageService(CollectionFileStorageService& collectionStorage,
                                       const StorageLocationManager& locationManager,
                                       const NotificationCenter& notifications)
    : storage(collectionStorage), locations(locationManager)
{
    connect(&notifications, &NotificationCenter::storageLocationDidChange, this,
            &SyncStorageService::handleStorageLocationChange);
}

void SyncStorageService::handleStorageLocationChange()
{
    library = storage.loadFullData();
    Q_EMIT currentDataChanged();
}

} // namespace vellumry
