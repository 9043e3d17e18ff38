#include "views/sheets/ConflictTableView.h"

#include "views/common/OverlayScrollBar.h"
#include "views/common/Strokes.h"

#include <QAbstractListModel>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <utility>

namespace vellumry {

namespace {

constexpr int radius = 8;
constexpr int fewestRows = 2; ///< that are seen at once
constexpr int border = 2;
constexpr qreal focusLine = border;

} // namespace

class ConflictTableView::Rows final : public QAbstractListModel {
public:
    Rows(const QList<ImportConflict>& list, QObject* parent)
        : QAbstractListModel(parent), conflicts(list)
    {
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : int(conflicts.size());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
            return {};
        return ConflictRowView::description(conflicts.at(index.row()), mode);
    }

    QList<ImportConflict> conflicts;
    ConflictResolutionMode mode = ConflictResolutionMode::smartUpdate;
};

class ConflictTableView::Delegate final : public QStyledItemDelegate {
public:
    explicit Delegate(ConflictTableView& view) : QStyledItemDelegate(&view), table(view) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        table.rowView.paint(*painter, option.rect, table.contents(index.row()));
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {0, table.rowView.height()};
    }

private:
    ConflictTableView& table;
};

ConflictTableView::ConflictTableView(const Theme& look, Scheduler& scheduler,
                                     const QList<ImportConflict>& conflicts, QWidget* parent)
    : QListView(parent), theme(look), rowView(theme), rows(new Rows(conflicts, this)),
      scrollBar(new OverlayScrollBar(*this, {}, scheduler))
{
    setAccessibleName(QStringLiteral("Conflicts"));
    setModel(rows);
    setItemDelegate(new Delegate(*this));
    setUniformItemSizes(true);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { openDetail(-1, true); });
    connect(&theme, &Theme::changed, this, &ConflictTableView::applyTheme);
    applyTheme();
}

ConflictTableView::~ConflictTableView() = default;

void ConflictTableView::applyTheme()
{
    const ColorTokens& token = theme.colors();
    scrollBar->setLook({.handle = token.scrollHandle, .handleHovered = token.scrollHandleHover});
    // The headings stand still above the rows; the border is around both.
    setViewportMargins(border, rowView.headingHeight(), border, border);
    updateGeometry();
    doItemsLayout();
    viewport()->update();
    update();
}

void ConflictTableView::setSelectedMode(ConflictResolutionMode mode)
{
    rows->mode = mode;
    if (rows->rowCount() > 0)
        Q_EMIT rows->dataChanged(rows->index(0), rows->index(rows->rowCount() - 1));
    viewport()->update();
}

ConflictRowView::Contents ConflictTableView::contents(int row) const
{
    return {.conflict = rows->conflicts.at(row),
            .selectedMode = rows->mode,
            .isCurrent = hasFocus() && currentIndex().row() == row,
            .isDetailShown = row == openRow};
}

QRect ConflictTableView::infoRect(int row) const
{
    return ConflictRowView::infoRect(visualRect(rows->index(row))).toRect();
}

QSize ConflictTableView::sizeHint() const
{
    return {0, rowView.headingHeight() + rows->rowCount() * rowView.height() + border};
}

QSize ConflictTableView::minimumSizeHint() const
{
    return {0, rowView.headingHeight() + fewestRows * rowView.height() + border};
}

bool ConflictTableView::event(QEvent* event)
{
    if (event->type() != QEvent::Paint)
        return QListView::event(event);
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), radius, token.group);
    rowView.paintHeading(painter, QRectF(border, 0, width() - 2 * border, rowView.headingHeight()));
    if (hasFocus()) {
        constexpr qreal half = focusLine / 2;
        painter.setPen(QPen(token.focusRing, focusLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius - half,
                                radius - half);
    } else {
        strokeRounded(painter, rect(), radius, token.stroke);
    }
    return true;
}

int ConflictTableView::rowWithMarkAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    return index.isValid() && infoRect(index.row()).contains(position) ? index.row() : -1;
}

void ConflictTableView::openDetail(int row, bool byPointer)
{
    isOpenByPointer = byPointer && row >= 0;
    if (std::exchange(openRow, row) == row)
        return;
    viewport()->update();
    Q_EMIT detailRowChanged();
}

void ConflictTableView::mouseMoveEvent(QMouseEvent* event)
{
    const int row = rowWithMarkAt(event->position().toPoint());
    if (row >= 0 || isOpenByPointer)
        openDetail(row, true);
}

void ConflictTableView::mousePressEvent(QMouseEvent* event)
{
    // A click keeps it open when the pointer goes.
    const int row = rowWithMarkAt(event->position().toPoint());
    openDetail(row, false);
}

void ConflictTableView::leaveEvent(QEvent*)
{
    if (isOpenByPointer)
        openDetail(-1, true);
}

void ConflictTableView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && currentIndex().isValid()) {
        const int row = currentIndex().row();
        openDetail(openRow == row ? -1 : row, false);
        return;
    }
    QListView::keyPressEvent(event);
}

void ConflictTableView::focusInEvent(QFocusEvent* event)
{
    QListView::focusInEvent(event);
    if (!currentIndex().isValid() && rows->rowCount() > 0)
        setCurrentIndex(rows->index(0));
    update();
}

void ConflictTableView::focusOutEvent(QFocusEvent* event)
{
    QListView::focusOutEvent(event);
    openDetail(-1, false);
    update();
}

void ConflictTableView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QListView::currentChanged(current, previous);
    openDetail(-1, false);
    viewport()->update();
}

} // namespace vellumry
