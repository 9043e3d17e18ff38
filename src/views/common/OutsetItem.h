#pragma once

#include <QMargins>
#include <QWidget>
#include <QWidgetItem>

namespace vellumry {

/// The place in a layout of a widget that reaches beyond it, as the lines do that show the focus of
/// its buttons. They lie over, or under, what stands beside it. How far is told for text that runs
/// from left to right, and mirrored otherwise.
class OutsetItem final : public QWidgetItem {
public:
    OutsetItem(QWidget* widget, const QMargins& reach) : QWidgetItem(widget), beyond(reach) {}

    [[nodiscard]] QSize sizeHint() const override { return inside(QWidgetItem::sizeHint()); }
    [[nodiscard]] QSize minimumSize() const override { return inside(QWidgetItem::minimumSize()); }
    [[nodiscard]] QSize maximumSize() const override { return inside(QWidgetItem::maximumSize()); }
    void setGeometry(const QRect& place) override
    {
        if (!isEmpty())
            widget()->setGeometry(place.marginsAdded(
                widget()->isRightToLeft()
                    ? QMargins(beyond.right(), beyond.top(), beyond.left(), beyond.bottom())
                    : beyond));
    }

private:
    [[nodiscard]] QSize inside(const QSize& size) const
    {
        return size.shrunkBy(beyond).expandedTo({0, 0});
    }

    QMargins beyond;
};

} // namespace vellumry
