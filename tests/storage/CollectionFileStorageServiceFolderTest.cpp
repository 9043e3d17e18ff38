#include "platform/linux/PosixFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace vellumry;
using namespace vellumry::test;

namespace {

/// The real calls, counted; from the n-th of those that write, every one fails.
class WatchedFileCalls final : public FileCalls {
public:
    QStringList openedForReading;
    int failure = 0;
    int goodCalls = 0;

    int open(const char* path, int flags, mode_t mode) override
    {
        if ((flags & (O_DIRECTORY | O_CREAT)) == 0)
            openedForReading.append(QFileInfo(QString::fromUtf8(path)).fileName());
        return (flags & O_CREAT) != 0 && fails() ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int descriptor, const void* buffer, size_t count) override
    {
        return fails() ? -1 : FileCalls::write(descriptor, buffer, count);
    }
    int fdatasync(int descriptor) override
    {
        return fails() ? -1 : FileCalls::fdatasync(descriptor);
    }
    int fsync(int descriptor) override { return fails() ? -1 : FileCalls::fsync(descriptor); }
    int rename(const char* from, const char* to) override
    {
        return fails() ? -1 : FileCalls::rename(from, to);
    }

private:
    bool fails()
    {
        if (failure == 0 || goodCalls-- > 0)
            return false;
        errno = failure;
        return true;
    }
};

/// The service over a real folder.
class FolderTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return world.path(name); }
    [[nodiscard]] QByteArray nativePath(const QString& name) const { return path(name).toUtf8(); }
    [[nodiscard]] CollectionFileStorageService& service() { return world.service(); }

    void put(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    [[nodiscard]] QByteArray get(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] QStringList names() const
    {
        return QDir(world.folder)
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

    /// Waits until no change can hide in the tick of the last one.
    void settle()
    {
        const FileContents last = files.read(path(QStringLiteral("_metadata.json")));
        ASSERT_TRUE(last.precision.followsMachineClock) << "the temporary folder is a remote one";
        QElapsedTimer patience;
        patience.start();
        while (SystemClock::shared().now() - last.stamp.changed <= last.precision.slack)
            ASSERT_LT(patience.elapsed(), 10'000);
    }

    const SyncCollection work = makeCollection(QStringLiteral("w"), QStringLiteral("Work"));
    const SyncCollection notes = makeCollection(QStringLiteral("n"), QStringLiteral("Notes"));
    const VellumryData library =
        makeLibrary({work, notes}, {makeSnippet(QStringLiteral("w1"), QStringLiteral("Work")),
                                    makeSnippet(QStringLiteral("n1"), QStringLiteral("Notes"))});

    LogCapture log;
    QTemporaryDir folder;
    WatchedFileCalls calls;
    PosixFileSystem files{calls};
    StorageWorld world{files, folder.filePath(QStringLiteral("library"))};
};

TEST_F(FolderTest, aLibraryComesBackAsItWasSaved)
{
    service().saveFullData(library, false);
    world.restart();
    const auto loaded = service().loadFullData();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->data.collections, library.data.collections);
    EXPECT_EQ(QSet<Snippet>(loaded->data.snippets.begin(), loaded->data.snippets.end()),
              QSet<Snippet>(library.data.snippets.begin(), library.data.snippets.end()));
    EXPECT_EQ(names(), (QStringList{QStringLiteral("_metadata.json"), QStringLiteral("notes.json"),
                                    QStringLiteral("work.json")}));
}

TEST_F(FolderTest, collectionsOfAnyNameComeBack)
{
    VellumryData odd = makeLibrary({}, {});
    for (const QString& name :
         {QStringLiteral("\uFEFFWork"), QStringLiteral("\uFFFE"), QStringLiteral("."),
          QStringLiteral(".."), QStringLiteral("a\nb"), QStringLiteral("~"), QStringLiteral("/"),
          QStringLiteral("e\u0301"), QStringLiteral("\u00E9"), QStringLiteral("\x7F\x01"),
          QStringLiteral("_"), QStringLiteral(".json"), QStringLiteral("\U0001F600")})
        odd.data.collections.append(makeCollection(QStringLiteral("id of ") + name, name));
    service().saveFullData(odd, false);
    world.restart();
    const auto loaded = service().loadFullData();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(idsOf(loaded->data.collections), idsOf(odd.data.collections));
    EXPECT_EQ(loaded->data.collections, odd.data.collections);
}

TEST_F(FolderTest, aSaveAfterALoadOpensNoUnchangedFile)
{
    service().saveFullData(library, false);
    world.restart();
    settle();
    const VellumryData loaded = *service().loadFullData();
    calls.openedForReading.clear();
    VellumryData changed = loaded;
    changed.data.snippets[0].setUsageCount(1);
    service().saveFullData(changed, false);
    EXPECT_EQ(calls.openedForReading, QStringList());
}

TEST_F(FolderTest, whatIsNotUnderstoodIsSkippedToldAndLeft)
{
    service().saveFullData(library, false);
    const QByteArray good = get(QStringLiteral("work.json"));
    QMap<QString, QByteArray> bad{
        {QStringLiteral("empty"), {}},
        {QStringLiteral("cut"), good.first(good.size() / 2)},
        {QStringLiteral("nul"), QByteArray(good).replace("Work", QByteArray("W\0rk", 4))},
        {QStringLiteral("utf"), QByteArray(good).replace("Work", "W\xff\xferk")},
        {QStringLiteral("deep"), QByteArray(200'000, '[')},
        {QStringLiteral("foreign"), "{\"name\":\"a file of another program\"}"},
        {QStringLiteral("list"), "[]"},
        {QStringLiteral("text"), "just text"},
    };
    for (auto it = bad.cbegin(); it != bad.cend(); ++it)
        put(it.key() + QStringLiteral(".json"), it.value());
    ASSERT_TRUE(QDir(world.folder).mkdir(QStringLiteral("folder.json")));
    put(QStringLiteral("folder.json/inside.json"), good);
    ASSERT_EQ(::mkfifo(nativePath(QStringLiteral("pipe.json")).constData(), 0600), 0);
    ASSERT_EQ(::symlink("nowhere", nativePath(QStringLiteral("dangling.json")).constData()), 0);
    ASSERT_EQ(::symlink("/dev/zero", nativePath(QStringLiteral("device.json")).constData()), 0);
    put(QStringLiteral("huge.json"), good);
    ASSERT_EQ(::truncate(nativePath(QStringLiteral("huge.json")).constData(),
                         FileSystem::largestFile + 1),
              0);
    const QStringList before = names();

    log.lines.clear();
    const auto loaded = service().loadFullData();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->data.collections, library.data.collections);
    QStringList unreadable =
        bad.keys() + QStringList{QStringLiteral("folder"), QStringLiteral("pipe"),
                                 QStringLiteral("dangling"), QStringLiteral("device"),
                                 QStringLiteral("huge")};
    for (const QString& name : std::as_const(unreadable)) {
        const QString prefix =
            QStringLiteral("CollectionFileStorageService: 跳过无效文件 - %1: ").arg(name);
        EXPECT_EQ(log.lines.filter(prefix).size(), 1) << name.toStdString();
        EXPECT_GT(log.lines.filter(prefix).value(0).size(), prefix.size());
    }

    VellumryData changed = *loaded;
    for (const QString& name : std::as_const(unreadable))
        changed.data.collections.append(makeCollection(QStringLiteral("new ") + name, name));
    for (int i = 0; i < 2; ++i)
        service().saveFullData(changed, false);
    for (auto it = bad.cbegin(); it != bad.cend(); ++it)
        EXPECT_EQ(get(it.key() + QStringLiteral(".json")), it.value());
    EXPECT_EQ(get(QStringLiteral("folder.json/inside.json")), good);
    for (const QString& name : std::as_const(unreadable))
        EXPECT_EQ(decodeCollectionFile(get(name + QStringLiteral("-1.json"))).collection.name,
                  name);
    EXPECT_EQ(names().size(), before.size() + unreadable.size());
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("dangling.json"))).isSymLink());
    EXPECT_FALSE(QFile::exists(path(QStringLiteral("nowhere"))));
}

TEST_F(FolderTest, writesThroughALinkedCollectionFileAndKeepsItsMode)
{
    service().saveFullData(library, false);
    const QString elsewhere = folder.filePath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QFile::rename(path(QStringLiteral("work.json")), elsewhere));
    ASSERT_EQ(::chmod(elsewhere.toUtf8().constData(), 0664), 0);
    ASSERT_TRUE(QFile::link(elsewhere, path(QStringLiteral("work.json"))));
    VellumryData changed = library;
    changed.data.snippets[0].setUsageCount(8);
    service().saveFullData(changed, false);
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("work.json"))).isSymLink());
    struct ::stat status {};
    ASSERT_EQ(::stat(elsewhere.toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & ALLPERMS, mode_t{0664});
    EXPECT_EQ(decodeCollectionFile(get(QStringLiteral("work.json"))).snippets[0].usageCount(), 8);
}

TEST_F(FolderTest, aCollectionWithTheLongestFileNameIsSaved)
{
    const SyncCollection longest = makeCollection(QStringLiteral("l"), QString(250, u'n'));
    service().saveFullData(makeLibrary({longest}, {}), false);
    VellumryData renamed = *service().loadFullData();
    renamed.data.collections[0].color = QStringLiteral("red");
    service().saveFullData(renamed, false);
    EXPECT_EQ(service().loadFullData()->data.collections[0].color, QStringLiteral("red"));
    EXPECT_EQ(names().size(), 2);

    VellumryData tooLong = renamed;
    tooLong.data.collections.append(makeCollection(QStringLiteral("t"), QString(251, u'n')));
    EXPECT_THROW(service().saveFullData(tooLong, false), StorageError);
    EXPECT_EQ(names().size(), 2);
}

TEST_F(FolderTest, whereverASaveFailsEachFileIsOldOrNewAndNothingIsLeftBehind)
{
    service().saveFullData(library, false);
    const QStringList before = names();
    VellumryData changed = library;
    for (Snippet& snippet : changed.data.snippets)
        snippet.setUsageCount(42);
    int failures = 0;
    for (const int number : {ENOSPC, EIO}) {
        for (int good = 0;; ++good) {
            service().saveFullData(library, false);
            calls.failure = number;
            calls.goodCalls = good;
            bool hasFailed = false;
            try {
                service().saveFullData(changed, false);
            } catch (const StorageError& error) {
                hasFailed = true;
                EXPECT_TRUE(error.description().contains(world.folder));
            }
            calls.failure = 0;
            failures += hasFailed ? 1 : 0;
            EXPECT_EQ(names(), before);
            for (const char* name : {"work.json", "notes.json"}) {
                const auto file = decodeCollectionFile(get(QLatin1StringView(name)));
                EXPECT_TRUE(file.snippets[0].usageCount() == 0 ||
                            file.snippets[0].usageCount() == 42);
            }
            EXPECT_EQ(
                decodeMetadataFile(get(QStringLiteral("_metadata.json"))).collectionOrder.size(),
                2);
            if (!hasFailed)
                break;
        }
    }
    EXPECT_EQ(failures, 2 * 3 * 5) << "five steps for each of three files";
}

TEST_F(FolderTest, aDiskQuotaLeavesTheOldFilesWhole)
{
    service().saveFullData(library, false);
    const QByteArray before = get(QStringLiteral("work.json"));
    VellumryData large = library;
    large.data.snippets[0].setContent(QString(100'000, u'x'));
    const pid_t child = ::fork();
    if (child == 0) {
        const struct ::rlimit limit {
            20'000, 20'000
        };
        (void)::signal(SIGXFSZ, SIG_IGN);
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            ::_exit(3);
        try {
            service().saveFullData(large, false);
        } catch (const StorageError&) {
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(get(QStringLiteral("work.json")), before);
    EXPECT_EQ(names().size(), 3);
}

TEST_F(FolderTest, aReadOnlyFolderFailsTheSaveAndKeepsTheFiles)
{
    service().saveFullData(library, false);
    const QByteArray before = get(QStringLiteral("work.json"));
    ASSERT_EQ(::chmod(folder.path().toUtf8().constData(), 0755), 0);
    for (const QString& name : names())
        ASSERT_EQ(::chmod(nativePath(name).constData(), 0644), 0);
    ASSERT_EQ(::chmod(world.folder.toUtf8().constData(), 0555), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ::_exit(3);
        VellumryData changed = library;
        changed.data.snippets[0].setUsageCount(1);
        try {
            service().saveFullData(changed, false);
        } catch (const StorageError&) {
            ::_exit(service().loadFullData() ? 0 : 2);
        }
        ::_exit(1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(::chmod(world.folder.toUtf8().constData(), 0755), 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(get(QStringLiteral("work.json")), before);
    EXPECT_EQ(names().size(), 3);
}

TEST_F(FolderTest, aFolderThatVanishesComesBackWithTheNextSave)
{
    service().saveFullData(library, false);
    ASSERT_TRUE(QDir(world.folder).removeRecursively());
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    EXPECT_EQ(service().currentData(), library);
    EXPECT_THROW(service().deleteCollectionFile(QStringLiteral("w")), StorageError);
    service().saveFullData(library, false);
    EXPECT_EQ(names().size(), 3);
}

TEST_F(FolderTest, aFolderThatBecameAFileFailsTheSave)
{
    service().saveFullData(library, false);
    ASSERT_TRUE(QDir(world.folder).removeRecursively());
    QFile file(world.folder);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write("text"), 4);
    file.close();
    EXPECT_THROW(service().saveFullData(library, false), StorageError);
    EXPECT_EQ(service().loadFullData(), std::nullopt);
    EXPECT_EQ(QFileInfo(world.folder).size(), 4);
}

} // namespace
