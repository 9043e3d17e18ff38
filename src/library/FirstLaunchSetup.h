#pragma once

#include "core/BackgroundRunner.h"
#include "core/Date.h"
#include "library/FirstLaunch.h"
#include "library/PickFolder.h"
#include "models/DetectedCloudDrive.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

class CloudDriveDetectionService;

/// The questions of the first launch: whether to start fresh or to use existing data, and where the
/// data live. Ends with one FirstLaunchChoice.
///
/// Existing data are looked at in the background, and a folder without any leaves the questions
/// open for another try; a folder for a fresh start is taken as it is. Main thread only.
class FirstLaunchSetup final : public QObject {
    Q_OBJECT

public:
    enum class OnboardingStep { chooseMode, configureStorage };
    enum class SetupMode { startFresh, useExisting };
    enum class ValidationState { idle, validating, valid, invalid };

    /// The references outlive this object and the work that it gave to `background`.
    struct Dependencies {
        const CloudDriveDetectionService& cloudDriveService;
        FileSystem& files;
        const Clock& clock;
        BackgroundRunner& background;
        PickFolder pickFolder;
        std::function<void(const FirstLaunchChoice&)> onComplete;
    };

    explicit FirstLaunchSetup(Dependencies dependencies);

    /// Looks for cloud drives and proposes a folder in the first one.
    void appear();

    [[nodiscard]] bool isPresented() const { return presented; }
    [[nodiscard]] OnboardingStep currentStep() const { return step; }
    [[nodiscard]] const std::optional<SetupMode>& selectedMode() const { return mode; }
    [[nodiscard]] const std::optional<QString>& selectedStorageLocation() const { return location; }
    [[nodiscard]] const std::optional<QString>& customSelectedPath() const { return customPath; }
    [[nodiscard]] ValidationState validationState() const { return validation; }
    /// What went wrong, for the person.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return error; }
    /// Whether the dialog for a folder is up.
    [[nodiscard]] bool showFolderPicker() const { return isPicking; }
    [[nodiscard]] const QList<DetectedCloudDrive>& detectedDrives() const { return drives; }

    void selectMode(SetupMode value);
    void selectStorageLocation(const QString& path);
    /// Asks for a folder of the person's own; one dialog at a time.
    void pickFolder();

    [[nodiscard]] bool canContinue() const;
    /// Does nothing while canContinue does not hold.
    void handleContinue();
    void goBack();

Q_SIGNALS:
    void changed();
    /// The choice has been handed over: the sheet may go.
    void dismissed();

private:
    void handleFolderSelection(const PickedFile& result);
    void validateAndCompleteExistingData(const QString& folder);
    void finishValidation(const QString& folder, bool isValid);
    void complete(const FirstLaunchChoice& choice);

    Dependencies with;
    bool presented = true;
    OnboardingStep step = OnboardingStep::chooseMode;
    std::optional<SetupMode> mode;
    std::optional<QString> location;
    std::optional<QString> customPath;
    ValidationState validation = ValidationState::idle;
    std::optional<QString> error;
    bool isPicking = false;
    QList<DetectedCloudDrive> drives;
    unsigned validations = 0; ///< the verdict on a folder counts until the next one is looked at
};

} // namespace vellumry
