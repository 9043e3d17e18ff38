#include "views/sidebar/CollectionDropDelegate.h"

#include "library/SnippetListViewModel.h"

namespace vellumry {

void CollectionDropDelegate::dropEntered() const
{
    if (!draggingItem || *draggingItem == item)
        return;
    const QStringList names = viewModel.collections();
    const qsizetype from = names.indexOf(*draggingItem);
    const qsizetype to = names.indexOf(item);
    if (from < 0 || to < 0)
        return;
    viewModel.moveCollections({from}, from < to ? to + 1 : to);
}

void CollectionDropDelegate::performDrop() const
{
    draggingItem.reset();
    onComplete();
}

} // namespace vellumry
