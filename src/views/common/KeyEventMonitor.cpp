#include "views/common/KeyEventMonitor.h"

#include "views/common/SheetHost.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <utility>

namespace vellumry {

KeyEventMonitor::KeyEventMonitor(Handler keyHandler, QWidget* monitored)
    : QObject(monitored), handler(std::move(keyHandler)), view(monitored)
{
    qApp->installEventFilter(this);
}

bool KeyEventMonitor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !view->isVisible())
        return false;
    QWidget* window = view->window();
    // A key that nobody wants goes from the focus up to the window: it is looked at once.
    const QWidget* receiver = window->focusWidget() ? window->focusWidget() : window;
    if (watched != receiver || !window->isActiveWindow() || SheetHost::isCovering(*view))
        return false;
    return handler(*static_cast<const QKeyEvent*>(event));
}

bool hasModifier(const QKeyEvent& event)
{
    constexpr Qt::KeyboardModifiers looked =
        Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return (event.modifiers() & looked) != Qt::NoModifier;
}

} // namespace vellumry
