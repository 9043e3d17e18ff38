#include "views/sheets/ChangeLocationSheet.h"

#include "views/SheetFixture.h"
#include "views/ShownToolTip.h"
#include "views/common/NoteView.h"
#include "views/sheets/CustomLocationChooser.h"
#include "views/sheets/MigrationProgressView.h"

#include <QPointer>

#include <cerrno>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ChangeLocationSheetTest : public SheetFixture {
protected:
    ChangeLocationSheetTest()
    {
        files.makeFolder(u"/old"_s);
        files.replace(u"/old/_metadata.json"_s, metadataFileBytes({u"w"_s}));
        files.replace(u"/old/work.json"_s,
                      collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
        auto& notifications = world.notifications;
        QObject::connect(&notifications, &NotificationCenter::showLoadingOverlay, &notifications,
                         [this](const std::optional<QString>& text) {
                             overlay.append(text.value_or(QString()));
                         });
        QObject::connect(&notifications, &NotificationCenter::hideLoadingOverlay, &notifications,
                         [this] { overlay.append(u"gone"_s); });
    }

    /// A move that is under way tells of its end, while there is something to hear it.
    ~ChangeLocationSheetTest() override { delete sheet; }

    ChangeLocationSheet& open()
    {
        auto* made = new ChangeLocationSheet(
            {.theme = theme,
             .scheduler = scheduler,
             .choice = {.cloudDriveService = drives.service,
                        .change = {.locations = world.locations,
                                   .files = files,
                                   .notifications = world.notifications,
                                   .scheduler = scheduler,
                                   .background = background,
                                   .clock = world.clock,
                                   .clearCacheAndReload = [this] { ++reloads; },
                                   .refreshData = [this] { ++refreshes; }},
                        .pickFolder = question.asker()},
             .homeFolder = u"/home/tester"_s,
             .onDismiss = [this] { host.dismiss(sheet); }});
        sheet = made;
        return present(made, [this] { sheet->cancel(); });
    }

    void pick(const QString& folder)
    {
        click(sheet->localRow().chooser().chooseButton());
        question.choose(folder);
        settle();
    }

    /// The copying in the background, with what it reports.
    void copy()
    {
        background.runWork();
        background.runActions();
        settle();
    }

    QPointer<ChangeLocationSheet> sheet;
    QStringList overlay;
    int reloads = 0;
    int refreshes = 0;
};

TEST_F(ChangeLocationSheetTest, showsWhereTheLibraryIsAndWhereItCouldBe)
{
    drives.installDropbox();
    open();
    EXPECT_EQ(labelTexts(*sheet),
              QStringList({u"Change Data Location"_s,
                           u"Your data will be copied to the new location.\n"
                           "After successful transfer, the old location will be cleared."_s,
                           u"Current Location"_s, u"Select New Location"_s,
                           u"Choose a location for your snippets. Cloud drive folders enable "
                           "automatic sync across devices."_s}));
    EXPECT_EQ(sheet->note().symbol(), u"info.circle.fill"_s);
    EXPECT_EQ(sheet->errorLine().symbol(), u"exclamationmark.triangle.fill"_s);
    ASSERT_EQ(sheet->driveRows().size(), 1U);
    EXPECT_EQ(sheet->driveRows()[0]->contents().title, u"Dropbox"_s);
    EXPECT_EQ(sheet->driveRows()[0]->contents().detail, u"~/Dropbox/Apps/Vellumry"_s);
    EXPECT_EQ(sheet->localRow().defaultRow().contents().detail, u"/old-documents/Apps/Vellumry"_s);
    EXPECT_EQ(sheet->localRow().chooser().chooseButton().text(), u"Choose Custom Folder..."_s);
    EXPECT_EQ(sheet->localRow().chooser().chooseButton().symbol(), u"folder.badge.plus"_s);
    EXPECT_EQ(sheet->closeButton().symbol(), u"xmark.circle.fill"_s);
    EXPECT_FALSE(sheet->localRow().chooser().row().isVisible());
    EXPECT_FALSE(sheet->errorLine().isVisible());
    EXPECT_FALSE(sheet->progress().isVisible());
    EXPECT_FALSE(sheet->moveButton().isEnabled()) << "nothing is chosen";
}

TEST_F(ChangeLocationSheetTest, pathsAreReadInToolTipsAsTheyStand)
{
    const QString current = u"/old/<b>R&amp;D"_s;
    world.setFolder(current);
    open();
    const QString chosen = u"/new/<i>R&D"_s;
    files.makeFolder(chosen);
    pick(chosen);
    EXPECT_EQ(shownToolTip(sheet->localRow().chooser().row()),
              sheet->localRow().chooser().row().contents().detail);
    EXPECT_TRUE(shownToolTip(sheet->localRow().chooser().row()).startsWith(chosen));
    QStringList tips;
    for (const QWidget* each : sheet->findChildren<QWidget*>())
        tips.append(shownToolTip(*each));
    EXPECT_TRUE(tips.contains(current)) << qPrintable(tips.join(u'\n'));
}

TEST_F(ChangeLocationSheetTest, theFocusGoesFromAboveToBelow)
{
    drives.installDropbox();
    open();
    click(*sheet->driveRows()[0]);
    EXPECT_EQ(tabWay(), QStringList({u"Dropbox"_s, u"Local Storage"_s, u"Choose Custom Folder..."_s,
                                     u"Cancel"_s, u"Move Data"_s, u"Close"_s}));
}

TEST_F(ChangeLocationSheetTest, aRowIsChosenAndMarked)
{
    drives.installDropbox();
    open();
    click(*sheet->driveRows()[0]);
    EXPECT_EQ(sheet->choice().selectedPath(), DriveWorld::dropboxFolder());
    EXPECT_EQ(sheet->driveRows()[0]->mark(), u"checkmark.circle.fill"_s);
    EXPECT_TRUE(sheet->moveButton().isEnabled());
    click(sheet->localRow().defaultRow());
    EXPECT_EQ(sheet->choice().selectedPath(), u"/old-documents/Apps/Vellumry"_s);
    EXPECT_TRUE(sheet->localRow().defaultRow().isSelected());
    EXPECT_FALSE(sheet->driveRows()[0]->isSelected());
}

TEST_F(ChangeLocationSheetTest, aFolderOfTheirOwnGetsARow)
{
    open();
    auto& chooser = sheet->localRow().chooser();
    pick(u"/home/tester/Archive"_s);
    EXPECT_TRUE(chooser.row().isVisible());
    EXPECT_TRUE(chooser.row().isSelected());
    EXPECT_EQ(chooser.row().contents().detail, u"~/Archive"_s);
    click(sheet->localRow().defaultRow());
    EXPECT_FALSE(chooser.row().isSelected());
    click(chooser.row());
    EXPECT_EQ(sheet->choice().selectedPath(), u"/home/tester/Archive"_s);
}

TEST_F(ChangeLocationSheetTest, aDrivesFolderIsNotShownASecondTime)
{
    drives.installDropbox();
    open();
    pick(DriveWorld::dropboxFolder());
    EXPECT_FALSE(sheet->localRow().chooser().row().isVisible());
    EXPECT_TRUE(sheet->driveRows()[0]->isSelected());
    EXPECT_EQ(sheet->choice().customSelectedPath(), DriveWorld::dropboxFolder());
}

TEST_F(ChangeLocationSheetTest, pathsAreShortened)
{
    EXPECT_EQ(CustomLocationChooser::shortenPath(u"/home/tester/a"_s, u"/home/tester"_s), u"~/a"_s);
    EXPECT_EQ(CustomLocationChooser::shortenPath(u"/mnt/a"_s, u"/home/tester"_s), u"/mnt/a"_s);
}

TEST_F(ChangeLocationSheetTest, theCurrentLocationIsRefused)
{
    open();
    pick(u"/old"_s);
    click(sheet->moveButton());
    EXPECT_TRUE(sheet->errorLine().isVisible());
    EXPECT_EQ(sheet->errorLine().text(), u"New location is the same as current location"_s);
    EXPECT_TRUE(overlay.isEmpty());
    EXPECT_FALSE(background.hasWork());
    EXPECT_TRUE(files.exists(u"/old/work.json"_s));
    EXPECT_TRUE(sheet->moveButton().isEnabled());
}

TEST_F(ChangeLocationSheetTest, closesByEscapeByCancelAndByItsMark)
{
    open();
    key(Qt::Key_Escape);
    EXPECT_FALSE(host.isPresenting());
    open();
    click(sheet->cancelButton());
    EXPECT_FALSE(host.isPresenting());
    open();
    click(sheet->closeButton());
    EXPECT_FALSE(host.isPresenting());
    EXPECT_EQ(world.locations.currentLocation(), u"/old"_s);
}

TEST_F(ChangeLocationSheetTest, movesTheLibraryAndGoes)
{
    open();
    pick(u"/new"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(overlay, QStringList({u"Migrating your data..."_s}));
    EXPECT_TRUE(sheet->progress().isVisible());
    EXPECT_EQ(sheet->progress().percentText(), u"0%"_s);
    EXPECT_FALSE(sheet->note().isVisible());
    copy();
    EXPECT_EQ(sheet->progress().percentText(), u"100%"_s);
    EXPECT_EQ(overlay.last(), u"Reloading app data..."_s);
    EXPECT_EQ(reloads, 1);
    EXPECT_EQ(world.locations.currentLocation(), u"/new"_s);
    scheduler.advance(499ms);
    EXPECT_TRUE(host.isPresenting());
    EXPECT_EQ(refreshes, 0);
    scheduler.advance(1ms);
    EXPECT_FALSE(host.isPresenting());
    EXPECT_EQ(refreshes, 1);
    EXPECT_EQ(overlay.last(), u"gone"_s);
    EXPECT_TRUE(files.exists(u"/new/work.json"_s));
    EXPECT_FALSE(files.exists(u"/old"_s));
}

TEST_F(ChangeLocationSheetTest, nothingClosesItHalfWay)
{
    drives.installDropbox();
    open();
    pick(u"/new"_s);
    click(sheet->moveButton());
    EXPECT_EQ(sheet->moveButton().text(), u"Moving..."_s);
    for (const QAbstractButton* button : sheet->findChildren<QAbstractButton*>())
        EXPECT_FALSE(button->isEnabled()) << qPrintable(button->text());
    const auto tryEverything = [&] {
        key(Qt::Key_Escape);
        key(Qt::Key_Return);
        key(Qt::Key_Tab);
        key(Qt::Key_Space);
        click(sheet->cancelButton());
        click(sheet->closeButton());
        EXPECT_FALSE(window.close());
        EXPECT_TRUE(window.isVisible());
        ASSERT_TRUE(host.isPresenting());
    };
    tryEverything();
    copy();
    tryEverything();
    scheduler.advance(500ms);
    EXPECT_FALSE(host.isPresenting());
    settle();
    EXPECT_TRUE(window.close());
}

TEST_F(ChangeLocationSheetTest, theProgressIsThatOfTheWork)
{
    open();
    pick(u"/new"_s);
    click(sheet->moveButton());
    QStringList seen;
    QObject::connect(&sheet->choice(), &LocationChoice::changed, sheet, [&] {
        if (!seen.contains(sheet->progress().percentText()))
            seen.append(sheet->progress().percentText());
    });
    copy();
    EXPECT_EQ(seen.first(5), QStringList({u"10%"_s, u"20%"_s, u"30%"_s, u"40%"_s, u"50%"_s}));
    EXPECT_EQ(seen.last(), u"100%"_s);
    EXPECT_GT(seen.size(), 6);
}

TEST_F(ChangeLocationSheetTest, aFailureIsToldAndTheSheetCanBeUsedAgain)
{
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"write"_s && path.startsWith(u"/locked/"_s))
            throw MemoryFileSystem::error(operation, path, EACCES);
    };
    open();
    pick(u"/locked"_s);
    click(sheet->moveButton());
    copy();
    EXPECT_TRUE(sheet->errorLine().isVisible());
    EXPECT_TRUE(sheet->errorLine().text().startsWith(u"写入测试失败 /locked: "_s));
    EXPECT_FALSE(sheet->progress().isVisible());
    EXPECT_FALSE(sheet->note().isVisible());
    EXPECT_EQ(overlay, QStringList({u"Migrating your data..."_s, u"gone"_s}));
    EXPECT_EQ(world.locations.currentLocation(), u"/old"_s);
    EXPECT_TRUE(files.exists(u"/old/work.json"_s));

    pick(u"/new"_s);
    click(sheet->moveButton());
    EXPECT_FALSE(sheet->errorLine().isVisible());
    copy();
    scheduler.advance(500ms);
    EXPECT_FALSE(host.isPresenting());
    EXPECT_EQ(world.locations.currentLocation(), u"/new"_s);
}

/// Folders that cannot be made, written, read or filled: each is told, the old place stays as it
/// was, and the sheet can be used again.
TEST_F(ChangeLocationSheetTest, everyFolderThatCannotBeUsedIsToldAndNothingIsLost)
{
    struct Trouble {
        QString operation;
        QString path;
        int number;
    };
    const QList<Trouble> troubles{
        {u"createFolders"_s, u"/new"_s, EACCES},              // in a folder of somebody else's
        {u"createFolders"_s, u"/new"_s, EEXIST},              // a link that leads nowhere
        {u"createFolders"_s, u"/new"_s, EROFS},               // on a disc
        {u"write"_s, u"/new/.vellumry-write-test"_s, ENOSPC}, // a full disk
        {u"copy"_s, u"/old/work.json"_s, ENOSPC},             // one that gets full
        {u"copy"_s, u"/old/work.json"_s, ENOENT},             // one that is pulled out
        {u"flush"_s, u"/new"_s, EIO},                         // a failing disk
        {u"list"_s, u"/old"_s, EACCES},                       // the old place is locked
    };
    open();
    for (const Trouble& trouble : troubles) {
        QString cause;
        files.onOperation = [&](const QString& operation, const QString& path) {
            if (operation != trouble.operation || path != trouble.path)
                return;
            const FileError failure = MemoryFileSystem::error(operation, path, trouble.number);
            cause = failure.description();
            throw failure;
        };
        pick(u"/new"_s);
        click(sheet->moveButton());
        copy();
        ASSERT_FALSE(cause.isEmpty()) << qPrintable(trouble.operation);
        EXPECT_TRUE(sheet->errorLine().isVisible());
        EXPECT_TRUE(sheet->errorLine().text().contains(cause))
            << qPrintable(sheet->errorLine().text());
        EXPECT_EQ(overlay.last(), u"gone"_s);
        EXPECT_EQ(world.locations.currentLocation(), u"/old"_s);
        EXPECT_TRUE(files.exists(u"/old/_metadata.json"_s));
        EXPECT_TRUE(files.exists(u"/old/work.json"_s));
        EXPECT_TRUE(sheet->moveButton().isEnabled());
        EXPECT_TRUE(sheet->cancelButton().isEnabled());
        files.onOperation = nullptr;
        if (files.exists(u"/new"_s))
            files.removeAll(u"/new"_s);
    }
    files.replace(u"/new"_s, "a file");
    click(sheet->moveButton());
    copy();
    EXPECT_EQ(sheet->errorLine().text(), u"路径不是目录: /new"_s);
    EXPECT_EQ(world.locations.currentLocation(), u"/old"_s);
    // Gone between the choice and its use: made again.
    files.take(u"/new"_s);
    click(sheet->moveButton());
    copy();
    scheduler.advance(500ms);
    EXPECT_FALSE(host.isPresenting());
    EXPECT_EQ(world.locations.currentLocation(), u"/new"_s);
    EXPECT_TRUE(files.exists(u"/new/work.json"_s));
}

TEST_F(ChangeLocationSheetTest, aFolderOfAnotherKindOfFileStays)
{
    files.replace(u"/old/notes.txt"_s, "mine");
    open();
    pick(u"/new"_s);
    click(sheet->moveButton());
    copy();
    scheduler.advance(500ms);
    EXPECT_TRUE(files.exists(u"/old/notes.txt"_s));
    EXPECT_FALSE(files.exists(u"/old/work.json"_s));
}

TEST_F(ChangeLocationSheetTest, anOldFolderWithoutALibraryGivesAnEmptyOne)
{
    files.take(u"/old/_metadata.json"_s);
    open();
    pick(u"/new"_s);
    click(sheet->moveButton());
    copy();
    EXPECT_FALSE(sheet->errorLine().isVisible());
    scheduler.advance(500ms);
    EXPECT_FALSE(host.isPresenting());
    EXPECT_TRUE(files.exists(u"/new/_metadata.json"_s));
}

TEST_F(ChangeLocationSheetTest, aFailedDialogIsTold)
{
    open();
    click(sheet->localRow().chooser().chooseButton());
    question.fail(u"The dialog failed."_s);
    settle();
    EXPECT_TRUE(sheet->errorLine().isVisible());
    EXPECT_EQ(sheet->errorLine().text(), u"The dialog failed."_s);
}

TEST_F(ChangeLocationSheetTest, whatIsNotThereTakesNoRoom)
{
    open();
    const QWidget& body = *sheet->scrollArea().widget();
    const QWidget& note = sheet->note();
    EXPECT_EQ(body.height() - note.mapTo(&body, QPoint(0, note.height())).y(), 16);
}

TEST_F(ChangeLocationSheetTest, fitsIntoTheSettingsWindow)
{
    window.resize(500, 560);
    drives.installDropbox();
    drives.installPCloud();
    open();
    const QString longPath = u"/mnt/"_s + QString(300, u'x');
    pick(longPath);
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"write"_s)
            throw MemoryFileSystem::error(operation, path, EACCES);
    };
    click(sheet->moveButton());
    copy();
    EXPECT_EQ(sheet->width(), 468);
    EXPECT_LE(sheet->height(), 528);
    EXPECT_LE(sheet->scrollArea().widget()->width(), 468);
    // What went wrong is in sight, with all of its words.
    EXPECT_FALSE(sheet->errorLine().visibleRegion().isEmpty());
    EXPECT_GT(sheet->errorLine().height(), 80);
    picture(u"change-location-narrow"_s, false);
}

TEST_F(ChangeLocationSheetTest, Pictures)
{
    drives.installDropbox();
    drives.installPCloud();
    open();
    pick(u"/home/tester/Archive/Snippets"_s);
    click(*sheet->driveRows()[0]);
    picture(u"change-location"_s);
    click(sheet->moveButton());
    sheet->progress().setProgress(0.62);
    picture(u"change-location-migrating"_s);
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"createFolders"_s)
            throw MemoryFileSystem::error(u"create"_s, path, EACCES);
    };
    copy();
    click(sheet->localRow().chooser().row());
    picture(u"change-location-error"_s);
}

} // namespace
} // namespace vellumry::test
