// What the editor hands out to be stored, where it goes back to, and its collections.

#include "library/EditorWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Counts = QMap<QString, int>;

/// An editor on a snippet of a library with two collections.
class EditorInList : public testing::Test {
protected:
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 0), orderedSnippet(u"b"_s, u"Work"_s, 1),
                    orderedSnippet(u"c"_s, u"Home"_s, 0)});
        open(u"a"_s);
    }

    void open(const QString& id)
    {
        ASSERT_TRUE(world.openFromList(id));
        world.storage.calls.clear();
    }
    SnippetEditorViewModel& editor() { return *world.editor; }
    Counts announced() { return world.edited->take(); }
    static Counts once(const QStringList& fields)
    {
        Counts counts;
        for (const QString& field : fields)
            counts[field] = 1;
        return counts;
    }
    /// As it is on the disk.
    [[nodiscard]] Snippet stored(const QString& id) const
    {
        for (const Snippet& each : world.storage.stored->data.snippets)
            if (each.id() == id)
                return each;
        return {};
    }

    EditorWorld world;
    SnippetListViewModel& model = world.model;
};

using EditorSave = EditorInList;
using EditorRevert = EditorInList;
using EditorCopy = EditorInList;
using EditorCollections = EditorInList;
using EditorEscape = EditorInList;
using EditorDuplicate = EditorInList;
using EditorAndSelection = EditorInList;

// Save

TEST_F(EditorSave, StoresAllFieldsAndEndsTheDraft)
{
    editor().setTitle(u"New"_s);
    editor().setContent(u"text"_s);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
    EXPECT_EQ(world.storage.saves(), 0);
    (void)announced();
    world.clock.advance(1h);
    editor().save();
    EXPECT_EQ(stored(u"a"_s).title(), u"New");
    EXPECT_EQ(stored(u"a"_s).content(), u"text");
    EXPECT_EQ(stored(u"a"_s).updatedAt(), world.clock.now());
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_FALSE(editor().isDirty());
    EXPECT_TRUE(editor().showSaveSuccess());
    EXPECT_EQ(editor().lastSavedAt(), world.clock.now());
    EXPECT_EQ(announced(), once({u"isDirty"_s, u"lastSavedAt"_s, u"showSaveSuccess"_s}));
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(EditorSave, OfACleanSnippetStampsItAndSaves)
{
    world.clock.advance(1h);
    editor().save();
    EXPECT_EQ(stored(u"a"_s).updatedAt(), world.clock.now());
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_EQ(announced(), once({u"lastSavedAt"_s, u"showSaveSuccess"_s}));
}

TEST_F(EditorSave, ShowsSuccessAlsoWhenTheDiskRefuses)
{
    world.storage.fails = [](qsizetype) { return true; };
    editor().setTitle(u"New"_s);
    editor().save();
    EXPECT_TRUE(editor().showSaveSuccess());
    EXPECT_FALSE(editor().isDirty());
    EXPECT_EQ(stored(u"a"_s).title(), u"Title of a");
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"New");
}

TEST_F(EditorSave, RestoresTheNumberOfTheTimeWhenTheEditorWasOpened)
{
    model.moveSnippets({0}, 3, true);
    EXPECT_NE(stored(u"a"_s).displayOrder(), 0);
    editor().save();
    EXPECT_EQ(stored(u"a"_s).displayOrder(), 0);
}

TEST_F(EditorSave, StoresTheUsesThatTheEditorKnowsOf)
{
    model.incrementUsage(u"a"_s);
    editor().save();
    EXPECT_EQ(stored(u"a"_s).usageCount(), 0) << "what was counted elsewhere is lost";
}

TEST_F(EditorSave, OfASnippetThatIsGoneStoresNothing)
{
    editor().setTitle(u"New"_s);
    world.storage.stored->data.snippets.removeFirst();
    model.loadSnippets();
    editor().save();
    EXPECT_THAT(idsOf(model.snippets()), ElementsAre(u"b"_s, u"c"_s));
    EXPECT_TRUE(model.isUnsaved(u"a"_s)) << "its draft stays";
    EXPECT_FALSE(editor().isDirty());
}

TEST_F(EditorSave, IsAnnouncedWhenItIsStored)
{
    editor().setTitle(u"New"_s);
    bool isStored = false;
    QObject::connect(&editor(), &SnippetEditorViewModel::isDirtyChanged, &editor(),
                     [&] { isStored = stored(u"a"_s).title() == u"New" && !editor().isDirty(); });
    editor().save();
    EXPECT_TRUE(isStored);
}

TEST_F(EditorSave, TakesTheNewCollection)
{
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u" \tInbox "_s);
    (void)announced();
    editor().save();
    EXPECT_EQ(editor().collection(), u"Inbox");
    EXPECT_FALSE(editor().isAddingNewCollection());
    EXPECT_EQ(editor().newCollectionName(), u"");
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Home"_s, u"Inbox"_s, u"Work"_s))
        << "sorted, other than before";
    EXPECT_EQ(announced(),
              once({u"collection"_s, u"availableCollections"_s, u"isAddingNewCollection"_s,
                    u"newCollectionName"_s, u"lastSavedAt"_s, u"showSaveSuccess"_s}));
    EXPECT_EQ(world.snippet(u"a"_s).collection(), u"Inbox");
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_THAT(model.collections(), ElementsAre(u"Work"_s, u"Home"_s, u"Inbox"_s))
        << "the collection is created when the list is asked for them";
}

TEST_F(EditorSave, KeepsTheOrderOfTheCollectionsForAKnownName)
{
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u"Home "_s);
    editor().save();
    EXPECT_EQ(editor().collection(), u"Home");
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"Home"_s));
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u"home"_s);
    editor().save();
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Home"_s, u"Work"_s, u"home"_s))
        << "another name";
}

TEST_F(EditorSave, LeavesANewCollectionThatHasNoName)
{
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u" \t\u00a0"_s);
    EXPECT_FALSE(editor().canAddNewCollection());
    editor().save();
    EXPECT_TRUE(editor().isAddingNewCollection());
    EXPECT_EQ(editor().newCollectionName(), u" \t\u00a0");
    EXPECT_EQ(editor().collection(), u"Work");
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(EditorSave, LeavesANameThatIsNotBeingAdded)
{
    editor().setNewCollectionName(u"Inbox"_s);
    EXPECT_TRUE(editor().canAddNewCollection());
    editor().save();
    EXPECT_EQ(editor().collection(), u"Work");
    EXPECT_EQ(editor().newCollectionName(), u"Inbox");
}

TEST_F(EditorSave, TakesALineBreakForAName)
{
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u" \n "_s);
    EXPECT_TRUE(editor().canAddNewCollection());
    editor().save();
    EXPECT_EQ(editor().collection(), u"\n");
}

// Revert

TEST_F(EditorRevert, BringsTheStoredTextBackAndEndsTheDraft)
{
    editor().setTitle(u"draft"_s);
    open(u"a"_s);
    ASSERT_TRUE(editor().isDirty());
    ASSERT_EQ(editor().title(), u"draft");
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"Title of a");
    EXPECT_FALSE(editor().isDirty());
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_EQ(announced(), once({u"title"_s, u"isDirty"_s}));
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(EditorRevert, InUnsavedTakesTheRowAwayAndLeavesTheEditorOpen)
{
    editor().setTitle(u"draft"_s);
    model.setSelectedSnippetID(u"a"_s);
    model.selectUnsaved();
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
    editor().revertChanges();
    EXPECT_THAT(world.shown(), IsEmpty());
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    EXPECT_EQ(editor().title(), u"Title of a");
}

TEST_F(EditorRevert, BringsEveryFieldBack)
{
    Snippet full = bareSnippet(u"f"_s, u"t"_s);
    full.setSubtitle(u"s"_s);
    full.setCollection(u"Work"_s);
    full.setContent(u"{{x}}"_s);
    full.setKeywords({u"k"_s});
    full.setUsageCount(7);
    full.setLastUsedAt(dateAt(7));
    full.setVariables({{u"x"_s, u"1"_s}, {u"gone"_s, u"2"_s}});
    world.openAlone(bareSnippet(u"f"_s), true, {world.snippet(u"a"_s), full});
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"t");
    EXPECT_EQ(editor().subtitle(), u"s");
    EXPECT_EQ(editor().collection(), u"Work");
    EXPECT_EQ(editor().content(), u"{{x}}");
    EXPECT_EQ(editor().keywords(), QStringList(u"k"_s));
    EXPECT_EQ(editor().variableValues(), full.variables());
    EXPECT_EQ(editor().usageCount(), 7);
    EXPECT_EQ(editor().lastUsedAt(), dateAt(7));
    EXPECT_EQ(announced(),
              once({u"title"_s, u"subtitle"_s, u"collection"_s, u"content"_s, u"keywords"_s,
                    u"variableValues"_s, u"usageCount"_s, u"lastUsedAt"_s, u"isDirty"_s}));
    EXPECT_THAT(world.reports, ElementsAre(u"discard"_s));
}

TEST_F(EditorRevert, TakesTheFirstOfSeveralOfTheSameId)
{
    world.openAlone(bareSnippet(u"f"_s), true,
                    {bareSnippet(u"f"_s, u"1"_s), bareSnippet(u"f"_s, u"2"_s)});
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"1");
}

TEST_F(EditorRevert, GoesBackToWhatWasOpenedIfThatIsNotStored)
{
    world.openAlone(titled(makeSnippet(u"x"_s, u"Work"_s), u"draft"_s), true);
    editor().setTitle(u"more"_s);
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"draft");
    EXPECT_FALSE(editor().isDirty());
}

TEST_F(EditorRevert, AfterASaveGoesBackBehindIt)
{
    editor().setTitle(u"New"_s);
    editor().save();
    editor().setTitle(u"Newer"_s);
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"Title of a");
    EXPECT_FALSE(editor().isDirty());
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"New") << "what was saved stays";
}

TEST_F(EditorRevert, DoesNotSeeAChangeFromOutside)
{
    world.storage.stored->data.snippets[0].setTitle(u"outside"_s);
    model.loadSnippets();
    editor().setTitle(u"draft"_s);
    editor().revertChanges();
    EXPECT_EQ(editor().title(), u"Title of a");
}

TEST_F(EditorRevert, OfACleanEditorAnnouncesNothing)
{
    editor().revertChanges();
    EXPECT_EQ(announced(), Counts());
}

// Copy

TEST_F(EditorCopy, PutsTheFilledTextOnTheClipboardAndSavesEverything)
{
    editor().setContent(u"Dear {{name}}, {{x}}"_s);
    editor().setTitle(u"Letter"_s);
    editor().setVariableValue(u"Ann"_s, u"name"_s);
    (void)announced();
    world.clock.advance(1h);
    editor().copyToClipboard();
    EXPECT_THAT(world.clipboard.texts, ElementsAre(u"Dear Ann, {{x}}"_s));
    EXPECT_THAT(world.clipboard.secrets, IsEmpty());
    const Snippet saved = stored(u"a"_s);
    EXPECT_EQ(saved.content(), u"Dear {{name}}, {{x}}");
    EXPECT_EQ(saved.title(), u"Letter");
    EXPECT_EQ(saved.usageCount(), 1);
    EXPECT_EQ(saved.lastUsedAt(), world.clock.now());
    EXPECT_EQ(saved.updatedAt(), world.clock.now());
    EXPECT_EQ(announced(), once({u"usageCount"_s, u"lastUsedAt"_s, u"showCopySuccess"_s}));
    EXPECT_EQ(world.storage.saves(), 1);
}

TEST_F(EditorCopy, EndsTheDraftAndStaysDirty)
{
    editor().setTitle(u"New"_s);
    editor().copyToClipboard();
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_TRUE(editor().isDirty());
    EXPECT_FALSE(editor().showSaveSuccess());
    EXPECT_EQ(editor().lastSavedAt(), std::nullopt);
    editor().save();
    EXPECT_FALSE(editor().isDirty());
}

TEST_F(EditorCopy, OfACleanSnippetStaysClean)
{
    editor().copyToClipboard();
    EXPECT_FALSE(editor().isDirty());
    EXPECT_EQ(stored(u"a"_s).usageCount(), 1);
}

TEST_F(EditorCopy, IsTakenBackByARevertInTheEditorAlone)
{
    editor().copyToClipboard();
    editor().revertChanges();
    EXPECT_EQ(editor().usageCount(), 0);
    EXPECT_EQ(stored(u"a"_s).usageCount(), 1);
}

TEST_F(EditorCopy, WorksWhenTheDiskRefuses)
{
    world.storage.fails = [](qsizetype) { return true; };
    editor().copyToClipboard();
    EXPECT_THAT(world.clipboard.texts, ElementsAre(u"content"_s));
    EXPECT_TRUE(editor().showCopySuccess());
    EXPECT_EQ(stored(u"a"_s).usageCount(), 0);
}

// Collections

TEST_F(EditorCollections, AreThoseOfTheLibraryInItsOrder)
{
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"Home"_s));
}

TEST_F(EditorCollections, ThatOnlySnippetsNameComeAfterwardsSorted)
{
    world.storage.stored = makeLibrary(
        {makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
        {makeSnippet(u"1"_s, u"b"_s), makeSnippet(u"2"_s, u"Z"_s), makeSnippet(u"3"_s, u"Home"_s),
         makeSnippet(u"4"_s, u"a"_s), makeSnippet(u"5"_s, u"b"_s), makeSnippet(u"6"_s, u""_s)});
    editor().loadCollections();
    EXPECT_THAT(editor().availableCollections(),
                ElementsAre(u"Work"_s, u"Home"_s, u""_s, u"Z"_s, u"a"_s, u"b"_s));
    EXPECT_EQ(announced(), once({u"availableCollections"_s}));
    editor().loadCollections();
    EXPECT_EQ(announced(), Counts());
}

TEST_F(EditorCollections, KeepARecordThatIsThereTwice)
{
    world.storage.stored =
        makeLibrary({makeCollection(u"1"_s, u"Work"_s), makeCollection(u"2"_s, u"Work"_s)}, {});
    editor().loadCollections();
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"Work"_s));
}

TEST_F(EditorCollections, HaveThatOfTheSnippetInAnyCase)
{
    world.openAlone(makeSnippet(u"x"_s, u"Elsewhere"_s));
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"Home"_s, u"Elsewhere"_s));
}

TEST_F(EditorCollections, AreReadFromTheMemoryOfTheStore)
{
    world.openAlone(makeSnippet(u"x"_s, u"Work"_s));
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(EditorCollections, AreLoadedWhenTheStoreHasNothingInMemory)
{
    world.hasLibraryInMemory = false;
    world.openAlone(makeSnippet(u"x"_s, u"Elsewhere"_s));
    EXPECT_THAT(world.storage.calls, ElementsAre(u"load"_s));
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"Home"_s, u"Elsewhere"_s));
}

TEST_F(EditorCollections, WithoutALibraryAreThatOfTheSnippet)
{
    world.hasLibraryInMemory = false;
    world.storage.fails = [](qsizetype) { return true; };
    world.openAlone(makeSnippet(u"x"_s, u"Elsewhere"_s));
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Elsewhere"_s));
}

TEST_F(EditorCollections, AreChangedAtOnceWithAllPendingEdits)
{
    editor().setTitle(u"New"_s);
    (void)announced();
    world.clock.advance(1h);
    editor().changeCollection(editor().availableCollections().last());
    EXPECT_EQ(stored(u"a"_s).collection(), u"Home");
    EXPECT_EQ(stored(u"a"_s).title(), u"New");
    EXPECT_EQ(stored(u"a"_s).updatedAt(), world.clock.now());
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_TRUE(editor().isDirty()) << "although nothing is left to save";
    EXPECT_FALSE(editor().showSaveSuccess());
    EXPECT_EQ(announced(), once({u"collection"_s}));
    editor().changeCollection(u"Work"_s);
    EXPECT_EQ(world.storage.saves(), 2);
}

TEST_F(EditorCollections, OfACleanSnippetLeaveItClean)
{
    editor().changeCollection(u"Home"_s);
    EXPECT_FALSE(editor().isDirty());
}

TEST_F(EditorCollections, AreNotChangedToTheSame)
{
    editor().setTitle(u"New"_s);
    editor().changeCollection(u"Work"_s);
    EXPECT_EQ(world.storage.saves(), 0);
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
}

TEST_F(EditorCollections, FollowARenaming)
{
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_EQ(editor().collection(), u"Job");
    EXPECT_FALSE(editor().isDirty());
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Job"_s, u"Home"_s, u"Work"_s))
        << "the name that the editor was opened with stays";
    EXPECT_EQ(announced(), once({u"collection"_s, u"availableCollections"_s}));
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
}

TEST_F(EditorCollections, FollowARenamingWhileDirty)
{
    editor().setTitle(u"New"_s);
    model.renameCollection(u"Work"_s, u"Job"_s);
    EXPECT_EQ(editor().collection(), u"Job");
    EXPECT_TRUE(editor().isDirty());
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->collection(), u"Work")
        << "the draft names the old collection until the next edit";
    editor().setTitle(u"Newer"_s);
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->collection(), u"Job");
}

TEST_F(EditorCollections, StayWhenAnotherIsRenamed)
{
    model.renameCollection(u"Home"_s, u"House"_s);
    EXPECT_EQ(editor().collection(), u"Work");
    EXPECT_THAT(editor().availableCollections(), ElementsAre(u"Work"_s, u"House"_s));
    EXPECT_EQ(announced(), once({u"availableCollections"_s}));
}

TEST_F(EditorCollections, AfterARenamingARevertBringsTheOldNameBack)
{
    model.renameCollection(u"Work"_s, u"Job"_s);
    editor().revertChanges();
    EXPECT_EQ(editor().collection(), u"Work");
}

TEST_F(EditorCollections, FieldsForANewOneAreAnnounced)
{
    editor().setIsAddingNewCollection(true);
    EXPECT_EQ(announced(), once({u"isAddingNewCollection"_s}));
    editor().setNewCollectionName(u"x"_s);
    EXPECT_EQ(announced(), once({u"newCollectionName"_s}));
    editor().setIsAddingNewCollection(true);
    editor().setNewCollectionName(u"x"_s);
    EXPECT_EQ(announced(), Counts());
    EXPECT_FALSE(editor().isDirty());
}

// Escape, delete, duplicate

TEST_F(EditorEscape, RevertsAndHandsTheFocusToTheList)
{
    editor().setTitle(u"New"_s);
    editor().escape();
    EXPECT_EQ(editor().title(), u"Title of a");
    EXPECT_FALSE(model.isUnsaved(u"a"_s));
    EXPECT_FALSE(model.showDeleteConfirmation());
    EXPECT_EQ(world.listFocuses, 1);
}

TEST_F(EditorEscape, OnAFreshSnippetDeletesWhatWasTyped)
{
    model.createSnippet();
    world.scheduler.advance(100ms);
    const QString id = *model.selectedSnippetID();
    open(id);
    editor().setTitle(u"typed"_s);
    editor().setContent(u"a lot"_s);
    editor().escape();
    EXPECT_FALSE(model.effectiveSnippet(id));
    EXPECT_FALSE(model.isUnsaved(id));
    EXPECT_FALSE(model.showDeleteConfirmation());
    EXPECT_EQ(world.listFocuses, 1);
}

TEST_F(EditorEscape, OnAFreshSnippetThatWasSavedAsks)
{
    model.createSnippet();
    world.scheduler.advance(100ms);
    const QString id = *model.selectedSnippetID();
    open(id);
    editor().setContent(u"a lot"_s);
    editor().save();
    editor().escape();
    EXPECT_TRUE(model.effectiveSnippet(id));
    EXPECT_TRUE(model.showDeleteConfirmation());
    EXPECT_EQ(model.snippetIDToDelete(), id);
}

TEST_F(EditorEscape, MayTakeTheEditorAwayAtOnce)
{
    model.createSnippet();
    world.scheduler.advance(100ms);
    open(*model.selectedSnippetID());
    QObject::connect(&model, &SnippetListViewModel::selectedSnippetIDChanged, &model, [this] {
        world.edited.reset();
        world.editor.reset();
    });
    editor().escape();
    EXPECT_EQ(world.editor, nullptr);
    EXPECT_EQ(world.listFocuses, 1);
}

TEST_F(EditorEscape, DeleteAsksTheListForTheStoredSnippet)
{
    editor().setTitle(u""_s);
    editor().setContent(u""_s);
    editor().requestDelete();
    EXPECT_TRUE(model.showDeleteConfirmation());
    EXPECT_EQ(model.snippetIDToDelete(), u"a"_s);
    EXPECT_FALSE(editor().showDeleteConfirmation());
}

TEST_F(EditorDuplicate, TakesTheTitleOfTheEditorAndTheTextThatIsStored)
{
    editor().setTitle(u"Unsaved"_s);
    editor().setContent(u"unsaved"_s);
    editor().duplicate();
    const Snippet copy = model.snippets().last();
    EXPECT_EQ(copy.title(), u"Copy of Unsaved");
    EXPECT_EQ(copy.content(), u"content");
    EXPECT_TRUE(editor().isDirty());
}

// Selection

TEST_F(EditorAndSelection, ADraftSurvivesAnotherSelection)
{
    editor().setTitle(u"draft"_s);
    open(u"b"_s);
    EXPECT_FALSE(editor().isDirty());
    open(u"a"_s);
    EXPECT_TRUE(editor().isDirty());
    EXPECT_EQ(editor().title(), u"draft");
    EXPECT_EQ(stored(u"a"_s).title(), u"Title of a");
}

TEST_F(EditorAndSelection, ADraftKeepsItsTimeStampOverSeveralEditors)
{
    world.clock.advance(1h);
    editor().setTitle(u"draft"_s);
    open(u"a"_s);
    editor().setTitle(u"more"_s);
    EXPECT_EQ(model.unsavedEdits().value(u"a"_s).updatedAt(), dateAt(1));
}

} // namespace
} // namespace vellumry::test
