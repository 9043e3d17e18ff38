#pragma once

#include "library/ConflictChoice.h"
#include "models/ConflictFile.h"
#include "views/sheets/OptionRow.h"
#include "views/sheets/ScrollingSheet.h"

#include <QList>

#include <functional>
#include <vector>

namespace vellumry {

class ConflictFileRow;
class FileViewer;
class NoteView;

/// One of the strategies to choose from.
class StrategyOptionRow : public OptionRow {
    Q_OBJECT

public:
    /// The theme outlives the row.
    StrategyOptionRow(const Theme& theme, ConflictMergeStrategy strategy,
                      std::function<void()> action, QWidget* parent);

    [[nodiscard]] ConflictMergeStrategy strategy() const { return offered; }

private:
    ConflictMergeStrategy offered;
};

/// The sheet that lists conflict copies and asks what to do about them. Main thread only.
class ConflictResolutionSheet : public ScrollingSheet {
    Q_OBJECT

public:
    /// What is referred to outlives the sheet.
    struct Dependencies {
        const Theme& theme;
        Scheduler& scheduler;
        QList<ConflictFile> conflicts;
        std::function<void(ConflictMergeStrategy)> onResolve;
        FileViewer& fileViewer;
        /// The sheet is to go.
        std::function<void()> onDismiss;
    };

    explicit ConflictResolutionSheet(const Dependencies& dependencies, QWidget* parent = nullptr);

    [[nodiscard]] QWidget* firstFocus() const override;
    /// What Escape does: leaves everything as it is.
    void cancel() { state.ignore(); }

    [[nodiscard]] ConflictChoice& choice() { return state; }
    [[nodiscard]] const std::vector<ConflictFileRow*>& fileRows() const { return files; }
    [[nodiscard]] const std::vector<StrategyOptionRow*>& strategyRows() const { return strategies; }
    [[nodiscard]] NoteView& errorLine() const { return *error; }
    [[nodiscard]] Button& ignoreButton() const { return *ignore; }
    [[nodiscard]] Button& resolveButton() const { return *resolve; }

private:
    void buildFiles(const QList<ConflictFile>& conflicts, FileViewer& fileViewer);
    void buildStrategies();
    void showState();

    const Theme& theme;
    ConflictChoice state;
    std::vector<ConflictFileRow*> files;
    std::vector<StrategyOptionRow*> strategies;
    NoteView* error;
    Button* ignore;
    Button* resolve;
};

} // namespace vellumry
