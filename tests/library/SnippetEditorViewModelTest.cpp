// The editor of one snippet by itself: its fields, its edits and what it tells of them.

#include "library/EditorWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Counts = QMap<QString, int>;

/// A snippet with something in every field.
Snippet fullSnippet()
{
    return Snippet({.id = u"a"_s,
                    .title = u"Title"_s,
                    .subtitle = u"Subtitle"_s,
                    .collection = u"Work"_s,
                    .content = u"Dear {{name}}, {{ greeting }}"_s,
                    .keywords = {u"one"_s, u"Two"_s},
                    .createdAt = dateAt(1),
                    .updatedAt = dateAt(2),
                    .usageCount = 3,
                    .lastUsedAt = dateAt(3),
                    .displayOrder = 4,
                    .variables = {{u"name"_s, u"Ann"_s}}});
}

class Editor : public testing::Test {
protected:
    void SetUp() override { open(fullSnippet()); }

    void open(const Snippet& snippet, bool isUnsaved = false, const QList<Snippet>& stored = {})
    {
        world.openAlone(snippet, isUnsaved, stored);
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

    EditorWorld world;
};

using EditorStart = Editor;
using EditorEdit = Editor;
using EditorSubtitle = Editor;
using EditorVariables = Editor;
using EditorKeywords = Editor;
using EditorTimers = Editor;

TEST_F(EditorStart, ShowsTheFieldsOfTheSnippet)
{
    EXPECT_EQ(editor().title(), u"Title");
    EXPECT_EQ(editor().subtitle(), u"Subtitle");
    EXPECT_EQ(editor().collection(), u"Work");
    EXPECT_EQ(editor().content(), u"Dear {{name}}, {{ greeting }}");
    EXPECT_THAT(editor().keywords(), ElementsAre(u"one"_s, u"Two"_s));
    EXPECT_EQ(editor().variableValues(), (QMap<QString, QString>{{u"name"_s, u"Ann"_s}}));
    EXPECT_EQ(editor().usageCount(), 3);
    EXPECT_EQ(editor().lastUsedAt(), dateAt(3));
    EXPECT_EQ(editor().snippet(), fullSnippet());
}

TEST_F(EditorStart, IsCleanAndShowsNothingOfASave)
{
    EXPECT_FALSE(editor().isDirty());
    EXPECT_FALSE(editor().showSaveSuccess());
    EXPECT_EQ(editor().lastSavedAt(), std::nullopt);
    EXPECT_FALSE(editor().showCopySuccess());
    EXPECT_FALSE(editor().isAddingNewCollection());
    EXPECT_EQ(editor().newCollectionName(), u"");
    EXPECT_FALSE(editor().showDeleteConfirmation());
    EXPECT_THAT(world.reports, IsEmpty());
    EXPECT_EQ(world.scheduler.pending(), 0U);
}

TEST_F(EditorStart, IsDirtyWithADraft)
{
    open(fullSnippet(), true);
    EXPECT_TRUE(editor().isDirty());
}

TEST_F(EditorStart, ShowsADraftAndNotWhatIsStored)
{
    open(titled(fullSnippet(), u"draft"_s), true, {fullSnippet()});
    EXPECT_EQ(editor().title(), u"draft");
}

TEST_F(EditorStart, KnowsANewEmptySnippetByTitleAndContent)
{
    const auto isNewEmpty = [&](const QString& title, const QString& content) {
        open(titled(makeSnippet(u"a"_s, u"Work"_s, content), title));
        return editor().isNewEmptySnippet();
    };
    EXPECT_TRUE(isNewEmpty(u"New Snippet"_s, u""_s));
    EXPECT_TRUE(isNewEmpty(u"New Snippet"_s, u" \t\r\n\u00a0\u2028"_s));
    EXPECT_FALSE(isNewEmpty(u"New Snippet"_s, u"x"_s));
    EXPECT_FALSE(isNewEmpty(u""_s, u""_s)) << "other than for the list's untouched snippets";
    EXPECT_FALSE(isNewEmpty(u"new snippet"_s, u""_s));
    EXPECT_FALSE(isNewEmpty(u"New Snippet "_s, u""_s));
}

TEST_F(EditorStart, JudgesANewEmptySnippetByWhatItWasOpenedWith)
{
    open(titled(makeSnippet(u"a"_s, u"Work"_s, u""_s), u"New Snippet"_s));
    editor().setTitle(u"Other"_s);
    editor().setContent(u"typed"_s);
    editor().save();
    EXPECT_TRUE(editor().isNewEmptySnippet());
    open(fullSnippet());
    editor().setTitle(u"New Snippet"_s);
    editor().setContent(u""_s);
    EXPECT_FALSE(editor().isNewEmptySnippet());
}

TEST_F(EditorEdit, MakesTheEditorDirtyAndHandsOutADraft)
{
    editor().setTitle(u"New"_s);
    EXPECT_TRUE(editor().isDirty());
    EXPECT_THAT(world.reports, ElementsAre(u"draft"_s));
    EXPECT_EQ(world.drafts.last(), titled(fullSnippet(), u"New"_s))
        << "with the time stamp of the snippet that was opened";
    EXPECT_EQ(announced(), once({u"title"_s, u"isDirty"_s}));
    editor().setTitle(u"Newer"_s);
    EXPECT_EQ(announced(), once({u"title"_s}));
    EXPECT_EQ(world.drafts.size(), 2);
    EXPECT_EQ(world.storage.saves(), 0);
}

TEST_F(EditorEdit, ComesFromEachField)
{
    editor().setContent(u"text"_s);
    EXPECT_EQ(announced(), once({u"content"_s, u"isDirty"_s}));
    EXPECT_EQ(world.drafts.last().content(), u"text");
    editor().setSubtitle(u"sub"_s);
    EXPECT_EQ(announced(), once({u"subtitle"_s}));
    EXPECT_EQ(world.drafts.last().subtitle(), u"sub");
    editor().addKeyword(u"three"_s);
    EXPECT_EQ(announced(), once({u"keywords"_s}));
    EXPECT_THAT(world.drafts.last().keywords(), ElementsAre(u"one"_s, u"Two"_s, u"three"_s));
    editor().removeKeyword(u"one"_s);
    EXPECT_EQ(announced(), once({u"keywords"_s}));
    EXPECT_THAT(world.drafts.last().keywords(), ElementsAre(u"Two"_s, u"three"_s));
    editor().setVariableValue(u"Bob"_s, u"name"_s);
    EXPECT_EQ(announced(), once({u"variableValues"_s}));
    editor().clearVariableValues();
    EXPECT_EQ(announced(), once({u"variableValues"_s}));
    EXPECT_EQ(world.reports.count(u"draft"_s), 6);
}

TEST_F(EditorEdit, IsNeverComparedWithWhatWasThere)
{
    editor().setTitle(u"Title"_s);
    EXPECT_TRUE(editor().isDirty());
    EXPECT_EQ(announced(), once({u"isDirty"_s}));
    editor().setContent(editor().content());
    EXPECT_EQ(world.drafts.size(), 2);
    EXPECT_EQ(world.drafts.last(), fullSnippet());
    EXPECT_EQ(announced(), Counts());
}

TEST_F(EditorEdit, NeedsNoReceiver)
{
    SnippetEditorViewModel::Callbacks callbacks;
    callbacks.onSave = [](const Snippet&) {};
    world.open(fullSnippet(), false, {}, callbacks);
    editor().setTitle(u"New"_s);
    editor().revertChanges();
    editor().requestDelete();
    editor().duplicate();
    editor().escape();
    EXPECT_EQ(editor().title(), u"Title");
    EXPECT_EQ(world.listFocuses, 1);
}

TEST_F(EditorEdit, IsAnnouncedWhenTheDraftIsOutAndTheEditorDirty)
{
    QStringList seen;
    QObject::connect(&editor(), &SnippetEditorViewModel::titleChanged, &editor(), [&] {
        seen.append(u"%1 %2 %3"_s.arg(editor().title())
                        .arg(static_cast<int>(editor().isDirty()))
                        .arg(world.drafts.size()));
    });
    editor().setTitle(u"New"_s);
    EXPECT_THAT(seen, ElementsAre(u"New 1 1"_s));
}

TEST_F(EditorEdit, MayComeFromWhoeverIsToldOfOne)
{
    QObject::connect(&editor(), &SnippetEditorViewModel::titleChanged, &editor(),
                     [&] { editor().setContent(u"follows"_s); });
    editor().setTitle(u"New"_s);
    EXPECT_EQ(announced(), once({u"title"_s, u"content"_s, u"isDirty"_s}));
    EXPECT_EQ(world.drafts.last().content(), u"follows");
}

TEST_F(EditorEdit, TakesTextsOfAnySize)
{
    const QString huge(5'000'000, u'x');
    editor().setContent(huge);
    editor().setTitle(huge);
    editor().setSubtitle(huge);
    editor().addKeyword(huge);
    editor().setVariableValue(huge, u"name"_s);
    EXPECT_EQ(editor().content().constData(), huge.constData()) << "not copied";
    EXPECT_EQ(world.drafts.last().content().constData(), huge.constData());
    EXPECT_EQ(world.drafts.last().title().constData(), huge.constData());
    EXPECT_EQ(editor().subtitle().size(), 200);
    EXPECT_THAT(editor().keywords(), ElementsAre(u"one"_s, u"Two"_s));
    editor().setTitle(u""_s);
    editor().setContent(u""_s);
    editor().setSubtitle(u""_s);
    EXPECT_EQ(world.drafts.last().content(), u"");
    EXPECT_EQ(world.drafts.last().title(), u"");
    EXPECT_THAT(editor().detectedVariables(), IsEmpty());
}

TEST_F(EditorEdit, TakesASnippetOfAnyForm)
{
    open(Snippet());
    EXPECT_EQ(editor().availableCollections(), QStringList(u""_s));
    editor().setTitle(u"x"_s);
    editor().save();
    EXPECT_EQ(world.saved.last().id(), u"");
    Snippet foreign = bareSnippet(u"../\u0000\n\U0001f600"_s);
    foreign.setUsageCount(std::numeric_limits<qint64>::max());
    foreign.setLastUsedAt(Date::min());
    open(foreign, false, {fullSnippet()});
    editor().copyToClipboard();
    EXPECT_EQ(editor().usageCount(), std::numeric_limits<qint64>::max()) << "no further";
    editor().revertChanges();
    EXPECT_EQ(editor().lastUsedAt(), Date::min());
}

TEST_F(EditorEdit, CurrentSnippetHasTheWorkingFieldsAndTheTimeOfNow)
{
    editor().setTitle(u"t"_s);
    editor().setSubtitle(u"s"_s);
    editor().setContent(u"{{name}} {{x}}"_s);
    editor().addKeyword(u"k"_s);
    editor().setVariableValue(u"1"_s, u"x"_s);
    world.clock.advance(1h);
    const Snippet expected({.id = u"a"_s,
                            .title = u"t"_s,
                            .subtitle = u"s"_s,
                            .collection = u"Work"_s,
                            .content = u"{{name}} {{x}}"_s,
                            .keywords = {u"one"_s, u"Two"_s, u"k"_s},
                            .createdAt = dateAt(1),
                            .updatedAt = world.clock.now(),
                            .usageCount = 3,
                            .lastUsedAt = dateAt(3),
                            .displayOrder = 4,
                            .variables = {{u"name"_s, u"Ann"_s}, {u"x"_s, u"1"_s}}});
    EXPECT_EQ(editor().currentSnippet(), expected);
}

TEST_F(EditorSubtitle, BecomesOneLine)
{
    editor().setSubtitle(u"a\r\nb\nc\rd"_s);
    EXPECT_EQ(editor().subtitle(), u"a b c d");
    EXPECT_EQ(world.drafts.last().subtitle(), u"a b c d");
}

TEST_F(EditorSubtitle, IsCutTo200Characters)
{
    QString text;
    for (int i = 0; i < 300; ++i)
        text += QChar(u'a' + i % 26);
    editor().setSubtitle(text);
    EXPECT_EQ(editor().subtitle(), text.first(200));
    const QString family = u"\U0001f468\u200d\U0001f469\u200d\U0001f467"_s;
    editor().setSubtitle(family.repeated(201));
    EXPECT_EQ(editor().subtitle(), family.repeated(200)) << "what a person sees as one is one";
}

TEST_F(EditorSubtitle, TheSameIsNoEdit)
{
    Snippet snippet = fullSnippet();
    snippet.setSubtitle(u"a b"_s);
    open(snippet);
    editor().setSubtitle(u"a b"_s);
    editor().setSubtitle(u"a\nb"_s);
    editor().setSubtitle(u"a\r\nb"_s);
    EXPECT_FALSE(editor().isDirty());
    EXPECT_THAT(world.reports, IsEmpty());
    EXPECT_EQ(announced(), Counts());
}

TEST_F(EditorVariables, AreTheDistinctNamesInTheOrderOfTheText)
{
    editor().setContent(u"{{b}} {{a}} {{ b }} {{}} {{a b}}"_s);
    EXPECT_THAT(editor().detectedVariables(), ElementsAre(u"b"_s, u"a"_s, u"a b"_s));
    editor().setContent(u"{{a}} {{b}} {{a}}"_s);
    EXPECT_THAT(editor().detectedVariables(), ElementsAre(u"a"_s, u"b"_s));
    editor().setContent(u""_s);
    EXPECT_THAT(editor().detectedVariables(), IsEmpty());
}

TEST_F(EditorVariables, AreFoundAnewAfterARevert)
{
    editor().setContent(u"{{x}}"_s);
    EXPECT_THAT(editor().detectedVariables(), ElementsAre(u"x"_s));
    editor().revertChanges();
    EXPECT_THAT(editor().detectedVariables(), ElementsAre(u"name"_s, u"greeting"_s));
}

TEST_F(EditorVariables, CountAsFilledWithMoreThanWhiteSpace)
{
    editor().setContent(u"{{a}} {{b}} {{a}}"_s);
    editor().setVariableValue(u"  \n\t"_s, u"a"_s);
    EXPECT_EQ(editor().filledVariableCount(), 0);
    EXPECT_EQ(editor().filledVariables(), QSet<QString>{u"name"_s}) << "of the content before";
    editor().setVariableValue(u" x "_s, u"b"_s);
    EXPECT_EQ(editor().filledVariableCount(), 1);
    editor().setVariableValue(u"y"_s, u"c"_s);
    EXPECT_EQ(editor().filledVariableCount(), 1) << "no placeholder of the content";
    EXPECT_EQ(editor().filledVariables(), (QSet<QString>{u"b"_s, u"c"_s, u"name"_s}));
}

TEST_F(EditorVariables, FillTheContent)
{
    EXPECT_EQ(editor().resolvedContent(), u"Dear Ann, {{ greeting }}");
    editor().setVariableValue(u" hi "_s, u"greeting"_s);
    EXPECT_EQ(editor().resolvedContent(), u"Dear Ann,  hi ");
}

TEST_F(EditorVariables, OfPlaceholdersThatAreGoneAreKeptHereAndNotSaved)
{
    editor().setContent(u"{{greeting}}"_s);
    EXPECT_EQ(editor().variableValues(), (QMap<QString, QString>{{u"name"_s, u"Ann"_s}}));
    EXPECT_THAT(world.drafts.last().variables(), IsEmpty());
    editor().setContent(u"{{name}}"_s);
    EXPECT_EQ(world.drafts.last().variables(), (QMap<QString, QString>{{u"name"_s, u"Ann"_s}}));
    editor().setVariableValue(u" "_s, u"name"_s);
    EXPECT_THAT(world.drafts.last().variables(), IsEmpty()) << "a blank value is none";
    EXPECT_EQ(editor().variableValues().value(u"name"_s), u" ");
}

TEST_F(EditorVariables, TheSameValueIsNoEdit)
{
    editor().setVariableValue(u"Ann"_s, u"name"_s);
    EXPECT_FALSE(editor().isDirty());
    EXPECT_THAT(world.reports, IsEmpty());
}

TEST_F(EditorVariables, AnEmptyValueRemovesTheName)
{
    editor().setVariableValue(u""_s, u"name"_s);
    EXPECT_THAT(editor().variableValues(), IsEmpty());
    EXPECT_EQ(announced(), once({u"variableValues"_s, u"isDirty"_s}));
}

TEST_F(EditorVariables, ClearingANameWithoutAValueIsAnEdit)
{
    editor().setVariableValue(u""_s, u"greeting"_s);
    EXPECT_TRUE(editor().isDirty());
    EXPECT_EQ(announced(), once({u"isDirty"_s}));
    EXPECT_EQ(world.drafts.size(), 1);
}

TEST_F(EditorVariables, AStoredEmptyValueIsLeftByAnEmptyOne)
{
    Snippet snippet = fullSnippet();
    snippet.setVariables({{u"name"_s, u""_s}});
    open(snippet);
    editor().setVariableValue(u""_s, u"name"_s);
    EXPECT_FALSE(editor().isDirty());
    EXPECT_EQ(editor().variableValues().size(), 1);
}

TEST_F(EditorVariables, AreClearedAtOnce)
{
    editor().setVariableValue(u"hi"_s, u"greeting"_s);
    (void)announced();
    editor().clearVariableValues();
    EXPECT_THAT(editor().variableValues(), IsEmpty());
    EXPECT_EQ(announced(), once({u"variableValues"_s}));
    const qsizetype drafts = world.drafts.size();
    editor().clearVariableValues();
    EXPECT_EQ(world.drafts.size(), drafts) << "there is nothing to clear";
}

TEST_F(EditorKeywords, AreTrimmedAndInLowerCase)
{
    editor().addKeyword(u" \t\r\n\u2028BASH script\n"_s);
    EXPECT_THAT(editor().keywords(), ElementsAre(u"one"_s, u"Two"_s, u"bash script"_s));
    EXPECT_EQ(world.drafts.size(), 1);
}

TEST_F(EditorKeywords, AreDroppedWhenEmpty)
{
    editor().addKeyword(u""_s);
    editor().addKeyword(u" \n\t"_s);
    EXPECT_EQ(editor().keywords().size(), 2);
    EXPECT_FALSE(editor().isDirty());
    EXPECT_EQ(announced(), Counts());
}

TEST_F(EditorKeywords, AreDroppedWhenTooLongAndNotCut)
{
    editor().addKeyword(u"x"_s.repeated(31));
    EXPECT_EQ(editor().keywords().size(), 2);
    EXPECT_FALSE(editor().isDirty());
    editor().addKeyword(u"  "_s + u"x"_s.repeated(30) + u"  "_s);
    EXPECT_EQ(editor().keywords().last(), u"x"_s.repeated(30));
    const QString face = u"\U0001f600"_s;
    editor().addKeyword(face.repeated(30));
    EXPECT_EQ(editor().keywords().last(), face.repeated(30)) << "characters, as a person counts";
    editor().addKeyword(face.repeated(31));
    EXPECT_EQ(editor().keywords().size(), 4);
}

TEST_F(EditorKeywords, AreDroppedWhenThereAlready)
{
    editor().addKeyword(u"BASH"_s);
    editor().addKeyword(u"bash"_s);
    EXPECT_THAT(editor().keywords(), ElementsAre(u"one"_s, u"Two"_s, u"bash"_s));
    EXPECT_EQ(world.drafts.size(), 1);
}

TEST_F(EditorKeywords, AreNotBlockedByAStoredOneInCapitals)
{
    editor().addKeyword(u"TWO"_s);
    EXPECT_THAT(editor().keywords(), ElementsAre(u"one"_s, u"Two"_s, u"two"_s));
}

TEST_F(EditorKeywords, AreTenAtMost)
{
    for (int i = 0; i < 8; ++i)
        editor().addKeyword(u"k%1"_s.arg(i));
    EXPECT_EQ(editor().keywords().size(), 10);
    const qsizetype drafts = world.drafts.size();
    editor().addKeyword(u"eleven"_s);
    EXPECT_EQ(editor().keywords().size(), 10);
    EXPECT_EQ(world.drafts.size(), drafts);
    Snippet many = fullSnippet();
    many.setKeywords(QStringList(15, u"k"_s));
    open(many);
    editor().addKeyword(u"more"_s);
    EXPECT_EQ(editor().keywords().size(), 15) << "a library from elsewhere may hold more";
}

TEST_F(EditorKeywords, AreRemovedWithAllThatAreEqual)
{
    Snippet snippet = fullSnippet();
    snippet.setKeywords({u"a"_s, u"b"_s, u"a"_s, u"A"_s});
    open(snippet);
    editor().removeKeyword(editor().keywords().first());
    EXPECT_THAT(editor().keywords(), ElementsAre(u"b"_s, u"A"_s));
    EXPECT_EQ(announced(), once({u"keywords"_s, u"isDirty"_s}));
    editor().removeKeyword(u"none"_s);
    EXPECT_EQ(announced(), Counts());
    EXPECT_EQ(world.drafts.size(), 2) << "it counts as an edit";
}

TEST_F(EditorTimers, TakeTheSaveSuccessAwayAfterOneAndAHalfSeconds)
{
    editor().save();
    EXPECT_TRUE(editor().showSaveSuccess());
    world.scheduler.advance(1499ms);
    EXPECT_TRUE(editor().showSaveSuccess());
    (void)announced();
    world.scheduler.advance(1ms);
    EXPECT_FALSE(editor().showSaveSuccess());
    EXPECT_EQ(announced(), once({u"showSaveSuccess"_s}));
}

TEST_F(EditorTimers, TakeTheCopySuccessAwayAfterThreeSeconds)
{
    editor().copyToClipboard();
    EXPECT_TRUE(editor().showCopySuccess());
    world.scheduler.advance(2999ms);
    EXPECT_TRUE(editor().showCopySuccess());
    (void)announced();
    world.scheduler.advance(1ms);
    EXPECT_FALSE(editor().showCopySuccess());
    EXPECT_EQ(announced(), once({u"showCopySuccess"_s}));
}

TEST_F(EditorTimers, OfAFirstSaveEndTheSuccessOfASecond)
{
    editor().save();
    world.scheduler.advance(1s);
    editor().save();
    (void)announced();
    world.scheduler.advance(500ms);
    EXPECT_FALSE(editor().showSaveSuccess());
    world.scheduler.advance(1s);
    EXPECT_EQ(announced(), once({u"showSaveSuccess"_s}));
}

TEST_F(EditorTimers, DoNotOutliveTheEditor)
{
    editor().save();
    editor().copyToClipboard();
    world.edited.reset();
    world.editor.reset();
    world.scheduler.advance(1h);
    EXPECT_EQ(world.scheduler.pending(), 0U);
}

TEST_F(EditorTimers, NeverSave)
{
    editor().setTitle(u"New"_s);
    world.scheduler.advance(24h);
    EXPECT_THAT(world.reports, ElementsAre(u"draft"_s));
}

TEST_F(EditorStart, KeepsTheFlagOfTheDeleteQuestionForTheView)
{
    editor().setShowDeleteConfirmation(true);
    EXPECT_TRUE(editor().showDeleteConfirmation());
    EXPECT_EQ(announced(), once({u"showDeleteConfirmation"_s}));
    editor().setShowDeleteConfirmation(true);
    EXPECT_EQ(announced(), Counts());
}

TEST(RelativeTime, TellsTheTimeInWholeUnits)
{
    const Date from = dateAt(0);
    const auto text = [&](std::chrono::nanoseconds elapsed) {
        return SnippetEditorViewModel::relativeTime(from, from + elapsed);
    };
    EXPECT_EQ(text(0s), u"just now");
    EXPECT_EQ(text(59'900ms), u"just now");
    EXPECT_EQ(text(60s - 1ns), u"just now");
    EXPECT_EQ(text(60s), u"1 min ago");
    EXPECT_EQ(text(119'999ms), u"1 min ago");
    EXPECT_EQ(text(120s), u"2 mins ago");
    EXPECT_EQ(text(3599s), u"59 mins ago");
    EXPECT_EQ(text(3600s), u"1 hr ago");
    EXPECT_EQ(text(7199s), u"1 hr ago");
    EXPECT_EQ(text(7200s), u"2 hrs ago");
    EXPECT_EQ(text(86399s), u"23 hrs ago");
    EXPECT_EQ(text(86400s), u"yesterday");
    EXPECT_EQ(text(90000s), u"yesterday");
    EXPECT_EQ(text(172799s), u"yesterday");
    EXPECT_EQ(text(172800s), u"2 days ago");
    EXPECT_EQ(text(400 * 86400s), u"400 days ago");
}

TEST(RelativeTime, HasATextForAnyTwoDates)
{
    const Date now = dateAt(0);
    EXPECT_EQ(SnippetEditorViewModel::relativeTime(now + 1h, now), u"just now");
    EXPECT_EQ(SnippetEditorViewModel::relativeTime(Date::max(), Date::min()), u"just now");
    EXPECT_EQ(SnippetEditorViewModel::relativeTime(Date::min(), Date::max()), u"213503 days ago");
}

} // namespace
} // namespace vellumry::test
