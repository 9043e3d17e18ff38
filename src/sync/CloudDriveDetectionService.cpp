#include "sync/CloudDriveDetectionService.h"

#include "core/Log.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringBuilder>

#include <utility>

namespace vellumry {

CloudDriveDetectionService::CloudDriveDetectionService(Dependencies dependencies)
    : with(std::move(dependencies))
{
}

CloudDriveDetectionService& CloudDriveDetectionService::shared()
{
    static CloudDriveDetectionService service(
        {.files = FileSystem::local(),
         .homeFolder = QDir::homePath(),
         .applicationsFolder = QStringLiteral("/Applications"),
         .isOnPath = [](const QString& name) {
             return !QStandardPaths::findExecutable(name).isEmpty();
         }});
    return service;
}

QList<DetectedCloudDrive> CloudDriveDetectionService::detectInstalledCloudDrives() const
{
    QList<DetectedCloudDrive> drives;
    for (const CloudDriveType type : allCloudDriveTypes) {
        std::optional<QString> folder = syncFolder(type);
        if (!folder)
            folder = linuxSyncFolder(type);
        if (folder)
            drives.append({.id = QUuid::createUuid(),
                           .type = type,
                           .syncFolderPath = *folder,
                           .isAvailable = true});
    }
    return drives;
}

std::optional<QString> CloudDriveDetectionService::syncFolder(CloudDriveType type) const
{
    const QString& home = with.homeFolder;
    switch (type) {
    case CloudDriveType::dropbox:
        if (hasApplication(u"Dropbox.app"))
            return existingFolder(home % u"/Dropbox");
        break;
    case CloudDriveType::iCloudDrive:
        return existingFolder(home % u"/Library/Mobile Documents/com~apple~CloudDocs");
    case CloudDriveType::googleDrive:
        if (hasApplication(u"Google Drive.app"))
            return googleDriveFolder();
        break;
    case CloudDriveType::oneDrive:
        return detectOneDrive();
    case CloudDriveType::pCloud:
        if (hasApplication(u"pCloud Drive.app"))
            return existingFolder(home % u"/pCloud Drive");
        break;
    }
    return std::nullopt;
}

std::optional<QString> CloudDriveDetectionService::linuxSyncFolder(CloudDriveType type) const
{
    const auto isOnPath = [this](const char* name) {
        return with.isOnPath(QLatin1StringView(name));
    };
    const QString& home = with.homeFolder;
    switch (type) {
    case CloudDriveType::dropbox:
        if (with.files.exists(home % u"/.dropbox-dist") || isOnPath("dropbox"))
            return existingFolder(home % u"/Dropbox");
        break;
    case CloudDriveType::iCloudDrive:
        break; // has no client here
    case CloudDriveType::googleDrive:
        if (isOnPath("google-drive-ocamlfuse") || isOnPath("insync")) {
            const auto folder = existingFolder(home % u"/GoogleDrive");
            return folder ? folder : existingFolder(home % u"/Google Drive");
        }
        break;
    case CloudDriveType::oneDrive:
        if (isOnPath("onedrive"))
            return existingFolder(home % u"/OneDrive");
        break;
    case CloudDriveType::pCloud:
        if (isOnPath("pcloud"))
            return existingFolder(home % u"/pCloudDrive");
        break;
    }
    return std::nullopt;
}

std::optional<QString> CloudDriveDetectionService::googleDriveFolder() const
{
    const auto account =
        findFirstMatchingDirectory(with.homeFolder % u"/Library/CloudStorage", u"GoogleDrive-");
    return account ? existingFolder(*account % u"/My Drive") : std::nullopt;
}

std::optional<QString> CloudDriveDetectionService::detectOneDrive() const
{
    if (!hasApplication(u"OneDrive.app"))
        return std::nullopt;
    const QString storage = with.homeFolder % u"/Library/CloudStorage";
    const auto account = findFirstMatchingDirectory(storage, u"OneDrive-");
    return account ? account : findFirstMatchingDirectory(storage, u"OneDrive");
}

std::optional<QString>
CloudDriveDetectionService::findFirstMatchingDirectory(const QString& folder,
                                                       QStringView prefix) const
{
    if (!with.files.exists(folder))
        return std::nullopt;
    try {
        for (const QString& name : with.files.list(folder)) {
            const QString path = folder % u'/' % name;
            if (name.startsWith(prefix) && with.files.isFolder(path))
                return path;
        }
    } catch (const FileError& failure) {
        log(u"CloudDriveDetectionService", QString(u"查找目录失败 - " % failure.description()));
    }
    return std::nullopt;
}

bool CloudDriveDetectionService::hasApplication(QStringView name) const
{
    return with.files.exists(with.applicationsFolder % u'/' % name);
}

std::optional<QString> CloudDriveDetectionService::existingFolder(const QString& path) const
{
    return with.files.isFolder(path) ? std::optional(path) : std::nullopt;
}

} // namespace vellumry
