#include "sync/ConflictResolution.h"

#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"
#include "sync/ConflictDetectionService.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace vellumry;
using namespace vellumry::test;
using namespace Qt::StringLiterals;

namespace {

class ConflictResolutionTest : public testing::Test {
protected:
    ConflictResolutionTest()
    {
        files.makeFolder(folder);
        files.replace(world.path(u"_metadata.json"_s), metadataFileBytes({u"w"_s}));
        files.replace(world.path(u"work.json"_s),
                      collectionFileBytes(work, {makeSnippet(u"mine"_s, u"Work"_s)}));
        putCopy();
        EXPECT_TRUE(world.service().loadFullData());
        world.service().setDetectedConflicts(detection.detectConflicts(folder));
        EXPECT_EQ(world.service().detectedConflicts().size(), 1);
        EXPECT_EQ(world.service().detectedConflicts()[0].originalFileName, u"work"_s);
    }

    /// A copy that holds other data than the library.
    void putCopy()
    {
        files.replace(copy, collectionFileBytes(makeCollection(u"copy"_s, u"Copy"_s),
                                                {makeSnippet(u"theirs"_s, u"Copy"_s)}));
    }

    [[nodiscard]] QByteArray allBytes() const
    {
        return files.bytes(folder + u"/_metadata.json"_s) + files.bytes(folder + u"/work.json"_s);
    }

    LogCapture log;
    MemoryFileSystem files;
    const QString folder = u"/data"_s;
    const QString copy = folder + u"/work (conflicted copy 2024-01-31).json"_s;
    const SyncCollection work = makeCollection(u"w"_s, u"Work"_s);
    StorageWorld world{files, folder};
    const ConflictDetectionService detection{{world.locations, files}};
    ConflictResolution resolution{detection, world.service()};
};

TEST_F(ConflictResolutionTest, everyStrategyDeletesTheCopiesAndLeavesTheLibrary)
{
    for (const ConflictMergeStrategy strategy : allConflictMergeStrategies) {
        putCopy();
        world.service().setDetectedConflicts(detection.detectConflicts(folder));
        const auto library = world.service().currentData();
        const QByteArray bytes = allBytes();
        files.opened.clear();
        resolution.resolve(strategy);
        EXPECT_FALSE(files.exists(copy));
        EXPECT_TRUE(world.service().detectedConflicts().isEmpty());
        EXPECT_EQ(world.service().currentData(), library);
        EXPECT_EQ(allBytes(), bytes);
        EXPECT_TRUE(files.opened.isEmpty()) << "nothing of a copy is read, nothing is reloaded";
    }
    EXPECT_TRUE(files.written.isEmpty());
}

TEST_F(ConflictResolutionTest, useRemoteTakesNothingOfTheCopyOver)
{
    // Loaded with the copy in the folder, since that is a collection file like any other.
    ASSERT_EQ(world.service().currentData()->data.collections.size(), 2);
    resolution.resolve(ConflictMergeStrategy::useRemote);
    ASSERT_TRUE(world.service().loadFullData());
    EXPECT_EQ(world.service().currentData()->data.collections, QList<SyncCollection>{work});
    EXPECT_EQ(idsOf(world.service().currentData()->data.snippets), QStringList{u"mine"_s});
}

TEST_F(ConflictResolutionTest, aCopyThatCannotBeRemovedIsReportedAgainNextTime)
{
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == "remove"_L1)
            throw FileError(operation, path, EACCES);
    };
    log.lines.clear();
    resolution.resolve(ConflictMergeStrategy::smartMerge);
    EXPECT_TRUE(world.service().detectedConflicts().isEmpty());
    EXPECT_TRUE(log.lines.isEmpty()) << "the failure is told to nobody";
    EXPECT_EQ(detection.detectConflicts(folder).size(), 1);
}

TEST_F(ConflictResolutionTest, aCopyThatAppearedMeanwhileIsDeletedToo)
{
    const QString later = folder + u"/other (conflicted copy 2024-02-01).json"_s;
    files.replace(later, "{}");
    resolution.resolve(ConflictMergeStrategy::keepBoth);
    EXPECT_FALSE(files.exists(later));
    EXPECT_FALSE(files.exists(copy));
}

} // namespace
