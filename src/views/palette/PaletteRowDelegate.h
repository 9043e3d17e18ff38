#pragma once

#include "views/palette/PaletteRows.h"

#include <QAbstractItemDelegate>
#include <QCache>
#include <QColor>
#include <QFont>
#include <QStaticText>

#include <functional>
#include <memory>

namespace vellumry {

class PaletteListModel;
class Theme;

/// Paints the lines of the palette. Laying out text, colour emoji above all, is what painting
/// costs, so the laid-out texts of the rows are kept, also for the next time they appear.
class PaletteRowDelegate : public QAbstractItemDelegate {
    Q_OBJECT

public:
    using CollectionColor = std::function<QColor(const QString& collection)>;

    /// Model and theme outlive the delegate.
    PaletteRowDelegate(const PaletteListModel& lines, const Theme& theme,
                       CollectionColor collectionColor, QObject* parent);

    /// Takes the theme's fonts anew; to be called at each of its changes.
    void takeFonts();

    int selectedLine = -1;
    std::optional<int> hoveredIndex; ///< a row's hoverIndex

    /// The height of a line with the margins at both ends of the list.
    [[nodiscard]] int lineHeight(int line) const;

    /// The place of a row's background within its line.
    [[nodiscard]] QRect rowRect(int line, const QRect& lineRect) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

private:
    /// The texts of one row, cut to the room that they have.
    struct RowTexts {
        QStaticText title;
        QStaticText detail;
        QStaticText trailing;
        QStaticText badge;
    };

    [[nodiscard]] int heightOf(const PaletteRow& row) const;
    [[nodiscard]] std::shared_ptr<const RowTexts> textsOf(const PaletteRow& row,
                                                          int rowWidth) const;
    [[nodiscard]] std::shared_ptr<const RowTexts> layOut(const PaletteRow& row, int rowWidth) const;
    [[nodiscard]] const QFont& titleFontOf(const PaletteRow& row) const;
    [[nodiscard]] const QFont& detailFontOf(const PaletteRow& row) const;
    void paintHeader(QPainter& painter, const QRect& line, const PaletteRow& row) const;
    void paintRow(QPainter& painter, const QRect& rect, const PaletteRow& row,
                  bool isSelected) const;
    void paintLeading(QPainter& painter, const QRect& rect, const PaletteRow& row) const;
    void paintTexts(QPainter& painter, const QRect& rect, const PaletteRow& row,
                    const RowTexts& text, const QColor& secondary) const;
    void paintTrailing(QPainter& painter, const QRect& rect, const PaletteRow& row,
                       const RowTexts& text, const QColor& secondary) const;

    const PaletteListModel& model;
    const Theme& theme;
    CollectionColor collectionColor;
    // Kept, since a row is painted at each key, and its texts are laid out in them.
    QFont headerFont;
    QFont titleFont;
    QFont detailFont;
    QFont badgeFont;
    QFont passwordFont;
    QFont calculationFont;
    QFont resultFont;
    mutable QCache<QString, std::shared_ptr<const RowTexts>> texts;
};

} // namespace vellumry
