#include "palette/RandomPasswordService.h"

#include "platform/RandomSource.h"
#include "support/FakeRandomSource.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

constexpr std::array<quint64, 3> alphabetSizes{36, 66, 89};

QString alphabet(PasswordComplexity complexity)
{
    switch (complexity) {
    case PasswordComplexity::simple:
        return u"abcdefghijklmnopqrstuvwxyz0123456789"_s;
    case PasswordComplexity::medium:
        return u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_@#"_s;
    case PasswordComplexity::strong:
        return u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
               "!@#$%^&*()-_=+[]{}|;:,.<>?/"_s;
    }
    return {};
}

// The command

struct Command {
    QString query;
    std::optional<int> length;
};

class RandomCommandTest : public testing::TestWithParam<Command> {};

TEST_P(RandomCommandTest, HasTheLength)
{
    EXPECT_EQ(RandomPasswordService::shared().extractRandomCommand(GetParam().query),
              GetParam().length)
        << qPrintable(GetParam().query);
}

INSTANTIATE_TEST_SUITE_P(Plain, RandomCommandTest,
                         testing::Values(Command{u"/rand:16"_s, 16}, Command{u"/rand:1"_s, 1},
                                         Command{u"/rand:64"_s, 64}, Command{u"/RAND:8"_s, 8},
                                         Command{u"/RaNd:8"_s, 8}, Command{u"/rand: 8"_s, 8},
                                         Command{u"  /RAND:  7  "_s, 7},
                                         Command{u"\t\u00A0/rand:\u3000\t7\u2003"_s, 7}));

INSTANTIATE_TEST_SUITE_P(Signed, RandomCommandTest,
                         testing::Values(Command{u"/rand:+8"_s, 8}, Command{u"/rand:-5"_s, {}},
                                         Command{u"/rand:0"_s, {}}, Command{u"/rand:-0"_s, {}},
                                         Command{u"/rand:+0"_s, {}}, Command{u"/rand:+-8"_s, {}},
                                         Command{u"/rand:-+8"_s, {}}, Command{u"/rand:++8"_s, {}},
                                         Command{u"/rand:+"_s, {}}, Command{u"/rand:-"_s, {}},
                                         Command{u"/rand:+ 8"_s, {}}));

INSTANTIATE_TEST_SUITE_P(Large, RandomCommandTest,
                         testing::Values(Command{u"/rand:65"_s, 64}, Command{u"/rand:1000"_s, 64},
                                         Command{u"/rand:4294967295"_s, 64},           // 2^32 - 1
                                         Command{u"/rand:4294967296"_s, 64},           // 2^32
                                         Command{u"/rand:4294967300"_s, 64},           // 2^32 + 4
                                         Command{u"/rand:9223372036854775807"_s, 64},  // 2^63 - 1
                                         Command{u"/rand:9223372036854775808"_s, {}},  // 2^63
                                         Command{u"/rand:18446744073709551616"_s, {}}, // 2^64
                                         Command{u"/rand:18446744073709551624"_s, {}}, // 2^64 + 8
                                         Command{u"/rand:99999999999999999999"_s, {}},
                                         Command{u"/rand:-9223372036854775808"_s, {}},
                                         Command{u"/rand:-9223372036854775809"_s, {}},
                                         Command{u"/rand:-18446744073709551608"_s, {}}, // 8 - 2^64
                                         Command{u"/rand:0000000000000000000000000000000012"_s, 12},
                                         Command{u"/rand:+0000000000000000000000000000000012"_s,
                                                 12}));

INSTANTIATE_TEST_SUITE_P(NoCommand, RandomCommandTest,
                         testing::Values(Command{u""_s, {}}, Command{u" "_s, {}},
                                         Command{u"/rand:"_s, {}}, Command{u"/rand:  "_s, {}},
                                         Command{u"/rand:abc"_s, {}}, Command{u"/rand:8x"_s, {}},
                                         Command{u"/rand:8 9"_s, {}}, Command{u"/rand:0x8"_s, {}},
                                         Command{u"/rand:8.0"_s, {}}, Command{u"/rand:1e1"_s, {}},
                                         Command{u"/rand:8="_s, {}}, Command{u"/random:8"_s, {}},
                                         Command{u"rand:8"_s, {}}, Command{u"/rand 8"_s, {}},
                                         Command{u"/ rand:8"_s, {}}, Command{u"/rand :8"_s, {}},
                                         Command{u"x/rand:8"_s, {}}, Command{u"/rand:8\n"_s, {}},
                                         Command{u"\n/rand:8"_s, {}}, Command{u"/rand:\n8"_s, {}},
                                         Command{u"/rand:\u0668"_s, {}}, // Arabic 8
                                         Command{u"/rand:\uFF18"_s, {}}, // full-width 8
                                         Command{u"/rand:8\u0300"_s, {}},
                                         Command{u"/rand:\u00B2"_s, {}}));

// The alphabets

TEST(RandomPasswordService, HasItsCharacters)
{
    using Service = RandomPasswordService;
    EXPECT_EQ(Service::lowercaseLetters, u"abcdefghijklmnopqrstuvwxyz"_s);
    EXPECT_EQ(Service::uppercaseLetters, u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s);
    EXPECT_EQ(Service::digits, u"0123456789"_s);
    EXPECT_EQ(Service::simpleSymbols, u"-_@#"_s);
    EXPECT_EQ(Service::complexSymbols, u"!@#$%^&*()-_=+[]{}|;:,.<>?/"_s);
    EXPECT_EQ(Service::complexSymbols.size(), 27);
    for (const char symbol : Service::simpleSymbols)
        EXPECT_TRUE(Service::complexSymbols.contains(QLatin1Char(symbol)));
}

// The results

TEST(RandomPasswordService, MakesOnePasswordOfEachComplexity)
{
    const auto results = RandomPasswordService::shared().generate(16);
    ASSERT_EQ(results.size(), 3);
    EXPECT_EQ(results[0].complexity, PasswordComplexity::simple);
    EXPECT_EQ(results[1].complexity, PasswordComplexity::medium);
    EXPECT_EQ(results[2].complexity, PasswordComplexity::strong);
    for (const PasswordResult& result : results) {
        EXPECT_EQ(result.length, 16);
        EXPECT_EQ(result.password.size(), 16);
        for (const QChar c : result.password)
            EXPECT_TRUE(alphabet(result.complexity).contains(c)) << int(c.unicode());
    }
}

TEST(RandomPasswordService, LengthOneGivesOneCharacterEach)
{
    for (const PasswordResult& result : RandomPasswordService::shared().generate(1))
        EXPECT_EQ(result.password.size(), 1);
}

TEST(RandomPasswordService, ClampsTheLengthOnItsOwn)
{
    const auto lengthFor = [](int length) {
        const auto results = RandomPasswordService::shared().generate(length);
        for (const PasswordResult& result : results)
            EXPECT_EQ(result.password.size(), result.length);
        return results[2].length;
    };
    EXPECT_EQ(lengthFor(0), 1);
    EXPECT_EQ(lengthFor(-5), 1);
    EXPECT_EQ(lengthFor(std::numeric_limits<int>::min()), 1);
    EXPECT_EQ(lengthFor(64), 64);
    EXPECT_EQ(lengthFor(65), 64);
    EXPECT_EQ(lengthFor(std::numeric_limits<int>::max()), 64);
}

TEST(RandomPasswordService, EachResultHasANewId)
{
    const QRegularExpression uuid(
        u"^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"_s);
    QSet<QString> ids;
    for (int i = 0; i < 3; ++i) {
        for (const PasswordResult& result : RandomPasswordService::shared().generate(4)) {
            EXPECT_TRUE(uuid.match(result.id).hasMatch()) << qPrintable(result.id);
            ids.insert(result.id);
        }
    }
    EXPECT_EQ(ids.size(), 9);
}

TEST(RandomPasswordService, DrawsOneWordForEachCharacter)
{
    test::FakeRandomSource source;
    (void)RandomPasswordService(source).generate(20);
    EXPECT_EQ(source.drawn, 60);
}

TEST(RandomPasswordService, AFailingSourceFailsTheWhole)
{
    test::FakeRandomSource source;
    source.isBroken = true;
    EXPECT_THROW((void)RandomPasswordService(source).generate(8), RandomSourceError);
}

// Multiply and reject: with an alphabet of n characters the word r stands for the character r n
// div 2^64, unless r n mod 2^64 is below 2^64 mod n.

__extension__ using Product = unsigned __int128;

/// The first word that stands for a character or one before it is the rejected one, if there is
/// one; this is the first that is accepted for the character at `index`.
quint64 firstWordOf(quint64 index, quint64 size)
{
    const quint64 threshold = (0 - size) % size;
    auto word = static_cast<quint64>(((Product(index) << 64) + size - 1) / size);
    if (static_cast<quint64>(Product(word) * size) < threshold)
        ++word;
    return word;
}

TEST(RandomPasswordServiceDraw, TheEndsOfEachCharactersRange)
{
    for (size_t which = 0; which < alphabetSizes.size(); ++which) {
        const quint64 size = alphabetSizes[which];
        const QString characters = alphabet(static_cast<PasswordComplexity>(which));
        ASSERT_EQ(characters.size(), static_cast<qsizetype>(size));
        for (quint64 index = 0; index < size; ++index) {
            test::FakeRandomSource source;
            const bool isLast = index + 1 == size;
            const auto next = static_cast<quint64>(((Product(index + 1) << 64) + size - 1) / size);
            const quint64 last = isLast ? ~quint64{0} : next - 1;
            source.words.fill(0x8000000000000001U, 2 * static_cast<qsizetype>(which)); // any
            source.words << firstWordOf(index, size) << last;
            const auto results = RandomPasswordService(source).generate(2);
            const QChar expected = characters[static_cast<qsizetype>(index)];
            EXPECT_EQ(results[static_cast<qsizetype>(which)].password, QString(2, expected));
        }
    }
}

TEST(RandomPasswordServiceDraw, AWordBelowTheThresholdIsDrawnAgain)
{
    // 2^64 mod 36 is 16. A product of 0 or 4 modulo 2^64 is below it, one of 16 is not.
    constexpr quint64 zero = 0;                   // product 0, would be "a"
    constexpr quint64 quarter = quint64{1} << 62; // product 9 * 2^64, would be "j"
    constexpr quint64 four = 0x1C71C71C71C71C72U; // product 4 * 2^64 + 8, would be "e"
    static_assert(static_cast<quint64>(Product(four) * 36) < 16);
    constexpr quint64 sixteen = 2 * quint64{four}; // product 8 * 2^64 + 16: "i"
    static_assert(static_cast<quint64>(Product(sixteen) * 36) == 16);

    test::FakeRandomSource source;
    source.words = {zero, quarter, four, sixteen, zero, 1};
    const auto results = RandomPasswordService(source).generate(2);
    EXPECT_EQ(results[0].password, u"ia"_s);
    EXPECT_EQ(source.drawn, 6 + 2 + 2);
}

TEST(RandomPasswordServiceDraw, EachAlphabetHasItsOwnThreshold)
{
    // 2^64 mod 36, 66 and 89: the word 0 is below each, the word 1 below none.
    test::FakeRandomSource source;
    source.words = {0, 1, 0, 1, 0, 1};
    const auto results = RandomPasswordService(source).generate(1);
    for (const PasswordResult& result : results)
        EXPECT_EQ(result.password, u"a"_s);
    EXPECT_EQ(source.drawn, 6);
}

// The real source
//
// Each count below is binomial, B(N, p), if the characters are uniform and independent. Bernstein's
// inequality bounds its chance to lie t or more off its mean N p:
//
//     P <= 2 exp(-t^2 / (2 (v + t / 3))),  v = N p (1 - p).
//
// For t = x / 3 + sqrt(x^2 / 9 + 2 x v) the bound is 2 exp(-x). With x = 26 that is 1.02e-11, and
// by the union bound the false-alarm rate of all counts, fewer than 20,000, is below 2.1e-7,
// whatever their dependence on one another.

class Deviation {
public:
    void check(double count, double trials, double probability, const std::string& what)
    {
        constexpr double x = 26;
        const double mean = trials * probability;
        const double variance = mean * (1 - probability);
        const double limit = x / 3 + std::sqrt(x * x / 9 + 2 * x * variance);
        EXPECT_LT(std::abs(count - mean), limit) << what << ": " << count << " of " << trials;
        ++checks;
    }

    int checks = 0;
};

TEST(RandomPasswordServiceStatistics, PositionsAreUniformAndIndependent)
{
    constexpr int length = 16;
    constexpr int passwords = 20000;
    Deviation deviation;

    std::array<std::vector<std::array<quint8, length>>, 3> drawn;
    std::array<std::array<quint8, 128>, 3> indexOf{};
    for (size_t which = 0; which < 3; ++which) {
        const QString characters = alphabet(static_cast<PasswordComplexity>(which));
        for (qsizetype i = 0; i < characters.size(); ++i)
            indexOf[which][characters[i].unicode()] = static_cast<quint8>(i);
        drawn[which].resize(passwords);
    }
    for (size_t i = 0; i < passwords; ++i) {
        const auto results = RandomPasswordService::shared().generate(length);
        for (size_t which = 0; which < 3; ++which) {
            const QString& password = results[static_cast<qsizetype>(which)].password;
            for (size_t place = 0; place < length; ++place)
                drawn[which][i][place] =
                    indexOf[which][password[static_cast<qsizetype>(place)].unicode()];
        }
    }

    for (size_t which = 0; which < 3; ++which) {
        const size_t size = alphabetSizes[which];
        const double chance = 1.0 / static_cast<double>(size);

        // Each character at each place, and at all places together.
        std::vector<int> anywhere(size);
        for (size_t place = 0; place < length; ++place) {
            std::vector<int> counts(size);
            for (const auto& password : drawn[which])
                ++counts[password[place]];
            for (size_t c = 0; c < size; ++c) {
                deviation.check(counts[c], passwords, chance, "a character at a place");
                anywhere[c] += counts[c];
            }
        }
        for (size_t c = 0; c < size; ++c)
            deviation.check(anywhere[c], passwords * length, chance, "a character anywhere");

        // Each pair of neighbours; the pairs share no place, so each is a trial of its own.
        std::vector<int> pairs(size * size);
        for (const auto& password : drawn[which]) {
            for (size_t place = 0; place < length; place += 2)
                ++pairs[password[place] * size + password[place + 1]];
        }
        for (const int count : pairs)
            deviation.check(count, passwords * (length / 2.0), chance * chance, "a pair");

        // Equal characters at a distance. Along each chain of places every link is equal with the
        // same chance whatever the others are, so all links are trials.
        for (size_t distance = 1; distance < length; ++distance) {
            int equal = 0;
            for (const auto& password : drawn[which]) {
                for (size_t place = distance; place < length; ++place)
                    equal += password[place] == password[place - distance] ? 1 : 0;
            }
            deviation.check(equal, passwords * static_cast<double>(length - distance), chance,
                            "equal characters in a password");
        }
        int equal = 0;
        for (size_t i = 1; i < passwords; ++i) {
            for (size_t place = 0; place < length; ++place)
                equal += drawn[which][i][place] == drawn[which][i - 1][place] ? 1 : 0;
        }
        deviation.check(equal, (passwords - 1) * length, chance, "equal characters one call later");
    }

    // The three of one call: every character of the smaller alphabets is in the larger ones.
    for (const auto& [first, second] : {std::pair(0, 1), std::pair(0, 2), std::pair(1, 2)}) {
        const auto one = static_cast<size_t>(first);
        const auto other = static_cast<size_t>(second);
        const QString ofOne = alphabet(static_cast<PasswordComplexity>(first));
        const QString ofOther = alphabet(static_cast<PasswordComplexity>(second));
        int equal = 0;
        for (size_t i = 0; i < passwords; ++i) {
            for (size_t place = 0; place < length; ++place)
                equal += ofOne[drawn[one][i][place]] == ofOther[drawn[other][i][place]] ? 1 : 0;
        }
        deviation.check(equal, passwords * length, 1.0 / static_cast<double>(alphabetSizes[other]),
                        "equal characters in two passwords of a call");
    }
    EXPECT_LT(deviation.checks, 20000);
}

} // namespace
} // namespace vellumry
