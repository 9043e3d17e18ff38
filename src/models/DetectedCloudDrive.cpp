#include "models/DetectedCloudDrive.h"

#include "core/Text.h"

#include <QStringBuilder>

namespace vellumry {

QString DetectedCloudDrive::programFolderPath() const
{
    return syncFolderPath % u"/Apps/Vellumry";
}

QString DetectedCloudDrive::shortPath(const QString& homeFolder) const
{
    return abbreviatedPath(programFolderPath(), homeFolder);
}

} // namespace vellumry
