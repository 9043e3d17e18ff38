#include "library/ImportExportService.h"

#include "library/ExportDocument.h"
#include "library/LibraryWorld.h"

#include <QDateTime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <limits>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using ImportedData = ImportExportService::ImportedData;

QByteArray fileWith(const QByteArray& collections)
{
    return R"({"version":"2.0","exportedAt":"2026-03-09T14:05:07Z","collections":)" + collections +
           "}";
}

QByteArray fileWithSnippet(const QByteArray& snippet)
{
    return fileWith(R"([{"id":"c","name":"Work","displayOrder":0,"snippets":[)" + snippet + "]}]");
}

QByteArray snippetOfTime(const QByteArray& updatedAt)
{
    return R"({"id":"s","title":"t","content":"x","updatedAt":")" + updatedAt + "\"}";
}

std::optional<ImportedData> imported(const QByteArray& json)
{
    return ImportExportService::importFromJSON(PaddedBytes(json));
}

/// A snippet of a title, made in the second of this number after the others.
Snippet version(const QString& title, const QString& content, int second)
{
    Snippet snippet = makeSnippet(u"id of "_s + title, u"Work"_s, content);
    snippet.setTitle(title);
    snippet.setUpdatedAt(dateAt(qint64{1000} * second));
    return snippet;
}

ImportedData dataOf(const QList<ExportCollection>& collections)
{
    ImportedData data{collections, {}};
    for (const ExportCollection& collection : collections)
        data.snippets.append(collection.snippets);
    return data;
}

ConflictDetectionResult detect(const QList<Snippet>& given, const QList<Snippet>& existing)
{
    return ImportExportService::detectConflicts(
        dataOf({{.id = u"other"_s, .name = u"Work"_s, .snippets = given}}),
        {{.id = u"W"_s, .name = u"Work"_s}}, existing);
}

// Reading

TEST(ImportFromJSON, JoinsTheSnippetsOfAllCollectionsInTheOrderOfTheFile)
{
    const auto data = imported(fileWith(R"([
        {"id":"1","name":"B","displayOrder":7,"color":"#010203","snippets":[
            {"id":"b2","title":"","content":"","updatedAt":"2026-03-09T14:05:07Z"},
            {"id":"b1","title":"","content":"","updatedAt":"2026-03-09T14:05:07+02:00"}]},
        {"id":"2","name":"A","displayOrder":-1,"color":null,"snippets":[]},
        {"id":"3","name":"A","displayOrder":0,"snippets":[
            {"id":"a","title":"","content":"","updatedAt":"2026-03-09T14:05:07Z"}]}])"));
    ASSERT_TRUE(data);
    EXPECT_THAT(idsOf(data->snippets), ElementsAre(u"b2"_s, u"b1"_s, u"a"_s));
    ASSERT_EQ(data->collections.size(), 3);
    EXPECT_EQ(data->collections[0].displayOrder, 7);
    EXPECT_EQ(data->collections[0].color, u"#010203"_s);
    EXPECT_EQ(data->collections[1].color, std::nullopt);
    EXPECT_EQ(data->snippets[0].updatedAt() - data->snippets[1].updatedAt(), 2h);
}

TEST(ImportFromJSON, AcceptsAnyVersion)
{
    EXPECT_TRUE(imported(
        R"({"version":"99 bottles","exportedAt":"2026-03-09T14:05:07Z","collections":[]})"));
    EXPECT_TRUE(imported(R"({"version":"","exportedAt":"2026-03-09T14:05:07Z","collections":[]})"));
}

TEST(ImportFromJSON, AsksForEveryRequiredKey)
{
    EXPECT_TRUE(imported(fileWith("[]")));
    EXPECT_FALSE(imported(R"({"exportedAt":"2026-03-09T14:05:07Z","collections":[]})"));
    EXPECT_FALSE(imported(R"({"version":2,"exportedAt":"2026-03-09T14:05:07Z","collections":[]})"));
    EXPECT_FALSE(imported(R"({"version":"2.0","collections":[]})"));
    EXPECT_FALSE(imported(R"({"version":"2.0","exportedAt":"2026-03-09T14:05:07Z"})"));
    EXPECT_FALSE(imported(fileWith("{}")));
    EXPECT_FALSE(imported(fileWith("null")));
    EXPECT_TRUE(imported(fileWith(R"([{"id":"c","name":"n","displayOrder":0,"snippets":[]}])")));
    EXPECT_FALSE(imported(fileWith(R"([{"name":"n","displayOrder":0,"snippets":[]}])")));
    EXPECT_FALSE(imported(fileWith(R"([{"id":"c","displayOrder":0,"snippets":[]}])")));
    EXPECT_FALSE(imported(fileWith(R"([{"id":"c","name":"n","snippets":[]}])")));
    EXPECT_FALSE(imported(fileWith(R"([{"id":"c","name":"n","displayOrder":0}])")));
    EXPECT_FALSE(
        imported(fileWith(R"([{"id":"c","name":"n","displayOrder":0,"color":5,"snippets":[]}])")));
    EXPECT_FALSE(imported(fileWithSnippet(R"({"id":"s","title":"t","content":"x"})")));
}

TEST(ImportFromJSON, ReadsDatesWithoutFractionAlone)
{
    EXPECT_TRUE(imported(fileWithSnippet(snippetOfTime("2026-03-09T14:05:07Z"))));
    EXPECT_FALSE(imported(fileWithSnippet(snippetOfTime("2026-03-09T14:05:07.000Z"))));
    EXPECT_FALSE(imported(fileWithSnippet(snippetOfTime("2026-03-09"))));
    EXPECT_FALSE(imported(fileWithSnippet(snippetOfTime("2026-02-30T14:05:07Z"))));
    EXPECT_FALSE(
        imported(R"({"version":"2.0","exportedAt":"2026-03-09T14:05:07.5Z","collections":[]})"));
}

TEST(ImportFromJSON, RefusesTheFilesOfTheLibrary)
{
    const Snippet snippet = makeSnippet(u"a"_s, u"Work"_s);
    EXPECT_FALSE(imported(collectionFileBytes(makeCollection(u"W"_s, u"Work"_s), {snippet})));
    EXPECT_FALSE(imported(metadataFileBytes({u"W"_s})));
    JSONEncoder encoder = JSONEncoder::vellumry();
    EXPECT_FALSE(imported(
        encoder.encode(makeLibrary({makeCollection(u"W"_s, u"Work"_s)}, {snippet})).toByteArray()));
    const LegacyExportData legacy{.version = u"1.0"_s,
                                  .exportedAt = dateAt(0),
                                  .collections = {{.id = u"c"_s,
                                                   .name = u"Work"_s,
                                                   .displayOrder = 0,
                                                   .color = u"#010203"_s,
                                                   .snippets = {snippet}}}};
    EXPECT_FALSE(imported(encoder.encode(legacy).toByteArray()))
        << "has all keys, but dates with fractions";
}

TEST(ImportFromJSON, GivesNothingForWhatIsNoJson)
{
    EXPECT_FALSE(imported(""));
    EXPECT_FALSE(imported("{"));
    EXPECT_FALSE(imported("[]"));
    EXPECT_FALSE(imported("null"));
    EXPECT_FALSE(imported(fileWith("[]") + "x"));
    EXPECT_FALSE(imported(QByteArray(100'000, '[')));
    EXPECT_FALSE(imported(QByteArray("\0\xff\xfe", 3)));
}

// Writing

TEST(ExportDocument, WritesSortedKeysAndCutsFractions)
{
    Snippet snippet = makeSnippet(u"a"_s, u"Work"_s);
    snippet.setUpdatedAt(dateAt(1999));
    snippet.setCreatedAt(dateAt(-1));
    snippet.setLastUsedAt(dateAt(-1000));
    const ExportDocument document({.version = u"2.0"_s,
                                   .exportedAt = dateAt(500),
                                   .collections = {{.id = u"W"_s,
                                                    .name = u"Work"_s,
                                                    .displayOrder = 3,
                                                    .color = u"#2F7BE0"_s,
                                                    .snippets = {snippet}},
                                                   {.id = u"H"_s, .name = u"Home"_s}}});
    EXPECT_EQ(document.fileWrapper(), R"({
  "collections": [
    {
      "color": "#2F7BE0",
      "displayOrder": 3,
      "id": "W",
      "name": "Work",
      "snippets": [
        {
          "collection": "Work",
          "content": "content",
          "createdAt": "2023-11-14T22:13:19Z",
          "id": "a",
          "keywords": [],
          "lastUsedAt": "2023-11-14T22:13:19Z",
          "subtitle": "",
          "title": "Title of a",
          "updatedAt": "2023-11-14T22:13:21Z",
          "usageCount": 0,
          "variables": {}
        }
      ]
    },
    {
      "displayOrder": 0,
      "id": "H",
      "name": "Home",
      "snippets": []
    }
  ],
  "exportedAt": "2023-11-14T22:13:20Z",
  "version": "2.0"
})");
}

TEST(ExportDocument, ComesBackFromItsFile)
{
    Snippet snippet = makeSnippet(u"\u2028 id"_s, u" \t\u00a0\n"_s, u"漢😀\0"_s.repeated(1000));
    snippet.setUpdatedAt(dateAt(3000));
    snippet.setUsageCount(std::numeric_limits<qint64>::max());
    snippet.setDisplayOrder(std::numeric_limits<qint64>::min());
    snippet.setVariables({{u"name"_s, u"value"_s}});
    const ExportData data{.version = u"2.0"_s,
                          .exportedAt = dateAt(1000),
                          .collections = {{.id = u""_s,
                                           .name = u" \t\u00a0\n"_s,
                                           .displayOrder = std::numeric_limits<qint64>::max(),
                                           .color = u"any text"_s,
                                           .snippets = {snippet}}}};
    const QByteArray bytes = ExportDocument(data).fileWrapper();
    EXPECT_EQ(ExportDocument(PaddedBytes(bytes)).exportData(), data);
}

TEST(ExportDocument, ThrowsForAFileWithoutContents)
{
    const PaddedBytes nothing;
    EXPECT_THROW((void)ExportDocument(nothing), DecodingError);
}

TEST(DefaultExportFilename, TellsTheLocalTime)
{
    ManualClock clock(
        Date(std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) + 14h + 5min + 7s + 999ms));
    const bool hasZone = qEnvironmentVariableIsSet("TZ");
    const QByteArray zone = qgetenv("TZ");
    qputenv("TZ", "XYZ-3");
    tzset();
    EXPECT_EQ(ImportExportService(clock).defaultExportFilename(),
              u"Vellumry_Backup_2026-03-09_170507.json"_s);
    hasZone ? qputenv("TZ", zone) : qunsetenv("TZ");
    tzset();
}

// Comparing

TEST(DetectConflicts, TakesACollectionOfAnUnknownNameWhole)
{
    const ExportCollection other{
        .id = u"W"_s, .name = u"work"_s, .snippets = {version(u"t"_s, u"x"_s, 0)}};
    const ExportCollection blank{
        .id = u"W"_s, .name = u"Work "_s, .snippets = {version(u"t"_s, u"y"_s, 0)}};
    const auto result = ImportExportService::detectConflicts(
        dataOf({other, blank}), {{.id = u"W"_s, .name = u"Work"_s}},
        {version(u"t"_s, u"z"_s, 9), inCollection(version(u"t"_s, u"z"_s, 9), u"work"_s)});
    EXPECT_THAT(result.newCollections, ElementsAre(other, blank));
    EXPECT_EQ(result.newSnippets.size(), 2);
    EXPECT_THAT(result.conflicts, IsEmpty());
}

TEST(DetectConflicts, NeverTakesACollectionForOne)
{
    const auto result = ImportExportService::detectConflicts(
        dataOf({{.id = u"other"_s, .name = u"Work"_s, .displayOrder = 5, .color = u"#000000"_s}}),
        {{.id = u"W"_s, .name = u"Work"_s}}, {});
    EXPECT_EQ(result, ConflictDetectionResult());
}

TEST(DetectConflicts, KnowsASnippetByItsTitleAlone)
{
    Snippet renamed = version(u"T"_s, u"x"_s, 0);
    renamed.setId(u"id of t"_s);
    Snippet sameTitle = version(u"t"_s, u"x"_s, 0);
    sameTitle.setId(u"another"_s);
    const auto result = detect({renamed, sameTitle}, {version(u"t"_s, u"x"_s, 0)});
    EXPECT_THAT(result.newSnippets, ElementsAre(renamed));
    EXPECT_THAT(result.conflicts, IsEmpty());
}

TEST(DetectConflicts, SeesNoneInSnippetsOfTheSameTexts)
{
    Snippet same = version(u"t"_s, u"x"_s, 5);
    same.setUsageCount(9);
    same.setVariables({{u"a"_s, u"b"_s}});
    same.setDisplayOrder(4);
    same.setCreatedAt(dateAt(9000));
    EXPECT_EQ(detect({same}, {version(u"t"_s, u"x"_s, 0)}), ConflictDetectionResult());
}

TEST(DetectConflicts, SeesNoneInSnippetsOfTheSameTime)
{
    EXPECT_EQ(detect({version(u"t"_s, u"new"_s, 3)}, {version(u"t"_s, u"old"_s, 3)}),
              ConflictDetectionResult());
}

TEST(DetectConflicts, TellsBothSidesOfOne)
{
    const Snippet local = version(u"t"_s, u"old"_s, 3);
    Snippet other = version(u"t"_s, u"new"_s, 4);
    other.setId(u"foreign"_s);
    const auto result = detect({other}, {local});
    EXPECT_THAT(result.conflicts, ElementsAre(ImportConflict{.id = u"id of t"_s,
                                                             .type = ConflictType::snippet,
                                                             .name = u"t"_s,
                                                             .localUpdatedAt = dateAt(3000),
                                                             .importedUpdatedAt = dateAt(4000)}));
    EXPECT_THAT(result.conflictingSnippets, ElementsAre(other));
    EXPECT_THAT(result.conflictingCollections, IsEmpty());
    EXPECT_THAT(result.newSnippets, IsEmpty());
    EXPECT_EQ(result.snippetConflictCount(), 1);
}

TEST(DetectConflicts, ComparesContentSubtitleAndKeywords)
{
    const Snippet local = version(u"t"_s, u"x"_s, 0);
    Snippet subtitled = version(u"t"_s, u"x"_s, 1);
    subtitled.setSubtitle(u"s"_s);
    Snippet worded = version(u"t"_s, u"x"_s, 1);
    worded.setKeywords({u"a"_s, u"b"_s});
    EXPECT_EQ(detect({subtitled}, {local}).snippetConflictCount(), 1);
    EXPECT_EQ(detect({worded}, {local}).snippetConflictCount(), 1);
    Snippet reordered = local;
    reordered.setKeywords({u"b"_s, u"a"_s});
    EXPECT_EQ(detect({worded}, {reordered}).snippetConflictCount(), 1) << "order counts";
}

TEST(DetectConflicts, TakesTheLastOfLocalSnippetsOfOneTitle)
{
    Snippet second = version(u"t"_s, u"second"_s, 7);
    second.setId(u"second"_s);
    const auto result =
        detect({version(u"t"_s, u"first"_s, 1)}, {version(u"t"_s, u"first"_s, 1), second});
    ASSERT_EQ(result.conflicts.size(), 1);
    EXPECT_EQ(result.conflicts.first().id, u"second"_s);
}

TEST(DetectConflicts, LooksAtTheCollectionOfTheFileNotOfTheSnippet)
{
    const Snippet astray = inCollection(version(u"t"_s, u"new"_s, 1), u"Elsewhere"_s);
    EXPECT_EQ(detect({astray}, {version(u"t"_s, u"old"_s, 0)}).snippetConflictCount(), 1);
    EXPECT_EQ(detect({astray}, {inCollection(version(u"t"_s, u"old"_s, 0), u"Elsewhere"_s)})
                  .newSnippets.size(),
              1);
}

TEST(DetectConflicts, CountsEveryImportedSnippetOfOneTitle)
{
    const auto result = detect({version(u"t"_s, u"a"_s, 1), version(u"t"_s, u"b"_s, 2),
                                version(u"u"_s, u"a"_s, 1), version(u"u"_s, u"a"_s, 1)},
                               {version(u"t"_s, u"old"_s, 0)});
    EXPECT_EQ(result.snippetConflictCount(), 2);
    EXPECT_EQ(result.newSnippets.size(), 2);
}

} // namespace
} // namespace vellumry::test
