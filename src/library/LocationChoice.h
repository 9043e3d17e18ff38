#pragma once

#include "library/LocationChange.h"
#include "library/PickFolder.h"
#include "models/DetectedCloudDrive.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>

namespace vellumry {

class CloudDriveDetectionService;

/// The choice of another folder for the library, and its move there: what the sheet for it shows.
/// Main thread only. One object for each time that the sheet comes up; see LocationChange for what
/// happens when it goes during a move.
class LocationChoice final : public QObject {
    Q_OBJECT

public:
    /// What is referred to outlives this object.
    struct Dependencies {
        const CloudDriveDetectionService& cloudDriveService;
        LocationChange::Dependencies change;
        PickFolder pickFolder;
    };

    explicit LocationChoice(const Dependencies& dependencies);

    /// Looks for cloud drives.
    void appear();

    [[nodiscard]] QString currentLocation() const;
    [[nodiscard]] QString currentLocationDisplayName() const;
    [[nodiscard]] QString defaultLocation() const;
    [[nodiscard]] const QList<DetectedCloudDrive>& detectedDrives() const { return drives; }
    [[nodiscard]] const std::optional<QString>& selectedPath() const { return selected; }
    [[nodiscard]] const std::optional<QString>& customSelectedPath() const { return custom; }
    [[nodiscard]] bool isMigrating() const { return change.isMigrating(); }
    /// From 0 to 1.
    [[nodiscard]] double migrationProgress() const { return change.migrationProgress(); }
    /// What went wrong last, for the person.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return error; }
    /// Whether the dialog for a folder is up.
    [[nodiscard]] bool showFilePicker() const { return isPicking; }

    /// Whether this is the program's folder in one of the drives.
    [[nodiscard]] bool isCloudDrivePath(const QString& path) const;

    // None of these does anything while data move.
    void select(const QString& path);
    /// Asks for a folder of the person's own; one dialog at a time.
    void chooseCustomFolder();
    void applyChanges();

Q_SIGNALS:
    void changed();
    /// The library has moved: the sheet may go.
    void finished();

private:
    const CloudDriveDetectionService& cloudDriveService;
    StorageLocationManager& locations;
    PickFolder pickFolder;
    LocationChange change;
    QList<DetectedCloudDrive> drives;
    std::optional<QString> selected;
    std::optional<QString> custom;
    std::optional<QString> error;
    bool isPicking = false;
};

} // namespace vellumry
