#include "storage/StorageLocationManager.h"

#include "core/FatalError.h"
#include "core/Log.h"
#include "core/Text.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringBuilder>

namespace vellumry {

namespace {

QString useCustomLocationKey()
{
    return QStringLiteral("Vellumry.useCustomLocation");
}

QString customStorageLocationKey()
{
    return QStringLiteral("Vellumry.customStorageLocation");
}

QString hasCompletedFirstLaunchKey()
{
    return QStringLiteral("Vellumry.hasCompletedFirstLaunch");
}

} // namespace

QString StorageLocationManager::metadataPath(const QString& folder)
{
    return folder % u'/' % metadataFileName;
}

StorageLocationManager::StorageLocationManager(const Dependencies& dependencies)
    : with(dependencies)
{
}

StorageLocationManager& StorageLocationManager::shared()
{
    static StorageLocationManager manager(
        {.preferences = PreferencesStore::standard(),
         .files = FileSystem::local(),
         .notifications = NotificationCenter::defaultCenter(),
         .documentsFolder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
         .homeFolder = QDir::homePath()});
    return manager;
}

QString StorageLocationManager::defaultLocation() const
{
    if (with.documentsFolder.isEmpty())
        fatalError(u"无法获取 Documents 目录");
    return with.documentsFolder % u"/Apps/" % folderName;
}

QString StorageLocationManager::currentLocation() const
{
    const QString custom = with.preferences.string(customStorageLocationKey()).value_or(QString());
    const bool isCustom = with.preferences.boolean(useCustomLocationKey()).value_or(false);
    return isCustom && !custom.isEmpty() ? custom : defaultLocation();
}

bool StorageLocationManager::isUsingCustomLocation() const
{
    return with.preferences.boolean(useCustomLocationKey()).value_or(false) &&
           with.preferences.string(customStorageLocationKey()).has_value();
}

QString StorageLocationManager::currentLocationDisplayName() const
{
    return abbreviatedPath(currentLocation(), with.homeFolder);
}

bool StorageLocationManager::needsFirstLaunchSetup() const
{
    if (with.preferences.boolean(hasCompletedFirstLaunchKey()).value_or(false))
        return false;
    return !with.files.exists(metadataPath(currentLocation()));
}

void StorageLocationManager::markFirstLaunchComplete()
{
    with.preferences.setBoolean(hasCompletedFirstLaunchKey(), true);
    log(u"StorageLocationManager", u"首次启动已完成");
}

void StorageLocationManager::setCustomLocation(const QString& location)
{
    validateDirectory(location);
    with.preferences.setString(customStorageLocationKey(), location);
    with.preferences.setBoolean(useCustomLocationKey(), true);
    log(u"StorageLocationManager", QString(u"设置自定义存储位置 - " % location));
    Q_EMIT with.notifications.storageLocationDidChange(location);
}

void StorageLocationManager::validateDirectory(const QString& location)
{
    if (!with.files.exists(location)) {
        try {
            with.files.createFolders(location);
        } catch (const FileError& error) {
            throw StorageLocationError::cannotCreateDirectory(location, error.description());
        }
    } else if (!with.files.isFolder(location)) {
        throw StorageLocationError::notADirectory(location);
    }
    if (!with.files.isWritable(location))
        throw StorageLocationError::notWritable(location);
    try {
        const QString probe = location % u"/.vellumry-write-test";
        with.files.write(probe, "test");
        with.files.remove(probe);
    } catch (const FileError& error) {
        throw StorageLocationError::writeTestFailed(location, error.description());
    }
}

void StorageLocationManager::ensureDirectoryExists(const QString& location)
{
    if (with.files.exists(location))
        return;
    try {
        with.files.createFolders(location);
        log(u"StorageLocationManager", QString(u"创建目录 - " % location));
    } catch (const FileError& error) {
        log(u"StorageLocationManager", QString(u"创建目录失败 - " % error.description()));
    }
}

} // namespace vellumry
