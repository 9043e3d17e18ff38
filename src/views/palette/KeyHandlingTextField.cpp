#include "views/palette/KeyHandlingTextField.h"

#include <QApplication>
#include <QKeyEvent>

#include <utility>

namespace vellumry {

KeyHandlingTextField::KeyHandlingTextField(const QColor& color, KeyHandler handler, QWidget* parent)
    : CaretLineEdit(color, 0, parent), keyHandler(std::move(handler))
{
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    qApp->installEventFilter(this);
}

bool KeyHandlingTextField::isCursorAtEnd() const
{
    return !hasSelectedText() && cursorPosition() == text().size();
}

bool KeyHandlingTextField::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto* widget = static_cast<const QWidget*>(watched);
    if (widget->window() != window() || !window()->isActiveWindow())
        return false;
    return keyHandler(*static_cast<const QKeyEvent*>(event));
}

void KeyHandlingTextField::keyPressEvent(QKeyEvent* event)
{
    // On its way when the palette closed: a second Return would copy, and count, a second time.
    if (!isVisible())
        return;
    if (!keyHandler(*event))
        CaretLineEdit::keyPressEvent(event);
}

} // namespace vellumry
