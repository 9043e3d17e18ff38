#include "storage/FileWatcherService.h"

#include "core/SerialQueue.h"
#include "storage/ManualFileEvents.h"
#include "storage/MemoryFileSystem.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualScheduler.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;
using Flag = FileEventStream::Flag;

QString watcherLine(const QString& message)
{
    return QStringLiteral("FileWatcherService: ") + message;
}

class FileWatcherServiceTest : public testing::Test {
protected:
    FileWatcherServiceTest() { files.makeFolder(folder); }

    void make(const std::optional<QString>& targetFileName = std::nullopt)
    {
        watcher = std::make_unique<FileWatcherService>(
            FileWatcherService::Dependencies{.files = files,
                                             .scheduler = scheduler,
                                             .makeEventStream = events.factory(),
                                             .callbackQueue = queue},
            folder, targetFileName, [this] { ++changes; });
    }

    void start(const std::optional<QString>& targetFileName = std::nullopt)
    {
        make(targetFileName);
        watcher->startWatching();
        log.lines.clear();
    }

    [[nodiscard]] QString path(const QString& name = QStringLiteral("a.json")) const
    {
        return folder + u'/' + name;
    }

    /// How many callbacks a batch leads to.
    int callbacksOf(const QStringList& paths, const QList<quint32>& flags)
    {
        const int before = changes;
        events.tell(paths, flags);
        scheduler.advance(10s);
        return changes - before;
    }
    int callbacksOf(quint32 flags) { return callbacksOf({path()}, {flags}); }

    const QString folder = QStringLiteral("/data/library");
    LogCapture log;
    MemoryFileSystem files;
    ManualScheduler scheduler;
    ManualFileEvents events;
    QObject queue;
    int changes = 0;
    std::unique_ptr<FileWatcherService> watcher;
};

// Start and stop

TEST_F(FileWatcherServiceTest, startsAndStopsOneStreamOnTheFolder)
{
    make();
    EXPECT_FALSE(watcher->isWatching());
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("初始化 - 监控路径: ") + folder)});
    log.lines.clear();
    watcher->startWatching();
    EXPECT_TRUE(watcher->isWatching());
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("开始监控 - ") + folder)});
    ASSERT_EQ(events.requests.size(), 1);
    EXPECT_EQ(events.requests[0].folder, folder);
    EXPECT_EQ(events.requests[0].latency, 300ms);
    EXPECT_EQ(events.requests[0].queue, &queue);
    EXPECT_EQ(events.watchedFolders(), QStringList{folder});

    log.lines.clear();
    watcher->stopWatching();
    EXPECT_FALSE(watcher->isWatching());
    EXPECT_EQ(events.watchedFolders(), QStringList());
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("停止监控"))});
    watcher->stopWatching();
    EXPECT_EQ(log.lines.size(), 1) << "there is nothing to stop";
    watcher->startWatching();
    EXPECT_EQ(callbacksOf(Flag::itemModified), 1);
}

TEST_F(FileWatcherServiceTest, aSecondStartIsToldAndMakesNoStream)
{
    start();
    watcher->startWatching();
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("已在监控中"))});
    EXPECT_EQ(events.requests.size(), 1);
}

TEST_F(FileWatcherServiceTest, makesAMissingFolder)
{
    files.take(folder);
    make();
    log.lines.clear();
    watcher->startWatching();
    EXPECT_TRUE(files.isFolder(folder));
    EXPECT_EQ(log.lines, (QStringList{watcherLine(QStringLiteral("监控目录不存在，尝试创建...")),
                                      watcherLine(QStringLiteral("开始监控 - ") + folder)}));
}

TEST_F(FileWatcherServiceTest, goesOnWhenAMissingFolderCannotBeMade)
{
    files.take(folder);
    files.onOperation = [](const QString& operation, const QString& at) {
        throw MemoryFileSystem::error(operation, at, EACCES);
    };
    make();
    watcher->startWatching();
    EXPECT_TRUE(watcher->isWatching());
}

TEST_F(FileWatcherServiceTest, tellsThatNoStreamCanBeMade)
{
    events.canMake = false;
    make();
    log.lines.clear();
    watcher->startWatching();
    EXPECT_FALSE(watcher->isWatching());
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("创建事件流失败"))});
    events.canMake = true;
    watcher->startWatching();
    EXPECT_TRUE(watcher->isWatching());
}

TEST_F(FileWatcherServiceTest, tellsThatTheStreamCannotBeStarted)
{
    events.canStart = false;
    make();
    log.lines.clear();
    watcher->startWatching();
    EXPECT_FALSE(watcher->isWatching());
    EXPECT_EQ(log.lines, QStringList{watcherLine(QStringLiteral("启动事件流失败"))});
    watcher->stopWatching();
    EXPECT_EQ(log.lines.size(), 1);
    events.canStart = true;
    watcher->startWatching();
    EXPECT_TRUE(watcher->isWatching());
}

// What counts

TEST_F(FileWatcherServiceTest, eachKindOfChangeCountsByItselfAndNoOtherDoes)
{
    start();
    const QSet<quint32> relevant{0x100, 0x200, 0x800, 0x1000};
    for (int bit = 0; bit < 32; ++bit) {
        const quint32 flag = quint32{1} << bit;
        EXPECT_EQ(callbacksOf(flag), relevant.contains(flag) ? 1 : 0) << "0x" << std::hex << flag;
        EXPECT_EQ(callbacksOf(flag | 0x20000), 0) << "of a folder";
    }
    EXPECT_EQ(callbacksOf(0), 0);
    EXPECT_EQ(callbacksOf(0x1B00), 1);
}

TEST_F(FileWatcherServiceTest, aFileOfAnyNameCounts)
{
    start();
    for (const auto& name :
         {u"a.json", u"_metadata.json", u"notes.txt", u".hidden", u"no extension"})
        EXPECT_EQ(callbacksOf({path(QString::fromUtf16(name))}, {Flag::itemCreated}), 1);
}

TEST_F(FileWatcherServiceTest, withATargetOnlyItsNameCounts)
{
    start(QStringLiteral("a.json"));
    EXPECT_EQ(callbacksOf({path()}, {Flag::itemRenamed}), 1);
    EXPECT_EQ(callbacksOf({path(QStringLiteral("b.json"))}, {Flag::itemRenamed}), 0);
    EXPECT_EQ(callbacksOf({path(QStringLiteral("ba.json"))}, {Flag::itemRenamed}), 0);
    EXPECT_EQ(callbacksOf({path(QStringLiteral("A.json"))}, {Flag::itemRenamed}), 0);
    EXPECT_EQ(callbacksOf({path(QStringLiteral("b.json")), path()},
                          {Flag::itemRenamed, Flag::itemRenamed}),
              1);
}

TEST_F(FileWatcherServiceTest, aChangeOfTheFolderAsAWholeCountsOnlyWithoutATarget)
{
    start();
    EXPECT_EQ(callbacksOf({folder}, {Flag::itemCreated}), 1) << "it is another folder";
    EXPECT_EQ(callbacksOf({folder}, {Flag::itemModified}), 1) << "events were lost";
    watcher.reset();
    start(QStringLiteral("a.json"));
    EXPECT_EQ(callbacksOf({folder}, {Flag::itemCreated}), 0);
    EXPECT_EQ(callbacksOf({folder}, {Flag::itemModified}), 0);
}

TEST_F(FileWatcherServiceTest, theFirstPathThatCountsIsToldAndTheRestIgnored)
{
    start();
    const QStringList paths{path(QStringLiteral("folder")), path(QStringLiteral("touched")),
                            path(QStringLiteral("first")), path(QStringLiteral("second"))};
    EXPECT_EQ(callbacksOf(paths, {Flag::itemCreated | Flag::itemIsDirectory, 0x400,
                                  Flag::itemRemoved, Flag::itemCreated}),
              1);
    EXPECT_EQ(log.lines, (QStringList{watcherLine(QStringLiteral("检测到文件变化 - ") + paths[2]),
                                      watcherLine(QStringLiteral("触发文件变化回调"))}));
}

TEST_F(FileWatcherServiceTest, anEventWithoutAContextIsDropped)
{
    fileEventCallback(nullptr, {path()}, {Flag::itemModified});
    EXPECT_EQ(log.lines, QStringList());
}

// The debounce

TEST_F(FileWatcherServiceTest, callsBackHalfASecondAfterTheChange)
{
    start();
    events.tell(path());
    scheduler.advance(499ms);
    EXPECT_EQ(changes, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(changes, 1);
    scheduler.advance(10s);
    EXPECT_EQ(changes, 1);
}

TEST_F(FileWatcherServiceTest, tenChangesInABurstGiveOneCallback)
{
    start();
    for (int change = 0; change < 10; ++change) {
        events.tell(path());
        scheduler.advance(400ms);
        EXPECT_EQ(changes, 0);
    }
    scheduler.advance(99ms);
    EXPECT_EQ(changes, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(log.lines.count(watcherLine(QStringLiteral("触发文件变化回调"))), 1);
}

TEST_F(FileWatcherServiceTest, aFolderThatNeverRestsIsToldOfOnlyWhenItDoes)
{
    start();
    for (int change = 0; change < 1'000; ++change) {
        events.tell(path());
        scheduler.advance(499ms);
    }
    EXPECT_EQ(changes, 0) << "for more than eight minutes";
    scheduler.advance(1ms);
    EXPECT_EQ(changes, 1);
}

TEST_F(FileWatcherServiceTest, whatDoesNotCountDoesNotProlongTheWait)
{
    start();
    events.tell(path());
    scheduler.advance(300ms);
    events.tell(path(), Flag::itemCreated | Flag::itemIsDirectory);
    scheduler.advance(200ms);
    EXPECT_EQ(changes, 1);
}

TEST_F(FileWatcherServiceTest, theStopCancelsWhatIsPending)
{
    start();
    events.tell(path());
    scheduler.advance(499ms);
    watcher->stopWatching();
    scheduler.advance(10s);
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(log.lines.contains(watcherLine(QStringLiteral("触发文件变化回调"))));
    watcher->startWatching();
    scheduler.advance(10s);
    EXPECT_EQ(changes, 0);
}

TEST_F(FileWatcherServiceTest, theEndOfTheWatcherCancelsWhatIsPending)
{
    start();
    events.tell(path());
    watcher.reset();
    scheduler.advance(10s);
    EXPECT_EQ(changes, 0);
}

TEST_F(FileWatcherServiceTest, aCallbackMayStopTheWatching)
{
    make();
    FileWatcherService stopping({.files = files,
                                 .scheduler = scheduler,
                                 .makeEventStream = events.factory(),
                                 .callbackQueue = queue},
                                folder, std::nullopt, [&] { stopping.stopWatching(); });
    stopping.startWatching();
    events.tell(path());
    scheduler.advance(10s);
    EXPECT_FALSE(stopping.isWatching());
}

// With the real queue, stream and time

TEST_F(FileWatcherServiceTest, callsBackOnTheMainThread)
{
    QTemporaryDir directory;
    SerialQueue thread(FileWatcherService::callbackQueueLabel.toString());
    EventLoopScheduler realTime;
    int calls = 0;
    const QThread* calledOn = nullptr;
    FileWatcherService real({.files = FileSystem::local(),
                             .scheduler = realTime,
                             .makeEventStream = &FileEventStream::local,
                             .callbackQueue = thread.context()},
                            directory.path(), std::nullopt, [&] {
                                ++calls;
                                calledOn = QThread::currentThread();
                            });
    real.startWatching();
    ASSERT_TRUE(real.isWatching());
    QElapsedTimer waiting;
    waiting.start();
    ASSERT_TRUE(QFile(directory.filePath(QStringLiteral("a.json"))).open(QIODevice::WriteOnly));
    EXPECT_TRUE(eventually([&] { return calls > 0; }));
    EXPECT_EQ(calls, 1);
    EXPECT_GE(waiting.elapsed(), 500);
    EXPECT_EQ(calledOn, QThread::currentThread());
}

TEST_F(FileWatcherServiceTest, startsAndStopsWhileChangesPourIn)
{
    QTemporaryDir directory;
    SerialQueue thread(FileWatcherService::callbackQueueLabel.toString());
    EventLoopScheduler realTime;
    for (int turn = 0; turn < 200; ++turn) {
        FileWatcherService real({.files = FileSystem::local(),
                                 .scheduler = realTime,
                                 .makeEventStream = &FileEventStream::local,
                                 .callbackQueue = thread.context()},
                                directory.path(), std::nullopt, [] {});
        real.startWatching();
        QFile file(directory.filePath(QStringLiteral("a.json")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        if (turn % 3 == 0)
            real.stopWatching();
        if (turn % 7 == 0)
            QCoreApplication::processEvents();
    }
    EXPECT_EQ(log.lines.count(watcherLine(QStringLiteral("停止监控"))), 200);
}

} // namespace

} // namespace vellumry::test
