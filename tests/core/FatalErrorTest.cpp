#include "core/FatalError.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstdio>

using namespace vellumry;

namespace {

TEST(FatalErrorDeathTest, endsTheProcessWithTheTextOnStandardErrorAndWithoutACore)
{
    EXPECT_EXIT(fatalError(u"无法 do it"), testing::ExitedWithCode(1), "无法 do it");
}

TEST(FatalErrorDeathTest, tellsTheKeyThatStandsTwice)
{
    EXPECT_EXIT(fatalDuplicateKey(u"a key", QStringLiteral("/a/file.json")),
                testing::ExitedWithCode(1), "^Duplicate values for key: 'a key'\n$");
}

TEST(FatalErrorDeathTest, hasItExplainedAfterTheText)
{
    const auto explain = [](const FatalErrorReport& report) {
        std::fprintf(stderr, "explained: %s | %s | %s", report.text.toUtf8().constData(),
                     report.key.toUtf8().constData(), report.file.toUtf8().constData());
    };
    EXPECT_EXIT(
        {
            setFatalErrorExplainer(explain);
            fatalDuplicateKey(u"k", QStringLiteral("/a/file.json"));
        },
        testing::ExitedWithCode(1),
        "^Duplicate values for key: 'k'\nexplained: Duplicate values for key: 'k' . k . "
        "/a/file.json$");
}

} // namespace
