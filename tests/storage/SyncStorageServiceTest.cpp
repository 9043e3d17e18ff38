#include "storage/SyncStorageService.h"

#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

class SyncStorageServiceTest : public testing::Test {
protected:
    LogCapture log;
    MemoryFileSystem files;
    StorageWorld world{files, QStringLiteral("/library")};
    const VellumryData library =
        makeLibrary({makeCollection(QStringLiteral("w"), QStringLiteral("Work"))},
                    {makeSnippet(QStringLiteral("w1"), QStringLiteral("Work"))});
};

TEST_F(SyncStorageServiceTest, holdsNothingUntilTheLocationChanges)
{
    world.service().saveFullData(library, false);
    const SyncStorageService sync(world.service(), world.locations, world.notifications);
    EXPECT_FALSE(sync.currentData());
    EXPECT_FALSE(sync.isSaving());
    EXPECT_FALSE(sync.lastSaveTime());
    EXPECT_FALSE(sync.lastError());
    EXPECT_FALSE(sync.isWriting());
    EXPECT_FALSE(sync.isWatchingEnabled());
    EXPECT_TRUE(sync.detectedConflicts().isEmpty());
    EXPECT_EQ(&sync.collectionStorage(), &world.service());
    EXPECT_EQ(&sync.locationManager(), &world.locations);
}

TEST_F(SyncStorageServiceTest, loadsAtAChangeOfTheLocation)
{
    world.service().saveFullData(library, false);
    SyncStorageService sync(world.service(), world.locations, world.notifications);
    int changes = 0;
    QObject::connect(&sync, &SyncStorageService::currentDataChanged, &sync, [&] { ++changes; });
    Q_EMIT world.notifications.storageLocationDidChange(world.folder);
    ASSERT_TRUE(sync.currentData());
    EXPECT_EQ(idsOf(sync.currentData()->data.snippets), QStringList{QStringLiteral("w1")});
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(sync.isWatchingEnabled()) << "that is the store's own";
}

TEST_F(SyncStorageServiceTest, takesOverThatNothingCouldBeLoaded)
{
    world.service().saveFullData(library, false);
    SyncStorageService sync(world.service(), world.locations, world.notifications);
    Q_EMIT world.notifications.storageLocationDidChange(world.folder);
    ASSERT_TRUE(sync.currentData());
    world.setFolder(QStringLiteral("/empty"));
    Q_EMIT world.notifications.storageLocationDidChange(world.folder);
    EXPECT_FALSE(sync.currentData());
    EXPECT_TRUE(world.service().currentData()) << "the store keeps what it has";
}

TEST_F(SyncStorageServiceTest, isDeafAfterItsEnd)
{
    world.service().saveFullData(library, false);
    const auto loadsAtAChange = [&] {
        files.opened.clear();
        Q_EMIT world.notifications.storageLocationDidChange(world.folder);
        return files.opened.count(world.path(QStringLiteral("_metadata.json")));
    };
    {
        const SyncStorageService sync(world.service(), world.locations, world.notifications);
        EXPECT_EQ(loadsAtAChange(), 2) << "the store's own and the one of the service";
    }
    EXPECT_EQ(loadsAtAChange(), 1);
}

} // namespace

} // namespace vellumry::test
