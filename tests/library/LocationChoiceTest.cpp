#include "library/LocationChoice.h"

#include "library/DriveWorld.h"
#include "library/FolderQuestion.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class LocationChoiceTest : public testing::Test {
protected:
    LocationChoiceTest()
    {
        files.makeFolder(u"/old"_s);
        files.replace(u"/old/_metadata.json"_s, metadataFileBytes({u"w"_s}));
        files.replace(u"/old/work.json"_s,
                      collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
    }

    LocationChoice& choice()
    {
        if (!built) {
            built = std::make_unique<LocationChoice>(
                LocationChoice::Dependencies{.cloudDriveService = drives.service,
                                             .change = {.locations = world.locations,
                                                        .files = files,
                                                        .notifications = world.notifications,
                                                        .scheduler = world.scheduler,
                                                        .background = background,
                                                        .clock = world.clock,
                                                        .clearCacheAndReload = [] {},
                                                        .refreshData = [] {}},
                                             .pickFolder = question.asker()});
            QObject::connect(built.get(), &LocationChoice::changed, built.get(),
                             [this] { ++changes; });
            QObject::connect(built.get(), &LocationChoice::finished, built.get(),
                             [this] { ++finishes; });
            built->appear();
        }
        return *built;
    }

    void pick(const QString& folder)
    {
        choice().chooseCustomFolder();
        question.choose(folder);
    }

    void run()
    {
        background.runWork();
        background.runActions();
        world.scheduler.advance(500ms);
    }

    LogCapture log;
    MemoryFileSystem files;
    StorageWorld world{files, u"/old"_s};
    DriveWorld drives{files};
    ManualBackgroundRunner background;
    FolderQuestion question;
    int changes = 0;
    int finishes = 0;
    std::unique_ptr<LocationChoice> built;
};

TEST_F(LocationChoiceTest, beginsWithNothingChosen)
{
    drives.installDropbox();
    EXPECT_EQ(choice().detectedDrives().size(), 1);
    EXPECT_EQ(choice().selectedPath(), std::nullopt);
    EXPECT_EQ(choice().customSelectedPath(), std::nullopt);
    EXPECT_FALSE(choice().isMigrating());
    EXPECT_EQ(choice().migrationProgress(), 0.0);
    EXPECT_EQ(choice().errorMessage(), std::nullopt);
    EXPECT_FALSE(choice().showFilePicker());
    choice().applyChanges();
    EXPECT_FALSE(background.hasWork());
    EXPECT_EQ(choice().errorMessage(), std::nullopt);
}

TEST_F(LocationChoiceTest, knowsTheFoldersOfTheDrives)
{
    drives.installDropbox();
    EXPECT_TRUE(choice().isCloudDrivePath(DriveWorld::dropboxFolder()));
    EXPECT_FALSE(choice().isCloudDrivePath(DriveWorld::pCloudFolder()));
    EXPECT_FALSE(choice().isCloudDrivePath(u"/home/tester/Dropbox"_s));
}

TEST_F(LocationChoiceTest, aFolderOfTheirOwnIsChosenAtOnce)
{
    pick(u"/new"_s);
    EXPECT_EQ(choice().customSelectedPath(), u"/new"_s);
    EXPECT_EQ(choice().selectedPath(), u"/new"_s);
    choice().select(u"/other"_s);
    EXPECT_EQ(choice().customSelectedPath(), u"/new"_s);
    EXPECT_EQ(choice().selectedPath(), u"/other"_s);
}

TEST_F(LocationChoiceTest, oneDialogAtATimeAndACancelledOneChangesNothing)
{
    choice().chooseCustomFolder();
    choice().chooseCustomFolder();
    EXPECT_TRUE(choice().showFilePicker());
    EXPECT_EQ(question.titles.size(), 1);
    question.cancel();
    EXPECT_FALSE(choice().showFilePicker());
    EXPECT_EQ(choice().selectedPath(), std::nullopt);
}

TEST_F(LocationChoiceTest, aFailedDialogIsToldUntilTheNextMove)
{
    choice().select(u"/new"_s);
    choice().chooseCustomFolder();
    question.fail(u"no such place"_s);
    EXPECT_EQ(choice().errorMessage(), u"no such place"_s);
    choice().applyChanges();
    EXPECT_EQ(choice().errorMessage(), std::nullopt);
    EXPECT_TRUE(choice().isMigrating());
    run();
    EXPECT_EQ(finishes, 1);
}

TEST_F(LocationChoiceTest, theCurrentLocationIsRefusedEachTime)
{
    const QString same = u"New location is the same as current location"_s;
    choice().select(u"/old"_s);
    choice().applyChanges();
    EXPECT_EQ(choice().errorMessage(), same);
    choice().chooseCustomFolder();
    question.fail(u"no such place"_s);
    choice().applyChanges();
    EXPECT_EQ(choice().errorMessage(), same);
    EXPECT_FALSE(choice().isMigrating());
    EXPECT_EQ(choice().currentLocation(), u"/old"_s);
}

TEST_F(LocationChoiceTest, movesAndTellsOfItsProgress)
{
    pick(u"/new"_s);
    choice().applyChanges();
    EXPECT_TRUE(choice().isMigrating());
    background.runWork();
    changes = 0;
    background.runActions();
    EXPECT_GT(changes, 3);
    EXPECT_EQ(choice().migrationProgress(), 1.0);
    EXPECT_EQ(finishes, 0);
    world.scheduler.advance(500ms);
    EXPECT_EQ(finishes, 1);
    EXPECT_FALSE(choice().isMigrating());
    EXPECT_EQ(choice().currentLocation(), u"/new"_s);
}

TEST_F(LocationChoiceTest, nothingElseIsDoneWhileDataMove)
{
    choice().chooseCustomFolder();
    choice().select(u"/new"_s);
    choice().applyChanges();
    choice().select(u"/elsewhere"_s);
    question.choose(u"/late"_s);
    choice().chooseCustomFolder();
    choice().applyChanges();
    EXPECT_EQ(choice().selectedPath(), u"/new"_s);
    EXPECT_EQ(choice().customSelectedPath(), std::nullopt);
    EXPECT_EQ(question.titles.size(), 1);
    run();
    EXPECT_EQ(choice().currentLocation(), u"/new"_s);
}

TEST_F(LocationChoiceTest, aFolderThatCannotBeMadeIsToldAndAnotherCanBeTaken)
{
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"createFolders"_s && path == u"/dangling/link"_s)
            throw MemoryFileSystem::error(u"create"_s, path, ENOENT);
    };
    pick(u"/dangling/link"_s);
    choice().applyChanges();
    run();
    EXPECT_FALSE(choice().isMigrating());
    ASSERT_TRUE(choice().errorMessage());
    EXPECT_TRUE(choice().errorMessage()->contains(u"/dangling/link"_s));
    EXPECT_EQ(choice().currentLocation(), u"/old"_s);
    EXPECT_TRUE(files.exists(u"/old/work.json"_s));

    pick(u"/new"_s);
    choice().applyChanges();
    run();
    EXPECT_EQ(finishes, 1);
    EXPECT_TRUE(files.exists(u"/new/work.json"_s));
}

TEST_F(LocationChoiceTest, mayGoWhileAFolderIsAskedFor)
{
    choice().chooseCustomFolder();
    built.reset();
    question.choose(u"/late"_s);
}

} // namespace
} // namespace vellumry::test
