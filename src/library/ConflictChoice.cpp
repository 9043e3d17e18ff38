#include "library/ConflictChoice.h"

#include <utility>

namespace vellumry {

namespace {

constexpr std::chrono::milliseconds processingTime{500};

} // namespace

ConflictChoice::ConflictChoice(Scheduler& timing,
                               std::function<void(ConflictMergeStrategy)> resolve)
    : scheduler(timing), onResolve(std::move(resolve))
{
}

void ConflictChoice::selectStrategy(ConflictMergeStrategy value)
{
    strategy = value;
    Q_EMIT changed();
}

void ConflictChoice::toggle(const QUuid& conflict)
{
    if (expanded == conflict)
        expanded.reset();
    else
        expanded = conflict;
    Q_EMIT changed();
}

void ConflictChoice::ignore()
{
    dismiss();
}

void ConflictChoice::resolveConflict()
{
    if (processing || !presented)
        return;
    processing = true;
    error.reset();
    Q_EMIT changed();
    onResolve(strategy);
    scheduler.after(processingTime, this, [this] {
        processing = false;
        Q_EMIT changed();
        dismiss();
    });
}

void ConflictChoice::dismiss()
{
    if (std::exchange(presented, false))
        Q_EMIT dismissed();
}

} // namespace vellumry
