#include "library/FirstLaunchSetup.h"

#include "library/DriveWorld.h"
#include "library/FolderQuestion.h"
#include "platform/linux/PosixFileSystem.h"
#include "storage/StorageWorld.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using Step = FirstLaunchSetup::OnboardingStep;
using Mode = FirstLaunchSetup::SetupMode;
using State = FirstLaunchSetup::ValidationState;

const QString noData =
    u"No Vellumry data found in this folder. Please select a folder containing Vellumry data files."_s;

class FirstLaunchSetupTest : public testing::Test {
protected:
    FirstLaunchSetup& setup()
    {
        if (!built) {
            built = std::make_unique<FirstLaunchSetup>(FirstLaunchSetup::Dependencies{
                .cloudDriveService = drives.service,
                .files = files,
                .clock = clock,
                .background = background,
                .pickFolder = question.asker(),
                .onComplete = [this](const FirstLaunchChoice& choice) {
                    EXPECT_TRUE(built->isPresented()) << "the choice comes first";
                    choices.append(choice.kind == FirstLaunchChoice::Kind::startFresh
                                       ? u"fresh "_s + choice.location
                                       : u"existing "_s + choice.location);
                }});
            QObject::connect(built.get(), &FirstLaunchSetup::dismissed, built.get(), [this] {
                EXPECT_FALSE(built->isPresented());
                choices.append(u"gone"_s);
            });
            built->appear();
        }
        return *built;
    }

    /// Goes on with existing data, from this folder.
    void useExisting(const QString& folder)
    {
        setup().selectMode(Mode::useExisting);
        setup().handleContinue();
        question.choose(folder);
    }

    void look()
    {
        background.runWork();
        background.runActions();
    }

    void putLibrary(const QString& folder)
    {
        files.makeFolder(folder);
        files.replace(folder + u"/_metadata.json"_s, metadataFileBytes({u"w"_s}));
        files.replace(folder + u"/work.json"_s,
                      collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
    }

    LogCapture log;
    MemoryFileSystem files;
    DriveWorld drives{files};
    ManualClock clock;
    ManualBackgroundRunner background;
    FolderQuestion question;
    QStringList choices;
    std::unique_ptr<FirstLaunchSetup> built;
};

TEST_F(FirstLaunchSetupTest, beginsWithTheModesAndNothingChosen)
{
    EXPECT_TRUE(setup().isPresented());
    EXPECT_EQ(setup().currentStep(), Step::chooseMode);
    EXPECT_EQ(setup().selectedMode(), std::nullopt);
    EXPECT_EQ(setup().selectedStorageLocation(), std::nullopt);
    EXPECT_EQ(setup().customSelectedPath(), std::nullopt);
    EXPECT_EQ(setup().validationState(), State::idle);
    EXPECT_EQ(setup().errorMessage(), std::nullopt);
    EXPECT_FALSE(setup().showFolderPicker());
    EXPECT_TRUE(setup().detectedDrives().isEmpty());
    EXPECT_FALSE(setup().canContinue());
}

TEST_F(FirstLaunchSetupTest, proposesTheFirstDrive)
{
    drives.installPCloud();
    drives.installDropbox();
    EXPECT_EQ(setup().detectedDrives().size(), 2);
    EXPECT_EQ(setup().selectedStorageLocation(), DriveWorld::dropboxFolder());
}

TEST_F(FirstLaunchSetupTest, aFreshStartTakesTheChosenFolder)
{
    drives.installDropbox();
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    EXPECT_EQ(setup().currentStep(), Step::configureStorage);
    EXPECT_TRUE(setup().canContinue());
    setup().handleContinue();
    EXPECT_EQ(choices, QStringList({u"fresh "_s + DriveWorld::dropboxFolder(), u"gone"_s}));
    EXPECT_FALSE(background.hasWork()) << "nothing is looked at";
}

TEST_F(FirstLaunchSetupTest, withoutADriveNothingIsProposed)
{
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    EXPECT_FALSE(setup().canContinue());
    setup().handleContinue();
    EXPECT_TRUE(choices.isEmpty());
    setup().selectStorageLocation(u"/local"_s);
    EXPECT_TRUE(setup().canContinue());
    setup().handleContinue();
    EXPECT_EQ(choices, QStringList({u"fresh /local"_s, u"gone"_s}));
}

TEST_F(FirstLaunchSetupTest, aPickedFolderBecomesTheChoiceOfAFreshStart)
{
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    setup().pickFolder();
    EXPECT_TRUE(setup().showFolderPicker());
    setup().pickFolder();
    EXPECT_EQ(question.titles.size(), 1) << "one dialog at a time";
    question.choose(u"/mine"_s);
    EXPECT_FALSE(setup().showFolderPicker());
    EXPECT_EQ(setup().customSelectedPath(), u"/mine"_s);
    EXPECT_EQ(setup().selectedStorageLocation(), u"/mine"_s);
    EXPECT_TRUE(setup().isPresented());
}

TEST_F(FirstLaunchSetupTest, aCancelledDialogChangesNothing)
{
    drives.installDropbox();
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    setup().pickFolder();
    question.cancel();
    EXPECT_FALSE(setup().showFolderPicker());
    EXPECT_EQ(setup().customSelectedPath(), std::nullopt);
    EXPECT_EQ(setup().selectedStorageLocation(), DriveWorld::dropboxFolder());
    EXPECT_EQ(setup().errorMessage(), std::nullopt);
}

TEST_F(FirstLaunchSetupTest, aFailedDialogIsTold)
{
    setup().selectMode(Mode::useExisting);
    setup().handleContinue();
    question.fail(u"no such place"_s);
    EXPECT_EQ(setup().errorMessage(), u"no such place"_s);
    EXPECT_EQ(setup().validationState(), State::idle);
    EXPECT_FALSE(background.hasWork());
}

TEST_F(FirstLaunchSetupTest, existingDataAreLookedAtInTheBackground)
{
    putLibrary(u"/data"_s);
    useExisting(u"/data"_s);
    EXPECT_EQ(setup().currentStep(), Step::chooseMode) << "the second step is never reached";
    EXPECT_EQ(setup().validationState(), State::validating);
    EXPECT_TRUE(files.opened.isEmpty());
    background.runWork();
    EXPECT_FALSE(files.opened.isEmpty());
    EXPECT_TRUE(choices.isEmpty()) << "the verdict comes on the main thread";
    background.runActions();
    EXPECT_EQ(setup().validationState(), State::valid);
    EXPECT_EQ(setup().selectedStorageLocation(), u"/data"_s);
    EXPECT_EQ(choices, QStringList({u"existing /data"_s, u"gone"_s}));
}

TEST_F(FirstLaunchSetupTest, aFolderWithoutDataLeavesTheFirstStepOpen)
{
    files.makeFolder(u"/empty"_s);
    useExisting(u"/empty"_s);
    look();
    EXPECT_EQ(setup().validationState(), State::invalid);
    EXPECT_EQ(setup().errorMessage(), noData);
    EXPECT_EQ(setup().currentStep(), Step::chooseMode);
    EXPECT_TRUE(setup().canContinue());

    putLibrary(u"/data"_s);
    setup().handleContinue();
    question.choose(u"/data"_s);
    EXPECT_EQ(setup().errorMessage(), std::nullopt) << "gone while the next one is looked at";
    look();
    EXPECT_EQ(choices, QStringList({u"existing /data"_s, u"gone"_s}));
}

TEST_F(FirstLaunchSetupTest, everyUnusableFolderGetsTheSameWords)
{
    files.makeFolder(u"/broken"_s);
    files.replace(u"/broken/_metadata.json"_s, "{");
    files.replace(u"/a file"_s, "text");
    files.makeFolder(u"/unreadable"_s);
    files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"list"_s && path == u"/unreadable"_s)
            throw MemoryFileSystem::error(operation, path, EACCES);
    };
    setup().selectMode(Mode::useExisting);
    for (const QString& folder :
         {u"/broken"_s, u"/a file"_s, u"/unreadable"_s, u"/gone by now"_s, QString()}) {
        setup().handleContinue();
        question.choose(folder);
        look();
        EXPECT_EQ(setup().errorMessage(), noData) << qPrintable(folder);
        EXPECT_TRUE(setup().canContinue());
    }
    EXPECT_TRUE(choices.isEmpty());
}

TEST_F(FirstLaunchSetupTest, aRefusedFolderStaysTheChoiceOfAFreshStart)
{
    // The second step shows no row for it, and still goes on with it.
    files.makeFolder(u"/empty"_s);
    useExisting(u"/empty"_s);
    look();
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    EXPECT_TRUE(setup().canContinue());
    EXPECT_EQ(setup().selectedStorageLocation(), u"/empty"_s);
}

TEST_F(FirstLaunchSetupTest, goingBackForgetsTheLocationAndTheError)
{
    drives.installDropbox();
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    setup().pickFolder();
    question.fail(u"no"_s);
    setup().goBack();
    EXPECT_EQ(setup().currentStep(), Step::chooseMode);
    EXPECT_EQ(setup().errorMessage(), std::nullopt);
    EXPECT_EQ(setup().selectedMode(), Mode::startFresh);
    EXPECT_EQ(setup().selectedStorageLocation(), std::nullopt);
    // The drive is not proposed a second time.
    setup().handleContinue();
    EXPECT_FALSE(setup().canContinue());
}

TEST_F(FirstLaunchSetupTest, theSecondStepWaitsForAFolderThatIsLookedAt)
{
    drives.installDropbox();
    files.makeFolder(u"/empty"_s);
    useExisting(u"/empty"_s);
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    EXPECT_EQ(setup().currentStep(), Step::configureStorage);
    EXPECT_FALSE(setup().canContinue());
    look();
    EXPECT_TRUE(setup().canContinue());
}

TEST_F(FirstLaunchSetupTest, theVerdictOnAnEarlierFolderIsNoLongerAsked)
{
    putLibrary(u"/first"_s);
    putLibrary(u"/second"_s);
    useExisting(u"/first"_s);
    setup().handleContinue();
    question.choose(u"/second"_s);
    look();
    EXPECT_EQ(choices, QStringList({u"existing /second"_s, u"gone"_s}));
}

TEST_F(FirstLaunchSetupTest, itsEndIsTheEnd)
{
    drives.installDropbox();
    setup().selectMode(Mode::startFresh);
    setup().handleContinue();
    setup().pickFolder();
    setup().handleContinue();
    setup().handleContinue();
    question.choose(u"/late"_s);
    EXPECT_EQ(choices.size(), 2);
    EXPECT_EQ(setup().customSelectedPath(), std::nullopt);
}

TEST_F(FirstLaunchSetupTest, mayGoWhileAFolderIsLookedAtOrAskedFor)
{
    putLibrary(u"/data"_s);
    useExisting(u"/data"_s);
    setup().handleContinue();
    built.reset();
    look();
    question.choose(u"/data"_s);
    EXPECT_TRUE(choices.isEmpty());
}

TEST(FirstLaunchSetupThreadTest, looksAtRealFoldersOnAThreadOfItsOwn)
{
    LogCapture log;
    MemoryFileSystem machine;
    const DriveWorld drives(machine);
    const QTemporaryDir folder;
    ThreadRunner background;
    FolderQuestion question;
    FirstLaunchSetup setup({.cloudDriveService = drives.service,
                            .files = FileSystem::local(),
                            .clock = SystemClock::shared(),
                            .background = background,
                            .pickFolder = question.asker(),
                            .onComplete = [](const FirstLaunchChoice&) {}});
    setup.selectMode(Mode::useExisting);
    setup.handleContinue();
    question.choose(folder.path());
    EXPECT_EQ(setup.validationState(), State::validating);
    EXPECT_TRUE(eventually([&] { return setup.validationState() == State::invalid; }));
    FileSystem::local().write(folder.filePath(u"work.json"_s),
                              collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
    setup.handleContinue();
    question.choose(folder.path());
    EXPECT_TRUE(eventually([&] { return !setup.isPresented(); }));
}

} // namespace
} // namespace vellumry::test
