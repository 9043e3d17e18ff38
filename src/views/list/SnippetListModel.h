#pragma once

#include "models/Snippet.h"

#include <QAbstractListModel>

#include <functional>

namespace vellumry {

class SnippetListViewModel;

/// The list's snippets as rows for an item view; no more than a window upon the list model.
class SnippetListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// `description` tells a snippet in words. The list model outlives this one.
    SnippetListModel(SnippetListViewModel& viewModel,
                     std::function<QString(const Snippet&)> description, QObject* parent);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] const Snippet& snippet(int row) const;

private:
    void update();

    SnippetListViewModel& viewModel;
    std::function<QString(const Snippet&)> description;
    int rows = 0; ///< as the views know it
};

} // namespace vellumry
