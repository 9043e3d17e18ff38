#pragma once

#include "models/DetectedCloudDrive.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// Finds out which cloud drives are installed on this machine and where their sync folders lie, by
/// the presence of a program and a folder; talks to no sync client. The library may also live on
/// a volume that another system uses, so that system's places are looked at first:
///
/// | Drive        | Program in the applications folder | Sync folder in the home folder |
/// |--------------|------------------------------------|---------------------------------------------|
/// | Dropbox      | Dropbox.app                        | Dropbox | | iCloud Drive | none |
/// Library/Mobile Documents/com~apple~CloudDocs | | Google Drive | Google Drive.app |
/// Library/CloudStorage/GoogleDrive-*/My Drive | | OneDrive     | OneDrive.app |
/// Library/CloudStorage/OneDrive-* or OneDrive* | | pCloud       | pCloud Drive.app | pCloud Drive
/// |
///
/// Where such a row finds nothing, the drive's client for Linux and its usual folder count:
///
/// | Drive        | Client                                              | Sync folder             |
/// |--------------|-----------------------------------------------------|-------------------------|
/// | Dropbox      | ~/.dropbox-dist, or dropbox on the path             | Dropbox                 |
/// | Google Drive | google-drive-ocamlfuse or insync on the path        | GoogleDrive, Google Drive
/// | | OneDrive     | onedrive on the path                                | OneDrive | | pCloud |
/// pcloud on the path                                  | pCloudDrive             |
///
/// Both clients of Google Drive let people choose the folder; these two names are the ones that
/// their guides use. Of several accounts of one drive the first that is listed counts, and no
/// other is tried. Main thread only.
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
