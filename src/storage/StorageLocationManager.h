#pragma once

#include "notifications/NotificationCenter.h"
#include "platform/FileSystem.h"
#include "platform/PreferencesStore.h"
#include "storage/StorageLocationError.h"

#include <QString>

namespace vellumry {

/// Knows in which folder the library lives: the default one among the user's documents, or one
/// that the user chose. All state is in the preferences, so a change holds at the next question,
/// everywhere. Safe to use from any thread.
class StorageLocationManager {
public:
    static constexpr QStringView folderName = u"Vellumry";
    static constexpr QStringView metadataFileName = u"_metadata.json";
    static constexpr QStringView backupSuffix = u".backup"; ///< a name kept free; nothing uses it
    [[nodiscard]] static QString metadataPath(const QString& folder);

    struct Dependencies {
        PreferencesStore& preferences;
        FileSystem& files;
        NotificationCenter& notifications;
        QString documentsFolder; ///< empty when the system has none
        QString homeFolder;
    };

    explicit StorageLocationManager(const Dependencies& dependencies);

    /// The one that the program uses.
    [[nodiscard]] static StorageLocationManager& shared();

    /// Apps/Vellumry in the documents folder. Without a documents folder the process ends.
    [[nodiscard]] QString defaultLocation() const;

    /// The folder of the library, which may not exist yet. Asked anew at each file operation.
    [[nodiscard]] QString currentLocation() const;

    /// Whether a custom folder is set. An empty path counts here, unlike in currentLocation().
    [[nodiscard]] bool isUsingCustomLocation() const;

    /// The current location for people, see abbreviatedPath.
    [[nodiscard]] QString currentLocationDisplayName() const;

    /// Whether the first-launch dialog is due.
    [[nodiscard]] bool needsFirstLaunchSetup() const;
    void markFirstLaunchComplete();

    /// Makes the folder the library's and announces it on the calling thread. Throws
    /// StorageLocationError and changes nothing when the folder cannot hold the library.
    void setCustomLocation(const QString& location);

    /// Whether the next process will find the same location. Settings that cannot be written, on a
    /// full disk say, hold for this one alone.
    [[nodiscard]] bool isLocationSaved() const { return with.preferences.isSaved(); }

    /// Creates the folder if need be and proves with a real write that it can hold the library.
    /// Throws StorageLocationError.
    void validateDirectory(const QString& location);

    /// Creates the folder if it is missing. A failure is logged only: the first write meets it.
    void ensureDirectoryExists(const QString& location);

private:
    Dependencies with;
};

} // namespace vellumry
