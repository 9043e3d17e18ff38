#pragma once

#include "core/Scheduler.h"
#include "library/ImportConflicts.h"
#include "views/sheets/ConflictRowView.h"

#include <QListView>

namespace vellumry {

class OverlayScrollBar;

/// The table of an import's conflicts under its headings, of any length. A click on a row's mark,
/// the pointer over it, or Space opens the detail of that row.
class ConflictTableView : public QListView {
    Q_OBJECT

public:
    /// Theme and scheduler outlive the table.
    ConflictTableView(const Theme& theme, Scheduler& scheduler,
                      const QList<ImportConflict>& conflicts, QWidget* parent);
    ~ConflictTableView() override;

    void setSelectedMode(ConflictResolutionMode mode);
    /// What a row shows at present.
    [[nodiscard]] ConflictRowView::Contents contents(int row) const;
    /// The place of a row's mark, in the viewport.
    [[nodiscard]] QRect infoRect(int row) const;
    /// The row whose detail is open; -1 for none.
    [[nodiscard]] int detailRow() const { return openRow; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void detailRowChanged();

protected:
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    class Rows;
    class Delegate;

    [[nodiscard]] int rowWithMarkAt(const QPoint& position) const;
    void openDetail(int row, bool byPointer);
    void applyTheme();

    const Theme& theme;
    ConflictRowView rowView;
    Rows* rows;
    OverlayScrollBar* scrollBar;
    int openRow = -1;
    bool isOpenByPointer = false;
};

} // namespace vellumry
