#include "views/common/CloudDriveLook.h"

namespace vellumry {

CloudDriveLook CloudDriveLook::of(CloudDriveType type)
{
    switch (type) {
    case CloudDriveType::dropbox:
        return {QColor(0x00, 0x61, 0xff), QStringLiteral("shippingbox.fill")};
    case CloudDriveType::iCloudDrive:
        return {QColor(0x36, 0x93, 0xf3), QStringLiteral("icloud.fill")};
    case CloudDriveType::googleDrive:
        return {QColor(0x42, 0x85, 0xf4), QStringLiteral("externaldrive.fill")};
    case CloudDriveType::oneDrive:
        return {QColor(0x00, 0x78, 0xd4), QStringLiteral("cloud.fill")};
    case CloudDriveType::pCloud:
        return {QColor(0x00, 0xae, 0xef), QStringLiteral("cloud.fill")};
    }
    Q_UNREACHABLE();
}

} // namespace vellumry
