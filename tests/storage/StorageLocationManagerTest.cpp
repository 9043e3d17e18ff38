#include "storage/StorageLocationManager.h"

#include "storage/MemoryFileSystem.h"
#include "support/LogCapture.h"
#include "support/MemoryPreferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>

using namespace vellumry;
using namespace vellumry::test;

namespace {

const QString customKey = QStringLiteral("Vellumry.customStorageLocation");
const QString useKey = QStringLiteral("Vellumry.useCustomLocation");
const QString launchedKey = QStringLiteral("Vellumry.hasCompletedFirstLaunch");

class StorageLocationManagerTest : public testing::Test {
protected:
    StorageLocationManagerTest()
    {
        files.makeFolder(QStringLiteral("/home/a"));
        QObject::connect(&notifications, &NotificationCenter::storageLocationDidChange,
                         &notifications,
                         [this](const QString& location) { announced.append(location); });
    }

    [[nodiscard]] StorageLocationManager managerOver(FileSystem& fileSystem)
    {
        return StorageLocationManager({.preferences = preferences,
                                       .files = fileSystem,
                                       .notifications = notifications,
                                       .documentsFolder = QStringLiteral("/home/a/Documents"),
                                       .homeFolder = QStringLiteral("/home/a")});
    }

    void setCustom(const std::optional<QString>& path, bool isUsed = true)
    {
        if (path)
            preferences.setString(customKey, *path);
        preferences.setBoolean(useKey, isUsed);
    }

    template <typename Action>
    std::optional<StorageLocationError> failure(Action action)
    {
        try {
            action();
        } catch (const StorageLocationError& error) {
            return error;
        }
        return std::nullopt;
    }

    LogCapture log;
    MemoryPreferences preferences;
    MemoryFileSystem files;
    NotificationCenter notifications;
    QStringList announced;
    StorageLocationManager manager = managerOver(files);
    const QString defaultLocation = QStringLiteral("/home/a/Documents/Apps/Vellumry");
};

using StorageLocationManagerDeathTest = StorageLocationManagerTest;

TEST_F(StorageLocationManagerTest, knowsTheNames)
{
    EXPECT_EQ(StorageLocationManager::folderName, u"Vellumry");
    EXPECT_EQ(StorageLocationManager::metadataFileName, u"_metadata.json");
    EXPECT_EQ(StorageLocationManager::backupSuffix, u".backup");
}

TEST_F(StorageLocationManagerTest, theDefaultIsAmongTheDocuments)
{
    EXPECT_EQ(manager.defaultLocation(), defaultLocation);
    EXPECT_EQ(manager.currentLocation(), defaultLocation);
    EXPECT_FALSE(manager.isUsingCustomLocation());
}

TEST_F(StorageLocationManagerDeathTest, withoutADocumentsFolderTheProcessEnds)
{
    const StorageLocationManager homeless({.preferences = preferences,
                                           .files = files,
                                           .notifications = notifications,
                                           .documentsFolder = QString(),
                                           .homeFolder = QString()});
    EXPECT_DEATH((void)homeless.defaultLocation(), "无法获取 Documents 目录");
}

TEST_F(StorageLocationManagerTest, aCustomLocationCountsOnlyWithFlagAndPath)
{
    setCustom(QStringLiteral("/cloud"));
    EXPECT_EQ(manager.currentLocation(), QStringLiteral("/cloud"));
    EXPECT_TRUE(manager.isUsingCustomLocation());
    setCustom(QStringLiteral("/cloud"), false);
    EXPECT_EQ(manager.currentLocation(), defaultLocation);
    EXPECT_FALSE(manager.isUsingCustomLocation());
}

TEST_F(StorageLocationManagerTest, aFlagWithAMissingPathFallsBack)
{
    setCustom(std::nullopt);
    EXPECT_EQ(manager.currentLocation(), defaultLocation);
    EXPECT_FALSE(manager.isUsingCustomLocation());
}

TEST_F(StorageLocationManagerTest, aFlagWithAnEmptyPathFallsBackButCountsAsCustom)
{
    setCustom(QStringLiteral(""));
    EXPECT_EQ(manager.currentLocation(), defaultLocation);
    EXPECT_TRUE(manager.isUsingCustomLocation());
}

TEST_F(StorageLocationManagerTest, showsTheHomeFolderAsATilde)
{
    EXPECT_EQ(manager.currentLocationDisplayName(), QStringLiteral("~/Documents/Apps/Vellumry"));
    setCustom(QStringLiteral("/media/x"));
    EXPECT_EQ(manager.currentLocationDisplayName(), QStringLiteral("/media/x"));
    // The beginning of the text counts, not the folder.
    setCustom(QStringLiteral("/home/abc/x"));
    EXPECT_EQ(manager.currentLocationDisplayName(), QStringLiteral("~bc/x"));
}

TEST_F(StorageLocationManagerTest, theFirstLaunchIsDueUntilItWasMarkedOrALibraryIsThere)
{
    EXPECT_TRUE(manager.needsFirstLaunchSetup());
    files.replace(defaultLocation + QStringLiteral("/vellumry-data.json"), "{}");
    EXPECT_TRUE(manager.needsFirstLaunchSetup()) << "the old single file does not count";
    files.replace(defaultLocation + QStringLiteral("/_metadata.json"), "");
    EXPECT_FALSE(manager.needsFirstLaunchSetup());
    files.take(defaultLocation + QStringLiteral("/_metadata.json"));
    EXPECT_TRUE(manager.needsFirstLaunchSetup());

    manager.markFirstLaunchComplete();
    EXPECT_FALSE(manager.needsFirstLaunchSetup());
    EXPECT_EQ(preferences.boolean(launchedKey), true);
    EXPECT_EQ(log.lines, QStringList{QStringLiteral("StorageLocationManager: 首次启动已完成")});
}

TEST_F(StorageLocationManagerTest, setsACustomLocationAndAnnouncesIt)
{
    files.makeFolder(QStringLiteral("/cloud"));
    manager.setCustomLocation(QStringLiteral("/cloud"));
    EXPECT_EQ(preferences.string(customKey), QStringLiteral("/cloud"));
    EXPECT_EQ(preferences.boolean(useKey), true);
    EXPECT_EQ(manager.currentLocation(), QStringLiteral("/cloud"));
    EXPECT_EQ(announced, QStringList{QStringLiteral("/cloud")});
    EXPECT_EQ(log.lines,
              QStringList{QStringLiteral("StorageLocationManager: 设置自定义存储位置 - /cloud")});
}

TEST_F(StorageLocationManagerTest, theSettingsStandWhenTheLocationIsAnnounced)
{
    files.makeFolder(QStringLiteral("/cloud"));
    QString seen;
    QObject::connect(&notifications, &NotificationCenter::storageLocationDidChange, &notifications,
                     [&] { seen = manager.currentLocation(); });
    manager.setCustomLocation(QStringLiteral("/cloud"));
    EXPECT_EQ(seen, QStringLiteral("/cloud"));
}

TEST_F(StorageLocationManagerTest, refusesAFileAndChangesNothing)
{
    files.replace(QStringLiteral("/file"), "text");
    const auto error = failure([&] { manager.setCustomLocation(QStringLiteral("/file")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), StorageLocationError::Kind::notADirectory);
    EXPECT_EQ(error->location(), QStringLiteral("/file"));
    EXPECT_EQ(error->description(), QStringLiteral("路径不是目录: /file"));
    EXPECT_EQ(QByteArray(error->what()), error->description().toUtf8());
    EXPECT_TRUE(preferences.isEmpty());
    EXPECT_TRUE(announced.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
    EXPECT_EQ(files.bytes(QStringLiteral("/file")), "text");
}

TEST_F(StorageLocationManagerTest, validationCreatesAMissingFolder)
{
    manager.validateDirectory(QStringLiteral("/new/folder"));
    EXPECT_TRUE(files.isFolder(QStringLiteral("/new/folder")));
    EXPECT_TRUE(preferences.isEmpty());
}

TEST_F(StorageLocationManagerTest, tellsThatAFolderCannotBeCreated)
{
    const FileError cause(QStringLiteral("create"), QStringLiteral("/new"), EROFS);
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == QLatin1StringView("createFolders"))
            throw cause;
    };
    const auto error = failure([&] { manager.validateDirectory(QStringLiteral("/new")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), StorageLocationError::Kind::cannotCreateDirectory);
    EXPECT_EQ(error->description(), QStringLiteral("无法创建目录 /new: ") + cause.description());
}

TEST_F(StorageLocationManagerTest, tellsThatTheWriteTestFailed)
{
    files.makeFolder(QStringLiteral("/full"));
    const QString probe = QStringLiteral("/full/.vellumry-write-test");
    for (const char* which : {"write", "remove"}) {
        const FileError cause(QLatin1StringView(which), probe, ENOSPC);
        files.onOperation = [&](const QString& operation, const QString& path) {
            if (operation == QLatin1StringView(which)) {
                EXPECT_EQ(path, probe);
                throw cause;
            }
        };
        const auto error = failure([&] { manager.validateDirectory(QStringLiteral("/full")); });
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), StorageLocationError::Kind::writeTestFailed);
        EXPECT_EQ(error->description(),
                  QStringLiteral("写入测试失败 /full: ") + cause.description());
    }
}

/// A folder that its permissions protect.
class ReadOnlyFiles final : public FileSystem {
public:
    explicit ReadOnlyFiles(FileSystem& realFiles) : real(realFiles) {}

    QStringList list(const QString& folder) override { return real.list(folder); }
    bool exists(const QString& path) override { return real.exists(path); }
    bool isFolder(const QString& path) override { return real.isFolder(path); }
    bool isWritable(const QString&) override { return false; }
    bool isSame(const QString& path, const QString& other) override
    {
        return real.isSame(path, other);
    }
    std::optional<FileStamp> stamp(const QString& path) override { return real.stamp(path); }
    FileStamp attributes(const QString& path) override { return real.attributes(path); }
    FileContents read(const QString& path) override { return real.read(path); }
    FileDigest digest(const QString& path) override { return real.digest(path); }
    std::optional<FileStamp> write(const QString& path, const ByteSource&) override
    {
        throw FileError(QStringLiteral("write"), path, EACCES);
    }
    void copy(const QString&, const QString& to) override
    {
        throw FileError(QStringLiteral("copy to"), to, EACCES);
    }
    void flush(const QString& folder) override { real.flush(folder); }
    void move(const QString& from, const QString&) override
    {
        throw FileError(QStringLiteral("move"), from, EACCES);
    }
    void remove(const QString& path) override
    {
        throw FileError(QStringLiteral("remove"), path, EACCES);
    }
    void removeAll(const QString& path) override { remove(path); }
    void removeEmptyFolder(const QString& path) override { remove(path); }
    void createFolders(const QString& path) override
    {
        throw FileError(QStringLiteral("create"), path, EACCES);
    }
    void removeLeftovers(const QString& folder, Date before) override
    {
        real.removeLeftovers(folder, before);
    }

private:
    FileSystem& real;
};

TEST_F(StorageLocationManagerTest, tellsThatAFolderIsNotWritable)
{
    files.makeFolder(QStringLiteral("/protected"));
    ReadOnlyFiles readOnly(files);
    const auto error =
        failure([&] { managerOver(readOnly).validateDirectory(QStringLiteral("/protected")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), StorageLocationError::Kind::notWritable);
    EXPECT_EQ(error->description(), QStringLiteral("目录不可写: /protected"));
}

TEST_F(StorageLocationManagerTest, leavesNoProbeInARealFolder)
{
    const QTemporaryDir folder;
    const QString location = folder.filePath(QStringLiteral("new/place"));
    StorageLocationManager real = managerOver(FileSystem::local());
    real.validateDirectory(location);
    EXPECT_TRUE(QDir(location).exists());
    real.validateDirectory(location);
    EXPECT_TRUE(QDir(location).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));

    QFile file(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const auto error = failure([&] { real.setCustomLocation(file.fileName()); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->description(), QStringLiteral("路径不是目录: ") + file.fileName());
}

TEST_F(StorageLocationManagerTest, ensuresAFolderAndTellsOnlyWhatItDid)
{
    manager.ensureDirectoryExists(QStringLiteral("/data"));
    EXPECT_TRUE(files.isFolder(QStringLiteral("/data")));
    manager.ensureDirectoryExists(QStringLiteral("/data"));
    EXPECT_EQ(log.lines, QStringList{QStringLiteral("StorageLocationManager: 创建目录 - /data")});

    log.lines.clear();
    const FileError cause(QStringLiteral("create"), QStringLiteral("/other"), EACCES);
    files.onOperation = [&](const QString&, const QString&) { throw cause; };
    manager.ensureDirectoryExists(QStringLiteral("/other"));
    EXPECT_EQ(log.lines, QStringList{QStringLiteral("StorageLocationManager: 创建目录失败 - ") +
                                     cause.description()});
}

} // namespace
