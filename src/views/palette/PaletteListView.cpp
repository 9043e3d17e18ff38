#include "views/palette/PaletteListView.h"

#include "views/common/Motion.h"
#include "views/common/OverlayScrollBar.h"
#include "views/common/Theme.h"
#include "views/palette/PaletteListModel.h"
#include "views/palette/QuickSearchStyle.h"

#include <QMouseEvent>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr std::chrono::milliseconds scrollTime{150};
constexpr int pixelsOfWheelStep = QuickSearchStyle::rowHeight / 2; // a notch is three of them

} // namespace

PaletteListView::PaletteListView(const Theme& theme,
                                 PaletteRowDelegate::CollectionColor collectionColor,
                                 Scheduler& scheduler, QWidget* parent)
    : QListView(parent), lines(new PaletteListModel(this)),
      delegate(new PaletteRowDelegate(*lines, theme, std::move(collectionColor), this)),
      scrollBar(new OverlayScrollBar(*this,
                                     {.handle = QuickSearchStyle::scrollHandle,
                                      .handleHovered = QuickSearchStyle::scrollHandleHover,
                                      .thickness = 4,
                                      .margin = 2 - QuickSearchStyle::listInset},
                                     scheduler)),
      scrolling(new QPropertyAnimation(verticalScrollBar(), "value", this))
{
    setAccessibleName(QStringLiteral("Snippets"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAutoScroll(false);
    setEditTriggers(NoEditTriggers);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, QuickSearchStyle::background);
    setPalette(colors);
    setModel(lines);
    setItemDelegate(delegate);
    verticalScrollBar()->setSingleStep(pixelsOfWheelStep);
    scrolling->setEasingCurve(QEasingCurve::OutCubic);
    connect(&theme, &Theme::changed, this, &PaletteListView::applyTheme);
}

PaletteListView::~PaletteListView() = default;

void PaletteListView::setRows(const PaletteRows& rows, int selectedIndex)
{
    currentRows = rows;
    lines->setLines(rows.lines());
    verticalScrollBar()->setSingleStep(pixelsOfWheelStep);
    doItemsLayout();
    select(selectedIndex, false);
    if (viewport()->underMouse())
        hoverAt(viewport()->mapFromGlobal(QCursor::pos()));
}

void PaletteListView::applyTheme()
{
    delegate->takeFonts();
    doItemsLayout();
    if (selectedLine() >= 0)
        scrollToLine(selectedLine(), false);
}

void PaletteListView::select(int selectedIndex, bool isAnimated)
{
    const auto line =
        static_cast<int>(currentRows.lineOfIndex(currentRows.clampedSelection(selectedIndex)));
    delegate->selectedLine = line;
    setCurrentIndex(line < 0 ? QModelIndex() : lines->index(line));
    viewport()->update();
    if (line >= 0)
        scrollToLine(line, isAnimated);
}

QRect PaletteListView::rowRect(const QString& rowId) const
{
    const auto& rows = currentRows.lines();
    for (int line = 0; line < rows.size(); ++line) {
        if (!rows[line].isHeader() && rows[line].id == rowId)
            return rectOfRow(line);
    }
    return {};
}

void PaletteListView::scrollToLine(int line, bool isAnimated)
{
    scrolling->stop();
    auto* bar = verticalScrollBar();
    const int center = rectOfRow(line).center().y() + bar->value();
    const int target =
        std::clamp(center - viewport()->height() / 2, bar->minimum(), bar->maximum());
    const auto duration =
        isAnimated ? animationTime(*this, scrollTime) : std::chrono::milliseconds(0);
    if (duration.count() == 0 || target == bar->value()) {
        bar->setValue(target);
        return;
    }
    scrolling->setDuration(static_cast<int>(duration.count()));
    scrolling->setStartValue(bar->value());
    scrolling->setEndValue(target);
    scrolling->start();
}

QRect PaletteListView::rectOfRow(int line) const
{
    return delegate->rowRect(line, visualRect(lines->index(line)));
}

int PaletteListView::lineAt(const QPoint& position) const
{
    const int line = indexAt(position).row();
    if (line < 0 || lines->line(line).isHeader() || !rectOfRow(line).contains(position))
        return -1;
    return line;
}

void PaletteListView::hoverAt(const QPoint& position)
{
    const int line = lineAt(position);
    setHoveredIndex(line < 0 ? std::nullopt : std::optional(lines->line(line).hoverIndex));
}

void PaletteListView::setHoveredIndex(std::optional<int> index)
{
    if (delegate->hoveredIndex == index)
        return;
    delegate->hoveredIndex = index;
    viewport()->update();
}

bool PaletteListView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Leave:
        setHoveredIndex(std::nullopt);
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        return true; // looks the same, so there is nothing to paint again
    default:
        break;
    }
    return QListView::viewportEvent(event);
}

void PaletteListView::mousePressEvent(QMouseEvent* event)
{
    const int line = lineAt(event->position().toPoint());
    pressedRowId = line < 0 ? QString() : lines->line(line).id;
    // Beside the rows the panel's background is taken hold of.
    event->setAccepted(line >= 0);
}

void PaletteListView::mouseMoveEvent(QMouseEvent* event)
{
    hoverAt(event->position().toPoint());
    event->setAccepted(!pressedRowId.isEmpty());
}

void PaletteListView::mouseReleaseEvent(QMouseEvent* event)
{
    const QString pressed = std::exchange(pressedRowId, QString());
    const int line = lineAt(event->position().toPoint());
    event->setAccepted(!pressed.isEmpty());
    // On its way when the palette closed, as the second click of two, it copies nothing more.
    if (event->button() != Qt::LeftButton || !isVisible() || line < 0 ||
        lines->line(line).id != pressed)
        return;
    const PaletteRow row = lines->line(line);
    Q_EMIT rowClicked(row);
}

void PaletteListView::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

void PaletteListView::keyPressEvent(QKeyEvent* event)
{
    event->ignore();
}

void PaletteListView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    if (viewport()->underMouse())
        hoverAt(viewport()->mapFromGlobal(QCursor::pos()));
}

void PaletteListView::hideEvent(QHideEvent* event)
{
    QListView::hideEvent(event);
    setHoveredIndex(std::nullopt);
    pressedRowId.clear();
}

} // namespace vellumry
