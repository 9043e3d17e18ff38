#include "library/Termination.h"

#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"

#include <QScopeGuard>

#include <utility>

namespace vellumry {

namespace {

enum Button : qsizetype { saveAll, discard };

QuitQuestion questionAbout(qsizetype drafts)
{
    return {.title = QStringLiteral("You have unsaved changes"),
            .informativeText =
                QStringLiteral("There are %1 snippet draft(s) not saved.").arg(drafts),
            .buttons = {QStringLiteral("Save All & Quit"), QStringLiteral("Discard Drafts & Quit"),
                        QStringLiteral("Cancel")}};
}

} // namespace

Termination::Termination(Dependencies dependencies) : with(std::move(dependencies)) {}

Termination::Reply Termination::applicationShouldTerminate()
{
    if (with.list.unsavedEdits().isEmpty())
        return Reply::terminateNow;
    if (isAsking)
        return Reply::terminateCancel;
    isAsking = true;
    const auto end = qScopeGuard([this] { isAsking = false; });
    const auto answer = with.ask(questionAbout(with.list.unsavedEdits().size()));
    if (answer == saveAll)
        with.list.saveAllUnsavedEdits();
    else if (answer == discard)
        with.list.discardAllUnsavedEdits();
    else
        return Reply::terminateCancel;
    return Reply::terminateNow;
}

Termination::Reply Termination::sessionShouldEnd(const std::function<bool()>& mayAsk)
{
    const bool hasDrafts = !with.list.unsavedEdits().isEmpty();
    if (hasDrafts && !isAsking && mayAsk())
        return applicationShouldTerminate();
    return Reply::terminateNow;
}

void Termination::applicationWillTerminate()
{
    Q_EMIT with.notifications.performSave();
}

} // namespace vellumry
