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

    /// The same for people, with "~" in place of the home folder. By its text alone: a folder
    /// whose name goes on where that of the home folder ends loses that beginning as well.
    [[nodiscard]] QString shortPath(const QString& homeFolder) const;

    friend bool operator==(const DetectedCloudDrive&, const DetectedCloudDrive&) = default;
};

} // namespace vellumry
