// The list model's drafts.

#include "library/LibraryWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class DraftEdits : public testing::Test {
protected:
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 2), orderedSnippet(u"b"_s, u"Work"_s, 1),
                    orderedSnippet(u"c"_s, u"Home"_s, 0)});
    }

    /// Writes a title into the draft, as the editor does on a keystroke.
    void edit(const QString& id, const QString& title)
    {
        model.setUnsavedEdit(titled(*model.effectiveSnippet(id), title));
    }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
};

using Draft = DraftEdits;
using EndOfADraft = DraftEdits;
using Unsaved = DraftEdits;
using SaveAllUnsavedEdits = DraftEdits;

TEST_F(Draft, SurvivesAChangeOfSelectionAndStaysOffTheDisk)
{
    model.setSelectedSnippetID(u"a"_s);
    edit(u"a"_s, u"draft"_s);
    model.setSelectedSnippetID(u"b"_s);
    model.selectCollection(u"Home"_s);
    model.setSelectedSnippetID(u"a"_s);
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->title(), u"draft"_s);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
    EXPECT_FALSE(model.isUnsaved(u"b"_s));
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"Title of a"_s);
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(Draft, StandsForItsSnippetInTheList)
{
    edit(u"a"_s, u"draft"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"b"_s, u"a"_s));
    EXPECT_EQ(model.filteredSnippets().last().title(), u"draft"_s);
    EXPECT_EQ(model.effectiveSnippets().first().title(), u"draft"_s);
    EXPECT_EQ(model.snippets().first().title(), u"Title of a"_s);
}

TEST_F(Draft, IsReplacedByTheNextEdit)
{
    edit(u"a"_s, u"first"_s);
    edit(u"a"_s, u"second"_s);
    EXPECT_EQ(model.unsavedEdits().size(), 1);
    EXPECT_EQ(model.filteredSnippets().last().title(), u"second"_s);
}

TEST_F(Draft, IsKeptWithTheTimeStampThatItHas)
{
    world.clock.advance(std::chrono::hours(1));
    edit(u"a"_s, u"draft"_s);
    EXPECT_EQ(model.unsavedEdits().value(u"a"_s).updatedAt(), dateAt(1));
}

TEST_F(Draft, MovesItsSnippetInCountsAndListAtOnce)
{
    model.selectCollection(u"Work"_s);
    model.setUnsavedEdit(inCollection(world.snippet(u"a"_s), u"Home"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s));
    EXPECT_THAT(model.frozenSnippetOrder(), ElementsAre(u"b"_s, u"a"_s));
    EXPECT_EQ(model.snippetCount(u"Home"_s), 2);
    edit(u"a"_s, u"hidden"_s);
    edit(u"b"_s, u"shown"_s);
    EXPECT_EQ(model.filteredSnippets().first().title(), u"shown"_s);
    model.clearUnsavedEdit(u"a"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s, u"a"_s));
}

TEST_F(Draft, OfTheStoredTextIsADraft)
{
    edit(u"a"_s, u"x"_s);
    edit(u"a"_s, u"Title of a"_s);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
    model.setUnsavedEdit(world.snippet(u"b"_s));
    EXPECT_TRUE(model.isUnsaved(u"b"_s));
}

TEST_F(Draft, IsFoundByTheNextSearchAndNotByTheOneThatStands)
{
    model.setSearchText(u"needle"_s);
    edit(u"a"_s, u"needle"_s);
    EXPECT_THAT(world.shown(), IsEmpty());
    model.setSearchText(u"needl"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

TEST_F(Draft, SurvivesAnOutsideReload)
{
    edit(u"a"_s, u"draft"_s);
    world.storage.stored->data.snippets[0].setTitle(u"from outside"_s);
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"from outside"_s);
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->title(), u"draft"_s);
    EXPECT_EQ(model.filteredSnippets().last().title(), u"draft"_s);
}

TEST_F(Draft, OfARemovedSnippetStaysWithoutEffect)
{
    edit(u"a"_s, u"draft"_s);
    world.storage.stored->data.snippets.removeFirst();
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_EQ(model.unsavedEdits().size(), 1);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
    EXPECT_FALSE(model.effectiveSnippet(u"a"_s));
    EXPECT_THAT(idsOf(model.effectiveSnippets()), ElementsAre(u"b"_s, u"c"_s));
    EXPECT_EQ(model.snippetCount(u"Work"_s), 1);
    model.selectUnsaved();
    EXPECT_THAT(world.shown(), IsEmpty());
}

TEST_F(Draft, TakesThePlaceOfEverySnippetOfItsId)
{
    world.load({}, {orderedSnippet(u"x"_s, u"Work"_s, 0), orderedSnippet(u"x"_s, u"Home"_s, 1)});
    model.setUnsavedEdit(inCollection(world.snippet(u"x"_s), u"Third"_s));
    EXPECT_EQ(model.snippetCount(u"Third"_s), 2);
    EXPECT_EQ(model.snippetCount(u"Home"_s), 0);
    model.selectUnsaved();
    EXPECT_THAT(world.shown(), ElementsAre(u"x"_s, u"x"_s));
    model.clearUnsavedEdit(u"x"_s);
    EXPECT_EQ(model.snippetCount(u"Home"_s), 1);
}

// Its end

TEST_F(EndOfADraft, ComesWithTheSave)
{
    edit(u"a"_s, u"draft"_s);
    model.updateSnippet(*model.effectiveSnippet(u"a"_s));
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"draft"_s);
}

TEST_F(EndOfADraft, ComesWithTheRevert)
{
    edit(u"a"_s, u"draft"_s);
    model.clearUnsavedEdit(u"a"_s);
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->title(), u"Title of a"_s);
    EXPECT_EQ(model.filteredSnippets().last().title(), u"Title of a"_s);
    model.clearUnsavedEdit(u"?"_s);
}

TEST_F(EndOfADraft, ComesForADraftThatIsHandedInFromTheMap)
{
    edit(u"a"_s, u"draft"_s);
    edit(u"b"_s, u"draft"_s);
    model.updateSnippet(*model.unsavedEdits().constFind(u"a"_s));
    model.clearUnsavedEdit(model.unsavedEdits().firstKey());
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"draft"_s);
    EXPECT_EQ(model.filteredSnippets().at(1).title(), u"Title of b"_s);
}

TEST_F(EndOfADraft, ComesWithTheDeletionOfItsSnippet)
{
    edit(u"a"_s, u"draft"_s);
    model.requestDelete(u"a"_s);
    model.confirmDelete();
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
}

TEST_F(EndOfADraft, ComesWithTheDeletionOfItsCollection)
{
    edit(u"a"_s, u"draft"_s);
    model.deleteCollection(u"Work"_s);
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
}

TEST_F(EndOfADraft, ComesWithTheRefreshOfTheData)
{
    edit(u"a"_s, u"draft"_s);
    model.refreshData();
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_EQ(model.filteredSnippets().last().title(), u"Title of a"_s);
}

TEST_F(EndOfADraft, ComesWithTheDiscardOfAll)
{
    edit(u"a"_s, u"draft"_s);
    edit(u"b"_s, u"draft"_s);
    model.selectUnsaved();
    model.discardAllUnsavedEdits();
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_THAT(world.storage.calls, IsEmpty());
    // Without a refresh the list stays, with the stored contents.
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s, u"a"_s));
    EXPECT_EQ(model.filteredSnippets().last().title(), u"Title of a"_s);
}

// "Unsaved"

TEST_F(Unsaved, ShowsTheDraftsInTheirOrderAndSearchesThem)
{
    edit(u"a"_s, u"one"_s);
    edit(u"b"_s, u"two"_s);
    model.selectCollection(u"Home"_s);
    model.selectUnsaved();
    EXPECT_TRUE(model.isFilteringUnsaved());
    EXPECT_FALSE(model.selectedCollection());
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s, u"a"_s));
    model.setSearchText(u"one"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

TEST_F(Unsaved, FollowsEachDraftThatComesAndGoes)
{
    model.selectUnsaved();
    EXPECT_THAT(world.shown(), IsEmpty());
    edit(u"a"_s, u"draft"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
    edit(u"c"_s, u"draft"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"c"_s, u"a"_s));
    model.clearUnsavedEdit(u"c"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

TEST_F(Unsaved, LosesTheSavedDraftWhileItStaysSelected)
{
    edit(u"a"_s, u"draft"_s);
    model.selectUnsaved();
    model.setSelectedSnippetID(u"a"_s);
    model.updateSnippet(*model.effectiveSnippet(u"a"_s));
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    EXPECT_TRUE(model.effectiveSnippet(u"a"_s));
}

TEST_F(Unsaved, IsRefreshedWhenItIsSelectedAgain)
{
    edit(u"a"_s, u"draft"_s);
    model.selectUnsaved();
    model.createSnippet();
    EXPECT_EQ(world.shown().size(), 2);
    model.selectUnsaved();
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
}

// At the end of the program

TEST_F(SaveAllUnsavedEdits, SavesEachWithItsOldTimeStamp)
{
    edit(u"a"_s, u"draft a"_s);
    edit(u"b"_s, u"draft b"_s);
    world.clock.advance(std::chrono::hours(1));
    model.saveAllUnsavedEdits();
    EXPECT_TRUE(model.unsavedEdits().isEmpty());
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"draft a"_s);
    EXPECT_EQ(world.snippet(u"a"_s).updatedAt(), dateAt(1));
    EXPECT_EQ(world.storage.stored->data.snippets, model.snippets());
    EXPECT_EQ(world.storage.saves(), 2);
}

TEST_F(SaveAllUnsavedEdits, PassesOverADraftOfARemovedSnippet)
{
    edit(u"a"_s, u"draft a"_s);
    edit(u"b"_s, u"draft b"_s);
    world.storage.stored->data.snippets.removeFirst();
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_EQ(model.unsavedEdits().size(), 2);
    world.storage.calls.clear();
    model.saveAllUnsavedEdits();
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_THAT(model.unsavedEdits().keys(), ElementsAre(u"a"_s));
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"b"_s, u"c"_s));
}

TEST_F(SaveAllUnsavedEdits, EmptiesUnsaved)
{
    edit(u"a"_s, u"draft"_s);
    model.selectUnsaved();
    model.saveAllUnsavedEdits();
    EXPECT_THAT(world.shown(), IsEmpty());
}

} // namespace
} // namespace vellumry::test
