#include "platform/linux/InotifyFileEventStream.h"

#include "core/SerialQueue.h"
#include "platform/linux/PosixFileSystem.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QSaveFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <linux/magic.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/mount.h>
#include <unistd.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using Flag = FileEventStream::Flag;

constexpr std::chrono::milliseconds latency = 300ms;

/// The real calls, some of which fail or answer otherwise.
class OtherInotifyCalls final : public InotifyCalls {
public:
    int openFailure = 0;
    int watchFailure = 0;
    decltype(statfs::f_type) fileSystemType = EXT4_SUPER_MAGIC;
    /// Handed out before the real events.
    QByteArray injected;
    /// Whether the events are swallowed, as those of other machines never come.
    bool isDeaf = false;
    int mountTableFailure = 0;

    int open() override
    {
        errno = openFailure;
        return openFailure ? -1 : InotifyCalls::open();
    }
    int addWatch(int descriptor, const char* path, uint32_t mask) override
    {
        if (watchFailure == 0)
            return InotifyCalls::addWatch(descriptor, path, mask);
        errno = watchFailure;
        return -1;
    }
    ssize_t read(int descriptor, void* buffer, size_t count) override
    {
        if (isDeaf) {
            (void)InotifyCalls::read(descriptor, buffer, count);
            errno = EAGAIN;
            return -1;
        }
        if (injected.isEmpty())
            return InotifyCalls::read(descriptor, buffer, count);
        const QByteArray bytes = std::exchange(injected, {});
        std::memcpy(buffer, bytes.constData(), static_cast<size_t>(bytes.size()));
        return bytes.size();
    }
    int statfs(const char*, struct ::statfs* result) override
    {
        result->f_type = fileSystemType;
        return 0;
    }
    int openMountTable() override
    {
        errno = mountTableFailure;
        return mountTableFailure ? -1 : InotifyCalls::openMountTable();
    }
};

void put(const QString& path, const QByteArray& bytes,
         QIODevice::OpenMode mode = QIODevice::WriteOnly)
{
    QFile file(path);
    ASSERT_TRUE(file.open(mode));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

void moveTo(const QString& from, const QString& to)
{
    ASSERT_EQ(::rename(from.toUtf8().constData(), to.toUtf8().constData()), 0);
}

/// The stream on a real folder, with its queue on the test's own thread and time moved by hand.
class InotifyFileEventStreamTest : public testing::Test {
protected:
    void SetUp() override { QDir().mkpath(folder); }

    bool start()
    {
        stream = InotifyFileEventStream::create(
            {.folder = folder,
             .latency = latency,
             .queue = &queue,
             .callback =
                 [this](const QStringList& paths, const QList<quint32>& flags) {
                     ASSERT_EQ(paths.size(), flags.size());
                     batches.append(paths);
                     for (qsizetype i = 0; i < paths.size(); ++i)
                         told[paths[i].mid(folder.size() + 1)] |= flags[i];
                 }},
            scheduler, calls, FileSystem::local());
        return stream && stream->start();
    }

    [[nodiscard]] QString path(const QString& name) const { return folder + u'/' + name; }

    /// Lets the events come until the condition holds; time passes meanwhile.
    bool comesTrue(const std::function<bool()>& condition)
    {
        return eventually([&] {
            const bool isTrue = condition();
            if (!isTrue)
                scheduler.advance(latency);
            return isTrue;
        });
    }

    /// What is told of the files, by name, when this is done: all that there is, up to the making
    /// of one more file.
    QMap<QString, quint32> toldOf(const std::function<void()>& change)
    {
        told.clear();
        change();
        const QString last = QStringLiteral("last");
        put(path(last), {});
        EXPECT_TRUE(comesTrue([&] { return told.contains(last); }));
        scheduler.advance(latency);
        QFile::remove(path(last));
        EXPECT_TRUE(comesTrue([&] { return (told[last] & Flag::itemRemoved) != 0; }));
        told.remove(last);
        return std::exchange(told, {});
    }

    /// Whether what happens in the folder is heard.
    void expectEvents()
    {
        EXPECT_EQ(toldOf([&] { put(path(QStringLiteral("event")), "x"); }).keys(),
                  QStringList{QStringLiteral("event")});
    }

    /// Whether the folder itself is told to be another one, and its files are heard again.
    void expectRearmed()
    {
        EXPECT_TRUE(comesTrue([&] { return told.value({}) == Flag::itemCreated; }));
        EXPECT_EQ(toldOf([&] { put(path(QStringLiteral("again")), "x"); }),
                  (QMap<QString, quint32>{
                      {QStringLiteral("again"), Flag::itemCreated | Flag::itemModified}}));
    }

    QTemporaryDir directory;
    QString above = directory.filePath(QStringLiteral("above"));
    QString folder = above + QStringLiteral("/folder");
    QString elsewhere = directory.filePath(QStringLiteral("elsewhere"));
    ManualScheduler scheduler;
    OtherInotifyCalls calls;
    QObject queue;
    QMap<QString, quint32> told; ///< by name; the folder itself has none
    QList<QStringList> batches;
    std::unique_ptr<FileEventStream> stream;
};

struct Change {
    const char* what;
    std::function<void(const QString& folder, const QString& elsewhere)> make;
    QMap<QString, quint32> told;
};

void PrintTo(const Change& change, std::ostream* out)
{
    *out << change.what;
}

/// The folder holds old.json and the folder sub with inner.json; elsewhere is foreign.json.
class EachChange : public InotifyFileEventStreamTest, public testing::WithParamInterface<Change> {
protected:
    void SetUp() override
    {
        InotifyFileEventStreamTest::SetUp();
        QDir().mkpath(elsewhere);
        QDir().mkpath(path(QStringLiteral("sub")));
        put(path(QStringLiteral("old.json")), "old");
        put(path(QStringLiteral("sub/inner.json")), "inner");
        put(elsewhere + QStringLiteral("/foreign.json"), "foreign");
    }
};

TEST_P(EachChange, isToldAsWhatItIs)
{
    ASSERT_TRUE(start());
    EXPECT_EQ(toldOf([&] { GetParam().make(folder, elsewhere); }), GetParam().told);
}

const QString oldName = QStringLiteral("old.json");
const QString newName = QStringLiteral("new.json");
const QString subName = QStringLiteral("sub");

INSTANTIATE_TEST_SUITE_P(
    Changes, EachChange,
    testing::Values(
        Change{"made and written",
               [](const QString& in, const QString&) { put(in + u'/' + newName, "new"); },
               {{newName, Flag::itemCreated | Flag::itemModified}}},
        Change{"rewritten in place",
               [](const QString& in, const QString&) { put(in + u'/' + oldName, "other"); },
               {{oldName, Flag::itemModified}}},
        Change{"appended to",
               [](const QString& in, const QString&) {
                   put(in + u'/' + oldName, "more", QIODevice::Append);
               },
               {{oldName, Flag::itemModified}}},
        Change{"linked in whole under a new name",
               [](const QString& in, const QString&) {
                   QSaveFile file(in + u'/' + newName);
                   ASSERT_TRUE(file.open(QIODevice::WriteOnly));
                   ASSERT_EQ(file.write("new"), 3);
                   ASSERT_TRUE(file.commit());
               },
               {{newName, Flag::itemCreated}}},
        Change{"replaced from elsewhere",
               [](const QString& in, const QString& from) {
                   moveTo(from + QStringLiteral("/foreign.json"), in + u'/' + oldName);
               },
               {{oldName, Flag::itemRenamed}}},
        Change{
            "replaced from beside",
            [](const QString& in, const QString&) {
                put(in + QStringLiteral("/.part"), "other");
                moveTo(in + QStringLiteral("/.part"), in + u'/' + oldName);
            },
            {{QStringLiteral(".part"), Flag::itemCreated | Flag::itemModified | Flag::itemRenamed},
             {oldName, Flag::itemRenamed}}},
        Change{"moved in",
               [](const QString& in, const QString& from) {
                   moveTo(from + QStringLiteral("/foreign.json"), in + u'/' + newName);
               },
               {{newName, Flag::itemRenamed}}},
        Change{"moved within",
               [](const QString& in, const QString&) {
                   moveTo(in + u'/' + oldName, in + u'/' + newName);
               },
               {{oldName, Flag::itemRenamed}, {newName, Flag::itemRenamed}}},
        Change{"moved out",
               [](const QString& in, const QString& to) {
                   moveTo(in + u'/' + oldName, to + u'/' + oldName);
               },
               {{oldName, Flag::itemRenamed}}},
        Change{"removed",
               [](const QString& in, const QString&) { QFile::remove(in + u'/' + oldName); },
               {{oldName, Flag::itemRemoved}}},
        Change{"given other permissions and times",
               [](const QString& in, const QString&) {
                   const QByteArray file = (in + u'/' + oldName).toUtf8();
                   ASSERT_EQ(::chmod(file.constData(), 0400), 0);
                   ASSERT_EQ(::utimensat(AT_FDCWD, file.constData(), nullptr, 0), 0);
               },
               {}},
        Change{"the folder itself given other permissions",
               [](const QString& in, const QString&) {
                   ASSERT_EQ(::chmod(in.toUtf8().constData(), 0700), 0);
               },
               {}},
        Change{"a folder made",
               [](const QString& in, const QString&) { QDir(in).mkdir(newName); },
               {{newName, Flag::itemCreated | Flag::itemIsDirectory}}},
        Change{"a folder renamed",
               [](const QString& in, const QString&) {
                   moveTo(in + u'/' + subName, in + u'/' + newName);
               },
               {{subName, Flag::itemRenamed | Flag::itemIsDirectory},
                {newName, Flag::itemRenamed | Flag::itemIsDirectory}}},
        Change{"a folder removed",
               [](const QString& in, const QString&) {
                   QDir(in + u'/' + subName).removeRecursively();
               },
               {{subName, Flag::itemRemoved | Flag::itemIsDirectory}}},
        Change{"a file in a folder below",
               [](const QString& in, const QString&) {
                   put(in + QStringLiteral("/sub/inner.json"), "other");
               },
               {}},
        Change{"a link made",
               [](const QString& in, const QString&) {
                   QFile::link(in + u'/' + oldName, in + u'/' + newName);
               },
               {{newName, Flag::itemCreated}}},
        Change{"a removed file written by who still has it open",
               [](const QString& in, const QString&) {
                   QFile file(in + u'/' + oldName);
                   ASSERT_TRUE(file.open(QIODevice::ReadWrite));
                   ASSERT_EQ(::unlink((in + u'/' + oldName).toUtf8().constData()), 0);
                   file.write("nobody sees this");
               },
               {{oldName, Flag::itemRemoved}}}));

TEST_F(InotifyFileEventStreamTest, tellsOfAWriteOfTheProgramsOwn)
{
    put(path(oldName), "old");
    ASSERT_TRUE(start());
    FileCalls fileCalls;
    PosixFileSystem files(fileCalls);
    const auto changes = toldOf([&] { files.write(path(oldName), "new"); });
    // The new file is closed after it has taken its place.
    EXPECT_EQ(changes.value(oldName), Flag::itemRenamed | Flag::itemModified);
    EXPECT_EQ(changes.size(), 2) << "the temporary file is the other";
}

TEST_F(InotifyFileEventStreamTest, tellsWholePathsEvenOfOddNames)
{
    ASSERT_TRUE(start());
    const QString odd = QStringLiteral("two\nlines \u00e9\u4e2d.json");
    EXPECT_EQ(toldOf([&] { put(path(odd), {}); }).value(odd),
              Flag::itemCreated | Flag::itemModified);
    const QByteArray notText = folder.toUtf8() + "/\xff\xfe.json";
    EXPECT_EQ(
        toldOf([&] { ::close(::open(notText.constData(), O_CREAT | O_WRONLY, 0600)); }).size(), 1);
    ::unlink(notText.constData()); // which Qt cannot
}

// The latency

TEST_F(InotifyFileEventStreamTest, theFirstEventComesAtOnceAndTheNextAfterTheLatencyTogether)
{
    ASSERT_TRUE(start());
    put(path(QStringLiteral("a")), "x");
    EXPECT_TRUE(eventually([&] { return !batches.isEmpty(); }));
    ASSERT_EQ(batches.size(), 1) << "without any time having passed";

    put(path(QStringLiteral("b")), "x");
    put(path(QStringLiteral("c")), "x");
    put(path(QStringLiteral("b")), "y");
    QCoreApplication::processEvents();
    scheduler.advance(latency - 1ms);
    EXPECT_EQ(batches.size(), 1);
    scheduler.advance(1ms);
    ASSERT_EQ(batches.size(), 2);
    EXPECT_EQ(batches[1], (QStringList{path(QStringLiteral("b")), path(QStringLiteral("c"))}));

    scheduler.advance(latency);
    EXPECT_EQ(batches.size(), 2) << "there is nothing more to tell";
    EXPECT_EQ(scheduler.pending(), 0U) << "and nothing keeps the program awake";
}

// The folder comes and goes

TEST_F(InotifyFileEventStreamTest, waitsForAFolderThatIsNotThere)
{
    QDir(folder).removeRecursively();
    ASSERT_TRUE(start());
    scheduler.advance(10s);
    EXPECT_TRUE(batches.isEmpty());
    QDir().mkpath(folder);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, hearsAgainAfterTheFolderWasRemovedAndMade)
{
    put(path(oldName), "old");
    ASSERT_TRUE(start());
    QDir(folder).removeRecursively();
    EXPECT_TRUE(comesTrue([&] { return told.value(oldName) == Flag::itemRemoved; }));
    scheduler.advance(10s);
    QDir().mkpath(folder);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, hearsAgainAfterTheFolderWasReplacedAtOnce)
{
    ASSERT_TRUE(start());
    for (int turn = 0; turn < 5; ++turn) {
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
        expectRearmed();
        told.clear();
    }
}

TEST_F(InotifyFileEventStreamTest, hearsAgainAfterARemovedFolderThatIsStillOpenSomewhere)
{
    ASSERT_TRUE(start());
    const int open = ::open(folder.toUtf8().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    expectRearmed();
    ::close(open);
}

TEST_F(InotifyFileEventStreamTest, doesNotFollowTheFolderThatMovesAway)
{
    ASSERT_TRUE(start());
    moveTo(folder, elsewhere);
    put(elsewhere + QStringLiteral("/astray"), "x");
    QDir().mkpath(folder);
    expectRearmed();
    EXPECT_EQ(toldOf([&] { put(elsewhere + QStringLiteral("/astray"), "y"); }).size(), 0);
}

TEST_F(InotifyFileEventStreamTest, hearsTheFolderThatComesBack)
{
    ASSERT_TRUE(start());
    moveTo(folder, elsewhere);
    QCoreApplication::processEvents();
    scheduler.advance(10s);
    moveTo(elsewhere, folder);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, hearsAnotherFolderThatTakesItsPlace)
{
    QDir().mkpath(elsewhere);
    ASSERT_TRUE(start());
    moveTo(folder, directory.filePath(QStringLiteral("gone")));
    moveTo(elsewhere, folder);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, noticesThatAFolderAboveHasMoved)
{
    ASSERT_TRUE(start());
    moveTo(above, elsewhere);
    QDir().mkpath(folder);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, noticesThatALinkLeadsElsewhere)
{
    const QString first = directory.filePath(QStringLiteral("first"));
    const QString second = directory.filePath(QStringLiteral("second"));
    QDir().mkpath(first);
    QDir().mkpath(second);
    QDir(folder).removeRecursively();
    QFile::link(first, folder);
    ASSERT_TRUE(start());
    EXPECT_EQ(toldOf([&] { put(path(newName), "x"); }).size(), 1) << "a link is followed";
    const QString beside = directory.filePath(QStringLiteral("beside"));
    QFile::link(second, beside);
    moveTo(beside, folder);
    expectRearmed();
    EXPECT_TRUE(QFile::exists(second + QStringLiteral("/again")));
}

/// Links from one to the next, the last of which leads to a folder.
class LinkedFolderTest : public InotifyFileEventStreamTest {
protected:
    void SetUp() override
    {
        for (const char* name : {"first", "second", "deep/er"})
            QDir().mkpath(at(name));
    }

    [[nodiscard]] QString at(const char* name) const
    {
        return directory.filePath(QLatin1StringView(name));
    }

    /// Makes a link, or puts it in the place of the one that is there.
    void link(const QString& from, const QByteArray& target) const
    {
        const QByteArray beside = at("beside").toUtf8();
        ASSERT_EQ(::symlink(target.constData(), beside.constData()), 0);
        moveTo(at("beside"), from);
    }

    void expectToLeadTo(const char* name)
    {
        EXPECT_TRUE(QFile::exists(at(name) + QStringLiteral("/again")));
        QFile::remove(path(QStringLiteral("again")));
        EXPECT_TRUE(comesTrue([&] { return (told[QStringLiteral("again")] & Flag::itemRemoved); }));
        told.clear();
    }
};

TEST_F(LinkedFolderTest, noticesThatAnyLinkOfAChainLeadsElsewhere)
{
    folder = at("a");
    link(at("c"), "first"); // relative
    link(at("b"), at("c").toUtf8());
    link(at("a"), "./deep/../b");
    ASSERT_TRUE(start());
    expectEvents();
    link(at("c"), "second");
    expectRearmed();
    expectToLeadTo("second");
    link(at("b"), "first");
    expectRearmed();
    expectToLeadTo("first");
    link(at("a"), "second");
    expectRearmed();
    expectToLeadTo("second");
}

TEST_F(LinkedFolderTest, noticesThatALinkedFolderAboveLeadsElsewhere)
{
    for (const char* name : {"first/folder", "second/folder"})
        QDir().mkpath(at(name));
    link(at("middle"), at("first").toUtf8());
    link(at("deep/top"), "../middle");
    folder = at("deep/top/folder");
    ASSERT_TRUE(start());
    expectEvents();
    link(at("middle"), at("second").toUtf8());
    expectRearmed();
    expectToLeadTo("second/folder");
    moveTo(at("second"), at("gone"));
    QDir().mkpath(at("second/folder"));
    expectRearmed();
    expectToLeadTo("second/folder");
}

TEST_F(LinkedFolderTest, waitsForARingOfLinksToEnd)
{
    folder = at("a");
    link(at("a"), "b");
    link(at("b"), "a");
    EXPECT_FALSE(start()) << "as the system says of such a folder";
    QFile::remove(at("b"));
    ASSERT_TRUE(start());
    link(at("b"), "first");
    expectRearmed();
    expectToLeadTo("first");
}

/// Whether this process may mount, in a table of mounts of its own.
bool hasMountsOfItsOwn()
{
    return ::unshare(CLONE_NEWNS) == 0 &&
           ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

TEST_F(InotifyFileEventStreamTest, noticesMounts)
{
    if (!hasMountsOfItsOwn()) {
        // In a user namespace of its own, this very test has the right to.
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        const QString unshare = QStringLiteral("unshare");
        const QString alone = QStringLiteral("-Urm");
        ASSERT_FALSE(qEnvironmentVariableIsSet("VELLUMRY_TEST_MAY_MOUNT")) << reason.toStdString();
        if (QProcess::execute(unshare, {alone, QStringLiteral("true")}) != 0)
            GTEST_SKIP() << "mounting needs a privileged user: " << reason.toStdString();
        qputenv("VELLUMRY_TEST_MAY_MOUNT", "1");
        EXPECT_EQ(QProcess::execute(unshare, {alone, QCoreApplication::applicationFilePath(),
                                              QStringLiteral("--gtest_filter=*.noticesMounts")}),
                  0);
        return;
    }
    ASSERT_TRUE(start());
    const QByteArray native = folder.toUtf8();
    ASSERT_EQ(::mount("none", native.constData(), "tmpfs", 0, nullptr), 0);
    expectRearmed();
    told.clear();
    ASSERT_EQ(::umount(native.constData()), 0);
    expectRearmed();
}

TEST_F(InotifyFileEventStreamTest, hearsAllElseWithoutATableOfMounts)
{
    calls.mountTableFailure = ENOENT;
    ASSERT_TRUE(start());
    expectEvents();
}

// What the system may refuse

TEST_F(InotifyFileEventStreamTest, anOverflowOfTheKernelsQueueIsAChange)
{
    ASSERT_TRUE(start());
    struct ::inotify_event overflow {};
    overflow.wd = -1;
    overflow.mask = IN_Q_OVERFLOW;
    calls.injected = QByteArray(reinterpret_cast<const char*>(&overflow), sizeof overflow);
    const auto changes = toldOf([] {});
    EXPECT_EQ(changes, (QMap<QString, quint32>{{QString(), Flag::itemModified}}));
}

TEST_F(InotifyFileEventStreamTest, aRealOverflowIsAChangeAndHearingGoesOn)
{
    QFile limit(QStringLiteral("/proc/sys/fs/inotify/max_queued_events"));
    ASSERT_TRUE(limit.open(QIODevice::ReadOnly));
    const int queueLength = limit.readAll().trimmed().toInt();
    if (queueLength > 100'000)
        GTEST_SKIP() << "the kernel's queue is too long to be filled: " << queueLength;
    QFile one(path(QStringLiteral("one")));
    QFile other(path(QStringLiteral("other")));
    ASSERT_TRUE(one.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    ASSERT_TRUE(start());
    for (int i = 0; i < queueLength; ++i)
        (i % 2 == 0 ? one : other).write("x");
    QDir().mkpath(elsewhere);
    moveTo(path(QStringLiteral("one")), elsewhere + QStringLiteral("/one")); // goes unheard
    EXPECT_TRUE(comesTrue([&] { return told.contains({}); }));
    EXPECT_EQ(told.value({}), Flag::itemModified);
    EXPECT_EQ(toldOf([&] { put(path(newName), "x"); }).size(), 1);
}

TEST_F(InotifyFileEventStreamTest, withoutAnInstanceThereIsNoStream)
{
    calls.openFailure = EMFILE;
    EXPECT_FALSE(start());
    EXPECT_FALSE(stream);
}

TEST_F(InotifyFileEventStreamTest, withoutAWatchItDoesNotStart)
{
    calls.watchFailure = ENOSPC;
    EXPECT_FALSE(start());
    EXPECT_EQ(scheduler.pending(), 0U);
}

// A folder on a file server

/// What other machines do there is not heard.
class RemoteFolderTest : public InotifyFileEventStreamTest {
protected:
    void SetUp() override
    {
        InotifyFileEventStreamTest::SetUp();
        calls.fileSystemType = NFS_SUPER_MAGIC;
        put(path(oldName), "old");
        QDir().mkpath(path(subName));
    }

    /// What is told within the seconds after another machine has done something.
    QStringList foundAfter(const std::function<void()>& change)
    {
        told.clear();
        calls.isDeaf = true;
        change();
        QCoreApplication::processEvents();
        calls.isDeaf = false;
        scheduler.advance(5s);
        return told.keys();
    }

    const LogCapture log;
};

TEST_F(RemoteFolderTest, tellsThatChangesMayComeLate)
{
    ASSERT_TRUE(start());
    EXPECT_EQ(log.lines,
              QStringList{QStringLiteral(
                              "FileEventStream: 网络文件系统，其他设备的变化可能延迟或收不到 - ") +
                          folder});
}

TEST_F(RemoteFolderTest, looksEveryFiveSeconds)
{
    ASSERT_TRUE(start());
    calls.isDeaf = true;
    put(path(newName), "x");
    QCoreApplication::processEvents();
    scheduler.advance(5s - 1ms);
    EXPECT_TRUE(told.isEmpty());
    scheduler.advance(1ms);
    EXPECT_EQ(told, (QMap<QString, quint32>{{newName, Flag::itemModified}}));
}

TEST_F(RemoteFolderTest, findsWhatIsNotHeard)
{
    ASSERT_TRUE(start());
    EXPECT_EQ(foundAfter([] {}), QStringList());
    EXPECT_EQ(foundAfter([&] { put(path(newName), "x"); }), QStringList{newName});
    EXPECT_EQ(foundAfter([&] { put(path(oldName), "longer"); }), QStringList{oldName});
    EXPECT_EQ(foundAfter([&] { QFile::remove(path(newName)); }), QStringList{newName});
    EXPECT_EQ(foundAfter([&] { moveTo(path(oldName), path(newName)); }),
              (QStringList{newName, oldName}));
    EXPECT_EQ(foundAfter([&] { ::chmod(path(newName).toUtf8().constData(), 0400); }),
              QStringList());
    EXPECT_EQ(foundAfter([&] { QDir().mkpath(path(QStringLiteral("another"))); }), QStringList());
    const struct ::timespec times[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
    EXPECT_EQ(
        foundAfter([&] { ::utimensat(AT_FDCWD, path(newName).toUtf8().constData(), times, 0); }),
        QStringList{newName})
        << "of the same size";
}

TEST_F(RemoteFolderTest, doesNotTellAgainWhatWasHeard)
{
    ASSERT_TRUE(start());
    expectEvents();
    QFile::remove(path(oldName));
    EXPECT_TRUE(comesTrue([&] { return told.contains(oldName); }));
    EXPECT_EQ(foundAfter([] {}), QStringList());
}

TEST_F(RemoteFolderTest, noticesThatAnotherFolderStandsThere)
{
    ASSERT_TRUE(start());
    EXPECT_EQ(foundAfter([&] {
                  moveTo(folder, elsewhere);
                  QDir().mkpath(folder);
              }),
              QStringList{QString()})
        << "the folder itself";
    EXPECT_EQ(foundAfter([&] { put(path(newName), "x"); }), QStringList{newName});
}

TEST_F(RemoteFolderTest, looksAgainAfterAnotherStartAndNotMeanwhile)
{
    ASSERT_TRUE(start());
    scheduler.advance(3s);
    stream->stop();
    scheduler.advance(10s);
    EXPECT_EQ(scheduler.pending(), 0U);
    ASSERT_TRUE(stream->start());
    EXPECT_EQ(scheduler.pending(), 1U);
    EXPECT_EQ(foundAfter([&] { put(path(newName), "x"); }), QStringList{newName});
}

TEST_F(InotifyFileEventStreamTest, aFolderOfThisMachineIsHeardWithoutLooking)
{
    const LogCapture log;
    ASSERT_TRUE(start());
    EXPECT_EQ(scheduler.pending(), 0U) << "nothing wakes the program";
    EXPECT_EQ(log.lines, QStringList());
}

// The end

TEST_F(InotifyFileEventStreamTest, tellsNothingAfterTheStopAndHearsAgainAfterAnotherStart)
{
    ASSERT_TRUE(start());
    put(path(oldName), "x");
    EXPECT_TRUE(comesTrue([&] { return told.contains(oldName); }));
    put(path(newName), "x");
    stream->stop();
    told.clear();
    QCoreApplication::processEvents();
    scheduler.advance(10s);
    EXPECT_EQ(told.size(), 0);
    ASSERT_TRUE(stream->start());
    EXPECT_EQ(toldOf([&] { put(path(QStringLiteral("third")), {}); }).keys(),
              QStringList{QStringLiteral("third")});
}

TEST_F(InotifyFileEventStreamTest, worksOnAQueueOfItsOwn)
{
    SerialQueue thread(QStringLiteral("queue"));
    EventLoopScheduler realTime;
    std::atomic<int> count = 0;
    std::atomic<bool> isElsewhere = false;
    const auto threaded = InotifyFileEventStream::create(
        {.folder = folder,
         .latency = 1ms,
         .queue = &thread.context(),
         .callback =
             [&](const QStringList&, const QList<quint32>&) {
                 isElsewhere = isElsewhere || QThread::currentThread() == qApp->thread();
                 ++count;
             }},
        realTime, calls, FileSystem::local());
    for (int turn = 0; turn < 20; ++turn) {
        ASSERT_TRUE(threaded->start());
        const int before = count;
        put(path(QStringLiteral("a")), "x");
        EXPECT_TRUE(eventually([&] { return count != before; }));
        put(path(QStringLiteral("b")), "x");
        threaded->stop();
        const int after = count;
        EXPECT_GT(after, before);
        put(path(QStringLiteral("c")), "x");
        EXPECT_EQ(count, after);
    }
    EXPECT_FALSE(isElsewhere);
}

} // namespace

} // namespace vellumry::test
