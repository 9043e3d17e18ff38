#include "views/editor/WrappingHStack.h"

#include <QWidget>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int leastLastWidth = 120;

} // namespace

WrappingHStack::WrappingHStack(int margin, int space, QWidget* parent) : QLayout(parent)
{
    setContentsMargins(margin, margin, margin, margin);
    setSpacing(space);
}

WrappingHStack::~WrappingHStack() = default;

void WrappingHStack::addItem(QLayoutItem* item)
{
    items.emplace_back(item);
}

void WrappingHStack::insertWidget(int index, QWidget* widget)
{
    addChildWidget(widget);
    items.emplace(items.begin() + index, new QWidgetItem(widget));
    invalidate();
}

int WrappingHStack::count() const
{
    return int(items.size());
}

QLayoutItem* WrappingHStack::itemAt(int index) const
{
    return index >= 0 && index < count() ? items[size_t(index)].get() : nullptr;
}

QLayoutItem* WrappingHStack::takeAt(int index)
{
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* item = items[size_t(index)].release();
    items.erase(items.begin() + index);
    invalidate();
    return item;
}

int WrappingHStack::heightForWidth(int width) const
{
    return arrange({0, 0, width, 0}, true);
}

QSize WrappingHStack::sizeHint() const
{
    return minimumSize();
}

QSize WrappingHStack::minimumSize() const
{
    QSize size;
    for (const auto& item : items)
        size = size.expandedTo(item->minimumSize());
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

void WrappingHStack::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, false);
}

int WrappingHStack::arrange(const QRect& rect, bool isMeasuring) const
{
    const QRect room = rect.marginsRemoved(contentsMargins());
    int x = 0;
    int y = 0;
    int lineHeight = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        const bool isLast = i + 1 == items.size();
        const QSize wanted = items[i]->sizeHint();
        int wide = std::min(isLast ? leastLastWidth : wanted.width(), room.width());
        if (x > 0 && x + wide > room.width()) {
            x = 0;
            y += lineHeight + spacing();
            lineHeight = 0;
        }
        if (isLast)
            wide = room.width() - x;
        if (!isMeasuring)
            items[i]->setGeometry({room.x() + x, room.y() + y, wide, wanted.height()});
        x += wide + spacing();
        lineHeight = std::max(lineHeight, wanted.height());
    }
    const QMargins margins = contentsMargins();
    return y + lineHeight + margins.top() + margins.bottom();
}

} // namespace vellumry
