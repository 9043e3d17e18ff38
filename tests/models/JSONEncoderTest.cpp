#include "core/Digest.h"
#include "models/RecordCoding.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <stdexcept>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using test::encode;

Date date(const char* text)
{
    return parseDate(text).value();
}

/// The keys of the text in the order in which they stand, of every level.
QStringList keysIn(const QByteArray& text)
{
    static const QRegularExpression key(u"^\\s*\"([^\"]*)\"\\s*:"_s,
                                        QRegularExpression::MultilineOption);
    QStringList result;
    auto matches = key.globalMatch(QString::fromUtf8(text));
    while (matches.hasNext())
        result.append(matches.next().captured(1));
    return result;
}

Snippet fullSnippet()
{
    return Snippet(SnippetFields{.id = u"1"_s,
                                 .title = u"T"_s,
                                 .subtitle = u"S"_s,
                                 .collection = u"Work"_s,
                                 .content = u"line 1\nline \"2\""_s,
                                 .keywords = {u"b"_s, u"a"_s},
                                 .createdAt = date("2026-01-01T00:00:00.001Z"),
                                 .updatedAt = date("2026-01-02T00:00:00.010Z"),
                                 .usageCount = 3,
                                 .lastUsedAt = date("2026-01-03T00:00:00.100Z"),
                                 .displayOrder = 0,
                                 .variables = {{u"b"_s, u"2"_s}, {u"a"_s, u"1"_s}}});
}

TEST(JSONEncoder, ASnippetWithEverything)
{
    EXPECT_EQ(keysIn(encode(fullSnippet())),
              (QStringList{u"collection"_s, u"content"_s, u"createdAt"_s, u"displayOrder"_s,
                           u"id"_s, u"keywords"_s, u"lastUsedAt"_s, u"subtitle"_s, u"title"_s,
                           u"updatedAt"_s, u"usageCount"_s, u"variables"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(QJsonDocument::fromJson(encode(fullSnippet())), QJsonDocument::fromJson(R"({
        "collection": "Work", "content": "line 1\nline \"2\"",
        "createdAt": "2026-01-01T00:00:00.001Z", "displayOrder": 0, "id": "1",
        "keywords": ["b", "a"], "lastUsedAt": "2026-01-03T00:00:00.100Z", "subtitle": "S",
        "title": "T", "updatedAt": "2026-01-02T00:00:00.010Z", "usageCount": 3,
        "variables": {"a": "1", "b": "2"}})"));
}

TEST(JSONEncoder, AbsentFieldsAreNoKeys)
{
    Snippet snippet = fullSnippet();
    snippet.setLastUsedAt(std::nullopt);
    snippet.setDisplayOrder(std::nullopt);
    snippet.setVariables({});
    snippet.setKeywords({});
    EXPECT_EQ(
        keysIn(encode(snippet)),
        (QStringList{u"collection"_s, u"content"_s, u"createdAt"_s, u"id"_s, u"keywords"_s,
                     u"subtitle"_s, u"title"_s, u"updatedAt"_s, u"usageCount"_s, u"variables"_s}));
    EXPECT_FALSE(encode(snippet).contains("null"));

    EXPECT_EQ(keysIn(encode(SyncCollection{u"1"_s, u"n"_s, std::nullopt, {}})),
              (QStringList{u"createdAt"_s, u"id"_s, u"name"_s}));
    EXPECT_EQ(keysIn(encode(VellumryData{})),
              (QStringList{u"data"_s, u"categoryColors"_s, u"collections"_s, u"snippets"_s,
                           u"deviceId"_s, u"lastModified"_s, u"version"_s}));
    EXPECT_EQ(keysIn(encode(MetadataFileData{})),
              (QStringList{u"collectionOrder"_s, u"deviceId"_s, u"lastModified"_s, u"version"_s}));
    EXPECT_EQ(keysIn(encode(LegacyExportCollection{})), (QStringList{u"name"_s, u"snippets"_s}));
    EXPECT_EQ(keysIn(encode(LegacyExportData{})), QStringList{u"collections"_s});
}

TEST(JSONEncoder, KeysAreSortedAtEveryLevel)
{
    EXPECT_EQ(keysIn(encode(Collection{})),
              (QStringList{u"createdAt"_s, u"displayOrder"_s, u"id"_s, u"name"_s}));
    EXPECT_EQ(keysIn(encode(SyncCollection{u"1"_s, u"n"_s, u"blue"_s, {}})),
              (QStringList{u"color"_s, u"createdAt"_s, u"id"_s, u"name"_s}));
    EXPECT_EQ(keysIn(encode(SyncSettings{})), (QStringList{u"syncAppSettings"_s, u"version"_s}));

    CollectionFileData file;
    file.version = u"1.0"_s;
    EXPECT_EQ(keysIn(encode(file)),
              (QStringList{u"collection"_s, u"createdAt"_s, u"id"_s, u"name"_s, u"deviceId"_s,
                           u"lastModified"_s, u"snippets"_s, u"version"_s}));

    MetadataFileData metadata;
    metadata.settings = SyncSettings{1, true};
    EXPECT_EQ(keysIn(encode(metadata)),
              (QStringList{u"collectionOrder"_s, u"deviceId"_s, u"lastModified"_s, u"settings"_s,
                           u"syncAppSettings"_s, u"version"_s, u"version"_s}));

    LegacyExportCollection legacy{u"1"_s, u"n"_s, 1, u"blue"_s, {}};
    EXPECT_EQ(keysIn(encode(LegacyExportData{u"1.0"_s, Date{}, {legacy}})),
              (QStringList{u"collections"_s, u"color"_s, u"displayOrder"_s, u"id"_s, u"name"_s,
                           u"snippets"_s, u"exportedAt"_s, u"version"_s}));
}

TEST(JSONEncoder, ArraysKeepTheirOrder)
{
    MetadataFileData metadata;
    metadata.collectionOrder = {u"b"_s, u"c"_s, u"a"_s};
    const QByteArray text = encode(metadata);
    EXPECT_LT(text.indexOf("\"b\""), text.indexOf("\"c\""));
    EXPECT_LT(text.indexOf("\"c\""), text.indexOf("\"a\""));
}

TEST(JSONEncoder, AMetadataFileToTheLetter)
{
    MetadataFileData metadata;
    metadata.version = u"3.1"_s;
    metadata.lastModified = date("2026-03-09T14:05:07.123Z");
    metadata.deviceId = u"D"_s;
    metadata.collectionOrder = {u"b"_s, u"a"_s};
    const QByteArray first = encode(metadata);
    // One key a line, and nothing that depends on what was encoded before.
    EXPECT_EQ(keysIn(first).size(), 4);
    JSONEncoder encoder = JSONEncoder::vellumry();
    EXPECT_EQ(encoder.encode(fullSnippet()).toByteArray(), encode(fullSnippet()));
    EXPECT_EQ(encoder.encode(metadata).toByteArray(), first);
    EXPECT_EQ(encoder.encode(metadata).toByteArray(), first);
}

/// A file of snippets with texts of these lengths.
CollectionFileData fileWithTexts(const QList<qsizetype>& lengths)
{
    CollectionFileData file;
    for (const qsizetype length : lengths) {
        SnippetFields fields = fullSnippet().fields();
        for (qsizetype i = 0; i < length; ++i)
            fields.content.append(QChar(static_cast<char16_t>(u'a' + i % 26)));
        file.snippets.append(Snippet(fields));
    }
    return file;
}

TEST(JSONEncoder, GivesALargeFileInWholePiecesAndARest)
{
    const QList<QList<qsizetype>> files = {
        {},     {10},         {200'000},           {700'000},
        {1, 2}, {70'000, 70}, {130'000, 5, 9'000}, QList<qsizetype>(300, 1'000)};
    JSONEncoder encoder = JSONEncoder::vellumry();
    for (const QList<qsizetype>& lengths : files) {
        const CollectionFileData file = fileWithTexts(lengths);
        QByteArray joined;
        Digest digest;
        QList<qsizetype> sizes;
        encoder.encode(file, [&](QByteArrayView piece) {
            joined.append(piece);
            digest.add(piece);
            sizes.append(piece.size());
        });
        EXPECT_EQ(joined, encode(file));
        EXPECT_EQ(digest.value(), Digest::of(joined));
        ASSERT_FALSE(sizes.isEmpty());
        EXPECT_GT(sizes.last(), 0);
        EXPECT_LE(sizes.takeLast(), Digest::pieceSize);
        EXPECT_EQ(sizes.count(Digest::pieceSize), sizes.size());
    }
}

TEST(JSONEncoder, ATextThatFillsItsPiecesHasNoEmptyRest)
{
    const qsizetype others = encode(fileWithTexts({0})).size();
    const CollectionFileData file = fileWithTexts({2 * Digest::pieceSize - others});
    ASSERT_EQ(encode(file).size(), 2 * Digest::pieceSize);
    QList<qsizetype> sizes;
    JSONEncoder::vellumry().encode(file, [&](QByteArrayView piece) { sizes.append(piece.size()); });
    EXPECT_EQ(sizes, (QList{Digest::pieceSize, Digest::pieceSize}));
}

TEST(JSONEncoder, ASinkThatRefusesEndsTheEncodingAndNothingElse)
{
    const CollectionFileData file = fileWithTexts({500'000, 500'000});
    JSONEncoder encoder = JSONEncoder::vellumry();
    int pieces = 0;
    EXPECT_THROW(encoder.encode(file,
                                [&](QByteArrayView) {
                                    if (++pieces == 2)
                                        throw std::runtime_error("full");
                                }),
                 std::runtime_error);
    EXPECT_EQ(pieces, 2);
    EXPECT_EQ(encoder.encode(file).toByteArray(), encode(file));
}

TEST(JSONEncoder, UserKeysAreSortedAndEscaped)
{
    SyncDataContent content;
    content.categoryColors = {
        {u"Z"_s, u"1"_s}, {u"a\"b"_s, u"2"_s}, {u""_s, u"3"_s}, {u"ä"_s, u"4"_s}};
    const QByteArray text = encode(content);
    const QJsonObject colors =
        QJsonDocument::fromJson(text).object()[u"categoryColors"_s].toObject();
    EXPECT_EQ(colors.size(), 4);
    EXPECT_EQ(colors[u"a\"b"_s].toString(), u"2"_s);
    EXPECT_LT(text.indexOf("\"Z\""), text.indexOf(R"("a\"b")"));
    EXPECT_LT(text.indexOf(R"("a\"b")"), text.indexOf("\"ä\""));
}

} // namespace
} // namespace vellumry
