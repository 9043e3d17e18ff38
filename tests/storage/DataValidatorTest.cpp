#include "storage/DataValidator.h"

#include "platform/DeviceIdentifier.h"
#include "platform/MachineIdentifier.h"
#include "storage/DamagedFolder.h"
#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <limits>
#include <sys/stat.h>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <variant>

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
        .collections = {nested(QStringLiteral("largest"), std::numeric_limits<qint64>::max()),
                        nested(QStringLiteral("none 1"), std::nullopt),
                        nested(QStringLiteral("two"), 2), nested(QStringLiteral("minus"), -1),
                        nested(QStringLiteral("none 2"), std::nullopt),
                        nested(QStringLiteral("two again"), 2)}};
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
                                  QStringLiteral("two again"), QStringLiteral("largest"),
                                  QStringLiteral("none 1"), QStringLiteral("none 2")}));
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

// The verdict on a file or folder

/// A text that names the verdict: "valid", "invalid: <reason>" or "notFound".
QString verdictText(const DataValidator::ValidationResult& result)
{
    if (std::holds_alternative<DataValidator::Valid>(result))
        return QStringLiteral("valid");
    if (const auto* invalid = std::get_if<DataValidator::Invalid>(&result))
        return QStringLiteral("invalid: ") + invalid->reason;
    return QStringLiteral("notFound");
}

class ValidateTest : public testing::Test {
protected:
    ValidateTest() { files.makeFolder(folder); }

    [[nodiscard]] QString path(const QString& name) const { return folder + u'/' + name; }
    void put(const QString& name, const QByteArray& bytes) { files.replace(path(name), bytes); }

    DataValidator::ValidationResult validate(const QString& location)
    {
        const QStringList before = files.order;
        auto result = DataValidator::validate(location, files, clock);
        EXPECT_EQ(files.order, before);
        EXPECT_TRUE(files.written.isEmpty());
        return result;
    }

    QString verdict(const QString& location) { return verdictText(validate(location)); }

    /// The data of a verdict that must be valid.
    VellumryData validData(const QString& location)
    {
        const auto result = validate(location);
        EXPECT_EQ(verdictText(result), QStringLiteral("valid"));
        const auto* valid = std::get_if<DataValidator::Valid>(&result);
        return valid ? valid->data : VellumryData();
    }

    LogCapture log;
    ManualClock clock;
    MemoryFileSystem files;
    const QString folder = QStringLiteral("/data");
    const SyncCollection work =
        makeCollection(QStringLiteral("w"), QStringLiteral("Work"), QStringLiteral("red"));
    const SyncCollection home = makeCollection(QStringLiteral("h"), QStringLiteral("Home"));
    const Snippet a = makeSnippet(QStringLiteral("a"), QStringLiteral("Work"));
    const Snippet b = makeSnippet(QStringLiteral("b"), QStringLiteral("Home"));
    const QString metadataMessage =
        QStringLiteral("invalid: This appears to be a metadata file. Please select the folder "
                       "containing this file.");
    const QString compatibilityMessage =
        QStringLiteral("invalid: JSON format is not compatible with Vellumry");
};

using ValidateDeathTest = ValidateTest;

TEST_F(ValidateTest, whatDoesNotExistIsNotFound)
{
    EXPECT_EQ(verdict(QStringLiteral("/nowhere")), QStringLiteral("notFound"));
    EXPECT_EQ(verdict(folder), QStringLiteral("notFound"));
}

TEST_F(ValidateTest, aFolderWithAMetadataFileAloneIsAnEmptyLibrary)
{
    const SyncSettings settings{.version = 7, .syncAppSettings = true};
    put(QStringLiteral("_metadata.json"), metadataFileBytes({QStringLiteral("gone")}, settings));
    const VellumryData data = validData(folder);
    EXPECT_EQ(data.version, QStringLiteral("3.0"));
    EXPECT_EQ(data.lastModified, dateAt(3));
    EXPECT_EQ(data.deviceId, QStringLiteral("other device"));
    EXPECT_EQ(data.data, SyncDataContent());
    EXPECT_EQ(data.settings, settings);
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(ValidateTest, aFolderWithoutAMetadataFileStandsForItsFirstGoodFile)
{
    put(QStringLiteral("notes.txt"), "{}");
    put(QStringLiteral("broken.json"), "{");
    put(QStringLiteral("_own.json"), collectionFileBytes(home, {b}));
    put(QStringLiteral("a.json"), collectionFileBytes(work, {a}));
    put(QStringLiteral("b.json"), collectionFileBytes(home, {b}));
    const VellumryData data = validData(folder);
    expectHead(data, clock);
    EXPECT_EQ(data.data.collections, QList<SyncCollection>{work});
    EXPECT_EQ(data.data.snippets, QList<Snippet>{a});
    EXPECT_TRUE(data.data.categoryColors.isEmpty()) << "the colour stays in the collection alone";
}

TEST_F(ValidateTest, aFolderWhoseOnlyJSONBeginsWithAnUnderscoreIsNotFound)
{
    put(QStringLiteral("_notes.json"), collectionFileBytes(work, {a}));
    EXPECT_EQ(verdict(folder), QStringLiteral("notFound"));
}

TEST_F(ValidateTest, onlyTheExactExtensionCounts)
{
    put(QStringLiteral("a.JSON"), collectionFileBytes(work, {a}));
    put(QStringLiteral("a.json.bak"), collectionFileBytes(work, {a}));
    put(QStringLiteral(".json"), collectionFileBytes(work, {a}));
    EXPECT_EQ(verdict(folder), QStringLiteral("notFound"));
    put(QStringLiteral(".hidden.json"), collectionFileBytes(work, {a}));
    EXPECT_EQ(verdict(folder), QStringLiteral("valid"));
}

TEST_F(ValidateTest, aFolderWithNothingThatDecodesIsNotFound)
{
    put(QStringLiteral("a.json"), "[]");
    put(QStringLiteral("b.json"), "no JSON");
    files.makeFolder(path(QStringLiteral("c.json")));
    EXPECT_EQ(verdict(folder), QStringLiteral("notFound"));
}

TEST_F(ValidateTest, aFolderThatCannotBeListedIsNotFoundOrEmpty)
{
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == QLatin1StringView("list"))
            throw FileError(operation, path, EACCES);
    };
    put(QStringLiteral("a.json"), collectionFileBytes(work, {a}));
    EXPECT_EQ(verdict(folder), QStringLiteral("notFound"));
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    EXPECT_EQ(validData(folder).data, SyncDataContent());
}

TEST_F(ValidateTest, aFolderWithAnEmptySingleFileIsInvalid)
{
    put(QStringLiteral("vellumry-data.json"), "");
    put(QStringLiteral("a.json"), collectionFileBytes(work, {a}));
    EXPECT_EQ(verdict(folder), QStringLiteral("invalid: Data file is empty"));
}

TEST_F(ValidateTest, theSingleFileIsJudgedOnlyWithoutAMetadataFile)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    const VellumryData library = makeLibrary({work}, {a});
    put(QStringLiteral("vellumry-data.json"), encoder.encode(library).toByteArray());
    EXPECT_EQ(validData(folder), library);
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    EXPECT_TRUE(validData(folder).data.snippets.isEmpty());
}

TEST_F(ValidateTest, anUnreadableFileIsInvalidWithTheReason)
{
    put(QStringLiteral("vellumry-data.json"), "[]");
    files.setReadable(path(QStringLiteral("vellumry-data.json")), false);
    const QString reason =
        FileError(QStringLiteral("read"), path(QStringLiteral("vellumry-data.json")), EACCES)
            .description();
    const QString text = QStringLiteral("invalid: Cannot read file: ") + reason;
    EXPECT_EQ(verdict(folder), text);
    EXPECT_EQ(verdict(path(QStringLiteral("vellumry-data.json"))), text);
}

TEST_F(ValidateTest, aMetadataFileThatCannotBeReadOrDecodedIsInvalid)
{
    const QString start = QStringLiteral("invalid: Cannot read metadata file: ");
    put(QStringLiteral("a.json"), collectionFileBytes(work, {a}));
    for (const char* bytes : {"", "{", "[]", R"({"version":"3.1"})"}) {
        put(QStringLiteral("_metadata.json"), bytes);
        EXPECT_TRUE(verdict(folder).startsWith(start)) << bytes;
        EXPECT_GT(verdict(folder).size(), start.size()) << bytes;
    }
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    files.setReadable(path(QStringLiteral("_metadata.json")), false);
    EXPECT_EQ(verdict(folder), start + FileError(QStringLiteral("read"),
                                                 path(QStringLiteral("_metadata.json")), EACCES)
                                           .description());
}

TEST_F(ValidateTest, aMetadataFilePickedDirectlyAsksForItsFolder)
{
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    EXPECT_EQ(verdict(path(QStringLiteral("_metadata.json"))), metadataMessage);
    EXPECT_EQ(verdict(folder), QStringLiteral("valid"));
}

TEST_F(ValidateTest, aDoubledIdInTheOrderIsNoMatterForTheFileItself)
{
    const QString twice = QStringLiteral("twice");
    put(QStringLiteral("_metadata.json"), metadataFileBytes({twice, twice}));
    EXPECT_EQ(verdict(path(QStringLiteral("_metadata.json"))), metadataMessage);
}

TEST_F(ValidateDeathTest, aDoubledIdInTheOrderOfAFolderEndsTheProcess)
{
    const QString twice = QStringLiteral("twice");
    put(QStringLiteral("_metadata.json"), metadataFileBytes({twice, twice}));
    EXPECT_DEATH((void)validate(folder), "Duplicate values for key: 'twice'");
}

TEST_F(ValidateTest, aFolderIsGivenAsTheStoreWouldLoadIt)
{
    const SyncCollection blue =
        makeCollection(QStringLiteral("z"), QStringLiteral("Work"), QStringLiteral("blue"));
    put(QStringLiteral("new.json"), collectionFileBytes(blue, {}));
    put(QStringLiteral("broken.json"), "{");
    put(QStringLiteral("_extra.json"), collectionFileBytes(home, {b}, QStringLiteral("99")));
    put(QStringLiteral("a.json"), collectionFileBytes(work, {a}));
    put(QStringLiteral("_metadata.json"),
        metadataFileBytes({QStringLiteral("w"), QStringLiteral("gone"), QStringLiteral("h")},
                          std::nullopt, QStringLiteral("99")));
    const VellumryData data = validData(folder);
    EXPECT_EQ(data.data.collections, (QList<SyncCollection>{work, home, blue}));
    EXPECT_EQ(data.data.snippets, (QList<Snippet>{b, a})) << "in the order of the listing";
    EXPECT_EQ(data.data.categoryColors,
              (QMap<QString, QString>{{QStringLiteral("Work"), QStringLiteral("blue")}}));
    EXPECT_TRUE(log.lines.isEmpty()) << "versions and broken files pass without a word";
    StorageWorld world(files, folder);
    EXPECT_EQ(world.service().loadFullData(), data);
}

TEST_F(ValidateTest, aLibraryOfAnotherVersionIsValidAndLogged)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    VellumryData library = makeLibrary({work}, {a});
    for (const char* version : {"2.0", "4.0", "3.0 ", ""}) {
        library.version = QLatin1StringView(version);
        put(QStringLiteral("x.json"), encoder.encode(library).toByteArray());
        EXPECT_EQ(validData(path(QStringLiteral("x.json"))), library);
        EXPECT_EQ(std::exchange(log.lines, {}),
                  QStringList{QStringLiteral("DataValidator: 数据版本 ") +
                              QLatin1StringView(version) + QStringLiteral("，当前版本 3.0")});
    }
    library.version = QStringLiteral("3.0");
    put(QStringLiteral("x.json"), encoder.encode(library).toByteArray());
    EXPECT_EQ(validData(path(QStringLiteral("x.json"))), library);
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(ValidateTest, aCollectionFilePickedDirectlyIsALibraryOfItsOwn)
{
    put(QStringLiteral("x"), collectionFileBytes(work, {a}));
    const VellumryData data = validData(path(QStringLiteral("x")));
    expectHead(data, clock);
    EXPECT_EQ(data.data.collections, QList<SyncCollection>{work});
    EXPECT_EQ(data.data.snippets, QList<Snippet>{a});
    EXPECT_TRUE(data.data.categoryColors.isEmpty());
}

TEST_F(ValidateTest, theOlderFormsAreConverted)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    LegacyExportCollection nestedWork = nested(QStringLiteral("Work"), 1, {a});
    nestedWork.color = QStringLiteral("red");
    const LegacyExportData legacy{
        .version = QStringLiteral("2.0"), .exportedAt = dateAt(0), .collections = {nestedWork}};
    put(QStringLiteral("backup.json"), encoder.encode(legacy).toByteArray());
    EXPECT_EQ(validData(path(QStringLiteral("backup.json"))),
              DataValidator::migrateFromLegacy(legacy, clock));

    put(QStringLiteral("list.json"), '[' + encoder.encode(a).toByteArray() + ']');
    const VellumryData data = validData(path(QStringLiteral("list.json")));
    expectHead(data, clock);
    EXPECT_EQ(data.data.snippets, QList<Snippet>{a});
    ASSERT_EQ(data.data.collections.size(), 1);
    EXPECT_EQ(data.data.collections[0].name, QStringLiteral("Work"));

    put(QStringLiteral("empty.json"), "[]");
    EXPECT_EQ(validData(path(QStringLiteral("empty.json"))).data, SyncDataContent());
}

TEST_F(ValidateTest, theFirstShapeThatFitsCounts)
{
    // One text that is a library, a metadata file, a collection file and a legacy file at once.
    const QByteArray head = R"("version":"3.0","lastModified":"2024-01-01T00:00:00.000Z",)"
                            R"("deviceId":"d")";
    const QByteArray library = R"(,"data":{"collections":[],"snippets":[],"categoryColors":{}})";
    const QByteArray metadata = R"(,"collectionOrder":["x","x"])";
    const QByteArray collection =
        R"(,"collection":{"id":"c","name":"C","createdAt":"2024-01-01T00:00:00Z"},"snippets":[])";
    const QByteArray legacy = R"(,"collections":[{"name":"L","snippets":[]}])";
    const QString file = path(QStringLiteral("x.json"));
    put(QStringLiteral("x.json"), '{' + head + legacy + collection + metadata + library + '}');
    EXPECT_EQ(validData(file).deviceId, QStringLiteral("d"));
    put(QStringLiteral("x.json"), '{' + head + legacy + collection + metadata + '}');
    EXPECT_EQ(verdict(file), metadataMessage);
    put(QStringLiteral("x.json"), '{' + head + legacy + collection + '}');
    EXPECT_EQ(validData(file).data.collections[0].name, QStringLiteral("C"));
    put(QStringLiteral("x.json"), '{' + head + legacy + '}');
    EXPECT_EQ(validData(file).data.collections[0].name, QStringLiteral("L"));
    put(QStringLiteral("x.json"), '{' + head + '}');
    EXPECT_EQ(verdict(file), compatibilityMessage);
}

TEST_F(ValidateTest, otherJSONIsNotCompatibleAndOtherTextIsInvalid)
{
    for (const char* bytes : {"[1,2,3]", "{}", "42", "null", "\"text\"", R"([{"id":"x"}])"}) {
        put(QStringLiteral("x.json"), bytes);
        EXPECT_EQ(verdict(path(QStringLiteral("x.json"))), compatibilityMessage) << bytes;
    }
    const QString start = QStringLiteral("invalid: Invalid JSON: ");
    for (const char* bytes :
         {"plain text", "{", "[1,2,3", " ", "[1] x", "\xef\xbb\xbf", "\"\xff\""}) {
        put(QStringLiteral("x.json"), bytes);
        const QString text = verdict(path(QStringLiteral("x.json")));
        EXPECT_TRUE(text.startsWith(start)) << bytes;
        EXPECT_GT(text.size(), start.size()) << bytes;
    }
}

/// What a damaged folder on a real disk gives.
class ValidatedDamageTest : public testing::Test {
protected:
    ValidatedDamageTest()
    {
        for (int i = 0; i < 3; ++i)
            originals.insert(QStringLiteral("c%1.json").arg(i),
                             collectionFileBytes(
                                 makeCollection(QString::number(i), QStringLiteral("C%1").arg(i)),
                                 {makeSnippet(QStringLiteral("s%1").arg(i), QStringLiteral("C"))}));
        originals.insert(QStringLiteral("_metadata.json"),
                         metadataFileBytes({QStringLiteral("2"), QStringLiteral("0")}));
        for (auto it = originals.cbegin(); it != originals.cend(); ++it)
            put(it.key(), it.value());
    }

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    void put(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static void replace(const QString& location, const OddEntry& odd)
    {
        const std::filesystem::path entry = location.toStdString();
        std::filesystem::remove_all(entry);
        odd.make(entry);
    }

    [[nodiscard]] static DataValidator::ValidationResult validate(const QString& location)
    {
        return DataValidator::validate(location);
    }

    /// The ids of the collections that the folder is said to hold; nothing when it is not valid.
    [[nodiscard]] std::optional<QStringList> idsInFolder() const
    {
        const auto result = validate(folder.path());
        if (const auto* valid = std::get_if<DataValidator::Valid>(&result))
            return idsOf(valid->data.data.collections);
        EXPECT_TRUE(
            verdictText(result).startsWith(QStringLiteral("invalid: Cannot read metadata file: ")))
            << verdictText(result).toStdString();
        return std::nullopt;
    }

    /// Puts other bytes into the place of one file, and expects the verdict that follows from
    /// whether they are still such a file; no file may be changed by it.
    template <typename T>
    void damage(const QString& name, const QByteArray& bytes)
    {
        put(name, bytes);
        bool isDecodable = true;
        try {
            (void)JSONDecoder::vellumry().decode<T>(QByteArrayView(bytes));
        } catch (const DecodingError&) {
            isDecodable = false;
        }
        const auto ids = idsInFolder();
        if constexpr (std::is_same_v<T, MetadataFileData>) {
            EXPECT_EQ(ids.has_value(), isDecodable);
        } else {
            EXPECT_EQ(ids ? ids->size() : -1, isDecodable ? 3 : 2) << bytes.constData();
        }
        const QString text = verdictText(validate(path(name)));
        if (bytes.isEmpty()) {
            EXPECT_EQ(text, QStringLiteral("invalid: Data file is empty"));
        } else if (!isDecodable) {
            EXPECT_TRUE(text.startsWith(QStringLiteral("invalid: "))) << text.toStdString();
        }
        for (auto it = originals.cbegin(); it != originals.cend(); ++it) {
            QFile file(path(it.key()));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_EQ(file.readAll(), it.key() == name ? bytes : it.value());
        }
        put(name, originals.value(name));
    }

    template <typename T>
    void damageInEveryWay(const QString& name)
    {
        const QByteArray whole = originals.value(name);
        for (qsizetype length = 0; length < whole.size(); length += 64)
            damage<T>(name, whole.first(length));
        for (qsizetype i = 0; i < whole.size(); i += 3) {
            QByteArray flipped = whole;
            flipped[i] = static_cast<char>(flipped[i] ^ (1 << (i % 8)));
            damage<T>(name, flipped);
        }
    }

    QTemporaryDir folder;
    QMap<QString, QByteArray> originals;
};

TEST_F(ValidatedDamageTest, cutAndFlippedCollectionFilesAreSteppedAround)
{
    EXPECT_EQ(idsInFolder(),
              (QStringList{QStringLiteral("2"), QStringLiteral("0"), QStringLiteral("1")}));
    damageInEveryWay<CollectionFileData>(QStringLiteral("c1.json"));
}

TEST_F(ValidatedDamageTest, cutAndFlippedMetadataFilesAreInvalid)
{
    damageInEveryWay<MetadataFileData>(QStringLiteral("_metadata.json"));
}

TEST_F(ValidatedDamageTest, whatIsNoFileIsSteppedAroundAndNeverWaitedFor)
{
    const QString location = path(QStringLiteral("c1.json"));
    for (const OddEntry& odd : oddEntries()) {
        replace(location, odd);
        EXPECT_EQ(idsInFolder(), (QStringList{QStringLiteral("2"), QStringLiteral("0")}))
            << odd.what;
        const QString text = verdictText(validate(location));
        if (odd.leadsNowhere || QFileInfo(location).isDir()) {
            EXPECT_EQ(text, QStringLiteral("notFound")) << odd.what;
        } else {
            EXPECT_TRUE(text.startsWith(QStringLiteral("invalid: Cannot read file: "))) << odd.what;
        }
    }
}

TEST_F(ValidatedDamageTest, aMetadataFileThatIsNoFileIsInvalidOrMissing)
{
    for (const OddEntry& odd : oddEntries()) {
        replace(path(QStringLiteral("_metadata.json")), odd);
        const QString text = verdictText(validate(folder.path()));
        if (odd.leadsNowhere) {
            EXPECT_EQ(text, QStringLiteral("valid")) << odd.what;
        } else {
            EXPECT_TRUE(text.startsWith(QStringLiteral("invalid: Cannot read metadata file: ")))
                << odd.what;
        }
    }
}

TEST_F(ValidatedDamageTest, oddNamesAreReadOrSteppedAround)
{
    const QByteArray bytes =
        collectionFileBytes(makeCollection(QStringLiteral("odd"), QStringLiteral("Odd")), {});
    put(QStringLiteral("two\nlines.json"), bytes);
    ASSERT_TRUE(idsInFolder());
    EXPECT_TRUE(idsInFolder()->contains(QStringLiteral("odd")));
    ASSERT_TRUE(QFile::remove(path(QStringLiteral("two\nlines.json"))));

    // A name that is no UTF-8 cannot be named, so its file cannot be read.
    const QByteArray nativePath = QFile::encodeName(folder.path()) + "/bad\xff.json";
    const int file = ::open(nativePath.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(file, 0);
    ASSERT_EQ(::write(file, bytes.constData(), static_cast<size_t>(bytes.size())), bytes.size());
    ::close(file);
    EXPECT_EQ(idsInFolder(),
              (QStringList{QStringLiteral("2"), QStringLiteral("0"), QStringLiteral("1")}));
    EXPECT_EQ(::unlink(nativePath.constData()), 0) << "still there";
}

/// An unreadable file, met by a user without privileges; the tests may run as one with all.
TEST_F(ValidatedDamageTest, anUnreadableFileIsSteppedAround)
{
    ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
    for (auto it = originals.cbegin(); it != originals.cend(); ++it) {
        const mode_t mode = it.key() == QStringLiteral("c1.json") ? 0000 : 0644;
        ASSERT_EQ(::chmod(QFile::encodeName(path(it.key())).constData(), mode), 0);
    }
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0))
            ::_exit(2);
        ::_exit(idsInFolder() == QStringList{QStringLiteral("2"), QStringLiteral("0")} ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

} // namespace
