#pragma once

#include "views/palette/PaletteRows.h"

#include <QAbstractListModel>

namespace vellumry {

/// The lines of the palette as an item model, with what a screen reader says for each.
class PaletteListModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setLines(const QList<PaletteRow>& lines);
    [[nodiscard]] const PaletteRow& line(int number) const { return rows[number]; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QList<PaletteRow> rows;
};

} // namespace vellumry
