#include "platform/linux/FreedesktopFileViewer.h"

#include "platform/FakeFileManager.h"
#include "session/PrivateBus.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class FreedesktopFileViewerTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        ASSERT_TRUE(folder.isValid());
        manager = std::make_unique<FakeFileManager>(bus.connect());
    }

    std::unique_ptr<FreedesktopFileViewer> makeViewer(const QString& address)
    {
        return std::make_unique<FreedesktopFileViewer>(
            runner,
            [this, address] {
                return address.isEmpty() ? QDBusConnection::connectToBus(
                                               u"unix:path=/nowhere/at/all"_s, u"nowhere"_s)
                                         : bus.connect();
            },
            [this](const QString& program, const QStringList& arguments) {
                started.append(program + u' ' + arguments.join(u' '));
                return canStart;
            });
    }

    void showFolder(const QString& path)
    {
        viewer->showFolder(path, owner.get(),
                           [this](const QString& reason) { failures.append(reason); });
        runAll();
    }

    void runAll()
    {
        runner.runWork();
        runner.runActions();
    }

    LogCapture log;
    PrivateBus bus;
    QTemporaryDir folder;
    ManualBackgroundRunner runner;
    std::unique_ptr<FakeFileManager> manager;
    std::unique_ptr<QObject> owner = std::make_unique<QObject>();
    QStringList started;
    QStringList failures;
    bool canStart = true;
    std::unique_ptr<FreedesktopFileViewer> viewer = makeViewer(u"the private one"_s);
};

TEST_F(FreedesktopFileViewerTest, AFolderIsShownByTheFileManager)
{
    ASSERT_TRUE(manager->appear());
    showFolder(folder.path());
    ASSERT_TRUE(eventually([this] { return !manager->calls.isEmpty(); }));
    EXPECT_EQ(manager->calls, QStringList{u"ShowFolders [file://%1] ''"_s.arg(folder.path())});
    EXPECT_TRUE(started.isEmpty());
    EXPECT_TRUE(failures.isEmpty());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(FreedesktopFileViewerTest, AFileIsShownInItsFolder)
{
    ASSERT_TRUE(manager->appear());
    const QString path = folder.filePath(u"50% größer #1.json"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    viewer->showItem(path, owner.get(), {});
    runAll();
    ASSERT_TRUE(eventually([this] { return !manager->calls.isEmpty(); }));
    EXPECT_EQ(manager->calls,
              QStringList{u"ShowItems [file://%1/50%25%20gr%C3%B6%C3%9Fer%20%231.json] ''"_s.arg(
                  folder.path())});
    EXPECT_TRUE(started.isEmpty());
}

TEST_F(FreedesktopFileViewerTest, WithoutAFileManagerOnTheBusAProgramIsStarted)
{
    showFolder(folder.path());
    ASSERT_TRUE(eventually([this] { return !started.isEmpty(); }));
    EXPECT_EQ(started, QStringList{u"xdg-open "_s + folder.path()});
    EXPECT_TRUE(failures.isEmpty());
}

TEST_F(FreedesktopFileViewerTest, AFileManagerThatRefusesIsReplacedByAProgram)
{
    manager->isRefusing = true;
    ASSERT_TRUE(manager->appear());
    QFile file(folder.filePath(u"a.json"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    viewer->showItem(file.fileName(), owner.get(), {});
    runAll();
    ASSERT_TRUE(eventually([this] { return !started.isEmpty(); }));
    EXPECT_EQ(manager->calls.size(), 1);
    EXPECT_EQ(started, QStringList{u"xdg-open "_s + folder.path()})
        << "which would open the file itself";
}

TEST_F(FreedesktopFileViewerTest, WithoutABusAProgramIsStarted)
{
    viewer = makeViewer({});
    showFolder(folder.path());
    EXPECT_EQ(started, QStringList{u"xdg-open "_s + folder.path()});
    QDBusConnection::disconnectFromBus(u"nowhere"_s);
}

TEST_F(FreedesktopFileViewerTest, ThatNothingWorksIsToldInWords)
{
    canStart = false;
    showFolder(folder.path());
    ASSERT_TRUE(eventually([this] { return !failures.isEmpty(); }));
    const QString reason = u"no file manager answers, and xdg-open cannot be started"_s;
    EXPECT_EQ(failures, QStringList{reason});
    EXPECT_EQ(log.lines, QStringList{u"FreedesktopFileViewer: “%1” cannot be shown: %2"_s.arg(
                             folder.path(), reason)});
}

TEST_F(FreedesktopFileViewerTest, AFolderThatIsNotThereIsToldInWords)
{
    ASSERT_TRUE(manager->appear());
    const QString missing = folder.filePath(u"gone"_s);
    showFolder(missing);
    EXPECT_EQ(failures, QStringList{u"there is no “%1”"_s.arg(missing)});
    EXPECT_TRUE(manager->calls.isEmpty());
    EXPECT_TRUE(started.isEmpty());
}

TEST_F(FreedesktopFileViewerTest, AnOwnerThatIsGoneIsNotTold)
{
    viewer->showFolder(folder.filePath(u"gone"_s), owner.get(),
                       [this](const QString& reason) { failures.append(reason); });
    owner.reset();
    runAll();
    EXPECT_TRUE(failures.isEmpty());
    EXPECT_EQ(log.lines.size(), 1) << "but the log is";
}

TEST_F(FreedesktopFileViewerTest, AViewerThatIsGoneShowsNothingMore)
{
    ASSERT_TRUE(manager->appear());
    viewer->showFolder(folder.path(), owner.get(),
                       [this](const QString& reason) { failures.append(reason); });
    viewer.reset();
    runAll();
    EXPECT_TRUE(started.isEmpty());
    EXPECT_TRUE(failures.isEmpty());
}

} // namespace
} // namespace vellumry::test
