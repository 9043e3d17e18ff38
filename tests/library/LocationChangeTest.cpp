#include "library/LocationChange.h"

#include "models/JSONDecoder.h"
#include "platform/linux/PosixFileSystem.h"
#include "storage/DamagedFolder.h"
#include "storage/MemoryFileSystem.h"
#include "storage/MigrationHelperError.h"
#include "storage/StorageWorld.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <unistd.h>

using namespace vellumry;
using namespace vellumry::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace std::string_literals;

namespace {

using Phase = LocationChange::Phase;

/// A move with everything that it depends on, and a record of all that can be observed of it.
class MoveWorld {
public:
    MoveWorld(FileSystem& files, const QString& oldFolder) : world(files, oldFolder)
    {
        auto& notifications = world.notifications;
        QObject::connect(&notifications, &NotificationCenter::showLoadingOverlay, &notifications,
                         [this](const std::optional<QString>& text) {
                             note(u"overlay: "_s + text.value_or(u"-"_s));
                         });
        QObject::connect(&notifications, &NotificationCenter::hideLoadingOverlay, &notifications,
                         [this] { note(u"overlay gone"_s); });
        QObject::connect(&notifications, &NotificationCenter::storageLocationDidChange,
                         &notifications,
                         [this](const QString& location) { note(u"location: "_s + location); });
        build();
    }

    void build()
    {
        change = std::make_unique<LocationChange>(
            LocationChange::Dependencies{.locations = world.locations,
                                         .files = world.files,
                                         .notifications = world.notifications,
                                         .scheduler = world.scheduler,
                                         .background = background,
                                         .clock = world.clock,
                                         .clearCacheAndReload = [this] { note(u"reload"_s); },
                                         .refreshData = [this] { note(u"refresh"_s); }});
        LocationChange* const it = change.get();
        QObject::connect(it, &LocationChange::isMigratingChanged, it,
                         [=, this] { note(it->isMigrating() ? u"busy"_s : u"idle"_s); });
        QObject::connect(it, &LocationChange::errorMessageChanged, it,
                         [=, this] { note(u"error: "_s + it->errorMessage().value_or(u"-"_s)); });
        QObject::connect(it, &LocationChange::migrationProgressChanged, it,
                         [=, this] { progress.append(it->migrationProgress()); });
        QObject::connect(it, &LocationChange::phaseChanged, it,
                         [=, this] { phases.append(it->phase()); });
        QObject::connect(it, &LocationChange::finished, it, [this] { note(u"finished"_s); });
    }

    /// The whole of a move, the wait at its end included.
    void moveTo(const QString& folder)
    {
        change->applyChanges(folder);
        background.runWork();
        background.runActions();
        world.scheduler.advance(500ms);
    }

    QStringList events() { return std::exchange(noted, {}); }

    LogCapture log;
    StorageWorld world;
    ManualBackgroundRunner background;
    QStringList noted;
    QList<double> progress;
    QList<Phase> phases;
    std::unique_ptr<LocationChange> change; // the first to go, as it still tells of its end

private:
    void note(const QString& event) { noted.append(event); }
};

class LocationChangeTest : public testing::Test {
protected:
    LocationChangeTest() { files.makeFolder(from); }

    void put(const QString& path, const QByteArray& bytes) { files.replace(path, bytes); }

    /// A library of two collections in the old folder.
    void putLibrary()
    {
        put(from + u"/_metadata.json"_s, metadataFileBytes({u"w"_s, u"h"_s}));
        put(from + u"/work.json"_s, collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
        put(from + u"/home.json"_s, collectionFileBytes(makeCollection(u"h"_s, u"Home"_s), {}));
    }

    /// All files with their contents, by path.
    QMap<QString, QByteArray> allFiles()
    {
        QMap<QString, QByteArray> all;
        for (const QString& path : std::as_const(files.order))
            all.insert(path, files.bytes(path));
        return all;
    }

    MemoryFileSystem files;
    const QString from = u"/old"_s;
    const QString to = u"/new"_s;
    MoveWorld move{files, from};
    LocationChange& change = *move.change;
    StorageLocationManager& locations = move.world.locations;
};

TEST_F(LocationChangeTest, startsIdle)
{
    EXPECT_EQ(change.phase(), Phase::idle);
    EXPECT_FALSE(change.isMigrating());
    EXPECT_EQ(change.migrationProgress(), 0.0);
    EXPECT_EQ(change.errorMessage(), std::nullopt);
}

TEST_F(LocationChangeTest, aMissingChoiceDoesNothing)
{
    change.applyChanges(std::nullopt);
    EXPECT_FALSE(move.background.hasWork());
    EXPECT_EQ(move.events(), QStringList());
}

TEST_F(LocationChangeTest, movesALibrary)
{
    putLibrary();
    put(from + u"/vellumry-data.json"_s, "legacy");
    put(from + u"/work (conflicted copy 2024-01-31).json"_s, "copy");
    put(from + u"/.hidden.json"_s, "hidden");
    put(from + u"/notes.txt"_s, "notes");
    put(from + u"/A.JSON"_s, "other case");
    const QMap<QString, QByteArray> before = allFiles();

    change.applyChanges(to);
    EXPECT_TRUE(change.isMigrating());
    EXPECT_EQ(change.phase(), Phase::copying);
    EXPECT_EQ(move.events(), (QStringList{u"busy"_s, u"overlay: Migrating your data..."_s}));
    EXPECT_EQ(allFiles(), before);

    move.log.lines.clear();
    move.background.runWork();
    EXPECT_EQ(locations.currentLocation(), from);
    EXPECT_TRUE(move.progress.isEmpty()) << "the bar is for the main thread alone";
    EXPECT_EQ(move.log.lines, QStringList{u"DataMigrationHelper: 数据迁移成功 - /old -> /new"_s});
    for (auto it = before.cbegin(); it != before.cend(); ++it)
        EXPECT_EQ(files.bytes(it.key()), it.value()) << "nothing is removed before the switch";

    move.background.runActions();
    EXPECT_EQ(locations.currentLocation(), to);
    EXPECT_EQ(change.phase(), Phase::reloading);
    EXPECT_EQ(move.events(),
              (QStringList{u"overlay: Reloading app data..."_s, u"location: /new"_s, u"reload"_s}));
    EXPECT_EQ(move.log.lines.sliced(1),
              (QStringList{u"StorageLocationManager: 设置自定义存储位置 - /new"_s,
                           u"ChangeLocationSheet: 已清理旧位置 - /old"_s}));

    move.world.scheduler.advance(499ms);
    EXPECT_EQ(move.events(), QStringList());
    EXPECT_TRUE(change.isMigrating());
    move.world.scheduler.advance(1ms);
    EXPECT_EQ(move.events(),
              (QStringList{u"refresh"_s, u"overlay gone"_s, u"idle"_s, u"finished"_s}));
    EXPECT_FALSE(change.isMigrating());
    EXPECT_EQ(move.phases, (QList<Phase>{Phase::copying, Phase::switching, Phase::cleaning,
                                         Phase::reloading, Phase::idle}));

    for (const char* name : {"_metadata.json", "work.json", "home.json", "vellumry-data.json",
                             "work (conflicted copy 2024-01-31).json", ".hidden.json"}) {
        const QString path = u'/' + QLatin1StringView(name);
        EXPECT_EQ(files.bytes(to + path), before.value(from + path)) << name;
        EXPECT_FALSE(files.exists(from + path)) << name;
    }
    EXPECT_EQ(files.list(from), (QStringList{u"notes.txt"_s, u"A.JSON"_s}));
    EXPECT_EQ(files.list(to).size(), 6);
}

TEST_F(LocationChangeTest, theBarRunsFromATenthToTheEnd)
{
    putLibrary();
    move.moveTo(to);
    ASSERT_EQ(move.progress.size(), 9);
    const QList<double> expected{0.1, 0.2, 0.3, 0.4, 0.5, 0.5 + 0.4 / 3, 0.5 + 0.8 / 3, 0.9, 1.0};
    for (qsizetype i = 0; i < expected.size(); ++i)
        EXPECT_DOUBLE_EQ(move.progress[i], expected[i]);
}

TEST_F(LocationChangeTest, theStoreFollowsToTheNewFolder)
{
    putLibrary();
    auto& store = move.world.service();
    ASSERT_TRUE(store.loadFullData());
    const auto before = store.currentData();
    move.moveTo(to);
    EXPECT_EQ(store.currentData(), before);
    EXPECT_FALSE(files.exists(from)) << "an empty old folder goes";
}

TEST_F(LocationChangeTest, theCurrentLocationIsNoTarget)
{
    putLibrary();
    const auto before = allFiles();
    change.applyChanges(from);
    EXPECT_EQ(move.events(), QStringList{u"error: New location is the same as current location"_s});
    EXPECT_FALSE(change.isMigrating());
    EXPECT_FALSE(move.background.hasWork());
    EXPECT_EQ(allFiles(), before);
    // The next attempt takes the message away.
    change.applyChanges(to);
    EXPECT_EQ(move.events(),
              (QStringList{u"busy"_s, u"error: -"_s, u"overlay: Migrating your data..."_s}));
}

TEST_F(LocationChangeTest, aMoveUnderWayIsNotStartedTwice)
{
    putLibrary();
    change.applyChanges(to);
    change.applyChanges(u"/elsewhere"_s);
    move.background.runWork();
    move.background.runActions();
    change.applyChanges(u"/elsewhere"_s);
    EXPECT_FALSE(move.background.hasWork());
    EXPECT_FALSE(files.exists(u"/elsewhere"_s));
    EXPECT_EQ(locations.currentLocation(), to);
}

TEST_F(LocationChangeTest, anEmptyFolderGivesAnEmptyLibrary)
{
    move.moveTo(to);
    EXPECT_EQ(files.list(to), QStringList{u"_metadata.json"_s});
    const MetadataFileData metadata = decodeMetadataFile(files.bytes(to + u"/_metadata.json"_s));
    EXPECT_EQ(metadata.version, u"3.1"_s);
    EXPECT_EQ(metadata.lastModified, move.world.clock.now());
    EXPECT_FALSE(metadata.deviceId.isEmpty());
    EXPECT_TRUE(metadata.collectionOrder.isEmpty());
    EXPECT_EQ(metadata.settings, std::nullopt);
    EXPECT_EQ(move.progress, (QList<double>{0.1, 0.2, 0.3, 0.4, 1.0}));
    EXPECT_TRUE(
        move.log.lines.contains(u"DataMigrationHelper: 创建空数据文件 - /new/_metadata.json"_s));
    EXPECT_EQ(locations.currentLocation(), to);
    EXPECT_FALSE(files.exists(from));
}

TEST_F(LocationChangeTest, withoutAMetadataFileTheOldPlaceIsClearedAndNothingCarriedOver)
{
    put(from + u"/vellumry-data.json"_s, "legacy");
    put(from + u"/work.json"_s, "work");
    put(from + u"/notes.txt"_s, "notes");
    move.moveTo(to);
    EXPECT_EQ(change.errorMessage(), std::nullopt);
    EXPECT_EQ(files.list(to), QStringList{u"_metadata.json"_s});
    EXPECT_EQ(files.list(from), QStringList{u"notes.txt"_s});
}

TEST_F(LocationChangeTest, anOldFolderThatIsMissingGivesAnEmptyLibraryToo)
{
    files.take(from);
    move.moveTo(to);
    EXPECT_EQ(files.list(to), QStringList{u"_metadata.json"_s});
    EXPECT_EQ(locations.currentLocation(), to);
    EXPECT_FALSE(move.log.lines.contains(u"ChangeLocationSheet: 已清理旧位置 - /old"_s))
        << "the clean-up failed, and nobody minds";
    EXPECT_EQ(move.events().last(), u"finished"_s);
}

TEST_F(LocationChangeTest, filesOfTheSameNameAreReplacedAndOthersStay)
{
    putLibrary();
    const QByteArray work = files.bytes(from + u"/work.json"_s);
    files.makeFolder(to);
    put(to + u"/work.json"_s, "another library's");
    put(to + u"/other.json"_s, collectionFileBytes(makeCollection(u"o"_s, u"Other"_s), {}));
    put(to + u"/notes.txt"_s, "notes");
    move.moveTo(to);
    EXPECT_EQ(files.bytes(to + u"/work.json"_s), work);
    EXPECT_EQ(files.bytes(to + u"/notes.txt"_s), "notes");
    const auto library = move.world.service().loadFullData();
    ASSERT_TRUE(library);
    EXPECT_EQ(idsOf(library->data.collections), (QStringList{u"w"_s, u"h"_s, u"o"_s}));
}

TEST_F(LocationChangeTest, anotherFileKeepsTheOldFolder)
{
    putLibrary();
    put(from + u"/.DS_Store"_s, "");
    move.moveTo(to);
    EXPECT_EQ(files.list(from), QStringList{u".DS_Store"_s});
    EXPECT_TRUE(move.log.lines.contains(u"ChangeLocationSheet: 已清理旧位置 - /old"_s));
}

TEST_F(LocationChangeTest, foldersOfBackupsAreClearedWithoutBeingCopied)
{
    putLibrary();
    for (const char* name : {".backups", "backups", "other"}) {
        const QString inside = from + u'/' + QLatin1StringView(name);
        files.makeFolder(inside);
        put(inside + u"/a.json"_s, "backup");
    }
    move.moveTo(to);
    EXPECT_EQ(files.list(from), QStringList{u"other"_s});
    EXPECT_EQ(files.bytes(from + u"/other/a.json"_s), "backup");
    EXPECT_EQ(files.list(to).size(), 3);
}

TEST_F(LocationChangeTest, aTargetThatCannotBeWrittenFailsAtTheValidation)
{
    putLibrary();
    files.makeFolder(to);
    const auto before = allFiles();
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "write"_L1)
            throw FileError(operation, path, EROFS);
    };
    move.moveTo(to);
    const QString text =
        StorageLocationError::writeTestFailed(
            to, FileError(u"write"_s, to + u"/.vellumry-write-test"_s, EROFS).description())
            .description();
    EXPECT_EQ(move.events(), (QStringList{u"busy"_s, u"overlay: Migrating your data..."_s,
                                          u"overlay gone"_s, u"idle"_s, u"error: "_s + text}));
    EXPECT_EQ(move.progress, (QList<double>{0.1, 0.2}));
    EXPECT_EQ(change.phase(), Phase::idle);
    EXPECT_EQ(locations.currentLocation(), from);
    EXPECT_EQ(allFiles(), before);
}

TEST_F(LocationChangeTest, aFileAtTheTargetFailsAtTheValidation)
{
    putLibrary();
    put(to, "a file");
    move.moveTo(to);
    EXPECT_EQ(change.errorMessage(), u"路径不是目录: /new"_s);
    EXPECT_EQ(locations.currentLocation(), from);
}

/// The operations that a good move consists of, each with its path.
QStringList operationsOfAMove()
{
    MemoryFileSystem files;
    const QString from = u"/old"_s;
    files.makeFolder(from);
    files.replace(from + u"/_metadata.json"_s, metadataFileBytes({}));
    files.replace(from + u"/work.json"_s, "work");
    MoveWorld move(files, from);
    QStringList operations;
    files.onOperation = [&](const QString& operation, const QString&) {
        operations.append(operation);
    };
    move.moveTo(u"/new"_s);
    return operations;
}

TEST_F(LocationChangeTest, aFailureAtAnyStepLosesNothing)
{
    const qsizetype steps = operationsOfAMove().size();
    ASSERT_GT(steps, 15);
    qsizetype failedMoves = 0;
    for (qsizetype failing = 0; failing < steps; ++failing) {
        MemoryFileSystem disk;
        disk.makeFolder(from);
        QMap<QString, QByteArray> library{{u"_metadata.json"_s, metadataFileBytes({})},
                                          {u"work.json"_s, "work"}};
        for (auto it = library.cbegin(); it != library.cend(); ++it)
            disk.replace(from + u'/' + it.key(), it.value());
        MoveWorld attempt(disk, from);
        qsizetype step = 0;
        QString failure;
        disk.onOperation = [&](const QString& operation, const QString& path) {
            if (step++ != failing)
                return;
            failure = FileError(operation, path, ENOSPC).description();
            throw FileError(operation, path, ENOSPC);
        };
        attempt.moveTo(to);
        ASSERT_FALSE(failure.isEmpty());

        const bool isMoved = attempt.world.locations.currentLocation() == to;
        const QStringList events = attempt.events();
        EXPECT_EQ(events.count(u"overlay gone"_s), 1) << failing;
        EXPECT_EQ(events.last() == u"finished"_s, isMoved) << failing;
        EXPECT_FALSE(attempt.change->isMigrating());
        EXPECT_EQ(attempt.change->phase(), Phase::idle);
        EXPECT_EQ(attempt.change->errorMessage().has_value(), !isMoved) << failing;
        EXPECT_EQ(events.contains(u"reload"_s), isMoved);
        if (!isMoved) {
            ++failedMoves;
            EXPECT_TRUE(attempt.change->errorMessage()->contains(failure)) << failing;
        }
        const QString inForce = isMoved ? to : from;
        for (auto it = library.cbegin(); it != library.cend(); ++it)
            EXPECT_EQ(disk.bytes(inForce + u'/' + it.key()), it.value()) << failing;

        // After a failure the next attempt ends well.
        disk.onOperation = nullptr;
        if (!isMoved) {
            attempt.moveTo(to);
            EXPECT_EQ(attempt.world.locations.currentLocation(), to);
            for (auto it = library.cbegin(); it != library.cend(); ++it)
                EXPECT_EQ(disk.bytes(to + u'/' + it.key()), it.value()) << failing;
            EXPECT_FALSE(disk.exists(from));
        }
    }
    EXPECT_GE(failedMoves, 10);
}

TEST_F(LocationChangeTest, aFailedCopyLeavesWhatWasCopiedAndTheOldFolderWhole)
{
    putLibrary();
    const auto before = allFiles();
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "copy"_L1 && path.endsWith(u"home.json"))
            throw FileError(u"copy to"_s, path, ENOSPC);
    };
    move.moveTo(to);
    EXPECT_EQ(files.list(to), (QStringList{u"_metadata.json"_s, u"work.json"_s}));
    for (auto it = before.cbegin(); it != before.cend(); ++it)
        EXPECT_EQ(files.bytes(it.key()), it.value());
    EXPECT_EQ(locations.currentLocation(), from);
}

TEST_F(LocationChangeTest, aMetadataFileThatDidNotArriveIsAFailedCopy)
{
    putLibrary();
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == "flush"_L1)
            files.take(to + u"/_metadata.json"_s);
    };
    move.moveTo(to);
    EXPECT_EQ(change.errorMessage(), u"Failed to copy data to the new location"_s);
    EXPECT_EQ(locations.currentLocation(), from);
    EXPECT_EQ(files.list(from).size(), 3);
}

TEST_F(LocationChangeTest, aFailureOfTheSwitchKeepsTheOldLocation)
{
    putLibrary();
    change.applyChanges(to);
    move.background.runWork();
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "write"_L1)
            throw FileError(operation, path, EROFS);
    };
    move.background.runActions();
    EXPECT_TRUE(change.errorMessage());
    EXPECT_EQ(locations.currentLocation(), from);
    EXPECT_EQ(files.list(from).size(), 3);
    EXPECT_EQ(move.events(), (QStringList{u"busy"_s, u"overlay: Migrating your data..."_s,
                                          u"overlay: Reloading app data..."_s, u"overlay gone"_s,
                                          u"idle"_s, u"error: "_s + *change.errorMessage()}));
}

TEST_F(LocationChangeTest, aFailedCleanUpIsNobodysBusiness)
{
    putLibrary();
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "removeAll"_L1 && path.endsWith(u"work.json"))
            throw FileError(operation, path, EACCES);
    };
    move.moveTo(to);
    EXPECT_EQ(change.errorMessage(), std::nullopt);
    EXPECT_EQ(files.list(from), (QStringList{u"work.json"_s, u"home.json"_s}));
    EXPECT_FALSE(move.log.lines.contains(u"ChangeLocationSheet: 已清理旧位置 - /old"_s));
    EXPECT_EQ(move.events().last(), u"finished"_s);
}

TEST_F(LocationChangeTest, nothingIsClearedWhileTheNewLocationMayBeForgotten)
{
    // A full home disk takes no settings: the next start would look for the library in the old
    // folder.
    putLibrary();
    move.world.preferences.lasts = false;
    move.moveTo(to);
    EXPECT_EQ(locations.currentLocation(), to);
    EXPECT_EQ(files.list(from).size(), 3);
    EXPECT_EQ(move.events().last(), u"finished"_s);
}

TEST_F(LocationChangeTest, whatIsSavedDuringTheCopyIsLostWithTheCleanUp)
{
    putLibrary();
    change.applyChanges(to);
    const QByteArray copied = files.bytes(from + u"/work.json"_s);
    move.background.runWork();
    put(from + u"/work.json"_s, "saved meanwhile");
    move.background.runActions();
    EXPECT_EQ(files.bytes(to + u"/work.json"_s), copied);
    EXPECT_FALSE(files.exists(from + u"/work.json"_s));
}

TEST_F(LocationChangeTest, aFileThatTheNewFolderLacksIsNotRemoved)
{
    putLibrary();
    put(from + u"/.json"_s, "no extension, hence not copied");
    change.applyChanges(to);
    move.background.runWork();
    put(from + u"/new-one.json"_s, "made meanwhile");
    move.background.runActions();
    EXPECT_EQ(files.list(from), (QStringList{u".json"_s, u"new-one.json"_s}));
    EXPECT_EQ(files.bytes(from + u"/new-one.json"_s), "made meanwhile");
}

TEST_F(LocationChangeTest, aSheetThatIsGoneEndsTheMove)
{
    putLibrary();
    change.applyChanges(to);
    bool isOverlayGone = false;
    QObject::connect(&move.world.notifications, &NotificationCenter::hideLoadingOverlay,
                     &move.world.notifications, [&] { isOverlayGone = true; });
    move.change.reset();
    EXPECT_TRUE(isOverlayGone);
    move.background.runWork();
    move.background.runActions();
    move.world.scheduler.advance(1s);
    EXPECT_EQ(locations.currentLocation(), from);
    EXPECT_EQ(files.list(from).size(), 3);
    EXPECT_EQ(files.list(to).size(), 3);
}

/// The errors' texts, the unused ones too.
TEST(MigrationHelperErrorTest, hasItsTexts)
{
    using Kind = MigrationHelperError::Kind;
    EXPECT_EQ(MigrationHelperError(Kind::noValidDataAtDestination).description(),
              u"No valid Vellumry data found at the destination"_s);
    EXPECT_EQ(MigrationHelperError(Kind::copyFailed).description(),
              u"Failed to copy data to the new location"_s);
    EXPECT_EQ(MigrationHelperError(Kind::dataIntegrityCheckFailed).description(),
              u"Data integrity check failed after copy"_s);
}

/// Moves between real folders.
class RealMoveTest : public testing::Test {
protected:
    RealMoveTest() { putLibrary(path(u"old"_s)); }
    ~RealMoveTest() override { std::filesystem::remove_all(entry("old")); } // Qt cannot always

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }
    [[nodiscard]] QByteArray native(const QString& name) const
    {
        return QFile::encodeName(path(name));
    }

    void putLibrary(const QString& where)
    {
        ASSERT_TRUE(QDir().mkpath(where));
        library = {{u"_metadata.json"_s, metadataFileBytes({u"w"_s})},
                   {u"work.json"_s, collectionFileBytes(makeCollection(u"w"_s, u"Work"_s),
                                                        {makeSnippet(u"1"_s, u"Work"_s)})},
                   {u"two\nlines.json"_s, "{}"}};
        for (auto it = library.cbegin(); it != library.cend(); ++it)
            put(where + u'/' + it.key(), it.value());
    }

    static void put(const QString& where, const QByteArray& bytes)
    {
        QFile file(where);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    static QByteArray get(const QString& where)
    {
        QFile file(where);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }

    [[nodiscard]] static QStringList names(const QString& where)
    {
        return QDir(where).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    void expectLibraryAt(const QString& where)
    {
        for (auto it = library.cbegin(); it != library.cend(); ++it)
            EXPECT_EQ(get(where + u'/' + it.key()), it.value()) << it.key().toStdString();
    }

    /// A move that ends with the library in the new folder, whatever becomes of the old one.
    void expectMoveTo(const QString& where)
    {
        move.moveTo(where);
        EXPECT_EQ(move.change->errorMessage().value_or(QString()), QString());
        EXPECT_EQ(move.world.locations.currentLocation(), where);
        expectLibraryAt(where);
    }

    /// Names that are no text, which Qt does not know.
    [[nodiscard]] std::filesystem::path entry(const std::string& name) const
    {
        return std::filesystem::path(folder.path().toStdString()) / name;
    }

    /// A move that ends with an error and leaves the old folder in force and as it was.
    void expectRefusal(const QString& culprit)
    {
        const FolderContents before = contentsOf(entry("old"));
        move.moveTo(path(u"new"_s));
        EXPECT_TRUE(move.change->errorMessage().value_or(QString()).contains(culprit))
            << move.change->errorMessage().value_or(u"no error"_s).toStdString();
        EXPECT_EQ(move.world.locations.currentLocation(), path(u"old"_s));
        EXPECT_EQ(contentsOf(entry("old")), before);
        std::filesystem::remove_all(entry("new"));
    }

    QTemporaryDir folder;
    QMap<QString, QByteArray> library;
    QuickFileCalls calls;
    PosixFileSystem files{calls};
    MoveWorld move{files, path(u"old"_s)};
};

TEST_F(RealMoveTest, movesTheLibraryAndRemovesTheOldFolder)
{
    expectMoveTo(path(u"deep/new"_s));
    EXPECT_EQ(names(folder.path()), QStringList{u"deep"_s});
    EXPECT_EQ(names(path(u"deep/new"_s)).size(), 3);
}

TEST_F(RealMoveTest, theSameFolderByAnotherNameLosesNothing)
{
    ASSERT_EQ(::symlink("old", native(u"link"_s).constData()), 0);
    ASSERT_TRUE(QDir().mkdir(path(u"other"_s)));
    for (const char* name : {"link", "old/", "other/../old", "./old", "link/."}) {
        move.moveTo(folder.path() + u'/' + QLatin1StringView(name));
        EXPECT_EQ(move.change->errorMessage(), u"New location is the same as current location"_s)
            << name;
        EXPECT_EQ(move.world.locations.currentLocation(), path(u"old"_s)) << name;
        expectLibraryAt(path(u"old"_s));
    }
}

TEST_F(RealMoveTest, aTargetThatTurnsIntoTheSameFolderLosesNothing)
{
    move.change->applyChanges(path(u"new"_s));
    ASSERT_EQ(::symlink("old", native(u"new"_s).constData()), 0);
    move.background.runWork();
    move.background.runActions();
    move.world.scheduler.advance(500ms);
    expectLibraryAt(path(u"old"_s));
    expectLibraryAt(path(u"new"_s));
}

TEST_F(RealMoveTest, aFolderThatIsNotThereYetByTwoNamesLosesNothing)
{
    move.world.setFolder(path(u"later"_s));
    move.moveTo(path(u"later/"_s));
    EXPECT_EQ(names(path(u"later"_s)), QStringList{u"_metadata.json"_s});
}

TEST_F(RealMoveTest, intoAFolderInsideTheOldOne)
{
    expectMoveTo(path(u"old/inside/new"_s));
    EXPECT_EQ(names(path(u"old"_s)), QStringList{u"inside"_s});
}

TEST_F(RealMoveTest, intoAFolderThatTheCleanUpWouldTakeWithIt)
{
    const QString old = path(u"old"_s);
    expectMoveTo(old + u"/backups/new"_s);
    EXPECT_EQ(names(old), QStringList{u"backups"_s});

    putLibrary(old);
    move.world.setFolder(old);
    expectMoveTo(old + u"/.backups"_s);

    // By a path that does not tell.
    putLibrary(old);
    move.world.setFolder(old);
    ASSERT_TRUE(QDir().mkpath(old + u"/.backups/deep/new"_s));
    ASSERT_EQ(::symlink("old/.backups/deep", native(u"shortcut"_s).constData()), 0);
    expectMoveTo(path(u"shortcut/new"_s));
    ASSERT_TRUE(QDir().mkpath(old));
}

TEST_F(RealMoveTest, outOfAFolderInsideTheNewOne)
{
    putLibrary(path(u"new/inside"_s));
    move.world.setFolder(path(u"new/inside"_s));
    expectMoveTo(path(u"new"_s));
    EXPECT_FALSE(QDir(path(u"new/inside"_s)).exists());
}

TEST_F(RealMoveTest, alongALinkToTheOldFolder)
{
    ASSERT_EQ(::symlink("old", native(u"link"_s).constData()), 0);
    move.world.setFolder(path(u"link"_s));
    expectMoveTo(path(u"new"_s));
    EXPECT_EQ(names(path(u"old"_s)), QStringList());
}

TEST_F(RealMoveTest, filesThatAreLinksArriveAsFiles)
{
    put(path(u"elsewhere"_s), "linked");
    ASSERT_EQ(::symlink("../elsewhere", native(u"old/linked.json"_s).constData()), 0);
    expectMoveTo(path(u"new"_s));
    EXPECT_EQ(get(path(u"new/linked.json"_s)), "linked");
    EXPECT_EQ(get(path(u"elsewhere"_s)), "linked");
    EXPECT_FALSE(QDir(path(u"old"_s)).exists());
}

TEST_F(RealMoveTest, linksAtTheTargetAreReplacedAndWhatTheyLedToStays)
{
    ASSERT_TRUE(QDir().mkdir(path(u"new"_s)));
    put(path(u"precious"_s), "precious");
    ASSERT_EQ(::symlink("../precious", native(u"new/work.json"_s).constData()), 0);
    ASSERT_EQ(::symlink("../old/_metadata.json", native(u"new/_metadata.json"_s).constData()), 0);
    expectMoveTo(path(u"new"_s));
    EXPECT_EQ(get(path(u"precious"_s)), "precious");
}

TEST_F(RealMoveTest, whatIsNoFileEndsTheMoveWithEverythingInPlace)
{
    const std::filesystem::path old = entry("old");
    for (const OddEntry& odd : oddEntries()) {
        for (const char* name : {"odd.json", "_metadata.json"}) {
            SCOPED_TRACE(testing::Message() << odd.what << " as " << name);
            std::filesystem::remove_all(old);
            putLibrary(path(u"old"_s));
            std::filesystem::remove(old / name);
            odd.make(old / name);
            if (!odd.isLarge) {
                expectRefusal(QLatin1StringView(name));
                continue;
            }
            const FolderContents before = contentsOf(old);
            move.moveTo(path(u"new"_s));
            EXPECT_EQ(move.change->errorMessage(), std::nullopt);
            EXPECT_EQ(contentsOf(entry("new")), before) << "it is a file like any other";
            EXPECT_FALSE(std::filesystem::exists(old));
            std::filesystem::remove_all(entry("new"));
            move.world.setFolder(path(u"old"_s));
        }
    }
}

TEST_F(RealMoveTest, whatCannotBeReadOrReplacedEndsTheMoveWithEverythingInPlace)
{
    calls.forbidden = {"work.json"};
    expectRefusal(u"work.json"_s);
    calls.forbidden.clear();

    // A name that is no text cannot be given to the copy.
    putFile(entry("old/caf\xe9.json"), "precious");
    expectRefusal(u"caf\ufffd.json"_s);
    std::filesystem::remove(entry("old/caf\xe9.json"));

    // A folder at the target in the place of a file.
    ASSERT_TRUE(QDir().mkpath(path(u"new/work.json/precious"_s)));
    expectRefusal(u"work.json"_s);
    expectMoveTo(path(u"new"_s));
}

TEST_F(RealMoveTest, filesOfAnyNameAndContentsArriveAsTheyAre)
{
    std::map<std::string, QByteArray> ours;
    for (auto it = library.cbegin(); it != library.cend(); ++it)
        ours[it.key().toStdString()] = it.value();
    const QByteArray whole = library.value(u"work.json"_s);
    for (const std::string& name :
         {std::string(250, 'x') + ".json", "Work.json"s, "WORK.json"s, " .json"s, "-rf.json"s,
          "$(touch x).json"s, "e\u0301.json"s, "\u00e9.json"s, ".hidden.json"s})
        ours[name] = QByteArray::fromStdString(name);
    for (qsizetype length = 0; length < whole.size(); length += 64)
        ours["cut " + std::to_string(length) + ".json"] = whole.first(length);
    for (qsizetype i = 0; i < whole.size(); i += 3) {
        QByteArray flipped = whole;
        flipped[i] = static_cast<char>(flipped[i] ^ (1 << (i % 8)));
        ours["flipped " + std::to_string(i) + ".json"] = flipped;
    }
    for (int i = 0; i < 10'000; ++i)
        ours["foreign " + std::to_string(i) + ".json"] = "{}";
    for (const auto& [name, bytes] : ours)
        putFile(entry("old") / name, bytes);
    const FolderContents moved = contentsOf(entry("old"));
    ASSERT_EQ(moved.size(), ours.size());

    for (const char* name : {"\xff\xfe", "caf\xe9.txt", "notes.JSON", "notes.json.bak", ".json",
                             "json", "work.json~", "two\nlines"})
        putFile(entry("old") / name, name);
    makeSocket(entry("old/socket"));
    FolderContents others = contentsOf(entry("old"));
    for (const auto& [name, contents] : moved)
        others.erase(name);

    expectMoveTo(path(u"new"_s));
    EXPECT_EQ(contentsOf(entry("new")), moved);
    EXPECT_EQ(contentsOf(entry("old")), others);
}

TEST_F(RealMoveTest, aLinkThatLeadsNowhereIsToldAndLeftAsItIs)
{
    ASSERT_EQ(::symlink("nowhere", native(u"drive"_s).constData()), 0);
    for (const QString& target : {path(u"drive"_s), path(u"drive/Apps/Vellumry"_s)}) {
        move.moveTo(target);
        EXPECT_TRUE(move.change->errorMessage().value_or(QString()).contains(target))
            << move.change->errorMessage().value_or(u"no error"_s).toStdString();
        EXPECT_EQ(move.world.locations.currentLocation(), path(u"old"_s));
        expectLibraryAt(path(u"old"_s));
        EXPECT_FALSE(QFile::exists(path(u"nowhere"_s)));
    }
    expectMoveTo(path(u"new"_s));
}

TEST_F(RealMoveTest, runsOnARealThread)
{
    ThreadRunner background;
    bool isFinished = false;
    LocationChange change({.locations = move.world.locations,
                           .files = FileSystem::local(),
                           .notifications = move.world.notifications,
                           .scheduler = EventLoopScheduler::shared(),
                           .background = background,
                           .clock = SystemClock::shared(),
                           .clearCacheAndReload = [] {},
                           .refreshData = [] {}});
    QObject::connect(&change, &LocationChange::finished, &change, [&] { isFinished = true; });
    change.applyChanges(path(u"new"_s));
    EXPECT_TRUE(eventually([&] { return isFinished; }));
    EXPECT_EQ(change.migrationProgress(), 1.0);
    expectLibraryAt(path(u"new"_s));
    EXPECT_FALSE(QDir(path(u"old"_s)).exists());
}

} // namespace
