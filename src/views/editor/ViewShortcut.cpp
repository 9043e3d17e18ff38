#include "views/editor/ViewShortcut.h"

#include "views/common/SheetHost.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <utility>

namespace vellumry {

ViewShortcut::ViewShortcut(Qt::Key shortcutKey, Qt::KeyboardModifiers with,
                           std::function<void()> whenPressed, QWidget* owner)
    : QObject(owner), key(shortcutKey), modifiers(with), action(std::move(whenPressed)), view(owner)
{
    qApp->installEventFilter(this);
}

bool ViewShortcut::isReachable() const
{
    const QWidget& window = *view->window();
    if (!view->isVisible() || !window.isActiveWindow())
        return false;
    for (const QWidget* each = view; each; each = each->parentWidget()) {
        if (const auto* host = qobject_cast<const SheetHost*>(each->parentWidget()))
            return host->presented() == view ||
                   (host->presented() && host->presented()->isAncestorOf(view));
    }
    return !SheetHost::isCovering(*view);
}

bool ViewShortcut::eventFilter(QObject* watched, QEvent* event)
{
    const bool isAsked = event->type() == QEvent::ShortcutOverride;
    if (!isAsked && event->type() != QEvent::KeyPress)
        return false;
    const auto* press = static_cast<const QKeyEvent*>(event);
    if (press->key() != key || (press->modifiers() & ~Qt::KeypadModifier) != modifiers ||
        !watched->isWidgetType() ||
        static_cast<const QWidget*>(watched)->window() != view->window() || !isReachable())
        return false;
    event->accept();
    // Who claims the key gets it as a press, and no menu does.
    if (!isAsked && !press->isAutoRepeat())
        action();
    return true;
}

} // namespace vellumry
