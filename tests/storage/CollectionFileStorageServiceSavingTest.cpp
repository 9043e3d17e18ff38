#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cerrno>
#include <optional>

using namespace vellumry;
using namespace vellumry::test;
using namespace std::chrono_literals;

namespace {

class SavingTest : public testing::Test {
protected:
    SavingTest() { files.makeFolder(folder); }

    void put(const QString& name, const QByteArray& bytes) { files.replace(path(name), bytes); }
    [[nodiscard]] QByteArray get(const QString& name) const { return files.bytes(path(name)); }
    [[nodiscard]] bool has(const QString& name) { return files.exists(path(name)); }
    [[nodiscard]] QString path(const QString& name) const { return world.path(name); }
    [[nodiscard]] CollectionFileStorageService& service() { return world.service(); }

    void save(const VellumryData& data) { service().saveFullData(data, false); }

    /// Lets the time pass in which a change could go unseen.
    void settle()
    {
        files.now += 1s;
        world.clock.advance(1s);
    }

    /// The names of the files that were written since the last call.
    QStringList written()
    {
        QStringList names;
        for (const QString& file : std::exchange(files.written, {}))
            names.append(file.sliced(folder.size() + 1));
        return names;
    }

    QStringList lines() { return std::exchange(log.lines, {}); }

    /// Makes the operation fail where the path ends like this.
    FileError failAt(const QString& which, const QString& ending)
    {
        files.onOperation = [which, ending](const QString& operation, const QString& at) {
            if (operation == which && at.endsWith(ending))
                throw FileError(operation, at, ENOSPC);
        };
        return {which, path(ending), ENOSPC};
    }

    /// Two collections with two snippets each, saved and loaded.
    VellumryData loadedLibrary()
    {
        save(makeLibrary({work, notes}, {w1, n1, w2, n2}));
        settle();
        VellumryData data = *service().loadFullData();
        settle();
        written();
        lines();
        files.opened.clear();
        return data;
    }

    LogCapture log;
    MemoryFileSystem files;
    const QString folder = QStringLiteral("/data");
    StorageWorld world{files, folder};
    const SyncCollection work = makeCollection(QStringLiteral("w"), QStringLiteral("Work"));
    const SyncCollection notes = makeCollection(QStringLiteral("n"), QStringLiteral("My Notes"));
    const Snippet w1 = makeSnippet(QStringLiteral("w1"), QStringLiteral("Work"));
    const Snippet w2 = makeSnippet(QStringLiteral("w2"), QStringLiteral("Work"));
    const Snippet n1 = makeSnippet(QStringLiteral("n1"), QStringLiteral("My Notes"));
    const Snippet n2 = makeSnippet(QStringLiteral("n2"), QStringLiteral("My Notes"));
    const QStringList metadataOnly{QStringLiteral("_metadata.json")};
    const QStringList workAndMetadata{QStringLiteral("work.json"),
                                      QStringLiteral("_metadata.json")};
};

using SavingDeathTest = SavingTest;

TEST_F(SavingTest, writesAFileForEachCollectionAndTheMetadata)
{
    VellumryData data = makeLibrary({work, notes}, {w1, n1, w2, n2});
    data.settings = SyncSettings{.version = 3, .syncAppSettings = true};
    QSignalSpy dataChanges(&service(), &CollectionFileStorageService::currentDataChanged);
    QSignalSpy timeChanges(&service(), &CollectionFileStorageService::lastSaveTimeChanged);
    QSignalSpy announced(&world.notifications, &NotificationCenter::syncDataDidSave);
    save(data);

    EXPECT_EQ(written(), (QStringList{QStringLiteral("work.json"), QStringLiteral("my-notes.json"),
                                      QStringLiteral("_metadata.json")}));
    const CollectionFileData file = decodeCollectionFile(get(QStringLiteral("work.json")));
    EXPECT_EQ(file.version, QStringLiteral("1.0"));
    EXPECT_EQ(file.lastModified, world.clock.now());
    EXPECT_FALSE(file.deviceId.isEmpty());
    EXPECT_EQ(file.collection, work);
    EXPECT_EQ(file.snippets, (QList<Snippet>{w1, w2}));
    const MetadataFileData metadata = decodeMetadataFile(get(QStringLiteral("_metadata.json")));
    EXPECT_EQ(metadata.version, QStringLiteral("3.1"));
    EXPECT_EQ(metadata.lastModified, world.clock.now());
    EXPECT_FALSE(metadata.deviceId.isEmpty());
    EXPECT_EQ(metadata.collectionOrder, (QStringList{QStringLiteral("w"), QStringLiteral("n")}));
    EXPECT_EQ(metadata.settings, data.settings);

    EXPECT_EQ(service().currentData(), data) << "the very value that was handed in";
    EXPECT_EQ(service().lastSaveTime(), world.clock.now());
    EXPECT_FALSE(service().lastError());
    EXPECT_EQ(dataChanges.count(), 1);
    EXPECT_EQ(timeChanges.count(), 1);
    EXPECT_EQ(announced.count(), 1);
    EXPECT_EQ(lines(), (QStringList{line(QStringLiteral("更新 Collection - Work")),
                                    line(QStringLiteral("更新 Collection - My Notes")),
                                    line(QStringLiteral("保存成功 - 4 snippets, 2 collections"))}));
}

TEST_F(SavingTest, aBackupIsNeverMade)
{
    service().saveFullData(makeLibrary({work}, {}), true);
    EXPECT_EQ(files.order.size(), 3) << "the folder and two files";
}

TEST_F(SavingTest, savingWhatWasLoadedWritesTheMetadataOnly)
{
    const VellumryData data = loadedLibrary();
    for (int i = 0; i < 3; ++i) {
        save(data);
        EXPECT_EQ(written(), metadataOnly);
        EXPECT_EQ(lines(),
                  QStringList{line(QStringLiteral("保存成功 - 4 snippets, 2 collections"))});
    }
    EXPECT_TRUE(files.opened.isEmpty()) << "settled files are not even opened";
}

TEST_F(SavingTest, aServiceWithoutACacheComesToTheSame)
{
    const VellumryData data = loadedLibrary();
    world.restart();
    save(data);
    EXPECT_EQ(written(), metadataOnly);
    EXPECT_EQ(files.opened.size(), 2);
}

TEST_F(SavingTest, eachComparedFieldSetsOffAWrite)
{
    const VellumryData data = loadedLibrary();
    const QList<std::function<void(Snippet&)>> changes{
        [](Snippet& s) { s.setId(QStringLiteral("other")); },
        [](Snippet& s) { s.setTitle(QStringLiteral("other")); },
        [](Snippet& s) { s.setSubtitle(QStringLiteral("other")); },
        [](Snippet& s) { s.setContent(QStringLiteral("other")); },
        [](Snippet& s) { s.setKeywords({QStringLiteral("a")}); },
        [](Snippet& s) { s.setUpdatedAt(s.updatedAt() + 1ms); },
        [](Snippet& s) { s.setLastUsedAt(dateAt(0)); },
        [](Snippet& s) { s.setUsageCount(1); },
    };
    for (const auto& change : changes) {
        VellumryData changed = data;
        change(changed.data.snippets[1]);
        save(changed);
        EXPECT_EQ(written(), workAndMetadata);
        save(data);
        EXPECT_EQ(written(), workAndMetadata);
        save(data);
        EXPECT_EQ(written(), metadataOnly);
    }
}

TEST_F(SavingTest, anotherCollectionInTheFileIsADifference)
{
    const VellumryData data = loadedLibrary();
    Snippet elsewhere = w1;
    elsewhere.setCollection(QStringLiteral("Elsewhere"));
    put(QStringLiteral("work.json"), collectionFileBytes(work, {elsewhere, w2}));
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).snippets,
              (QList<Snippet>{w1, w2}));
}

TEST_F(SavingTest, theOrderOfKeywordsCounts)
{
    VellumryData data = loadedLibrary();
    data.data.snippets[0].setKeywords({QStringLiteral("a"), QStringLiteral("b")});
    save(data);
    written();
    data.data.snippets[0].setKeywords({QStringLiteral("b"), QStringLiteral("a")});
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
}

TEST_F(SavingTest, headFieldsSetOffAWriteButNotTheCreationDate)
{
    VellumryData data = loadedLibrary();
    data.data.collections[0].createdAt += 1h;
    save(data);
    EXPECT_EQ(written(), metadataOnly);
    data.data.collections[0].color = QStringLiteral("");
    save(data);
    EXPECT_EQ(written(), workAndMetadata) << "an empty colour is not an absent one";
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).collection.createdAt,
              data.data.collections[0].createdAt)
        << "rides along";
    data.data.collections[0].color.reset();
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    EXPECT_EQ(lines().first(), line(QStringLiteral("保存成功 - 4 snippets, 2 collections")));
}

TEST_F(SavingTest, uncomparedFieldsLeaveTheFileAloneAndRideAlong)
{
    VellumryData data = loadedLibrary();
    const QByteArray before = get(QStringLiteral("work.json"));
    Snippet& snippet = data.data.snippets[0];
    snippet.setDisplayOrder(7);
    snippet.setVariables({{QStringLiteral("name"), QStringLiteral("value")}});
    snippet.setCreatedAt(dateAt(99));
    data.data.snippets.swapItemsAt(0, 1);
    save(data);
    EXPECT_EQ(written(), metadataOnly);
    EXPECT_EQ(get(QStringLiteral("work.json")), before);
    EXPECT_EQ(service().currentData(), data);

    data.data.snippets[0].setUsageCount(1);
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    const CollectionFileData file = decodeCollectionFile(get(QStringLiteral("work.json")));
    EXPECT_EQ(idsOf(file.snippets), (QStringList{QStringLiteral("w2"), QStringLiteral("w1")}));
    EXPECT_EQ(file.snippets[1].displayOrder(), 7);
    EXPECT_EQ(file.snippets[1].createdAt(), dateAt(99));
    EXPECT_EQ(file.snippets[1].variables().size(), 1);
}

TEST_F(SavingTest, aDateSetInThisRunIsWrittenAgainAtEachSaveUntilALoad)
{
    VellumryData data = loadedLibrary();
    data.data.snippets[0].setLastUsedAt(world.clock.now() + 123'456ns);
    for (int i = 0; i < 3; ++i) {
        save(data);
        EXPECT_EQ(written(), workAndMetadata);
        settle();
    }
    const VellumryData reloaded = *service().loadFullData();
    save(reloaded);
    EXPECT_EQ(written(), metadataOnly);
}

TEST_F(SavingTest, aCountOfUseIsWrittenOnceIfItsDateHasWholeMilliseconds)
{
    VellumryData data = loadedLibrary();
    data.data.snippets[0].setLastUsedAt(dateAt(77));
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    save(data);
    EXPECT_EQ(written(), metadataOnly);
}

TEST_F(SavingTest, aRemovedCollectionLosesItsFile)
{
    VellumryData data = loadedLibrary();
    data.data.collections.removeAt(0);
    save(data);
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    EXPECT_TRUE(has(QStringLiteral("my-notes.json")));
    EXPECT_EQ(service().currentData()->data.snippets.size(), 4)
        << "its snippets stay in memory until the next load";
    EXPECT_EQ(service().loadFullData()->data.snippets.size(), 2);
}

TEST_F(SavingTest, aFileThatCannotBeRemovedDoesNotStopTheSave)
{
    VellumryData data = loadedLibrary();
    data.data.collections.removeAt(0);
    failAt(QStringLiteral("remove"), QStringLiteral("work.json"));
    save(data);
    EXPECT_TRUE(has(QStringLiteral("work.json")));
    EXPECT_EQ(written(), metadataOnly);
    files.onOperation = {};
    save(data);
    EXPECT_FALSE(has(QStringLiteral("work.json")));
}

TEST_F(SavingTest, aDamagedFileStaysAndKeepsItsName)
{
    put(QStringLiteral("corrupt.json"), "{ damaged");
    files.makeFolder(path(QStringLiteral("corrupt-1.json")));
    const SyncCollection corrupt = makeCollection(QStringLiteral("c"), QStringLiteral("Corrupt"));
    for (int i = 0; i < 3; ++i) {
        save(makeLibrary({corrupt}, {}));
        settle();
    }
    EXPECT_EQ(get(QStringLiteral("corrupt.json")), "{ damaged");
    EXPECT_TRUE(files.isFolder(path(QStringLiteral("corrupt-1.json"))));
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("corrupt-2.json"))).collection, corrupt);
    EXPECT_EQ(files.order.size(), 5);
}

TEST_F(SavingTest, aFileThatTurnsDamagedIsKeptAndItsCollectionWrittenBesideIt)
{
    const VellumryData data = loadedLibrary();
    put(QStringLiteral("work.json"), "{ damaged");
    save(data);
    EXPECT_EQ(get(QStringLiteral("work.json")), "{ damaged");
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work-1.json"))).collection, work);
}

TEST_F(SavingTest, suffixesAreBuiltFromTheBaseName)
{
    save(makeLibrary({makeCollection(QStringLiteral("1"), QStringLiteral("Work")),
                      makeCollection(QStringLiteral("2"), QStringLiteral("work")),
                      makeCollection(QStringLiteral("3"), QStringLiteral("WORK"))},
                     {w1}));
    EXPECT_EQ(written(),
              (QStringList{QStringLiteral("work.json"), QStringLiteral("work-1.json"),
                           QStringLiteral("work-2.json"), QStringLiteral("_metadata.json")}));
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).snippets.size(), 1);
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work-1.json"))).snippets.size(), 0);
}

TEST_F(SavingTest, aNewNameKeepsTheFile)
{
    VellumryData data = loadedLibrary();
    data.data.collections[0].name = QStringLiteral("Job");
    for (Snippet& snippet : data.data.snippets) {
        if (snippet.collection() == QStringLiteral("Work"))
            snippet.setCollection(QStringLiteral("Job"));
    }
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).collection.name,
              QStringLiteral("Job"));
    EXPECT_EQ(lines().first(), line(QStringLiteral("更新 Collection - Job")));
}

TEST_F(SavingTest, collectionsOfOneNameShareTheirSnippets)
{
    save(makeLibrary({makeCollection(QStringLiteral("1"), QStringLiteral("Work")),
                      makeCollection(QStringLiteral("2"), QStringLiteral("Work"))},
                     {w1, w2}));
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).snippets,
              (QList<Snippet>{w1, w2}));
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work-1.json"))).snippets,
              (QList<Snippet>{w1, w2}));
}

TEST_F(SavingTest, snippetsWithoutACollectionReachNoFile)
{
    const Snippet lost = makeSnippet(QStringLiteral("l"), QStringLiteral("nowhere"));
    save(makeLibrary({work}, {w1, lost}));
    EXPECT_EQ(service().currentData()->data.snippets.size(), 2);
    EXPECT_EQ(service().loadFullData()->data.snippets, QList<Snippet>{w1});
}

TEST_F(SavingTest, aCollectionNamedLikeTheMetadataFileIsLost)
{
    const SyncCollection clash = makeCollection(QStringLiteral("m"), QStringLiteral("_metadata"));
    const VellumryData data =
        makeLibrary({clash}, {makeSnippet(QStringLiteral("s"), QStringLiteral("_metadata"))});
    for (int i = 0; i < 2; ++i) {
        save(data);
        EXPECT_EQ(written(), (QStringList{QStringLiteral("_metadata.json"),
                                          QStringLiteral("_metadata.json")}));
        EXPECT_EQ(decodeMetadataFile(get(QStringLiteral("_metadata.json"))).collectionOrder,
                  QStringList{QStringLiteral("m")});
    }
    EXPECT_TRUE(service().loadFullData()->data.collections.isEmpty());
}

TEST_F(SavingTest, ofTwoFilesWithOneIdTheLaterOfTheListingIsTheCollections)
{
    const VellumryData data = loadedLibrary();
    const QByteArray copy = get(QStringLiteral("work.json"));
    put(QStringLiteral("work (copy).json"), copy);
    VellumryData changed = data;
    changed.data.snippets[0].setUsageCount(5);
    save(changed);
    EXPECT_EQ(written(),
              (QStringList{QStringLiteral("work (copy).json"), QStringLiteral("_metadata.json")}));
    EXPECT_EQ(get(QStringLiteral("work.json")), copy);

    changed.data.collections.removeAt(0);
    save(changed);
    EXPECT_FALSE(has(QStringLiteral("work (copy).json")));
    EXPECT_TRUE(has(QStringLiteral("work.json"))) << "removed by the next save";
    save(changed);
    EXPECT_FALSE(has(QStringLiteral("work.json")));
}

TEST_F(SavingTest, aForeignChangeIsOverwrittenByWhatIsInMemory)
{
    const VellumryData data = loadedLibrary();
    put(QStringLiteral("work.json"), collectionFileBytes(work, {w1}));
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).snippets.size(), 2);
}

TEST_F(SavingTest, aFileRemovedByOthersIsWrittenAnew)
{
    const VellumryData data = loadedLibrary();
    files.take(path(QStringLiteral("work.json")));
    save(data);
    EXPECT_EQ(written(), workAndMetadata);
}

TEST_F(SavingTest, aFailedListingLeavesForeignFilesAndWritesTheRest)
{
    const VellumryData data = loadedLibrary();
    put(QStringLiteral("foreign.json"),
        collectionFileBytes(makeCollection(QStringLiteral("f"), QStringLiteral("F")), {}));
    failAt(QStringLiteral("list"), QString());
    save(data);
    EXPECT_EQ(written(), metadataOnly) << "the files at the derived names say the same";
    EXPECT_TRUE(has(QStringLiteral("foreign.json")));
}

TEST_F(SavingTest, aFailedListingLeavesFilesThatAreNotUnderstood)
{
    put(QStringLiteral("work.json"), "{ damaged");
    files.makeFolder(path(QStringLiteral("work-1.json")));
    put(QStringLiteral("my-notes.json"), "unreadable");
    files.setReadable(path(QStringLiteral("my-notes.json")), false);
    failAt(QStringLiteral("list"), QString());
    save(makeLibrary({work, notes}, {w1, n1}));
    EXPECT_EQ(get(QStringLiteral("work.json")), "{ damaged");
    EXPECT_EQ(get(QStringLiteral("my-notes.json")), "unreadable");
    EXPECT_EQ(written(),
              (QStringList{QStringLiteral("work-2.json"), QStringLiteral("my-notes-1.json"),
                           QStringLiteral("_metadata.json")}));
}

TEST_F(SavingTest, createsAFolderThatVanished)
{
    const VellumryData data = loadedLibrary();
    const QStringList all = files.order;
    for (const QString& gone : all)
        files.take(gone);
    save(data);
    EXPECT_EQ(service().loadFullData()->data.snippets.size(), 4);
}

TEST_F(SavingDeathTest, aDuplicateIdInAComparedFileEndsTheProcess)
{
    VellumryData data = loadedLibrary();
    Snippet other = w1;
    other.setTitle(QStringLiteral("the same id"));
    put(QStringLiteral("work.json"), collectionFileBytes(work, {w1, other}));
    // A difference that is found before ends in a write.
    VellumryData fewer = data;
    fewer.data.snippets.removeAt(0);
    EXPECT_DEATH(save(data), "Duplicate values for key: 'w1'");
    save(fewer);
    EXPECT_EQ(written(), workAndMetadata);
}

TEST_F(SavingDeathTest, theEndComesBeforeAnythingIsWritten)
{
    VellumryData data = loadedLibrary();
    Snippet other = n1;
    other.setTitle(QStringLiteral("the same id"));
    put(QStringLiteral("my-notes.json"), collectionFileBytes(notes, {n1, other}));
    data.data.snippets[0].setTitle(QStringLiteral("changed, in a collection before"));
    files.onOperation = [](const QString& operation, const QString&) {
        if (operation == QStringLiteral("write"))
            std::_Exit(2);
    };
    EXPECT_EXIT(save(data), testing::ExitedWithCode(1), "Duplicate values for key: 'n1'");
}

TEST_F(SavingDeathTest, ownDuplicatesEndTheProcessAtTheNextComparison)
{
    const VellumryData data = makeLibrary({work}, {w1, w1});
    save(data);
    EXPECT_DEATH(save(data), "Duplicate values for key: 'w1'");
}

TEST_F(SavingDeathTest, unsharedDuplicatesOfALoadEndTheProcessToo)
{
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    put(QStringLiteral("work.json"), collectionFileBytes(work, {w2, w1, w1}));
    settle();
    const VellumryData data = *service().loadFullData();
    EXPECT_EQ(data.data.snippets.size(), 3);
    EXPECT_DEATH(save(data), "Duplicate values for key: 'w1'");
}

TEST_F(SavingTest, ofTwoCollectionsWithOneIdTheFileHoldsTheSecond)
{
    SyncCollection second = work;
    second.name = QStringLiteral("Second");
    const Snippet s1 = makeSnippet(QStringLiteral("s1"), QStringLiteral("Second"));
    save(makeLibrary({second}, {s1}));
    settle();
    save(makeLibrary({work, second}, {w1, s1}));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("second.json"))).collection.name,
              QStringLiteral("Second"));
}

// Failures

TEST_F(SavingTest, aFailedWriteThrowsAndKeepsWhatIsInMemory)
{
    const VellumryData data = loadedLibrary();
    VellumryData changed = data;
    for (Snippet& snippet : changed.data.snippets)
        snippet.setUsageCount(9);
    const auto saveTime = service().lastSaveTime();
    const QByteArray notesBefore = get(QStringLiteral("my-notes.json"));
    const QByteArray metadataBefore = get(QStringLiteral("_metadata.json"));
    QSignalSpy announced(&world.notifications, &NotificationCenter::syncDataDidSave);
    const FileError cause = failAt(QStringLiteral("write"), QStringLiteral("my-notes.json"));
    std::optional<StorageError> failure;
    try {
        save(changed);
    } catch (const StorageError& error) {
        failure = error;
    }
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), cause.description());
    EXPECT_EQ(QByteArray(failure->what()), failure->description().toUtf8());
    EXPECT_EQ(written(), QStringList{QStringLiteral("work.json")}) << "stays written";
    EXPECT_EQ(get(QStringLiteral("my-notes.json")), notesBefore);
    EXPECT_EQ(get(QStringLiteral("_metadata.json")), metadataBefore);
    EXPECT_EQ(service().currentData(), data);
    EXPECT_EQ(service().lastSaveTime(), saveTime);
    EXPECT_FALSE(service().lastError()) << "the caller records it";
    EXPECT_EQ(announced.count(), 0);
    EXPECT_FALSE(service().isSaving());
    EXPECT_EQ(lines(), QStringList{line(QStringLiteral("更新 Collection - Work"))});

    files.onOperation = {};
    save(changed);
    EXPECT_EQ(written(),
              (QStringList{QStringLiteral("my-notes.json"), QStringLiteral("_metadata.json")}))
        << "the next save completes the rest";
}

TEST_F(SavingTest, aMetadataFileThatCannotBeWrittenFailsTheSave)
{
    const VellumryData data = loadedLibrary();
    failAt(QStringLiteral("write"), QStringLiteral("_metadata.json"));
    EXPECT_THROW(save(data), StorageError);
}

TEST_F(SavingTest, isSavingHoldsDuringASaveAndIsWritingASecondLonger)
{
    std::vector<bool> saving;
    QObject::connect(&service(), &CollectionFileStorageService::isSavingChanged, &service(),
                     [&] { saving.push_back(service().isSaving()); });
    bool wasWriting = false;
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == QLatin1StringView("write"))
            wasWriting = service().isWriting();
    };
    save(makeLibrary({}, {}));
    EXPECT_EQ(saving, (std::vector{true, false}));
    EXPECT_TRUE(wasWriting);
    EXPECT_TRUE(service().isWriting());
    world.scheduler.advance(999ms);
    EXPECT_TRUE(service().isWriting());
    world.scheduler.advance(1ms);
    EXPECT_FALSE(service().isWriting());
}

TEST_F(SavingTest, isWritingFallsAfterAFailedSaveToo)
{
    failAt(QStringLiteral("write"), QString());
    EXPECT_THROW(save(makeLibrary({}, {})), StorageError);
    EXPECT_FALSE(service().isSaving());
    EXPECT_TRUE(service().isWriting());
    world.scheduler.advance(1s);
    EXPECT_FALSE(service().isWriting());
}

TEST_F(SavingTest, everySaveHasAResetOfItsOwn)
{
    save(makeLibrary({}, {}));
    world.scheduler.advance(600ms);
    save(makeLibrary({}, {}));
    EXPECT_EQ(world.scheduler.pending(), 2u);
    world.scheduler.advance(400ms);
    EXPECT_FALSE(service().isWriting()) << "the first reset ends the guard of the second save";
}

TEST_F(SavingTest, aServiceThatIsGoneIsNotReset)
{
    save(makeLibrary({}, {}));
    world.restart();
    world.scheduler.advance(2s);
    EXPECT_FALSE(service().isWriting());
}

// Snippets

TEST_F(SavingTest, snippetsComeFromTheCacheOrFromALoad)
{
    loadedLibrary();
    world.restart();
    EXPECT_EQ(service().loadSnippets().size(), 4);
    files.opened.clear();
    files.take(path(QStringLiteral("work.json")));
    EXPECT_EQ(service().loadSnippets().size(), 4) << "the cache";
    EXPECT_TRUE(files.opened.isEmpty());
}

TEST_F(SavingTest, withoutALibraryThereAreNoSnippets)
{
    EXPECT_TRUE(service().loadSnippets().isEmpty());
}

TEST_F(SavingTest, savingSnippetsKeepsTheCollections)
{
    loadedLibrary();
    EXPECT_TRUE(service().saveSnippets({w1}));
    EXPECT_EQ(service().currentData()->data.collections.size(), 2);
    EXPECT_EQ(service().currentData()->data.snippets, QList<Snippet>{w1});
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("my-notes.json"))).snippets.size(), 0);
}

TEST_F(SavingTest, savingSnippetsWithoutALibraryRemovesEveryDecodableFile)
{
    loadedLibrary();
    put(QStringLiteral("damaged.json"), "damaged");
    world.restart();
    EXPECT_TRUE(service().saveSnippets({w1}));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    EXPECT_FALSE(has(QStringLiteral("my-notes.json")));
    EXPECT_TRUE(has(QStringLiteral("damaged.json")));
    const auto data = service().currentData();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->version, QStringLiteral("3.0"));
    EXPECT_EQ(data->lastModified, world.clock.now());
    EXPECT_TRUE(data->data.collections.isEmpty());
    EXPECT_EQ(data->data.snippets, QList<Snippet>{w1});
    EXPECT_EQ(data->settings, std::nullopt);
}

TEST_F(SavingTest, aFailureToSaveSnippetsIsRecordedAndAGoodSaveClearsIt)
{
    loadedLibrary();
    QSignalSpy changes(&service(), &CollectionFileStorageService::lastErrorChanged);
    const FileError cause = failAt(QStringLiteral("write"), QStringLiteral("_metadata.json"));
    EXPECT_FALSE(service().saveSnippets(service().loadSnippets()));
    ASSERT_TRUE(service().lastError());
    EXPECT_EQ(service().lastError()->description(), cause.description());
    EXPECT_EQ(changes.count(), 1);
    files.onOperation = {};
    EXPECT_TRUE(service().saveSnippets(service().loadSnippets()));
    EXPECT_FALSE(service().lastError());
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(SavingTest, aUseIsCountedInOneFileAndTheMetadata)
{
    loadedLibrary();
    EXPECT_TRUE(service().incrementUsage(QStringLiteral("w2"), world.clock));
    EXPECT_EQ(written(), workAndMetadata);
    const CollectionFileData file = decodeCollectionFile(get(QStringLiteral("work.json")));
    EXPECT_EQ(file.snippets[1].usageCount(), 1);
    EXPECT_EQ(file.snippets[1].lastUsedAt(), world.clock.now());
    EXPECT_EQ(file.snippets[1].updatedAt(), w2.updatedAt());
    EXPECT_TRUE(files.opened.isEmpty());
}

TEST_F(SavingTest, aUseOfAnUnknownSnippetWritesNothing)
{
    loadedLibrary();
    EXPECT_FALSE(service().incrementUsage(QStringLiteral("nobody"), world.clock));
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(SavingTest, aChangeOfLocationDoesNotClearTheLibraryInMemory)
{
    loadedLibrary();
    world.locations.setCustomLocation(QStringLiteral("/other"));
    EXPECT_EQ(service().loadSnippets().size(), 4);
    EXPECT_TRUE(service().saveSnippets(service().loadSnippets()));
    EXPECT_TRUE(files.exists(QStringLiteral("/other/work.json")));
}

// Single files

TEST_F(SavingTest, deletesTheFileOfACollection)
{
    const VellumryData data = loadedLibrary();
    put(QStringLiteral("_metadata.json"),
        metadataFileBytes({QStringLiteral("w"), QStringLiteral("n"), QStringLiteral("w")},
                          SyncSettings{.version = 1, .syncAppSettings = false},
                          QStringLiteral("9.9")));
    service().deleteCollectionFile(QStringLiteral("w"));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    const MetadataFileData metadata = decodeMetadataFile(get(QStringLiteral("_metadata.json")));
    EXPECT_EQ(metadata.collectionOrder, QStringList{QStringLiteral("n")});
    EXPECT_EQ(metadata.version, QStringLiteral("9.9")) << "as it stood";
    EXPECT_TRUE(metadata.settings.has_value());
    EXPECT_EQ(metadata.lastModified, world.clock.now());
    EXPECT_EQ(service().currentData(), data) << "the caller's business";
    EXPECT_EQ(lines(), QStringList{line(QStringLiteral("删除 Collection 文件 - work"))});
}

TEST_F(SavingTest, deletingOrRenamingDoesNotRaiseTheGuard)
{
    loadedLibrary();
    world.scheduler.advance(2s);
    service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("Job"));
    service().deleteCollectionFile(QStringLiteral("w"));
    EXPECT_FALSE(service().isWriting());
}

TEST_F(SavingTest, deletesOnlyTheFirstOfTwoFilesWithOneId)
{
    loadedLibrary();
    put(QStringLiteral("copy.json"), get(QStringLiteral("work.json")));
    service().deleteCollectionFile(QStringLiteral("w"));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    EXPECT_TRUE(has(QStringLiteral("copy.json")));
}

TEST_F(SavingTest, deletingAnUnknownCollectionDoesNothing)
{
    loadedLibrary();
    put(QStringLiteral("damaged.json"), "damaged");
    service().deleteCollectionFile(QStringLiteral("nobody"));
    EXPECT_TRUE(written().isEmpty());
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_EQ(files.order.size(), 5);
}

TEST_F(SavingTest, aDeletionFailsWithItsSteps)
{
    loadedLibrary();
    for (const char* step : {"list", "remove", "write"}) {
        failAt(QLatin1StringView(step), QString());
        EXPECT_THROW(service().deleteCollectionFile(QStringLiteral("w")), StorageError) << step;
    }
    EXPECT_TRUE(lines().isEmpty());
}

TEST_F(SavingTest, aBadMetadataFileIsReplacedByADeletion)
{
    loadedLibrary();
    put(QStringLiteral("_metadata.json"), "damaged");
    service().deleteCollectionFile(QStringLiteral("w"));
    const MetadataFileData metadata = decodeMetadataFile(get(QStringLiteral("_metadata.json")));
    EXPECT_EQ(metadata.version, QStringLiteral("3.1"));
    EXPECT_TRUE(metadata.collectionOrder.isEmpty());
    EXPECT_EQ(metadata.settings, std::nullopt);
}

TEST_F(SavingTest, renamesTheFileOfACollection)
{
    const VellumryData data = loadedLibrary();
    const QByteArray bytes = get(QStringLiteral("work.json"));
    const Date later = world.clock.now();
    service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("My Notes"));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
    EXPECT_EQ(get(QStringLiteral("my-notes-1.json")), bytes) << "only the name changes";
    EXPECT_EQ(written(), metadataOnly);
    EXPECT_EQ(decodeMetadataFile(get(QStringLiteral("_metadata.json"))).lastModified, later);
    EXPECT_EQ(decodeMetadataFile(get(QStringLiteral("_metadata.json"))).collectionOrder,
              (QStringList{QStringLiteral("w"), QStringLiteral("n")}));
    EXPECT_EQ(service().currentData(), data);
    EXPECT_EQ(lines(),
              QStringList{line(QStringLiteral("重命名 Collection 文件 - work -> my-notes-1"))});
}

TEST_F(SavingTest, aRenameToTheSameNameFailsAndLeavesTheMetadata)
{
    loadedLibrary();
    const QByteArray metadata = get(QStringLiteral("_metadata.json"));
    EXPECT_THROW(service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("WORK")),
                 StorageError);
    EXPECT_TRUE(has(QStringLiteral("work.json")));
    EXPECT_EQ(get(QStringLiteral("_metadata.json")), metadata);
    EXPECT_TRUE(written().isEmpty());
    EXPECT_TRUE(lines().isEmpty());
}

TEST_F(SavingTest, aRenameStepsAroundDamagedFilesAndFolders)
{
    loadedLibrary();
    put(QStringLiteral("job.json"), "damaged");
    files.makeFolder(path(QStringLiteral("job-1.json")));
    service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("Job"));
    EXPECT_TRUE(has(QStringLiteral("job-2.json")));
    EXPECT_EQ(get(QStringLiteral("job.json")), "damaged");
}

TEST_F(SavingTest, renamesTheLastOfTwoFilesWithOneId)
{
    loadedLibrary();
    put(QStringLiteral("copy.json"), get(QStringLiteral("work.json")));
    service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("Job"));
    EXPECT_TRUE(has(QStringLiteral("work.json")));
    EXPECT_FALSE(has(QStringLiteral("copy.json")));
    EXPECT_TRUE(has(QStringLiteral("job.json")));
}

TEST_F(SavingTest, renamingAnUnknownCollectionDoesNothing)
{
    loadedLibrary();
    service().renameCollectionFile(QStringLiteral("nobody"), QStringLiteral("Job"));
    EXPECT_TRUE(written().isEmpty());
    EXPECT_TRUE(lines().isEmpty());
}

TEST_F(SavingTest, aRenameFailsWithItsSteps)
{
    loadedLibrary();
    for (const char* step : {"list", "move", "write"}) {
        failAt(QLatin1StringView(step), QString());
        EXPECT_THROW(service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("Job")),
                     StorageError)
            << step;
    }
}

TEST_F(SavingTest, aSaveAfterARenameWritesTheNewNameIntoTheMovedFile)
{
    VellumryData data = loadedLibrary();
    service().renameCollectionFile(QStringLiteral("w"), QStringLiteral("Job"));
    written();
    data.data.collections[0].name = QStringLiteral("Job");
    for (Snippet& snippet : data.data.snippets) {
        if (snippet.collection() == QStringLiteral("Work"))
            snippet.setCollection(QStringLiteral("Job"));
    }
    save(data);
    EXPECT_EQ(written(),
              (QStringList{QStringLiteral("job.json"), QStringLiteral("_metadata.json")}));
    EXPECT_FALSE(has(QStringLiteral("work.json")));
}

} // namespace
