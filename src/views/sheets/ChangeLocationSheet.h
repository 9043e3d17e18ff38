#pragma once

#include "library/LocationChoice.h"
#include "views/sheets/ScrollingSheet.h"

#include <functional>
#include <vector>

namespace vellumry {

class CloudDriveSelectionRow;
class LocalLocationRowWithChoose;
class MigrationProgressView;
class NoteView;
class WrappingLabel;

/// The sheet that moves the library to another folder. While data move nothing closes it: neither a
/// key nor a button of its own, nor the close button of the window that it stands in. Main thread
/// only.
class ChangeLocationSheet : public ScrollingSheet {
    Q_OBJECT

public:
    /// What is referred to outlives the sheet.
    struct Dependencies {
        const Theme& theme;
        Scheduler& scheduler;
        LocationChoice::Dependencies choice;
        QString homeFolder; ///< for showing paths
        /// The sheet is to go.
        std::function<void()> onDismiss;
    };

    explicit ChangeLocationSheet(const Dependencies& dependencies, QWidget* parent = nullptr);

    [[nodiscard]] QWidget* firstFocus() const override;
    /// What Escape does: lets the sheet go, unless data move.
    void cancel();

    [[nodiscard]] LocationChoice& choice() { return state; }
    [[nodiscard]] const std::vector<CloudDriveSelectionRow*>& driveRows() const { return drives; }
    [[nodiscard]] LocalLocationRowWithChoose& localRow() const { return *local; }
    [[nodiscard]] NoteView& note() const { return *remark; }
    [[nodiscard]] NoteView& errorLine() const { return *error; }
    [[nodiscard]] MigrationProgressView& progress() const { return *moving; }
    [[nodiscard]] Button& closeButton() const { return *close; }
    [[nodiscard]] Button& cancelButton() const { return *cancelling; }
    [[nodiscard]] Button& moveButton() const { return *move; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void build();
    void showState();

    const Theme& theme;
    QString homeFolder;
    std::function<void()> onDismiss;
    LocationChoice state;
    Button* close;
    std::vector<CloudDriveSelectionRow*> drives;
    LocalLocationRowWithChoose* local = nullptr;
    NoteView* remark;
    NoteView* error;
    MigrationProgressView* moving;
    Button* cancelling;
    Button* move;
};

} // namespace vellumry
