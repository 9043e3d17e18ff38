#include "expression/stringify.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace vellumry::expression {

namespace {

TEST(StringifyTest, wholeNumbersHaveNoPoint)
{
    EXPECT_EQ(stringify(0), "0");
    EXPECT_EQ(stringify(5), "5");
    EXPECT_EQ(stringify(-3), "-3");
    EXPECT_EQ(stringify(1e15), "1000000000000000");
    EXPECT_EQ(stringify(1e18), "1000000000000000000");
}

TEST(StringifyTest, wholeNumbersEndWhere64BitsEnd)
{
    EXPECT_EQ(stringify(-0x1p63), "-9223372036854775808");
    EXPECT_EQ(stringify(0x1p63 - 1024), "9223372036854774784");
    EXPECT_EQ(stringify(0x1p63), "9223372036854775808"); // the shortest form, not as an integer
    EXPECT_EQ(stringify(1e19), "1e+19");
    EXPECT_EQ(stringify(1e300), "1e+300");
}

TEST(StringifyTest, minusZeroIsTheWholeNumberZero)
{
    EXPECT_EQ(stringify(-0.0), "0");
}

TEST(StringifyTest, otherNumbersHaveTheirShortestForm)
{
    EXPECT_EQ(stringify(0.5), "0.5");
    EXPECT_EQ(stringify(0.1), "0.1");
    EXPECT_EQ(stringify(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(stringify(-1e-7), "-1e-07");
    EXPECT_EQ(stringify(5e-324), "5e-324");
}

TEST(StringifyTest, whatIsNoNumberIsAWord)
{
    EXPECT_EQ(stringify(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(stringify(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(stringify(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(stringify(-std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(StringifyTest, readsBackAsTheSameValue)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) {
            ASSERT_EQ(std::strtod(stringify(value).c_str(), nullptr), value);
        }
    }
}

} // namespace

} // namespace vellumry::expression
