#include "models/RecordCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using test::decode;
using test::decodes;
using test::failure;

/// A collection of which one text is `json`, as it stands between the quotes.
QByteArray named(QByteArrayView json)
{
    return R"({"id":"1","name":")" + json.toByteArray() +
           R"(","createdAt":"2026-01-01T00:00:00Z"})";
}

QString nameFrom(QByteArrayView json)
{
    return decode<SyncCollection>(named(json)).name;
}

TEST(JSONDecoder, ReadsTexts)
{
    EXPECT_EQ(nameFrom("plain"), u"plain"_s);
    EXPECT_EQ(nameFrom(""), u""_s);
    EXPECT_EQ(nameFrom("ä漢😀"), u"ä漢😀"_s);
    EXPECT_EQ(nameFrom(R"(\"\\\/\b\f\n\r\t)"), u"\"\\/\b\f\n\r\t"_s);
    EXPECT_EQ(nameFrom(R"(\u00e4\u6F22\ud83d\ude00)"), u"ä漢😀"_s);
    EXPECT_EQ(nameFrom(R"(a\u0000b)"), QString::fromUtf16(u"a\0b", 3));
    EXPECT_EQ(nameFrom("\x7F"), u"\u007F"_s);
    EXPECT_EQ(nameFrom(QByteArray(100'000, 'x') + "ä"), QString(100'000, u'x') + u"ä"_s);
}

TEST(JSONDecoder, ATextOfEveryLengthAndAlignment)
{
    // Converters that work on whole vectors err at their ends, if anywhere.
    for (int length = 0; length < 200; ++length) {
        const QByteArray ascii(length, 'a');
        EXPECT_EQ(nameFrom(ascii), QString(length, u'a'));
        EXPECT_EQ(nameFrom(ascii + "é"), QString(length, u'a') + u"é"_s);
        EXPECT_EQ(nameFrom("é" + ascii), u"é"_s + QString(length, u'a'));
        EXPECT_EQ(nameFrom(ascii + "😀" + ascii),
                  QString(length, u'a') + u"😀"_s + QString(length, u'a'));
    }
}

TEST(JSONDecoder, RefusesBrokenTexts)
{
    for (const QByteArray& text :
         {QByteArray("\x80"), QByteArray("\xC3"), QByteArray("\xC0\xAF"),
          QByteArray("\xED\xA0\x80"), QByteArray("\xF4\x90\x80\x80"), QByteArray("\xFF\xFE"),
          QByteArray("\xE2\x82"), QByteArray("\xF0\x9F\x98"), QByteArray("a\nb"),
          QByteArray("a\tb"), QByteArray("\x01"), QByteArray("a\0b", 3), QByteArray(R"(\x)"),
          QByteArray(R"(\u12)"), QByteArray(R"(\u12G4)"), QByteArray(R"(\U0041)"),
          QByteArray("\\\n")})
        EXPECT_FALSE(decodes<SyncCollection>(named(text))) << text.toHex().constData();
}

TEST(JSONDecoder, RefusesEscapesOfLoneSurrogates)
{
    EXPECT_FALSE(decodes<SyncCollection>(named(R"(\ud83d)")));
    EXPECT_FALSE(decodes<SyncCollection>(named(R"(\ude00)")));
    EXPECT_FALSE(decodes<SyncCollection>(named(R"(\ud83dx)")));
    EXPECT_FALSE(decodes<SyncCollection>(named(R"(\ud83d\u0041)")));
    EXPECT_FALSE(decodes<SyncCollection>(named(R"(\ude00\ud83d)")));
}

TEST(JSONDecoder, SkipsAByteOrderMark)
{
    EXPECT_EQ(decode<SyncCollection>("\xEF\xBB\xBF" + named("x")).name, u"x"_s);
    EXPECT_FALSE(decodes<SyncCollection>("\xEF\xBB\xBF"));
    EXPECT_FALSE(decodes<SyncCollection>("\xEF\xBB\xBF\xEF\xBB\xBF" + named("x")));
    EXPECT_FALSE(decodes<SyncCollection>("\xFF\xFE" + named("x")));
}

TEST(JSONDecoder, OfAKeyThatStandsTwiceTheLastCounts)
{
    EXPECT_EQ(decode<SyncCollection>(
                  R"({"id":"1","name":"a","name":"b","createdAt":"2026-01-01T00:00:00Z"})")
                  .name,
              u"b"_s);
    EXPECT_FALSE(
        decode<SyncCollection>(
            R"({"id":"1","name":"a","color":"red","color":null,"createdAt":"2026-01-01T00:00:00Z"})")
            .color);
    EXPECT_EQ(
        decode<SyncCollection>(R"({"id":5,"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z"})")
            .id,
        u"1"_s);
    EXPECT_EQ(decode<SyncDataContent>(
                  R"({"collections":[],"snippets":[],"categoryColors":{"a":"1","a":"2"}})")
                  .categoryColors,
              (QMap<QString, QString>{{u"a"_s, u"2"_s}}));
    EXPECT_EQ(decode<SyncDataContent>(
                  R"({"collections":[],"snippets":[],"categoryColors":{"a":1,"b":"","a":"2"}})")
                  .categoryColors,
              (QMap<QString, QString>{{u"a"_s, u"2"_s}, {u"b"_s, u""_s}}));
    EXPECT_TRUE(failure<SyncDataContent>(
                    R"({"collections":[],"snippets":[],"categoryColors":{"a":"1","a":2}})")
                    .description()
                    .contains(u"categoryColors.a"_s));
}

TEST(JSONDecoder, KeysMayBeEscaped)
{
    EXPECT_EQ(decode<SyncCollection>(
                  R"({"\u0069d":"1","n\u0061me":"a","createdAt":"2026-01-01T00:00:00Z"})")
                  .id,
              u"1"_s);
}

TEST(JSONDecoder, RefusesWhatIsNoDocument)
{
    const QByteArray good = named("x");
    EXPECT_TRUE(decodes<SyncCollection>(" \t\r\n" + good + "\n\n"));
    for (const QByteArray& text : {QByteArray(),
                                   QByteArray(" \n"),
                                   QByteArray("x"),
                                   QByteArray("{"),
                                   QByteArray("}"),
                                   QByteArray("[]"),
                                   QByteArray("null"),
                                   QByteArray("\"a\""),
                                   QByteArray("1"),
                                   QByteArray("{}"),
                                   good + "x",
                                   good + good,
                                   good + ",",
                                   good + QByteArray("\0", 1),
                                   QByteArray("\0", 1) + good,
                                   "// comment\n" + good,
                                   QByteArray(good).replace("\"}", "\",}"),
                                   QByteArray(good).replace('"', '\''),
                                   QByteArray(good).replace(':', '='),
                                   QByteArray(1000, '\0'),
                                   QByteArray(5000, '['),
                                   QByteArray(100, '{')})
        EXPECT_FALSE(decodes<SyncCollection>(text)) << text.left(100).constData();
}

TEST(JSONDecoder, EveryCutOfADocumentIsRefused)
{
    const QByteArray good = named(R"(ä\u00e4 漢😀)").replace("1", "1\\n");
    for (qsizetype length = 0; length < good.size(); ++length)
        EXPECT_FALSE(decodes<SyncCollection>(good.left(length))) << length;
}

/// The byte offset that the message tells, or -1.
qsizetype toldOffset(QByteArrayView json)
{
    static const QRegularExpression form(u"at byte (\\d+)"_s);
    const auto match = form.match(failure<SyncCollection>(json).description());
    return match.hasMatch() ? match.captured(1).toLongLong() : -1;
}

TEST(JSONDecoder, ADamagedDocumentTellsTheByte)
{
    // The damage stands behind letters of several bytes.
    const QByteArray start = R"({"id":"ä漢😀","name":)";
    const QByteArray end = R"(,"createdAt":"2026-01-01T00:00:00Z"})";
    for (const QByteArray& damage :
         {QByteArray("nonsense"), QByteArray("\"a\"\"b\""), QByteArray("[1,,2]")}) {
        const qsizetype offset = toldOffset(start + damage + end);
        EXPECT_GE(offset, start.size()) << damage.constData();
        EXPECT_LE(offset, start.size() + damage.size()) << damage.constData();
    }
    // What a more lenient parser lets pass has no place, but is told as well.
    EXPECT_TRUE(
        failure<SyncCollection>(named(R"(\x)")).description().startsWith(u"invalid JSON: "_s));
    EXPECT_FALSE(failure<SyncCollection>("").description().isEmpty());
}

TEST(JSONDecoder, NestsTo1024LevelsAndNoFurther)
{
    const auto nested = [](int depth) {
        return R"({"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z","x":)" +
               QByteArray(depth - 1, '[') + QByteArray(depth - 1, ']') + "}";
    };
    EXPECT_TRUE(decodes<SyncCollection>(nested(1000)));
    EXPECT_FALSE(decodes<SyncCollection>(nested(1100)));
    EXPECT_FALSE(decodes<SyncCollection>(nested(1'000'000)));
    EXPECT_FALSE(decodes<SyncCollection>(QByteArray(1'000'000, '[')));
    QByteArray objects;
    for (int i = 0; i < 100'000; ++i)
        objects += R"({"a":)";
    EXPECT_FALSE(decodes<SyncCollection>(objects));
}

TEST(JSONDecoder, TheWholeDocumentIsChecked)
{
    // Damage behind the last key that is read, or inside one that is passed over.
    EXPECT_FALSE(decodes<SyncCollection>(
        R"({"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z","x":[1,2)"));
    EXPECT_FALSE(decodes<SyncCollection>(
        R"({"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z","x":nul})"));
    EXPECT_FALSE(decodes<SyncCollection>(
        R"({"x":[1,,2],"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z"})"));
    EXPECT_FALSE(decodes<SyncCollection>(
        R"({"x":{1:2},"id":"1","name":"a","createdAt":"2026-01-01T00:00:00Z"})"));
}

TEST(JSONDecoder, ADecoderServesManyCalls)
{
    JSONDecoder decoder = JSONDecoder::vellumry();
    for (int i = 0; i < 3; ++i) {
        const QByteArray big(100'000 * (qsizetype{i} + 1), 'x');
        EXPECT_EQ(decoder.decode<SyncCollection>(QByteArrayView(named(big))).name.size(),
                  big.size());
        EXPECT_THROW((void)decoder.decode<SyncCollection>(QByteArrayView("{")), DecodingError);
        EXPECT_EQ(decoder.decode<SyncCollection>(QByteArrayView(named("y"))).name, u"y"_s);
    }
    JSONDecoder moved = std::move(decoder);
    EXPECT_EQ(moved.decode<SyncCollection>(QByteArrayView(named("z"))).name, u"z"_s);
}

// The other records, key by key. Each is given whole, then without one key, then with null there.

template <typename T>
void expectKeys(const QByteArray& whole, const QStringList& required, const QStringList& optional)
{
    const QJsonObject object = QJsonDocument::fromJson(whole).object();
    ASSERT_FALSE(object.isEmpty());
    ASSERT_TRUE(decodes<T>(whole));
    ASSERT_EQ(object.size(), required.size() + optional.size());
    for (const QString& key : object.keys()) {
        QJsonObject missing = object;
        missing.remove(key);
        QJsonObject null = object;
        null[key] = QJsonValue::Null;
        // No value of these records can be an array of arrays.
        QJsonObject wrong = object;
        wrong[key] = QJsonArray{QJsonArray()};
        const bool isOptional = optional.contains(key);
        EXPECT_EQ(decodes<T>(QJsonDocument(missing).toJson()), isOptional) << qPrintable(key);
        EXPECT_EQ(decodes<T>(QJsonDocument(null).toJson()), isOptional) << qPrintable(key);
        const QString told = failure<T>(QJsonDocument(wrong).toJson()).description();
        EXPECT_TRUE(told.contains(key)) << qPrintable(key) << ": " << qPrintable(told);
    }
}

TEST(RecordDecoding, Collection)
{
    const QByteArray whole =
        R"({"id":"1","name":"Work","displayOrder":2,"createdAt":"2026-01-01T00:00:00Z"})";
    expectKeys<Collection>(whole, {u"id"_s, u"name"_s, u"displayOrder"_s, u"createdAt"_s}, {});
    const auto record = decode<Collection>(whole);
    EXPECT_EQ(record.id, u"1"_s);
    EXPECT_EQ(record.name, u"Work"_s);
    EXPECT_EQ(record.displayOrder, 2);
    EXPECT_EQ(record.createdAt, *parseDate("2026-01-01T00:00:00Z"));
}

TEST(RecordDecoding, SyncCollection)
{
    const QByteArray whole =
        R"({"id":"1","name":"Work","color":"blue","createdAt":"2026-01-01T00:00:00Z"})";
    expectKeys<SyncCollection>(whole, {u"id"_s, u"name"_s, u"createdAt"_s}, {u"color"_s});
    EXPECT_EQ(decode<SyncCollection>(whole),
              (SyncCollection{u"1"_s, u"Work"_s, u"blue"_s, *parseDate("2026-01-01T00:00:00Z")}));
}

TEST(RecordDecoding, SyncSettings)
{
    const QByteArray whole = R"({"version":2,"syncAppSettings":true})";
    expectKeys<SyncSettings>(whole, {u"version"_s, u"syncAppSettings"_s}, {});
    EXPECT_EQ(decode<SyncSettings>(whole), (SyncSettings{2, true}));
    EXPECT_FALSE(decodes<SyncSettings>(R"({"version":true,"syncAppSettings":true})"));
    EXPECT_FALSE(decodes<SyncSettings>(R"({"version":2,"syncAppSettings":1})"));
    EXPECT_FALSE(decodes<SyncSettings>(R"({"version":2,"syncAppSettings":"true"})"));
}

TEST(RecordDecoding, SyncDataContent)
{
    const QByteArray whole = R"({"collections":[],"snippets":[],"categoryColors":{"Work":"blue"}})";
    expectKeys<SyncDataContent>(whole, {u"collections"_s, u"snippets"_s, u"categoryColors"_s}, {});
    EXPECT_EQ(decode<SyncDataContent>(whole).categoryColors,
              (QMap<QString, QString>{{u"Work"_s, u"blue"_s}}));
}

const QByteArray wholeLibrary = R"({"version":"2.9","lastModified":"2026-01-01T00:00:00Z",
    "deviceId":"D","data":{"collections":[{"id":"1","name":"Work","createdAt":"2026-01-01T00:00:00Z"}],
    "snippets":[{"id":"s","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"}],
    "categoryColors":{}},"settings":{"version":1,"syncAppSettings":false}})";

TEST(RecordDecoding, VellumryData)
{
    expectKeys<VellumryData>(
        wholeLibrary, {u"version"_s, u"lastModified"_s, u"deviceId"_s, u"data"_s}, {u"settings"_s});
    const auto record = decode<VellumryData>(wholeLibrary);
    EXPECT_EQ(record.version, u"2.9"_s); // the text of the file, not the current version
    EXPECT_EQ(record.deviceId, u"D"_s);
    EXPECT_EQ(record.data.collections.size(), 1);
    EXPECT_EQ(record.data.snippets.size(), 1);
    EXPECT_EQ(record.settings, (SyncSettings{1, false}));
}

TEST(RecordDecoding, CollectionFileData)
{
    const QByteArray whole =
        R"({"version":"1.0","lastModified":"2026-01-01T00:00:00Z","deviceId":"D",
        "collection":{"id":"1","name":"Work","createdAt":"2026-01-01T00:00:00Z"},
        "snippets":[{"id":"b","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"},
                    {"id":"a","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"}]})";
    expectKeys<CollectionFileData>(
        whole, {u"version"_s, u"lastModified"_s, u"deviceId"_s, u"collection"_s, u"snippets"_s},
        {});
    const auto record = decode<CollectionFileData>(whole);
    EXPECT_EQ(record.collection.name, u"Work"_s);
    ASSERT_EQ(record.snippets.size(), 2);
    EXPECT_EQ(record.snippets[0].id(), u"b"_s);
    EXPECT_EQ(record.snippets[1].id(), u"a"_s);
}

TEST(RecordDecoding, OneBadSnippetFailsTheFileAndTellsItsPlace)
{
    const QByteArray text =
        R"({"version":"1.0","lastModified":"2026-01-01T00:00:00Z","deviceId":"D",
        "collection":{"id":"1","name":"Work","createdAt":"2026-01-01T00:00:00Z"},
        "snippets":[{"id":"b","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"},
                    {"id":"a","title":"T","content":"C","updatedAt":"yesterday"}]})";
    const DecodingError error = failure<CollectionFileData>(text);
    EXPECT_EQ(error.debugDescription(), u"无法解析日期字符串: yesterday"_s);
    EXPECT_TRUE(error.description().contains(u"snippets[1].updatedAt"_s))
        << qPrintable(error.description());
}

TEST(RecordDecoding, MetadataFileData)
{
    const QByteArray whole =
        R"({"version":"3.1","lastModified":"2026-01-01T00:00:00Z","deviceId":"D",
        "collectionOrder":["b","a","b"],"settings":{"version":1,"syncAppSettings":true}})";
    expectKeys<MetadataFileData>(
        whole, {u"version"_s, u"lastModified"_s, u"deviceId"_s, u"collectionOrder"_s},
        {u"settings"_s});
    const auto record = decode<MetadataFileData>(whole);
    EXPECT_EQ(record.collectionOrder, (QStringList{u"b"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(record.settings, (SyncSettings{1, true}));
    EXPECT_FALSE(decodes<MetadataFileData>(
        R"({"version":"3.1","lastModified":"2026-01-01T00:00:00Z","deviceId":"D","collectionOrder":[1]})"));
    EXPECT_FALSE(decodes<MetadataFileData>(
        R"({"version":"3.1","lastModified":"2026-01-01T00:00:00Z","deviceId":"D","collectionOrder":[],"settings":{}})"));
}

TEST(RecordDecoding, LegacyShapes)
{
    const QByteArray collection =
        R"({"id":"1","name":"Work","displayOrder":0,"color":"blue","snippets":[]})";
    expectKeys<LegacyExportCollection>(collection, {u"name"_s, u"snippets"_s},
                                       {u"id"_s, u"displayOrder"_s, u"color"_s});
    EXPECT_EQ(decode<LegacyExportCollection>(collection).displayOrder, std::optional<qint64>(0));

    const QByteArray whole =
        R"({"version":"1.0","exportedAt":"2026-01-01T00:00:00Z","collections":[{"name":"Work","snippets":
        [{"id":"s","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"}]}]})";
    expectKeys<LegacyExportData>(whole, {u"collections"_s}, {u"version"_s, u"exportedAt"_s});
    const auto record = decode<LegacyExportData>(whole);
    ASSERT_EQ(record.collections.size(), 1);
    EXPECT_FALSE(record.collections[0].id);
    EXPECT_EQ(record.collections[0].snippets.size(), 1);
}

TEST(RecordDecoding, ThreeShapesOfTheOldSingleFileAreTellable)
{
    const QByteArray legacy = R"({"collections":[]})";
    const QByteArray array =
        R"([{"id":"s","title":"T","content":"C","updatedAt":"2026-01-01T00:00:00Z"}])";
    EXPECT_FALSE(decodes<VellumryData>(legacy));
    EXPECT_FALSE(decodes<VellumryData>(array));
    EXPECT_TRUE(decodes<LegacyExportData>(legacy));
    EXPECT_FALSE(decodes<LegacyExportData>(array));
    EXPECT_FALSE(decodes<LegacyExportData>(wholeLibrary));
    EXPECT_EQ(decode<QList<Snippet>>(array).size(), 1);
    EXPECT_TRUE(decode<QList<Snippet>>("[]").isEmpty());
    EXPECT_FALSE(decodes<QList<Snippet>>(legacy));
    EXPECT_FALSE(decodes<QList<Snippet>>("[null]"));
}

TEST(RecordDecoding, DefaultSnippetsContainer)
{
    const QByteArray whole =
        R"({"collections":[{"name":"Work","color":"blue","snippets":[{"title":"T","content":"C"}]}]})";
    expectKeys<DefaultSnippetsContainer>(whole, {u"collections"_s}, {});
    const auto record = decode<DefaultSnippetsContainer>(whole);
    ASSERT_EQ(record.collections.size(), 1);
    EXPECT_EQ(record.collections[0].name, u"Work"_s);
    EXPECT_EQ(record.collections[0].color, u"blue"_s);
    ASSERT_EQ(record.collections[0].snippets.size(), 1);
    EXPECT_EQ(record.collections[0].snippets[0].title, u"T"_s);
    EXPECT_EQ(record.collections[0].snippets[0].content, u"C"_s);
    for (const char* bad :
         {R"({"collections":[{"color":"blue","snippets":[]}]})",
          R"({"collections":[{"name":"Work","snippets":[]}]})",
          R"({"collections":[{"name":"Work","color":null,"snippets":[]}]})",
          R"({"collections":[{"name":"Work","color":"blue"}]})",
          R"({"collections":[{"name":"W","color":"b","snippets":[{"title":"T"}]}]})",
          R"({"collections":[{"name":"W","color":"b","snippets":[{"content":"C"}]}]})"})
        EXPECT_FALSE(decodes<DefaultSnippetsContainer>(bad)) << bad;
}

TEST(JSONDecoder, TriesSeveralRecordsOnOneText)
{
    JSONDecoder decoder = JSONDecoder::vellumry();
    decoder.parse(PaddedBytes(QByteArrayView("[]")));
    EXPECT_THROW((void)decoder.record<VellumryData>(), DecodingError);
    EXPECT_THROW((void)decoder.record<CollectionFileData>(), DecodingError);
    EXPECT_EQ(decoder.record<QList<Snippet>>(), QList<Snippet>());
    EXPECT_THROW(decoder.parse(PaddedBytes(QByteArrayView("["))), DecodingError);
}

} // namespace
} // namespace vellumry
