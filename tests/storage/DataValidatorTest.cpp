#include "storage/DataValidator.h"

#include "platform/DeviceIdentifier.h"
#include "platform/MachineIdentifier.h"
#include "storage/StorageWorld.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <limits>

using namespace vellumry;
using namespace vellumry::test;

namespace {

bool isFreshId(const QString& id)
{
    static const QRegularExpression form(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    return form.match(id).hasMatch();
}

LegacyExportCollection nested(const QString& name, std::optional<qint64> order,
                              const QList<Snippet>& snippets = {})
{
    return {.id = QStringLiteral("id of ") + name,
            .name = name,
            .displayOrder = order,
            .color = std::nullopt,
            .snippets = snippets};
}

void expectHead(const VellumryData& data, const Clock& clock)
{
    EXPECT_EQ(data.version, QStringLiteral("3.0"));
    EXPECT_EQ(data.lastModified, clock.now());
    if (machineIdentifier()) {
        EXPECT_EQ(data.deviceId, DeviceIdentifier::current());
    }
    EXPECT_FALSE(data.deviceId.isEmpty());
    EXPECT_EQ(data.settings, std::nullopt);
}

TEST(DataValidatorTest, sortsLegacyCollectionsByTheirOrderThoseWithoutLast)
{
    const ManualClock clock;
    const LegacyExportData legacy{
        .version = QStringLiteral("1"),
        .exportedAt = std::nullopt,
        .collections = {nested(QStringLiteral("none 1"), std::nullopt),
                        nested(QStringLiteral("two"), 2), nested(QStringLiteral("minus"), -1),
                        nested(QStringLiteral("none 2"), std::nullopt),
                        nested(QStringLiteral("two again"), 2),
                        nested(QStringLiteral("largest"), std::numeric_limits<qint64>::max())}};
    const VellumryData data = DataValidator::migrateFromLegacy(legacy, clock);
    expectHead(data, clock);
    QStringList names;
    for (const SyncCollection& collection : data.data.collections) {
        names.append(collection.name);
        EXPECT_EQ(collection.id, QStringLiteral("id of ") + collection.name);
        EXPECT_EQ(collection.createdAt, clock.now());
        EXPECT_EQ(collection.color, std::nullopt);
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("minus"), QStringLiteral("two"),
                                  QStringLiteral("two again"), QStringLiteral("none 1"),
                                  QStringLiteral("none 2"), QStringLiteral("largest")}));
}

TEST(DataValidatorTest, keepsLegacySnippetsAsTheyAreInTheOrderOfTheirCollections)
{
    const Snippet a = makeSnippet(QStringLiteral("a"), QStringLiteral("some other name"));
    const Snippet b = makeSnippet(QStringLiteral("b"), QStringLiteral("first"));
    const LegacyExportData legacy{.version = std::nullopt,
                                  .exportedAt = std::nullopt,
                                  .collections = {nested(QStringLiteral("second"), 2, {a}),
                                                  nested(QStringLiteral("first"), 1, {b})}};
    EXPECT_EQ(DataValidator::migrateFromLegacy(legacy).data.snippets, (QList<Snippet>{b, a}));
}

TEST(DataValidatorTest, takesLegacyColorsTheLastOfANameWins)
{
    LegacyExportCollection first = nested(QStringLiteral("Work"), 1);
    first.color = QStringLiteral("red");
    LegacyExportCollection second = nested(QStringLiteral("Work"), 2);
    second.color = QStringLiteral("#112233");
    const LegacyExportCollection third = nested(QStringLiteral("Work"), 3);
    const VellumryData data =
        DataValidator::migrateFromLegacy({.version = std::nullopt,
                                          .exportedAt = std::nullopt,
                                          .collections = {third, second, first}});
    EXPECT_EQ(data.data.categoryColors,
              (QMap<QString, QString>{{QStringLiteral("Work"), QStringLiteral("#112233")}}));
    EXPECT_EQ(data.data.collections[0].color, QStringLiteral("red"));
    EXPECT_EQ(data.data.collections[1].color, QStringLiteral("#112233"));
    EXPECT_EQ(data.data.collections[2].color, std::nullopt);
}

TEST(DataValidatorTest, givesALegacyCollectionWithoutAnIdAFreshOneEachTime)
{
    LegacyExportCollection anonymous = nested(QStringLiteral("Work"), 1);
    anonymous.id.reset();
    const LegacyExportData legacy{
        .version = std::nullopt, .exportedAt = std::nullopt, .collections = {anonymous}};
    const QString first = DataValidator::migrateFromLegacy(legacy).data.collections.first().id;
    const QString second = DataValidator::migrateFromLegacy(legacy).data.collections.first().id;
    EXPECT_TRUE(isFreshId(first)) << first.toStdString();
    EXPECT_NE(first, second);
}

TEST(DataValidatorTest, anEmptyLegacyIdIsAnId)
{
    LegacyExportCollection unnamed = nested(QStringLiteral("Work"), 1);
    unnamed.id = QStringLiteral("");
    const VellumryData data = DataValidator::migrateFromLegacy(
        {.version = std::nullopt, .exportedAt = std::nullopt, .collections = {unnamed}});
    EXPECT_EQ(data.data.collections.first().id, QString());
}

TEST(DataValidatorTest, makesACollectionForEachNameInASnippetArray)
{
    const ManualClock clock;
    const QList<Snippet> snippets{makeSnippet(QStringLiteral("1"), QStringLiteral("A")),
                                  makeSnippet(QStringLiteral("2"), QStringLiteral("B")),
                                  makeSnippet(QStringLiteral("3"), QStringLiteral("A"))};
    const VellumryData data = DataValidator::migrateFromSnippetArray(snippets, clock);
    expectHead(data, clock);
    EXPECT_EQ(data.data.snippets, snippets);
    EXPECT_TRUE(data.data.categoryColors.isEmpty());
    QStringList names;
    for (const SyncCollection& collection : data.data.collections) {
        names.append(collection.name);
        EXPECT_TRUE(isFreshId(collection.id));
        EXPECT_EQ(collection.color, std::nullopt);
        EXPECT_EQ(collection.createdAt, clock.now());
    }
    names.sort();
    EXPECT_EQ(names, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    EXPECT_NE(data.data.collections[0].id, data.data.collections[1].id);
}

TEST(DataValidatorTest, anEmptySnippetArrayIsAnEmptyLibrary)
{
    const VellumryData data = DataValidator::migrateFromSnippetArray({});
    EXPECT_TRUE(data.data.collections.isEmpty());
    EXPECT_TRUE(data.data.snippets.isEmpty());
}

} // namespace
