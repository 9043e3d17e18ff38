#include "platform/linux/WaylandWindowActivation.h"

#include <QEvent>
#include <QPointer>
#include <QWindow>

#include <utility>

namespace vellumry {

void WaylandWindowActivation::activate(QWindow& window)
{
    // Some desktops turn down a window that has no picture yet, and the token is spent.
    if (window.isExposed())
        ask(window);
    else
        window.installEventFilter(this);
}

bool WaylandWindowActivation::eventFilter(QObject* watched, QEvent* event)
{
    auto* window = qobject_cast<QWindow*>(watched);
    if (event->type() == QEvent::Expose && window != nullptr && window->isExposed()) {
        window->removeEventFilter(this);
        // Behind the picture, which this event brings about.
        QMetaObject::invokeMethod(
            this,
            [this, shown = QPointer(window)] {
                if (shown)
                    ask(*shown);
            },
            Qt::QueuedConnection);
    }
    return false;
}

void WaylandWindowActivation::ask(QWindow& window)
{
    // The one place where Qt looks for a token that it has not asked for itself. Not left there,
    // where a program that we start would take it for its own.
    constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";
    const QByteArray current = std::exchange(token, {});
    if (!current.isEmpty())
        qputenv(tokenVariable, current);
    window.requestActivate();
    if (!current.isEmpty())
        qunsetenv(tokenVariable);
}

void WaylandWindowActivation::offerToken(const QByteArray& newToken)
{
    token = newToken;
}

} // namespace vellumry
