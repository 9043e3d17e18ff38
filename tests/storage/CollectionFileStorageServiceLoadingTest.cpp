#include "storage/MemoryFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

#include <cerrno>

using namespace vellumry;
using namespace vellumry::test;

namespace {

class LoadingTest : public testing::Test {
protected:
    LoadingTest() { files.makeFolder(folder); }

    void put(const QString& name, const QByteArray& bytes) { files.replace(path(name), bytes); }
    [[nodiscard]] QString path(const QString& name) const { return world.path(name); }

    void putCollection(const QString& id, const QString& name, const QList<Snippet>& snippets = {},
                       const std::optional<QString>& color = std::nullopt)
    {
        put(id + QStringLiteral(".json"),
            collectionFileBytes(makeCollection(id, name, color), snippets));
    }

    void putMetadata(const QStringList& order)
    {
        put(QStringLiteral("_metadata.json"), metadataFileBytes(order));
    }

    /// The lines since the last call.
    QStringList lines() { return std::exchange(log.lines, {}); }

    [[nodiscard]] CollectionFileStorageService& service() { return world.service(); }

    LogCapture log;
    MemoryFileSystem files;
    const QString folder = QStringLiteral("/data");
    StorageWorld world{files, folder};
};

using LoadingDeathTest = LoadingTest;

TEST_F(LoadingTest, startsWithNothing)
{
    EXPECT_EQ(service().currentData(), std::nullopt);
    EXPECT_FALSE(service().isSaving());
    EXPECT_FALSE(service().isWriting());
    EXPECT_EQ(service().lastSaveTime(), std::nullopt);
    EXPECT_FALSE(service().lastError());
    EXPECT_TRUE(service().detectedConflicts().isEmpty());
    EXPECT_TRUE(files.opened.isEmpty()) << "nothing is loaded on construction";
}

TEST_F(LoadingTest, createsTheFolderOnConstruction)
{
    world.setFolder(QStringLiteral("/new"));
    (void)service();
    EXPECT_TRUE(files.isFolder(QStringLiteral("/new")));
    EXPECT_EQ(lines(), QStringList{QStringLiteral("StorageLocationManager: 创建目录 - /new")});
}

TEST_F(LoadingTest, anEmptyFolderLoadsNothingWithoutAWord)
{
    QSignalSpy changes(&service(), &CollectionFileStorageService::currentDataChanged);
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    EXPECT_EQ(service().currentData(), std::nullopt);
    EXPECT_FALSE(service().lastError());
    EXPECT_TRUE(lines().isEmpty());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(LoadingTest, loadsTheCollectionsInTheirOrder)
{
    const Snippet y1 = makeSnippet(QStringLiteral("y1"), QStringLiteral("Y"));
    const Snippet z1 = makeSnippet(QStringLiteral("z1"), QStringLiteral("a name of its own"));
    putCollection(QStringLiteral("y"), QStringLiteral("Y"), {y1});
    putCollection(QStringLiteral("x"), QStringLiteral("X"));
    putCollection(QStringLiteral("z"), QStringLiteral("Z"), {z1});
    put(QStringLiteral("_metadata.json"),
        metadataFileBytes({QStringLiteral("gone"), QStringLiteral("x"), QStringLiteral("y")},
                          SyncSettings{.version = 4, .syncAppSettings = true}));
    QSignalSpy changes(&service(), &CollectionFileStorageService::currentDataChanged);

    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->version, QStringLiteral("3.0"));
    EXPECT_EQ(data->lastModified, dateAt(3));
    EXPECT_EQ(data->deviceId, QStringLiteral("other device"));
    EXPECT_EQ(data->settings, (SyncSettings{.version = 4, .syncAppSettings = true}));
    EXPECT_EQ(idsOf(data->data.collections),
              (QStringList{QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")}));
    EXPECT_EQ(data->data.snippets, (QList<Snippet>{y1, z1})) << "in the order of the listing";
    EXPECT_EQ(service().currentData(), data);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(lines(), (QStringList{line(QStringLiteral("加载文件 - y")),
                                    line(QStringLiteral("加载文件 - x")),
                                    line(QStringLiteral("加载文件 - z")),
                                    line(QStringLiteral("加载成功 - 2 snippets, 3 collections"))}));
}

TEST_F(LoadingTest, collectionsWithoutAPlaceKeepTheOrderOfTheListingAtTheEnd)
{
    for (const char* id : {"n3", "b", "n1", "a", "n2"})
        putCollection(QLatin1StringView(id), QLatin1StringView(id));
    putMetadata({QStringLiteral("a"), QStringLiteral("b")});
    EXPECT_EQ(idsOf(service().loadFullData()->data.collections).join(u' '),
              QStringLiteral("a b n3 n1 n2"));
}

TEST_F(LoadingTest, stepsAroundADamagedFileAndLeavesIt)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    put(QStringLiteral("b.json"), "no JSON");
    putMetadata({QStringLiteral("b"), QStringLiteral("a")});
    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_EQ(idsOf(data->data.collections), QStringList{QStringLiteral("a")});
    EXPECT_EQ(files.bytes(path(QStringLiteral("b.json"))), "no JSON");
    EXPECT_FALSE(service().lastError());
    const QStringList said = lines();
    ASSERT_EQ(said.size(), 3);
    EXPECT_TRUE(said[1].startsWith(line(QStringLiteral("跳过无效文件 - b: "))));
    EXPECT_GT(said[1].size(), line(QStringLiteral("跳过无效文件 - b: ")).size());
}

TEST_F(LoadingTest, takesColorsFromTheCollectionsTheLastOfANameWins)
{
    putCollection(QStringLiteral("1"), QStringLiteral("Work"), {}, QStringLiteral("red"));
    putCollection(QStringLiteral("2"), QStringLiteral("Work"), {}, QStringLiteral("blue"));
    putCollection(QStringLiteral("3"), QStringLiteral("Plain"));
    putMetadata({QStringLiteral("2"), QStringLiteral("1")});
    EXPECT_EQ(service().loadFullData()->data.categoryColors,
              (QMap<QString, QString>{{QStringLiteral("Work"), QStringLiteral("red")}}));
}

TEST_F(LoadingTest, looksAtNoVersion)
{
    put(QStringLiteral("a.json"),
        collectionFileBytes(makeCollection(QStringLiteral("a"), QStringLiteral("A")), {},
                            QStringLiteral("99.9 from the future")));
    put(QStringLiteral("_metadata.json"), metadataFileBytes({}, std::nullopt, QStringLiteral("")));
    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->version, QStringLiteral("3.0"));
    EXPECT_EQ(data->data.collections.size(), 1);
}

TEST_F(LoadingTest, knowsCollectionFilesByTheirExactExtension)
{
    const QByteArray bytes =
        collectionFileBytes(makeCollection(QStringLiteral("c"), QStringLiteral("C")), {});
    for (const char* name :
         {"notes.JSON", "notes.json.bak", "json", ".json", "notesjson", "notes.Json", "x.json "})
        put(QLatin1StringView(name), bytes);
    putMetadata({});
    EXPECT_TRUE(service().loadFullData()->data.collections.isEmpty());
    EXPECT_EQ(lines(), QStringList{line(QStringLiteral("加载成功 - 0 snippets, 0 collections"))});

    for (const char* name :
         {".hidden.json", "a.b.json", "_Metadata.json", "..json", "vellumry-data.json"})
        put(QLatin1StringView(name), bytes);
    EXPECT_EQ(service().loadFullData()->data.collections.size(), 5);
    EXPECT_TRUE(lines().contains(line(QStringLiteral("加载文件 - .hidden"))));
}

TEST_F(LoadingTest, keepsDuplicatesAcrossFiles)
{
    const Snippet snippet = makeSnippet(QStringLiteral("s"), QStringLiteral("A"));
    const QByteArray bytes =
        collectionFileBytes(makeCollection(QStringLiteral("a"), QStringLiteral("A")), {snippet});
    put(QStringLiteral("a.json"), bytes);
    put(QStringLiteral("a (conflicted copy).json"), bytes);
    putMetadata({QStringLiteral("a")});
    const auto data = service().loadFullData();
    EXPECT_EQ(data->data.collections.size(), 2);
    EXPECT_EQ(data->data.snippets, (QList<Snippet>{snippet, snippet}));
}

TEST_F(LoadingTest, aBadMetadataFileFailsTheLoadAndKeepsTheCache)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    putMetadata({});
    const auto good = service().loadFullData();
    ASSERT_TRUE(good);
    lines();

    QSignalSpy errors(&service(), &CollectionFileStorageService::lastErrorChanged);
    for (const QByteArray& bad : {QByteArray(), QByteArray("{}"), QByteArray("[1"),
                                  QByteArray("\xff\xfe"), QByteArray("\0\0\0", 3)}) {
        put(QStringLiteral("_metadata.json"), bad);
        EXPECT_EQ(service().loadFullData(), std::nullopt);
        EXPECT_EQ(service().currentData(), good);
        ASSERT_TRUE(service().lastError());
        EXPECT_EQ(lines(), QStringList{line(QStringLiteral("加载失败 - ") +
                                            service().lastError()->description())});
    }
    EXPECT_EQ(errors.count(), 5);

    put(QStringLiteral("_metadata.json"), metadataFileBytes({}));
    EXPECT_TRUE(service().loadFullData());
    EXPECT_TRUE(service().lastError()) << "a good load leaves it";
}

TEST_F(LoadingTest, anUnreadableMetadataFileFailsTheLoad)
{
    putMetadata({});
    files.setReadable(path(QStringLiteral("_metadata.json")), false);
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    ASSERT_TRUE(service().lastError());
    EXPECT_TRUE(
        service().lastError()->description().contains(path(QStringLiteral("_metadata.json"))));
}

TEST_F(LoadingTest, aFolderThatCannotBeListedIsAnEmptyLibrary)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    putMetadata({QStringLiteral("a")});
    const FileError cause(QStringLiteral("list"), folder, EACCES);
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == QLatin1StringView("list"))
            throw cause;
    };
    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->lastModified, dateAt(3));
    EXPECT_EQ(data->deviceId, QStringLiteral("other device"));
    EXPECT_TRUE(data->data.collections.isEmpty());
    EXPECT_EQ(service().currentData(), data);
    EXPECT_FALSE(service().lastError());
    EXPECT_EQ(lines(), (QStringList{line(QStringLiteral("扫描目录失败 - ") + cause.description()),
                                    line(QStringLiteral("加载成功 - 0 snippets, 0 collections"))}));
}

TEST_F(LoadingDeathTest, aDuplicateInTheOrderEndsTheProcess)
{
    putMetadata({QStringLiteral("a"), QStringLiteral("twice"), QStringLiteral("twice"),
                 QStringLiteral("a")});
    EXPECT_DEATH((void)service().loadFullData(), "Duplicate values for key: 'twice'");
}

// The old single file

TEST_F(LoadingTest, loadsTheOldFileAsALibrary)
{
    VellumryData old = makeLibrary({makeCollection(QStringLiteral("a"), QStringLiteral("A"))},
                                   {makeSnippet(QStringLiteral("s"), QStringLiteral("A"))});
    old.version = QStringLiteral("2.7");
    put(QStringLiteral("vellumry-data.json"), JSONEncoder::vellumry().encode(old).toByteArray());
    putCollection(QStringLiteral("x"), QStringLiteral("not looked at"));
    const QStringList before = files.order;
    EXPECT_EQ(service().loadFullData(), old) << "with its own version";
    EXPECT_EQ(service().currentData(), old);
    EXPECT_EQ(files.order, before) << "no new file before the first save";
    EXPECT_TRUE(files.written.isEmpty());
    EXPECT_TRUE(lines().isEmpty());
}

TEST_F(LoadingTest, loadsTheOldFileAsNestedCollections)
{
    const Snippet snippet = makeSnippet(QStringLiteral("s"), QStringLiteral("A"));
    const LegacyExportData old{.version = std::nullopt,
                               .exportedAt = std::nullopt,
                               .collections = {{.id = std::nullopt,
                                                .name = QStringLiteral("A"),
                                                .displayOrder = std::nullopt,
                                                .color = QStringLiteral("red"),
                                                .snippets = {snippet}}}};
    put(QStringLiteral("vellumry-data.json"), JSONEncoder::vellumry().encode(old).toByteArray());
    const auto first = service().loadFullData();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->data.snippets, QList<Snippet>{snippet});
    EXPECT_EQ(first->data.collections.first().createdAt, world.clock.now());
    const auto second = service().loadFullData();
    EXPECT_NE(first->data.collections.first().id, second->data.collections.first().id);
    EXPECT_EQ(service().currentData(), second);
}

TEST_F(LoadingTest, loadsTheOldFileAsAListOfSnippets)
{
    put(QStringLiteral("vellumry-data.json"),
        R"([{"id":"1","title":"t","content":"c","updatedAt":"2026-01-01T00:00:00Z","category":"A"},
            {"id":"2","title":"t","content":"c","updatedAt":"2026-01-01T00:00:00Z",
             "collection":"B"}])");
    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_EQ(idsOf(data->data.snippets), (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
    QStringList names;
    for (const SyncCollection& collection : data->data.collections) {
        names.append(collection.name);
        EXPECT_EQ(collection.color, std::nullopt);
    }
    names.sort();
    EXPECT_EQ(names, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

TEST_F(LoadingTest, anOldFileOfNoKnownShapeLoadsNothingWithoutAWord)
{
    for (const QByteArray& bad : {QByteArray(), QByteArray("{}"), QByteArray("[{}]"),
                                  QByteArray("text"), QByteArray("\xc3\x28")}) {
        put(QStringLiteral("vellumry-data.json"), bad);
        EXPECT_EQ(service().loadFullData(), std::nullopt);
    }
    EXPECT_FALSE(service().lastError());
    EXPECT_TRUE(lines().isEmpty());
}

TEST_F(LoadingTest, anUnreadableOldFileIsTold)
{
    put(QStringLiteral("vellumry-data.json"), "[]");
    files.setReadable(path(QStringLiteral("vellumry-data.json")), false);
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    const QString reason =
        FileError(QStringLiteral("read"), path(QStringLiteral("vellumry-data.json")), EACCES)
            .description();
    EXPECT_EQ(lines(), QStringList{line(QStringLiteral("加载旧格式失败 - ") + reason)});
    EXPECT_FALSE(service().lastError());
}

TEST_F(LoadingTest, theMetadataFileHidesTheOldFile)
{
    put(QStringLiteral("vellumry-data.json"), "[]");
    ASSERT_TRUE(service().loadFullData());
    service().saveFullData(*service().currentData(), true);
    EXPECT_TRUE(files.exists(path(QStringLiteral("vellumry-data.json"))));
    lines();
    const auto data = service().loadFullData();
    ASSERT_TRUE(data);
    EXPECT_TRUE(lines().last().startsWith(line(QStringLiteral("加载成功"))));
}

// The default library

TEST_F(LoadingTest, needsDefaultsWhereNeitherMetadataNorOldFileIs)
{
    EXPECT_TRUE(service().needsDefaultSnippets());
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    EXPECT_TRUE(service().needsDefaultSnippets()) << "collection files alone count as empty";
    put(QStringLiteral("vellumry-data.json"), "damaged");
    EXPECT_FALSE(service().needsDefaultSnippets());
    files.take(path(QStringLiteral("vellumry-data.json")));
    put(QStringLiteral("_metadata.json"), "damaged");
    EXPECT_FALSE(service().needsDefaultSnippets());
}

const QByteArray defaults = R"({"collections":[
    {"name":"One","color":"red","snippets":[{"title":"t1","content":"c1"},
                                            {"title":"t2","content":"c2"}]},
    {"name":"Two","color":"#112233","snippets":[]}]})";

TEST_F(LoadingTest, seedsAnEmptyFolder)
{
    world.defaultSnippets = defaults;
    world.colors.saveColors({{QStringLiteral("One"), QStringLiteral("blue")},
                             {QStringLiteral("Other"), QStringLiteral("green")}});
    service().seedDefaultSnippets();

    const auto data = service().currentData();
    ASSERT_TRUE(data);
    EXPECT_EQ(data->version, QStringLiteral("3.0"));
    EXPECT_EQ(data->lastModified, world.clock.now());
    EXPECT_EQ(data->settings, std::nullopt);
    ASSERT_EQ(data->data.collections.size(), 2);
    EXPECT_EQ(data->data.collections[0].name, QStringLiteral("One"));
    EXPECT_EQ(data->data.collections[0].color, QStringLiteral("red"));
    EXPECT_EQ(data->data.collections[0].createdAt, world.clock.now());
    EXPECT_EQ(data->data.collections[0].id.size(), 36);
    ASSERT_EQ(data->data.snippets.size(), 2);
    SnippetFields expected;
    expected.id = data->data.snippets[1].id();
    expected.title = QStringLiteral("t2");
    expected.collection = QStringLiteral("One");
    expected.content = QStringLiteral("c2");
    expected.createdAt = expected.updatedAt = world.clock.now();
    EXPECT_EQ(data->data.snippets[1], Snippet(expected));
    EXPECT_EQ(expected.id.size(), 36);
    EXPECT_NE(data->data.snippets[0].id(), expected.id);
    EXPECT_EQ(data->data.categoryColors,
              (QMap<QString, QString>{{QStringLiteral("One"), QStringLiteral("red")},
                                      {QStringLiteral("Two"), QStringLiteral("#112233")}}));
    EXPECT_EQ(world.colors.loadColors(),
              (QMap<QString, QString>{{QStringLiteral("One"), QStringLiteral("red")},
                                      {QStringLiteral("Other"), QStringLiteral("green")},
                                      {QStringLiteral("Two"), QStringLiteral("#112233")}}));
    EXPECT_EQ(lines(), (QStringList{line(QStringLiteral("更新 Collection - One")),
                                    line(QStringLiteral("更新 Collection - Two")),
                                    line(QStringLiteral("保存成功 - 2 snippets, 2 collections")),
                                    line(QStringLiteral("已预置默认 Snippets"))}));
    EXPECT_TRUE(files.exists(path(QStringLiteral("one.json"))));
}

TEST_F(LoadingTest, seedingRemovesDecodableCollectionFilesOnly)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    put(QStringLiteral("damaged.json"), "damaged");
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    world.defaultSnippets = defaults;
    service().seedDefaultSnippets();
    EXPECT_FALSE(files.exists(path(QStringLiteral("a.json"))));
    EXPECT_EQ(files.bytes(path(QStringLiteral("damaged.json"))), "damaged");
}

TEST_F(LoadingTest, seedsNothingWhereDataIs)
{
    put(QStringLiteral("vellumry-data.json"), "damaged");
    world.defaultSnippets = defaults;
    service().seedDefaultSnippets();
    EXPECT_TRUE(files.written.isEmpty());
    EXPECT_EQ(lines(), QStringList{line(QStringLiteral("已有数据，跳过预置默认 Snippets"))});
}

TEST_F(LoadingTest, tellsThatTheDefaultsAreMissingOrDamaged)
{
    service().seedDefaultSnippets();
    EXPECT_EQ(lines(), (QStringList{line(QStringLiteral("无法找到 DefaultSnippets.json")),
                                    line(QStringLiteral("无法加载 DefaultSnippets.json"))}));
    world.defaultSnippets = QByteArray(R"({"collections":[{"name":"One"}]})");
    service().seedDefaultSnippets();
    const QStringList said = lines();
    ASSERT_EQ(said.size(), 2);
    EXPECT_TRUE(said[0].startsWith(line(QStringLiteral("解析 DefaultSnippets.json 失败 - "))));
    EXPECT_EQ(said[1], line(QStringLiteral("无法加载 DefaultSnippets.json")));
    EXPECT_TRUE(files.written.isEmpty());
}

TEST_F(LoadingTest, tellsThatTheDefaultsCouldNotBeSaved)
{
    world.defaultSnippets = defaults;
    const FileError cause(QStringLiteral("write"), folder, ENOSPC);
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == QLatin1StringView("write"))
            throw cause;
    };
    service().seedDefaultSnippets();
    EXPECT_EQ(lines(),
              QStringList{line(QStringLiteral("预置默认 Snippets 失败 - ") + cause.description())});
    EXPECT_TRUE(world.preferences.data(QStringLiteral("categoryColors")) == std::nullopt);
}

// Change of location

TEST_F(LoadingTest, aChangeOfLocationLoadsTheNewFolder)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    putMetadata({});
    ASSERT_TRUE(service().loadFullData());
    files.makeFolder(QStringLiteral("/other"));
    files.replace(QStringLiteral("/other/_metadata.json"), metadataFileBytes({}));
    world.locations.setCustomLocation(QStringLiteral("/other"));
    ASSERT_TRUE(service().currentData());
    EXPECT_TRUE(service().currentData()->data.collections.isEmpty());
}

TEST_F(LoadingTest, aChangeToAnEmptyLocationKeepsTheOldLibraryInMemory)
{
    putCollection(QStringLiteral("a"), QStringLiteral("A"));
    putMetadata({});
    const auto before = service().loadFullData();
    world.locations.setCustomLocation(QStringLiteral("/other"));
    EXPECT_EQ(service().currentData(), before);
}

TEST_F(LoadingTest, aLoadAfterALoadSharesTheSnippetsOfUnchangedFiles)
{
    files.now -= std::chrono::hours(1);
    putCollection(QStringLiteral("a"), QStringLiteral("A"),
                  {makeSnippet(QStringLiteral("s"), QStringLiteral("A"))});
    putMetadata({});
    files.now += std::chrono::hours(1);
    const auto first = service().loadFullData();
    const auto second = service().loadFullData();
    EXPECT_TRUE(first->data.snippets[0].sharesDataWith(second->data.snippets[0]));
}

TEST_F(LoadingTest, conflictsAreWhatTheyWereSetTo)
{
    QSignalSpy changes(&service(), &CollectionFileStorageService::detectedConflictsChanged);
    ConflictFile conflict;
    conflict.url = path(QStringLiteral("a (conflicted copy).json"));
    service().setDetectedConflicts({conflict});
    EXPECT_EQ(service().detectedConflicts(), QList<ConflictFile>{conflict});
    EXPECT_EQ(changes.count(), 1);
}

} // namespace
