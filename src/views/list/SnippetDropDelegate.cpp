#include "views/list/SnippetDropDelegate.h"

#include "library/SnippetListViewModel.h"

namespace vellumry {

void SnippetDropDelegate::dropEntered() const
{
    if (!draggingSnippetID || *draggingSnippetID == snippetID)
        return;
    const qsizetype from = viewModel.shownRow(*draggingSnippetID);
    const qsizetype to = viewModel.shownRow(snippetID);
    if (from < 0 || to < 0)
        return;
    viewModel.moveSnippets({from}, from < to ? to + 1 : to, false);
}

void SnippetDropDelegate::performDrop() const
{
    draggingSnippetID.reset();
    viewModel.saveAllData();
}

} // namespace vellumry
