#include "storage/DataMigrationHelper.h"

#include "core/Log.h"
#include "models/CollectionFileName.h"
#include "models/JSONEncoder.h"
#include "models/MetadataFileData.h"
#include "platform/DeviceIdentifier.h"
#include "storage/StorageLocationManager.h"

#include <QStringBuilder>

namespace vellumry {

void DataMigrationHelper::copyMultiFileData(const QString& from, const QString& to,
                                            const std::function<void(double)>& progress,
                                            FileSystem& files)
{
    QStringList names = files.list(from);
    names.removeIf([](const QString& name) { return !jsonFileBaseName(name); });
    const auto count = static_cast<double>(names.size());
    double done = 0;
    for (const QString& name : std::as_const(names)) {
        files.copy(from % u'/' % name, to % u'/' % name);
        progress(++done / count * 0.4 + 0.5);
    }
    files.flush(to);
    if (!files.exists(to % u'/' % StorageLocationManager::metadataFileName))
        throw MigrationHelperError(MigrationHelperError::Kind::copyFailed);
}

void DataMigrationHelper::createEmptyData(const QString& folder, FileSystem& files,
                                          const Clock& clock)
{
    const MetadataFileData metadata{.version = MetadataFileData::currentVersion.toString(),
                                    .lastModified = clock.now(),
                                    .deviceId = DeviceIdentifier::current(),
                                    .collectionOrder = {},
                                    .settings = std::nullopt};
    const QString path = folder % u'/' % StorageLocationManager::metadataFileName;
    JSONEncoder encoder = JSONEncoder::vellumry();
    files.write(path, encoder.encode(metadata));
    log(u"DataMigrationHelper", QString(u"创建空数据文件 - " % path));
}

} // namespace vellumry
