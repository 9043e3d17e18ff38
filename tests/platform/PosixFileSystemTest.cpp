#include "platform/linux/PosixFileSystem.h"

#include "core/Digest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <new>
#include <optional>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace vellumry;

namespace {

/// The real calls, of which one kind fails at its n-th use.
class FailingFileCalls final : public FileCalls {
public:
    enum class Kind {
        none,
        openTemporary,
        openFolder,
        write,
        fstat,
        fchmod,
        startFlush,
        fdatasync,
        rename,
        fsync,
        renameWithoutReplacing,
        link,
        copyFileRange,
        close,
        syncfs
    };

    /// Makes the call of this kind fail with `number`, after `good` calls that do not.
    void failAt(Kind kind, int number, int good = 0)
    {
        failing = kind;
        failure = number;
        remaining = good;
        hasFailed = false;
    }

    /// Whether the failure came to pass.
    bool hasFailed = false;
    /// What each write that did not fail was asked for, in bytes.
    std::vector<size_t> writtenSizes;
    /// The most bytes that one write takes.
    size_t longestWrite = SIZE_MAX;
    /// The most bytes that one copy by the system takes, and how many of them do anything.
    size_t longestCopy = SIZE_MAX;
    int goodCopies = INT_MAX;
    /// Whether copies by the system are only claimed, and how many bytes were.
    bool isCopyingForShow = false;
    qint64 bytesForShow = 0;
    int startedFlushes = 0;
    /// Calls that a signal breaks off before each one that works.
    bool isInterrupted = false;
    /// Done between the two looks at a file that is being read.
    std::function<void()> whileReading;
    QByteArrayList openedPaths;

    int open(const char* path, int flags, mode_t mode) override
    {
        if (interrupts())
            return -1;
        openedPaths.append(path);
        if (fails((flags & O_DIRECTORY) != 0 ? Kind::openFolder
                  : (flags & O_CREAT) != 0   ? Kind::openTemporary
                                             : Kind::none))
            return -1;
        return FileCalls::open(path, flags, mode);
    }
    ssize_t read(int descriptor, void* buffer, size_t count) override
    {
        if (interrupts())
            return -1;
        if (whileReading)
            whileReading();
        return FileCalls::read(descriptor, buffer, count);
    }
    ssize_t write(int descriptor, const void* buffer, size_t count) override
    {
        if (interrupts() || fails(Kind::write))
            return -1;
        writtenSizes.push_back(count);
        return FileCalls::write(descriptor, buffer, std::min(count, longestWrite));
    }
    ssize_t copyFileRange(int from, int to, size_t count) override
    {
        if (interrupts() || fails(Kind::copyFileRange))
            return -1;
        if (whileReading)
            whileReading();
        if (isCopyingForShow) {
            bytesForShow += static_cast<qint64>(count);
            return static_cast<ssize_t>(count);
        }
        if (goodCopies-- <= 0)
            return 0;
        return FileCalls::copyFileRange(from, to, std::min(count, longestCopy));
    }
    int close(int descriptor) override
    {
        const int result = FileCalls::close(descriptor);
        return fails(Kind::close) ? -1 : result;
    }
    int syncfs(int descriptor) override
    {
        return interrupts() || fails(Kind::syncfs) ? -1 : FileCalls::syncfs(descriptor);
    }
    int fstat(int descriptor, struct ::stat* result) override
    {
        return fails(Kind::fstat) ? -1 : FileCalls::fstat(descriptor, result);
    }
    int fchmod(int descriptor, mode_t mode) override
    {
        return fails(Kind::fchmod) ? -1 : FileCalls::fchmod(descriptor, mode);
    }
    int startFlush(int descriptor) override
    {
        ++startedFlushes;
        return fails(Kind::startFlush) ? -1 : FileCalls::startFlush(descriptor);
    }
    int fdatasync(int descriptor) override
    {
        return interrupts() || fails(Kind::fdatasync) ? -1 : FileCalls::fdatasync(descriptor);
    }
    int fsync(int descriptor) override
    {
        return interrupts() || fails(Kind::fsync) ? -1 : FileCalls::fsync(descriptor);
    }
    int rename(const char* from, const char* to) override
    {
        return fails(Kind::rename) ? -1 : FileCalls::rename(from, to);
    }
    int renameWithoutReplacing(const char* from, const char* to) override
    {
        return fails(Kind::renameWithoutReplacing) ? -1
                                                   : FileCalls::renameWithoutReplacing(from, to);
    }
    int link(const char* from, const char* to) override
    {
        return fails(Kind::link) ? -1 : FileCalls::link(from, to);
    }

private:
    bool fails(Kind kind)
    {
        if (kind != failing || kind == Kind::none || remaining-- != 0)
            return false;
        hasFailed = true;
        errno = failure;
        return true;
    }

    bool interrupts()
    {
        if (!isInterrupted)
            return false;
        breaksOff = !breaksOff;
        errno = EINTR;
        return breaksOff;
    }

    Kind failing = Kind::none;
    int failure = 0;
    int remaining = 0;
    bool breaksOff = false;
};

using Kind = FailingFileCalls::Kind;

class PosixFileSystemTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

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
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

    [[nodiscard]] mode_t mode(const QString& name) const
    {
        struct ::stat status {};
        EXPECT_EQ(::stat(path(name).toUtf8().constData(), &status), 0);
        return status.st_mode & ALLPERMS;
    }

    template <typename Action>
    QString failure(Action action)
    {
        try {
            action();
        } catch (const FileError& error) {
            EXPECT_EQ(QByteArray(error.what()), error.description().toUtf8());
            return error.description();
        }
        ADD_FAILURE() << "no failure";
        return {};
    }

    QTemporaryDir folder;
    FailingFileCalls calls;
    PosixFileSystem files{calls};
};

TEST_F(PosixFileSystemTest, writesANewFileForItsOwnerAlone)
{
    files.write(path(QStringLiteral("a.json")), "text");
    EXPECT_EQ(get(QStringLiteral("a.json")), "text");
    EXPECT_EQ(mode(QStringLiteral("a.json")), mode_t{0600});
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
}

TEST_F(PosixFileSystemTest, keepsTheModeOfAnExistingFile)
{
    for (const mode_t wanted : {mode_t{0644}, mode_t{0600}, mode_t{0440}, mode_t{0775}}) {
        put(QStringLiteral("a.json"), "old");
        ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), wanted), 0);
        files.write(path(QStringLiteral("a.json")), "new");
        EXPECT_EQ(mode(QStringLiteral("a.json")), wanted);
        EXPECT_EQ(get(QStringLiteral("a.json")), "new");
        ASSERT_TRUE(QFile::remove(path(QStringLiteral("a.json"))));
    }
}

TEST_F(PosixFileSystemTest, writesThroughALinkAndKeepsIt)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("real")));
    put(QStringLiteral("real/target"), "old");
    ASSERT_EQ(::symlink("real/target", path(QStringLiteral("inner")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink(path(QStringLiteral("inner")).toUtf8().constData(),
                        path(QStringLiteral("a.json")).toUtf8().constData()),
              0);
    files.write(path(QStringLiteral("a.json")), "new");
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("a.json"))).isSymLink());
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("inner"))).isSymLink());
    EXPECT_FALSE(QFileInfo(path(QStringLiteral("real/target"))).isSymLink());
    EXPECT_EQ(get(QStringLiteral("real/target")), "new");
}

TEST_F(PosixFileSystemTest, writesThroughADanglingLink)
{
    ASSERT_EQ(::symlink("later", path(QStringLiteral("a.json")).toUtf8().constData()), 0);
    files.write(path(QStringLiteral("a.json")), "new");
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("a.json"))).isSymLink());
    EXPECT_EQ(get(QStringLiteral("later")), "new");
}

TEST_F(PosixFileSystemTest, refusesLinksInACircle)
{
    ASSERT_EQ(::symlink("b", path(QStringLiteral("a")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("a", path(QStringLiteral("b")).toUtf8().constData()), 0);
    EXPECT_FALSE(failure([&] { files.write(path(QStringLiteral("a")), "new"); }).isEmpty());
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST_F(PosixFileSystemTest, writesAFileWithTheLongestName)
{
    const QString name = QString(250, u'n') + QStringLiteral(".json");
    files.write(path(name), "one");
    files.write(path(name), "two");
    EXPECT_EQ(get(name), "two");
    EXPECT_FALSE(failure([&] { files.write(path(u'n' + name), "one"); }).isEmpty());
    EXPECT_EQ(names(), QStringList{name});
}

TEST_F(PosixFileSystemTest, theTemporaryFileIsHiddenInTheSameFolderAndNoJson)
{
    files.write(path(QStringLiteral("a.json")), "text");
    ASSERT_FALSE(calls.openedPaths.isEmpty());
    const QFileInfo temporary(QString::fromUtf8(calls.openedPaths.first()));
    EXPECT_EQ(temporary.path(), folder.path());
    EXPECT_TRUE(temporary.fileName().startsWith(u'.'));
    EXPECT_FALSE(temporary.fileName().endsWith(QStringLiteral(".json")));
}

TEST_F(PosixFileSystemTest, returnsTheStampOfWhatItWrote)
{
    const auto stamp = files.write(path(QStringLiteral("a.json")), "text");
    ASSERT_TRUE(stamp);
    EXPECT_EQ(stamp, files.stamp(path(QStringLiteral("a.json"))));
    EXPECT_EQ(stamp->size, 4);
}

TEST_F(PosixFileSystemTest, takesAnotherTemporaryNameWhenTheFirstIsTaken)
{
    calls.failAt(Kind::openTemporary, EEXIST);
    files.write(path(QStringLiteral("a.json")), "text");
    EXPECT_TRUE(calls.hasFailed);
    EXPECT_EQ(get(QStringLiteral("a.json")), "text");
}

TEST_F(PosixFileSystemTest, finishesShortAndInterruptedWrites)
{
    calls.longestWrite = 3;
    calls.isInterrupted = true;
    files.write(path(QStringLiteral("a.json")), "a longer text");
    EXPECT_EQ(get(QStringLiteral("a.json")), "a longer text");
    EXPECT_EQ(files.read(path(QStringLiteral("a.json"))).bytes.view(),
              QByteArrayView("a longer text"));
}

TEST_F(PosixFileSystemTest, writesWhatASourceGivesPieceByPiece)
{
    put(QStringLiteral("a.json"), "old");
    const auto stamp = files.write(path(QStringLiteral("a.json")), [&](const ByteSink& sink) {
        sink("some");
        sink("");
        EXPECT_EQ(get(QStringLiteral("a.json")), "old");
        sink("thing new");
    });
    EXPECT_EQ(get(QStringLiteral("a.json")), "something new");
    EXPECT_EQ(stamp, files.stamp(path(QStringLiteral("a.json"))));
}

TEST_F(PosixFileSystemTest, theDiskWorksWhileALargeFileIsBeingMade)
{
    const QByteArray piece(100'000, 'x');
    const auto source = [&](const ByteSink& sink) {
        for (int i = 0; i < 31; ++i)
            sink(piece);
    };
    files.write(path(QStringLiteral("a.json")), source);
    EXPECT_EQ(calls.startedFlushes, 2) << "at each MiB";
    EXPECT_EQ(get(QStringLiteral("a.json")), piece.repeated(31));

    // Not every file system can; the flush at the end is what counts.
    calls.failAt(Kind::startFlush, ENOSYS);
    files.write(path(QStringLiteral("b.json")), source);
    EXPECT_TRUE(calls.hasFailed);
    EXPECT_EQ(get(QStringLiteral("b.json")), piece.repeated(31));
}

TEST_F(PosixFileSystemTest, aFileThatIsLargeAlreadyIsWrittenInLargeBlocks)
{
    constexpr qsizetype block = qsizetype{2} << 20;
    constexpr int count = 45;
    constexpr qsizetype pieceSize = 100'000;
    QByteArray expected;
    const auto source = [&](const ByteSink& sink) {
        for (int i = 0; i < count; ++i)
            sink(QByteArray(pieceSize, static_cast<char>('0' + i)));
    };
    source([&](QByteArrayView piece) { expected.append(piece); });

    put(QStringLiteral("a.json"), QByteArray(block - 1, 'o'));
    files.write(path(QStringLiteral("a.json")), source);
    EXPECT_EQ(calls.writtenSizes, std::vector<size_t>(count, pieceSize)) << "it was small";
    EXPECT_EQ(get(QStringLiteral("a.json")), expected);

    calls.writtenSizes.clear();
    calls.startedFlushes = 0;
    files.write(path(QStringLiteral("a.json")), source);
    EXPECT_EQ(calls.writtenSizes,
              (std::vector<size_t>{block, block, count * pieceSize - 2 * block}));
    EXPECT_EQ(calls.startedFlushes, 2);
    EXPECT_EQ(get(QStringLiteral("a.json")), expected);

    // One piece of more than a block, in writes that take less than they are given.
    calls.longestWrite = 1'000'000;
    files.write(path(QStringLiteral("a.json")), expected + "end");
    EXPECT_EQ(get(QStringLiteral("a.json")), expected + "end");

    files.write(path(QStringLiteral("a.json")), "");
    EXPECT_EQ(get(QStringLiteral("a.json")), "");
}

TEST_F(PosixFileSystemTest, aBlockThatFailsLeavesTheOldFileWholeAndNoLitter)
{
    const QByteArray old(5 << 20, 'o');
    put(QStringLiteral("a.json"), old);
    const auto expectNoHarm = [&] {
        EXPECT_EQ(get(QStringLiteral("a.json")), old);
        EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
    };
    constexpr int blocks = 3; // the last one not full
    for (int good = 0; good < blocks; ++good) {
        calls.failAt(Kind::write, ENOSPC, good);
        const QString description =
            failure([&] { files.write(path(QStringLiteral("a.json")), QByteArray(5 << 20, 'n')); });
        EXPECT_TRUE(calls.hasFailed);
        EXPECT_TRUE(description.contains(QString::fromUtf8(std::strerror(ENOSPC)))) << good;
        expectNoHarm();
    }

    calls.writtenSizes.clear();
    EXPECT_THROW(files.write(path(QStringLiteral("a.json")),
                             [](const ByteSink& sink) {
                                 sink("half of");
                                 throw std::bad_alloc();
                             }),
                 std::bad_alloc);
    EXPECT_TRUE(calls.writtenSizes.empty());
    expectNoHarm();
}

TEST_F(PosixFileSystemTest, aSourceOrAPieceThatFailsLeavesTheOldFileWholeAndNoLitter)
{
    put(QStringLiteral("a.json"), "old");
    EXPECT_THROW(files.write(path(QStringLiteral("a.json")),
                             [](const ByteSink& sink) {
                                 sink("half of");
                                 throw std::bad_alloc();
                             }),
                 std::bad_alloc);
    EXPECT_EQ(get(QStringLiteral("a.json")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});

    calls.failAt(Kind::write, ENOSPC, 1);
    failure([&] {
        files.write(path(QStringLiteral("a.json")), [](const ByteSink& sink) {
            sink("half of ");
            sink("something");
        });
    });
    EXPECT_TRUE(calls.hasFailed);
    EXPECT_EQ(get(QStringLiteral("a.json")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
}

TEST_F(PosixFileSystemTest, anyFailedStepLeavesTheOldFileWholeAndNoLitter)
{
    put(QStringLiteral("a.json"), "old");
    ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), 0640), 0);
    calls.longestWrite = 4;
    int failures = 0;
    for (const Kind kind : {Kind::openTemporary, Kind::write, Kind::fstat, Kind::fchmod,
                            Kind::fdatasync, Kind::rename}) {
        for (const int number : {ENOSPC, EIO, EDQUOT, EROFS}) {
            for (int nth = 0; nth < 4; ++nth) {
                calls.failAt(kind, number, nth);
                const auto before = files.stamp(path(QStringLiteral("a.json")));
                try {
                    files.write(path(QStringLiteral("a.json")), "something new");
                    put(QStringLiteral("a.json"), "old");
                } catch (const FileError& error) {
                    ++failures;
                    EXPECT_TRUE(calls.hasFailed);
                    EXPECT_TRUE(error.description().contains(path(QStringLiteral("a.json"))));
                    EXPECT_TRUE(
                        error.description().contains(QString::fromLocal8Bit(strerror(number))))
                        << error.what();
                    EXPECT_EQ(files.stamp(path(QStringLiteral("a.json"))), before);
                }
                EXPECT_EQ(get(QStringLiteral("a.json")), "old");
                EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
            }
        }
    }
    EXPECT_GE(failures, 4 * (1 + 4 + 1 + 1 + 1 + 1));
}

TEST_F(PosixFileSystemTest, aFailedWriteOfANewFileLeavesNothing)
{
    for (const Kind kind : {Kind::openTemporary, Kind::write, Kind::fdatasync, Kind::rename}) {
        calls.failAt(kind, ENOSPC);
        failure([&] { files.write(path(QStringLiteral("a.json")), "new"); });
        EXPECT_EQ(names(), QStringList());
    }
}

TEST_F(PosixFileSystemTest, aFolderThatCannotBeFlushedFailsWithTheNewFileWhole)
{
    put(QStringLiteral("a.json"), "old");
    for (const Kind kind : {Kind::openFolder, Kind::fsync}) {
        calls.failAt(kind, EIO);
        failure([&] { files.write(path(QStringLiteral("a.json")), "new"); });
        EXPECT_EQ(get(QStringLiteral("a.json")), "new");
        EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
    }
}

TEST_F(PosixFileSystemTest, whatAFileSystemCannotDoIsNoFailure)
{
    put(QStringLiteral("a.json"), "old");
    ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), 0640), 0);
    const auto worksDespite = [&](Kind kind, int number) {
        calls.failAt(kind, number);
        files.write(path(QStringLiteral("a.json")), QByteArray::number(number));
        EXPECT_TRUE(calls.hasFailed);
        EXPECT_EQ(get(QStringLiteral("a.json")), QByteArray::number(number));
        ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), 0640), 0);
    };
    worksDespite(Kind::fsync, EINVAL);
    worksDespite(Kind::fchmod, EPERM);
    worksDespite(Kind::fchmod, EOPNOTSUPP);
    worksDespite(Kind::openFolder, EACCES);
}

/// Runs the action in a child process and gives its result, or nothing when it did not end well.
std::optional<int> inChild(const std::function<int()>& action)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(action());
    int status = 0;
    if (::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return std::nullopt;
    return WEXITSTATUS(status);
}

TEST_F(PosixFileSystemTest, aFileThatMayNotGrowKeepsTheOldOneWhole)
{
    put(QStringLiteral("a.json"), "old");
    const auto result = inChild([&] {
        const struct ::rlimit limit {
            4096, 4096
        };
        (void)::signal(SIGXFSZ, SIG_IGN);
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            return 2;
        try {
            files.write(path(QStringLiteral("a.json")), QByteArray(10'000, 'x'));
        } catch (const FileError&) {
            return 0;
        }
        return 1;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(get(QStringLiteral("a.json")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
}

/// What a user without privileges meets; the tests may run as one with all of them.
class AsNobody : public PosixFileSystemTest {
protected:
    static constexpr uid_t nobody = 65534;

    template <typename Action>
    std::optional<int> run(Action action)
    {
        return inChild([&] {
            if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
                return 2;
            try {
                action();
            } catch (const FileError&) {
                return 0;
            }
            return 1;
        });
    }

    void setMode(const QString& name, mode_t newMode) const
    {
        ASSERT_EQ(::chmod(path(name).toUtf8().constData(), newMode), 0);
    }
};

TEST_F(AsNobody, anUnreadableFileIsAFailure)
{
    setMode(QStringLiteral("."), 0755);
    put(QStringLiteral("a.json"), "old");
    setMode(QStringLiteral("a.json"), 0000);
    EXPECT_EQ(run([&] { (void)files.read(path(QStringLiteral("a.json"))); }), 0);
}

TEST_F(AsNobody, aReadOnlyFolderIsAFailure)
{
    put(QStringLiteral("a.json"), "old");
    setMode(QStringLiteral("a.json"), 0666);
    setMode(QStringLiteral("."), 0555);
    EXPECT_EQ(run([&] { files.write(path(QStringLiteral("a.json")), "new"); }), 0);
    EXPECT_EQ(run([&] { files.remove(path(QStringLiteral("a.json"))); }), 0);
    EXPECT_EQ(run([&] {
                  if (!files.isWritable(folder.path()))
                      files.createFolders(path(QStringLiteral("sub")));
              }),
              0);
    setMode(QStringLiteral("."), 0755);
    EXPECT_EQ(get(QStringLiteral("a.json")), "old");
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
}

TEST_F(AsNobody, aFolderThatCanOnlyBeWrittenTakesAFile)
{
    setMode(QStringLiteral("."), 0333);
    EXPECT_EQ(run([&] { files.write(path(QStringLiteral("a.json")), "new"); }), 1);
    setMode(QStringLiteral("."), 0755);
    EXPECT_EQ(get(QStringLiteral("a.json")), "new");
}

TEST_F(PosixFileSystemTest, refusesToWriteOverAnythingButAFile)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder")));
    ASSERT_EQ(::mkfifo(path(QStringLiteral("pipe")).toUtf8().constData(), 0600), 0);
    for (const char* name : {"folder", "pipe"}) {
        failure([&] { files.write(path(QLatin1StringView(name)), "new"); });
    }
    EXPECT_EQ(names(), (QStringList{QStringLiteral("folder"), QStringLiteral("pipe")}));
    EXPECT_TRUE(files.isFolder(path(QStringLiteral("folder"))));
}

TEST_F(PosixFileSystemTest, readsOnlyRegularFilesAndNeverWaits)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder.json")));
    ASSERT_EQ(::mkfifo(path(QStringLiteral("pipe.json")).toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::symlink("nowhere", path(QStringLiteral("link.json")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("/dev/zero", path(QStringLiteral("device.json")).toUtf8().constData()), 0);
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    struct ::sockaddr_un address {};
    address.sun_family = AF_UNIX;
    const QByteArray socketPath = path(QStringLiteral("s.json")).toUtf8();
    ASSERT_LT(static_cast<size_t>(socketPath.size()), sizeof(address.sun_path));
    std::copy(socketPath.begin(), socketPath.end(), address.sun_path);
    ASSERT_EQ(
        ::bind(listener, reinterpret_cast<const struct ::sockaddr*>(&address), sizeof(address)), 0);
    for (const char* name :
         {"folder.json", "pipe.json", "link.json", "device.json", "s.json", "missing.json"}) {
        const QString text = failure([&] { (void)files.read(path(QLatin1StringView(name))); });
        EXPECT_TRUE(text.contains(path(QLatin1StringView(name)))) << text.toStdString();
        EXPECT_EQ(files.stamp(path(QLatin1StringView(name))), std::nullopt);
    }
    EXPECT_TRUE(calls.openedPaths.isEmpty());
    ::close(listener);
}

TEST_F(PosixFileSystemTest, readsThroughALink)
{
    put(QStringLiteral("target"), "text");
    ASSERT_EQ(::symlink("target", path(QStringLiteral("a.json")).toUtf8().constData()), 0);
    EXPECT_EQ(files.read(path(QStringLiteral("a.json"))).bytes.view(), QByteArrayView("text"));
    EXPECT_EQ(files.stamp(path(QStringLiteral("a.json"))),
              files.stamp(path(QStringLiteral("target"))));
}

TEST_F(PosixFileSystemTest, refusesAHugeFileBeforeReadingIt)
{
    put(QStringLiteral("huge.json"), "x");
    ASSERT_EQ(::truncate(path(QStringLiteral("huge.json")).toUtf8().constData(),
                         FileSystem::largestFile + 1),
              0);
    const QString text = failure([&] { (void)files.read(path(QStringLiteral("huge.json"))); });
    EXPECT_TRUE(text.contains(QStringLiteral("larger than 1 GiB")));
    EXPECT_TRUE(calls.openedPaths.isEmpty());
}

TEST_F(PosixFileSystemTest, aFileThatMemoryCannotHoldIsAFailure)
{
    put(QStringLiteral("large.json"), "x");
    calls.whileReading = [] { throw std::bad_alloc(); };
    const QString text = failure([&] { (void)files.read(path(QStringLiteral("large.json"))); });
    EXPECT_TRUE(text.contains(QString::fromUtf8(std::strerror(ENOMEM))));
}

TEST_F(PosixFileSystemTest, readsAgainWhenTheFileChangesMeanwhile)
{
    put(QStringLiteral("a.json"), "one");
    int changes = 1;
    calls.whileReading = [&] {
        if (changes-- > 0)
            put(QStringLiteral("a.json"), "two and more");
    };
    const FileContents contents = files.read(path(QStringLiteral("a.json")));
    EXPECT_EQ(contents.bytes.view(), QByteArrayView("two and more"));
    EXPECT_EQ(contents.stamp, files.stamp(path(QStringLiteral("a.json"))));
}

TEST_F(PosixFileSystemTest, givesUpOnAFileThatKeepsChanging)
{
    put(QStringLiteral("a.json"), "one");
    qsizetype length = 3;
    calls.whileReading = [&] { put(QStringLiteral("a.json"), QByteArray(++length, 'x')); };
    const QString text = failure([&] { (void)files.read(path(QStringLiteral("a.json"))); });
    EXPECT_TRUE(text.contains(QStringLiteral("keeps changing")));
    EXPECT_EQ(length, 3 + 3);
}

TEST_F(PosixFileSystemTest, readsAnEmptyFile)
{
    put(QStringLiteral("a.json"), "");
    EXPECT_EQ(files.read(path(QStringLiteral("a.json"))).bytes.size(), 0u);
}

TEST_F(PosixFileSystemTest, digestsWhatItWouldRead)
{
    for (const qsizetype size : {qsizetype{0}, qsizetype{1}, Digest::pieceSize - 1,
                                 Digest::pieceSize, 3 * Digest::pieceSize + 7}) {
        put(QStringLiteral("a.json"), QByteArray(size, 'x'));
        const FileContents contents = files.read(path(QStringLiteral("a.json")));
        const FileDigest digest = files.digest(path(QStringLiteral("a.json")));
        EXPECT_EQ(digest.digest, Digest::of(contents.bytes.view())) << size;
        EXPECT_EQ(digest.stamp, contents.stamp);
    }
    EXPECT_FALSE(failure([&] { (void)files.digest(path(QStringLiteral("b.json"))); }).isEmpty());
}

TEST_F(PosixFileSystemTest, digestsAgainWhenTheFileChangesMeanwhile)
{
    put(QStringLiteral("a.json"), "one");
    int changes = 1;
    calls.whileReading = [&] {
        if (changes-- > 0)
            put(QStringLiteral("a.json"), "two and more");
    };
    EXPECT_EQ(files.digest(path(QStringLiteral("a.json"))).digest, Digest::of("two and more"));
}

TEST_F(PosixFileSystemTest, tellsTheMachinesTimeBeforeTheReading)
{
    const Date before = SystemClock::shared().now();
    put(QStringLiteral("a.json"), "text");
    const FileContents contents = files.read(path(QStringLiteral("a.json")));
    EXPECT_GE(contents.readAt, before);
    EXPECT_LE(contents.readAt, SystemClock::shared().now());
    EXPECT_GT(contents.precision.slack.count(), 0);
}

TEST_F(PosixFileSystemTest, listsHiddenNamesFoldersAndLinks)
{
    put(QStringLiteral(".hidden.json"), "");
    put(QStringLiteral("Ünï.json"), "");
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("sub")));
    ASSERT_EQ(::symlink("nowhere", path(QStringLiteral("link")).toUtf8().constData()), 0);
    QStringList listed = files.list(folder.path());
    listed.sort();
    EXPECT_EQ(listed, (QStringList{QStringLiteral(".hidden.json"), QStringLiteral("link"),
                                   QStringLiteral("sub"), QStringLiteral("Ünï.json")}));
}

TEST_F(PosixFileSystemTest, listingWhatIsNoFolderFails)
{
    put(QStringLiteral("file"), "");
    for (const char* name : {"file", "missing"}) {
        const QString text = failure([&] { (void)files.list(path(QLatin1StringView(name))); });
        EXPECT_TRUE(text.contains(path(QLatin1StringView(name))));
    }
}

TEST_F(PosixFileSystemTest, movesNeverOntoAnotherFile)
{
    put(QStringLiteral("a"), "a");
    put(QStringLiteral("b"), "b");
    const auto check = [&] {
        failure([&] { files.move(path(QStringLiteral("a")), path(QStringLiteral("b"))); });
        failure([&] { files.move(path(QStringLiteral("a")), path(QStringLiteral("a"))); });
        failure([&] { files.move(path(QStringLiteral("x")), path(QStringLiteral("y"))); });
        EXPECT_EQ(get(QStringLiteral("a")), "a");
        EXPECT_EQ(get(QStringLiteral("b")), "b");
        files.move(path(QStringLiteral("a")), path(QStringLiteral("c")));
        EXPECT_EQ(get(QStringLiteral("c")), "a");
        EXPECT_EQ(names(), (QStringList{QStringLiteral("b"), QStringLiteral("c")}));
        ASSERT_TRUE(QFile::rename(path(QStringLiteral("c")), path(QStringLiteral("a"))));
    };
    check();
}

/// File systems that lack the calls by which a move can refuse to overwrite.
class OldFileSystemCalls final : public FileCalls {
public:
    bool hasLinks = true;

    int renameWithoutReplacing(const char*, const char*) override
    {
        errno = EINVAL;
        return -1;
    }
    int link(const char* from, const char* to) override
    {
        if (hasLinks)
            return FileCalls::link(from, to);
        errno = EPERM;
        return -1;
    }
};

TEST_F(PosixFileSystemTest, movesNeverOntoAnotherFileOnOldFileSystems)
{
    OldFileSystemCalls oldCalls;
    PosixFileSystem oldFiles(oldCalls);
    for (const bool hasLinks : {true, false}) {
        oldCalls.hasLinks = hasLinks;
        put(QStringLiteral("a"), "a");
        put(QStringLiteral("b"), "b");
        failure([&] { oldFiles.move(path(QStringLiteral("a")), path(QStringLiteral("b"))); });
        failure([&] { oldFiles.move(path(QStringLiteral("a")), path(QStringLiteral("a"))); });
        failure([&] { oldFiles.move(path(QStringLiteral("x")), path(QStringLiteral("y"))); });
        EXPECT_EQ(get(QStringLiteral("a")), "a");
        EXPECT_EQ(get(QStringLiteral("b")), "b");
        oldFiles.move(path(QStringLiteral("a")), path(QStringLiteral("c")));
        EXPECT_EQ(get(QStringLiteral("c")), "a");
        EXPECT_EQ(names(), (QStringList{QStringLiteral("b"), QStringLiteral("c")}));
        ASSERT_TRUE(QFile::remove(path(QStringLiteral("c"))));
    }
}

TEST_F(PosixFileSystemTest, removesFilesAndLinksButNoFolders)
{
    put(QStringLiteral("a"), "a");
    ASSERT_EQ(::symlink("a", path(QStringLiteral("link")).toUtf8().constData()), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("sub")));
    files.remove(path(QStringLiteral("link")));
    EXPECT_EQ(get(QStringLiteral("a")), "a");
    files.remove(path(QStringLiteral("a")));
    failure([&] { files.remove(path(QStringLiteral("a"))); });
    failure([&] { files.remove(path(QStringLiteral("sub"))); });
    EXPECT_EQ(names(), QStringList{QStringLiteral("sub")});
}

TEST_F(PosixFileSystemTest, createsFoldersWithThoseAbove)
{
    files.createFolders(path(QStringLiteral("a/b/c")));
    EXPECT_TRUE(files.isFolder(path(QStringLiteral("a/b/c"))));
    files.createFolders(path(QStringLiteral("a/b/c")));
    put(QStringLiteral("file"), "");
    failure([&] { files.createFolders(path(QStringLiteral("file/sub"))); });
}

TEST_F(PosixFileSystemTest, aZeroByteInAPathCutsNothingOff)
{
    put(QStringLiteral("a"), "old");
    const QString cut = path(QStringLiteral("a")) + QChar(u'\0') + QStringLiteral(".json");
    EXPECT_FALSE(files.exists(cut));
    EXPECT_FALSE(files.isFolder(cut));
    EXPECT_FALSE(files.isWritable(cut));
    EXPECT_EQ(files.stamp(cut), std::nullopt);
    failure([&] { files.write(cut, "new"); });
    failure([&] { (void)files.read(cut); });
    failure([&] { files.remove(cut); });
    EXPECT_EQ(get(QStringLiteral("a")), "old");
}

TEST_F(PosixFileSystemTest, stampsDifferAfterARestoredModificationTime)
{
    put(QStringLiteral("a"), "one");
    const auto before = files.stamp(path(QStringLiteral("a")));
    struct ::stat status {};
    ASSERT_EQ(::stat(path(QStringLiteral("a")).toUtf8().constData(), &status), 0);
    // Until the clock of the file system has moved on.
    do {
        put(QStringLiteral("a"), "two");
        const struct ::timespec times[] = {status.st_atim, status.st_mtim};
        ASSERT_EQ(::utimensat(AT_FDCWD, path(QStringLiteral("a")).toUtf8().constData(), times, 0),
                  0);
    } while (files.stamp(path(QStringLiteral("a"))) == before);
    const auto after = files.stamp(path(QStringLiteral("a")));
    EXPECT_EQ(after->modified, before->modified);
    EXPECT_EQ(after->inode, before->inode);
    EXPECT_NE(after->changed, before->changed);
}

TEST_F(PosixFileSystemTest, aTimeThatADateCannotHoldIsTheFarthestThatItCan)
{
    put(QStringLiteral("a"), "");
    const struct ::timespec farAhead = {13'000'000'000, 999'999'999}; // in the year 2381
    const struct ::timespec times[] = {farAhead, farAhead};
    ASSERT_EQ(::utimensat(AT_FDCWD, path(QStringLiteral("a")).toUtf8().constData(), times, 0), 0);
    // File systems that cannot keep this year put the last one that they can in its place.
    EXPECT_GT(files.stamp(path(QStringLiteral("a")))->modified, SystemClock::shared().now());
    EXPECT_EQ(files.read(path(QStringLiteral("a"))).stamp, files.stamp(path(QStringLiteral("a"))));
}

// Copying

TEST_F(PosixFileSystemTest, copiesContentsModeAndTime)
{
    for (const qsizetype size : {qsizetype{0}, qsizetype{1}, qsizetype{4096}, qsizetype{300'001}}) {
        for (const mode_t wanted : {mode_t{0644}, mode_t{0600}, mode_t{0440}}) {
            const QByteArray bytes(size, 'x');
            put(QStringLiteral("a.json"), bytes);
            ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), wanted), 0);
            files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
            EXPECT_EQ(get(QStringLiteral("b.json")), bytes);
            EXPECT_EQ(mode(QStringLiteral("b.json")), wanted);
            EXPECT_EQ(files.stamp(path(QStringLiteral("a.json")))->modified,
                      files.stamp(path(QStringLiteral("b.json")))->modified);
            EXPECT_FALSE(
                files.isSame(path(QStringLiteral("a.json")), path(QStringLiteral("b.json"))));
            ASSERT_TRUE(QFile::remove(path(QStringLiteral("a.json"))));
            ASSERT_TRUE(QFile::remove(path(QStringLiteral("b.json"))));
        }
    }
}

TEST_F(PosixFileSystemTest, copiesByReadingAndWritingWhereTheSystemCannotCopy)
{
    const QByteArray bytes(700'000, 'y');
    put(QStringLiteral("a.json"), bytes);
    for (const int number : {EXDEV, EINVAL, ENOSYS, EOPNOTSUPP, EPERM}) {
        calls.failAt(Kind::copyFileRange, number);
        files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
        EXPECT_TRUE(calls.hasFailed);
        EXPECT_EQ(get(QStringLiteral("b.json")), bytes);
    }
    // Some file systems claim to copy and do nothing; others stop halfway.
    calls.failAt(Kind::none, 0);
    for (const size_t longest : {size_t{0}, size_t{1000}}) {
        calls.longestCopy = longest;
        calls.goodCopies = 3;
        files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
        EXPECT_EQ(get(QStringLiteral("b.json")), bytes);
    }
}

TEST_F(PosixFileSystemTest, finishesShortAndInterruptedCopies)
{
    put(QStringLiteral("a.json"), "a longer text");
    calls.longestCopy = 3;
    calls.isInterrupted = true;
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    EXPECT_EQ(get(QStringLiteral("b.json")), "a longer text");
}

TEST_F(PosixFileSystemTest, aCopyReplacesAFileOfThatName)
{
    put(QStringLiteral("a.json"), "new");
    put(QStringLiteral("b.json"), "something older");
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    EXPECT_EQ(get(QStringLiteral("b.json")), "new");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.json"), QStringLiteral("b.json")}));
    // Onto itself as well.
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("a.json")));
    EXPECT_EQ(get(QStringLiteral("a.json")), "new");
}

TEST_F(PosixFileSystemTest, aFileIsOnTheDiskBeforeItReplacesAnother)
{
    put(QStringLiteral("a.json"), "new");
    calls.failAt(Kind::fdatasync, EIO);
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    EXPECT_FALSE(calls.hasFailed);
    put(QStringLiteral("b.json"), "old");
    failure([&] { files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json"))); });
    EXPECT_EQ(get(QStringLiteral("b.json")), "old");
}

TEST_F(PosixFileSystemTest, aCopyTakesThePlaceOfALinkAndLeavesWhatItLedTo)
{
    put(QStringLiteral("a.json"), "new");
    put(QStringLiteral("elsewhere"), "precious");
    for (const char* target : {"elsewhere", "a.json", "nowhere"}) {
        ASSERT_EQ(::symlink(target, path(QStringLiteral("b.json")).toUtf8().constData()), 0);
        files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
        EXPECT_FALSE(QFileInfo(path(QStringLiteral("b.json"))).isSymLink());
        EXPECT_EQ(get(QStringLiteral("b.json")), "new");
        EXPECT_EQ(get(QStringLiteral("a.json")), "new");
        EXPECT_EQ(get(QStringLiteral("elsewhere")), "precious");
        EXPECT_FALSE(QFile::exists(path(QStringLiteral("nowhere"))));
        ASSERT_TRUE(QFile::remove(path(QStringLiteral("b.json"))));
    }
}

TEST_F(PosixFileSystemTest, aCopyOfALinkIsAFile)
{
    put(QStringLiteral("target"), "text");
    ASSERT_EQ(::symlink("target", path(QStringLiteral("a.json")).toUtf8().constData()), 0);
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    EXPECT_FALSE(QFileInfo(path(QStringLiteral("b.json"))).isSymLink());
    EXPECT_EQ(get(QStringLiteral("b.json")), "text");
}

TEST_F(PosixFileSystemTest, aCopyNeverTakesThePlaceOfAFolder)
{
    put(QStringLiteral("a.json"), "new");
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("b.json/inside")));
    const QString text = failure(
        [&] { files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json"))); });
    EXPECT_TRUE(text.contains(path(QStringLiteral("b.json")))) << text.toStdString();
    EXPECT_TRUE(QFileInfo(path(QStringLiteral("b.json/inside"))).isDir());
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.json"), QStringLiteral("b.json")}));
}

TEST_F(PosixFileSystemTest, copiesOnlyRegularFilesAndNeverWaits)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder.json")));
    ASSERT_EQ(::mkfifo(path(QStringLiteral("pipe.json")).toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::symlink("nowhere", path(QStringLiteral("link.json")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("loop.json", path(QStringLiteral("loop.json")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("/dev/zero", path(QStringLiteral("device.json")).toUtf8().constData()), 0);
    const QStringList before = names();
    for (const char* name :
         {"folder.json", "pipe.json", "link.json", "loop.json", "device.json", "missing.json"}) {
        const QString text = failure(
            [&] { files.copy(path(QLatin1StringView(name)), path(QStringLiteral("copy.json"))); });
        EXPECT_TRUE(text.contains(path(QLatin1StringView(name)))) << text.toStdString();
    }
    EXPECT_TRUE(calls.openedPaths.isEmpty());
    EXPECT_EQ(names(), before);
}

TEST_F(PosixFileSystemTest, copiesAFileThatIsTooLargeToBeRead)
{
    put(QStringLiteral("huge.json"), "x");
    ASSERT_EQ(::truncate(path(QStringLiteral("huge.json")).toUtf8().constData(),
                         FileSystem::largestFile + 1),
              0);
    // Pretending to copy is enough to see that the size is no reason to refuse.
    calls.isCopyingForShow = true;
    files.copy(path(QStringLiteral("huge.json")), path(QStringLiteral("copy.json")));
    EXPECT_EQ(calls.bytesForShow, FileSystem::largestFile + 1);
}

TEST_F(PosixFileSystemTest, anyFailedStepOfACopyLeavesTheTargetAsItWasAndNoLitter)
{
    put(QStringLiteral("a.json"), "something new");
    ASSERT_EQ(::chmod(path(QStringLiteral("a.json")).toUtf8().constData(), 0640), 0);
    calls.longestCopy = 4;
    calls.longestWrite = 4;
    int failures = 0;
    for (const bool isReplacing : {false, true}) {
        for (const Kind kind : {Kind::openTemporary, Kind::copyFileRange, Kind::fstat, Kind::fchmod,
                                Kind::fdatasync, Kind::close, Kind::rename}) {
            for (const int number : {ENOSPC, EIO, EDQUOT, EROFS}) {
                for (int nth = 0; nth < 4; ++nth) {
                    QFile::remove(path(QStringLiteral("b.json")));
                    if (isReplacing)
                        put(QStringLiteral("b.json"), "old");
                    const QStringList before = names();
                    const auto stamp = files.stamp(path(QStringLiteral("b.json")));
                    calls.failAt(kind, number, nth);
                    try {
                        files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
                        EXPECT_EQ(get(QStringLiteral("b.json")), "something new");
                    } catch (const FileError& error) {
                        ++failures;
                        EXPECT_TRUE(calls.hasFailed);
                        EXPECT_TRUE(
                            error.description().contains(QString::fromLocal8Bit(strerror(number))))
                            << error.what();
                        EXPECT_EQ(files.stamp(path(QStringLiteral("b.json"))), stamp);
                        EXPECT_EQ(names(), before);
                    }
                    calls.failAt(Kind::none, 0);
                    EXPECT_EQ(get(QStringLiteral("a.json")), "something new");
                }
            }
        }
    }
    // Each of the steps, with four numbers, in both cases; only a replacement is flushed.
    EXPECT_GE(failures, 2 * 4 * (1 + 4 + 3 + 1 + 1 + 1) + 4);
}

TEST_F(PosixFileSystemTest, aFullDiskIsToldWhenReadingAndWritingTakeOver)
{
    put(QStringLiteral("a.json"), "something new");
    put(QStringLiteral("b.json"), "old");
    calls.longestCopy = 0;
    calls.failAt(Kind::write, ENOSPC);
    const QString text = failure(
        [&] { files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json"))); });
    EXPECT_TRUE(text.contains(path(QStringLiteral("b.json")))) << text.toStdString();
    EXPECT_EQ(get(QStringLiteral("b.json")), "old");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.json"), QStringLiteral("b.json")}));
}

TEST_F(PosixFileSystemTest, copiesAgainWhenTheFileChangesMeanwhile)
{
    put(QStringLiteral("a.json"), "one");
    int changes = 1;
    calls.whileReading = [&] {
        if (changes-- > 0)
            put(QStringLiteral("a.json"), "two and more");
    };
    files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    EXPECT_EQ(get(QStringLiteral("b.json")), "two and more");

    qsizetype length = 3;
    put(QStringLiteral("b.json"), "old");
    calls.whileReading = [&] { put(QStringLiteral("a.json"), QByteArray(++length, 'x')); };
    const QString text = failure(
        [&] { files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json"))); });
    EXPECT_TRUE(text.contains(QStringLiteral("keeps changing")));
    EXPECT_EQ(get(QStringLiteral("b.json")), "old");
    EXPECT_EQ(names(), (QStringList{QStringLiteral("a.json"), QStringLiteral("b.json")}));
}

TEST_F(PosixFileSystemTest, tellsThatWhatWasCopiedDidNotReachTheDisk)
{
    files.flush(folder.path());
    for (const Kind kind : {Kind::openFolder, Kind::syncfs}) {
        calls.failAt(kind, EIO);
        const QString text = failure([&] { files.flush(folder.path()); });
        EXPECT_TRUE(text.contains(folder.path())) << text.toStdString();
    }
    calls.failAt(Kind::none, 0);
    failure([&] { files.flush(path(QStringLiteral("missing"))); });
}

TEST_F(AsNobody, copyingWhatMayNotBeReadOrToWhereNothingMayBeWrittenFails)
{
    put(QStringLiteral("a.json"), "text");
    setMode(QStringLiteral("a.json"), 0000);
    setMode(QStringLiteral("."), 0777);
    const auto copies = [&] {
        files.copy(path(QStringLiteral("a.json")), path(QStringLiteral("b.json")));
    };
    EXPECT_EQ(run(copies), 0);
    setMode(QStringLiteral("a.json"), 0644);
    setMode(QStringLiteral("."), 0555);
    EXPECT_EQ(run(copies), 0);
    setMode(QStringLiteral("."), 0777);
    EXPECT_EQ(names(), QStringList{QStringLiteral("a.json")});
    EXPECT_EQ(run(copies), 1);
    EXPECT_EQ(get(QStringLiteral("b.json")), "text");
}

TEST_F(PosixFileSystemTest, knowsTheSameFileByOtherNames)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("one/inside")));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("two")));
    ASSERT_EQ(::symlink("one", path(QStringLiteral("link")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("nowhere", path(QStringLiteral("dangling")).toUtf8().constData()), 0);
    const QString one = path(QStringLiteral("one"));
    for (const char* name : {"one", "one/", "link", "two/../one", "link/inside/.."})
        EXPECT_TRUE(files.isSame(one, path(QLatin1StringView(name)))) << name;
    for (const char* name : {"two", "link/inside", "dangling", "missing"})
        EXPECT_FALSE(files.isSame(one, path(QLatin1StringView(name)))) << name;
    EXPECT_FALSE(files.isSame(path(QStringLiteral("missing")), path(QStringLiteral("missing"))));
}

TEST_F(PosixFileSystemTest, looksAtALinkItselfAndOpensNothing)
{
    put(QStringLiteral("a"), "text");
    ASSERT_EQ(::mkfifo(path(QStringLiteral("pipe")).toUtf8().constData(), 0600), 0);
    ASSERT_EQ(::symlink("nowhere", path(QStringLiteral("link")).toUtf8().constData()), 0);
    EXPECT_EQ(files.attributes(path(QStringLiteral("a"))), files.stamp(path(QStringLiteral("a"))));
    EXPECT_EQ(files.attributes(path(QStringLiteral("link"))).size, 7);
    EXPECT_EQ(files.attributes(path(QStringLiteral("pipe"))).size, 0);
    EXPECT_GT(files.attributes(folder.path()).inode, 0u);
    const QString text = failure([&] { (void)files.attributes(path(QStringLiteral("missing"))); });
    EXPECT_TRUE(text.contains(path(QStringLiteral("missing"))));
    EXPECT_TRUE(calls.openedPaths.isEmpty());
}

TEST_F(PosixFileSystemTest, removesAFolderWithWhatIsInItAndFollowsNoLink)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("tree/inside")));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("outside")));
    put(QStringLiteral("outside/precious"), "text");
    put(QStringLiteral("tree/inside/file"), "");
    ASSERT_EQ(::symlink("../outside", path(QStringLiteral("tree/link")).toUtf8().constData()), 0);
    ASSERT_EQ(::symlink("outside", path(QStringLiteral("link")).toUtf8().constData()), 0);
    files.removeAll(path(QStringLiteral("tree")));
    files.removeAll(path(QStringLiteral("link")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("outside")});
    EXPECT_EQ(get(QStringLiteral("outside/precious")), "text");
    failure([&] { files.removeEmptyFolder(path(QStringLiteral("outside"))); });
    files.removeAll(path(QStringLiteral("outside/precious")));
    files.removeEmptyFolder(path(QStringLiteral("outside")));
    EXPECT_EQ(names(), QStringList());
    failure([&] { files.removeAll(path(QStringLiteral("outside"))); });
}

TEST_F(PosixFileSystemTest, removesItsOwnTemporaryFilesOnceTheyAreOld)
{
    files.write(path(QStringLiteral("a.json")), "text");
    const QString made =
        QString::fromUtf8(calls.openedPaths.first()).sliced(folder.path().size() + 1);
    ASSERT_TRUE(made.startsWith(QStringLiteral(".vellumry-"))) << made.toStdString();
    const QStringList leftovers{made, QStringLiteral(".vellumry-0000000000000"),
                                QStringLiteral(".vellumry-3w5e11264sgsf")};
    const QStringList others{QStringLiteral(".vellumry-"),
                             QStringLiteral(".vellumry-write-test"),
                             QStringLiteral(".vellumry-settings"),
                             QStringLiteral(".vellumry-ABCABCABCABCA"),
                             QStringLiteral(".vellumry-abcabcab.json"),
                             QStringLiteral(".vellumry-12345678901234"),
                             QStringLiteral(".vellumry"),
                             QStringLiteral("x.vellumry-abcabcabcabca"),
                             QStringLiteral("a.json")};
    for (const QString& name : leftovers + others)
        put(name, "text");
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral(".vellumry-folder0000000")));
    ASSERT_EQ(
        ::symlink("a.json", path(QStringLiteral(".vellumry-link000000000")).toUtf8().constData()),
        0);
    ASSERT_EQ(::mkfifo(path(QStringLiteral(".vellumry-pipe000000000")).toUtf8().constData(), 0600),
              0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("below")));
    put(QStringLiteral("below/.vellumry-0000000000000"), "text");
    const QStringList all = names();

    const Date now = SystemClock::shared().now();
    // What a copy under way has already given the time of its original.
    const struct ::timespec longAgo[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path(made).toUtf8().constData(), longAgo, 0), 0);
    files.removeLeftovers(folder.path(), now - std::chrono::hours(1));
    EXPECT_EQ(names(), all);

    files.removeLeftovers(folder.path(), now + std::chrono::hours(1));
    QStringList rest = all;
    for (const QString& name : leftovers)
        EXPECT_TRUE(rest.removeOne(name)) << name.toStdString();
    EXPECT_EQ(names(), rest);
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("below/.vellumry-0000000000000"))));

    files.removeLeftovers(path(QStringLiteral("missing")), now); // there is nothing to tell
}

} // namespace
