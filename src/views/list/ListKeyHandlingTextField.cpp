#include "views/list/ListKeyHandlingTextField.h"

#include <QKeyEvent>

#include <utility>

namespace vellumry {

ListKeyHandlingTextField::ListKeyHandlingTextField(const Theme& look, const QString& placeholder,
                                                   KeyHandler handler, QWidget* parent)
    : TextField(look, placeholder, parent), keyHandler(std::move(handler))
{
}

bool ListKeyHandlingTextField::event(QEvent* event)
{
    // Tab, too, which would move the focus before any other handler saw it.
    if (event->type() == QEvent::KeyPress && keyHandler(*static_cast<const QKeyEvent*>(event)))
        return true;
    return TextField::event(event);
}

void ListKeyHandlingTextField::focusInEvent(QFocusEvent* event)
{
    TextField::focusInEvent(event);
    Q_EMIT focusChanged(true);
}

void ListKeyHandlingTextField::focusOutEvent(QFocusEvent* event)
{
    TextField::focusOutEvent(event);
    Q_EMIT focusChanged(false);
}

} // namespace vellumry
