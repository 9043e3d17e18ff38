#include "models/DetectedCloudDrive.h"

#include <QStringBuilder>

namespace vellumry {

QString DetectedCloudDrive::programFolderPath() const
{
    return syncFolderPath % u"/Apps/Vellumry";
}

QString DetectedCloudDrive::shortPath(const QString& homeFolder) const
{
    QString path = programFolderPath();
    if (homeFolder.isEmpty() || !path.startsWith(homeFolder))
        return path;
    return u'~' % path.sliced(homeFolder.size());
}

} // namespace vellumry
