#include "palette/SearchEncoding.h"

#include "palette/NaiveSearch.h"
#include "palette/RandomLibrary.h"

#include <QString>
#include <gtest/gtest.h>

#include <string>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

std::string lowerCasedBytes(QStringView text)
{
    std::string bytes(static_cast<size_t>(text.size() * mostBytesPerUnit), '\0');
    auto* const begin = reinterpret_cast<unsigned char*>(bytes.data());
    bytes.resize(static_cast<size_t>(encodeLowerCased(text, begin) - begin));
    return bytes;
}

TEST(SearchEncoding, IsUtf8WithinTheBasicPlane)
{
    EXPECT_EQ(encoded(u"aé中\u0000\uffff"), std::string(QString(u"aé中\u0000\uffff"_s).toUtf8()));
}

TEST(SearchEncoding, WritesEachSurrogateOnItsOwn)
{
    EXPECT_EQ(encoded(u"\U0001F600"), "\xed\xa0\xbd\xed\xb8\x80");
    EXPECT_EQ(encoded(QString(QChar(0xde00))), "\xed\xb8\x80");
}

TEST(SearchEncoding, LowersEveryCodePointAsQStringDoes)
{
    for (char32_t c = 0; c <= 0x10ffff; ++c) {
        const QString text =
            c >= 0xd800 && c <= 0xdfff ? QString(QChar(c)) : QString::fromUcs4(&c, 1);
        ASSERT_EQ(lowerCasedBytes(text), encoded(text.toLower())) << static_cast<uint32_t>(c);
    }
}

TEST(SearchEncoding, LowersTextAsQStringDoesInAnyContext)
{
    test::RandomLibrary random(1);
    for (int round = 0; round < 200000; ++round) {
        const QString text = random.text(30);
        const QString expected = test::naiveLowerCased(text);
        ASSERT_EQ(lowerCased(text), expected) << qPrintable(text);
        ASSERT_EQ(lowerCasedBytes(text), encoded(expected)) << qPrintable(text);
    }
    // A sigma stays a sigma at the end of a word.
    EXPECT_EQ(lowerCasedBytes(u"ΟΔΟΣ"), encoded(u"οδοσ"));
    EXPECT_EQ(lowerCasedBytes(u"STRASSE straße ẞ"), encoded(u"strasse straße ß"));
}

TEST(SearchEncoding, ASurrogateThatStandsAloneIsLeftAlone)
{
    const QString alone{QChar(0xd83d)};
    EXPECT_EQ(lowerCased(alone + u"AB"_s), alone + u"ab"_s);
    EXPECT_EQ(lowerCased(u"A\U00010400"_s + alone), u"a\U00010428"_s + alone);
}

TEST(SearchEncoding, FitsTheRoomItAsksFor)
{
    for (char32_t c = 0; c <= 0xffff; ++c) {
        const QString text = QString(QChar(c)).repeated(40);
        ASSERT_LE(lowerCasedBytes(text).size(),
                  static_cast<size_t>(text.size() * mostBytesPerUnit));
    }
}

} // namespace
} // namespace vellumry
