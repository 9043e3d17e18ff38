#include "sync/CloudDriveDetectionService.h"

#include "storage/MemoryFileSystem.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>

using namespace vellumry;
using namespace vellumry::test;
using namespace Qt::StringLiterals;

namespace {

class CloudDriveDetectionTest : public testing::Test {
protected:
    /// Makes folders in the home folder, with those above them.
    void makeInHome(const QStringList& paths)
    {
        for (const QString& path : paths) {
            const QString whole = home + u'/' + path;
            for (qsizetype slash = whole.indexOf(u'/', 1); slash > 0;
                 slash = whole.indexOf(u'/', slash + 1))
                files.makeFolder(whole.first(slash));
            files.makeFolder(whole);
        }
    }

    void install(const QString& application)
    {
        files.makeFolder(u"/Applications/"_s + application);
    }

    /// "<drive> <folder below home>" of each drive that is found.
    QStringList found()
    {
        QStringList texts;
        QSet<QUuid> ids;
        for (const DetectedCloudDrive& drive : service.detectInstalledCloudDrives()) {
            EXPECT_TRUE(drive.isAvailable);
            EXPECT_FALSE(drive.id.isNull());
            EXPECT_FALSE(ids.contains(drive.id));
            ids.insert(drive.id);
            EXPECT_TRUE(drive.syncFolderPath.startsWith(home + u'/'));
            texts.append(rawValue(drive.type) + u": "_s +
                         drive.syncFolderPath.sliced(home.size() + 1));
        }
        return texts;
    }

    LogCapture log;
    MemoryFileSystem files;
    const QString home = u"/Users/a"_s;
    QSet<QString> programs;
    const CloudDriveDetectionService service{
        {.files = files,
         .homeFolder = home,
         .applicationsFolder = u"/Applications"_s,
         .isOnPath = [this](const QString& name) { return programs.contains(name); }}};
};

TEST_F(CloudDriveDetectionTest, anEmptyMachineHasNone)
{
    EXPECT_EQ(found(), QStringList());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(CloudDriveDetectionTest, findsEachDriveByItsProgramAndFolder)
{
    makeInHome({u"pCloud Drive"_s, u"Library/CloudStorage/OneDrive-Personal"_s,
                u"Library/CloudStorage/GoogleDrive-a@b.c/My Drive"_s, u"Dropbox"_s,
                u"Library/Mobile Documents/com~apple~CloudDocs"_s});
    EXPECT_EQ(found(),
              QStringList{u"iCloud Drive: Library/Mobile Documents/com~apple~CloudDocs"_s});
    for (const QString& application :
         {u"pCloud Drive.app"_s, u"OneDrive.app"_s, u"Google Drive.app"_s, u"Dropbox.app"_s})
        install(application);
    EXPECT_EQ(found(),
              (QStringList{u"Dropbox: Dropbox"_s,
                           u"iCloud Drive: Library/Mobile Documents/com~apple~CloudDocs"_s,
                           u"Google Drive: Library/CloudStorage/GoogleDrive-a@b.c/My Drive"_s,
                           u"OneDrive: Library/CloudStorage/OneDrive-Personal"_s,
                           u"pCloud: pCloud Drive"_s}));
    EXPECT_NE(service.detectInstalledCloudDrives()[0].id,
              service.detectInstalledCloudDrives()[0].id);
}

TEST_F(CloudDriveDetectionTest, aFolderWithoutItsProgramIsNoDrive)
{
    makeInHome({u"Dropbox"_s});
    EXPECT_EQ(found(), QStringList());
}

TEST_F(CloudDriveDetectionTest, aProgramWithoutItsFolderIsNoDrive)
{
    for (const QString& application :
         {u"pCloud Drive.app"_s, u"OneDrive.app"_s, u"Google Drive.app"_s, u"Dropbox.app"_s})
        install(application);
    makeInHome({u"Library/CloudStorage"_s});
    files.replace(home + u"/Dropbox"_s, "a file");
    EXPECT_EQ(found(), QStringList());
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(CloudDriveDetectionTest, aFolderIsNotLookedAtWithoutItsProgram)
{
    const QStringList folders{
        u"Dropbox"_s,  u"pCloud Drive"_s, u"GoogleDrive"_s,         u"Google Drive"_s,
        u"OneDrive"_s, u"pCloudDrive"_s,  u"Library/CloudStorage"_s};
    makeInHome(folders);
    makeInHome(
        {u"Library/CloudStorage/GoogleDrive-a/My Drive"_s, u"Library/CloudStorage/OneDrive-a"_s});
    files.onOperation = [](const QString& operation, const QString& path) {
        ADD_FAILURE() << operation.toStdString() << ' ' << path.toStdString();
    };
    files.lookedAt.clear();
    EXPECT_EQ(found(), QStringList());
    EXPECT_TRUE(files.lookedAt.contains(u"/Applications/Dropbox.app"_s));
    for (const QString& folder : folders)
        EXPECT_FALSE(files.lookedAt.contains(home + u'/' + folder)) << folder.toStdString();
}

TEST_F(CloudDriveDetectionTest, iCloudDriveNeedsNoProgram)
{
    makeInHome({u"Library/Mobile Documents/com~apple~CloudDocs"_s});
    EXPECT_EQ(found(),
              QStringList{u"iCloud Drive: Library/Mobile Documents/com~apple~CloudDocs"_s});
}

TEST_F(CloudDriveDetectionTest, aSecondGoogleAccountIsNeverTried)
{
    install(u"Google Drive.app"_s);
    makeInHome({u"Library/CloudStorage/GoogleDrive-account"_s,
                u"Library/CloudStorage/GoogleDrive-second/My Drive"_s});
    EXPECT_EQ(found(), QStringList());
}

TEST_F(CloudDriveDetectionTest, thePrefixWithADashGoesBeforeTheOrderOfTheListing)
{
    install(u"OneDrive.app"_s);
    makeInHome({u"Library/CloudStorage/OneDrive"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: Library/CloudStorage/OneDrive"_s});
    makeInHome(
        {u"Library/CloudStorage/OneDrive-Personal"_s, u"Library/CloudStorage/OneDrive-Work"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: Library/CloudStorage/OneDrive-Personal"_s});
}

TEST_F(CloudDriveDetectionTest, thePrefixIsCaseSensitiveAndMayGoOnInAnyWay)
{
    install(u"OneDrive.app"_s);
    makeInHome({u"Library/CloudStorage/onedrive-x"_s});
    EXPECT_EQ(found(), QStringList());
    makeInHome({u"Library/CloudStorage/OneDriveSomething"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: Library/CloudStorage/OneDriveSomething"_s});
}

TEST_F(CloudDriveDetectionTest, noOneDriveBelowHomeIsConsideredForTheApplication)
{
    install(u"OneDrive.app"_s);
    makeInHome({u"OneDrive"_s, u"OneDrive-Personal"_s});
    EXPECT_EQ(found(), QStringList());
}

TEST_F(CloudDriveDetectionTest, aFileWithThePrefixIsPassedOver)
{
    install(u"OneDrive.app"_s);
    makeInHome({u"Library/CloudStorage"_s});
    files.replace(home + u"/Library/CloudStorage/OneDrive-x"_s, "");
    EXPECT_EQ(found(), QStringList());
    makeInHome({u"Library/CloudStorage/OneDrive-y"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: Library/CloudStorage/OneDrive-y"_s});
}

TEST_F(CloudDriveDetectionTest, aFolderThatCannotBeListedIsLoggedAtEachLook)
{
    install(u"OneDrive.app"_s);
    install(u"Google Drive.app"_s);
    makeInHome({u"Library/CloudStorage/OneDrive-y"_s});
    const FileError failure(u"list"_s, home, EACCES);
    files.onOperation = [&](const QString&, const QString&) { throw failure; };
    EXPECT_EQ(found(), QStringList());
    const QString told = u"CloudDriveDetectionService: 查找目录失败 - "_s + failure.description();
    EXPECT_EQ(log.lines, (QStringList{told, told, told})); // once for Google Drive, twice here
}

TEST_F(CloudDriveDetectionTest, theClientsForLinuxCountWithTheirUsualFolders)
{
    makeInHome({u"Dropbox"_s, u"GoogleDrive"_s, u"OneDrive"_s, u"pCloudDrive"_s});
    EXPECT_EQ(found(), QStringList());
    programs = {u"dropbox"_s, u"google-drive-ocamlfuse"_s, u"onedrive"_s, u"pcloud"_s};
    EXPECT_EQ(found(), (QStringList{u"Dropbox: Dropbox"_s, u"Google Drive: GoogleDrive"_s,
                                    u"OneDrive: OneDrive"_s, u"pCloud: pCloudDrive"_s}));
}

TEST_F(CloudDriveDetectionTest, aDropboxClientInTheHomeFolderCountsAsWell)
{
    makeInHome({u"Dropbox"_s, u".dropbox-dist"_s});
    EXPECT_EQ(found(), QStringList{u"Dropbox: Dropbox"_s});
}

TEST_F(CloudDriveDetectionTest, googleDriveHasTwoClientsAndTwoFolders)
{
    programs = {u"insync"_s};
    EXPECT_EQ(found(), QStringList());
    makeInHome({u"Google Drive"_s});
    EXPECT_EQ(found(), QStringList{u"Google Drive: Google Drive"_s});
    makeInHome({u"GoogleDrive"_s});
    EXPECT_EQ(found(), QStringList{u"Google Drive: GoogleDrive"_s});
}

TEST_F(CloudDriveDetectionTest, theClientsForLinuxAreTriedLast)
{
    install(u"OneDrive.app"_s);
    programs = {u"onedrive"_s};
    makeInHome({u"OneDrive"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: OneDrive"_s});
    makeInHome({u"Library/CloudStorage/OneDrive-Personal"_s});
    EXPECT_EQ(found(), QStringList{u"OneDrive: Library/CloudStorage/OneDrive-Personal"_s});
}

TEST(CloudDriveDetectionOnDisk, theProgramLooksInTheHomeFolderAndOnThePath)
{
    const QTemporaryDir home;
    const QTemporaryDir programs;
    QFile client(programs.filePath(u"onedrive"_s));
    ASSERT_TRUE(client.open(QIODevice::WriteOnly));
    ASSERT_TRUE(client.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    for (const QString& folder :
         {u"Library/Mobile Documents/com~apple~CloudDocs"_s, u"OneDrive"_s, u"pCloudDrive"_s})
        ASSERT_TRUE(QDir(home.path()).mkpath(folder));
    const QByteArray homeBefore = qgetenv("HOME");
    const QByteArray pathBefore = qgetenv("PATH");
    qputenv("HOME", home.path().toUtf8());
    qputenv("PATH", programs.path().toUtf8());
    QStringList found;
    for (const DetectedCloudDrive& drive :
         CloudDriveDetectionService::shared().detectInstalledCloudDrives())
        found.append(drive.syncFolderPath);
    qputenv("HOME", homeBefore);
    qputenv("PATH", pathBefore);
    EXPECT_EQ(found, (QStringList{home.filePath(u"Library/Mobile Documents/com~apple~CloudDocs"_s),
                                  home.filePath(u"OneDrive"_s)}));
}

TEST(CloudDriveDetectionOnDisk, aFolderThatIsALinkCountsAsWhatItLeadsTo)
{
    const QTemporaryDir home;
    const CloudDriveDetectionService service({.files = FileSystem::local(),
                                              .homeFolder = home.path(),
                                              .applicationsFolder = u"/Applications"_s,
                                              .isOnPath = [](const QString&) { return true; }});
    const QString dropbox = home.filePath(u"Dropbox"_s);
    ASSERT_TRUE(QFile::link(home.filePath(u"pulled out"_s), dropbox));
    EXPECT_TRUE(service.detectInstalledCloudDrives().isEmpty()) << "which is nowhere";
    ASSERT_TRUE(QDir(home.path()).mkdir(u"pulled out"_s));
    const auto found = service.detectInstalledCloudDrives();
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found[0].syncFolderPath, dropbox);
}

} // namespace
