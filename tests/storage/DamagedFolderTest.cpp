#include "storage/DamagedFolder.h"

#include "platform/linux/PosixFileSystem.h"
#include "storage/DataValidator.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <variant>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// A library of three collections in a real folder. Work is used, renamed and saved, Notes is
/// deleted; Victim is what the damage is done to.
class DamagedFolderTest : public testing::Test {
protected:
    // Qt cannot remove names that are no text.
    ~DamagedFolderTest() override { fs::remove_all(native()); }

    void rebuild()
    {
        fs::remove_all(native());
        fs::create_directories(native());
        put("_metadata.json", metadataBytes());
        put("work.json", collectionFileBytes(work, {makeSnippet(QStringLiteral("w1"), work.name)}));
        put("notes.json",
            collectionFileBytes(notes, {makeSnippet(QStringLiteral("n1"), notes.name)}));
        put("victim.json", victimBytes());
        world.restart();
        log.lines.clear();
    }

    [[nodiscard]] fs::path native(const std::string& name = {}) const
    {
        const fs::path folder = world.folder.toStdString();
        return name.empty() ? folder : folder / name;
    }

    void put(const std::string& name, const QByteArray& bytes) const
    {
        putFile(native(name), bytes);
    }

    [[nodiscard]] QByteArray metadataBytes() const
    {
        return metadataFileBytes({work.id, notes.id, victim.id});
    }

    [[nodiscard]] QByteArray victimBytes() const
    {
        SnippetFields fields = makeSnippet(QStringLiteral("beta"), victim.name).fields();
        fields.content = QStringLiteral("line\n\"quoted\" \u4e2d\u6587 \\ {{name}}");
        fields.keywords = {QStringLiteral("one"), QStringLiteral("two")};
        fields.variables.insert(QStringLiteral("name"), QStringLiteral("value"));
        fields.lastUsedAt = dateAt(77);
        return collectionFileBytes(
            victim, {makeSnippet(QStringLiteral("alpha"), victim.name), Snippet(fields)});
    }

    /// The ids of the collections in a fresh load; nothing when there is none.
    std::optional<QStringList> load()
    {
        const auto data = world.service().loadFullData();
        return data ? std::optional(idsOf(data->data.collections)) : std::nullopt;
    }

    /// Loads, saves, renames, deletes and reloads; each may fail, none may end the process.
    void workOn()
    {
        CollectionFileStorageService& service = world.service();
        service.loadFullData();
        const auto attempt = [](const std::function<void()>& step) {
            try {
                step();
            } catch (const StorageError& error) {
                EXPECT_FALSE(error.description().isEmpty());
            }
        };
        VellumryData data = service.currentData().value_or(
            makeLibrary({work, notes, victim}, {makeSnippet(QStringLiteral("w1"), work.name)}));
        if (!service.currentData())
            data.data.snippets += decodeCollectionFile(victimBytes()).snippets;
        for (Snippet& snippet : data.data.snippets) {
            if (snippet.collection() == work.name)
                snippet.setUsageCount(5);
        }
        attempt([&] { service.saveFullData(data, false); });
        world.scheduler.advance(2s);
        attempt([&] { service.renameCollectionFile(work.id, QStringLiteral("Renamed")); });
        service.reloadFromDisk();
        attempt([&] { service.deleteCollectionFile(notes.id); });
        service.reloadFromDisk();
        world.scheduler.advance(2s);
    }

    /// Works on the folder and sees to it that nothing has changed but what was ours to change, and
    /// nothing at all by a validation.
    void expectOthersUntouched(const std::set<std::string>& ours = {})
    {
        auto before = contentsOf(native());
        const auto verdict = DataValidator::validate(world.folder, files);
        EXPECT_EQ(contentsOf(native()), before);
        if (const auto* invalid = std::get_if<DataValidator::Invalid>(&verdict)) {
            EXPECT_FALSE(invalid->reason.isEmpty());
        }
        workOn();
        auto after = contentsOf(native());
        std::set<std::string> free{"_metadata.json", "work.json", "renamed.json", "notes.json"};
        free.insert(ours.begin(), ours.end());
        for (const std::string& name : free) {
            before.erase(name);
            after.erase(name);
        }
        EXPECT_EQ(after, before);
    }

    [[nodiscard]] qsizetype skips(const QString& baseName) const
    {
        return log.lines.filter(line(QStringLiteral("跳过无效文件 - %1: ").arg(baseName))).size();
    }

    const SyncCollection work = makeCollection(QStringLiteral("w"), QStringLiteral("Work"));
    const SyncCollection notes = makeCollection(QStringLiteral("n"), QStringLiteral("Notes"));
    const SyncCollection victim =
        makeCollection(QStringLiteral("identity"), QStringLiteral("Victim"), QStringLiteral("red"));
    const QStringList allIds{QStringLiteral("w"), QStringLiteral("n"), QStringLiteral("identity")};
    const QStringList otherIds{QStringLiteral("w"), QStringLiteral("n")};

    LogCapture log;
    QTemporaryDir directory;
    QuickFileCalls calls;
    PosixFileSystem files{calls};
    StorageWorld world{files, directory.filePath(QStringLiteral("library"))};
};

// Bytes

TEST_F(DamagedFolderTest, anUndamagedFolderComesThrough)
{
    rebuild();
    EXPECT_EQ(load(), allIds);
    expectOthersUntouched();
    EXPECT_EQ(load(), (QStringList{QStringLiteral("w"), QStringLiteral("identity")}));
}

TEST_F(DamagedFolderTest, aCollectionFileCutOffAnywhereIsSkippedAndLeft)
{
    const QByteArray whole = victimBytes();
    for (qsizetype length = 0; length < whole.size(); length += length < 64 ? 1 : 64) {
        rebuild();
        put("victim.json", whole.first(length));
        EXPECT_EQ(load(), otherIds) << length;
        EXPECT_EQ(skips(QStringLiteral("victim")), 1) << length;
        expectOthersUntouched();
    }
}

TEST_F(DamagedFolderTest, aMetadataFileCutOffAnywhereIsToldAndReplacedByASave)
{
    const QByteArray whole = metadataBytes();
    for (qsizetype length = 0; length < whole.size(); length += length < 16 ? 1 : 64) {
        rebuild();
        put("_metadata.json", whole.first(length));
        EXPECT_EQ(load(), std::nullopt) << length;
        EXPECT_TRUE(world.service().lastError());
        expectOthersUntouched();
        EXPECT_EQ(load(), (QStringList{QStringLiteral("w"), QStringLiteral("identity")}));
    }
}

/// What must become of a file with these bytes, told without the store.
enum class Verdict {
    skipped, ///< it is no collection file
    loaded,  ///< it is, and stays as it is
    changed, ///< it is, but its snippets belong elsewhere
};

Verdict verdictOn(const QByteArray& bytes)
{
    try {
        const CollectionFileData file = decodeCollectionFile(bytes);
        const auto& snippets = file.snippets;
        const bool isAtHome =
            std::all_of(snippets.begin(), snippets.end(), [&](const Snippet& each) {
                return each.collection() == file.collection.name;
            });
        return isAtHome ? Verdict::loaded : Verdict::changed;
    } catch (const DecodingError&) {
        return Verdict::skipped;
    }
}

TEST_F(DamagedFolderTest, flippedBitsNeverHarmAnyOtherFile)
{
    const QByteArray whole = victimBytes();
    std::map<Verdict, int> counts;
    for (qsizetype i = 0; i < whole.size(); i += 3) {
        QByteArray damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ (1 << (i % 8)));
        const Verdict verdict = verdictOn(damaged);
        ++counts[verdict];
        rebuild();
        put("victim.json", damaged);
        const auto loaded = load();
        ASSERT_TRUE(loaded) << i;
        EXPECT_EQ(loaded->size(), verdict == Verdict::skipped ? 2 : 3) << i;
        EXPECT_EQ(skips(QStringLiteral("victim")), verdict == Verdict::skipped ? 1 : 0) << i;
        expectOthersUntouched(verdict == Verdict::changed ? std::set<std::string>{"victim.json"}
                                                          : std::set<std::string>{});
    }
    EXPECT_GT(counts[Verdict::skipped], 20);
    EXPECT_GT(counts[Verdict::loaded], 20);
    EXPECT_GT(counts[Verdict::changed], 0);
}

TEST_F(DamagedFolderTest, flippedBitsInTheMetadataFileHarmNoCollection)
{
    const QByteArray whole = metadataBytes();
    int bad = 0;
    for (qsizetype i = 0; i < whole.size(); ++i) {
        QByteArray damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ (1 << (i % 8)));
        bool isGood = true;
        try {
            (void)decodeMetadataFile(damaged);
        } catch (const DecodingError&) {
            isGood = false;
        }
        bad += isGood ? 0 : 1;
        rebuild();
        put("_metadata.json", damaged);
        const auto loaded = load();
        EXPECT_EQ(loaded.has_value(), isGood) << i;
        EXPECT_EQ(world.service().lastError().has_value(), !isGood) << i;
        if (loaded) {
            EXPECT_EQ(QSet<QString>(loaded->begin(), loaded->end()),
                      QSet<QString>(allIds.begin(), allIds.end()));
        }
        expectOthersUntouched();
    }
    EXPECT_GT(bad, 20);
    EXPECT_LT(bad, whole.size() - 20);
}

TEST_F(DamagedFolderTest, aDamagedOldFileIsLeftAndHarmsNothing)
{
    const QByteArray whole = JSONEncoder::vellumry()
                                 .encode(makeLibrary({work, notes, victim},
                                                     decodeCollectionFile(victimBytes()).snippets))
                                 .toByteArray();
    QList<QByteArray> damages;
    for (qsizetype length = 0; length < whole.size(); length += 64)
        damages.append(whole.first(length));
    for (qsizetype i = 0; i < whole.size(); i += 7) {
        damages.append(whole);
        damages.last()[i] = static_cast<char>(whole[i] ^ (1 << (i % 8)));
    }
    int unread = 0;
    for (const QByteArray& damaged : std::as_const(damages)) {
        rebuild();
        fs::remove(native("_metadata.json"));
        put("vellumry-data.json", damaged);
        unread += load() ? 0 : 1;
        EXPECT_FALSE(world.service().lastError());
        EXPECT_EQ(bytesOf(native("vellumry-data.json")), damaged);
        const auto verdict = DataValidator::validate(world.folder, files);
        EXPECT_EQ(std::holds_alternative<DataValidator::Valid>(verdict),
                  world.service().currentData().has_value());
        workOn();
        EXPECT_EQ(bytesOf(native("vellumry-data.json")), damaged);
    }
    EXPECT_GT(unread, 20);
    EXPECT_LT(unread, damages.size() - 20);
}

// Things that are no files

class ReplacedFileTest : public DamagedFolderTest, public testing::WithParamInterface<OddEntry> {
protected:
    void replace(const std::string& name)
    {
        rebuild();
        fs::remove(native(name));
        GetParam().make(native(name));
    }
};

TEST_P(ReplacedFileTest, asACollectionFileIsSkippedAndLeft)
{
    replace("victim.json");
    EXPECT_EQ(load(), otherIds);
    EXPECT_EQ(skips(QStringLiteral("victim")), 1);
    expectOthersUntouched();
    EXPECT_EQ(load(), QStringList{QStringLiteral("w")});
}

TEST_P(ReplacedFileTest, asTheMetadataFileHidesTheLibraryAndHarmsNoCollection)
{
    replace("_metadata.json");
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_EQ(world.service().lastError().has_value(), !GetParam().leadsNowhere);
    expectOthersUntouched({"nowhere"});
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReplacedFileTest, testing::ValuesIn(oddEntries()));

TEST_F(DamagedFolderTest, aFileThatMayNotBeReadIsSkippedAndLeft)
{
    rebuild();
    calls.forbidden = {"victim.json"};
    EXPECT_EQ(load(), otherIds);
    EXPECT_EQ(skips(QStringLiteral("victim")), 1);
    expectOthersUntouched();
    calls.forbidden.clear();
    EXPECT_EQ(load(), (QStringList{QStringLiteral("w"), QStringLiteral("identity")}));
}

TEST_F(DamagedFolderTest, aMetadataFileThatMayNotBeReadIsToldOf)
{
    rebuild();
    calls.forbidden = {"_metadata.json"};
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_TRUE(world.service().lastError());
    expectOthersUntouched();
}

TEST_F(DamagedFolderTest, aFolderThatIsNoneIsNoLibrary)
{
    rebuild();
    for (const bool isMissing : {false, true}) {
        fs::remove_all(native());
        if (!isMissing)
            std::ofstream(native()) << "a file";
        EXPECT_EQ(load(), std::nullopt);
        EXPECT_TRUE(world.service().needsDefaultSnippets());
        workOn();
        EXPECT_EQ(fs::is_directory(native()), isMissing) << "a save makes a missing folder";
    }
}

// Names

TEST_F(DamagedFolderTest, thousandsOfForeignFilesAreSteppedAround)
{
    rebuild();
    for (int i = 0; i < 10'000; ++i)
        put("foreign " + std::to_string(i) + (i % 2 == 0 ? ".json" : ".txt"), "{\"foreign\":true}");
    EXPECT_EQ(load(), allIds);
    EXPECT_EQ(log.lines.filter(QStringLiteral("跳过无效文件")).size(), 5'000);
    expectOthersUntouched();
}

TEST_F(DamagedFolderTest, collectionFilesOfAnyNameAreLoadedAndLeft)
{
    const std::vector<std::string> names{
        std::string(250, 'x') + ".json",
        "two\nlines.json",
        " .json",
        "-rf.json",
        "Victim.json",
        "VICTIM.json",
        "\u4e2d\u6587.json",
        "e\u0301.json",
        "\u00e9.json",
        "a.b.c.json",
        ".hidden.json",
        "$(touch x).json",
    };
    rebuild();
    for (size_t i = 0; i < names.size(); ++i) {
        const QString name = QStringLiteral("Collection %1").arg(i);
        put(names[i], collectionFileBytes(makeCollection(name, name), {makeSnippet(name, name)}));
    }
    const auto loaded = load();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->size(), 3 + static_cast<qsizetype>(names.size()));
    expectOthersUntouched();
}

TEST_F(DamagedFolderTest, namesThatAreNoTextOrNoCollectionFilesAreLeft)
{
    const std::vector<std::string> names{"\xff\xfe.json",  "caf\xe9.json", "notes.JSON",
                                         "notes.json.bak", ".json",        "json",
                                         "victim.json~"};
    rebuild();
    for (const std::string& name : names)
        put(name, victimBytes());
    EXPECT_EQ(load(), allIds);
    EXPECT_EQ(skips(QStringLiteral("caf\ufffd")), 1) << "it cannot be named, so not be read";
    expectOthersUntouched();
}

TEST_F(DamagedFolderTest, aNewCollectionTakesNoNameOfADamagedFile)
{
    rebuild();
    put("victim.json", "{");
    VellumryData data = *world.service().loadFullData();
    data.data.collections.append(
        makeCollection(QStringLiteral("second"), QStringLiteral("Victim")));
    world.service().saveFullData(data, false);
    EXPECT_EQ(bytesOf(native("victim.json")), "{");
    EXPECT_EQ(decodeCollectionFile(bytesOf(native("victim-1.json"))).collection.id, u"second");
}

} // namespace

} // namespace vellumry::test
