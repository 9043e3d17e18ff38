#include "platform/linux/WaylandWindowActivation.h"

#include <QWindow>

#include <utility>

namespace vellumry {

void WaylandWindowActivation::activate(QWindow& window, quint32)
{
    // The one place where Qt looks for a token that it has not asked for itself. It uses it up;
    // what it leaves, a program that we start would take for its own.
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
