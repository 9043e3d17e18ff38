#include "models/DecodingError.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(DecodingError, TellsTheReasonAndThePlace)
{
    const DecodingError error(u"无法解析日期字符串: x"_s, u"updatedAt"_s);
    EXPECT_EQ(error.debugDescription(), u"无法解析日期字符串: x"_s);
    EXPECT_TRUE(error.description().contains(u"updatedAt"_s));
    EXPECT_TRUE(error.description().contains(error.debugDescription()));
    EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
}

TEST(DecodingError, GrowsItsPlaceOnTheWayOut)
{
    const DecodingError outer = DecodingError(u"why"_s, u"updatedAt"_s).within(u"snippets[3]"_s);
    EXPECT_TRUE(outer.description().contains(u"snippets[3].updatedAt"_s))
        << qPrintable(outer.description());
    EXPECT_EQ(outer.debugDescription(), u"why"_s);
    EXPECT_TRUE(DecodingError(u"why"_s).within(u"data"_s).description().contains(u"data"_s));
}

} // namespace
} // namespace vellumry
