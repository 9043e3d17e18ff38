#include "hotkey/GlobalShortcutsSession.h"

#include "session/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QList>

#include <algorithm>
#include <utility>

namespace vellumry::hotkey {

namespace {

using State = DesktopShortcut::State;
using NamedShortcut = std::pair<QString, QVariantMap>; ///< (sa{sv})
using NamedShortcuts = QList<NamedShortcut>;

constexpr QLatin1StringView interfaceName("org.freedesktop.portal.GlobalShortcuts");
constexpr QLatin1StringView sessionInterface("org.freedesktop.portal.Session");
constexpr QLatin1StringView shortcutsKey("shortcuts");

QDBusMessage callOf(const QString& service, const QString& interface, const QString& method)
{
    return QDBusMessage::createMethodCall(service, portalPath, interface, method);
}

} // namespace

GlobalShortcutsSession::GlobalShortcutsSession(QDBusConnection connection, Shortcut shortcut,
                                               QObject* parent)
    : QObject(parent), bus(std::move(connection)), with(std::move(shortcut))
{
    qDBusRegisterMetaType<NamedShortcut>();
    qDBusRegisterMetaType<NamedShortcuts>();
    introduce();
}

GlobalShortcutsSession::~GlobalShortcutsSession()
{
    if (!session.isEmpty())
        bus.send(QDBusMessage::createMethodCall(portal, session, sessionInterface,
                                                QStringLiteral("Close")));
}

void GlobalShortcutsSession::ask(const QDBusMessage& question, Next next)
{
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, next = std::move(next)] {
        watcher->deleteLater();
        next(watcher->reply());
    });
}

/// Tells the newer portals, which give shortcuts to nobody that they cannot name, who this is. What
/// they answer does not matter, and older ones know no such thing.
void GlobalShortcutsSession::introduce()
{
    QDBusMessage call = callOf(portalName, QStringLiteral("org.freedesktop.host.portal.Registry"),
                               QStringLiteral("Register"));
    call << with.applicationId << QVariantMap();
    ask(call, [this](const QDBusMessage& reply) { readVersion(reply); });
}

void GlobalShortcutsSession::readVersion(const QDBusMessage& registered)
{
    // Without a portal, it is the bus that answers.
    portal = registered.service();
    if (!portal.startsWith(u':')) {
        set(State::unavailable);
        return;
    }
    QDBusMessage call =
        callOf(portal, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << interfaceName << QStringLiteral("version");
    ask(call, [this](const QDBusMessage& reply) { createSession(reply); });
}

void GlobalShortcutsSession::createSession(const QDBusMessage& version)
{
    const QVariant value = version.arguments().value(0).value<QDBusVariant>().variant();
    if (version.type() != QDBusMessage::ReplyMessage || value.toUInt() == 0) {
        set(State::unavailable);
        return;
    }
    PortalRequest& created = request();
    connect(
        &created, &PortalRequest::answered, this, [this](uint code, const QVariantMap& results) {
            // A text by now, an object path by the letter.
            const QVariant handle = results.value(QStringLiteral("session_handle"));
            session = handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path()
                                                           : handle.toString();
            if (code != PortalRequest::granted || session.isEmpty()) {
                set(State::refused);
                return;
            }
            hearSession();
            if (!takeShortcuts(results.value(shortcutsKey)))
                bindShortcut();
        });
    // Known before the answer, so that a session that is given up before it is closed, too.
    session = PortalRequest::pathOf(u"session", bus, token());
    // Some desktops, as KDE Plasma 5.27, give shortcuts with the session alone: there, to bind them
    // only opens a settings page. Others leave the option out of account.
    created.call(portal, interfaceName, QStringLiteral("CreateSession"), {},
                 {{QStringLiteral("session_handle_token"), token()}, {shortcutsKey, wanted()}});
}

void GlobalShortcutsSession::hearSession()
{
    const auto hear = [this](const QString& signal, const char* slot) {
        bus.connect(portal, portalPath, interfaceName, signal, this, slot);
    };
    hear(QStringLiteral("Activated"), SLOT(hearActivated(QDBusMessage)));
    hear(QStringLiteral("Deactivated"), SLOT(hearDeactivated(QDBusMessage)));
    hear(QStringLiteral("ShortcutsChanged"), SLOT(hearShortcutsChanged(QDBusMessage)));
    bus.connect(portal, session, sessionInterface, QStringLiteral("Closed"), this,
                SLOT(hearClosed()));
}

/// The same at each start: KDE Plasma 5.27 keeps a shortcut's keys under it, and gives those keys
/// to nobody else. With the wish in it, since there a shortcut of old keeps its old keys.
QString GlobalShortcutsSession::token() const
{
    QString token = QStringLiteral("vellumry_") + with.trigger;
    for (QChar& each : token) {
        if (each.unicode() > 0x7f || !each.isLetterOrNumber())
            each = u'_';
    }
    return token;
}

QVariant GlobalShortcutsSession::wanted() const
{
    return QVariant::fromValue(
        NamedShortcuts{{with.id,
                        {{QStringLiteral("description"), with.description},
                         {QStringLiteral("preferred_trigger"), with.trigger}}}});
}

void GlobalShortcutsSession::bindShortcut()
{
    PortalRequest& bound = request();
    connect(&bound, &PortalRequest::answered, this, [this](uint code, const QVariantMap& results) {
        if (code != PortalRequest::granted || !takeShortcuts(results.value(shortcutsKey)))
            set(State::refused);
    });
    const QString noWindow;
    bound.call(portal, interfaceName, QStringLiteral("BindShortcuts"),
               {QVariant::fromValue(QDBusObjectPath(session)), wanted(), noWindow}, {});
}

PortalRequest& GlobalShortcutsSession::request()
{
    auto* made = new PortalRequest(bus, this);
    connect(made, &PortalRequest::failed, this, [this] { set(State::refused); });
    return *made;
}

/// Whether ours is among them; then it is in force, with the keys that they tell.
bool GlobalShortcutsSession::takeShortcuts(const QVariant& shortcuts)
{
    const auto named = qdbus_cast<NamedShortcuts>(shortcuts);
    const auto own = std::find_if(named.begin(), named.end(), [this](const NamedShortcut& each) {
        return each.first == with.id;
    });
    if (own == named.end())
        return false;
    set(State::granted, own->second.value(QStringLiteral("trigger_description")).toString());
    return true;
}

void GlobalShortcutsSession::set(State state, const QString& trigger)
{
    const DesktopShortcut next{state, trigger.toStdString()};
    if (std::exchange(current, next) != next)
        Q_EMIT changed();
}

bool GlobalShortcutsSession::isOurs(const QDBusMessage& signal) const
{
    const QVariantList arguments = signal.arguments();
    return arguments.value(0).value<QDBusObjectPath>().path() == session;
}

void GlobalShortcutsSession::hearActivated(const QDBusMessage& signal)
{
    const QVariantList arguments = signal.arguments();
    if (!isOurs(signal) || arguments.value(1).toString() != with.id)
        return;
    const auto options = qdbus_cast<QVariantMap>(arguments.value(3));
    Q_EMIT activated(arguments.value(2).toULongLong(),
                     options.value(QStringLiteral("activation_token")).toString());
}

void GlobalShortcutsSession::hearDeactivated(const QDBusMessage& signal)
{
    const QVariantList arguments = signal.arguments();
    if (isOurs(signal) && arguments.value(1).toString() == with.id)
        Q_EMIT deactivated(arguments.value(2).toULongLong());
}

void GlobalShortcutsSession::hearShortcutsChanged(const QDBusMessage& signal)
{
    if (isOurs(signal) && !takeShortcuts(signal.arguments().value(1)))
        set(State::refused);
}

void GlobalShortcutsSession::hearClosed()
{
    session.clear();
    set(State::refused);
}

} // namespace vellumry::hotkey
