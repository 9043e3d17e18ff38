#include "hotkey/PortalRequest.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace vellumry::hotkey {

const QString PortalRequest::portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

PortalRequest::PortalRequest(const QDBusConnection& connection, QObject* parent)
    : QObject(parent), bus(connection)
{
}

QString PortalRequest::newToken()
{
    static unsigned count = 0;
    return QStringLiteral("vellumry%1").arg(++count);
}

void PortalRequest::call(const QString& portal, const QString& interface, const QString& method,
                         QVariantList arguments, QVariantMap options)
{
    const QString token = newToken();
    const QString sender = bus.baseService().remove(0, 1).replace(u'.', u'_');
    // Before the call, since the answer may be there before the call returns.
    listen(portal, portalPath + QStringLiteral("/request/%1/%2").arg(sender, token));

    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    QDBusMessage message = QDBusMessage::createMethodCall(portal, portalPath, interface, method);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, portal, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError())
            Q_EMIT failed(reply.error().message());
        else if (reply.value().path() != heardPath)
            listen(portal, reply.value().path()); // Portals of old choose the path themselves.
    });
}

void PortalRequest::listen(const QString& portal, const QString& path)
{
    heardPath = path;
    // By its unique name: to follow the owner of a name would wait for the bus.
    bus.connect(portal, path, QStringLiteral("org.freedesktop.portal.Request"),
                QStringLiteral("Response"), this, SLOT(response(uint, QVariantMap)));
}

void PortalRequest::response(uint code, const QVariantMap& results)
{
    if (std::exchange(isAnswered, true))
        return;
    deleteLater();
    Q_EMIT answered(code, results);
}

} // namespace vellumry::hotkey
