#include "core/Log.h"

#include "support/LogCapture.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(Log, PrintsTypeNameAndMessage)
{
    testing::internal::CaptureStdout();
    log(u"SomeService", u"写入失败: ✗");
    logLine(u"as it stands");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "SomeService: 写入失败: ✗\nas it stands\n");
}

TEST(Log, ASinkTakesTheLinesUntilItIsTakenAway)
{
    {
        const test::LogCapture capture;
        log(u"SomeService", u"one");
        logLine(u"two");
        EXPECT_EQ(capture.lines, (QStringList{u"SomeService: one"_s, u"two"_s}));
    }
    testing::internal::CaptureStdout();
    logLine(u"three");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "three\n");
}

} // namespace
} // namespace vellumry
