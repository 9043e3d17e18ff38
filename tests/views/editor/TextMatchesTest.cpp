#include "views/editor/TextMatches.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<qsizetype> positionsOf(const QString& text, const QString& term)
{
    TextMatches matches;
    matches.search(text, term);
    return matches.positions();
}

TEST(TextMatches, CapitalsMakeNoDifference)
{
    EXPECT_THAT(positionsOf(u"Call, CALL and a recall"_s, u"cAll"_s), ElementsAre(0, 6, 19));
    EXPECT_THAT(positionsOf(u"ÄÖ äö Äö"_s, u"äö"_s), ElementsAre(0, 3, 6));
}

TEST(TextMatches, NoneOverlapsAnother)
{
    EXPECT_THAT(positionsOf(u"aaaaa"_s, u"aa"_s), ElementsAre(0, 2));
    EXPECT_THAT(positionsOf(u"aaa\naaa"_s, u"aa"_s), ElementsAre(0, 4));
}

TEST(TextMatches, NothingHasNone)
{
    EXPECT_THAT(positionsOf(u"text"_s, {}), IsEmpty());
    EXPECT_THAT(positionsOf({}, u"text"_s), IsEmpty());
}

TEST(TextMatches, FollowEditsAsIfSearchedAnew)
{
    std::mt19937 random(7);
    const auto below = [&](qsizetype bound) { return qsizetype(random() % size_t(bound)); };
    const auto someText = [&](qsizetype longest) {
        QString text;
        for (qsizetype i = below(longest + 1); i > 0; --i)
            text += u"aAb\n\r🎉"_s[below(7)];
        return text;
    };
    for (const QString& term : {u"a"_s, u"aa"_s, u"ab"_s, u"b"_s}) {
        QString text = someText(60);
        TextMatches followed;
        followed.search(text, term);
        for (int i = 0; i < 500; ++i) {
            const qsizetype position = below(text.size() + 1);
            const qsizetype removed = below(std::min<qsizetype>(6, text.size() - position) + 1);
            const QString inserted = someText(5);
            QString after = text;
            after.replace(position, removed, inserted);
            followed.follow({text, after, position, removed, inserted.size()});
            text = after;
            ASSERT_EQ(followed.positions(), positionsOf(text, term)) << text.toStdString();
        }
    }
}

TEST(TextEdit, ItsLinesAreThoseThatItTouched)
{
    const auto lines = [](const QString& before, qsizetype at, qsizetype removed,
                          const QString& inserted) {
        QString after = before;
        after.replace(at, removed, inserted);
        const auto [begin, endBefore, endAfter] =
            TextEdit{before, after, at, removed, inserted.size()}.lines();
        return std::vector{begin, endBefore, endAfter};
    };
    EXPECT_THAT(lines(u"one\ntwo\nthree"_s, 5, 1, u"WW"_s), ElementsAre(4, 8, 9));
    EXPECT_THAT(lines(u"one\ntwo\nthree"_s, 3, 1, {}), ElementsAre(0, 8, 7));
    EXPECT_THAT(lines(u"one\ntwo"_s, 7, 0, u"\n"_s), ElementsAre(4, 7, 8));
    EXPECT_THAT(lines({}, 0, 0, u"x"_s), ElementsAre(0, 0, 1));
}

} // namespace
} // namespace vellumry::test
