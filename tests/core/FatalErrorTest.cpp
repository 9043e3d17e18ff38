#include "core/FatalError.h"

#include <gtest/gtest.h>

#include <csignal>

using namespace vellumry;

namespace {

TEST(FatalErrorDeathTest, endsTheProcessWithTheTextOnStandardError)
{
    EXPECT_EXIT(fatalError(u"无法 do it"), testing::KilledBySignal(SIGABRT), "无法 do it");
}

TEST(FatalErrorDeathTest, tellsTheKeyThatStandsTwice)
{
    EXPECT_DEATH(fatalDuplicateKey(u"a key"), "Duplicate values for key: 'a key'");
}

} // namespace
