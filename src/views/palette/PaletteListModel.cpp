#include "views/palette/PaletteListModel.h"

namespace vellumry {

namespace {

QStringList spokenParts(const PaletteRow& row)
{
    switch (row.kind) {
    case PaletteRowKind::calculator: // "2+3 = 5"
        return {row.detail + u' ' + row.title, row.trailing};
    case PaletteRowKind::password:
        return {row.title, row.badge, row.detail};
    default:
        return {row.title, row.detail, row.trailing};
    }
}

QString spokenText(const PaletteRow& row)
{
    QStringList parts;
    for (const QString& part : spokenParts(row)) {
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(QStringLiteral(", "));
}

} // namespace

void PaletteListModel::setLines(const QList<PaletteRow>& lines)
{
    beginResetModel();
    rows = lines;
    endResetModel();
}

int PaletteListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows.size());
}

QVariant PaletteListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    if (role == Qt::DisplayRole)
        return line(index.row()).title;
    if (role == Qt::AccessibleTextRole)
        return spokenText(line(index.row()));
    return {};
}

Qt::ItemFlags PaletteListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return line(index.row()).isHeader() ? Qt::ItemIsEnabled
                                        : Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace vellumry
