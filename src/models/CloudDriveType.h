#pragma once

#include <QString>

#include <array>

namespace vellumry {

/// The cloud drives that the program knows, in the order in which it offers them.
enum class CloudDriveType { dropbox, iCloudDrive, googleDrive, oneDrive, pCloud };

inline constexpr std::array allCloudDriveTypes{CloudDriveType::dropbox, CloudDriveType::iCloudDrive,
                                               CloudDriveType::googleDrive,
                                               CloudDriveType::oneDrive, CloudDriveType::pCloud};

/// The drive's name, which is also the label that people see.
[[nodiscard]] QString rawValue(CloudDriveType type);

} // namespace vellumry
