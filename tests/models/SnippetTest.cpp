#include "models/Snippet.h"

#include <gtest/gtest.h>

#include <functional>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

QString subtitleOf(const QString& given)
{
    Snippet snippet;
    snippet.setSubtitle(given);
    SnippetFields fields;
    fields.subtitle = given;
    EXPECT_EQ(Snippet(fields).subtitle(), snippet.subtitle());
    return snippet.subtitle();
}

TEST(Subtitle, EachLineBreakBecomesOneBlank)
{
    EXPECT_EQ(subtitleOf(u"a\r\nb\nc\rd"_s), u"a b c d"_s);
    EXPECT_EQ(subtitleOf(u"\n\n"_s), u"  "_s);
    EXPECT_EQ(subtitleOf(u"\n\r"_s), u"  "_s);
    EXPECT_EQ(subtitleOf(u"\r\r\n"_s), u"  "_s);
    EXPECT_EQ(subtitleOf(u"\r"_s), u" "_s);
    EXPECT_EQ(subtitleOf(u""_s), u""_s);
    EXPECT_EQ(subtitleOf(u"a\u2028b\vc\u0085d\te"_s), u"a\u2028b\vc\u0085d\te"_s);
}

TEST(Subtitle, HasAtMost200Characters)
{
    EXPECT_EQ(subtitleOf(QString(200, u'a')), QString(200, u'a'));
    EXPECT_EQ(subtitleOf(QString(201, u'a')), QString(200, u'a'));
    EXPECT_EQ(subtitleOf(QString(100'000, u'a')), QString(200, u'a'));
    EXPECT_EQ(subtitleOf(QString(200, u'ä')), QString(200, u'ä'));
}

TEST(Subtitle, CountsAsAPersonDoes)
{
    for (const QString& character :
         {u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"_s, u"e\u0301"_s,
          u"\U0001F1E9\U0001F1EA"_s, u"\U0001F44D\U0001F3FD"_s, u"1\uFE0F\u20E3"_s,
          u"\u1112\u1161\u11AB"_s, u"\U0001F600"_s}) {
        const QString full = character.repeated(200);
        EXPECT_EQ(subtitleOf(full), full) << qPrintable(character);
        EXPECT_EQ(subtitleOf(full + u"x"_s), full) << qPrintable(character);
        EXPECT_EQ(subtitleOf(QString(199, u'a') + character), QString(199, u'a') + character);
        EXPECT_EQ(subtitleOf(QString(200, u'a') + character + u"b"_s).left(200),
                  QString(200, u'a'));
        EXPECT_EQ(subtitleOf(QString(198, u'a') + u"-"_s + character + u"b"_s),
                  QString(198, u'a') + u"-"_s + character);
    }
}

TEST(Subtitle, CountsAFlagBehindAnEmojiAndAnEmojiBesideThaiAsOne)
{
    const QString flag = u"\U0001F389\U0001F1E9\U0001F1EA"_s;
    EXPECT_EQ(subtitleOf(flag.repeated(100)), flag.repeated(100));
    EXPECT_EQ(subtitleOf(flag.repeated(101)), flag.repeated(100));
    const QString thai = u"\u0E01\U0001F600"_s;
    EXPECT_EQ(subtitleOf(thai.repeated(100)), thai.repeated(100));
    EXPECT_EQ(subtitleOf(u"a"_s + thai.repeated(100)), u"a"_s + thai.repeated(99) + u"\u0E01"_s);
}

TEST(Subtitle, BreaksBecomeBlanksBeforeItIsCounted)
{
    // As one character each the breaks would keep 200 letters more.
    EXPECT_EQ(subtitleOf(u"\r\n"_s.repeated(150) + QString(100, u'a')),
              QString(150, u' ') + QString(50, u'a'));
    // A mark behind a break joins the blank.
    EXPECT_EQ(subtitleOf(QString(199, u'a') + u"\n\u0301b"_s), QString(199, u'a') + u" \u0301"_s);
}

SnippetFields someFields()
{
    return {.id = u"1"_s,
            .title = u"Title"_s,
            .subtitle = u"Subtitle"_s,
            .collection = u"Work"_s,
            .content = u"Content"_s,
            .keywords = {u"one"_s, u"two"_s},
            .createdAt = Date(std::chrono::seconds(1)),
            .updatedAt = Date(std::chrono::seconds(2)),
            .usageCount = 3,
            .lastUsedAt = Date(std::chrono::seconds(3)),
            .displayOrder = 4,
            .variables = {{u"name"_s, u"value"_s}}};
}

TEST(Snippet, EqualityTakesEveryField)
{
    const Snippet snippet(someFields());
    EXPECT_EQ(snippet, Snippet(someFields()));
    EXPECT_EQ(qHash(snippet), qHash(Snippet(someFields())));

    const std::function<void(Snippet&)> changes[] = {
        [](Snippet& s) { s.setId(u"2"_s); },
        [](Snippet& s) { s.setTitle(u"x"_s); },
        [](Snippet& s) { s.setSubtitle(u"x"_s); },
        [](Snippet& s) { s.setCollection(u"x"_s); },
        [](Snippet& s) { s.setContent(u"x"_s); },
        [](Snippet& s) {
            s.setKeywords({u"two"_s, u"one"_s});
        },
        [](Snippet& s) { s.setCreatedAt(s.createdAt() + std::chrono::nanoseconds(1)); },
        [](Snippet& s) { s.setUpdatedAt(s.updatedAt() + std::chrono::nanoseconds(1)); },
        [](Snippet& s) { s.setUsageCount(4); },
        [](Snippet& s) { s.setLastUsedAt(std::nullopt); },
        [](Snippet& s) { s.setDisplayOrder(0); },
        [](Snippet& s) {
            s.setVariables({{u"name"_s, u"other"_s}});
        },
    };
    for (size_t i = 0; i < std::size(changes); ++i) {
        Snippet other = snippet;
        changes[i](other);
        EXPECT_FALSE(other == snippet) << i;
        EXPECT_NE(qHash(other), qHash(snippet)) << i;
    }
}

TEST(Snippet, ZeroIsNotAbsent)
{
    Snippet absent(someFields());
    absent.setDisplayOrder(std::nullopt);
    Snippet zero = absent;
    zero.setDisplayOrder(0);
    EXPECT_FALSE(absent == zero);
}

TEST(Snippet, ACopyIsAValueOfItsOwn)
{
    const Snippet snippet(someFields());
    Snippet copy = snippet;
    EXPECT_TRUE(copy.sharesDataWith(snippet));
    copy.setUsageCount(9);
    EXPECT_FALSE(copy.sharesDataWith(snippet));
    EXPECT_EQ(snippet.usageCount(), 3);
    EXPECT_EQ(copy.usageCount(), 9);
    EXPECT_EQ(copy.fields().title, snippet.title());
}

TEST(Snippet, IsEmptyAtFirst)
{
    EXPECT_EQ(Snippet(), Snippet(SnippetFields{}));
    EXPECT_EQ(Snippet().usageCount(), 0);
    EXPECT_FALSE(Snippet().lastUsedAt());
}

} // namespace
} // namespace vellumry
