#include "models/CloudDriveType.h"

namespace vellumry {

QString rawValue(CloudDriveType type)
{
    switch (type) {
    case CloudDriveType::dropbox:
        return QStringLiteral("Dropbox");
    case CloudDriveType::iCloudDrive:
        return QStringLiteral("iCloud Drive");
    case CloudDriveType::googleDrive:
        return QStringLiteral("Google Drive");
    case CloudDriveType::oneDrive:
        return QStringLiteral("OneDrive");
    case CloudDriveType::pCloud:
        return QStringLiteral("pCloud");
    }
    Q_UNREACHABLE();
}

} // namespace vellumry
