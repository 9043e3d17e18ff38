#pragma once

#include <QString>

#include <optional>

namespace vellumry {

class SnippetListViewModel;

/// What happens when a dragged card comes to another one.
struct SnippetDropDelegate {
    QString snippetID; ///< of the card
    std::optional<QString>& draggingSnippetID;
    SnippetListViewModel& viewModel;

    /// Moves the dragged snippet to the place of this one, without saving. The places are those of
    /// the shown list and are applied to the snapshot: where the two differ, the wrong neighbour
    /// may move.
    void dropEntered() const;
    /// Saves the new order.
    void performDrop() const;
};

} // namespace vellumry
