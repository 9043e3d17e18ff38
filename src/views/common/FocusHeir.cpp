#include "views/common/FocusHeir.h"

#include <QWidget>

namespace vellumry {

bool inheritFocus(const QWidget& widget, QWidget& heir)
{
    const QWidget* focused = widget.window()->focusWidget();
    if (!focused || (focused != &widget && !widget.isAncestorOf(focused)))
        return false;
    heir.setFocus(Qt::OtherFocusReason);
    return true;
}

} // namespace vellumry
