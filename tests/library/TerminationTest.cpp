#include "library/Termination.h"

#include "library/LibraryWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Reply = Termination::Reply;

class TerminationTest : public testing::Test {
protected:
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {orderedSnippet(u"a"_s, u"Work"_s, 0), orderedSnippet(u"b"_s, u"Home"_s, 0)});
    }

    void draft(const QString& id, const QString& title)
    {
        model.setUnsavedEdit(titled(*model.effectiveSnippet(id), title));
    }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
    QList<QuitQuestion> asked;
    std::function<std::optional<qsizetype>()> answer = [] { return std::nullopt; };
    Termination termination{{.list = model,
                             .notifications = world.notifications,
                             .ask = [this](const QuitQuestion& question) {
                                 asked.append(question);
                                 return answer();
                             }}};
};

TEST_F(TerminationTest, DoesNotFollowTheLastWindow)
{
    EXPECT_FALSE(Termination::applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(TerminationTest, AsksNothingWithoutDrafts)
{
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(TerminationTest, AsksAboutTheDrafts)
{
    draft(u"a"_s, u"first"_s);
    draft(u"b"_s, u"second"_s);
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateCancel);
    EXPECT_THAT(asked,
                ElementsAre(QuitQuestion{
                    .title = u"You have unsaved changes"_s,
                    .informativeText = u"There are 2 snippet draft(s) not saved."_s,
                    .buttons = {u"Save All & Quit"_s, u"Discard Drafts & Quit"_s, u"Cancel"_s}}));
}

TEST_F(TerminationTest, StaysForTheThirdButtonAndForAnyOtherAnswer)
{
    draft(u"a"_s, u"first"_s);
    for (const std::optional<qsizetype> other :
         {std::optional<qsizetype>(2), std::optional<qsizetype>(-1), std::optional<qsizetype>(3),
          std::optional<qsizetype>()}) {
        answer = [=] { return other; };
        EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateCancel);
        EXPECT_EQ(model.unsavedEdits().size(), 1);
        EXPECT_THAT(world.storage.calls, IsEmpty());
    }
}

TEST_F(TerminationTest, DiscardsTheDraftsAndWritesNothing)
{
    draft(u"a"_s, u"first"_s);
    model.setUnsavedEdit(orderedSnippet(u"gone"_s, u"Work"_s, 0));
    answer = [] { return 1; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_THAT(model.unsavedEdits(), IsEmpty());
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"Title of a"_s);
}

TEST_F(TerminationTest, SavesEachDraftInASaveOfItsOwnWithItsOldTimeStamp)
{
    const Date before = world.snippet(u"a"_s).updatedAt();
    world.clock.advance(std::chrono::hours(1));
    draft(u"a"_s, u"first"_s);
    draft(u"b"_s, u"second"_s);
    answer = [] { return 0; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_EQ(world.storage.saves(), 2);
    EXPECT_THAT(model.unsavedEdits(), IsEmpty());
    EXPECT_EQ(world.storage.stored->data.snippets[0].title(), u"first"_s);
    EXPECT_EQ(world.storage.stored->data.snippets[1].title(), u"second"_s);
    EXPECT_EQ(world.storage.stored->data.snippets[0].updatedAt(), before);
}

TEST_F(TerminationTest, SavesNothingForASnippetThatIsGoneAndEndsWithoutAWord)
{
    draft(u"a"_s, u"first"_s);
    draft(u"b"_s, u"second"_s);
    world.storage.stored->data.snippets.removeFirst();
    Q_EMIT world.notifications.syncDataDidChange({});
    world.storage.calls.clear();
    answer = [] { return 0; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_EQ(asked.first().informativeText, u"There are 2 snippet draft(s) not saved."_s);
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_EQ(world.storage.stored->data.snippets.size(), 1);
    EXPECT_EQ(world.storage.stored->data.snippets.first().title(), u"second"_s);
    EXPECT_THAT(model.unsavedEdits().keys(), ElementsAre(u"a"_s)) << "stays unsaved";
}

TEST_F(TerminationTest, SavesTheDraftsThatThereAreWhenTheAnswerComes)
{
    draft(u"a"_s, u"first"_s);
    answer = [this] {
        draft(u"b"_s, u"later"_s);
        return 0;
    };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_EQ(world.storage.saves(), 2);
}

TEST_F(TerminationTest, MovesASnippetByItsDraftAndKeepsTheEmptyCollection)
{
    model.selectUnsaved();
    model.setUnsavedEdit(inCollection(world.snippet(u"a"_s), u"Home"_s));
    EXPECT_THAT(world.shown(), ElementsAre(u"a"_s));
    answer = [] { return 0; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_THAT(world.shown(), IsEmpty()) << "refreshed, as Unsaved is selected";
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_EQ(world.storage.stored->data.snippets.first().collection(), u"Home"_s);
}

TEST_F(TerminationTest, EndsEvenIfASaveFails)
{
    draft(u"a"_s, u"first"_s);
    world.storage.fails = [](qsizetype) { return true; };
    answer = [] { return 0; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_THAT(model.unsavedEdits(), IsEmpty());
}

TEST_F(TerminationTest, AsksOnlyOnce)
{
    draft(u"a"_s, u"first"_s);
    answer = [this] {
        EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateCancel);
        return 1;
    };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateNow);
    EXPECT_EQ(asked.size(), 1);
    draft(u"a"_s, u"again"_s);
    answer = [] { return 2; };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateCancel);
    EXPECT_EQ(asked.size(), 2);
}

TEST_F(TerminationTest, AsksAtTheEndOfTheSessionIfItMay)
{
    int questions = 0;
    const auto mayAsk = [&] {
        ++questions;
        return true;
    };
    EXPECT_EQ(termination.sessionShouldEnd(mayAsk), Reply::terminateNow);
    EXPECT_EQ(questions, 0) << "there is nothing to ask";
    draft(u"a"_s, u"first"_s);
    EXPECT_EQ(termination.sessionShouldEnd(mayAsk), Reply::terminateCancel);
    EXPECT_EQ(asked.size(), 1);
    answer = [] { return 0; };
    EXPECT_EQ(termination.sessionShouldEnd(mayAsk), Reply::terminateNow);
    EXPECT_EQ(world.storage.saves(), 1);
    EXPECT_EQ(questions, 2);
}

TEST_F(TerminationTest, WritesNothingAtTheEndOfTheSessionUnasked)
{
    draft(u"a"_s, u"first"_s);
    EXPECT_EQ(termination.sessionShouldEnd([] { return false; }), Reply::terminateNow);
    EXPECT_THAT(asked, IsEmpty());
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(TerminationTest, LetsTheSessionEndUnderAnOpenQuestion)
{
    draft(u"a"_s, u"first"_s);
    answer = [this]() -> std::optional<qsizetype> {
        EXPECT_EQ(termination.sessionShouldEnd([] { return true; }), Reply::terminateNow);
        return std::nullopt;
    };
    EXPECT_EQ(termination.applicationShouldTerminate(), Reply::terminateCancel);
    EXPECT_EQ(asked.size(), 1);
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(TerminationTest, PostsPerformSaveAndNothingElseAtTheEnd)
{
    int posted = 0;
    QObject::connect(&world.notifications, &NotificationCenter::performSave, &model,
                     [&] { ++posted; });
    draft(u"a"_s, u"first"_s);
    termination.applicationWillTerminate();
    EXPECT_EQ(posted, 1);
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_EQ(model.unsavedEdits().size(), 1);
}

} // namespace
} // namespace vellumry::test
