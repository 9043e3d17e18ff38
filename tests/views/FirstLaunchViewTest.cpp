#include "views/sheets/FirstLaunchView.h"

#include "views/SheetFixture.h"
#include "views/common/NoteView.h"
#include "views/sheets/DriveLook.h"
#include "views/sheets/ModeCard.h"
#include "views/sheets/StorageLocationRow.h"

#include <cerrno>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class FirstLaunchViewTest : public SheetFixture {
protected:
    FirstLaunchView& open()
    {
        view = new FirstLaunchView(
            {.theme = theme,
             .scheduler = scheduler,
             .setup = {.cloudDriveService = drives.service,
                       .files = files,
                       .clock = world.clock,
                       .background = background,
                       .pickFolder = question.asker(),
                       .onComplete =
                           [this](const FirstLaunchChoice& choice) {
                               choices.append(choice.kind == FirstLaunchChoice::Kind::startFresh
                                                  ? u"fresh "_s + choice.location
                                                  : u"existing "_s + choice.location);
                           }},
             .defaultLocation = u"/home/tester/Documents/Apps/Vellumry"_s,
             .homeFolder = u"/home/tester"_s,
             .onDismiss = [this] { host.dismiss(view); }});
        return present(view, {});
    }

    /// On the second step.
    FirstLaunchView& openLocations()
    {
        open();
        click(view->startFreshCard());
        click(view->continueButton());
        return *view;
    }

    void putLibrary(const QString& folder)
    {
        files.makeFolder(folder);
        files.replace(folder + u"/_metadata.json"_s, metadataFileBytes({u"w"_s}));
        files.replace(folder + u"/work.json"_s,
                      collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
    }

    void look()
    {
        background.runWork();
        background.runActions();
        settle();
    }

    QStringList choices;
    FirstLaunchView* view = nullptr;
};

TEST_F(FirstLaunchViewTest, theFirstStepOffersTwoWays)
{
    open();
    EXPECT_EQ(
        labelTexts(*view),
        QStringList({u"Vellumry"_s, u"A local-first snippet manager that puts you in control."_s}));
    const auto& fresh = view->startFreshCard().contents();
    EXPECT_EQ(fresh.title, u"Start Fresh"_s);
    EXPECT_EQ(fresh.description, u"Create a new snippet library from scratch"_s);
    EXPECT_EQ(fresh.icon, u"plus.circle.fill"_s);
    const auto& existing = view->useExistingCard().contents();
    EXPECT_EQ(existing.title, u"Use Existing Data"_s);
    EXPECT_EQ(existing.description, u"I already have Vellumry data on another device"_s);
    EXPECT_EQ(existing.icon, u"folder.fill"_s);
    EXPECT_EQ(view->continueButton().text(), u"Continue"_s);
    EXPECT_FALSE(view->continueButton().isEnabled());
    EXPECT_FALSE(view->backButton().isVisible());
    EXPECT_FALSE(view->errorLine().isVisible());
    EXPECT_FALSE(view->startFreshCard().isSelected());
}

TEST_F(FirstLaunchViewTest, aCardIsChosenByAClickOrByTheKeyboard)
{
    open();
    click(view->useExistingCard());
    EXPECT_TRUE(view->useExistingCard().isSelected());
    EXPECT_TRUE(view->continueButton().isEnabled());
    view->startFreshCard().setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_TRUE(view->startFreshCard().isSelected());
    EXPECT_FALSE(view->useExistingCard().isSelected());
    key(Qt::Key_Right);
    EXPECT_EQ(focused(), u"Use Existing Data"_s);
}

TEST_F(FirstLaunchViewTest, escapeDoesNothingAndReturnGoesOnWhenItMay)
{
    open();
    key(Qt::Key_Escape);
    key(Qt::Key_Return);
    EXPECT_TRUE(host.isPresenting());
    EXPECT_TRUE(view->startFreshCard().isVisible());
    key(Qt::Key_Space);
    key(Qt::Key_Return);
    EXPECT_FALSE(view->startFreshCard().isVisible());
    EXPECT_EQ(view->continueButton().text(), u"Get Started"_s);
}

TEST_F(FirstLaunchViewTest, theSecondStepListsTheDrivesAndTheLocalRow)
{
    drives.installDropbox();
    drives.installPCloud();
    openLocations();
    EXPECT_EQ(labelTexts(*view),
              QStringList({u"Choose where to store your data"_s,
                           u"A local-first snippet manager that puts you in control."_s,
                           u"Choose a storage location"_s,
                           u"For multi-device sync, select a cloud drive folder. Your snippets "
                           "will automatically sync across all devices."_s,
                           u"Recommended - Cloud Drives"_s, u"Other Options"_s}));
    ASSERT_EQ(view->driveRows().size(), 2U);
    const auto& first = view->driveRows()[0]->contents();
    EXPECT_EQ(first.title, u"Dropbox"_s);
    EXPECT_EQ(first.detail, u"~/Dropbox/Apps/Vellumry"_s);
    EXPECT_EQ(first.symbol, u"shippingbox.fill"_s);
    EXPECT_EQ(first.tileColor, QColor(0x00, 0x61, 0xFF));
    EXPECT_EQ(view->driveRows()[1]->contents().title, u"pCloud"_s);
    EXPECT_EQ(view->localRow().defaultRow().contents().detail, u"~/Documents/Apps/Vellumry"_s);
    // The first drive is proposed.
    EXPECT_TRUE(view->driveRows()[0]->isSelected());
    EXPECT_EQ(view->driveRows()[0]->mark(), u"checkmark.circle.fill"_s);
    EXPECT_EQ(view->driveRows()[1]->mark(), QString());
    EXPECT_TRUE(view->continueButton().isEnabled());
    EXPECT_EQ(focused(), u"Get Started"_s);
    click(view->continueButton());
    EXPECT_EQ(choices, QStringList({u"fresh "_s + DriveWorld::dropboxFolder()}));
    EXPECT_FALSE(host.isPresenting());
}

TEST_F(FirstLaunchViewTest, theFocusGoesThroughTheSecondStepInOrder)
{
    drives.installDropbox();
    openLocations();
    EXPECT_EQ(tabWay(), QStringList({u"Get Started"_s, u"Dropbox"_s, u"Local Storage"_s,
                                     u"Change..."_s, u"Back"_s}));
}

TEST_F(FirstLaunchViewTest, withoutADriveTheLocalRowHasToBeChosen)
{
    openLocations();
    EXPECT_FALSE(labelTexts(*view).contains(u"Recommended - Cloud Drives"_s));
    EXPECT_TRUE(labelTexts(*view).contains(u"Other Options"_s));
    EXPECT_EQ(view->continueButton().text(), u"Get Started"_s);
    EXPECT_FALSE(view->continueButton().isEnabled());
    EXPECT_EQ(focused(), u"Local Storage"_s);
    click(view->localRow().defaultRow());
    EXPECT_TRUE(view->localRow().defaultRow().isSelected());
    EXPECT_TRUE(view->continueButton().isEnabled());
    key(Qt::Key_Return);
    EXPECT_EQ(choices, QStringList({u"fresh /home/tester/Documents/Apps/Vellumry"_s}));
}

TEST_F(FirstLaunchViewTest, changeAsksForAFolderThatGetsARowOfItsOwn)
{
    openLocations();
    auto& local = view->localRow();
    EXPECT_FALSE(local.customRow().isVisible());
    click(local.changeButton());
    EXPECT_TRUE(question.isOpen());
    question.choose(u"/home/tester/Notes"_s);
    settle();
    EXPECT_TRUE(local.customRow().isVisible());
    EXPECT_TRUE(local.customRow().isSelected());
    EXPECT_EQ(local.customRow().contents().detail, u"~/Notes"_s);
    EXPECT_FALSE(local.defaultRow().isSelected());
    click(local.defaultRow());
    EXPECT_TRUE(local.defaultRow().isSelected());
    EXPECT_FALSE(local.customRow().isSelected());
    click(local.customRow());
    EXPECT_TRUE(local.customRow().isSelected());
    // It moves with the row.
    EXPECT_EQ(local.changeButton().parentWidget(), &local.customRow());
    click(local.changeButton());
    question.choose(u"/elsewhere"_s);
    settle();
    EXPECT_EQ(local.customRow().contents().detail, u"/elsewhere"_s);
    click(view->continueButton());
    EXPECT_EQ(choices, QStringList({u"fresh /elsewhere"_s}));
}

TEST_F(FirstLaunchViewTest, backForgetsTheProposal)
{
    drives.installDropbox();
    openLocations();
    click(view->backButton());
    EXPECT_TRUE(view->startFreshCard().isVisible());
    EXPECT_TRUE(view->startFreshCard().isSelected());
    EXPECT_EQ(view->continueButton().text(), u"Continue"_s);
    EXPECT_EQ(focused(), u"Start Fresh"_s);
    click(view->continueButton());
    EXPECT_FALSE(view->driveRows()[0]->isSelected());
    EXPECT_FALSE(view->continueButton().isEnabled());
}

TEST_F(FirstLaunchViewTest, existingDataLeadStraightToTheDialogAndEndTheSheet)
{
    putLibrary(u"/data"_s);
    open();
    click(view->useExistingCard());
    click(view->continueButton());
    EXPECT_TRUE(question.isOpen());
    question.choose(u"/data"_s);
    settle();
    EXPECT_TRUE(view->useExistingCard().isVisible());
    EXPECT_TRUE(host.isPresenting());
    look();
    EXPECT_EQ(choices, QStringList({u"existing /data"_s}));
    EXPECT_FALSE(host.isPresenting());
}

TEST_F(FirstLaunchViewTest, aFolderWithoutDataIsToldUnderTheCards)
{
    files.makeFolder(u"/empty"_s);
    open();
    click(view->useExistingCard());
    click(view->continueButton());
    question.choose(u"/empty"_s);
    look();
    EXPECT_TRUE(view->errorLine().isVisible());
    EXPECT_EQ(view->errorLine().text(),
              u"No Vellumry data found in this folder. Please select a folder containing "
              "Vellumry data files."_s);
    EXPECT_EQ(view->errorLine().symbol(), u"exclamationmark.triangle.fill"_s);
    EXPECT_GT(view->errorLine().mapTo(view, QPoint()).y(),
              view->startFreshCard().mapTo(view, QPoint()).y() + view->startFreshCard().height() -
                  10);
    // Another try.
    putLibrary(u"/data"_s);
    key(Qt::Key_Return);
    question.choose(u"/data"_s);
    settle();
    EXPECT_FALSE(view->errorLine().isVisible());
    look();
    EXPECT_EQ(choices, QStringList({u"existing /data"_s}));
}

TEST_F(FirstLaunchViewTest, everyFolderThatCannotBeUsedIsToldAndTheNextOneCanBeTaken)
{
    putLibrary(u"/data"_s);
    putLibrary(u"/unreadable"_s);
    files.makeFolder(u"/broken"_s);
    files.replace(u"/broken/_metadata.json"_s, "{");
    files.makeFolder(u"/pulled out"_s);
    files.replace(u"/a file"_s, "text");
    files.onOperation = [](const QString& operation, const QString& path) {
        if ((operation == u"list"_s && path == u"/pulled out"_s) ||
            (operation == u"read"_s && path.startsWith(u"/unreadable/"_s)))
            throw MemoryFileSystem::error(operation, path, EIO);
    };
    open();
    click(view->useExistingCard());
    for (const QString& folder : {u"/gone by now"_s, u"/broken"_s, u"/pulled out"_s,
                                  u"/unreadable"_s, u"/a file"_s, QString()}) {
        click(view->continueButton());
        question.choose(folder);
        settle();
        EXPECT_FALSE(view->errorLine().isVisible());
        look();
        EXPECT_TRUE(view->errorLine().isVisible()) << qPrintable(folder);
        EXPECT_TRUE(view->errorLine().text().startsWith(u"No Vellumry data found"_s));
        EXPECT_TRUE(host.isPresenting());
    }
    click(view->continueButton());
    question.choose(u"/data"_s);
    look();
    EXPECT_EQ(choices, QStringList({u"existing /data"_s}));
}

TEST_F(FirstLaunchViewTest, aFailedDialogIsToldOnTheStepThatAsked)
{
    openLocations();
    click(view->localRow().changeButton());
    question.fail(u"The dialog failed."_s);
    settle();
    EXPECT_TRUE(view->errorLine().isVisible());
    EXPECT_EQ(view->errorLine().text(), u"The dialog failed."_s);
    click(view->backButton());
    EXPECT_FALSE(view->errorLine().isVisible());
}

TEST_F(FirstLaunchViewTest, whatTheFirstStepToldIsNotToldAgainOnTheSecond)
{
    open();
    click(view->useExistingCard());
    click(view->continueButton());
    question.fail(u"The dialog failed."_s);
    settle();
    EXPECT_TRUE(view->errorLine().isVisible());
    click(view->startFreshCard());
    click(view->continueButton());
    EXPECT_FALSE(view->errorLine().isVisible());
}

TEST_F(FirstLaunchViewTest, eachDriveHasItsColourAndSymbol)
{
    QStringList table;
    for (const CloudDriveType type : allCloudDriveTypes)
        table.append(rawValue(type) + u' ' + driveColor(type).name().toUpper() + u' ' +
                     driveSymbol(type));
    EXPECT_EQ(
        table,
        QStringList({u"Dropbox #0061FF shippingbox.fill"_s, u"iCloud Drive #3693F3 icloud.fill"_s,
                     u"Google Drive #4285F4 externaldrive.fill"_s, u"OneDrive #0078D4 cloud.fill"_s,
                     u"pCloud #00AEEF cloud.fill"_s}));
}

TEST_F(FirstLaunchViewTest, anErrorThatIsNotThereTakesNoRoom)
{
    const auto below = [this](const QWidget& last) {
        const QWidget& body = *view->scrollArea().widget();
        return body.height() - last.mapTo(&body, QPoint(0, last.height())).y();
    };
    openLocations();
    EXPECT_EQ(below(view->localRow()), 24 - SelectableButton::ringRoom);
    click(view->backButton());
    EXPECT_EQ(below(view->startFreshCard()), 24 - SelectableButton::ringRoom);
}

TEST_F(FirstLaunchViewTest, theCardsGrowWithTheirTexts)
{
    open();
    const int designed = view->startFreshCard().height();
    for (const qreal scale : {1.25, 1.6, 2.0}) {
        theme.setTextScale(scale);
        settle();
        for (ModeCard* card : {&view->startFreshCard(), &view->useExistingCard()})
            EXPECT_GE(card->height(), card->heightForWidth(card->width())) << scale;
    }
    EXPECT_GT(view->startFreshCard().height(), designed);
    EXPECT_EQ(view->startFreshCard().height(), view->useExistingCard().height());
}

TEST_F(FirstLaunchViewTest, Pictures)
{
    drives.installDropbox();
    drives.installPCloud();
    files.makeFolder(u"/empty"_s);
    open();
    picture(u"first-launch-0"_s);
    click(view->startFreshCard());
    picture(u"first-launch-1"_s);
    theme.setTextScale(1.6);
    picture(u"first-launch-1-large"_s, false);
    theme.setTextScale(1);
    click(view->useExistingCard());
    click(view->continueButton());
    question.choose(u"/empty"_s);
    look();
    picture(u"first-launch-1-error"_s);
    click(view->startFreshCard());
    click(view->continueButton());
    click(*view->driveRows()[0]);
    picture(u"first-launch-2"_s);
    click(view->localRow().changeButton());
    question.choose(u"/home/tester/Archive/Snippets"_s);
    settle();
    picture(u"first-launch-2-custom"_s);
    theme.setTextScale(1.6);
    picture(u"first-launch-2-large"_s, false);
}

} // namespace
} // namespace vellumry::test
