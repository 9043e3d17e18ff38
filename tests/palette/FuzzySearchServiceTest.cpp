#include "palette/FuzzySearchService.h"

#include "palette/NaiveSearch.h"
#include "palette/RandomLibrary.h"
#include "palette/SupportedInstructions.h"

#include <gtest/gtest.h>

#include <chrono>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using Instructions = ByteScanner::Instructions;

Date day(int number)
{
    return Date(std::chrono::hours(24 * number));
}

Snippet searched(const QString& id, const QString& title, const QString& content = {},
                 const QString& collection = {}, const QStringList& keywords = {}, int updated = 0)
{
    SnippetFields fields;
    fields.id = id;
    fields.title = title;
    fields.content = content;
    fields.collection = collection;
    fields.keywords = keywords;
    fields.updatedAt = day(updated);
    return Snippet(fields);
}

Snippet withSubtitle(const QString& id, const QString& title, const QString& subtitle)
{
    Snippet snippet = searched(id, title);
    snippet.setSubtitle(subtitle);
    return snippet;
}

/// The ids of the results, in order.
QString ids(const QString& query, const QList<Snippet>& snippets)
{
    const FuzzySearchService service;
    QStringList result;
    for (const Snippet& snippet : service.search(query, snippets))
        result.append(snippet.id());
    return result.join(u' ');
}

const QList<Snippet> dated{
    searched(u"old"_s, u"a"_s, {}, {}, {}, 1), searched(u"new"_s, u"b"_s, {}, {}, {}, 3),
    searched(u"mid1"_s, u"c"_s, {}, {}, {}, 2), searched(u"mid2"_s, u"d"_s, {}, {}, {}, 2)};

TEST(FuzzySearchService, AQueryWithoutTermsGivesAllNewestFirstAndIsStable)
{
    for (const QString& query : {u""_s, u" "_s, u"\"\""_s, u"   "_s, u"\""_s, u"\" \""_s, u"\t"_s})
        EXPECT_EQ(ids(query, dated), u"new mid1 mid2 old"_s) << qPrintable(query);
}

TEST(FuzzySearchService, AnEmptyLibraryGivesNothing)
{
    for (const QString& query : {u""_s, u" "_s, u"a"_s, u"a > b"_s, u" >"_s})
        EXPECT_EQ(ids(query, {}), QString()) << qPrintable(query);
}

TEST(FuzzySearchService, ACollectionWithoutTermsStaysInInputOrder)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"work"_s, {}, u"My Work"_s, {}, 1),
                                  searched(u"2"_s, u"work"_s, {}, u"Play"_s, {}, 2),
                                  searched(u"3"_s, u"x"_s, {}, u"WORK"_s, {}, 3)};
    EXPECT_EQ(ids(u"work >"_s, snippets), u"1 3"_s);
    EXPECT_EQ(ids(u"work > "_s, snippets), u"1 3"_s);
    EXPECT_EQ(ids(u"my work > "_s, snippets), u"1"_s);
}

TEST(FuzzySearchService, ABareSeparatorGivesAllInInputOrder)
{
    EXPECT_EQ(ids(u" >"_s, dated), u"old new mid1 mid2"_s);
    EXPECT_EQ(ids(u" > "_s, dated), u"old new mid1 mid2"_s);
}

TEST(FuzzySearchService, WithoutBothBlanksThereIsNoSeparator)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"foo >bar"_s), searched(u"2"_s, u"> and foo"_s),
                                  searched(u"3"_s, u"foo bar"_s, {}, u"foo"_s)};
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"foo >bar"), QStringList({u"foo"_s, u">bar"_s}));
    EXPECT_EQ(ids(u"foo >bar"_s, snippets), u"1"_s);
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"> foo"), QStringList({u">"_s, u"foo"_s}));
    EXPECT_EQ(ids(u"> foo"_s, snippets), u"1 2"_s);
}

TEST(FuzzySearchService, OnlyTheFirstSeparatorCounts)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"b > c"_s, {}, u"a"_s),
                                  searched(u"2"_s, u"b c"_s, {}, u"a"_s),
                                  searched(u"3"_s, u"c"_s, {}, u"a > b"_s)};
    EXPECT_EQ(ids(u"a > b > c"_s, snippets), u"1"_s);
    // The two separators would overlap: what is left begins with ">".
    EXPECT_EQ(ids(u"a > > c"_s, snippets), u"1"_s);
}

TEST(FuzzySearchService, TheSeparatorIsSplitBeforeQuotesAreRead)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"b"_s, {}, u"a"_s),
                                  searched(u"2"_s, u"a > b"_s)};
    EXPECT_EQ(ids(u"\"a > b\""_s, snippets), u"1"_s);
}

TEST(FuzzySearchService, CaseNeverMatters)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"Straße ÉTÉ"_s),
                                  searched(u"2"_s, u"strasse"_s)};
    EXPECT_EQ(ids(u"ÉTÉ"_s, snippets), u"1"_s);
    EXPECT_EQ(ids(u"été"_s, snippets), u"1"_s);
    EXPECT_EQ(ids(u"sTRASSe"_s, snippets), u"2"_s);
}

TEST(FuzzySearchService, LowerCasingIsNotCaseFolding)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"straße"_s), searched(u"2"_s, u"οδός"_s)};
    EXPECT_EQ(ids(u"STRASSE"_s, snippets), QString());
    EXPECT_EQ(ids(u"ΟΔΌΣ"_s, snippets), QString());
}

TEST(FuzzySearchService, TwoQuotedWordsAreOneTermWithOrWithoutTheClosingQuote)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"hello world"_s),
                                  searched(u"2"_s, u"world hello"_s)};
    EXPECT_EQ(ids(u"hello world"_s, snippets), u"1 2"_s);
    EXPECT_EQ(ids(u"\"hello world\""_s, snippets), u"1"_s);
    EXPECT_EQ(ids(u"\"hello world"_s, snippets), u"1"_s);
}

TEST(FuzzySearchService, AnOpeningQuoteDoesNotEndTheTermBeforeIt)
{
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"ab\"cd ef\""), QStringList({u"abcd ef"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"\"ab cd\"ef"),
              QStringList({u"ab cd"_s, u"ef"_s}));
}

TEST(FuzzySearchService, OnlyBlanksSeparateTermsAndTrimmingIsHorizontal)
{
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"a\tb c\t \u00a0d\u3000"),
              QStringList({u"a\tb"_s, u"c"_s, u"d"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"\na\n b\r\n"),
              QStringList({u"\na\n"_s, u"b\r\n"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"a a"), QStringList({u"a"_s, u"a"_s}));
}

TEST(FuzzySearchService, AMarkedQuoteOrBlankIsACharacterOfItsOwn)
{
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"a\"\u0301 b"),
              QStringList({u"a\"\u0301"_s, u"b"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"a \u0301b"), QStringList({u"a \u0301b"_s}));
    // The blank belongs to the character, but at the end of a term it is trimmed all the same.
    EXPECT_EQ(FuzzySearchService::splitKeywords(u" \u0301b"), QStringList({u"\u0301b"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"\u0600 a"), QStringList({u"\u0600 a"_s}));
}

TEST(FuzzySearchService, AMarkedQuoteOrBlankIsOneAmongLettersOfAnyScript)
{
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"क \u0301ख ग"),
              QStringList({u"क \u0301ख"_s, u"ग"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"\"\u093fक ख\""),
              QStringList({u"\"\u093fक"_s, u"ख"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"က\"\u200d ခ"),
              QStringList({u"က\"\u200d"_s, u"ခ"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"क\u0605 ख"), QStringList({u"क\u0605 ख"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"क \U00011001ख"),
              QStringList({u"क \U00011001ख"_s}));
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"\U000110bd ख"), QStringList({u"\U000110bd ख"_s}));
    // Unmarked ones are what they are.
    EXPECT_EQ(FuzzySearchService::splitKeywords(u"क\u094d \"ख\u093f ग\"क"),
              QStringList({u"क\u094d"_s, u"ख\u093f ग"_s, u"क"_s}));
}

TEST(FuzzySearchService, AllTermsMustOccur)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"alpha"_s, u"beta"_s),
                                  searched(u"2"_s, u"alpha"_s),
                                  searched(u"3"_s, u"beta"_s, u"alpha"_s)};
    EXPECT_EQ(ids(u"alpha beta"_s, snippets), u"1 3"_s);
}

TEST(FuzzySearchService, ThePlainFormMatchesAcrossFieldBorders)
{
    const QList<Snippet> snippets{
        searched(u"1"_s, u"end"_s), withSubtitle(u"2"_s, u"the end"_s, u"of it"_s),
        searched(u"3"_s, u"x"_s, u"the end"_s, u"of"_s, {u"one"_s, u"two"_s})};
    EXPECT_EQ(ids(u"\"end of\""_s, snippets), u"2 3"_s);
    EXPECT_EQ(ids(u"\"of one two\""_s, snippets), u"3"_s);
    EXPECT_EQ(ids(u" > \"end of\""_s, snippets), QString());
    EXPECT_EQ(ids(u" > \"one two\""_s, snippets), u"3"_s);
}

TEST(FuzzySearchService, ACollectionsNameIsFoundByThePlainFormOnly)
{
    const QList<Snippet> snippets{searched(u"1"_s, u"x"_s, {}, u"work"_s)};
    EXPECT_EQ(ids(u"work"_s, snippets), u"1"_s);
    EXPECT_EQ(ids(u"work > work"_s, snippets), QString());
    EXPECT_EQ(ids(u"work > x"_s, snippets), u"1"_s);
}

/// The order of two snippets shows which score is higher; of equal scores the first is first.
void expectOrder(const QString& query, const Snippet& better, const Snippet& worse)
{
    EXPECT_EQ(ids(query, {worse, better}), better.id() + u' ' + worse.id()) << qPrintable(query);
    EXPECT_EQ(ids(query, {better, worse}), better.id() + u' ' + worse.id()) << qPrintable(query);
}

void expectTie(const QString& query, const Snippet& a, const Snippet& b)
{
    EXPECT_EQ(ids(query, {a, b}), a.id() + u' ' + b.id()) << qPrintable(query);
    EXPECT_EQ(ids(query, {b, a}), b.id() + u' ' + a.id()) << qPrintable(query);
}

TEST(FuzzySearchService, FieldsCountByTheirWeight)
{
    const Snippet equal = searched(u"equal"_s, u"Key"_s);                     // 200 + 150
    const Snippet prefix = searched(u"prefix"_s, u"key word"_s);              // 100 + 150
    const Snippet title = searched(u"title"_s, u"a key"_s);                   // 50
    const Snippet subtitle = withSubtitle(u"subtitle"_s, u"x"_s, u"a key"_s); // 35
    const Snippet keywords = searched(u"keywords"_s, u"x"_s, {}, {}, {u"a"_s, u"KEY"_s}); // 30
    const Snippet content = searched(u"content"_s, u"x"_s, u"key key key"_s);             // 10
    const Snippet collection = searched(u"collection"_s, u"x"_s, {}, u"keys"_s);          // 5
    const QList<Snippet> worstFirst{collection, content, keywords, subtitle, title, prefix, equal};
    EXPECT_EQ(ids(u"kEY"_s, worstFirst),
              u"equal prefix title subtitle keywords content collection"_s);
}

TEST(FuzzySearchService, FieldsAddUp)
{
    // 30 + 5 = 35
    expectTie(u"key"_s, searched(u"both"_s, u"x"_s, {}, u"key"_s, {u"key"_s}),
              withSubtitle(u"subtitle"_s, u"x"_s, u"key"_s));
    // 30 + 10 + 5 = 45 against 50
    expectOrder(u"key"_s, searched(u"title"_s, u"a key"_s),
                searched(u"three"_s, u"x"_s, u"key"_s, u"key"_s, {u"key"_s}));
}

TEST(FuzzySearchService, ASingleTermThatBeginsTheTitleGetsThePhraseBonus)
{
    // 100 + 150 against 50 + 35 + 30 + 10 + 5
    Snippet everywhere = searched(u"everywhere"_s, u"a key"_s, u"key"_s, u"key"_s, {u"key"_s});
    everywhere.setSubtitle(u"key"_s);
    expectOrder(u"key"_s, searched(u"prefix"_s, u"keys"_s), everywhere);
}

TEST(FuzzySearchService, SeveralTermsInSequenceAtTheTitlesStartGetThePhraseBonus)
{
    // 100 + 50 + 150 against 100 + 50
    expectOrder(u"git log"_s, searched(u"sequence"_s, u"git log now"_s),
                searched(u"apart"_s, u"git the log"_s));
    // The terms are joined with one blank, whatever stood between them in the query.
    expectOrder(u"git    log"_s, searched(u"sequence"_s, u"git log now"_s),
                searched(u"apart"_s, u"git    log"_s));
}

TEST(FuzzySearchService, ATermGivenTwiceCountsTwice)
{
    Snippet subtitle = searched(u"subtitle"_s, u"x"_s, u"own"_s);
    subtitle.setSubtitle(u"key"_s);
    const Snippet title = searched(u"title"_s, u"x own"_s, u"key"_s);
    expectOrder(u"key own"_s, title, subtitle);     // 10 + 50 against 35 + 10
    expectOrder(u"key key own"_s, subtitle, title); // 35 + 35 + 10 against 10 + 10 + 50
}

TEST(FuzzySearchService, ManyOccurrencesInAFieldCountOnce)
{
    expectTie(u"key"_s, searched(u"one"_s, u"x"_s, u"key"_s),
              searched(u"many"_s, u"x"_s, u"key key key key"_s));
}

TEST(FuzzySearchService, TheCollectionCountsForContentTermsButDoesNotSatisfyThem)
{
    const Snippet both = searched(u"both"_s, u"x"_s, u"key"_s, u"key work"_s);
    const Snippet content = searched(u"content"_s, u"x"_s, u"key"_s, u"work"_s);
    const Snippet collection = searched(u"collection"_s, u"x"_s, {}, u"key work"_s);
    EXPECT_EQ(ids(u"work > key"_s, {collection, content, both}), u"both content"_s);
}

TEST(FuzzySearchService, UseAndDateDoNotCountInAScore)
{
    Snippet used = searched(u"used"_s, u"key"_s, {}, {}, {}, 9);
    used.setUsageCount(1000);
    expectTie(u"key"_s, used, searched(u"unused"_s, u"key"_s));
}

TEST(FuzzySearchService, HalvesOfSurrogatePairsAreFoundUnitByUnit)
{
    const QList<Snippet> snippets{searched(u"pair"_s, u"x \U0001F600 y"_s),
                                  searched(u"low"_s, QString(QChar(0xde00))),
                                  searched(u"high"_s, u"x"_s + QChar(0xd83d))};
    EXPECT_EQ(ids(QString(QChar(0xde00)), snippets), u"low pair"_s);
    EXPECT_EQ(ids(QString(QChar(0xd83d)), snippets), u"pair high"_s);
    EXPECT_EQ(ids(QString(QChar(0xde00)) + u" y"_s, snippets), u"pair"_s);
    EXPECT_EQ(ids(u"\U0001F600"_s, snippets), u"pair"_s);
}

TEST(FuzzySearchService, ResultsAreTheSnippetsOfTheListInHand)
{
    const FuzzySearchService service;
    QList<Snippet> snippets{searched(u"1"_s, u"key"_s), searched(u"2"_s, u"key"_s)};
    EXPECT_EQ(service.search(u"key"_s, snippets), snippets);
    snippets[1].setUsageCount(5);
    EXPECT_EQ(service.search(u"key"_s, snippets), snippets);
    snippets[0].setTitle(u"other"_s);
    EXPECT_EQ(service.search(u"key"_s, snippets), snippets.mid(1));
}

TEST(FuzzySearchService, SearchWithSeparatorFallsBackToThePlainForm)
{
    const FuzzySearchService service;
    const QList<Snippet> snippets{searched(u"1"_s, u"key"_s),
                                  searched(u"2"_s, u"x"_s, {}, u"key"_s)};
    EXPECT_EQ(service.searchWithSeparator(u"key"_s, snippets), snippets);
    EXPECT_EQ(service.searchWithSeparator(u"key > x"_s, snippets), snippets.mid(1));
}

class FuzzySearchServiceWith : public testing::TestWithParam<Instructions> {
protected:
    void SetUp() override { ASSERT_TRUE(ByteScanner::supports(GetParam())); }
};

TEST_P(FuzzySearchServiceWith, EqualsThePlainestSearchOnRandomLibraries)
{
    test::RandomLibrary random(1);
    int results = 0;
    for (int round = 0; round < 4000; ++round) {
        const QList<Snippet> snippets = random.snippets(12);
        const FuzzySearchService service(GetParam());
        for (int i = 0; i < 25; ++i) {
            const QString query = random.query();
            const QList<Snippet> found = service.search(query, snippets);
            ASSERT_EQ(found, test::naiveSearch(query, snippets)) << qPrintable(query);
            results += static_cast<int>(found.size());
        }
    }
    EXPECT_GT(results, 100000); // the queries do hit
}

TEST_P(FuzzySearchServiceWith, EqualsThePlainestSearchThroughEveryChange)
{
    test::RandomLibrary random(2);
    const FuzzySearchService service(GetParam());
    QList<Snippet> snippets = random.snippets(12);
    for (int round = 0; round < 30000; ++round) {
        if (random.below(3) == 0)
            snippets = random.changed(snippets);
        const QString query = random.query();
        ASSERT_EQ(service.search(query, snippets), test::naiveSearch(query, snippets))
            << qPrintable(query) << " in round " << round;
    }
}

TEST_P(FuzzySearchServiceWith, EqualsThePlainestSearchOnALibraryBeyondTheSample)
{
    test::RandomLibrary random(3);
    const FuzzySearchService service(GetParam());
    QList<Snippet> snippets;
    while (snippets.size() < 3000)
        snippets.append(random.snippet());
    for (int round = 0; round < 60; ++round) {
        const QString query = random.query();
        ASSERT_EQ(service.search(query, snippets), test::naiveSearch(query, snippets))
            << qPrintable(query);
        if (round % 5 == 4)
            snippets = random.changed(snippets);
    }
}

INSTANTIATE_TEST_SUITE_P(Instructions, FuzzySearchServiceWith,
                         testing::ValuesIn(test::supportedInstructions()));

TEST(FuzzySearchService, SplitsRandomQueriesLikeTheWalkByCharacters)
{
    test::RandomLibrary random(4);
    for (int round = 0; round < 200000; ++round) {
        const QString query = random.text(8);
        ASSERT_EQ(FuzzySearchService::splitKeywords(query), test::naiveSplitKeywords(query))
            << qPrintable(query);
    }
}

} // namespace
} // namespace vellumry
