#include "views/sidebar/CollectionRowView.h"

#include "settings/CategoryColorService.h"
#include "views/common/Icon.h"
#include "views/common/PopupMenu.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QPainter>
#include <QtMath>

#include <utility>

namespace vellumry {

namespace {

constexpr int padding = 8;
constexpr int slot = 20;
constexpr int gap = 8;
constexpr int dotSize = 10;
constexpr int iconSize = 16;
constexpr qreal openPlaceOpacity = 0.55;

QString capitalised(const QString& name)
{
    return name.left(1).toUpper() + name.mid(1);
}

} // namespace

CollectionRowView::CollectionRowView(const Theme& look, Actions handlers, QWidget* parent)
    : AccessibleRow(parent), theme(look), actions(std::move(handlers)), hover(new HoverFade(this))
{
    setMouseTracking(true);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void CollectionRowView::setContents(const Contents& contents)
{
    if (shown == contents)
        return;
    shown = contents;
    // Of the rows Tab reaches the selected one alone.
    setFocusPolicy(shown.isSelected ? Qt::TabFocus : Qt::NoFocus);
    setAccessibleName(QStringLiteral("%1, %2 snippet%3")
                          .arg(shown.title)
                          .arg(shown.count)
                          .arg(shown.count == 1 ? QString() : QStringLiteral("s")));
    setSelected(shown.isSelected);
    update();
}

void CollectionRowView::press()
{
    actions.onSelect();
}

void CollectionRowView::setOpenPlace(bool open)
{
    isOpenPlace = open;
    update();
}

QPixmap CollectionRowView::picture()
{
    const qreal ratio = devicePixelRatioF();
    QPixmap result(size() * ratio);
    result.setDevicePixelRatio(ratio);
    result.fill(theme.colors().sidebar);
    QPainter painter(&result);
    painter.fillRect(rect(), theme.colors().accentTint);
    paintContents(painter, rect());
    return result;
}

QSize CollectionRowView::sizeHint() const
{
    return {0, theme.rowHeight(rowHeight, TextStyle::body)};
}

PopupMenu* CollectionRowView::makeMenu()
{
    if (!actions.onRename)
        return nullptr;
    auto* menu = new PopupMenu(theme, this);
    menu->addItem(QStringLiteral("pencil"), QStringLiteral("Rename"), actions.onRename);
    menu->addItem(QStringLiteral("square.and.arrow.up"), QStringLiteral("Export"),
                  actions.onExport);
    menu->addDestructiveItem(QStringLiteral("trash"), QStringLiteral("Delete"), actions.onDelete);
    menu->addSeparator();
    PopupMenu* colors =
        menu->addSubmenu(QStringLiteral("paintbrush"), QStringLiteral("Change Color"));
    for (const auto& preset : CategoryColorService::presetColors())
        colors->addSwatch(preset.color, capitalised(preset.name),
                          [this, name = preset.name] { actions.onColorChange(name); });
    colors->addSeparator();
    colors->addItem(QStringLiteral("paintpalette"), QStringLiteral("Custom..."),
                    actions.onCustomColor);
    return menu;
}

void CollectionRowView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const QRectF row = rect();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isOpenPlace) {
        painter.setPen(QPen(token.accentStroke, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(row.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        painter.setOpacity(openPlaceOpacity);
    } else if (shown.isSelected) {
        fillRounded(painter, row, radius, shown.isFocused ? token.accentTint : token.rowSelected);
    } else if (hover->progress() > 0) {
        QColor fill = token.fill;
        fill.setAlphaF(float(fill.alphaF() * hover->progress()));
        fillRounded(painter, row, radius, fill);
    }
    paintContents(painter, row);
}

void CollectionRowView::paintContents(QPainter& painter, const QRectF& row) const
{
    const ColorTokens& token = theme.colors();
    const bool isLit = shown.isSelected && shown.isFocused;
    const QPointF middle(row.x() + padding + slot / 2.0, row.center().y());
    if (shown.collectionColor) {
        fillRounded(painter,
                    QRectF(middle - QPointF(dotSize, dotSize) / 2, QSizeF(dotSize, dotSize)),
                    dotSize / 2.0, *shown.collectionColor);
    } else {
        const bool isNeutral = shown.iconColor == &ColorTokens::textSecondary;
        Icon(shown.icon)
            .paint(painter, middle - QPointF(iconSize, iconSize) / 2, iconSize,
                   isLit && isNeutral ? token.accent : token.*shown.iconColor);
    }

    const QFont countFont = theme.font(TextStyle::label);
    const QString count = QString::number(shown.count);
    const int countWidth = qCeil(QFontMetricsF(countFont).horizontalAdvance(count)) + 1;
    const qreal right = row.right() - padding;
    paintLine(painter, {right - countWidth, row.y(), qreal(countWidth), row.height()}, count,
              countFont, shown.isSelected ? token.textSecondary : token.textTertiary,
              Qt::AlignRight);
    const qreal x = row.x() + padding + slot + gap;
    paintLine(painter, {x, row.y(), right - countWidth - gap - x, row.height()}, shown.title,
              theme.font(shown.isSelected ? TextStyle::bodyMedium : TextStyle::body),
              token.textPrimary);
}

void CollectionRowView::setHovered(bool isHovered)
{
    hovered = isHovered;
    hover->setHovered(isHovered);
    if (actions.onHoverChange)
        actions.onHoverChange(isHovered);
}

void CollectionRowView::enterEvent(QEnterEvent*)
{
    setHovered(true);
}

void CollectionRowView::leaveEvent(QEvent*)
{
    setHovered(false);
}

void CollectionRowView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        pressed = Press{event->position().toPoint(), event->globalPosition().toPoint()};
}

bool CollectionRowView::isFarFromPress(const QMouseEvent& event) const
{
    return (event.globalPosition().toPoint() - pressed->screenPosition).manhattanLength() >=
           QApplication::startDragDistance();
}

void CollectionRowView::mouseMoveEvent(QMouseEvent* event)
{
    if (!pressed || !shown.collectionColor)
        return;
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        endPress(*event); // the release has gone elsewhere
    } else if (isDragging) {
        Q_EMIT dragMoved(event->globalPosition().toPoint());
    } else if (isFarFromPress(*event)) {
        isDragging = true;
        Q_EMIT dragStarted(pressed->grip);
        Q_EMIT dragMoved(event->globalPosition().toPoint());
    }
}

void CollectionRowView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !pressed)
        return;
    const bool isClick =
        !isDragging && (rect().contains(event->position().toPoint()) || !isFarFromPress(*event));
    endPress(*event);
    if (isClick)
        press();
}

void CollectionRowView::endPress(const QMouseEvent& event)
{
    pressed.reset();
    if (std::exchange(isDragging, false))
        Q_EMIT dragEnded(event.globalPosition().toPoint());
}

void CollectionRowView::hideEvent(QHideEvent* event)
{
    AccessibleRow::hideEvent(event);
    // The release will be somebody else's.
    pressed.reset();
    isDragging = false;
}

void CollectionRowView::contextMenuEvent(QContextMenuEvent* event)
{
    PopupMenu* menu = isDragging ? nullptr : makeMenu();
    if (!menu)
        return;
    connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater);
    menu->popup(event->reason() == QContextMenuEvent::Keyboard ? mapToGlobal(rect().center())
                                                               : event->globalPos());
}

void CollectionRowView::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        actions.onTabFocus();
}

} // namespace vellumry
