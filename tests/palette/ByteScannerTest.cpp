#include "palette/ByteScanner.h"

#include "palette/SupportedInstructions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>

namespace vellumry {
namespace {

using Instructions = ByteScanner::Instructions;

class ByteScannerWith : public testing::TestWithParam<Instructions> {
protected:
    /// Where the scanner finds the needle in the text; `behind` is what stands behind the text.
    [[nodiscard]] size_t find(std::string_view text, const std::string& needle,
                              const std::string& behind = {}) const
    {
        std::string memory(text);
        memory += behind;
        memory.resize(text.size() + ByteScanner::overrun, '\xff');
        const auto* begin = reinterpret_cast<const unsigned char*>(memory.data());
        const unsigned char* found =
            scanner.find(begin, begin + text.size(), Needle(needle, histogram));
        return found ? static_cast<size_t>(found - begin) : std::string_view::npos;
    }

    ByteScanner scanner{GetParam()};
    ByteHistogram histogram{};
};

TEST_P(ByteScannerWith, FindsTheFirstOccurrence)
{
    EXPECT_EQ(find("abcabc", "bc"), 1U);
    EXPECT_EQ(find("abcabc", "c"), 2U);
    EXPECT_EQ(find("abcabc", "abcabc"), 0U);
    EXPECT_EQ(find("abcabc", "abcabcd"), std::string_view::npos);
    EXPECT_EQ(find("abcabc", "x"), std::string_view::npos);
    EXPECT_EQ(find("", "x"), std::string_view::npos);
    EXPECT_EQ(find(std::string_view("a\0b", 3), std::string("\0b", 2)), 1U);
}

TEST_P(ByteScannerWith, ReadsButNeverCountsWhatIsBehindTheText)
{
    for (size_t size = 0; size < 200; ++size) {
        const std::string text(size, 'a');
        EXPECT_EQ(find(text, "ab", std::string(60, 'b')), std::string_view::npos) << size;
        EXPECT_EQ(find(text, "b", "b"), std::string_view::npos) << size;
    }
}

TEST_P(ByteScannerWith, FindsAtEveryPlaceAndOfEveryLength)
{
    for (size_t length : {1, 2, 3, 15, 16, 17, 31, 32, 33, 40, 70}) {
        std::string needle(length, 'x');
        needle.back() = 'y';
        for (size_t at = 0; at < 150; ++at) {
            const std::string text = std::string(at, 'x') + needle + std::string(at % 7, 'z');
            EXPECT_EQ(find(text, needle), text.find(needle)) << length << " at " << at;
        }
    }
}

TEST_P(ByteScannerWith, AgreesWithTheLibraryOnRandomTexts)
{
    std::mt19937 engine(1);
    const auto random = [&](size_t limit) {
        return std::uniform_int_distribution<size_t>(0, limit - 1)(engine);
    };
    for (int round = 0; round < 100000; ++round) {
        const size_t letters = 1 + random(4);
        std::string text(random(300), '\0');
        for (char& c : text)
            c = static_cast<char>('a' + random(letters));
        std::string needle(1 + random(random(4) == 0 ? 50 : 5), '\0');
        for (char& c : needle)
            c = static_cast<char>('a' + random(letters));
        histogram['a'] = static_cast<uint32_t>(random(3));
        histogram['b'] = static_cast<uint32_t>(random(3));
        ASSERT_EQ(find(text, needle), text.find(needle)) << text << " / " << needle;
    }
}

INSTANTIATE_TEST_SUITE_P(Instructions, ByteScannerWith,
                         testing::ValuesIn(test::supportedInstructions()));

TEST(ByteScanner, TheBestInstructionsAreSupported)
{
    EXPECT_TRUE(ByteScanner::supports(ByteScanner::best()));
    EXPECT_TRUE(ByteScanner::supports(Instructions::portable));
}

TEST(Needle, LooksForItsTwoRarestBytes)
{
    ByteHistogram histogram;
    histogram.fill(100);
    histogram['z'] = 1;
    histogram['q'] = 2;
    const Needle needle("aqez", histogram);
    EXPECT_EQ(needle.rarest, 3U);
    EXPECT_EQ(needle.secondRarest, 1U);

    const Needle single("a", histogram);
    EXPECT_EQ(single.rarest, 0U);
    EXPECT_EQ(single.secondRarest, 0U);
}

} // namespace
} // namespace vellumry
