#include "core/Text.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

TEST(Text, HorizontalSpaceIsTabAndTheSpaceSeparators)
{
    for (const char16_t c :
         u"\t \u00A0\u1680\u2000\u2007\u200A\u202F\u205F\u3000"_s.toStdU16String())
        EXPECT_TRUE(isHorizontalSpace(QChar(c))) << std::hex << int(c);
    for (const char16_t c : u"\n\r\v\f\u0085\u2028\u2029\u200B\uFEFF-a0\0"_s.toStdU16String())
        EXPECT_FALSE(isHorizontalSpace(QChar(c))) << std::hex << int(c);
}

TEST(Text, SpaceOrLineBreakIsBothKinds)
{
    for (const char16_t c : u"\t \u00A0\u3000\n\v\f\r\u0085\u2028\u2029"_s.toStdU16String())
        EXPECT_TRUE(isSpaceOrLineBreak(QChar(c))) << std::hex << int(c);
    for (const char16_t c : u"\u200B\uFEFF\u001C\u0008a-"_s.toStdU16String())
        EXPECT_FALSE(isSpaceOrLineBreak(QChar(c))) << std::hex << int(c);
}

TEST(Text, TrimsTheEndsAlone)
{
    EXPECT_EQ(trimmedHorizontally(u" \t\u00A0a b\u3000 "), u"a b");
    EXPECT_EQ(trimmedHorizontally(u" \na\n "), u"\na\n");
    EXPECT_EQ(trimmedHorizontally(u" \t "), u"");
    EXPECT_EQ(trimmedHorizontally(u""), u"");
    EXPECT_EQ(trimmedWithLineBreaks(u" \n\r\u2028a\nb\u0085\t"), u"a\nb");
    EXPECT_EQ(trimmedWithLineBreaks(u"\n \n"), u"");
    EXPECT_EQ(trimmedWithLineBreaks(u""), u"");
}

/// Texts that a person sees as one character.
QStringList characters()
{
    return {
        u"a"_s,
        u"é"_s,
        u"e\u0301"_s,                                                    // combining acute
        u"o\u0323\u0302"_s,                                              // two marks
        u"\U0001F600"_s,                                                 // a surrogate pair
        u"\U0001F44D\U0001F3FD"_s,                                       // skin tone
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"_s, // family
        u"\U0001F3F3\uFE0F\u200D\U0001F308"_s,                           // rainbow flag
        u"\U0001F1E9\U0001F1EA"_s,                                       // flag of two letters
        u"1\uFE0F\u20E3"_s,                                              // keycap
        u"❤\uFE0F"_s,
        u"\U0001F469\U0001F3FE\u200D\U0001F4BB"_s, // a person at a computer, skin tone
        u"\u1112\u1161\u11AB"_s,                   // Hangul from its parts
        u"한"_s,
        u"नि"_s, // consonant with a vowel sign
        u"ก็"_s,
        u"\U0001F3F4\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F"_s, // tag flag
        u"\r\n"_s,
    };
}

TEST(Text, PrefixCountsWhatAPersonSees)
{
    for (const QString& character : characters()) {
        const QString text = u"x"_s + character + u"y"_s;
        EXPECT_EQ(prefixOfCharacters(text, 1), u"x"_s) << qPrintable(character);
        EXPECT_EQ(prefixOfCharacters(text, 2), u"x"_s + character) << qPrintable(character);
        EXPECT_EQ(prefixOfCharacters(text, 3), text) << qPrintable(character);
        EXPECT_EQ(prefixOfCharacters(text, 4), text) << qPrintable(character);
    }
}

TEST(Text, FlagsPairUpFromTheLeft)
{
    const QString letters = u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1F8"_s;
    EXPECT_EQ(prefixOfCharacters(letters, 1), letters.left(4));
    EXPECT_EQ(prefixOfCharacters(letters, 2), letters.left(8));
    EXPECT_EQ(prefixOfCharacters(letters, 3), letters);
}

TEST(Text, PrefixAtTheEnds)
{
    EXPECT_EQ(prefixOfCharacters(u"abc"_s, 0), u""_s);
    EXPECT_EQ(prefixOfCharacters(u""_s, 5), u""_s);
    EXPECT_EQ(prefixOfCharacters(u"abc"_s, 3), u"abc"_s);
    const QString longText(100'000, u'a');
    EXPECT_EQ(prefixOfCharacters(longText, 200), QString(200, u'a'));
    // One letter under very many marks is still one character.
    const QString marks = u"a"_s + QString(10'000, QChar(0x0301));
    EXPECT_EQ(prefixOfCharacters(marks + u"b"_s, 1), marks);
}

TEST(Text, CharactersAreCountedAsPeopleDo)
{
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(u"abc"), 3);
    EXPECT_EQ(characterCount(u"a\r\nb\n\r"), 5);
    EXPECT_EQ(characterCount(u"e\u0301\U0001F600\u65e5"), 3);
    EXPECT_EQ(characterCount(u"\U0001F468\u200D\U0001F469\u200D\U0001F467!"), 2);
}

TEST(Text, CountsWhatPrefixesTake)
{
    const QStringList pieces = characters();
    std::mt19937 random(1);
    for (int round = 0; round < 2'000; ++round) {
        QString text;
        QString half;
        const unsigned count = random() % 20;
        for (unsigned i = 0; i < count; ++i) {
            if (i == count / 2)
                half = text;
            text += pieces[qsizetype(random() % size_t(pieces.size()))];
        }
        ASSERT_EQ(characterCount(text), count) << qPrintable(text);
        ASSERT_EQ(prefixOfCharacters(text, int(count / 2)), half) << qPrintable(text);
    }
}

TEST(Text, AbbreviatedPathsAreThoseBelowTheHomeFolder)
{
    EXPECT_EQ(abbreviatedPath(u"/Users/a/Documents"_s, u"/Users/a"_s), u"~/Documents"_s);
    EXPECT_EQ(abbreviatedPath(u"/Users/a"_s, u"/Users/a"_s), u"~"_s);
    EXPECT_EQ(abbreviatedPath(u"/Volumes/x"_s, u"/Users/a"_s), u"/Volumes/x"_s);
    EXPECT_EQ(abbreviatedPath(u"/Volumes/x"_s, u""_s), u"/Volumes/x"_s);
    EXPECT_EQ(abbreviatedPath(u"/Users/abc"_s, u"/Users/a"_s), u"~bc"_s);
}

} // namespace
} // namespace vellumry
