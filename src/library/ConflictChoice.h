#pragma once

#include "core/Scheduler.h"
#include "sync/ConflictMergeStrategy.h"

#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace vellumry {

/// The choice of what to do about conflict copies: what the sheet for it shows. The sheet goes half
/// a second after the choice, whatever came of it. Main thread only.
class ConflictChoice final : public QObject {
    Q_OBJECT

public:
    /// The scheduler outlives this object.
    ConflictChoice(Scheduler& timing, std::function<void(ConflictMergeStrategy)> resolve);

    [[nodiscard]] bool isPresented() const { return presented; }
    [[nodiscard]] ConflictMergeStrategy selectedStrategy() const { return strategy; }
    [[nodiscard]] bool isProcessing() const { return processing; }
    /// Nothing ever sets it.
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return error; }
    [[nodiscard]] const std::optional<QUuid>& expandedConflictID() const { return expanded; }

    void selectStrategy(ConflictMergeStrategy value);
    /// Opens a record, and closes the one that was open, even if it is the same.
    void toggle(const QUuid& conflict);
    /// Leaves everything as it is.
    void ignore();
    void resolveConflict();

Q_SIGNALS:
    void changed();
    /// The sheet may go.
    void dismissed();

private:
    void dismiss();

    Scheduler& scheduler;
    std::function<void(ConflictMergeStrategy)> onResolve;
    bool presented = true;
    ConflictMergeStrategy strategy = defaultConflictMergeStrategy;
    bool processing = false;
    std::optional<QString> error;
    std::optional<QUuid> expanded;
};

} // namespace vellumry
