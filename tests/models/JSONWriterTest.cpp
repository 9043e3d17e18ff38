#include "models/JSONWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

QByteArray quoted(const QString& text)
{
    JSONWriter writer;
    writer.value(text);
    return writer.bytes().toByteArray();
}

TEST(JSONWriter, EscapesWhatMustBeEscaped)
{
    EXPECT_EQ(quoted(u"plain ä漢😀"_s), "\"plain ä漢😀\"");
    EXPECT_EQ(quoted(u"a\"b\\c"_s), R"("a\"b\\c")");
    // Every other character, in whatever form, comes back as it was; no control character stands
    // as such.
    for (char16_t c = 0; c <= 0x100; ++c) {
        const QString text = u"x"_s + QChar(c) + u"y"_s;
        const QByteArray bytes = "[" + quoted(text) + "]";
        EXPECT_EQ(QJsonDocument::fromJson(bytes).array().at(0).toString(), text) << int(c);
        EXPECT_TRUE(std::none_of(bytes.begin(), bytes.end(), [](char byte) {
            return static_cast<unsigned char>(byte) < 0x20;
        })) << int(c);
    }
}

TEST(JSONWriter, TextsOfEveryLength)
{
    for (int length = 0; length < 200; ++length)
        for (const QString& special : {u"\n"_s, u"\""_s, u"é"_s, u"漢"_s, u"😀"_s}) {
            const QString text = QString(length, u'a') + special + QString(length % 17, u'b');
            EXPECT_EQ(QJsonDocument::fromJson("[" + quoted(text) + "]").array().at(0).toString(),
                      text);
        }
}

TEST(JSONWriter, ALoneSurrogateBecomesTheReplacementCharacter)
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    EXPECT_EQ(quoted(QString(high)), "\"\uFFFD\"");
    EXPECT_EQ(quoted(QString(low)), "\"\uFFFD\"");
    EXPECT_EQ(quoted(u"a"_s + high + u"b"_s), "\"a\uFFFDb\"");
    EXPECT_EQ(quoted(u"a"_s + low + high), "\"a\uFFFD\uFFFD\"");
    EXPECT_EQ(quoted(QString(high) + high + low), "\"\uFFFD😀\"");
}

TEST(JSONWriter, WritesNumbersTruthAndDates)
{
    JSONWriter writer;
    writer.beginArray();
    writer.value(qint64(0));
    writer.value(std::numeric_limits<qint64>::min());
    writer.value(std::numeric_limits<qint64>::max());
    writer.value(true);
    writer.value(false);
    writer.value(Date(std::chrono::milliseconds(123)));
    writer.endArray();
    EXPECT_EQ(
        QByteArray(writer.bytes().toByteArray()).replace("\n", "").replace(" ", ""),
        R"([0,-9223372036854775808,9223372036854775807,true,false,"1970-01-01T00:00:00.123Z"])");
}

TEST(JSONWriter, OneKeyALine)
{
    JSONWriter writer;
    writer.beginObject();
    writer.key("a");
    writer.beginObject();
    writer.key(u"b \"c\""_s);
    writer.value(u"d"_s);
    writer.key("e");
    writer.beginArray();
    writer.value(qint64(1));
    writer.value(qint64(2));
    writer.endArray();
    writer.endObject();
    writer.key("f");
    writer.value(true);
    writer.endObject();

    const QByteArray text = writer.bytes().toByteArray();
    QByteArrayList keyLines;
    for (const QByteArray& line : text.split('\n'))
        if (line.trimmed().startsWith('"'))
            keyLines.append(line.trimmed().left(2));
    EXPECT_EQ(keyLines.join(), "\"a\"b\"e\"f");
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    EXPECT_EQ(object[u"a"_s][u"b \"c\""_s].toString(), u"d"_s);
    EXPECT_EQ(object[u"a"_s][u"e"_s].toArray().size(), 2);
    EXPECT_TRUE(object[u"f"_s].toBool());
}

TEST(JSONWriter, StartsAnew)
{
    JSONWriter writer;
    for (int i = 0; i < 3; ++i) {
        writer.clear();
        EXPECT_TRUE(writer.bytes().isEmpty());
        writer.beginObject();
        writer.key("a");
        writer.value(QString(100'000, u'ä'));
        writer.endObject();
        EXPECT_EQ(QJsonDocument::fromJson(writer.bytes().toByteArray()).object()[u"a"_s].toString(),
                  QString(100'000, u'ä'));
    }
}

} // namespace
} // namespace vellumry
