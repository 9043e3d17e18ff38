#include "platform/linux/GlobalMenu.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include <utility>

namespace vellumry {

namespace {

constexpr QLatin1StringView registrar("com.canonical.AppMenu.Registrar");
constexpr QLatin1StringView busService("org.freedesktop.DBus");

} // namespace

void GlobalMenu::startLooking(const QDBusConnection& bus)
{
    const auto* watcher =
        new QDBusServiceWatcher(registrar, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] { setThere(true); });
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setThere(false); });
    QDBusMessage question =
        QDBusMessage::createMethodCall(busService, QStringLiteral("/org/freedesktop/DBus"),
                                       busService, QStringLiteral("NameHasOwner"));
    question << QString(registrar);
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<bool> reply = *finished;
                if (reply.isValid() && reply.value())
                    setThere(true);
            });
}

void GlobalMenu::setThere(bool isThere)
{
    if (std::exchange(there, isThere) != isThere)
        Q_EMIT changed();
}

} // namespace vellumry
