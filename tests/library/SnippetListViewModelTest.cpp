// The list, its order, loading, and the operations on snippets.

#include "library/LibraryWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class SnippetListViewModelTest : public testing::Test {
protected:
    /// "Work" holds a, b and c, "Home" holds d; in All Snippets: a, d, b, c.
    void loadFour()
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 0), orderedSnippet(u"b"_s, u"Work"_s, 1),
                    orderedSnippet(u"c"_s, u"Work"_s, 2), orderedSnippet(u"d"_s, u"Home"_s, 0)});
    }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
};

using Fresh = SnippetListViewModelTest;
using Order = SnippetListViewModelTest;
using FilteredSnippets = SnippetListViewModelTest;
using LoadSnippets = SnippetListViewModelTest;
using RefreshData = SnippetListViewModelTest;
using SaveAllData = SnippetListViewModelTest;
using CreateSnippet = SnippetListViewModelTest;
using DuplicateSnippet = SnippetListViewModelTest;
using UpdateSnippet = SnippetListViewModelTest;
using DeleteSnippet = SnippetListViewModelTest;
using IncrementUsage = SnippetListViewModelTest;
using MoveSnippets = SnippetListViewModelTest;
using MoveSelection = SnippetListViewModelTest;
using OutsideChange = SnippetListViewModelTest;
using Announcing = SnippetListViewModelTest;

TEST_F(Fresh, HasLoadedNothing)
{
    world.storage.stored = makeLibrary({}, {orderedSnippet(u"a"_s, u"Work"_s, 0)});
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_TRUE(model.snippets().isEmpty());
    EXPECT_TRUE(model.collectionModels().isEmpty());
    EXPECT_TRUE(model.filteredSnippets().isEmpty());
    EXPECT_FALSE(model.isFilteringUnsaved());
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_FALSE(model.selectedSnippetID());
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_FALSE(model.showDeleteConfirmation());
    EXPECT_FALSE(model.snippetIDToDelete());
    EXPECT_FALSE(model.newlyCreatedSnippetID());
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_FALSE(model.showImportPicker());
    EXPECT_FALSE(model.showExportPicker());
    EXPECT_FALSE(model.showExportCollectionPicker());
    EXPECT_TRUE(model.selectedCollectionsToExport().isEmpty());
    EXPECT_FALSE(model.importResult());
    EXPECT_FALSE(model.showImportConflictDialog());
    EXPECT_FALSE(model.conflictDetectionResult());
    EXPECT_FALSE(model.pendingImportData());
    EXPECT_EQ(model.selectedConflictResolutionMode(), ConflictResolutionMode::smartUpdate);
}

// The order

TEST_F(Order, IsThatOfTheNumbersAcrossCollections)
{
    loadFour();
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"d"_s, u"b"_s, u"c"_s));
}

TEST_F(Order, KeepsEqualNumbersInTheOrderOfTheLibraryAndMissingOnesLast)
{
    world.load({}, {orderedSnippet(u"x"_s, u"W"_s, 5), orderedSnippet(u"y"_s, u"W"_s, 5),
                    orderedSnippet(u"z"_s, u"W"_s, 1), orderedSnippet(u"n"_s, u"W"_s, 9)});
    EXPECT_THAT(world.shown(), ElementsAre(u"z"_s, u"x"_s, u"y"_s, u"n"_s));
    Snippet draft = world.snippet(u"z"_s);
    draft.setDisplayOrder(std::nullopt);
    model.setUnsavedEdit(draft);
    model.setSearchText(u"x"_s);
    model.setSearchText({});
    EXPECT_THAT(world.shown(), ElementsAre(u"x"_s, u"y"_s, u"n"_s, u"z"_s));
}

TEST_F(Order, OfASearchIsThatOfItsResult)
{
    world.load({}, {titled(orderedSnippet(u"a"_s, u"W"_s, 0), u"old alpha"_s),
                    titled(orderedSnippet(u"b"_s, u"W"_s, 1), u"beta"_s),
                    titled(orderedSnippet(u"c"_s, u"W"_s, 2), u"alpha"_s)});
    model.setSearchText(u"alpha"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"a"_s));
}

TEST_F(Order, OfALoneBlankIsASearchTooAndThusTheNewestFirst)
{
    Snippet older = orderedSnippet(u"older"_s, u"W"_s, 0);
    Snippet newer = orderedSnippet(u"newer"_s, u"W"_s, 1);
    newer.setUpdatedAt(dateAt(99));
    world.load({}, {older, newer});
    EXPECT_THAT(world.shown(), ElementsAre(u"older"_s, u"newer"_s));
    model.setSearchText(u" "_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"newer"_s, u"older"_s));
}

TEST_F(Order, SearchesWithinTheSelectedCollection)
{
    loadFour();
    model.selectCollection(u"Home"_s);
    model.setSearchText(u"title"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"d"_s));
    model.setSearchText(u"nowhere"_s);
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_THAT(model.frozenSnippetOrder(), IsEmpty());
}

TEST_F(Order, ComparesCollectionNamesExactly)
{
    loadFour();
    model.selectCollection(u"work"_s);
    EXPECT_THAT(world.shown(), IsEmpty());
}

TEST_F(Order, IsNotRefreshedByTheSameTextOrCollection)
{
    loadFour();
    model.selectCollection(u"Work"_s);
    Snippet last = world.snippet(u"a"_s);
    last.setDisplayOrder(9);
    model.updateSnippet(last);
    model.setSearchText({});
    model.setSelectedCollection(u"Work"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
    model.setSearchText(u"t"_s);
    model.setSearchText({});
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s, u"c"_s, u"a"_s));
}

TEST_F(Order, OfUnsavedStaysWhenAllSnippetsAreSelectedUntilTheNextRefresh)
{
    loadFour();
    model.setUnsavedEdit(titled(world.snippet(u"b"_s), u"draft"_s));
    model.selectUnsaved();
    model.selectCollection(std::nullopt);
    EXPECT_FALSE(model.isFilteringUnsaved());
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s));
    model.setSearchText(u"t"_s);
    model.setSearchText({});
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"d"_s, u"b"_s, u"c"_s));
}

// The list

TEST_F(FilteredSnippets, KeepsASavedSnippetThatNoLongerMatchesUntilTheTextChanges)
{
    loadFour();
    model.setSearchText(u"title of"_s);
    const QStringList before = world.shown();
    model.updateSnippet(titled(world.snippet(u"b"_s), u"other"_s));
    EXPECT_EQ(world.shown(), before);
    EXPECT_EQ(model.filteredSnippets().at(before.indexOf(u"b"_s)).title(), u"other"_s);
    model.setSearchText(u"title o"_s);
    EXPECT_FALSE(world.shown().contains(u"b"_s));
}

TEST_F(FilteredSnippets, DropsASnippetThatLeavesTheSelectedCollectionAndKeepsItsId)
{
    loadFour();
    model.selectCollection(u"Work"_s);
    model.updateSnippet(inCollection(world.snippet(u"b"_s), u"Home"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"c"_s));
    EXPECT_THAT(model.frozenSnippetOrder(), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
    model.updateSnippet(inCollection(world.snippet(u"b"_s), u"Work"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
    model.updateSnippet(inCollection(world.snippet(u"b"_s), u"Home"_s));
    model.setSearchText(u"title"_s);
    EXPECT_FALSE(model.frozenSnippetOrder().contains(u"b"_s));
}

TEST_F(FilteredSnippets, DoesNotShowASnippetThatJoinsTheSelectedCollection)
{
    loadFour();
    model.selectCollection(u"Work"_s);
    model.updateSnippet(inCollection(world.snippet(u"d"_s), u"Work"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
}

TEST_F(FilteredSnippets, StaysTheSameListWhileNothingChanges)
{
    loadFour();
    const Snippet* rows = model.filteredSnippets().constData();
    model.setSelectedSnippetID(u"a"_s);
    (void)model.collections();
    EXPECT_EQ(model.filteredSnippets().constData(), rows);
}

TEST_F(FilteredSnippets, ShowsTheLaterOfTwoSnippetsWithOneId)
{
    world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
               {titled(orderedSnippet(u"x"_s, u"Work"_s, 0), u"first"_s),
                titled(orderedSnippet(u"x"_s, u"Home"_s, 1), u"second"_s)});
    EXPECT_THAT(world.shown(), ElementsAre(u"x"_s, u"x"_s));
    EXPECT_EQ(model.filteredSnippets().first().title(), u"second"_s);
    EXPECT_EQ(model.effectiveSnippet(u"x"_s)->title(), u"first"_s);
    // The one that is selected is not the one that would be shown.
    model.selectCollection(u"Work"_s);
    EXPECT_THAT(model.frozenSnippetOrder(), ElementsAre(u"x"_s));
    EXPECT_THAT(world.shown(), IsEmpty());
}

// Loading

TEST_F(LoadSnippets, TakesOverSnippetsAndCollections)
{
    loadFour();
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"a"_s, u"b"_s, u"c"_s, u"d"_s));
    ASSERT_EQ(model.collectionModels().size(), 2);
    const Collection& home = model.collectionModels().at(1);
    EXPECT_EQ(home.id, u"H"_s);
    EXPECT_EQ(home.name, u"Home"_s);
    EXPECT_EQ(home.displayOrder, 1);
    EXPECT_EQ(home.createdAt, dateAt(0));
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(LoadSnippets, LeavesStoredColoursAside)
{
    world.load({makeCollection(u"W"_s, u"Work"_s, u"red"_s)}, {});
    EXPECT_TRUE(world.colors.loadColors().isEmpty());
}

TEST_F(LoadSnippets, EmptiesTheListWithoutALibrary)
{
    loadFour();
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    model.selectCollection(u"Work"_s);
    model.setSelectedSnippetID(u"a"_s);
    world.storage.stored.reset();
    model.loadSnippets();
    EXPECT_TRUE(model.snippets().isEmpty());
    EXPECT_TRUE(model.collectionModels().isEmpty());
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
}

TEST_F(LoadSnippets, RunsWhenSnippetsChangedElsewhere)
{
    world.storage.stored = makeLibrary({}, {orderedSnippet(u"a"_s, u"Work"_s, 0)});
    Q_EMIT world.notifications.snippetDataChanged();
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

TEST_F(LoadSnippets, RenumbersEveryCollectionByDateWhenOneNumberIsMissing)
{
    world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
               {orderedSnippet(u"late"_s, u"Work"_s, 0, 2),
                orderedSnippet(u"early"_s, u"Work"_s, 1, 1),
                orderedSnippet(u"lacking"_s, u"Home"_s, {}, 1),
                orderedSnippet(u"same date"_s, u"Home"_s, 0, 1)});
    EXPECT_EQ(world.snippet(u"early"_s).displayOrder(), 0);
    EXPECT_EQ(world.snippet(u"late"_s).displayOrder(), 1);
    EXPECT_EQ(world.snippet(u"lacking"_s).displayOrder(), 0);
    EXPECT_EQ(world.snippet(u"same date"_s).displayOrder(), 1);
    EXPECT_THAT(world.shown(), ElementsAre(u"early"_s, u"lacking"_s, u"late"_s, u"same date"_s));
    EXPECT_EQ(world.storage.stored->data.snippets, model.snippets());
    EXPECT_THAT(world.log.lines, Contains(u"SnippetListViewModel: 已完成 displayOrder 迁移"_s));
}

TEST_F(LoadSnippets, WritesNothingWhenAllNumbersAreThere)
{
    world.storage.stored = makeLibrary({}, {orderedSnippet(u"a"_s, u"Work"_s, 7)});
    model.loadSnippets();
    EXPECT_THAT(world.storage.calls, ElementsAre(u"load"_s));
    EXPECT_EQ(world.snippet(u"a"_s).displayOrder(), 7);
    EXPECT_THAT(world.log.lines, IsEmpty());
}

TEST_F(RefreshData, LetsGoOfSelectionAndDraftsAndLoads)
{
    loadFour();
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    model.selectCollection(u"Work"_s);
    model.setSelectedSnippetID(u"a"_s);
    world.storage.stored = makeLibrary({}, {orderedSnippet(u"z"_s, u"New"_s, 0)});
    model.refreshData();
    EXPECT_THAT(world.shown(), ElementsAre(u"z"_s));
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_FALSE(model.selectedSnippetID());
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_EQ(world.log.lines.last(), u"SnippetListViewModel: 数据已完全刷新"_s);
}

TEST_F(RefreshData, KeepsFilterTextAndUnsaved)
{
    loadFour();
    model.selectUnsaved();
    model.setSearchText(u"title"_s);
    model.refreshData();
    EXPECT_EQ(model.searchText(), u"title"_s);
    EXPECT_TRUE(model.isFilteringUnsaved());
    EXPECT_THAT(world.shown(), IsEmpty());
}

// Saving

TEST_F(SaveAllData, WritesTheLibraryWithoutDraftsAndSettings)
{
    loadFour();
    world.storage.stored->settings = SyncSettings{.version = 1, .syncAppSettings = true};
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    model.saveAllData();
    const VellumryData& stored = *world.storage.stored;
    EXPECT_EQ(stored.version, u"3.0"_s);
    EXPECT_EQ(stored.lastModified, world.clock.now());
    EXPECT_FALSE(stored.deviceId.isEmpty());
    EXPECT_FALSE(stored.settings);
    EXPECT_EQ(stored.data.snippets, model.snippets());
    EXPECT_EQ(stored.data.snippets.first().title(), u"Title of a"_s);
    EXPECT_THAT(idsOf(stored.data.collections), ElementsAre(u"W"_s, u"H"_s));
}

TEST_F(SaveAllData, WritesColoursInHexadecimal)
{
    world.load({makeCollection(u"1"_s, u"None"_s), makeCollection(u"2"_s, u"Preset"_s),
                makeCollection(u"3"_s, u"Hex"_s), makeCollection(u"4"_s, u"Unknown"_s)},
               {});
    world.colors.saveColors(
        {{u"Preset"_s, u"mint"_s}, {u"Hex"_s, u"#not hex"_s}, {u"Unknown"_s, u"ultraviolet"_s}});
    model.saveAllData();
    const SyncDataContent& data = world.storage.stored->data;
    const QString gray = toHex(CategoryColorService::presetColors().front().color);
    EXPECT_EQ(data.collections[0].color, gray);
    EXPECT_EQ(data.collections[1].color, u"#00C6BF"_s);
    EXPECT_EQ(data.collections[2].color, u"#not hex"_s);
    EXPECT_FALSE(data.collections[3].color);
    const QMap<QString, QString> colors{
        {u"None"_s, gray}, {u"Preset"_s, u"#00C6BF"_s}, {u"Hex"_s, u"#not hex"_s}};
    EXPECT_EQ(data.categoryColors, colors);
}

TEST_F(SaveAllData, SwallowsAnError)
{
    loadFour();
    world.storage.fails = [](qsizetype) { return true; };
    model.updateSnippet(titled(world.snippet(u"a"_s), u"changed"_s));
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"changed"_s);
    EXPECT_EQ(world.storage.stored->data.snippets.first().title(), u"Title of a"_s);
    EXPECT_THAT(world.log.lines, IsEmpty());
    // The next one that succeeds brings the disk up to date.
    world.storage.fails = [](qsizetype) { return false; };
    model.saveAllData();
    EXPECT_EQ(world.storage.stored->data.snippets.first().title(), u"changed"_s);
}

TEST_F(SaveAllData, IsOneSaveForEachChange)
{
    loadFour();
    model.updateSnippet(titled(world.snippet(u"a"_s), u"1"_s));
    model.incrementUsage(u"a"_s);
    model.createSnippet();
    // "Default" is created and saved before the snippet is.
    EXPECT_EQ(world.storage.saves(), 4);
}

// Creating

TEST_F(CreateSnippet, MakesDefaultInAnEmptyLibrary)
{
    model.createSnippet();
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Default"_s));
    ASSERT_EQ(model.snippets().size(), 1);
    const SnippetFields& made = model.snippets().first().fields();
    EXPECT_EQ(made.id, u"new-2"_s);
    EXPECT_EQ(made.title, u"New Snippet"_s);
    EXPECT_EQ(made.collection, u"Default"_s);
    EXPECT_EQ(made.displayOrder, 0);
    EXPECT_EQ(made.createdAt, world.clock.now());
    EXPECT_EQ(made.updatedAt, world.clock.now());
    EXPECT_TRUE(made.subtitle.isEmpty() && made.content.isEmpty() && made.keywords.isEmpty() &&
                made.variables.isEmpty());
    EXPECT_EQ(made.usageCount, 0);
    EXPECT_FALSE(made.lastUsedAt);
    EXPECT_THAT(world.shown(), ElementsAre(u"new-2"_s));
}

TEST_F(CreateSnippet, NumbersItBehindTheLargestOfItsCollection)
{
    world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
               {orderedSnippet(u"a"_s, u"Work"_s, 0), orderedSnippet(u"b"_s, u"Work"_s, 1),
                orderedSnippet(u"c"_s, u"Work"_s, 7)});
    model.selectCollection(u"Work"_s);
    model.createSnippet();
    EXPECT_EQ(model.snippets().last().displayOrder(), 8);
    model.selectCollection(u"Home"_s);
    model.createSnippet();
    EXPECT_EQ(model.snippets().last().displayOrder(), 0);
}

TEST_F(CreateSnippet, GoesToDefaultFromUnsavedAndStandsLastThere)
{
    loadFour();
    model.setUnsavedEdit(titled(world.snippet(u"c"_s), u"draft"_s));
    model.selectUnsaved();
    model.createSnippet();
    EXPECT_EQ(model.snippets().last().collection(), u"Default"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, model.snippets().last().id()));
}

TEST_F(CreateSnippet, StandsLastInTheSnapshotWhateverItsNumber)
{
    loadFour();
    model.createSnippet();
    EXPECT_EQ(model.snippets().last().displayOrder(), 0);
    EXPECT_EQ(world.shown().last(), model.snippets().last().id());
}

TEST_F(CreateSnippet, ClearsTheSearchAndStandsAtItsSortedPlace)
{
    loadFour();
    model.selectCollection(u"Work"_s);
    model.setSearchText(u"abc"_s);
    model.createSnippet();
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"b"_s, u"c"_s, u"new-1"_s));

    model.selectCollection(std::nullopt);
    model.setSearchText(u"abc"_s);
    model.createSnippet(); // in "Default", with number 0
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"d"_s, u"new-3"_s, u"b"_s, u"c"_s, u"new-1"_s));
}

TEST_F(CreateSnippet, IsNewAtOnceAndSelectedATenthOfASecondLater)
{
    loadFour();
    model.setSelectedSnippetID(u"a"_s);
    model.createSnippet();
    const QString id = model.snippets().last().id();
    EXPECT_EQ(model.newlyCreatedSnippetID(), id);
    world.scheduler.advance(99ms);
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    world.scheduler.advance(1ms);
    EXPECT_EQ(model.selectedSnippetID(), id);
    model.setNewlyCreatedSnippetID(std::nullopt);
    EXPECT_FALSE(model.newlyCreatedSnippetID());
}

TEST_F(CreateSnippet, DoesNotKeepTheModelAlive)
{
    LibraryParts parts;
    auto shortLived = std::make_unique<SnippetListViewModel>(SnippetListViewModel::Dependencies{
        parts.storage, parts.search, parts.colors, parts.notifications, parts.scheduler,
        parts.clock, [&] { return parts.newIdentifier(); }});
    shortLived->createSnippet();
    EXPECT_EQ(parts.scheduler.pending(), 1U);
    shortLived.reset();
    parts.scheduler.advance(1s);
    EXPECT_EQ(parts.scheduler.pending(), 0U);
}

TEST_F(DuplicateSnippet, CopiesTheStoredSnippet)
{
    Snippet original = orderedSnippet(u"a"_s, u"Work"_s, 3);
    original.setSubtitle(u"subtitle"_s);
    original.setKeywords({u"k"_s});
    original.setVariables({{u"name"_s, u"value"_s}});
    original.setUsageCount(5);
    original.setLastUsedAt(dateAt(7));
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {original});
    model.setUnsavedEdit(titled(original, u"draft"_s));
    model.setSearchText(u"title"_s);
    model.duplicateSnippet(u"a"_s, u"Copy"_s);
    const SnippetFields& copy = model.snippets().last().fields();
    EXPECT_EQ(copy.id, u"new-1"_s);
    EXPECT_EQ(copy.title, u"Copy"_s);
    EXPECT_EQ(copy.subtitle, u"subtitle"_s);
    EXPECT_EQ(copy.collection, u"Work"_s);
    EXPECT_EQ(copy.content, u"content"_s);
    EXPECT_THAT(copy.keywords, ElementsAre(u"k"_s));
    EXPECT_EQ(copy.createdAt, world.clock.now());
    EXPECT_EQ(copy.updatedAt, world.clock.now());
    EXPECT_EQ(copy.usageCount, 0);
    EXPECT_FALSE(copy.lastUsedAt);
    EXPECT_EQ(copy.displayOrder, 4);
    EXPECT_TRUE(copy.variables.isEmpty());
    EXPECT_EQ(model.searchText(), QString());
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"new-1"_s));
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(DuplicateSnippet, SelectsTheCopyLaterAndDoesNotCallItNew)
{
    loadFour();
    model.duplicateSnippet(u"a"_s, u"Copy"_s);
    EXPECT_FALSE(model.selectedSnippetID());
    world.scheduler.advance(100ms);
    EXPECT_EQ(model.selectedSnippetID(), u"new-1"_s);
    EXPECT_FALSE(model.newlyCreatedSnippetID());
}

TEST_F(DuplicateSnippet, DoesNothingForAnUnknownId)
{
    loadFour();
    model.setSearchText(u"title"_s);
    model.duplicateSnippet(u"?"_s, u"Copy"_s);
    EXPECT_EQ(model.snippets().size(), 4);
    EXPECT_EQ(model.searchText(), u"title"_s);
    EXPECT_EQ(world.scheduler.pending(), 0U);
}

// Changing

TEST_F(UpdateSnippet, ReplacesTheStoredSnippetAndSaves)
{
    loadFour();
    const Snippet changed = titled(world.snippet(u"b"_s), u"changed"_s);
    model.setUnsavedEdit(changed);
    model.updateSnippet(changed);
    EXPECT_EQ(world.snippet(u"b"_s), changed);
    EXPECT_EQ(world.storage.stored->data.snippets.at(1), changed);
    EXPECT_FALSE(model.isUnsaved(u"b"_s));
}

TEST_F(UpdateSnippet, DoesNotInsertAnUnknownOne)
{
    loadFour();
    model.updateSnippet(makeSnippet(u"?"_s, u"Work"_s));
    EXPECT_EQ(model.snippets().size(), 4);
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(UpdateSnippet, KeepsACollectionThatItEmpties)
{
    loadFour();
    model.updateSnippet(inCollection(world.snippet(u"d"_s), u"Work"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_EQ(model.snippetCount(u"Home"_s), 0);
}

TEST_F(IncrementUsage, CountsAndKeepsTheTimeOfTheEdit)
{
    loadFour();
    model.incrementUsage(u"a"_s);
    EXPECT_EQ(world.snippet(u"a"_s).usageCount(), 1);
    EXPECT_EQ(world.snippet(u"a"_s).lastUsedAt(), world.clock.now());
    EXPECT_EQ(world.snippet(u"a"_s).updatedAt(), dateAt(1));
    EXPECT_EQ(world.storage.saves(), 1);
    model.incrementUsage(u"?"_s);
    EXPECT_EQ(world.storage.saves(), 1);
}

// Deleting

TEST_F(DeleteSnippet, AsksUnlessTheSnippetIsUntouched)
{
    struct Case {
        QString title;
        QString content;
        bool isAsked;
    };
    const QList<Case> cases{{u""_s, u""_s, false},
                            {u"New Snippet"_s, u""_s, false},
                            {u"New Snippet"_s, u"x"_s, true},
                            {u"a"_s, u""_s, true},
                            {u""_s, u"x"_s, true},
                            {u" "_s, u""_s, true},
                            {u"new snippet"_s, u""_s, true},
                            {u"New Snippet"_s, u" "_s, true}};
    for (const Case& each : cases) {
        LibraryWorld other;
        other.load({}, {titled(makeSnippet(u"a"_s, u"Work"_s, each.content), each.title)});
        other.model.requestDelete(u"a"_s);
        EXPECT_EQ(other.model.showDeleteConfirmation(), each.isAsked) << each.title.toStdString();
        EXPECT_EQ(other.model.snippets().size(), each.isAsked ? 1 : 0);
        EXPECT_EQ(other.model.snippetIDToDelete().has_value(), each.isAsked);
    }
}

TEST_F(DeleteSnippet, JudgesTheStoredSnippetAndNotItsDraft)
{
    world.load({}, {titled(makeSnippet(u"a"_s, u"Work"_s, u""_s), u"New Snippet"_s)});
    model.setUnsavedEdit(makeSnippet(u"a"_s, u"Work"_s, u"long text"_s));
    model.requestDelete(u"a"_s);
    EXPECT_TRUE(model.snippets().isEmpty());
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
}

TEST_F(DeleteSnippet, DoesNothingForAnUnknownIdOrWithoutAQuestion)
{
    loadFour();
    model.requestDelete(u"?"_s);
    EXPECT_FALSE(model.snippetIDToDelete());
    EXPECT_FALSE(model.showDeleteConfirmation());
    model.confirmDelete();
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(DeleteSnippet, LeavesNothingSelected)
{
    loadFour();
    model.setSelectedSnippetID(u"b"_s);
    model.requestDelete(u"b"_s);
    model.confirmDelete();
    EXPECT_FALSE(model.selectedSnippetID());
    EXPECT_FALSE(model.snippetIDToDelete());
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"d"_s, u"c"_s));
    EXPECT_FALSE(model.frozenSnippetOrder().contains(u"b"_s));
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_EQ(world.storage.stored->data.snippets.size(), 3);
}

TEST_F(DeleteSnippet, KeepsAnotherSelection)
{
    loadFour();
    model.setSelectedSnippetID(u"a"_s);
    model.requestDelete(u"b"_s);
    model.confirmDelete();
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
}

TEST_F(DeleteSnippet, RemovesEverySnippetOfTheId)
{
    world.load({}, {orderedSnippet(u"x"_s, u"Work"_s, 0), orderedSnippet(u"y"_s, u"Work"_s, 1),
                    orderedSnippet(u"x"_s, u"Home"_s, 2)});
    model.requestDelete(u"x"_s);
    model.confirmDelete();
    EXPECT_THAT(world.shown(), ElementsAre(u"y"_s));
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"y"_s));
    EXPECT_EQ(model.snippetCount(u"Home"_s), 0);
}

TEST_F(DeleteSnippet, TakesBackTheQuestion)
{
    loadFour();
    model.requestDelete(u"a"_s);
    model.setShowDeleteConfirmation(false);
    model.setSnippetIDToDelete(std::nullopt);
    model.confirmDelete();
    EXPECT_EQ(model.snippets().size(), 4);
}

TEST_F(DeleteSnippet, OfASnippetThatIsGoneMeanwhileStillSaves)
{
    loadFour();
    model.requestDelete(u"a"_s);
    world.storage.stored->data.snippets.removeFirst();
    model.loadSnippets();
    world.storage.calls.clear();
    model.confirmDelete();
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_FALSE(model.snippetIDToDelete());
}

// Moving

TEST_F(MoveSnippets, NumbersTheSnapshotInItsNewOrder)
{
    loadFour();
    model.moveSnippets({3}, 1, true); // c before d
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s, u"c"_s, u"d"_s, u"b"_s));
    EXPECT_EQ(world.snippet(u"c"_s).displayOrder(), 1);
    EXPECT_EQ(world.snippet(u"b"_s).displayOrder(), 3);
    EXPECT_EQ(world.storage.stored->data.snippets, model.snippets());
}

TEST_F(MoveSnippets, PutsThemBeforeTheOneThatStoodAtTheTarget)
{
    loadFour();
    model.moveSnippets({0, 2}, 4, false);
    EXPECT_THAT(world.shown(), ElementsAre(u"d"_s, u"c"_s, u"a"_s, u"b"_s));
    model.moveSnippets({0}, 2, false);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"d"_s, u"a"_s, u"b"_s));
    model.moveSnippets({1}, 1, false);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"d"_s, u"a"_s, u"b"_s));
}

TEST_F(MoveSnippets, SavesOnlyIfTold)
{
    loadFour();
    model.moveSnippets({3}, 0, false);
    EXPECT_THAT(world.storage.calls, IsEmpty());
    model.moveSnippets({3}, 0, true);
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(MoveSnippets, NumbersOnlyTheSnapshot)
{
    loadFour();
    model.selectCollection(u"Home"_s);
    model.moveSnippets({0}, 1, false);
    EXPECT_EQ(world.snippet(u"d"_s).displayOrder(), 0);
    model.selectCollection(u"Work"_s);
    model.moveSnippets({2}, 0, false);
    EXPECT_EQ(world.snippet(u"c"_s).displayOrder(), 0);
    EXPECT_EQ(world.snippet(u"d"_s).displayOrder(), 0);
    // The tie is settled by the order of the library.
    model.selectCollection(std::nullopt);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"d"_s, u"a"_s, u"b"_s));
}

TEST_F(MoveSnippets, NumbersTheStoredSnippetUnderADraft)
{
    loadFour();
    const Snippet draft = titled(world.snippet(u"c"_s), u"draft"_s);
    model.setUnsavedEdit(draft);
    model.moveSnippets({3}, 0, false);
    EXPECT_EQ(world.snippet(u"c"_s).displayOrder(), 0);
    EXPECT_EQ(model.filteredSnippets().first(), draft);
}

TEST_F(MoveSelection, StaysAtBothEnds)
{
    loadFour();
    model.moveSelectionUp();
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s); // the first, from nothing
    model.moveSelectionUp();
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    model.moveSelectionDown();
    EXPECT_EQ(model.selectedSnippetID(), u"d"_s);
    model.setSelectedSnippetID(u"c"_s);
    model.moveSelectionDown();
    EXPECT_EQ(model.selectedSnippetID(), u"c"_s);
    model.moveSelectionUp();
    EXPECT_EQ(model.selectedSnippetID(), u"b"_s);
}

TEST_F(MoveSelection, StartsAtTheFirstRowWithoutASelectionInTheList)
{
    loadFour();
    model.moveSelectionDown();
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    model.selectCollection(u"Home"_s);
    model.moveSelectionDown();
    EXPECT_EQ(model.selectedSnippetID(), u"d"_s);
    model.setSelectedSnippetID(u"?"_s);
    model.moveSelectionUp();
    EXPECT_EQ(model.selectedSnippetID(), u"d"_s);
}

TEST_F(MoveSelection, DoesNothingInAnEmptyList)
{
    model.setSelectedSnippetID(u"?"_s);
    model.moveSelectionDown();
    model.moveSelectionUp();
    EXPECT_EQ(model.selectedSnippetID(), u"?"_s);
}

// Changes from outside

TEST_F(OutsideChange, ClearsASelectionThatIsGone)
{
    loadFour();
    model.setSelectedSnippetID(u"a"_s);
    world.storage.stored->data.snippets.removeFirst();
    Q_EMIT world.notifications.syncDataDidChange(*world.storage.stored);
    EXPECT_FALSE(model.selectedSnippetID());
    EXPECT_THAT(world.shown(), ElementsAre(u"d"_s, u"b"_s, u"c"_s));
    EXPECT_THAT(world.log.lines,
                Contains(u"SnippetListViewModel: 检测到外部数据变化，重新加载..."_s));
}

TEST_F(OutsideChange, KeepsASelectionThatIsThere)
{
    loadFour();
    model.selectCollection(u"Work"_s);
    model.setSelectedSnippetID(u"b"_s);
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_EQ(model.selectedSnippetID(), u"b"_s);
    EXPECT_EQ(model.selectedCollection(), u"Work"_s);
}

TEST_F(OutsideChange, KeepsTheNameOfACollectionThatIsGoneOverAnEmptyList)
{
    loadFour();
    model.selectCollection(u"Home"_s);
    world.storage.stored->data.snippets.removeLast();
    world.storage.stored->data.collections.removeLast();
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_EQ(model.selectedCollection(), u"Home"_s);
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s));
}

TEST_F(OutsideChange, CreatesMissingCollectionsIfOneIsSelected)
{
    loadFour();
    world.storage.stored->data.collections.removeLast();
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s));
    EXPECT_EQ(world.storage.saves(), 0);
    model.selectCollection(u"Work"_s);
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_EQ(world.storage.saves(), 1);
}

// Announcements; the random sequences hold their exact number

TEST_F(Announcing, HappensOnceWhenTheOperationIsComplete)
{
    loadFour();
    model.setSearchText(u"title"_s);
    (void)world.announced.take();
    QStringList seen;
    QObject::connect(&model, &SnippetListViewModel::snippetsChanged, &model, [&] {
        seen = world.shown();
        EXPECT_EQ(model.searchText(), QString());
        EXPECT_TRUE(model.newlyCreatedSnippetID());
        EXPECT_EQ(world.storage.saves(), 2);
    });
    model.createSnippet();
    EXPECT_EQ(seen.size(), 5);
    const QMap<QString, int> expected{{u"snippets"_s, 1},
                                      {u"collectionModels"_s, 1},
                                      {u"filteredSnippets"_s, 1},
                                      {u"searchText"_s, 1},
                                      {u"newlyCreatedSnippetID"_s, 1}};
    EXPECT_EQ(world.announced.take(), expected);
}

TEST_F(Announcing, IsLeftOutWithoutAChange)
{
    loadFour();
    model.setSearchText({});
    model.selectCollection(std::nullopt);
    model.setSelectedSnippetID(std::nullopt);
    model.setNewlyCreatedSnippetID(std::nullopt);
    model.setShowDeleteConfirmation(false);
    model.setSnippetIDToDelete(std::nullopt);
    model.clearUnsavedEdit(u"a"_s);
    model.updateSnippet(world.snippet(u"a"_s));
    model.loadSnippets();
    model.refreshData();
    (void)model.collections();
    EXPECT_TRUE(world.announced.take().isEmpty());
}

TEST_F(FilteredSnippets, TellTheRowOfASnippet)
{
    loadFour();
    EXPECT_EQ(model.shownRow(u"b"_s), 2);
    EXPECT_EQ(model.shownRow(u"nobody"_s), -1);
    model.selectCollection(u"Home"_s);
    EXPECT_EQ(model.shownRow(u"d"_s), 0);
    EXPECT_EQ(model.shownRow(u"b"_s), -1);
}

TEST_F(Announcing, LetsItsListenersGoOn)
{
    loadFour();
    QObject::connect(&model, &SnippetListViewModel::selectedCollectionChanged, &model,
                     [this] { model.moveSelectionDown(); });
    model.selectCollection(u"Home"_s);
    EXPECT_EQ(model.selectedSnippetID(), u"d"_s);
    EXPECT_EQ(world.announced.take().value(u"selectedSnippetID"_s), 1);
}

} // namespace
} // namespace vellumry::test
