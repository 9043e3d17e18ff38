#include "platform/linux/KernelRandomSource.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <set>

namespace vellumry {
namespace {

int calls = 0;

template <int interruptions>
ssize_t interrupted(void* buffer, size_t count, unsigned flags)
{
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(count, 8U);
    if (calls++ < interruptions) {
        errno = EINTR;
        return -1;
    }
    std::memset(buffer, 0xAB, count);
    return static_cast<ssize_t>(count);
}

ssize_t unsupported(void*, size_t, unsigned)
{
    ++calls;
    errno = ENOSYS;
    return -1;
}

ssize_t shortened(void*, size_t, unsigned)
{
    return 5;
}

class KernelRandomSourceTest : public testing::Test {
protected:
    void SetUp() override { calls = 0; }
};

TEST_F(KernelRandomSourceTest, GivesADifferentWordEachTime)
{
    std::set<quint64> words;
    quint64 bitsSeen = 0;
    for (int i = 0; i < 1000; ++i) {
        RandomWord word;
        RandomSource::system().fill(word);
        words.insert(word.value);
        bitsSeen |= word.value;
    }
    // Two equal words among a thousand have a chance of 3e-14.
    EXPECT_EQ(words.size(), 1000U);
    EXPECT_EQ(bitsSeen, ~quint64{0});
}

TEST_F(KernelRandomSourceTest, AsksAgainAfterASignal)
{
    KernelRandomSource source(&interrupted<3>);
    RandomWord word;
    source.fill(word);
    EXPECT_EQ(word.value, 0xABABABABABABABABU);
    EXPECT_EQ(calls, 4);
}

TEST_F(KernelRandomSourceTest, AFailureIsToldAndNothingStandsInForIt)
{
    KernelRandomSource source(&unsupported);
    RandomWord word;
    try {
        source.fill(word);
        FAIL() << "no exception";
    } catch (const RandomSourceError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("cannot draw random bytes: Function not implemented"));
        EXPECT_STREQ(error.what(), "cannot draw random bytes: Function not implemented");
    }
    EXPECT_EQ(word.value, 0U);
    EXPECT_EQ(calls, 1);
}

TEST_F(KernelRandomSourceTest, TooFewBytesAreAFailure)
{
    KernelRandomSource source(&shortened);
    RandomWord word;
    EXPECT_THROW(source.fill(word), RandomSourceError);
}

TEST_F(KernelRandomSourceTest, AWordIsWipedWhenItGoes)
{
    alignas(RandomWord) unsigned char memory[sizeof(RandomWord)];
    auto* const word = new (memory) RandomWord;
    KernelRandomSource(&interrupted<0>).fill(*word);
    EXPECT_EQ(memory[0], 0xAB);
    std::destroy_at(word);
    for (const unsigned char byte : memory)
        EXPECT_EQ(byte, 0);
}

} // namespace
} // namespace vellumry
