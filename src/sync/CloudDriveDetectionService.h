#pragma once

#include "models/DetectedCloudDrive.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// Finds out which cloud drives are installed on this machine and where their sync folders lie, by
/// the presence of a program and a folder; talks to no sync client.
///
/// The library may also live on a volume that another system uses, so that system's places are
/// looked at first: the drive's application in the applications folder, and its folder in the home
/// folder or in Library/CloudStorage there. Where these find nothing, the drive's client for Linux
/// and its usual folder count:
///
/// - Dropbox: ~/.dropbox-dist, or `dropbox` on the path; ~/Dropbox.
/// - Google Drive: `google-drive-ocamlfuse` or `insync` on the path, which let people choose the
///   folder; ~/GoogleDrive, then ~/Google Drive, the names that their guides use.
/// - OneDrive: `onedrive` on the path; ~/OneDrive.
/// - pCloud: `pcloud` on the path; ~/pCloudDrive.
///
/// Of several accounts of one drive the first that is listed counts, and no other is tried. Main
/// thread only.
class CloudDriveDetectionService {
public:
    struct Dependencies {
        FileSystem& files; ///< outlives the service
        QString homeFolder;
        QString applicationsFolder;
        /// Whether a program of this name is on the path.
        std::function<bool(const QString& name)> isOnPath;
    };

    explicit CloudDriveDetectionService(Dependencies dependencies);

    /// The one that the program uses.
    [[nodiscard]] static CloudDriveDetectionService& shared();

    /// The drives of this machine at this moment, in the order of CloudDriveType.
    [[nodiscard]] QList<DetectedCloudDrive> detectInstalledCloudDrives() const;

private:
    [[nodiscard]] std::optional<QString> syncFolder(CloudDriveType type) const;
    [[nodiscard]] std::optional<QString> linuxSyncFolder(CloudDriveType type) const;
    [[nodiscard]] std::optional<QString> googleDriveFolder() const;
    [[nodiscard]] std::optional<QString> detectOneDrive() const;
    [[nodiscard]] std::optional<QString> findFirstMatchingDirectory(const QString& folder,
                                                                    QStringView prefix) const;
    [[nodiscard]] bool hasApplication(QStringView name) const;
    [[nodiscard]] std::optional<QString> existingFolder(const QString& path) const;

    Dependencies with;
};

} // namespace vellumry
