#include "app/SettingsContents.h"

#include "app/DependencyContainer.h"
#include "hotkey/HotKeysController.h"
#include "notifications/NotificationCenter.h"
#include "settings/HotkeyService.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"
#include "sync/CloudDriveDetectionService.h"
#include "sync/ConflictDetectionService.h"
#include "views/settings/SettingsView.h"

#include <utility>

namespace vellumry {

SettingsContents::SettingsContents(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
}

QWidget* SettingsContents::make()
{
    return new SettingsView({.settings = with.container.settings(),
                             .hotkeyService = with.container.hotkeyService(),
                             .conflictChecker = with.container.hotkeyConflictChecker(),
                             .locationManager = StorageLocationManager::shared(),
                             .cloudDriveService = CloudDriveDetectionService::shared(),
                             .conflictDetection = ConflictDetectionService::shared(),
                             .collectionStorage = with.container.collectionFileStorageService(),
                             .notifications = NotificationCenter::defaultCenter(),
                             .fileViewer = with.container.fileViewer(),
                             .scheduler = EventLoopScheduler::shared(),
                             .theme = with.theme()});
}

} // namespace vellumry
