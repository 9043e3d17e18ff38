#include "library/FirstLaunchSetup.h"

#include "storage/DataValidator.h"
#include "sync/CloudDriveDetectionService.h"

#include <QPointer>

#include <utility>
#include <variant>

namespace vellumry {

FirstLaunchSetup::FirstLaunchSetup(Dependencies dependencies) : with(std::move(dependencies)) {}

void FirstLaunchSetup::appear()
{
    drives = with.cloudDriveService.detectInstalledCloudDrives();
    if (!drives.isEmpty())
        location = drives.constFirst().programFolderPath();
    Q_EMIT changed();
}

void FirstLaunchSetup::selectMode(SetupMode value)
{
    mode = value;
    Q_EMIT changed();
}

void FirstLaunchSetup::selectStorageLocation(const QString& path)
{
    location = path;
    Q_EMIT changed();
}

void FirstLaunchSetup::pickFolder()
{
    if (std::exchange(isPicking, true))
        return;
    Q_EMIT changed();
    with.pickFolder(QStringLiteral("Choose Folder"),
                    [this, owner = QPointer<QObject>(this)](const auto& answer) {
                        if (!owner)
                            return;
                        isPicking = false;
                        if (answer && presented)
                            handleFolderSelection(*answer);
                        Q_EMIT changed();
                    });
}

bool FirstLaunchSetup::canContinue() const
{
    if (step == OnboardingStep::chooseMode)
        return mode.has_value();
    return location.has_value() && validation != ValidationState::validating;
}

void FirstLaunchSetup::handleContinue()
{
    if (!canContinue() || !presented)
        return;
    if (step == OnboardingStep::configureStorage) {
        complete(mode == SetupMode::useExisting ? FirstLaunchChoice::useExisting(*location)
                                                : FirstLaunchChoice::startFresh(*location));
    } else if (mode == SetupMode::useExisting) {
        pickFolder();
    } else {
        step = OnboardingStep::configureStorage;
        Q_EMIT changed();
    }
}

void FirstLaunchSetup::goBack()
{
    error.reset();
    if (step == OnboardingStep::configureStorage) {
        step = OnboardingStep::chooseMode;
        location.reset();
    }
    Q_EMIT changed();
}

void FirstLaunchSetup::handleFolderSelection(const PickedFile& result)
{
    if (result.error) {
        error = result.error;
    } else if (mode == SetupMode::useExisting) {
        location = result.path;
        validateAndCompleteExistingData(result.path);
    } else {
        customPath = result.path;
        location = result.path;
    }
}

void FirstLaunchSetup::validateAndCompleteExistingData(const QString& folder)
{
    validation = ValidationState::validating;
    error.reset();
    with.background.run([this, owner = QPointer<QObject>(this), folder, number = ++validations,
                         &files = with.files, &clock = with.clock, &background = with.background] {
        const bool isValid = std::holds_alternative<DataValidator::Valid>(
            DataValidator::validate(folder, files, clock));
        background.onMain(owner, [this, folder, number, isValid] {
            if (number == validations && presented)
                finishValidation(folder, isValid);
        });
    });
}

void FirstLaunchSetup::finishValidation(const QString& folder, bool isValid)
{
    if (!isValid) {
        validation = ValidationState::invalid;
        error = QStringLiteral("No Vellumry data found in this folder. Please select a folder "
                               "containing Vellumry data files.");
        Q_EMIT changed();
        return;
    }
    error.reset();
    location = folder;
    validation = ValidationState::valid;
    complete(FirstLaunchChoice::useExisting(folder));
}

void FirstLaunchSetup::complete(const FirstLaunchChoice& choice)
{
    with.onComplete(choice);
    presented = false;
    Q_EMIT changed();
    Q_EMIT dismissed();
}

} // namespace vellumry
