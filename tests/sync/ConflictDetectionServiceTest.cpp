#include "sync/ConflictDetectionService.h"

#include "notifications/NotificationCenter.h"
#include "storage/MemoryFileSystem.h"
#include "support/LogCapture.h"
#include "support/MemoryPreferences.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using namespace vellumry;
using namespace vellumry::test;
using namespace Qt::StringLiterals;

namespace {

class ConflictDetectionTest : public testing::Test {
protected:
    ConflictDetectionTest()
    {
        files.makeFolder(folder);
        preferences.setString(u"Vellumry.customStorageLocation"_s, folder);
        preferences.setBoolean(u"Vellumry.useCustomLocation"_s, true);
    }

    void put(const QString& name, const QByteArray& bytes = "text")
    {
        files.now += std::chrono::seconds(1);
        files.replace(folder + u'/' + name, bytes);
    }

    QList<ConflictFile> detect() { return service.detectConflicts(folder); }

    /// "<name> <drive> <original or ->" of each conflict.
    QStringList found()
    {
        QStringList texts;
        for (const ConflictFile& conflict : detect()) {
            EXPECT_TRUE(conflict.url.startsWith(folder + u'/'));
            texts.append(conflict.url.sliced(folder.size() + 1) + u" | "_s +
                         (conflict.cloudDriveType ? rawValue(*conflict.cloudDriveType) : u"?"_s) +
                         u" | "_s + conflict.originalFileName.value_or(u"-"_s));
        }
        return texts;
    }

    static QString line(const QString& message)
    {
        return u"ConflictDetectionService: "_s + message;
    }

    LogCapture log;
    MemoryFileSystem files;
    MemoryPreferences preferences;
    NotificationCenter notifications;
    const QString folder = u"/data"_s;
    StorageLocationManager locations{
        {preferences, files, notifications, u"/home/tester/Documents"_s, u"/home/tester"_s}};
    const ConflictDetectionService service{{.locations = locations, .files = files}};
};

TEST_F(ConflictDetectionTest, aConflictedCopyBesideItsOriginalIsFound)
{
    put(u"Work.json"_s);
    put(u"Work (conflicted copy 2024-01-31).json"_s, "copy");
    const QList<ConflictFile> conflicts = detect();
    ASSERT_EQ(conflicts.size(), 1);
    EXPECT_FALSE(conflicts[0].id.isNull());
    EXPECT_EQ(conflicts[0].url, folder + u"/Work (conflicted copy 2024-01-31).json"_s);
    EXPECT_EQ(conflicts[0].cloudDriveType, CloudDriveType::dropbox);
    EXPECT_EQ(conflicts[0].modifiedDate, files.node(conflicts[0].url).modified);
    EXPECT_EQ(conflicts[0].fileSize, 4);
    EXPECT_EQ(conflicts[0].originalFileName, u"Work"_s);
    EXPECT_NE(detect()[0].id, conflicts[0].id) << "an id of its own at each detection";
    EXPECT_TRUE(log.lines.isEmpty());
    EXPECT_TRUE(files.opened.isEmpty()) << "a copy is known by its name alone";
}

TEST_F(ConflictDetectionTest, aConflictedCopyWithoutItsOriginalIsFound)
{
    put(u"Work (conflicted copy 2024-01-31).json"_s);
    EXPECT_EQ(found(), QStringList{u"Work (conflicted copy 2024-01-31).json | Dropbox | -"_s});
}

TEST_F(ConflictDetectionTest, thePatternsIgnoreCaseAndTheExtensionDoesNot)
{
    put(u"Work (CONFLICTED COPY 2024-01-31).JSON"_s);
    EXPECT_EQ(found(), QStringList());
    put(u"Work (CONFLICTED COPY 2024-01-31).json"_s);
    EXPECT_EQ(found(), QStringList{u"Work (CONFLICTED COPY 2024-01-31).json | Dropbox | -"_s});
}

TEST_F(ConflictDetectionTest, theOtherDrivesNamesGiveNoRecord)
{
    for (const QString& name :
         {u"Work.json"_s, u"Work (1).json"_s, u"Work 2.json"_s, u"Work-Laptop.json"_s,
          u"Work (from Anna).json"_s, u"(conflicted copy 2024-1-31).json"_s,
          u"conflicted copy 2024-01-31.json"_s})
        put(name);
    EXPECT_EQ(found(), QStringList());
}

TEST_F(ConflictDetectionTest, theOtherPatternsAskForABaseNameThatEndsInJSON)
{
    put(u"Work (1).json.json"_s);
    put(u"Work 2.json.json"_s);
    put(u"Work (from Anna).json.json"_s);
    put(u"Work-Laptop.json.json"_s);
    put(u"Work-Anna's MacBook 2.JSON.json"_s);
    EXPECT_EQ(found(),
              (QStringList{// The first pattern that fits decides: " 2", not "-Anna's MacBook 2".
                           u"Work-Anna's MacBook 2.JSON.json | iCloud Drive | -"_s,
                           u"Work-Laptop.json.json | OneDrive | -"_s,
                           u"Work (from Anna).json.json | iCloud Drive | -"_s,
                           u"Work 2.json.json | iCloud Drive | -"_s,
                           u"Work (1).json.json | Google Drive | -"_s}));
    put(u"Work.json.json"_s);
    put(u"Work .json.json"_s);
    // The base name is looked up with what stays around the match: "Work.json", "Work .json".
    EXPECT_EQ(found(), (QStringList{u"Work-Anna's MacBook 2.JSON.json | iCloud Drive | -"_s,
                                    u"Work-Laptop.json.json | OneDrive | Work.json"_s,
                                    u"Work (from Anna).json.json | iCloud Drive | Work .json"_s,
                                    u"Work 2.json.json | iCloud Drive | Work.json"_s,
                                    u"Work (1).json.json | Google Drive | Work .json"_s}));
}

TEST_F(ConflictDetectionTest, everyOccurrenceOfTheMatchGoesAndOnlyTheEndsAreTrimmed)
{
    const QString mark = u"(conflicted copy 2024-01-31)"_s;
    put(mark + u" A "_s + mark + u"  B "_s + mark + u".json"_s);
    put(u"A   B.json"_s);
    EXPECT_EQ(found(), QStringList{mark + u" A "_s + mark + u"  B "_s + mark +
                                   u".json | Dropbox | A   B"_s});
    // What differs in case is no occurrence of the match.
    put(u"C (conflicted copy 2024-01-31) (CONFLICTED copy 2024-01-31).json"_s);
    put(u"C.json"_s);
    EXPECT_EQ(found().first(),
              u"C (conflicted copy 2024-01-31) (CONFLICTED copy 2024-01-31).json | Dropbox | -"_s);
}

TEST_F(ConflictDetectionTest, anOriginalThatIsItselfACopyDoesNotCount)
{
    put(u"A (conflicted copy 2024-01-31).json"_s);
    put(u"A (conflicted copy 2024-01-31)(conflicted copy 2024-02-01).json"_s);
    EXPECT_EQ(
        found(),
        (QStringList{
            u"A (conflicted copy 2024-01-31)(conflicted copy 2024-02-01).json | Dropbox | -"_s,
            u"A (conflicted copy 2024-01-31).json | Dropbox | -"_s}));
}

TEST_F(ConflictDetectionTest, aBackupIsNoCopyWhateverItsNameHolds)
{
    put(u"Notes.backup.json"_s);
    put(u"Notes.backup (conflicted copy 2024-01-31).json"_s);
    put(u"Notes (conflicted copy 2024-01-31).json.backup"_s);
    put(u"Notes (conflicted copy 2024-01-31).backup"_s);
    EXPECT_EQ(found(), QStringList());
}

TEST_F(ConflictDetectionTest, aBackupCountsAsANormalName)
{
    const QString mark = u"(conflicted copy 2024-01-31)"_s;
    put(u"Notes.backup.json"_s);
    put(u"Notes.back"_s + mark + u"up.json"_s);
    EXPECT_EQ(found(), QStringList{u"Notes.back"_s + mark + u"up.json | Dropbox | Notes.backup"_s});
}

TEST_F(ConflictDetectionTest, theNewestComesFirstAndEqualDatesKeepTheOrderOfTheListing)
{
    const auto copy = [](const char* name) {
        return QLatin1StringView(name) + u" (conflicted copy 2024-01-31).json"_s;
    };
    const Date same = files.now;
    put(copy("old"));
    put(copy("b"));
    put(copy("a"));
    put(copy("new"));
    files.replace(folder + u'/' + copy("b"), "", same + std::chrono::hours(1));
    files.replace(folder + u'/' + copy("a"), "", same + std::chrono::hours(1));
    files.replace(folder + u'/' + copy("new"), "", same + std::chrono::hours(2));
    QStringList names;
    for (const ConflictFile& conflict : detect())
        names.append(conflict.url.sliced(folder.size() + 1));
    EXPECT_EQ(names, (QStringList{copy("new"), copy("b"), copy("a"), copy("old")}));
}

TEST_F(ConflictDetectionTest, hiddenFilesAndSubfoldersAreNotLookedInto)
{
    put(u".Work (conflicted copy 2024-01-31).json"_s);
    files.makeFolder(folder + u"/sub"_s);
    put(u"sub/Work (conflicted copy 2024-01-31).json"_s);
    put(u".Other.json"_s);
    EXPECT_EQ(found(), QStringList());
    // A hidden file is no original either.
    put(u".Other (conflicted copy 2024-01-31).json"_s);
    EXPECT_EQ(found(), QStringList());
}

TEST_F(ConflictDetectionTest, aMissingFolderHasNoConflicts)
{
    EXPECT_TRUE(service.detectConflicts(u"/nowhere"_s).isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(ConflictDetectionTest, aFolderThatCannotBeListedHasNoneAndIsLogged)
{
    put(u"Work (conflicted copy 2024-01-31).json"_s);
    const FileError failure(u"list"_s, folder, EACCES);
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == "list"_L1)
            throw failure;
    };
    EXPECT_TRUE(detect().isEmpty());
    EXPECT_EQ(log.lines, QStringList{line(u"检测冲突失败 - "_s + failure.description())});
}

TEST_F(ConflictDetectionTest, aFileThatCannotBeLookedAtIsLoggedForEachPatternThatFits)
{
    put(u"Work (conflicted copy 2024-01-31).json"_s);
    put(u"Both (conflicted copy 2024-01-31) 2.json.json"_s);
    const FileError failure(u"look at"_s, folder, EIO);
    files.onOperation = [&](const QString& operation, const QString&) {
        if (operation == "attributes"_L1)
            throw failure;
    };
    EXPECT_TRUE(detect().isEmpty());
    const QString told = line(u"获取文件属性失败 - "_s + failure.description());
    EXPECT_EQ(log.lines, (QStringList{told, told, told}));
}

TEST_F(ConflictDetectionTest, theNextPatternIsTriedWhenAFileCouldNotBeLookedAt)
{
    put(u"Both (conflicted copy 2024-01-31) 2.json.json"_s);
    int failures = 1;
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "attributes"_L1 && failures-- > 0)
            throw FileError(operation, path, EIO);
    };
    EXPECT_EQ(found(),
              QStringList{u"Both (conflicted copy 2024-01-31) 2.json.json | iCloud Drive | -"_s});
}

TEST_F(ConflictDetectionTest, deletesAllThatAreThereByThen)
{
    put(u"Work.json"_s, "work");
    put(u"Work (conflicted copy 2024-01-31).json"_s);
    ASSERT_EQ(detect().size(), 1);
    put(u"Work (conflicted copy 2024-02-01).json"_s);
    put(u"Work (1).json"_s);
    service.deleteAllConflicts();
    EXPECT_EQ(log.lines,
              (QStringList{line(u"已删除冲突文件 - Work (conflicted copy 2024-02-01).json"_s),
                           line(u"已删除冲突文件 - Work (conflicted copy 2024-01-31).json"_s)}));
    EXPECT_EQ(files.list(folder), (QStringList{u"Work.json"_s, u"Work (1).json"_s}));
    EXPECT_EQ(files.bytes(folder + u"/Work.json"_s), "work");
}

TEST_F(ConflictDetectionTest, stopsDeletingAtTheFirstFailure)
{
    for (const char* name : {"a", "b", "c"})
        put(QLatin1StringView(name) + u" (conflicted copy 2024-01-31).json"_s);
    files.onOperation = [&](const QString& operation, const QString& path) {
        if (operation == "remove"_L1 && path.contains(u"/b "))
            throw FileError(operation, path, EACCES);
    };
    EXPECT_THROW(service.deleteAllConflicts(), FileError);
    EXPECT_EQ(files.list(folder), (QStringList{u"a (conflicted copy 2024-01-31).json"_s,
                                               u"b (conflicted copy 2024-01-31).json"_s}));
    EXPECT_EQ(log.lines,
              QStringList{line(u"已删除冲突文件 - c (conflicted copy 2024-01-31).json"_s)});
}

TEST_F(ConflictDetectionTest, aFolderNamedLikeACopyDoesNotKeepOlderCopies)
{
    put(u"a (conflicted copy 2024-01-31).json"_s);
    files.now += std::chrono::seconds(1);
    files.makeFolder(folder + u"/b (conflicted copy 2024-01-31).json"_s);
    EXPECT_EQ(found().size(), 1);
    service.deleteAllConflicts();
    EXPECT_EQ(files.list(folder), QStringList{u"b (conflicted copy 2024-01-31).json"_s});
}

TEST_F(ConflictDetectionTest, patternsTakeNamesAsLongAsNamesCanBe)
{
    put(u'-' + QString(240, u'a') + u".json"_s);
    put(QString(120, u'-') + QString(120, u'a') + u" .json"_s);
    put(u"(from "_s + QString(230, u')') + u".json"_s);
    put(QString(230, u' ') + u"1.json"_s);
    EXPECT_EQ(found(), QStringList());

    QStringList copies{u'-' + QString(240, u'a') + u".json.json"_s,
                       QString(120, u'-') + QString(120, u'b') + u" .json.json"_s,
                       u"(from "_s + QString(230, u')') + u".json.json"_s,
                       QString(230, u' ') + u"1.json.json"_s};
    for (const QString& name : std::as_const(copies))
        put(name);
    QStringList names;
    for (const QString& text : found())
        names.append(text.section(u" | "_s, 0, 0));
    names.sort();
    copies.sort();
    EXPECT_EQ(names, copies);
}

TEST(ConflictDetectionOnDisk, looksAtLinksThemselvesAndRemovesNoFolder)
{
    const LogCapture log;
    const QTemporaryDir folder;
    MemoryPreferences preferences;
    preferences.setString(u"Vellumry.customStorageLocation"_s, folder.path());
    preferences.setBoolean(u"Vellumry.useCustomLocation"_s, true);
    NotificationCenter notifications;
    StorageLocationManager locations{
        {preferences, FileSystem::local(), notifications, folder.path(), folder.path()}};
    const ConflictDetectionService service{{locations, FileSystem::local()}};
    const auto native = [&](const char* name) {
        return QFile::encodeName(folder.filePath(QLatin1StringView(name)));
    };
    QFile file(folder.filePath(u"precious"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(::symlink("precious", native("a (conflicted copy 2024-01-31).json").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", native("b (conflicted copy 2024-01-31).json").constData()), 0);
    ASSERT_EQ(::mkfifo(native("two\nlines (conflicted copy 2024-01-31).json").constData(), 0600),
              0);
    EXPECT_EQ(service.detectConflicts(folder.path()).size(), 3);
    service.deleteAllConflicts();
    EXPECT_TRUE(service.detectConflicts(folder.path()).isEmpty());
    EXPECT_TRUE(file.exists());

    ASSERT_EQ(::mkdir(native("c (conflicted copy 2024-01-31).json").constData(), 0700), 0);
    ASSERT_EQ(::symlink(".", native("d (conflicted copy 2024-01-31).json").constData()), 0);
    EXPECT_TRUE(service.detectConflicts(folder.path()).isEmpty());
    service.deleteAllConflicts();
    EXPECT_TRUE(QFileInfo(folder.filePath(u"c (conflicted copy 2024-01-31).json"_s)).isDir());
}

} // namespace
