// The list model's collections.

#include "library/LibraryWorld.h"
#include "storage/MemoryFileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class CollectionOperations : public testing::Test {
protected:
    /// "Work" holds a and b, "Home" holds c.
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 0), orderedSnippet(u"b"_s, u"Work"_s, 1),
                    orderedSnippet(u"c"_s, u"Home"_s, 0)});
        QObject::connect(&world.notifications, &NotificationCenter::collectionsDidChange, &model,
                         [this](const QString& oldName, const QString& newName) {
                             posted.append(oldName + u" -> "_s + newName);
                         });
    }

    void draftInto(const QString& id, const QString& collection)
    {
        model.setUnsavedEdit(inCollection(world.snippet(id), collection));
    }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
    QStringList posted;
};

using Collections = CollectionOperations;
using SnippetCount = CollectionOperations;
using IsCollectionNameAvailable = CollectionOperations;
using CreateEmptyCollection = CollectionOperations;
using RenameCollection = CollectionOperations;
using DeleteCollection = CollectionOperations;
using MoveCollections = CollectionOperations;

// The names

TEST_F(Collections, AreTheNamesInOrder)
{
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(Collections, CreateThoseThatOnlySnippetsNameInAscendingOrder)
{
    draftInto(u"a"_s, u"b"_s);
    draftInto(u"b"_s, u"a"_s);
    draftInto(u"c"_s, u"B"_s);
    EXPECT_EQ(world.modelNames().size(), 2);
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s, u"B"_s, u"a"_s, u"b"_s));
    EXPECT_EQ(world.modelNames(), model.collections());
    const Collection& first = model.collectionModels().at(2);
    EXPECT_EQ(first.id, u"new-1"_s);
    EXPECT_EQ(first.displayOrder, 2);
    EXPECT_EQ(first.createdAt, world.clock.now());
    // One save for each; the draft itself is not in it.
    EXPECT_EQ(world.storage.saves(), 3);
    EXPECT_EQ(world.storage.stored->data.collections.size(), 5);
    EXPECT_EQ(world.storage.stored->data.snippets.first().collection(), u"Work"_s);
}

TEST_F(Collections, CreateANameThatIsNotTrimmed)
{
    draftInto(u"a"_s, u" Work\n"_s);
    draftInto(u"b"_s, u""_s);
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s, u""_s, u" Work\n"_s));
}

TEST_F(Collections, AnnounceWhatTheReadCreates)
{
    draftInto(u"a"_s, u"New"_s);
    (void)world.announced.take();
    QStringList withinAnnouncement;
    QObject::connect(&model, &SnippetListViewModel::collectionModelsChanged, &model,
                     [&] { withinAnnouncement = model.collections(); });
    const QStringList names = model.collections();
    EXPECT_EQ(withinAnnouncement, names);
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"collectionModels"_s, 1}}));
}

TEST_F(Collections, StayWhenTheirLastSnippetIsDeleted)
{
    model.requestDelete(u"c"_s);
    model.confirmDelete();
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s));
}

TEST_F(Collections, AreNotCreatedForAnOrphanedDraft)
{
    model.setUnsavedEdit(makeSnippet(u"?"_s, u"Nowhere"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s));
}

TEST_F(SnippetCount, FollowsDraftsAtOnce)
{
    EXPECT_EQ(model.snippetCount(u"Work"_s), 2);
    draftInto(u"a"_s, u"Home"_s);
    EXPECT_EQ(model.snippetCount(u"Work"_s), 1);
    EXPECT_EQ(model.snippetCount(u"Home"_s), 2);
    EXPECT_EQ(model.snippetCount(u"home"_s), 0);
    model.clearUnsavedEdit(u"a"_s);
    EXPECT_EQ(model.snippetCount(u"Work"_s), 2);
}

// Names

TEST_F(IsCollectionNameAvailable, LooksPastCaseAndBlanksAround)
{
    EXPECT_FALSE(model.isCollectionNameAvailable(u"WORK"_s));
    EXPECT_FALSE(model.isCollectionNameAvailable(u"\t work\u00a0\u2003"_s));
    EXPECT_TRUE(model.isCollectionNameAvailable(u"Work 2"_s));
}

TEST_F(IsCollectionNameAvailable, DoesNotTrimTheNamesThatExist)
{
    draftInto(u"a"_s, u" Blank"_s);
    (void)model.collections();
    EXPECT_TRUE(model.isCollectionNameAvailable(u" Blank"_s));
}

TEST_F(IsCollectionNameAvailable, RefusesBlanksAndKeepsLineBreaks)
{
    EXPECT_FALSE(model.isCollectionNameAvailable(u""_s));
    EXPECT_FALSE(model.isCollectionNameAvailable(u" \t\u3000"_s));
    EXPECT_TRUE(model.isCollectionNameAvailable(u"\n"_s));
    EXPECT_TRUE(model.isCollectionNameAvailable(u"Work\n"_s));
}

TEST_F(CreateEmptyCollection, TrimsTheNameAndSelectsIt)
{
    EXPECT_TRUE(model.createEmptyCollection(u" \tNew\u00a0 "_s));
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s, u"New"_s));
    const Collection& made = model.collectionModels().last();
    EXPECT_EQ(made.id, u"new-1"_s);
    EXPECT_EQ(made.displayOrder, 2);
    EXPECT_EQ(made.createdAt, world.clock.now());
    EXPECT_EQ(model.selectedCollection(), u"New"_s);
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(CreateEmptyCollection, KeepsLineBreaks)
{
    EXPECT_TRUE(model.createEmptyCollection(u" New\n "_s));
    EXPECT_EQ(model.selectedCollection(), u"New\n"_s);
}

TEST_F(CreateEmptyCollection, RefusesBlanksAndTheNameThatExists)
{
    EXPECT_FALSE(model.createEmptyCollection(u" \t"_s));
    EXPECT_FALSE(model.createEmptyCollection(u""_s));
    EXPECT_FALSE(model.createEmptyCollection(u" Work "_s));
    EXPECT_EQ(world.modelNames().size(), 2);
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(CreateEmptyCollection, AllowsANameThatDiffersInCaseAlone)
{
    EXPECT_FALSE(model.isCollectionNameAvailable(u"WORK"_s));
    EXPECT_TRUE(model.createEmptyCollection(u"WORK"_s));
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s, u"WORK"_s));
}

TEST_F(CreateEmptyCollection, LeavesUnsavedSelected)
{
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    model.selectUnsaved();
    EXPECT_TRUE(model.createEmptyCollection(u"New"_s));
    EXPECT_TRUE(model.isFilteringUnsaved());
    // The snapshot is that of the drafts, and the collection hides them all.
    EXPECT_THAT(model.frozenSnippetOrder(), ElementsAre(u"a"_s));
    EXPECT_THAT(world.shown(), IsEmpty());
    draftInto(u"a"_s, u"New"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

// Renaming

TEST_F(RenameCollection, ChangesSnippetsColourAndSelectionAndTells)
{
    world.colors.saveColors({{u"Work"_s, u"mint"_s}});
    model.selectCollection(u"Work"_s);
    world.clock.advance(std::chrono::seconds(1));
    model.renameCollection(u"Work"_s, u" Job\t"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Job"_s, u"Home"_s));
    EXPECT_EQ(model.collectionModels().first().id, u"W"_s);
    for (const QString& id : {u"a"_s, u"b"_s}) {
        EXPECT_EQ(world.snippet(id).collection(), u"Job"_s);
        EXPECT_EQ(world.snippet(id).updatedAt(), world.clock.now());
    }
    EXPECT_EQ(world.snippet(u"c"_s).updatedAt(), dateAt(1));
    EXPECT_EQ(world.colors.loadColors(), (QMap<QString, QString>{{u"Job"_s, u"#00C6BF"_s}}));
    EXPECT_EQ(model.selectedCollection(), u"Job"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"b"_s));
    EXPECT_THAT(posted, ElementsAre(u"Work -> Job"_s));
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"rename W to Job"_s));
}

TEST_F(RenameCollection, TellsWhenEverythingIsDoneAndAnnounced)
{
    (void)world.announced.take();
    QMap<QString, int> before;
    QObject::connect(&world.notifications, &NotificationCenter::collectionsDidChange, &model,
                     [&] { before = world.announced.take(); });
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_EQ(before.value(u"snippets"_s), 1);
    EXPECT_EQ(before.value(u"collectionModels"_s), 1);
    EXPECT_TRUE(world.announced.take().isEmpty());
}

TEST_F(RenameCollection, SavesBeforeTheColourMoves)
{
    world.colors.saveColors({{u"Work"_s, u"#112233"_s}});
    model.renameCollection(u"Work"_s, u"Job"_s);
    const QString gray = toHex(CategoryColorService::presetColors().front().color);
    EXPECT_EQ(world.storage.stored->data.collections.first().color, gray);
    model.saveAllData();
    EXPECT_EQ(world.storage.stored->data.collections.first().color, u"#112233"_s);
}

TEST_F(RenameCollection, WithoutAColourStoresTheGray)
{
    model.renameCollection(u"Work"_s, u"Job"_s);
    const QString gray = toHex(CategoryColorService::presetColors().front().color);
    EXPECT_EQ(world.colors.loadColors(), (QMap<QString, QString>{{u"Job"_s, gray}}));
}

TEST_F(RenameCollection, DoesNothingForTheSameNameOrBlanks)
{
    model.renameCollection(u"Work"_s, u" Work\t"_s);
    model.renameCollection(u"Work"_s, u" \u2003"_s);
    model.renameCollection(u"Work"_s, u""_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_THAT(posted, IsEmpty());
    EXPECT_TRUE(world.colors.loadColors().isEmpty());
}

TEST_F(RenameCollection, KeepsLineBreaksOfTheNewName)
{
    model.renameCollection(u"Work"_s, u"Work\n"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work\n"_s, u"Home"_s));
}

TEST_F(RenameCollection, OntoAnExistingNameMergesByNameAndTakesTheFirstModel)
{
    model.renameCollection(u"Home"_s, u"Work"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Work"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Work"_s));
    EXPECT_EQ(model.snippetCount(u"Work"_s), 3);
    // The file of the first one of that name is renamed, which is not the one that was Home.
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"rename W to Work"_s));
}

TEST_F(RenameCollection, OfAnUnknownNameMovesTheColourAndTells)
{
    model.renameCollection(u"Nowhere"_s, u"Else"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s));
    EXPECT_TRUE(world.colors.loadColors().contains(u"Else"_s));
    EXPECT_THAT(posted, ElementsAre(u"Nowhere -> Else"_s));
}

TEST_F(RenameCollection, BringsTheOldOneBackThroughADraft)
{
    const Snippet draft = titled(world.snippet(u"a"_s), u"draft"_s);
    model.setUnsavedEdit(draft);
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_EQ(model.unsavedEdits().value(u"a"_s), draft);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Job"_s, u"Home"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Job"_s, u"Home"_s, u"Work"_s));
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Job"_s, u"Home"_s, u"Work"_s));
}

TEST_F(RenameCollection, GoesOnWhenTheFileCannotBeRenamed)
{
    world.storage.fails = [](qsizetype) { return true; };
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Job"_s, u"Home"_s));
    EXPECT_THAT(posted, ElementsAre(u"Work -> Job"_s));
}

TEST_F(RenameCollection, TakesTheNameOfTheModelItself)
{
    model.selectCollection(u"Work"_s);
    model.renameCollection(model.collectionModels().first().name, u"Job"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Job"_s, u"Home"_s));
    EXPECT_EQ(model.selectedCollection(), u"Job"_s);
    model.renameCollection(*model.selectedCollection(), u"Task"_s);
    EXPECT_THAT(posted, ElementsAre(u"Work -> Job"_s, u"Job -> Task"_s));
    EXPECT_EQ(world.colors.loadColors().keys(), QStringList{u"Task"_s});
}

TEST_F(RenameCollection, KeepsAnotherSelection)
{
    model.selectCollection(u"Home"_s);
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s));
}

// Deleting

TEST_F(DeleteCollection, TakesItsSnippetsDraftsFileAndColour)
{
    world.colors.saveColors({{u"Work"_s, u"mint"_s}, {u"Home"_s, u"red"_s}});
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    model.setUnsavedEdit(titled(world.snippet(u"c"_s), u"draft"_s));
    model.deleteCollection(u"Work"_s);
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"c"_s));
    EXPECT_THAT(model.unsavedEdits().keys(), ElementsAre(u"c"_s));
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Home"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s));
    EXPECT_THAT(world.storage.calls, ElementsAre(u"delete W"_s, u"save"_s));
    EXPECT_EQ(world.colors.loadColors(), (QMap<QString, QString>{{u"Home"_s, u"red"_s}}));
    EXPECT_THAT(posted, IsEmpty());
}

TEST_F(DeleteCollection, LeavesAllSnippetsSelectedAndNothingOpen)
{
    model.selectCollection(u"Work"_s);
    model.setSelectedSnippetID(u"a"_s);
    model.deleteCollection(u"Work"_s);
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_FALSE(model.selectedSnippetID());
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s));
}

TEST_F(DeleteCollection, TakesTheNameOfTheModelItself)
{
    world.colors.saveColors({{u"Work"_s, u"mint"_s}, {u"Home"_s, u"red"_s}});
    model.deleteCollection(model.collectionModels().first().name);
    model.selectCollection(u"Home"_s);
    model.deleteCollection(*model.selectedCollection());
    model.createSnippet();
    world.storage.stored.reset();
    model.deleteCollection(model.snippets().first().collection());
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_TRUE(model.collectionModels().isEmpty());
    EXPECT_TRUE(world.colors.loadColors().isEmpty());
}

TEST_F(DeleteCollection, KeepsASelectionElsewhere)
{
    model.selectCollection(u"Home"_s);
    model.setSelectedSnippetID(u"c"_s);
    model.deleteCollection(u"Work"_s);
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_EQ(model.selectedSnippetID(), u"c"_s);
}

TEST_F(DeleteCollection, GoesByTheStoredCollectionAndBringsTheNameBackThroughADraft)
{
    draftInto(u"c"_s, u"Work"_s);
    draftInto(u"a"_s, u"Home"_s);
    model.deleteCollection(u"Work"_s);
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"c"_s));
    EXPECT_THAT(model.unsavedEdits().keys(), ElementsAre(u"c"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Home"_s, u"Work"_s));
}

TEST_F(DeleteCollection, GoesOnWhenTheFileCannotBeDeleted)
{
    world.storage.fails = [](qsizetype) { return true; };
    model.deleteCollection(u"Work"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Home"_s));
}

TEST_F(DeleteCollection, RemovesEveryModelOfItsId)
{
    world.load({makeCollection(u"1"_s, u"A"_s), makeCollection(u"1"_s, u"B"_s),
                makeCollection(u"2"_s, u"A"_s)},
               {});
    model.deleteCollection(u"A"_s);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"A"_s));
    EXPECT_EQ(model.collectionModels().first().id, u"2"_s);
}

TEST_F(DeleteCollection, OfAnUnknownNameSaves)
{
    model.deleteCollection(u"Nowhere"_s);
    EXPECT_EQ(model.snippets().size(), 3);
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s));
}

TEST_F(MoveCollections, NumbersThemAndSavesEachStep)
{
    model.moveCollections({1}, 0);
    EXPECT_THAT(model.collections(), ElementsAre(u"Home"_s, u"Work"_s));
    EXPECT_EQ(model.collectionModels().first().displayOrder, 0);
    EXPECT_EQ(model.collectionModels().last().displayOrder, 1);
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_THAT(idsOf(world.storage.stored->data.collections), ElementsAre(u"H"_s, u"W"_s));
    model.moveCollections({1}, 1);
    EXPECT_EQ(world.storage.saves(), 2);
    model.loadSnippets();
    EXPECT_THAT(model.collections(), ElementsAre(u"Home"_s, u"Work"_s));
}

// With the real store

/// A list model over collection files.
class OverFiles : public testing::Test {
protected:
    void SetUp() override
    {
        files.makeFolder(world.folder);
        files.replace(world.path(u"_metadata.json"_s), metadataFileBytes({u"W"_s}));
    }

    [[nodiscard]] QList<Snippet> onDisk()
    {
        return decodeCollectionFile(files.bytes(world.path(u"Work.json"_s))).snippets;
    }

    LogCapture log;
    MemoryFileSystem files;
    StorageWorld world{files, u"/data"_s};
    FuzzySearchService search;
    SnippetListViewModel model{
        {world.service(), search, world.colors, world.notifications, world.scheduler, world.clock}};
};

TEST_F(OverFiles, NumbersAloneStayOffTheDiskUntilSomethingElseOfTheFileChanges)
{
    const QString gray = toHex(CategoryColorService::presetColors().front().color);
    files.replace(world.path(u"Work.json"_s),
                  collectionFileBytes(makeCollection(u"W"_s, u"Work"_s, gray),
                                      {orderedSnippet(u"a"_s, u"Work"_s, 5, 2),
                                       orderedSnippet(u"b"_s, u"Work"_s, {}, 1)}));
    model.loadSnippets();
    EXPECT_EQ(model.effectiveSnippet(u"b"_s)->displayOrder(), 0);
    EXPECT_EQ(onDisk().at(0).displayOrder(), 5);
    EXPECT_FALSE(onDisk().at(1).displayOrder());

    model.incrementUsage(u"a"_s);
    EXPECT_EQ(onDisk().at(0).displayOrder(), 1);
    EXPECT_EQ(onDisk().at(1).displayOrder(), 0);
}

TEST_F(OverFiles, RenamesTheFileAndWritesTheNameIntoIt)
{
    files.replace(world.path(u"Work.json"_s),
                  collectionFileBytes(makeCollection(u"W"_s, u"Work"_s),
                                      {orderedSnippet(u"a"_s, u"Work"_s, 0)}));
    model.loadSnippets();
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_FALSE(files.exists(world.path(u"Work.json"_s)));
    const auto file = decodeCollectionFile(files.bytes(world.path(u"job.json"_s)));
    EXPECT_EQ(file.collection.name, u"Job"_s);
    EXPECT_EQ(file.snippets.first().collection(), u"Job"_s);
    model.deleteCollection(u"Job"_s);
    EXPECT_FALSE(files.exists(world.path(u"job.json"_s)));
}

} // namespace
} // namespace vellumry::test
