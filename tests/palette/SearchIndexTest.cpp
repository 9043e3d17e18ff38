#include "palette/SearchIndex.h"

#include "palette/RandomLibrary.h"
#include "palette/SearchText.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

Snippet numbered(int id, const QString& title, const QString& content = {})
{
    SnippetFields fields;
    fields.id = QString::number(id);
    fields.title = title;
    fields.content = content;
    fields.collection = u"C"_s;
    fields.keywords = {u"K1"_s, u"K2"_s};
    return Snippet(fields);
}

QList<Snippet> manyNumbered(int count)
{
    QList<Snippet> snippets;
    for (int i = 0; i < count; ++i)
        snippets.append(numbered(i, u"Title %1"_s.arg(i)));
    return snippets;
}

std::string textOf(const SearchText& text, qsizetype position)
{
    const SearchText::Record& record = text.recordOf(position);
    const unsigned char* start = text.begin() + record.start;
    EXPECT_EQ(start[record.fieldEnd(SearchText::keywords)], 0xff);
    return {start, start + record.fieldEnd(SearchText::keywords)};
}

TEST(SearchText, JoinsTheLowerCasedFieldsWithBlanks)
{
    SearchText text;
    Snippet snippet = numbered(1, u"Title"_s, u"Content"_s);
    snippet.setSubtitle(u"Sub"_s);
    text.update({snippet});
    EXPECT_EQ(textOf(text, 0), "title sub content c k1 k2");

    const SearchText::Record& record = text.recordOf(0);
    EXPECT_EQ(record.fieldStart(SearchText::title), 0U);
    EXPECT_EQ(record.fieldEnd(SearchText::title), 5U);
    EXPECT_EQ(record.fieldStart(SearchText::content), 10U);
    EXPECT_EQ(record.fieldEnd(SearchText::content), 17U);
    EXPECT_EQ(record.fieldStart(SearchText::collection), 18U);
    EXPECT_EQ(record.fieldStart(SearchText::keywords), 20U);
}

TEST(SearchText, EmptyFieldsKeepTheirBlanks)
{
    SearchText text;
    text.update({Snippet()});
    EXPECT_EQ(textOf(text, 0), "    ");
}

TEST(SearchText, AUseOfASnippetTouchesNothing)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(100);
    text.update(snippets);
    const unsigned char* const begin = text.begin();
    const unsigned char* const end = text.end();
    snippets[50].setUsageCount(1);
    snippets[50].setLastUsedAt(Date(std::chrono::seconds(1)));
    text.update(snippets);
    EXPECT_EQ(text.begin(), begin);
    EXPECT_EQ(text.end(), end);
    EXPECT_EQ(text.records().size(), 100U);
    EXPECT_TRUE(text.isInListOrder());
}

TEST(SearchText, ALibraryReadAnewTouchesNothing)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(100);
    text.update(snippets);
    const unsigned char* const end = text.end();
    for (Snippet& snippet : snippets) {
        SnippetFields fields = snippet.fields();
        fields.id.detach();
        fields.title.detach();
        snippet = Snippet(fields);
    }
    text.update(snippets);
    EXPECT_EQ(text.end(), end);
    EXPECT_EQ(text.records().size(), 100U);
}

TEST(SearchText, AChangedTextGoesToTheEndAndTheOldOneIsBlottedOut)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(100);
    text.update(snippets);
    const auto old = text.recordOf(50);
    snippets[50].setTitle(u"Another"_s);
    text.update(snippets);
    EXPECT_EQ(text.records().size(), 101U);
    EXPECT_EQ(text.records().back().position, 50U);
    EXPECT_EQ(textOf(text, 50), "another   c k1 k2");
    EXPECT_EQ(textOf(text, 51), "title 51   c k1 k2");
    EXPECT_FALSE(text.isInListOrder());
    for (quint32 i = 0; i <= old.fieldEnd(SearchText::keywords); ++i)
        EXPECT_EQ(text.begin()[old.start + i], 0xff);
}

TEST(SearchText, AnInsertionARemovalAndAMoveFoldOnlyWhatIsNew)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(100);
    text.update(snippets);

    snippets.insert(20, numbered(1000, u"New"_s));
    text.update(snippets);
    EXPECT_EQ(text.records().size(), 101U);
    EXPECT_EQ(textOf(text, 20), "new   c k1 k2");
    EXPECT_EQ(textOf(text, 21), "title 20   c k1 k2");

    snippets.removeAt(50);
    text.update(snippets);
    EXPECT_EQ(text.records().size(), 101U);
    EXPECT_EQ(textOf(text, 50), "title 50   c k1 k2");

    snippets.move(10, 70);
    text.update(snippets);
    EXPECT_EQ(text.records().size(), 101U);
    for (qsizetype i = 0; i < snippets.size(); ++i)
        EXPECT_EQ(textOf(text, i), snippets[i].title().toLower().toStdString() + "   c k1 k2");
}

TEST(SearchText, IsLaidOutAfreshWhenAQuarterIsBlottedOut)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(100);
    text.update(snippets);
    const auto size = text.end() - text.begin();
    for (int i = 0; i < 1000; ++i) {
        snippets[i % 100].setTitle(u"title %1"_s.arg(i % 100 + 1));
        text.update(snippets);
        EXPECT_LE(text.end() - text.begin(), size * 3 / 2);
        EXPECT_LE(text.records().size(), 150U);
    }
    for (qsizetype i = 0; i < snippets.size(); ++i)
        EXPECT_EQ(textOf(text, i), snippets[i].title().toStdString() + "   c k1 k2");
}

TEST(SearchText, EqualsAFreshOneThroughEveryChange)
{
    test::RandomLibrary random(1);
    SearchText text;
    QList<Snippet> snippets;
    for (int round = 0; round < 20000; ++round) {
        snippets = random.changed(snippets);
        text.update(snippets);
        SearchText fresh;
        fresh.update(snippets);
        size_t live = 0;
        for (qsizetype i = 0; i < snippets.size(); ++i) {
            ASSERT_EQ(textOf(text, i), textOf(fresh, i)) << "round " << round;
            ASSERT_EQ(text.recordOf(i).ends, fresh.recordOf(i).ends);
            ASSERT_EQ(text.recordOf(i).position, static_cast<quint32>(i));
            live += text.recordOf(i).ends.back() + size_t{1};
        }
        const auto used = static_cast<size_t>(text.end() - text.begin());
        ASSERT_LE(live, used);
        ASSERT_GE(live, used - used / 2) << "round " << round;
    }
}

TEST(SearchText, TellsTheRecordOfAPlace)
{
    SearchText text;
    QList<Snippet> snippets = manyNumbered(300);
    text.update(snippets);
    for (size_t i = 0; i < 300; ++i) {
        const auto& record = text.records()[i];
        const unsigned char* const start = text.begin() + record.start;
        for (size_t from : {size_t{0}, i / 2, i}) {
            EXPECT_EQ(text.recordAt(start, from), i);
            EXPECT_EQ(text.recordAt(start + record.ends.back(), from), i);
        }
    }
}

TEST(SearchIndex, OrdersByTheListAfterChanges)
{
    SearchIndex index;
    QList<Snippet> snippets = manyNumbered(20);
    EXPECT_EQ(index.holdingAnywhere({u"title"_s}, snippets), snippets);
    snippets[3].setContent(u"x"_s);
    snippets[7].setContent(u"x"_s);
    snippets.move(10, 0);
    EXPECT_EQ(index.holdingAnywhere({u"title"_s}, snippets), snippets);
    EXPECT_EQ(index.inCollection({u"c"_s}, {u"title"_s}, snippets), snippets);
    EXPECT_EQ(index.inCollection({u"c"_s}, {}, snippets), snippets);
}

TEST(SearchIndex, FindsTermsLongerThanAnyVector)
{
    SearchIndex index;
    const QString name = u"abcdefghij"_s.repeated(20);
    const QList<Snippet> snippets{numbered(1, name), numbered(2, name.chopped(1) + u"k"_s),
                                  numbered(3, name + u"k"_s)};
    EXPECT_EQ(index.holdingAnywhere({name}, snippets), QList({snippets[0], snippets[2]}));
}

TEST(SearchIndex, ATermGivenVeryOftenIsLookedForOnce)
{
    SearchIndex index;
    const QList<Snippet> snippets = manyNumbered(1000);
    const QStringList often(1'000'000, u"c"_s);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(index.holdingAnywhere(often, snippets), snippets);
    EXPECT_EQ(index.inCollection(often, {u"title"_s}, snippets), snippets);
    // Counting takes a fraction of a second; looking a billion times takes more than a minute.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(SearchIndex, SearchesOneListAfterAnother)
{
    SearchIndex index;
    const QList<Snippet> first = manyNumbered(50);
    const QList<Snippet> second{numbered(1, u"other"_s)};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(index.holdingAnywhere({u"title"_s}, first), first);
        EXPECT_EQ(index.holdingAnywhere({u"title"_s}, second), QList<Snippet>());
        EXPECT_EQ(index.holdingAnywhere({u"title"_s}, {}), QList<Snippet>());
    }
}

} // namespace
} // namespace vellumry
