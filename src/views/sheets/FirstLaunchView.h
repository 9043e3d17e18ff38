#pragma once

#include "library/FirstLaunchSetup.h"
#include "views/sheets/ScrollingSheet.h"

#include <functional>
#include <optional>
#include <vector>

namespace vellumry {

class Label;
class LocalStorageRowWithChange;
class ModeCard;
class NoteView;
class StorageLocationRow;

/// The sheet of the first launch: how to begin, then where the data live. It cannot be cancelled.
/// Main thread only.
class FirstLaunchView : public ScrollingSheet {
    Q_OBJECT

public:
    /// What is referred to outlives the view.
    struct Dependencies {
        const Theme& theme;
        Scheduler& scheduler;
        FirstLaunchSetup::Dependencies setup; ///< with what takes the choice
        QString defaultLocation;
        QString homeFolder; ///< for showing paths
        /// The choice has been handed over: the sheet is to go.
        std::function<void()> onDismiss;
    };

    explicit FirstLaunchView(const Dependencies& dependencies, QWidget* parent = nullptr);

    [[nodiscard]] QWidget* firstFocus() const override;

    [[nodiscard]] FirstLaunchSetup& setup() { return state; }
    [[nodiscard]] ModeCard& startFreshCard() const { return *startFresh; }
    [[nodiscard]] ModeCard& useExistingCard() const { return *useExisting; }
    [[nodiscard]] const std::vector<StorageLocationRow*>& driveRows() const { return drives; }
    [[nodiscard]] LocalStorageRowWithChange& localRow() const { return *local; }
    [[nodiscard]] NoteView& errorLine() const { return *error; }
    [[nodiscard]] Button& backButton() const { return *back; }
    [[nodiscard]] Button& continueButton() const { return *proceed; }

private:
    void buildModes();
    void buildLocations();
    void showState();

    const Theme& theme;
    QString defaultLocation;
    QString homeFolder;
    FirstLaunchSetup state;
    FirstLaunchSetup::OnboardingStep shownStep = FirstLaunchSetup::OnboardingStep::chooseMode;
    std::optional<QString> earlierError; ///< of the step before, which has been told
    QWidget* modes;
    QWidget* locations;
    ModeCard* startFresh = nullptr;
    ModeCard* useExisting = nullptr;
    std::vector<StorageLocationRow*> drives;
    LocalStorageRowWithChange* local = nullptr;
    NoteView* error;
    Button* back;
    Button* proceed;
};

} // namespace vellumry
