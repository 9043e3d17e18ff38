#include "library/LocationChoice.h"

#include "sync/CloudDriveDetectionService.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace vellumry {

LocationChoice::LocationChoice(const Dependencies& dependencies)
    : cloudDriveService(dependencies.cloudDriveService), locations(dependencies.change.locations),
      pickFolder(dependencies.pickFolder), change(dependencies.change)
{
    connect(&change, &LocationChange::isMigratingChanged, this, &LocationChoice::changed);
    connect(&change, &LocationChange::migrationProgressChanged, this, &LocationChoice::changed);
    connect(&change, &LocationChange::errorMessageChanged, this, [this] {
        error = change.errorMessage();
        Q_EMIT changed();
    });
    connect(&change, &LocationChange::finished, this, &LocationChoice::finished);
}

void LocationChoice::appear()
{
    drives = cloudDriveService.detectInstalledCloudDrives();
    Q_EMIT changed();
}

QString LocationChoice::currentLocation() const
{
    return locations.currentLocation();
}

QString LocationChoice::currentLocationDisplayName() const
{
    return locations.currentLocationDisplayName();
}

QString LocationChoice::defaultLocation() const
{
    return locations.defaultLocation();
}

bool LocationChoice::isCloudDrivePath(const QString& path) const
{
    return std::any_of(drives.begin(), drives.end(), [&path](const DetectedCloudDrive& drive) {
        return drive.programFolderPath() == path;
    });
}

void LocationChoice::select(const QString& path)
{
    if (isMigrating())
        return;
    selected = path;
    Q_EMIT changed();
}

void LocationChoice::chooseCustomFolder()
{
    if (isMigrating() || std::exchange(isPicking, true))
        return;
    Q_EMIT changed();
    pickFolder(QStringLiteral("Choose Folder"),
               [this, owner = QPointer<QObject>(this)](const auto& answer) {
                   if (!owner)
                       return;
                   isPicking = false;
                   if (answer && !isMigrating()) {
                       if (answer->error) {
                           error = answer->error;
                       } else {
                           custom = answer->path;
                           selected = answer->path;
                       }
                   }
                   Q_EMIT changed();
               });
}

void LocationChoice::applyChanges()
{
    if (isMigrating() || !selected)
        return;
    // An error that comes again is no change of the move's.
    change.applyChanges(selected);
    if (error != change.errorMessage()) {
        error = change.errorMessage();
        Q_EMIT changed();
    }
}

} // namespace vellumry
