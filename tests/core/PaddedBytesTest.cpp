#include "core/PaddedBytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumry {
namespace {

bool isPadded(const PaddedBytes& bytes)
{
    const char* end = bytes.data() + bytes.size();
    return std::all_of(end, end + PaddedBytes::padding, [](char c) { return c == 0; });
}

TEST(PaddedBytes, CopiesItsContent)
{
    const PaddedBytes bytes(QByteArrayView("a\0b", 3));
    EXPECT_EQ(bytes.view(), QByteArrayView("a\0b", 3));
    EXPECT_TRUE(isPadded(bytes));
}

TEST(PaddedBytes, MayBeEmpty)
{
    EXPECT_EQ(PaddedBytes().size(), 0U);
    EXPECT_TRUE(isPadded(PaddedBytes()));
    EXPECT_TRUE(isPadded(PaddedBytes(QByteArrayView())));
}

TEST(PaddedBytes, IsPaddedAgainAfterTruncation)
{
    PaddedBytes bytes(QByteArrayView("abcdef"));
    bytes.truncate(2);
    EXPECT_EQ(bytes.view(), QByteArrayView("ab"));
    EXPECT_TRUE(isPadded(bytes));
}

} // namespace
} // namespace vellumry
