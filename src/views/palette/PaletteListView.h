#pragma once

#include "views/palette/PaletteRowDelegate.h"
#include "views/palette/PaletteRows.h"

#include <QListView>
#include <QPropertyAnimation>

#include <optional>

namespace vellumry {

class OverlayScrollBar;
class PaletteListModel;
class Scheduler;
class Theme;

/// The scrolling list of the palette's rows. Hover and selection are separate: the pointer never
/// moves the selection. Takes no keyboard focus.
class PaletteListView : public QListView {
    Q_OBJECT

public:
    /// Theme and scheduler outlive the view.
    PaletteListView(const Theme& theme, PaletteRowDelegate::CollectionColor collectionColor,
                    Scheduler& scheduler, QWidget* parent = nullptr);
    ~PaletteListView() override;

    /// Shows these rows with that one selected, which is in the middle of the list at once.
    void setRows(const PaletteRows& rows, int selectedIndex);

    /// Marks the row as selected, and brings it to the middle of the list; `isAnimated` tells
    /// whether it may take its time for that.
    void select(int selectedIndex, bool isAnimated);

    /// What stands for the row under the pointer: its index, or the value of its kind.
    [[nodiscard]] std::optional<int> hoveredIndex() const { return delegate->hoveredIndex; }
    [[nodiscard]] int selectedLine() const { return delegate->selectedLine; }

    /// The background of the row with this id in viewport coordinates; empty without such a row.
    [[nodiscard]] QRect rowRect(const QString& rowId) const;

    [[nodiscard]] OverlayScrollBar& scrollHandle() const { return *scrollBar; }

Q_SIGNALS:
    /// The person clicked a row: pressed and released the main button within it.
    void rowClicked(const vellumry::PaletteRow& row);

protected:
    bool viewportEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void hideEvent(QHideEvent* event) override;

private:
    void applyTheme();
    [[nodiscard]] int lineAt(const QPoint& position) const;
    [[nodiscard]] QRect rectOfRow(int line) const;
    void scrollToLine(int line, bool isAnimated);
    void hoverAt(const QPoint& position);
    void setHoveredIndex(std::optional<int> index);

    PaletteListModel* lines;
    PaletteRowDelegate* delegate;
    OverlayScrollBar* scrollBar;
    QPropertyAnimation* scrolling;
    PaletteRows currentRows;
    QString pressedRowId;
};

} // namespace vellumry
