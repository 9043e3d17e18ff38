#include "core/SerialQueue.h"
#include "platform/linux/PosixFileSystem.h"
#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

const QString reloadLine = line(QStringLiteral("检测到外部变化，重新加载数据..."));

/// The store over files in memory, with events that the test makes up.
class WatchingTest : public testing::Test {
protected:
    WatchingTest()
    {
        QObject::connect(&world.notifications, &NotificationCenter::syncDataDidChange,
                         &world.notifications,
                         [this](const VellumryData& data) { announced.append(data); });
        files.onOperation = [this](const QString& operation, const QString&) {
            operations.append(operation);
        };
        service().saveFullData(library, false);
        pass(10s);
        loaded = *service().loadFullData();
        service().startFileWatching();
        log.lines.clear();
    }

    [[nodiscard]] CollectionFileStorageService& service() { return world.service(); }
    [[nodiscard]] QString path(const QString& name) const { return world.path(name); }

    /// Lets the time pass, of the program and of the file system.
    void pass(std::chrono::milliseconds time)
    {
        for (; time > 0ms; time -= 50ms) {
            const auto step = std::min(time, 50ms);
            files.now += step;
            world.clock.advance(step);
            world.scheduler.advance(step);
        }
    }

    /// What the system tells of a write into the folder.
    void tell(const QString& name) { world.events.tell(path(name)); }

    void save(const VellumryData& data)
    {
        service().saveFullData(data, false);
        tell(QStringLiteral("work.json"));
        tell(QStringLiteral("_metadata.json"));
    }

    /// The library with a use of its first snippet counted.
    [[nodiscard]] VellumryData used() const
    {
        VellumryData data = loaded;
        data.data.snippets[0].setUsageCount(data.data.snippets[0].usageCount() + 1);
        return data;
    }

    /// Another program writes the file of the collection Notes, and the system tells.
    void writeNotes(const QString& id)
    {
        files.replace(path(QStringLiteral("notes.json")),
                      collectionFileBytes(notes, {makeSnippet(id, notes.name)}));
        tell(QStringLiteral("notes.json"));
    }

    [[nodiscard]] qsizetype reloads() const { return log.lines.count(reloadLine); }
    [[nodiscard]] QStringList currentIds()
    {
        QStringList ids = idsOf(service().currentData()->data.snippets);
        ids.sort();
        return ids;
    }

    const SyncCollection work = makeCollection(QStringLiteral("w"), QStringLiteral("Work"));
    const SyncCollection notes = makeCollection(QStringLiteral("n"), QStringLiteral("Notes"));
    const SyncCollection mail = makeCollection(QStringLiteral("m"), QStringLiteral("Mail"));
    const VellumryData library = makeLibrary(
        {work, notes, mail}, {makeSnippet(QStringLiteral("w1"), QStringLiteral("Work")),
                              makeSnippet(QStringLiteral("n1"), QStringLiteral("Notes")),
                              makeSnippet(QStringLiteral("m1"), QStringLiteral("Mail"))});
    const QStringList libraryIds{QStringLiteral("m1"), QStringLiteral("n1"), QStringLiteral("w1")};
    const QStringList changedIds{QStringLiteral("m1"), QStringLiteral("n2"), QStringLiteral("w1")};

    LogCapture log;
    MemoryFileSystem files;
    QStringList operations;
    StorageWorld world{files, QStringLiteral("/library")};
    VellumryData loaded;
    QList<VellumryData> announced;
};

// Start and stop

TEST_F(WatchingTest, watchesTheFolderWhileEnabled)
{
    EXPECT_TRUE(service().isWatchingEnabled());
    EXPECT_EQ(world.events.watchedFolders(), QStringList{world.folder});
    service().stopFileWatching();
    EXPECT_FALSE(service().isWatchingEnabled());
    EXPECT_EQ(world.events.watchedFolders(), QStringList());
    service().startFileWatching();
    EXPECT_TRUE(service().isWatchingEnabled());
    EXPECT_EQ(log.lines.last(), line(QStringLiteral("文件监控已启动 - ")) + world.folder);
}

TEST_F(WatchingTest, startedTwiceItHasOneWatcher)
{
    service().startFileWatching();
    EXPECT_EQ(world.events.requests.size(), 1);
    EXPECT_EQ(log.lines, QStringList());
}

TEST_F(WatchingTest, countsAsEnabledEvenWhenTheStreamDoesNotStart)
{
    service().stopFileWatching();
    world.events.canMake = false;
    service().startFileWatching();
    EXPECT_TRUE(service().isWatchingEnabled());
}

TEST_F(WatchingTest, doesNotWatchBeforeItIsAskedTo)
{
    world.restart();
    EXPECT_FALSE(service().isWatchingEnabled());
    EXPECT_EQ(world.events.watchedFolders(), QStringList());
}

TEST_F(WatchingTest, endsTheWatchingWithTheStore)
{
    writeNotes(QStringLiteral("n2"));
    world.restart();
    EXPECT_EQ(world.events.watchedFolders(), QStringList());
    pass(10s);
    EXPECT_EQ(reloads(), 0);
}

TEST_F(WatchingTest, tellsThatTheWatchingChanged)
{
    int changes = 0;
    const QObject observer;
    QObject::connect(&service(), &CollectionFileStorageService::isWatchingEnabledChanged, &observer,
                     [&] { ++changes; });
    service().stopFileWatching();
    service().startFileWatching();
    EXPECT_EQ(changes, 2);
}

// Reloading

TEST_F(WatchingTest, aForeignChangeIsLoadedAndAnnounced)
{
    writeNotes(QStringLiteral("n2"));
    pass(450ms);
    EXPECT_EQ(reloads(), 0);
    pass(50ms);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(currentIds(), changedIds);
    pass(10s);
    ASSERT_EQ(announced.size(), 1);
    EXPECT_EQ(announced[0].data.snippets, service().currentData()->data.snippets);
    EXPECT_EQ(reloads(), 1);
}

TEST_F(WatchingTest, theAnnouncementComesInATurnOfItsOwn)
{
    writeNotes(QStringLiteral("n2"));
    service().reloadFromDisk();
    EXPECT_EQ(currentIds(), changedIds);
    EXPECT_EQ(announced.size(), 0);
    world.scheduler.advance(0ms);
    EXPECT_EQ(announced.size(), 1);
}

TEST_F(WatchingTest, tenForeignChangesGiveOneReload)
{
    for (int change = 0; change < 10; ++change) {
        writeNotes(QStringLiteral("n%1").arg(change));
        pass(400ms);
    }
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_TRUE(currentIds().contains(QStringLiteral("n9")));
}

TEST_F(WatchingTest, aReloadReadsTheChangedFileOnly)
{
    files.opened.clear();
    writeNotes(QStringLiteral("n2"));
    pass(10s);
    EXPECT_EQ(files.opened, (QStringList{path(QStringLiteral("_metadata.json")),
                                         path(QStringLiteral("notes.json"))}));
}

TEST_F(WatchingTest, foldersAndPermissionsReloadNothingAndAFileOfAnyNameDoes)
{
    world.events.tell(path(QStringLiteral("sub")),
                      FileEventStream::itemCreated | FileEventStream::itemIsDirectory);
    world.events.tell(path(QStringLiteral("notes.json")), 0);
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    world.events.tell(path(QStringLiteral("image.png")), FileEventStream::itemCreated);
    pass(10s);
    EXPECT_EQ(reloads(), 1);
}

TEST_F(WatchingTest, aLoadThatFailsAnnouncesNothingAndKeepsTheLibrary)
{
    files.replace(path(QStringLiteral("_metadata.json")), "{");
    tell(QStringLiteral("_metadata.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(announced.size(), 0);
    EXPECT_EQ(currentIds(), libraryIds);
    EXPECT_TRUE(service().lastError());
}

// Own writes and foreign ones

TEST_F(WatchingTest, theProgramsOwnSaveReloadsNothing)
{
    VellumryData changed = loaded;
    for (Snippet& snippet : changed.data.snippets)
        snippet.setUsageCount(7);
    files.written.clear();
    save(changed);
    EXPECT_EQ(files.written.size(), 4) << "three collections and the metadata";
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    EXPECT_EQ(announced.size(), 0);
    EXPECT_TRUE(log.lines.contains(QStringLiteral("FileWatcherService: 触发文件变化回调")))
        << "the callback came";
}

TEST_F(WatchingTest, noneOfTheProgramsOwnChangesReloadsWhenASaveFollows)
{
    VellumryData data = used();
    data.data.collections.append(makeCollection(QStringLiteral("x"), QStringLiteral("New")));
    save(data); // makes a file
    pass(10s);
    data.data.collections.removeIf([](const auto& each) { return each.id == u"m"; });
    save(data); // removes one
    pass(10s);
    service().renameCollectionFile(QStringLiteral("n"), QStringLiteral("Renamed"));
    tell(QStringLiteral("renamed.json"));
    save(data);
    pass(10s);
    service().deleteCollectionFile(QStringLiteral("n"));
    tell(QStringLiteral("renamed.json"));
    data.data.collections.removeIf([](const auto& each) { return each.id == u"n"; });
    save(data);
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    EXPECT_FALSE(files.exists(path(QStringLiteral("renamed.json"))));
}

TEST_F(WatchingTest, aDeletedOrRenamedFileLooksForeignWithoutASave)
{
    service().renameCollectionFile(QStringLiteral("n"), QStringLiteral("Renamed"));
    tell(QStringLiteral("renamed.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    service().deleteCollectionFile(QStringLiteral("n"));
    tell(QStringLiteral("renamed.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 2);
    EXPECT_EQ(currentIds(), (QStringList{QStringLiteral("m1"), QStringLiteral("w1")}));
}

TEST_F(WatchingTest, theGuardStandsForASecondAfterTheSave)
{
    service().saveFullData(used(), false);
    EXPECT_TRUE(service().isWriting());
    world.scheduler.advance(999ms);
    service().reloadFromDisk();
    EXPECT_TRUE(service().isWriting());
    EXPECT_EQ(reloads(), 0);
    world.scheduler.advance(1ms);
    EXPECT_FALSE(service().isWriting());
    service().reloadFromDisk();
    EXPECT_EQ(reloads(), 1);
}

TEST_F(WatchingTest, theFirstOfTwoSavesEndsTheGuardOfTheSecond)
{
    save(used());
    pass(900ms);
    save(used());
    pass(100ms);
    EXPECT_FALSE(service().isWriting());
    pass(10s);
    EXPECT_EQ(reloads(), 1) << "the events of the second save count as foreign";
    EXPECT_EQ(currentIds(), libraryIds);
}

TEST_F(WatchingTest, aForeignChangeTwoSecondsAfterASaveReloads)
{
    save(used());
    pass(2s);
    writeNotes(QStringLiteral("n2"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(currentIds(), changedIds);
}

TEST_F(WatchingTest, nothingWaitsForTheTimeOfTheLastWrite)
{
    save(used());
    pass(1s);
    service().reloadFromDisk();
    EXPECT_EQ(reloads(), 1) << "one second after the write, not two";
}

TEST_F(WatchingTest, aForeignChangeBehindTheGuardIsLoadedAtItsEnd)
{
    save(used());
    pass(300ms);
    writeNotes(QStringLiteral("n2"));
    pass(650ms);
    EXPECT_EQ(reloads(), 0);
    pass(50ms);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(currentIds(), changedIds);
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(announced.size(), 1);
}

TEST_F(WatchingTest, whateverIsChangedBehindTheGuardIsNoticed)
{
    const std::vector<std::function<void()>> changes{
        [&] { files.take(path(QStringLiteral("notes.json"))); },
        [&] { files.rename(path(QStringLiteral("mail.json")), path(QStringLiteral("post.json"))); },
        [&] { files.touch(path(QStringLiteral("work.json"))); },
        [&] { files.replace(path(QStringLiteral("new.json")), "{"); },
        [&] { files.setReadable(path(QStringLiteral("post.json")), false); },
        [&] { files.setReadable(path(QStringLiteral("post.json")), true); },
        [&] { files.touch(path(QStringLiteral("_metadata.json"))); },
        [&] {
            const QByteArray bytes = files.bytes(path(QStringLiteral("work.json")));
            const QByteArray same = QByteArray(bytes).replace("Title", "Other");
            files.writeInPlace(path(QStringLiteral("work.json")), same);
        },
    };
    for (size_t i = 0; i < changes.size(); ++i) {
        save(used());
        pass(50ms);
        changes[i]();
        tell(QStringLiteral("any"));
        log.lines.clear();
        pass(10s);
        EXPECT_EQ(reloads(), 1) << "change " << i;
        loaded = *service().currentData();
        save(used());
        pass(10s);
        EXPECT_EQ(reloads(), 1) << "a save after change " << i;
    }
}

TEST_F(WatchingTest, aForeignChangeInTheTickOfTheOwnWriteIsNoticed)
{
    save(used());
    const QString file = path(QStringLiteral("work.json"));
    const QByteArray other = QByteArray(files.bytes(file)).replace("Title", "Other");
    files.writeInPlace(file, other); // as long, at the same time
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(service().currentData()->data.snippets.first().title(), u"Other of w1");
}

TEST_F(WatchingTest, aForeignChangeThatASaveMetIsLoadedAfterIt)
{
    // Only the order differs, which no save writes.
    SnippetFields fields = makeSnippet(QStringLiteral("n1"), notes.name).fields();
    fields.displayOrder = 5;
    files.replace(path(QStringLiteral("notes.json")),
                  collectionFileBytes(notes, {Snippet(fields)}));
    save(used());
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    const auto& snippets = service().currentData()->data.snippets;
    EXPECT_TRUE(std::any_of(snippets.begin(), snippets.end(),
                            [](const Snippet& each) { return each.displayOrder() == 5; }));
}

TEST_F(WatchingTest, whatCannotBeReadMakesNoSaveLookForeign)
{
    files.makeFolder(path(QStringLiteral("folder.json")));
    files.replace(path(QStringLiteral("secret.json")), "{}");
    files.setReadable(path(QStringLiteral("secret.json")), false);
    files.replace(path(QStringLiteral("damaged.json")), "{");
    tell(QStringLiteral("damaged.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    for (int turn = 0; turn < 3; ++turn) {
        save(used());
        pass(10s);
        loaded = *service().currentData();
    }
    EXPECT_EQ(reloads(), 1);
}

TEST_F(WatchingTest, withoutAnyEventTheGuardsEndLooksAtNothing)
{
    service().saveFullData(used(), false);
    operations.clear();
    pass(10s);
    EXPECT_EQ(operations, QStringList());
}

TEST_F(WatchingTest, aFailedSaveReloadsNothing)
{
    files.onOperation = [](const QString& operation, const QString& at) {
        if (operation == u"write")
            throw MemoryFileSystem::error(operation, at, ENOSPC);
    };
    EXPECT_FALSE(service().saveSnippets(used().data.snippets));
    tell(QStringLiteral("work.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    EXPECT_FALSE(service().isWriting());
}

TEST_F(WatchingTest, aFailedSaveReloadsNothingWhereThereIsNoMetadataFile)
{
    const QString folder = QStringLiteral("/older");
    files.makeFolder(folder);
    files.replace(folder + QStringLiteral("/vellumry-data.json"),
                  JSONEncoder::vellumry().encode(library).toByteArray());
    world.setFolder(folder);
    service().clearCacheAndReload();
    EXPECT_EQ(service().currentData(), library);
    files.onOperation = [](const QString& operation, const QString& at) {
        if (operation == u"write" && at.endsWith(u"/_metadata.json"))
            throw MemoryFileSystem::error(operation, at, ENOSPC);
    };
    EXPECT_FALSE(service().saveSnippets(used().data.snippets));
    tell(QStringLiteral("work.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 0);

    // What another program does meanwhile is noticed there as well.
    EXPECT_FALSE(service().saveSnippets(used().data.snippets));
    files.replace(path(QStringLiteral("_metadata.json")), metadataFileBytes({notes.id, work.id}));
    tell(QStringLiteral("_metadata.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(idsOf(service().currentData()->data.collections),
              (QStringList{notes.id, work.id, mail.id}));
}

TEST_F(WatchingTest, aForeignChangeAroundAFailedSaveIsLoadedAtTheGuardsEnd)
{
    const auto failToWrite = [this] {
        files.onOperation = [](const QString& operation, const QString& at) {
            if (operation == u"write")
                throw MemoryFileSystem::error(operation, at, ENOSPC);
        };
        EXPECT_FALSE(service().saveSnippets(used().data.snippets));
        files.onOperation = nullptr;
    };
    writeNotes(QStringLiteral("n2"));
    failToWrite();
    pass(10s);
    EXPECT_EQ(reloads(), 1) << "the save had met it";
    EXPECT_EQ(currentIds(), changedIds);

    loaded = *service().currentData();
    failToWrite();
    pass(100ms);
    writeNotes(QStringLiteral("n1"));
    pass(10s);
    EXPECT_EQ(reloads(), 2);
    EXPECT_EQ(currentIds(), libraryIds);
}

TEST_F(WatchingTest, aForeignChangeAroundAFolderThatCannotBeListedIsLoadedAtTheGuardsEnd)
{
    files.onOperation = [](const QString& operation, const QString& at) {
        if (operation == u"list")
            throw MemoryFileSystem::error(operation, at, EIO);
    };
    save(used());
    pass(100ms);
    writeNotes(QStringLiteral("n2"));
    files.onOperation = nullptr;
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(currentIds(), changedIds);
}

TEST_F(WatchingTest, whatCouldNotBeListedAtAGuardsEndIsLookedForAtTheNext)
{
    save(used());
    pass(100ms);
    writeNotes(QStringLiteral("n2"));
    files.onOperation = [](const QString& operation, const QString& at) {
        if (operation == u"list")
            throw MemoryFileSystem::error(operation, at, EIO);
    };
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    EXPECT_EQ(currentIds(), libraryIds) << "better than an empty library";
    files.onOperation = nullptr;
    VellumryData order = *service().currentData(); // writes nothing of the collection Notes
    order.data.snippets.removeIf([](const Snippet& each) { return each.id() == u"n1"; });
    order.data.snippets.append(makeSnippet(QStringLiteral("n2"), notes.name));
    service().saveFullData(order, false);
    pass(10s);
    EXPECT_EQ(reloads(), 1);
}

TEST_F(WatchingTest, aForeignMetadataFileInTheTickOfTheOwnIsNoticed)
{
    save(used());
    const QString file = path(QStringLiteral("_metadata.json"));
    const auto stamp = files.stamp(file);
    QByteArray other = files.bytes(file);
    other.replace("\"w\"", "\"?\"").replace("\"n\"", "\"w\"").replace("\"?\"", "\"n\"");
    files.writeInPlace(file, other);
    ASSERT_EQ(files.stamp(file), stamp);
    tell(QStringLiteral("_metadata.json"));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(idsOf(service().currentData()->data.collections),
              (QStringList{QStringLiteral("n"), QStringLiteral("w"), QStringLiteral("m")}));
}

TEST_F(WatchingTest, aFileThatReplacesAnotherWhileASaveRemovesItStaysAndIsLoaded)
{
    VellumryData less = used();
    less.data.collections.removeIf([](const auto& each) { return each.id == u"n"; });
    files.onOperation = [this](const QString& operation, const QString& at) {
        if (operation == u"write" && at.endsWith(u"/work.json")) {
            files.now += 50ms;
            writeNotes(QStringLiteral("n2")); // after this save has read the old one
        }
    };
    save(less);
    files.onOperation = nullptr;
    EXPECT_TRUE(files.exists(path(QStringLiteral("notes.json"))));
    pass(10s);
    EXPECT_EQ(reloads(), 1);
    EXPECT_EQ(currentIds(), changedIds);
}

// What a save meets before a reload could show it. A collection file goes when it can be understood
// and its collection is not in the library that is saved, whoever made it and whatever the last
// load made of it: there is no other sign that a collection was removed.

TEST_F(WatchingTest, aNewForeignFileThatASaveMeetsInTheQuietTimeIsRemoved)
{
    files.replace(path(QStringLiteral("new.json")),
                  collectionFileBytes(makeCollection(QStringLiteral("x"), QStringLiteral("New")),
                                      {makeSnippet(QStringLiteral("x1"), QStringLiteral("New"))}));
    tell(QStringLiteral("new.json"));
    pass(400ms);
    EXPECT_EQ(reloads(), 0) << "the quiet is not over";
    save(used());
    EXPECT_FALSE(files.exists(path(QStringLiteral("new.json"))));
    EXPECT_EQ(currentIds(), libraryIds);
}

TEST_F(WatchingTest, aFileThatWasHalfWrittenAtTheLoadStaysUntilASaveUnderstandsIt)
{
    const QString file = path(QStringLiteral("notes.json"));
    const QByteArray whole = files.bytes(file);
    files.writeInPlace(file, whole.first(whole.size() / 2));
    tell(QStringLiteral("notes.json"));
    pass(10s);
    EXPECT_EQ(currentIds(), (QStringList{QStringLiteral("m1"), QStringLiteral("w1")}));
    loaded = *service().currentData();
    save(used());
    EXPECT_TRUE(files.exists(file));
    pass(10s);

    // Finished in time, it comes back.
    files.writeInPlace(file, whole);
    tell(QStringLiteral("notes.json"));
    pass(500ms);
    EXPECT_EQ(currentIds(), libraryIds);

    // Finished just before a save, it is a collection that the library does not have.
    files.writeInPlace(file, whole.first(whole.size() / 2));
    tell(QStringLiteral("notes.json"));
    pass(10s);
    loaded = *service().currentData();
    files.writeInPlace(file, whole);
    tell(QStringLiteral("notes.json"));
    save(used());
    EXPECT_FALSE(files.exists(file));
}

// What a killed save leaves

TEST_F(WatchingTest, theFirstGoodSaveInEachFolderRemovesLeftoversOfTheDayBefore)
{
    files.tidied.clear();
    world.restart();
    (void)service().loadFullData();
    EXPECT_TRUE(files.tidied.isEmpty()) << "a load changes nothing";
    for (int turn = 0; turn < 2; ++turn)
        service().saveFullData(library, false);
    ASSERT_EQ(files.tidied.size(), 1);
    EXPECT_EQ(files.tidied[0], std::pair(world.folder, world.clock.now() - 24h));
    world.setFolder(QStringLiteral("/other"));
    service().saveFullData(library, false);
    ASSERT_EQ(files.tidied.size(), 2);
    EXPECT_EQ(files.tidied[1].first, QStringLiteral("/other"));
}

// Another location

TEST_F(WatchingTest, followsTheFolderToAnotherLocation)
{
    files.makeFolder(QStringLiteral("/other"));
    files.replace(QStringLiteral("/other/_metadata.json"), metadataFileBytes({}));
    files.replace(QStringLiteral("/other/new.json"),
                  collectionFileBytes(work, {makeSnippet(QStringLiteral("o1"), work.name)}));
    world.locations.setCustomLocation(QStringLiteral("/other"));
    world.folder = QStringLiteral("/other");
    EXPECT_EQ(world.events.watchedFolders(), QStringList{QStringLiteral("/other")});
    EXPECT_TRUE(service().isWatchingEnabled());
    EXPECT_EQ(currentIds(), QStringList{QStringLiteral("o1")});
    EXPECT_EQ(reloads(), 0);
    EXPECT_EQ(announced.size(), 0);
}

TEST_F(WatchingTest, aLocationChangeStartsTheWatchingAndForgetsWhatWasPending)
{
    writeNotes(QStringLiteral("n2"));
    service().stopFileWatching();
    Q_EMIT world.notifications.storageLocationDidChange(world.folder);
    EXPECT_TRUE(service().isWatchingEnabled());
    pass(10s);
    EXPECT_EQ(reloads(), 0);
    EXPECT_EQ(currentIds(), changedIds);
}

TEST_F(WatchingTest, aLocationWithoutALibraryLeavesTheOldOneInTheCache)
{
    world.locations.setCustomLocation(QStringLiteral("/empty"));
    EXPECT_EQ(currentIds(), libraryIds);
    EXPECT_EQ(world.events.watchedFolders(), QStringList{QStringLiteral("/empty")});
}

TEST_F(WatchingTest, clearsEverythingAndLoadsAnew)
{
    service().saveFullData(used(), false);
    pass(10s);
    EXPECT_TRUE(service().lastSaveTime());
    files.opened.clear();
    log.lines.clear();
    service().clearCacheAndReload();
    EXPECT_FALSE(service().lastSaveTime());
    EXPECT_FALSE(service().lastError());
    EXPECT_TRUE(service().isWatchingEnabled());
    EXPECT_EQ(world.events.requests.size(), 2);
    EXPECT_EQ(files.opened.size(), 4) << "every file is read";
    EXPECT_EQ(currentIds(), libraryIds);
    EXPECT_EQ(log.lines.last(), line(QStringLiteral("已清除缓存并重新加载数据")));
    pass(10s);
    EXPECT_EQ(announced.size(), 0);
}

TEST_F(WatchingTest, clearedWithoutALibraryThereIsNone)
{
    world.setFolder(QStringLiteral("/empty"));
    service().clearCacheAndReload();
    EXPECT_FALSE(service().currentData());
    EXPECT_EQ(log.lines.last(), line(QStringLiteral("已清除缓存并重新加载数据")));
}

// Two stores on one real folder

class SharedFolderTest : public testing::Test {
protected:
    /// A store as a program of its own has one.
    struct Side {
        explicit Side(const QString& dataFolder) : world(FileSystem::local(), dataFolder)
        {
            QObject::connect(&world.notifications, &NotificationCenter::syncDataDidChange,
                             &world.notifications, [this] { ++reloads; });
        }
        StorageWorld world;
        SerialQueue queue{FileWatcherService::callbackQueueLabel.toString()};
        CollectionFileStorageService store{{.locations = world.locations,
                                            .files = world.files,
                                            .notifications = world.notifications,
                                            .scheduler = EventLoopScheduler::shared(),
                                            .clock = SystemClock::shared(),
                                            .colors = world.colors,
                                            .defaultSnippets = [] { return std::nullopt; },
                                            .makeEventStream = &FileEventStream::local,
                                            .watcherQueue = queue.context()}};
        int reloads = 0;

        [[nodiscard]] QMap<QString, qint64> uses() const
        {
            QMap<QString, qint64> counts;
            for (const Snippet& snippet : store.currentData()->data.snippets)
                counts.insert(snippet.id(), snippet.usageCount());
            return counts;
        }
    };

    /// Every file of the folder is whole.
    void expectWholeFiles() const
    {
        for (const QString& name : FileSystem::local().list(folder)) {
            const FileContents contents = FileSystem::local().read(folder + u'/' + name);
            if (name == u"_metadata.json")
                EXPECT_NO_THROW(
                    (void)JSONDecoder::vellumry().decode<MetadataFileData>(contents.bytes));
            else
                EXPECT_NO_THROW(
                    (void)JSONDecoder::vellumry().decode<CollectionFileData>(contents.bytes))
                    << name.toStdString();
        }
    }

    LogCapture log;
    QTemporaryDir directory;
    QString folder = directory.filePath(QStringLiteral("library"));
};

TEST_F(SharedFolderTest, eachNoticesTheOthersChangeInEveryOrder)
{
    Side one(folder);
    Side other(folder);
    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    one.store.saveFullData(
        makeLibrary({makeCollection(QStringLiteral("ca"), QStringLiteral("A")),
                     makeCollection(QStringLiteral("cb"), QStringLiteral("B"))},
                    {makeSnippet(a, QStringLiteral("A")), makeSnippet(b, QStringLiteral("B"))}),
        false);
    ASSERT_TRUE(one.store.loadFullData());
    ASSERT_TRUE(other.store.loadFullData());
    one.store.startFileWatching();
    other.store.startFileWatching();
    ASSERT_TRUE(eventually([&] { return !one.store.isWriting(); }));

    // One writes and the other hears; then the other way round; each into the file of the other.
    qint64 expected = 0;
    for (Side* writer : {&one, &other, &one, &other}) {
        Side& reader = writer == &one ? other : one;
        for (const QString& id : {a, b})
            ASSERT_TRUE(writer->store.incrementUsage(id));
        ++expected;
        const QMap<QString, qint64> counts{{a, expected}, {b, expected}};
        EXPECT_EQ(writer->uses(), counts);
        EXPECT_TRUE(eventually([&] { return reader.uses() == counts; }));
        expectWholeFiles();
        EXPECT_TRUE(eventually([&] { return !writer->store.isWriting(); }));
    }
    // A slow machine can need more than one for the two saves of a turn.
    EXPECT_GE(one.reloads, 2);
    EXPECT_GE(other.reloads, 2);

    // Both at once: the later save stands, and in the end both hold the same.
    ASSERT_TRUE(one.store.incrementUsage(a));
    ASSERT_TRUE(other.store.incrementUsage(b));
    ASSERT_NE(one.uses(), other.uses());
    EXPECT_TRUE(eventually([&] {
        return one.uses() == other.uses() && !one.store.isWriting() && !other.store.isWriting();
    }));
    expectWholeFiles();

    // A collection goes, on one side.
    VellumryData less = *one.store.currentData();
    less.data.collections.removeLast();
    less.data.snippets.removeIf([&](const Snippet& snippet) { return snippet.id() == b; });
    one.store.saveFullData(less, false);
    EXPECT_TRUE(eventually([&] { return other.uses().keys() == QStringList{a}; }));
    expectWholeFiles();
}

} // namespace

} // namespace vellumry::test
