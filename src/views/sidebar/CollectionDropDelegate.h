#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

class SnippetListViewModel;

/// What happens when a dragged collection comes to another one's row.
struct CollectionDropDelegate {
    QString item; ///< the row's collection
    std::optional<QString>& draggingItem;
    SnippetListViewModel& viewModel;
    std::function<void()> onComplete;

    /// Moves the dragged collection to the place of this one. Each step is saved.
    void dropEntered() const;
    void performDrop() const;
};

} // namespace vellumry
