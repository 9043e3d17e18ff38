#include "library/ConflictChoice.h"

#include "support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <optional>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using Strategy = ConflictMergeStrategy;

class ConflictChoiceTest : public testing::Test {
protected:
    ConflictChoiceTest()
    {
        QObject::connect(&choice, &ConflictChoice::dismissed, &choice, [this] { ++dismissals; });
    }

    ManualScheduler scheduler;
    QList<Strategy> resolved;
    int dismissals = 0;
    ConflictChoice choice{scheduler, [this](Strategy strategy) {
                              EXPECT_TRUE(choice.isProcessing());
                              resolved.append(strategy);
                          }};
};

TEST_F(ConflictChoiceTest, beginsWithTheSmartMergeAndNothingOpen)
{
    EXPECT_TRUE(choice.isPresented());
    EXPECT_EQ(choice.selectedStrategy(), Strategy::smartMerge);
    EXPECT_FALSE(choice.isProcessing());
    EXPECT_EQ(choice.errorMessage(), std::nullopt);
    EXPECT_EQ(choice.expandedConflictID(), std::nullopt);
}

TEST_F(ConflictChoiceTest, atMostOneRecordIsOpen)
{
    const QUuid first = QUuid::createUuid();
    const QUuid second = QUuid::createUuid();
    choice.toggle(first);
    EXPECT_EQ(choice.expandedConflictID(), first);
    choice.toggle(second);
    EXPECT_EQ(choice.expandedConflictID(), second);
    choice.toggle(second);
    EXPECT_EQ(choice.expandedConflictID(), std::nullopt);
}

TEST_F(ConflictChoiceTest, resolvesAtOnceAndGoesHalfASecondLater)
{
    choice.selectStrategy(Strategy::keepBoth);
    choice.resolveConflict();
    EXPECT_EQ(resolved, QList<Strategy>({Strategy::keepBoth}));
    EXPECT_TRUE(choice.isProcessing());
    scheduler.advance(499ms);
    EXPECT_TRUE(choice.isProcessing());
    EXPECT_TRUE(choice.isPresented());
    EXPECT_EQ(dismissals, 0);
    scheduler.advance(1ms);
    EXPECT_FALSE(choice.isProcessing());
    EXPECT_FALSE(choice.isPresented());
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ConflictChoiceTest, resolvesOnlyOnce)
{
    choice.resolveConflict();
    choice.resolveConflict();
    scheduler.advance(500ms);
    choice.resolveConflict();
    EXPECT_EQ(resolved.size(), 1);
}

TEST_F(ConflictChoiceTest, ignoringGoesAtOnceAndResolvesNothing)
{
    choice.ignore();
    EXPECT_FALSE(choice.isPresented());
    EXPECT_EQ(dismissals, 1);
    EXPECT_TRUE(resolved.isEmpty());
}

TEST_F(ConflictChoiceTest, goesOnceEvenIfIgnoredWhileProcessing)
{
    choice.resolveConflict();
    choice.ignore();
    scheduler.advance(500ms);
    EXPECT_EQ(dismissals, 1);
}

TEST(ConflictChoiceLifeTest, mayGoWhileProcessing)
{
    ManualScheduler scheduler;
    {
        ConflictChoice choice(scheduler, [](Strategy) {});
        choice.resolveConflict();
    }
    scheduler.advance(1s);
    EXPECT_EQ(scheduler.pending(), 0U);
}

} // namespace
} // namespace vellumry::test
