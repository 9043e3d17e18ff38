#include "storage/DataMigrationHelper.h"

#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

class DataMigrationHelperTest : public testing::Test {
protected:
    DataMigrationHelperTest()
    {
        files.makeFolder(from);
        files.makeFolder(to);
    }

    void put(const QString& folder, const char* name, const QByteArray& bytes)
    {
        files.replace(folder + u'/' + QLatin1StringView(name), bytes);
    }

    void copy()
    {
        DataMigrationHelper::copyMultiFileData(
            from, to, [this](double value) { progress.append(value); }, files);
    }

    std::optional<MigrationHelperError::Kind> failureOfCopy()
    {
        try {
            copy();
        } catch (const MigrationHelperError& failure) {
            return failure.kind();
        }
        return std::nullopt;
    }

    const QString from = QStringLiteral("/from");
    const QString to = QStringLiteral("/to");
    MemoryFileSystem files;
    QList<double> progress;
};

TEST_F(DataMigrationHelperTest, copiesEveryJsonFileAndNothingElse)
{
    for (const char* name :
         {"_metadata.json", "work.json", "vellumry-data.json", ".hidden.json",
          "work (conflicted copy 2024-01-31).json", "WORK.JSON", "notes.txt", "json", ".json"})
        put(from, name, name);
    copy();
    EXPECT_EQ(files.list(to),
              (QStringList{QStringLiteral("_metadata.json"), QStringLiteral("work.json"),
                           QStringLiteral("vellumry-data.json"), QStringLiteral(".hidden.json"),
                           QStringLiteral("work (conflicted copy 2024-01-31).json")}));
    EXPECT_EQ(files.bytes(to + QStringLiteral("/work.json")), "work.json");
}

TEST_F(DataMigrationHelperTest, tellsHowFarItIsAfterEachFile)
{
    for (const char* name : {"a.json", "b.json", "c.json", "_metadata.json"})
        put(from, name, name);
    copy();
    ASSERT_EQ(progress.size(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_DOUBLE_EQ(progress[i], (i + 1) / 4.0 * 0.4 + 0.5);
}

TEST_F(DataMigrationHelperTest, anEmptyFolderTellsNoProgressAndFails)
{
    put(from, "notes.txt", "text");
    EXPECT_EQ(failureOfCopy(), MigrationHelperError::Kind::copyFailed);
    EXPECT_EQ(progress, QList<double>());
}

TEST_F(DataMigrationHelperTest, withoutAMetadataFileInTheEndTheCopyHasFailed)
{
    put(from, "work.json", "work");
    EXPECT_EQ(failureOfCopy(), MigrationHelperError::Kind::copyFailed);
    EXPECT_TRUE(files.exists(to + QStringLiteral("/work.json"))) << "what was copied stays";
}

TEST_F(DataMigrationHelperTest, theMetadataFileMayHaveBeenThereBefore)
{
    put(to, "_metadata.json", "of another library");
    EXPECT_EQ(failureOfCopy(), std::nullopt);
}

TEST_F(DataMigrationHelperTest, replacesFilesOfTheSameNamesAndLeavesTheOthers)
{
    put(from, "_metadata.json", "new");
    put(to, "_metadata.json", "old");
    put(to, "other.json", "other");
    copy();
    EXPECT_EQ(files.bytes(to + QStringLiteral("/_metadata.json")), "new");
    EXPECT_EQ(files.bytes(to + QStringLiteral("/other.json")), "other");
}

TEST_F(DataMigrationHelperTest, failsWithTheSystemsErrors)
{
    files.take(from);
    EXPECT_THROW(copy(), FileError);
    files.makeFolder(from);
    put(from, "_metadata.json", "x");
    files.makeFolder(to + QStringLiteral("/_metadata.json"));
    EXPECT_THROW(copy(), FileError);
    EXPECT_EQ(progress, QList<double>());
}

TEST_F(DataMigrationHelperTest, anEmptyLibraryIsAMetadataFile)
{
    const LogCapture log;
    const ManualClock clock;
    DataMigrationHelper::createEmptyData(to, files, clock);
    const QString path = to + QStringLiteral("/_metadata.json");
    EXPECT_EQ(files.list(to), QStringList{QStringLiteral("_metadata.json")});
    const MetadataFileData metadata = decodeMetadataFile(files.bytes(path));
    EXPECT_EQ(metadata.version, QStringLiteral("3.1"));
    EXPECT_EQ(metadata.lastModified, clock.now());
    EXPECT_EQ(metadata.collectionOrder, QStringList());
    EXPECT_FALSE(metadata.settings);
    EXPECT_EQ(log.lines,
              QStringList{QStringLiteral("DataMigrationHelper: 创建空数据文件 - ") + path});
}

} // namespace

} // namespace vellumry::test
