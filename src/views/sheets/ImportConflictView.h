#pragma once

#include "library/ImportConflicts.h"
#include "views/sheets/OptionRow.h"
#include "views/sheets/ScrollingSheet.h"

#include <functional>
#include <vector>

namespace vellumry {

class ConflictTableView;
class UpdateTimeDetail;

/// The sheet that shows the conflicts of an import and asks what to do about them. Main thread
/// only.
class ImportConflictView : public ScrollingSheet {
    Q_OBJECT

public:
    static constexpr QSize frame{540, 480};

    /// What is referred to outlives the view.
    struct Dependencies {
        const Theme& theme;
        Scheduler& scheduler;
        ConflictDetectionResult conflictResult;
        ConflictResolutionMode selectedMode = ConflictResolutionMode::smartUpdate;
        std::function<void(ConflictResolutionMode)> onModeChange;
        std::function<void()> onConfirm;
        std::function<void()> onCancel;
    };

    explicit ImportConflictView(Dependencies dependencies, QWidget* parent = nullptr);

    [[nodiscard]] ConflictResolutionMode selectedMode() const { return services.selectedMode; }
    /// For a change from elsewhere; calls nobody.
    void setSelectedMode(ConflictResolutionMode mode);
    /// What Escape does.
    void cancel() { services.onCancel(); }
    [[nodiscard]] QWidget* firstFocus() const override;

    [[nodiscard]] ConflictTableView& table() const { return *conflicts; }
    [[nodiscard]] const std::vector<OptionRow*>& modeRows() const { return modes; }
    [[nodiscard]] UpdateTimeDetail& detail() const { return *time; }
    /// Empty where nothing new comes with the import.
    [[nodiscard]] QString note() const;
    [[nodiscard]] Button& cancelButton() const { return *cancelling; }
    [[nodiscard]] Button& continueButton() const { return *proceed; }

private:
    void buildHeader();
    void showDetail();

    Dependencies services;
    ConflictTableView* conflicts;
    std::vector<OptionRow*> modes;
    UpdateTimeDetail* time;
    Button* cancelling;
    Button* proceed;
};

/// When the two sides of a conflict were updated, in a small sheet above the others.
class UpdateTimeDetail : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the detail.
    UpdateTimeDetail(const Theme& theme, QWidget* parent);

    void setConflict(const ImportConflict& conflict);
    [[nodiscard]] const QString& localText() const { return local; }
    [[nodiscard]] const QString& importedText() const { return imported; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    QString local;
    QString imported;
};

} // namespace vellumry
