#include "views/list/SnippetListModel.h"

#include "library/SnippetListViewModel.h"

#include <utility>

namespace vellumry {

SnippetListModel::SnippetListModel(SnippetListViewModel& list,
                                   std::function<QString(const Snippet&)> inWords, QObject* parent)
    : QAbstractListModel(parent), viewModel(list), description(std::move(inWords)),
      rows(int(list.filteredSnippets().size()))
{
    connect(&viewModel, &SnippetListViewModel::filteredSnippetsChanged, this,
            &SnippetListModel::update);
    connect(&viewModel, &SnippetListViewModel::unsavedEditsChanged, this, [this] {
        if (rows > 0 && rows == viewModel.filteredSnippets().size())
            Q_EMIT dataChanged(index(0), index(rows - 1));
    });
}

void SnippetListModel::update()
{
    const int now = int(viewModel.filteredSnippets().size());
    if (now != rows) {
        beginResetModel();
        rows = now;
        endResetModel();
    } else if (rows > 0) {
        Q_EMIT dataChanged(index(0), index(rows - 1));
    }
}

int SnippetListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows;
}

const Snippet& SnippetListModel::snippet(int row) const
{
    return viewModel.filteredSnippets().at(row);
}

QVariant SnippetListModel::data(const QModelIndex& index, int role) const
{
    // Between a change and its announcement the list can be shorter than the rows.
    if (!index.isValid() || index.row() >= viewModel.filteredSnippets().size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return description(snippet(index.row()));
    default:
        return {};
    }
}

} // namespace vellumry
