#include "session/PortalRequest.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

#include <utility>

namespace vellumry {

namespace {

constexpr QLatin1StringView requestInterface("org.freedesktop.portal.Request");

} // namespace

PortalRequest::PortalRequest(const QDBusConnection& connection, QObject* parent)
    : QObject(parent), bus(connection)
{
}

PortalRequest::~PortalRequest()
{
    if (isOpen)
        bus.send(QDBusMessage::createMethodCall(service, handle, requestInterface,
                                                QStringLiteral("Close")));
}

QString PortalRequest::pathOf(QStringView kind, const QDBusConnection& bus, const QString& token)
{
    const QString sender = bus.baseService().remove(0, 1).replace(u'.', u'_');
    return QStringLiteral("%1/%2/%3/%4").arg(portalPath, kind, sender, token);
}

void PortalRequest::call(const QString& portal, const QString& interface, const QString& method,
                         QVariantList arguments, QVariantMap options)
{
    service = portal;
    isOpen = true;
    const QString token = QStringLiteral("vellumry_") + QUuid::createUuid().toString(QUuid::Id128);
    // Before the call, since the answer may be there before the call returns.
    listen(pathOf(u"request", bus, token));
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                {portal}, QString(), this, SLOT(portalOwnerChanged(QString, QString, QString)));

    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    QDBusMessage message = QDBusMessage::createMethodCall(portal, portalPath, interface, method);
    message.setArguments(arguments);
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (!reply.isError()) {
            if (reply.value().path() != handle)
                listen(reply.value().path()); // Portals of old choose the path themselves.
        } else if (end()) {
            Q_EMIT failed(reply.error().message());
        }
    });
}

void PortalRequest::listen(const QString& path)
{
    handle = path;
    // From any sender: to follow the owner of a name would wait for the bus.
    bus.connect(QString(), path, requestInterface, QStringLiteral("Response"), this,
                SLOT(response(uint, QVariantMap)));
}

void PortalRequest::response(uint code, const QVariantMap& results)
{
    if (end())
        Q_EMIT answered(code, results);
}

void PortalRequest::portalOwnerChanged(const QString& /*name*/, const QString& before,
                                       const QString& /*now*/)
{
    // One that the call itself has started had no owner before.
    if (!before.isEmpty() && end())
        Q_EMIT failed(QStringLiteral("the portal has ended"));
}

bool PortalRequest::end()
{
    deleteLater();
    return std::exchange(isOpen, false);
}

} // namespace vellumry
