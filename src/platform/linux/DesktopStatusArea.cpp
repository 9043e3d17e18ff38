#include "platform/linux/DesktopStatusArea.h"

#include "core/Scheduler.h"
#include "platform/linux/SessionBus.h"
#include "session/XcbReply.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <xcb/xcb.h>

#include <string_view>

namespace vellumry {

namespace {

constexpr QLatin1StringView watcherService("org.kde.StatusNotifierWatcher");
constexpr QLatin1StringView watcherPath("/StatusNotifierWatcher");

/// Whether a program on the X display takes items in the older way.
bool hasTrayOfTheDisplay()
{
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return false;
    xcb_connection_t* connection = x11->connection();
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    const XcbReply<xcb_intern_atom_reply_t> selection(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr));
    if (!selection)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

DesktopStatusArea::DesktopStatusArea(Scheduler& timing, QObject* parent)
    : StatusArea(parent), scheduler(timing)
{
}

void DesktopStatusArea::startLooking()
{
    if (hasSessionBus()) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        const auto* watcher = new QDBusServiceWatcher(
            watcherService, bus, QDBusServiceWatcher::WatchForRegistration, this);
        connect(watcher, &QDBusServiceWatcher::serviceRegistered, this,
                &DesktopStatusArea::askForHost);
        bus.connect(watcherService, watcherPath, watcherService,
                    QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(hostAppeared()));
        askForHost();
    }
    scheduler.after(patience, this, [this] { settle(); });
}

void DesktopStatusArea::hostAppeared()
{
    if (isThere)
        return;
    isThere = true;
    Q_EMIT appeared();
}

void DesktopStatusArea::askForHost()
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    // An absent service is not to be started by the question.
    question.setAutoStartService(false);
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (reply.isValid() && reply.value().variant().toBool())
                    hostAppeared();
            });
}

void DesktopStatusArea::settle()
{
    if (isThere)
        return;
    if (hasTrayOfTheDisplay())
        hostAppeared();
    else
        Q_EMIT missing();
}

} // namespace vellumry
