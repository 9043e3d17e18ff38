#include "library/FirstLaunch.h"

#include "library/SnippetListViewModel.h"
#include "palette/FuzzySearchService.h"
#include "platform/linux/PosixFileSystem.h"
#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <utility>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const QByteArray defaults = R"({"collections":[
    {"name":"Welcome","color":"blue","snippets":[{"title":"t","content":"c"}]}]})";

/// A first launch with everything that it works with, and a record of all that can be heard of it.
class LaunchWorld {
public:
    explicit LaunchWorld(FileSystem& fileSystem, const QString& documents, BackgroundRunner& runner)
        : world(fileSystem, documents + u"/unused"_s), locations({.preferences = preferences,
                                                                  .files = fileSystem,
                                                                  .notifications = notifications,
                                                                  .documentsFolder = documents,
                                                                  .homeFolder = documents}),
          storage({.locations = locations,
                   .files = fileSystem,
                   .notifications = notifications,
                   .scheduler = world.scheduler,
                   .clock = world.clock,
                   .colors = colors,
                   .defaultSnippets = [] { return defaults; },
                   .makeEventStream = world.events.factory(),
                   .watcherQueue = world.watcherQueue}),
          list({.storageService = storage,
                .searchService = search,
                .colors = colors,
                .notifications = notifications,
                .scheduler = world.scheduler,
                .clock = world.clock}),
          launch({.locations = locations,
                  .storage = storage,
                  .list = list,
                  .notifications = notifications,
                  .background = runner})
    {
        QObject::connect(&notifications, &NotificationCenter::showLoadingOverlay, &list,
                         [this](const std::optional<QString>& text) {
                             events.append(u"overlay: "_s + text.value_or(u"-"_s));
                         });
        QObject::connect(&notifications, &NotificationCenter::hideLoadingOverlay, &list, [this] {
            events.append(u"overlay gone, %1 snippets"_s.arg(list.snippets().size()));
            isDone = true;
        });
        QObject::connect(&list, &SnippetListViewModel::snippetsChanged, &list,
                         [this] { events.append(u"list"_s); });
        QObject::connect(
            &storage, &CollectionFileStorageService::currentDataChanged, &list,
            [this] {
                isStoreOnMainThread =
                    isStoreOnMainThread && QThread::currentThread() == list.thread();
            },
            Qt::DirectConnection);
    }

    LogCapture log;
    StorageWorld world; ///< for its clock, its time and its watching
    MemoryPreferences preferences;
    NotificationCenter notifications;
    CategoryColorService colors{preferences};
    FuzzySearchService search;
    StorageLocationManager locations;
    CollectionFileStorageService storage;
    SnippetListViewModel list;
    QStringList events;
    bool isDone = false;
    std::atomic<bool> isStoreOnMainThread = true;
    FirstLaunch launch;
};

class FirstLaunchTest : public testing::Test {
protected:
    void choose(const FirstLaunchChoice& choice)
    {
        launch.handleFirstLaunchChoice(choice);
        background.runWork();
        background.runActions();
    }

    void putLibrary(const QString& folder)
    {
        files.makeFolder(folder);
        files.replace(folder + u"/_metadata.json"_s, metadataFileBytes({u"w"_s}));
        files.replace(folder + u"/work.json"_s,
                      collectionFileBytes(makeCollection(u"w"_s, u"Work"_s),
                                          {orderedA(), makeNumbered(u"b"_s, 1)}));
    }

    static Snippet makeNumbered(const QString& id, qint64 number)
    {
        Snippet snippet = makeSnippet(id, u"Work"_s);
        snippet.setDisplayOrder(number);
        return snippet;
    }
    static Snippet orderedA() { return makeNumbered(u"a"_s, 0); }

    const QString documents = u"/documents"_s;
    const QString defaultFolder = documents + u"/Apps/Vellumry"_s;
    MemoryFileSystem files;
    ManualBackgroundRunner background;
    LaunchWorld world{files, documents, background};
    FirstLaunch& launch = world.launch;
};

TEST_F(FirstLaunchTest, IsDueWithoutALibrary)
{
    EXPECT_TRUE(world.locations.needsFirstLaunchSetup());
}

TEST_F(FirstLaunchTest, ShowsTheOverlayBeforeAnythingIsDone)
{
    launch.handleFirstLaunchChoice(FirstLaunchChoice::startFresh(u"/chosen"_s));
    EXPECT_THAT(world.events, ElementsAre(u"overlay: Setting up your data..."_s));
    EXPECT_FALSE(files.exists(u"/chosen"_s));
    background.runWork();
    EXPECT_EQ(world.locations.currentLocation(), u"/chosen"_s);
    EXPECT_FALSE(world.locations.needsFirstLaunchSetup());
    EXPECT_EQ(world.events.size(), 1) << "what is seen waits for the main thread";
    background.runActions();
    EXPECT_EQ(world.events.last(), u"overlay gone, 1 snippets"_s);
}

TEST_F(FirstLaunchTest, StartsFreshInTheChosenFolder)
{
    choose(FirstLaunchChoice::startFresh(u"/chosen"_s));
    EXPECT_THAT(world.events, ElementsAre(u"overlay: Setting up your data..."_s, u"list"_s,
                                          u"overlay gone, 1 snippets"_s));
    EXPECT_EQ(world.log.lines.last(), u"VellumryApp: 默认数据已创建"_s);
    EXPECT_TRUE(files.exists(u"/chosen/welcome.json"_s));
    EXPECT_FALSE(world.locations.needsFirstLaunchSetup());
    EXPECT_EQ(world.list.collectionModels().first().name, u"Welcome"_s);
}

TEST_F(FirstLaunchTest, StartsFreshInTheDefaultFolderIfTheChosenOneCannotBeUsed)
{
    files.replace(u"/file"_s, "x");
    choose(FirstLaunchChoice::startFresh(u"/file"_s));
    EXPECT_THAT(world.events, ElementsAre(u"overlay: Setting up your data..."_s, u"list"_s,
                                          u"overlay gone, 1 snippets"_s));
    EXPECT_THAT(world.log.lines,
                Contains(u"VellumryApp: 设置存储位置失败 - 路径不是目录: /file"_s));
    EXPECT_TRUE(files.exists(defaultFolder + u"/welcome.json"_s));
    EXPECT_EQ(world.locations.currentLocation(), defaultFolder);
    files.take(defaultFolder + u"/_metadata.json"_s);
    EXPECT_FALSE(world.locations.needsFirstLaunchSetup()) << "the sheet never comes back";
}

TEST_F(FirstLaunchTest, StartsFreshOverALibraryThatIsThere)
{
    putLibrary(u"/chosen"_s);
    choose(FirstLaunchChoice::startFresh(u"/chosen"_s));
    EXPECT_EQ(idsOf(world.list.snippets()), (QStringList{u"a"_s, u"b"_s})) << "nothing is seeded";
    EXPECT_EQ(world.log.lines.last(), u"VellumryApp: 默认数据已创建"_s);
}

TEST_F(FirstLaunchTest, LoadsExistingData)
{
    putLibrary(u"/chosen"_s);
    choose(FirstLaunchChoice::useExisting(u"/chosen"_s));
    EXPECT_THAT(world.events, ElementsAre(u"overlay: Loading your data..."_s, u"list"_s,
                                          u"overlay gone, 2 snippets"_s));
    EXPECT_EQ(world.locations.currentLocation(), u"/chosen"_s);
    EXPECT_FALSE(world.locations.needsFirstLaunchSetup());
    EXPECT_THAT(world.log.lines, Not(Contains(u"VellumryApp: 默认数据已创建"_s)));
    EXPECT_EQ(files.written.filter(u"/chosen/"_s), (QStringList{u"/chosen/.vellumry-write-test"_s}))
        << "existing data are only read";
}

TEST_F(FirstLaunchTest, LetsGoOfDraftsAndSelectionWithTheOldLibrary)
{
    putLibrary(u"/chosen"_s);
    world.list.setSelectedSnippetID(u"a"_s);
    world.list.setUnsavedEdit(orderedA());
    choose(FirstLaunchChoice::useExisting(u"/chosen"_s));
    EXPECT_THAT(world.list.unsavedEdits(), IsEmpty());
    EXPECT_EQ(world.list.selectedSnippetID(), std::nullopt);
}

TEST_F(FirstLaunchTest, ComesBackIfExistingDataCannotBeUsed)
{
    files.replace(u"/file"_s, "x");
    choose(FirstLaunchChoice::useExisting(u"/file"_s));
    EXPECT_THAT(world.events,
                ElementsAre(u"overlay: Loading your data..."_s, u"overlay gone, 0 snippets"_s));
    EXPECT_THAT(world.log.lines,
                Contains(u"VellumryApp: 设置存储位置失败 - 路径不是目录: /file"_s));
    EXPECT_TRUE(world.locations.needsFirstLaunchSetup());
    EXPECT_FALSE(files.exists(defaultFolder + u"/_metadata.json"_s));
}

/// The same over real files and a real second thread.
TEST(FirstLaunchInTheBackground, TouchesTheStoreOnTheMainThreadAlone)
{
    QTemporaryDir documents;
    ThreadRunner background;
    LaunchWorld world(FileSystem::local(), documents.path(), background);
    const QString fresh = documents.filePath(u"fresh"_s);
    world.launch.handleFirstLaunchChoice(FirstLaunchChoice::startFresh(fresh));
    ASSERT_TRUE(eventually([&] { return world.isDone; }));
    EXPECT_THAT(world.events, ElementsAre(u"overlay: Setting up your data..."_s, u"list"_s,
                                          u"overlay gone, 1 snippets"_s));
    EXPECT_EQ(world.locations.currentLocation(), fresh);

    world.events.clear();
    world.isDone = false;
    world.list.refreshData();
    world.launch.handleFirstLaunchChoice(FirstLaunchChoice::useExisting(fresh));
    ASSERT_TRUE(eventually([&] { return world.isDone; }));
    EXPECT_THAT(world.events,
                ElementsAre(u"overlay: Loading your data..."_s, u"overlay gone, 1 snippets"_s));
    EXPECT_TRUE(world.isStoreOnMainThread);
}

} // namespace
} // namespace vellumry::test
