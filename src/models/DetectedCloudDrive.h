#pragma once

#include "models/CloudDriveType.h"

#include <QString>
#include <QUuid>

namespace vellumry {

/// A cloud drive that was found on this machine.
struct DetectedCloudDrive {
    QUuid id; ///< identifies the record in a list, made at each detection
    CloudDriveType type = CloudDriveType::dropbox;
    QString syncFolderPath; ///< the root of the sync folder, without the program's sub-folder
    bool isAvailable = true;

    /// The program's folder in this drive, where a library can live.
    [[nodiscard]] QString programFolderPath() const;

    /// The same for people, see abbreviatedPath.
    [[nodiscard]] QString shortPath(const QString& homeFolder) const;

    friend bool operator==(const DetectedCloudDrive&, const DetectedCloudDrive&) = default;
};

} // namespace vellumry
