#include "models/RecordCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using test::decode;
using test::decodes;
using test::encode;
using test::failure;

const QString someDate = u"2026-03-09T14:05:07.123Z"_s;
const QString dateMessage = u"无法解析日期字符串: "_s;

QJsonObject minimal()
{
    return {{u"id"_s, u"1"_s},
            {u"title"_s, u"T"_s},
            {u"content"_s, u"C"_s},
            {u"updatedAt"_s, someDate}};
}

QByteArray json(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject with(const QString& key, const QJsonValue& value)
{
    QJsonObject object = minimal();
    object[key] = value;
    return object;
}

Snippet snippetWith(const QString& key, const QJsonValue& value)
{
    return decode<Snippet>(json(with(key, value)));
}

TEST(SnippetDecoding, FourKeysAreEnough)
{
    const Snippet snippet = decode<Snippet>(json(minimal()));
    EXPECT_EQ(snippet.id(), u"1"_s);
    EXPECT_EQ(snippet.title(), u"T"_s);
    EXPECT_EQ(snippet.content(), u"C"_s);
    EXPECT_EQ(snippet.subtitle(), u""_s);
    EXPECT_EQ(snippet.collection(), u"Default"_s);
    EXPECT_TRUE(snippet.keywords().isEmpty());
    EXPECT_EQ(snippet.updatedAt(), *parseDate(someDate.toUtf8()));
    EXPECT_EQ(snippet.createdAt(), snippet.updatedAt());
    EXPECT_EQ(snippet.usageCount(), 0);
    EXPECT_FALSE(snippet.lastUsedAt());
    EXPECT_FALSE(snippet.displayOrder());
    EXPECT_TRUE(snippet.variables().isEmpty());
}

TEST(SnippetDecoding, NullCountsAsMissingWhereAKeyIsOptional)
{
    const Snippet expected = decode<Snippet>(json(minimal()));
    for (const QString& key :
         {u"subtitle"_s, u"category"_s, u"collection"_s, u"keywords"_s, u"createdAt"_s,
          u"usageCount"_s, u"lastUsedAt"_s, u"displayOrder"_s, u"variables"_s})
        EXPECT_EQ(snippetWith(key, QJsonValue::Null), expected) << qPrintable(key);
}

TEST(SnippetDecoding, RequiredKeysMustBeThere)
{
    for (const QString& key : {u"id"_s, u"title"_s, u"content"_s, u"updatedAt"_s}) {
        QJsonObject missing = minimal();
        missing.remove(key);
        EXPECT_TRUE(failure<Snippet>(json(missing)).description().contains(key));
        EXPECT_TRUE(
            failure<Snippet>(json(with(key, QJsonValue::Null))).description().contains(key));
    }
}

TEST(SnippetDecoding, AChangeDateIsRequiredEvenBesideACreationDate)
{
    QJsonObject object = with(u"createdAt"_s, someDate);
    object.remove(u"updatedAt"_s);
    EXPECT_FALSE(decodes<Snippet>(json(object)));
}

TEST(SnippetDecoding, ValuesOfAnotherTypeFail)
{
    const QList<QPair<QString, QList<QJsonValue>>> wrong = {
        {u"id"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"title"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"subtitle"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"collection"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"category"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"content"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"keywords"_s,
         {1, true, u"one"_s, QJsonObject(), QJsonArray{1}, QJsonArray{QJsonValue::Null},
          QJsonArray{u"one"_s, QJsonArray()}}},
        {u"createdAt"_s, {1, true, 1772978707.5, QJsonArray(), QJsonObject()}},
        {u"updatedAt"_s, {1, true, 1772978707.5, QJsonArray(), QJsonObject()}},
        {u"lastUsedAt"_s, {1, true, QJsonArray(), QJsonObject()}},
        {u"usageCount"_s, {u"1"_s, true, false, 1.5, QJsonArray(), QJsonObject()}},
        {u"displayOrder"_s, {u"1"_s, true, false, 1.5, QJsonArray(), QJsonObject()}},
        {u"variables"_s,
         {1, true, u"a"_s, QJsonArray(), QJsonObject{{u"a"_s, 1}},
          QJsonObject{{u"a"_s, QJsonValue::Null}}, QJsonObject{{u"a"_s, QJsonObject()}}}},
    };
    for (const auto& [key, values] : wrong)
        for (const QJsonValue& value : values) {
            const QByteArray text = json(with(key, value));
            EXPECT_TRUE(failure<Snippet>(text).description().contains(key)) << text.constData();
        }
}

TEST(SnippetDecoding, AFieldlessKeyOfAnotherTypeIsReadOnlyWhereItIsNeeded)
{
    QJsonObject object = with(u"collection"_s, u"Work"_s);
    object[u"category"_s] = 5;
    EXPECT_EQ(decode<Snippet>(json(object)).collection(), u"Work"_s);
}

TEST(SnippetDecoding, OlderNameOfTheCollection)
{
    const Snippet older = snippetWith(u"category"_s, u"Work"_s);
    EXPECT_EQ(older.collection(), u"Work"_s);
    EXPECT_TRUE(encode(older).contains("\"collection\""));
    EXPECT_FALSE(encode(older).contains("category"));

    QJsonObject both = with(u"category"_s, u"Old"_s);
    both[u"collection"_s] = u"New"_s;
    EXPECT_EQ(decode<Snippet>(json(both)).collection(), u"New"_s);
    both[u"collection"_s] = u""_s;
    EXPECT_EQ(decode<Snippet>(json(both)).collection(), u""_s);
    both[u"collection"_s] = QJsonValue::Null;
    EXPECT_EQ(decode<Snippet>(json(both)).collection(), u"Old"_s);
    both[u"category"_s] = QJsonValue::Null;
    EXPECT_EQ(decode<Snippet>(json(both)).collection(), u"Default"_s);
    EXPECT_EQ(snippetWith(u"category"_s, u""_s).collection(), u""_s);
}

TEST(SnippetDecoding, TheSubtitleRuleApplies)
{
    EXPECT_EQ(snippetWith(u"subtitle"_s, u"a\r\nb\nc\rd"_s).subtitle(), u"a b c d"_s);
    EXPECT_EQ(snippetWith(u"subtitle"_s, QString(201, u'x')).subtitle(), QString(200, u'x'));
    EXPECT_EQ(snippetWith(u"subtitle"_s, QString(200, u'x')).subtitle(), QString(200, u'x'));
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    EXPECT_EQ(snippetWith(u"subtitle"_s, family.repeated(201)).subtitle(), family.repeated(200));
    // A mixed text of one-byte and multi-byte characters, long in bytes and short in characters.
    EXPECT_EQ(snippetWith(u"subtitle"_s, u"漢a"_s.repeated(100)).subtitle(),
              u"漢a"_s.repeated(100));
}

TEST(SnippetDecoding, EveryKeyIsRead)
{
    const Snippet snippet = decode<Snippet>(R"({
        "id": "1", "title": "T", "subtitle": "S", "collection": "Work", "content": "C",
        "keywords": ["b", "a", "b"], "createdAt": "2026-01-01T00:00:00Z",
        "updatedAt": "2026-01-02T00:00:00+01:00", "usageCount": -7,
        "lastUsedAt": "2026-01-03T00:00:00.5Z", "displayOrder": 0,
        "variables": {"b": "2", "a": "1", "": "empty"}})");
    EXPECT_EQ(snippet,
              Snippet(SnippetFields{
                  .id = u"1"_s,
                  .title = u"T"_s,
                  .subtitle = u"S"_s,
                  .collection = u"Work"_s,
                  .content = u"C"_s,
                  .keywords = {u"b"_s, u"a"_s, u"b"_s},
                  .createdAt = *parseDate("2026-01-01T00:00:00Z"),
                  .updatedAt = *parseDate("2026-01-01T23:00:00Z"),
                  .usageCount = -7,
                  .lastUsedAt = *parseDate("2026-01-03T00:00:00.500Z"),
                  .displayOrder = 0,
                  .variables = {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}, {u""_s, u"empty"_s}}}));
}

TEST(SnippetDecoding, ZeroIsNotAbsent)
{
    EXPECT_EQ(snippetWith(u"displayOrder"_s, 0).displayOrder(), std::optional<qint64>(0));
}

TEST(SnippetDecoding, UnknownKeysArePassedOver)
{
    QJsonObject object = with(u"favourite"_s, true);
    object[u"nested"_s] = QJsonObject{{u"id"_s, QJsonArray{1, QJsonObject{{u"title"_s, 5}}}}};
    EXPECT_EQ(decode<Snippet>(json(object)), decode<Snippet>(json(minimal())));
    EXPECT_FALSE(decodes<Snippet>(R"({"ID":"1","Title":"T","Content":"C","UpdatedAt":"x"})"));
}

TEST(SnippetDecoding, TheRequiredDateIsCheckedBeforeTheOptionalOnes)
{
    // In whatever order the file has them, the message is that of the required date.
    for (
        const char* text :
        {R"({"id":"1","title":"T","content":"C","createdAt":"bad created","lastUsedAt":"bad used","updatedAt":"bad updated"})",
         R"({"updatedAt":"bad updated","lastUsedAt":"bad used","createdAt":"bad created","id":"1","title":"T","content":"C"})",
         R"({"lastUsedAt":"bad used","createdAt":"bad created","content":"C","title":"T","updatedAt":"bad updated","id":"1"})"})
        EXPECT_EQ(failure<Snippet>(text).debugDescription(), dateMessage + u"bad updated"_s);
}

TEST(SnippetDecoding, KeysAreCheckedInAFixedOrder)
{
    // Everything is wrong at first; each mended key lets the next one speak.
    QJsonObject object;
    const QStringList order = {u"id"_s,         u"title"_s,      u"subtitle"_s,     u"collection"_s,
                               u"content"_s,    u"keywords"_s,   u"updatedAt"_s,    u"createdAt"_s,
                               u"usageCount"_s, u"lastUsedAt"_s, u"displayOrder"_s, u"variables"_s};
    const QHash<QString, QJsonValue> good = {
        {u"keywords"_s, QJsonArray()},   {u"updatedAt"_s, someDate},
        {u"createdAt"_s, someDate},      {u"usageCount"_s, 1},
        {u"lastUsedAt"_s, someDate},     {u"displayOrder"_s, 1},
        {u"variables"_s, QJsonObject()},
    };
    for (const QString& key : order)
        object[key] = true;
    for (const QString& key : order) {
        const QString told = failure<Snippet>(json(object)).description();
        EXPECT_TRUE(told.contains(key)) << qPrintable(key) << ": " << qPrintable(told);
        object[key] = good.value(key, u"text"_s);
    }
    EXPECT_TRUE(decodes<Snippet>(json(object)));
}

TEST(SnippetDecoding, DatesWithAndWithoutFraction)
{
    const Snippet plain = snippetWith(u"updatedAt"_s, u"2026-03-09T14:05:07Z"_s);
    const Snippet fraction = snippetWith(u"updatedAt"_s, u"2026-03-09T14:05:07.123Z"_s);
    EXPECT_TRUE(encode(plain).contains("\"2026-03-09T14:05:07.000Z\""));
    EXPECT_TRUE(encode(fraction).contains("\"2026-03-09T14:05:07.123Z\""));
}

TEST(SnippetDecoding, ADateThatIsNoneTellsItsText)
{
    EXPECT_EQ(
        failure<Snippet>(json(with(u"updatedAt"_s, u"2026-03-09 14:05:07"_s))).debugDescription(),
        dateMessage + u"2026-03-09 14:05:07"_s);
    EXPECT_EQ(failure<Snippet>(json(with(u"updatedAt"_s, u""_s))).debugDescription(), dateMessage);
    for (const QString& key : {u"createdAt"_s, u"lastUsedAt"_s}) {
        const DecodingError error = failure<Snippet>(json(with(key, u"昨天 \"x\""_s)));
        EXPECT_EQ(error.debugDescription(), dateMessage + u"昨天 \"x\""_s);
        EXPECT_TRUE(error.description().contains(key));
    }
}

TEST(SnippetDecoding, IntegersOfEveryForm)
{
    const auto count = [](const char* number) {
        return decode<Snippet>(
                   QByteArray(
                       R"({"id":"1","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z","usageCount":)") +
                   number + "}")
            .usageCount();
    };
    EXPECT_EQ(count("3"), 3);
    EXPECT_EQ(count("3.0"), 3);
    EXPECT_EQ(count("3e2"), 300);
    EXPECT_EQ(count("-0"), 0);
    EXPECT_EQ(count("-0.0"), 0);
    EXPECT_EQ(count("9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(count("-9223372036854775808"), std::numeric_limits<qint64>::min());
    EXPECT_THROW(count("9223372036854775808"), DecodingError);
    EXPECT_THROW(count("-9223372036854775809"), DecodingError);
    EXPECT_THROW(count("9223372036854775808.0"), DecodingError);
    EXPECT_THROW(count("18446744073709551616"), DecodingError);
    EXPECT_THROW(count("1e19"), DecodingError);
    EXPECT_THROW(count("1e400"), DecodingError);
    EXPECT_THROW(count("3.5"), DecodingError);
    EXPECT_THROW(count("-0.1"), DecodingError);
    EXPECT_THROW(count("03"), DecodingError);
    EXPECT_THROW(count("+3"), DecodingError);
    EXPECT_THROW(count(".5"), DecodingError);
    EXPECT_THROW(count("3."), DecodingError);
    EXPECT_THROW(count("0x3"), DecodingError);
    EXPECT_THROW(count("NaN"), DecodingError);
    EXPECT_THROW(count("Infinity"), DecodingError);
    EXPECT_THROW(count("true"), DecodingError);
    EXPECT_THROW(count("\"3\""), DecodingError);
}

} // namespace
} // namespace vellumry
