#include "core/CharacterBreaks.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>
#include <gtest/gtest.h>

#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

QStringList charactersOf(const QString& text)
{
    QStringList characters;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype end = endOfCharacter(text, begin);
        characters.append(text.sliced(begin, end - begin));
        begin = end;
    }
    return characters;
}

TEST(CharacterBreaks, AnyTwoCharactersStaySo)
{
    const QStringList characters{
        u"a"_s,
        u"\r\n"_s,
        u"\n"_s,
        u"\u00AD"_s,
        u"\u2028"_s,
        QString(QChar(u'\0')),
        u"e\u0301"_s,
        u"\U0001F600"_s,
        u"\u2764\uFE0F"_s,
        u"\u00A9"_s,
        u"\U0001F44D\U0001F3FD"_s,                       // skin tone
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s, // family
        u"\U0001F469\U0001F3FE\u200D\U0001F4BB"_s,       // with skin tone
        u"\U0001F3F3\uFE0F\u200D\U0001F308"_s,           // rainbow flag
        u"\U0001F3F4\U000E0067\U000E0062\U000E007F"_s,   // flag of tags
        u"\U0001F1E9\U0001F1EA"_s,                       // flag of two letters
        u"1\uFE0F\u20E3"_s,                              // keycap
        u"\u1112\u1161\u11AB"_s,                         // Hangul of three parts
        u"\uD558\u11AB"_s,                               // of a syllable and one
        u"\uD55C"_s,
        u"\u0E01"_s, // Thai
        u"\u0E01\u0E47"_s,
        u"\u0E01\u0E33"_s,
        u"\u0BA4"_s, // Tamil
        u"\u0BAE\u0BBF"_s,
        u"\u0928\u093F"_s,             // Devanagari
        u"\u0936\u094D\u0930\u0940"_s, // with a conjunct
        u"\u1019"_s,                   // Burmese
        u"\u0F40\u0F72"_s,             // Tibetan
        u"\u0600\u0661"_s,             // a sign before its number
        u"\u6F22"_s,
        u"\u0416"_s,
    };
    for (const QString& one : characters) {
        EXPECT_EQ(charactersOf(one), QStringList{one}) << qPrintable(one);
        for (const QString& other : characters)
            EXPECT_EQ(charactersOf(one + other), (QStringList{one, other}))
                << qPrintable(one) << " and " << qPrintable(other);
    }
}

TEST(CharacterBreaks, LettersOfFlagsPairUpFromTheLeft)
{
    const QString letter = u"\U0001F1E9"_s;
    EXPECT_EQ(charactersOf(u"\U0001F389"_s + letter.repeated(5)),
              (QStringList{u"\U0001F389"_s, letter + letter, letter + letter, letter}));
    EXPECT_EQ(charactersOf(letter + u"\u0301"_s + letter + letter),
              (QStringList{letter + u"\u0301"_s, letter + letter}));
}

TEST(CharacterBreaks, AJoinerJoinsPictographsAlone)
{
    const QString man = u"\U0001F468"_s;
    const QString joiner = u"\u200D"_s;
    EXPECT_EQ(charactersOf(man + joiner + u"a"_s), (QStringList{man + joiner, u"a"_s}));
    EXPECT_EQ(charactersOf(u"a"_s + joiner + man), (QStringList{u"a"_s + joiner, man}));
    EXPECT_EQ(charactersOf(man + joiner + joiner + man), (QStringList{man + joiner + joiner, man}));
    EXPECT_EQ(charactersOf(man + u"\u0301"_s + joiner + man).size(), 1);
    EXPECT_EQ(charactersOf(joiner + man), (QStringList{joiner, man}));
}

TEST(CharacterBreaks, AConjunctNeedsItsLinker)
{
    const QString ka = u"\u0915"_s;
    const QString linker = u"\u094D"_s;
    EXPECT_EQ(charactersOf(ka + ka).size(), 2);
    EXPECT_EQ(charactersOf(ka + linker + ka + linker + ka).size(), 1);
    EXPECT_EQ(charactersOf(ka + linker + u"\u200D"_s + ka).size(), 1);
    EXPECT_EQ(charactersOf(ka + linker + u"\u200C"_s + ka).size(), 2);
    EXPECT_EQ(charactersOf(u"a"_s + linker + ka).size(), 2);
    EXPECT_EQ(charactersOf(ka + linker + u"a"_s).size(), 2);
}

TEST(CharacterBreaks, MarksThatJoinNothing)
{
    EXPECT_EQ(charactersOf(u"\u1000\u102B"_s).size(), 2);
    EXPECT_EQ(charactersOf(u"\u1000\u1031"_s).size(), 1);
}

TEST(CharacterBreaks, HalfOfAPairStandsAlone)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    for (const QString& half : {QString(high), QString(low)}) {
        EXPECT_EQ(charactersOf(half), QStringList{half});
        EXPECT_EQ(charactersOf(u"a"_s + half + u"\u0301"_s),
                  (QStringList{u"a"_s, half, u"\u0301"_s}));
    }
    EXPECT_EQ(charactersOf(QString(low) + high), (QStringList{low, high}));
    EXPECT_EQ(charactersOf(QString(high) + high + low), (QStringList{high, QString(high) + low}));
}

/// The standard's own formula, over texts in which a letter stands for each kind of code point.
TEST(CharacterBreaks, FollowTheFormulaOfTheStandard)
{
    const QHash<QChar, QString> texts{
        {u'R', u"\r"_s},     {u'N', u"\n"_s},         {u'C', u"\u200B"_s}, {u'X', u"\u0301"_s},
        {u'J', u"\u200C"_s}, {u'I', u"\u094D"_s},     {u'Z', u"\u200D"_s}, {u'S', u"\u0903"_s},
        {u'P', u"\u0D4E"_s}, {u'F', u"\U0001F1E9"_s}, {u'L', u"\u1100"_s}, {u'V', u"\u1161"_s},
        {u'T', u"\u11A8"_s}, {u'G', u"\uAC00"_s},     {u'H', u"\uAC01"_s}, {u'E', u"\U0001F468"_s},
        {u'K', u"\u0915"_s}, {u'O', u"o"_s},          {u'U', u"\u0E01"_s}, {u'W', u"\u6F22"_s}};
    static const QRegularExpression formula(
        u"RN|[RNC]|P*(?:L*(?:V+|GV*|H)T*|L+|T+|FF|E(?:[XJI]*ZE)*|K(?:[XZI]*I[XZI]*K)+|[^RNC])"
        u"[XJIZS]*"_s);
    const QString kinds = QString(texts.keys().data(), texts.size());
    std::mt19937 random(1);
    for (int round = 0; round < 50'000; ++round) {
        QString letters;
        for (unsigned count = random() % 10; count > 0; --count)
            letters += kinds[qsizetype(random() % size_t(kinds.size()))];
        QString text;
        QStringList expected;
        for (auto matches = formula.globalMatch(letters); matches.hasNext();) {
            QString character;
            for (const QChar letter : matches.next().captured())
                character += texts[letter];
            text += character;
            expected.append(character);
        }
        ASSERT_EQ(charactersOf(text), expected) << qPrintable(letters);
    }
}

} // namespace
} // namespace vellumry
