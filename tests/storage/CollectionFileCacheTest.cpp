#include "storage/CollectionFileCache.h"

#include "storage/MemoryFileSystem.h"
#include "storage/PlainStorage.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <random>

using namespace vellumry;
using namespace vellumry::test;
using namespace std::chrono_literals;

namespace {

const QString dataFolder = QStringLiteral("/data");

/// One file, looked at through a cache.
class CollectionFileCacheTest : public testing::Test {
protected:
    CollectionFileCacheTest()
    {
        files.makeFolder(dataFolder);
        put(QStringLiteral("first"));
        files.now += 1s;
    }

    static QByteArray bytesOf(const QString& content)
    {
        return collectionFileBytes(
            makeCollection(QStringLiteral("c"), QStringLiteral("Work")),
            {makeSnippet(QStringLiteral("s"), QStringLiteral("Work"), content)});
    }

    void put(const QString& content) { files.writeInPlace(path, bytesOf(content)); }

    /// The content of the one snippet, seen in a walk of its own.
    QString look()
    {
        cache.beginWalk(dataFolder, {QStringLiteral("work")});
        return cache.file(QStringLiteral("work"), decoder).snippets.first().content();
    }

    qsizetype opens() const { return files.opened.size(); }

    const QString path = dataFolder + QStringLiteral("/work.json");
    MemoryFileSystem files;
    CollectionFileCache cache{files};
    JSONDecoder decoder = JSONDecoder::vellumry();
};

TEST_F(CollectionFileCacheTest, opensASettledFileOnce)
{
    EXPECT_EQ(look(), QStringLiteral("first"));
    EXPECT_EQ(look(), QStringLiteral("first"));
    EXPECT_EQ(opens(), 1);
}

TEST_F(CollectionFileCacheTest, keepsTheHandlesOfAnUnchangedFile)
{
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    const Snippet before = cache.file(QStringLiteral("work"), decoder).snippets.first();
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    EXPECT_TRUE(
        cache.file(QStringLiteral("work"), decoder).snippets.first().sharesDataWith(before));
}

TEST_F(CollectionFileCacheTest, seesAChangeOfSameSizeWithRestoredModificationTime)
{
    const Date modified = files.node(path).modified;
    EXPECT_EQ(look(), QStringLiteral("first"));
    files.now += 1s;
    files.replace(path, bytesOf(QStringLiteral("other")), modified);
    EXPECT_EQ(files.node(path).modified, modified);
    EXPECT_EQ(look(), QStringLiteral("other"));
}

TEST_F(CollectionFileCacheTest, seesAChangeWithinTheTickInWhichItReadTheFile)
{
    put(QStringLiteral("again"));
    EXPECT_EQ(look(), QStringLiteral("again"));
    const auto stamp = files.stamp(path);
    put(QStringLiteral("other"));
    ASSERT_EQ(files.stamp(path), stamp) << "the case that stamps cannot tell";
    EXPECT_EQ(look(), QStringLiteral("other"));
}

TEST_F(CollectionFileCacheTest, readsARacyFileAgainUntilItsTickIsOverAndKeepsTheRecords)
{
    put(QStringLiteral("again"));
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    const Snippet before = cache.file(QStringLiteral("work"), decoder).snippets.first();
    files.now += 10ms;
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    EXPECT_TRUE(
        cache.file(QStringLiteral("work"), decoder).snippets.first().sharesDataWith(before));
    EXPECT_EQ(opens(), 2);
    files.now += 10ms;
    look();
    EXPECT_EQ(opens(), 3);
    look();
    EXPECT_EQ(opens(), 3) << "settled";
}

TEST_F(CollectionFileCacheTest, knowsWhetherAFileIsStillTheOneThatItRead)
{
    EXPECT_FALSE(cache.isStillAsRead(QStringLiteral("work"))) << "it never was";
    look();
    EXPECT_TRUE(cache.isStillAsRead(QStringLiteral("work")));
    files.now += 1s;
    put(QStringLiteral("other"));
    EXPECT_FALSE(cache.isStillAsRead(QStringLiteral("work")));
    look();
    EXPECT_TRUE(cache.isStillAsRead(QStringLiteral("work")));
    files.take(path);
    EXPECT_FALSE(cache.isStillAsRead(QStringLiteral("work")));
    EXPECT_EQ(opens(), 2) << "without opening it";
}

TEST_F(CollectionFileCacheTest, aWalkWithoutAListingForgetsNothingAndChecksWhatItMeets)
{
    look();
    cache.acceptForeignChanges();
    cache.beginWalk(dataFolder);
    EXPECT_EQ(cache.file(QStringLiteral("work"), decoder).snippets.size(), 1);
    EXPECT_EQ(opens(), 1);
    EXPECT_FALSE(cache.hasForeignChanges());
    files.now += 1s;
    put(QStringLiteral("other"));
    cache.beginWalk(dataFolder);
    EXPECT_EQ(cache.file(QStringLiteral("work"), decoder).snippets.first().content(),
              QStringLiteral("other"));
    EXPECT_TRUE(cache.hasForeignChanges());
}

TEST_F(CollectionFileCacheTest, followsAMovedFileWithoutDecodingIt)
{
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    const Snippet before = cache.file(QStringLiteral("work"), decoder).snippets.first();
    files.now += 1s;
    files.rename(path, dataFolder + QStringLiteral("/moved.json"));
    cache.move(QStringLiteral("work"), QStringLiteral("moved"));
    cache.beginWalk(dataFolder, {QStringLiteral("moved")});
    EXPECT_TRUE(
        cache.file(QStringLiteral("moved"), decoder).snippets.first().sharesDataWith(before));
    EXPECT_FALSE(cache.hasForeignChanges());
}

TEST_F(CollectionFileCacheTest, aMovedFileThatHasChangedOnTheWayIsReadAnew)
{
    look();
    files.now += 1s;
    put(QStringLiteral("other"));
    files.rename(path, dataFolder + QStringLiteral("/moved.json"));
    cache.move(QStringLiteral("work"), QStringLiteral("moved"));
    cache.beginWalk(dataFolder, {QStringLiteral("moved")});
    EXPECT_EQ(cache.file(QStringLiteral("moved"), decoder).snippets.first().content(), u"other");
    EXPECT_TRUE(cache.hasForeignChanges());
}

TEST_F(CollectionFileCacheTest, aMovedFileThatIsGoneIsForgotten)
{
    look();
    files.take(path);
    cache.move(QStringLiteral("work"), QStringLiteral("moved"));
    cache.beginWalk(dataFolder, {});
    EXPECT_FALSE(cache.hasForeignChanges());
}

TEST_F(CollectionFileCacheTest, whatTheFirstWalkMeetsIsNotForeignAndWhatALaterOneMeetsIs)
{
    look();
    EXPECT_FALSE(cache.hasForeignChanges());
    files.now += 1s;
    put(QStringLiteral("other"));
    look();
    EXPECT_TRUE(cache.hasForeignChanges());
    look();
    EXPECT_TRUE(cache.hasForeignChanges()) << "until it is accepted";
    cache.acceptForeignChanges();
    look();
    EXPECT_FALSE(cache.hasForeignChanges());
    cache.beginWalk(dataFolder, {});
    EXPECT_TRUE(cache.hasForeignChanges()) << "a file is gone";
    cache.beginWalk(QStringLiteral("/elsewhere"), {});
    EXPECT_FALSE(cache.hasForeignChanges()) << "of another folder";
}

TEST_F(CollectionFileCacheTest, aFileFromTheFutureNeverSettles)
{
    files.now += 1h;
    put(QStringLiteral("ahead"));
    files.now -= 1h;
    for (int i = 1; i <= 3; ++i) {
        look();
        EXPECT_EQ(opens(), i);
    }
}

TEST_F(CollectionFileCacheTest, aFileFromLongAgoSettles)
{
    const Date now = std::exchange(files.now, Date(-9'000'000'000s)); // in the year 1684
    put(QStringLiteral("old"));
    files.now = now;
    look();
    look();
    EXPECT_EQ(opens(), 1);
}

TEST_F(CollectionFileCacheTest, aCoarseFileSystemNeedsThreeSeconds)
{
    files.tick = 2s;
    files.precision = {3s, true};
    put(QStringLiteral("again"));
    files.now += 2s;
    look();
    look();
    EXPECT_EQ(opens(), 2);
    files.now += 3s;
    look();
    look();
    EXPECT_EQ(opens(), 3);
}

TEST_F(CollectionFileCacheTest, aForeignClockCountsOnlyByAFileWrittenThere)
{
    files.precision = {3s, false};
    files.lag = 1h; // the machine's clock would call everything settled
    put(QStringLiteral("again"));
    files.now += 1s;
    look();
    put(QStringLiteral("other"));
    EXPECT_EQ(look(), QStringLiteral("other"));
    EXPECT_EQ(opens(), 3) << "once to see the change, once to read it";

    files.now += 5s;
    const QString metadata = dataFolder + QStringLiteral("/_metadata.json");
    cache.noteTime(files.write(metadata, "{}"));
    look();
    look();
    EXPECT_EQ(opens(), 4) << "settled by the time of the server";
}

TEST_F(CollectionFileCacheTest, looksAtEachFileOnceInAWalk)
{
    look();
    put(QStringLiteral("other"));
    EXPECT_EQ(cache.file(QStringLiteral("work"), decoder).snippets.first().content(),
              QStringLiteral("first"));
    EXPECT_EQ(look(), QStringLiteral("other"));
}

TEST_F(CollectionFileCacheTest, remembersADamagedFileWithoutOpeningItAgain)
{
    files.writeInPlace(path, "{ no JSON");
    files.now += 1s;
    for (int i = 0; i < 3; ++i) {
        cache.beginWalk(dataFolder, {QStringLiteral("work")});
        EXPECT_THROW((void)cache.file(QStringLiteral("work"), decoder), DecodingError);
        EXPECT_EQ(cache.decodableFile(QStringLiteral("work"), decoder), nullptr);
    }
    EXPECT_EQ(opens(), 1);
    put(QStringLiteral("mended"));
    EXPECT_EQ(look(), QStringLiteral("mended"));
}

TEST_F(CollectionFileCacheTest, asksAnewForAFileThatCannotBeRead)
{
    files.setReadable(path, false);
    files.now += 1s;
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    EXPECT_THROW((void)cache.file(QStringLiteral("work"), decoder), FileError);
    files.setReadable(path, true);
    EXPECT_EQ(look(), QStringLiteral("first"));
}

TEST_F(CollectionFileCacheTest, noticesThatAFileBecameUnreadable)
{
    look();
    files.setReadable(path, false);
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    EXPECT_EQ(cache.decodableFile(QStringLiteral("work"), decoder), nullptr);
}

TEST_F(CollectionFileCacheTest, noticesThatAFileBecameAFolder)
{
    look();
    files.take(path);
    files.makeFolder(path);
    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    EXPECT_THROW((void)cache.file(QStringLiteral("work"), decoder), FileError);
}

TEST_F(CollectionFileCacheTest, anotherFolderIsAnotherCache)
{
    look();
    const QString other = QStringLiteral("/other");
    files.makeFolder(other);
    cache.beginWalk(other, {QStringLiteral("work")});
    EXPECT_THROW((void)cache.file(QStringLiteral("work"), decoder), FileError);
    EXPECT_EQ(look(), QStringLiteral("first"));
    EXPECT_EQ(opens(), 2);
}

TEST_F(CollectionFileCacheTest, forgetsWhatIsNoLongerListed)
{
    look();
    cache.beginWalk(dataFolder, {});
    look();
    EXPECT_EQ(opens(), 2);
}

TEST_F(CollectionFileCacheTest, aFileWrittenWithoutAStampIsReadAgain)
{
    look();
    const QByteArray bytes = bytesOf(QStringLiteral("written"));
    files.write(path, bytes);
    cache.remember(QStringLiteral("work"), std::nullopt, Digest::of(bytes),
                   decodeCollectionFile(bytes));
    EXPECT_EQ(look(), QStringLiteral("written"));
    EXPECT_EQ(opens(), 2);
}

TEST_F(CollectionFileCacheTest, remembersAnOwnFileAsTheFileHoldsIt)
{
    Snippet snippet = makeSnippet(QStringLiteral("s"), QStringLiteral("Work"));
    SnippetFields fields = snippet.fields();
    fields.createdAt += 1ns;
    fields.updatedAt += 999'999ns;
    fields.lastUsedAt = Date(-1ns);
    fields.title = QStringLiteral("a") + QChar(0xd800) + QStringLiteral("b");
    fields.keywords = {QStringLiteral("x"), QString(QChar(0xdfff))};
    fields.variables = {{QString(QChar(0xd801)), QStringLiteral("1")},
                        {QString(QChar(0xd802)), QString(QChar(0xd803))}};
    SyncCollection collection = makeCollection(QStringLiteral("c"), QStringLiteral("Work"),
                                               QStringLiteral("#") + QChar(0xdc00));
    collection.createdAt += 7ns;
    const CollectionFileData written{.version = QStringLiteral("1.0"),
                                     .lastModified = dateAt(0),
                                     .deviceId = QString(),
                                     .collection = collection,
                                     .snippets = {Snippet(fields), snippet}};
    JSONEncoder encoder = JSONEncoder::vellumry();
    const QByteArray bytes = encoder.encode(written).toByteArray();

    cache.beginWalk(dataFolder, {QStringLiteral("work")});
    const auto stamp = files.write(path, bytes);
    cache.remember(QStringLiteral("work"), stamp, Digest::of(bytes), written);
    const CollectionFile& file = cache.file(QStringLiteral("work"), decoder);
    const CollectionFileData decoded = decodeCollectionFile(bytes);
    EXPECT_EQ(file.collection, decoded.collection);
    EXPECT_EQ(file.snippets, decoded.snippets);
    EXPECT_TRUE(file.snippets[1].sharesDataWith(snippet)) << "nothing is lost on the way";
    EXPECT_EQ(opens(), 0);
}

// The cached storage against one that reads everything each time.

const QRegularExpression& deviceId()
{
    static const QRegularExpression expression(QStringLiteral("\"deviceId\" ?: ?\"[^\"]*\""));
    return expression;
}

/// The whole dataFolder as text. Where the machine has no permanent identifier, the written ones
/// differ each time.
QString stateOf(const MemoryFileSystem& files)
{
    QString state;
    for (const QString& path : files.order) {
        const auto node = files.node(path);
        QString content = QString::fromUtf8(node.bytes);
        content.remove(deviceId());
        state += QStringLiteral("%1 %2 %3\n%4\n")
                     .arg(path)
                     .arg(node.isFolder)
                     .arg(node.isReadable)
                     .arg(content);
    }
    return state;
}

/// The lines of the log in the form of PlainStorage.
QStringList withoutReasons(const QStringList& lines)
{
    QStringList cut;
    for (QString line : lines) {
        line.remove(QStringLiteral("CollectionFileStorageService: "));
        if (line.startsWith(QStringLiteral("跳过无效文件 - ")))
            line = line.section(u':', 0, 0);
        else if (line.startsWith(QStringLiteral("加载失败 - ")))
            line = QStringLiteral("加载失败 - ");
        cut.append(line);
    }
    return cut;
}

class TwoWorlds {
public:
    explicit TwoWorlds(unsigned seed) : random(seed)
    {
        for (MemoryFileSystem* files : {&cached, &plain}) {
            files->makeFolder(dataFolder);
            switch (seed % 4) {
            case 0: // a local disk of an older kernel
                break;
            case 1: // seconds
                files->tick = 2s;
                files->precision = {3s, true};
                break;
            case 2: // a server whose clock is behind
                files->precision = {3s, false};
                files->lag = 1h;
                break;
            default: // a server whose clock is ahead
                files->tick = 1s;
                files->precision = {3s, false};
                files->lag = -1h;
                break;
            }
        }
    }

    template <typename Action>
    auto withCached(Action action)
    {
        log.lines.clear();
        return action();
    }

    void step()
    {
        const int which = pick(100);
        if (which < 12)
            load();
        else if (which < 45)
            save();
        else if (which < 52)
            removeCollection();
        else if (which < 59)
            renameCollection();
        else
            changeFromOutside();
        passTime();
    }

    void load()
    {
        did(QStringLiteral("load"));
        const auto ofCached = withCached([&] { return service.loadFullData(); });
        const auto ofPlain = storage.load();
        compareLines();
        ASSERT_EQ(ofCached.has_value(), ofPlain.has_value()) << trace();
        if (ofCached) {
            VellumryData a = *ofCached;
            VellumryData b = *ofPlain;
            a.deviceId = b.deviceId = QString();
            ASSERT_EQ(a, b) << trace();
            library = *ofCached;
        }
    }

    [[nodiscard]] QString differences() const
    {
        const QString a = stateOf(cached);
        const QString b = stateOf(plain);
        return a == b ? QString()
                      : history.join(u'\n') + QStringLiteral("\ncached:\n") + a +
                            QStringLiteral("\nplain:\n") + b;
    }

    /// Whether the times are fine enough for files to settle soon.
    [[nodiscard]] bool isLocalDisk() const { return cached.precision.slack < 1s; }

    [[nodiscard]] std::string trace() const { return history.join(u'\n').toStdString(); }

    MemoryFileSystem cached;
    MemoryFileSystem plain;

private:
    int pick(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    void did(const QString& what) { history.append(what); }

    void compareLines()
    {
        EXPECT_EQ(withoutReasons(log.lines).join(u'\n'), storage.lines.join(u'\n')) << trace();
    }

    void passTime()
    {
        static constexpr std::chrono::nanoseconds steps[] = {0ns, 0ns,    1000123ns, 3ms, 11ms,
                                                             1s,  2500ms, 4s,        60s};
        const auto duration = steps[pick(std::size(steps))];
        did(QStringLiteral("+%1 ms").arg(duration / 1ms));
        both([&](MemoryFileSystem& files) { files.now += duration; });
        clock.advance(duration);
    }

    QString name()
    {
        static const QStringList names{
            QStringLiteral("Work"),    QStringLiteral("work"),  QStringLiteral("A / B"),
            QStringLiteral("corrupt"), QStringLiteral("Ünï"),   QStringLiteral("_metadata"),
            QStringLiteral("///"),     QStringLiteral(".dots"), QStringLiteral("Notes")};
        return names[pick(static_cast<int>(names.size()))];
    }

    QString newId() { return QStringLiteral("id-%1").arg(++lastId); }

    Snippet newSnippet(const QString& collection)
    {
        Snippet snippet = makeSnippet(newId(), collection, QString::number(pick(10)));
        snippet.setUpdatedAt(clock.now());
        return snippet;
    }

    /// Conflict copies bring the same ids twice; saved as they are, they would end the process at
    /// the next comparison, by design.
    void dropDuplicates()
    {
        QSet<QString> seen;
        library.data.snippets.removeIf([&](const Snippet& snippet) {
            return std::exchange(seen, seen + QSet<QString>{snippet.id()}).contains(snippet.id());
        });
        seen.clear();
        library.data.collections.removeIf([&](const SyncCollection& collection) {
            return std::exchange(seen, seen + QSet<QString>{collection.id}).contains(collection.id);
        });
    }

    void save()
    {
        editLibrary();
        dropDuplicates();
        did(QStringLiteral("save"));
        const bool cachedSucceeded = withCached([&] {
            try {
                service.saveFullData(library, false);
                return true;
            } catch (const StorageError&) {
                return false;
            }
        });
        ASSERT_EQ(cachedSucceeded, storage.save(library)) << trace();
        compareLines();
    }

    void editLibrary()
    {
        auto& snippets = library.data.snippets;
        auto& collections = library.data.collections;
        const int which = pick(12);
        did(QStringLiteral("edit %1").arg(which));
        if (which == 0 || collections.isEmpty()) {
            collections.append(makeCollection(newId(), name()));
            return;
        }
        const int collection = pick(static_cast<int>(collections.size()));
        if (which <= 2 || snippets.isEmpty()) {
            snippets.insert(pick(static_cast<int>(snippets.size()) + 1),
                            newSnippet(collections[collection].name));
            return;
        }
        Snippet& snippet = snippets[pick(static_cast<int>(snippets.size()))];
        switch (which) {
        case 3:
            snippet.setUsageCount((snippet.usageCount() + 1) % 10);
            snippet.setLastUsedAt(clock.now());
            break;
        case 4:
            snippet.setUsageCount((snippet.usageCount() + 1) % 10);
            break;
        case 5:
            snippet.setDisplayOrder(pick(100));
            snippet.setVariables({{QStringLiteral("v"), QString::number(pick(100))}});
            break;
        case 6:
            snippet.setCollection(collections[collection].name);
            break;
        case 7:
            collections[collection].name = name();
            break;
        case 8:
            collections[collection].color = QString::number(pick(3));
            break;
        case 9:
            collections.removeAt(collection);
            break;
        case 10:
            std::shuffle(snippets.begin(), snippets.end(), random);
            break;
        default:
            break; // unchanged
        }
    }

    QString anyCollectionId()
    {
        if (library.data.collections.isEmpty() || pick(8) == 0)
            return QStringLiteral("nobody");
        return library.data.collections[pick(static_cast<int>(library.data.collections.size()))].id;
    }

    template <typename Action>
    bool succeeds(Action action)
    {
        return withCached([&] {
            try {
                action();
                return true;
            } catch (const StorageError&) {
                return false;
            }
        });
    }

    void removeCollection()
    {
        const QString id = anyCollectionId();
        did(QStringLiteral("delete file of ") + id);
        const bool ofCached = succeeds([&] { service.deleteCollectionFile(id); });
        ASSERT_EQ(ofCached, storage.remove(id)) << trace();
        compareLines();
    }

    void renameCollection()
    {
        const QString id = anyCollectionId();
        const QString newName = name();
        did(QStringLiteral("rename file of ") + id + QStringLiteral(" to ") + newName);
        const bool ofCached = succeeds([&] { service.renameCollectionFile(id, newName); });
        ASSERT_EQ(ofCached, storage.rename(id, newName)) << trace();
        compareLines();
    }

    /// Does the same to the files of both worlds.
    void both(const std::function<void(MemoryFileSystem&)>& change)
    {
        change(cached);
        change(plain);
    }

    /// The file's bytes with another digit in them, as long as before.
    static QByteArray edited(QByteArray bytes, int digit)
    {
        const qsizetype at = bytes.indexOf("\"usageCount\"");
        for (qsizetype i = at; at >= 0 && i < bytes.size(); ++i) {
            if (bytes[i] >= '0' && bytes[i] <= '9') {
                bytes[i] = static_cast<char>('0' + digit);
                break;
            }
        }
        return bytes;
    }

    void changeFromOutside()
    {
        QStringList names;
        for (const QString& path : std::as_const(cached.order)) {
            if (path.endsWith(QStringLiteral(".json")) &&
                !path.endsWith(QStringLiteral("/_metadata.json")))
                names.append(path);
        }
        const int which = pick(12);
        if (which == 0 || names.isEmpty()) {
            const QString path = dataFolder + QStringLiteral("/foreign%1.json").arg(pick(4));
            const QString collectionName = name();
            const QByteArray bytes = collectionFileBytes(makeCollection(newId(), collectionName),
                                                         {newSnippet(collectionName)});
            did(QStringLiteral("new ") + path);
            both([&](MemoryFileSystem& files) { files.replace(path, bytes); });
            return;
        }
        const QString path = names[pick(static_cast<int>(names.size()))];
        const bool isFolder = cached.isFolder(path);
        const int digit = pick(10);
        const QByteArray other = edited(cached.bytes(path), digit);
        const QByteArray otherOfPlain = edited(plain.bytes(path), digit);
        did(QStringLiteral("outside %1 %2").arg(which).arg(path));
        if (isFolder)
            return both([&](MemoryFileSystem& files) { files.take(path); });
        const auto contentFor = [&](const MemoryFileSystem& files) {
            return &files == &cached ? other : otherOfPlain;
        };
        switch (which) {
        case 1:
        case 2:
        case 3:
            return both(
                [&](MemoryFileSystem& files) { files.writeInPlace(path, contentFor(files)); });
        case 4:
            return both([&](MemoryFileSystem& files) {
                files.replace(path, contentFor(files), files.node(path).modified);
            });
        case 5:
            return both([&](MemoryFileSystem& files) { files.writeInPlace(path, "{ damaged"); });
        case 6:
            return both([&](MemoryFileSystem& files) { files.take(path); });
        case 7: {
            const QString to = dataFolder + QStringLiteral("/moved%1.json").arg(pick(3));
            if (to != path)
                both([&](MemoryFileSystem& files) { files.rename(path, to); });
            return;
        }
        case 8: {
            const QString copy = dataFolder + QStringLiteral("/copy%1.json").arg(pick(3));
            if (copy != path && !cached.isFolder(copy))
                both([&](MemoryFileSystem& files) {
                    files.replace(copy, files.bytes(path), files.node(path).modified);
                });
            return;
        }
        case 9: {
            const bool isReadable = pick(3) > 0;
            return both([&](MemoryFileSystem& files) { files.setReadable(path, isReadable); });
        }
        case 10: {
            if (pick(3) == 0)
                return both([&](MemoryFileSystem& files) {
                    files.take(path);
                    files.makeFolder(path);
                });
            return both([&](MemoryFileSystem& files) { files.touch(path); });
        }
        default: {
            const unsigned seed = random();
            return both([&](MemoryFileSystem& files) {
                std::mt19937 shuffling(seed);
                std::shuffle(files.order.begin(), files.order.end(), shuffling);
            });
        }
        }
    }

    std::mt19937 random;
    LogCapture log;
    StorageWorld surroundings{cached, dataFolder};
    CollectionFileStorageService& service = surroundings.service();
    ManualClock& clock = surroundings.clock;
    PlainStorage storage{plain, dataFolder, clock};
    VellumryData library = makeLibrary({}, {});
    QStringList history;
    int lastId = 0;
};

class CachedStorage : public testing::TestWithParam<unsigned> {};

TEST_P(CachedStorage, leavesTheSameFolderAsThePlainOne)
{
    constexpr unsigned runs = 40;
    constexpr int steps = 150;
    qsizetype opensOfCached = 0;
    qsizetype opensOfPlain = 0;
    for (unsigned run = 0; run < runs; ++run) {
        TwoWorlds worlds(GetParam() * runs + run);
        for (int i = 0; i < steps; ++i) {
            worlds.step();
            const QString differences = worlds.differences();
            ASSERT_TRUE(differences.isEmpty()) << differences.toStdString();
            ASSERT_FALSE(HasFailure());
        }
        if (worlds.isLocalDisk()) {
            opensOfCached += worlds.cached.opened.size();
            opensOfPlain += worlds.plain.opened.size();
        }
    }
    EXPECT_LT(opensOfCached * 2, opensOfPlain) << "the cache is in use at all";
}

INSTANTIATE_TEST_SUITE_P(Seeds, CachedStorage, testing::Range(0u, 8u));

} // namespace
