#pragma once

#include "core/SerialQueue.h"
#include "platform/linux/SettingsFilePreferencesStore.h"
#include "settings/CategoryColorService.h"
#include "storage/CollectionFileStorageService.h"
#include "support/LibraryGenerator.h"

#include <QTemporaryDir>

#include <cstdlib>
#include <optional>

namespace vellumry::bench {

/// A store over a folder of its own with a generated library, and everything else as in the
/// program. Nothing is loaded yet.
class World {
public:
    explicit World(int count) : fileBytes(LibraryGenerator::writeFolder(count, folder())) {}

    /// Loads the library. The process ends when it cannot.
    void load()
    {
        if (!storage.loadFullData())
            std::exit(1);
    }

    [[nodiscard]] QString folder() const { return locations.defaultLocation(); }

    QTemporaryDir directory;
    SettingsFilePreferencesStore preferences{directory.filePath(QStringLiteral("preferences"))};
    NotificationCenter center;
    StorageLocationManager locations{
        {preferences, FileSystem::local(), center, directory.path(), directory.path()}};
    CategoryColorService colors{preferences};
    SerialQueue watcherQueue{FileWatcherService::callbackQueueLabel.toString()};
    CollectionFileStorageService storage{{locations, FileSystem::local(), center,
                                          EventLoopScheduler::shared(), SystemClock::shared(),
                                          colors, [] { return std::optional<QByteArray>(); },
                                          &FileEventStream::local, watcherQueue.context()}};
    const qint64 fileBytes; ///< of the collection files
};

} // namespace vellumry::bench
