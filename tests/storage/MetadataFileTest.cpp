#include "storage/MetadataFile.h"

#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

class MetadataFileTest : public testing::Test {
protected:
    MetadataFileTest() { files.makeFolder(folder); }

    [[nodiscard]] static MetadataFileData withOrder(const QStringList& order)
    {
        return decodeMetadataFile(metadataFileBytes(order));
    }

    /// Another program writes the file, at the same time and in the same place.
    void writeAsAnother(const QStringList& order)
    {
        files.writeInPlace(path, metadataFileBytes(order));
    }

    const QString folder = QStringLiteral("/library");
    const QString path = folder + QStringLiteral("/_metadata.json");
    const QStringList ab{QStringLiteral("a"), QStringLiteral("b")};
    const QStringList ba{QStringLiteral("b"), QStringLiteral("a")};
    MemoryFileSystem files;
    ManualClock clock;
    MetadataFile file{files, clock};
};

TEST_F(MetadataFileTest, whatIsMissingOrDamagedCannotBeRead)
{
    EXPECT_THROW((void)file.read(folder), StorageError);
    files.replace(path, "{");
    EXPECT_THROW((void)file.read(folder), StorageError);
    writeAsAnother(ab);
    EXPECT_EQ(file.read(folder).collectionOrder, ab);
}

TEST_F(MetadataFileTest, whatWasReadOrWrittenIsNotForeign)
{
    writeAsAnother(ab);
    EXPECT_TRUE(file.hasForeignChange(folder)) << "never read";
    (void)file.read(folder);
    EXPECT_FALSE(file.hasForeignChange(folder));
    const auto stamp = file.write(folder, withOrder(ba));
    EXPECT_EQ(stamp, files.stamp(path));
    EXPECT_FALSE(file.hasForeignChange(folder));
    file.update(folder, [](MetadataFileData&) {});
    EXPECT_FALSE(file.hasForeignChange(folder));
}

TEST_F(MetadataFileTest, aChangeInTheTickOfTheOwnWriteIsForeign)
{
    file.write(folder, withOrder(ab));
    const auto stamp = files.stamp(path);
    writeAsAnother(ba);
    ASSERT_EQ(files.stamp(path), stamp);
    EXPECT_TRUE(file.hasForeignChange(folder));
}

TEST_F(MetadataFileTest, aTouchedOrRemovedFileIsForeign)
{
    file.write(folder, withOrder(ab));
    files.now += 1s;
    files.touch(path);
    EXPECT_TRUE(file.hasForeignChange(folder));
    (void)file.read(folder);
    files.take(path);
    EXPECT_TRUE(file.hasForeignChange(folder));
}

TEST_F(MetadataFileTest, aMissingFileIsForeignOnlyIfItWasThere)
{
    EXPECT_FALSE(file.hasForeignChange(folder)) << "none was ever there";
    file.write(folder, withOrder(ab));
    files.take(path);
    EXPECT_TRUE(file.hasForeignChange(folder));
    file.noteMissing();
    EXPECT_FALSE(file.hasForeignChange(folder));
    writeAsAnother(ab);
    EXPECT_TRUE(file.hasForeignChange(folder));
}

TEST_F(MetadataFileTest, whateverFollowsAWriteAtOnceIsForeign)
{
    for (const bool isRemoved : {false, true}) {
        files.onWritten = [&](const QString& written) {
            if (isRemoved)
                files.take(written);
            else
                files.replace(written, metadataFileBytes(ba));
        };
        EXPECT_EQ(file.write(folder, withOrder(ab)), std::nullopt);
        EXPECT_TRUE(file.hasForeignChange(folder)) << isRemoved;
        file.update(folder, [](MetadataFileData&) {});
        EXPECT_TRUE(file.hasForeignChange(folder)) << isRemoved;
        files.onWritten = nullptr;
        file.write(folder, withOrder(ab));
        EXPECT_FALSE(file.hasForeignChange(folder)) << isRemoved;
    }
}

TEST_F(MetadataFileTest, anUpdateKeepsWhatOthersHaveChangedAndItStaysForeignUntilItIsRead)
{
    file.write(folder, withOrder(ab));
    files.now += 1s;
    writeAsAnother(ba);
    file.update(folder, [](MetadataFileData&) {});
    EXPECT_TRUE(file.hasForeignChange(folder));
    EXPECT_EQ(file.read(folder).collectionOrder, ba);
    EXPECT_FALSE(file.hasForeignChange(folder));

    writeAsAnother(ab);
    file.update(folder, [](MetadataFileData&) {});
    file.write(folder, withOrder(ba));
    EXPECT_FALSE(file.hasForeignChange(folder)) << "nothing of it is left";
}

TEST_F(MetadataFileTest, anUpdateBeginsAnewWhereNothingCanBeUnderstood)
{
    files.replace(path, "{");
    file.update(folder, [&](MetadataFileData& metadata) { metadata.collectionOrder = ab; });
    const MetadataFileData metadata = decodeMetadataFile(files.bytes(path));
    EXPECT_EQ(metadata.version, QStringLiteral("3.1"));
    EXPECT_EQ(metadata.lastModified, clock.now());
    EXPECT_EQ(metadata.collectionOrder, ab);
}

} // namespace

} // namespace vellumry::test
