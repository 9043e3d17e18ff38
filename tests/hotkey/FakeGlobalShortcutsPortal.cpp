#include "hotkey/FakeGlobalShortcutsPortal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <utility>

namespace vellumry::test {

namespace {

using Shortcut = std::pair<QString, QVariantMap>;
using Shortcuts = QList<Shortcut>;

const QString serviceName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString rootPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString registryInterface = QStringLiteral("org.freedesktop.host.portal.Registry");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QString pathOf(const QString& kind, const QString& client, const QString& token)
{
    return QStringLiteral("%1/%2/%3/%4")
        .arg(rootPath, kind, client.mid(1).replace(u'.', u'_'), token);
}

} // namespace

bool FakeGlobalShortcutsPortal::appear()
{
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<Shortcuts>();
    return connection.registerVirtualObject(rootPath, this, QDBusConnection::SubPath) &&
           connection.registerService(serviceName);
}

void FakeGlobalShortcutsPortal::vanish()
{
    connection.unregisterService(serviceName);
    connection.unregisterObject(rootPath);
    session.clear();
}

void FakeGlobalShortcutsPortal::press(quint64 time, const QString& token)
{
    QVariantMap options;
    if (!token.isEmpty())
        options.insert(QStringLiteral("activation_token"), token);
    emitSignal(shortcutsInterface, rootPath, QStringLiteral("Activated"),
               {QVariant::fromValue(QDBusObjectPath(session)), id, time, options});
}

void FakeGlobalShortcutsPortal::pressOf(const QString& shortcut, const QString& ofSession)
{
    emitSignal(
        shortcutsInterface, rootPath, QStringLiteral("Activated"),
        {QVariant::fromValue(QDBusObjectPath(ofSession)), shortcut, quint64{1}, QVariantMap()});
}

void FakeGlobalShortcutsPortal::release(quint64 time)
{
    emitSignal(shortcutsInterface, rootPath, QStringLiteral("Deactivated"),
               {QVariant::fromValue(QDBusObjectPath(session)), id, time, QVariantMap()});
}

void FakeGlobalShortcutsPortal::changeTrigger(const QString& newTrigger)
{
    trigger = newTrigger;
    emitSignal(shortcutsInterface, rootPath, QStringLiteral("ShortcutsChanged"),
               {QVariant::fromValue(QDBusObjectPath(session)), shortcuts()});
}

void FakeGlobalShortcutsPortal::removeShortcut()
{
    takesShortcut = false;
    changeTrigger(trigger);
}

void FakeGlobalShortcutsPortal::closeSession()
{
    emitSignal(sessionInterface, session, QStringLiteral("Closed"), {});
    session.clear();
}

void FakeGlobalShortcutsPortal::answerRequest()
{
    if (pending)
        pending();
}

bool FakeGlobalShortcutsPortal::handleMessage(const QDBusMessage& message, const QDBusConnection&)
{
    const QString interface = message.interface();
    const QString method = message.member();
    const QVariantList arguments = message.arguments();
    client = message.service();
    if (isSilent) {
        note(method);
    } else if (interface == registryInterface && isNewer) {
        note(QStringLiteral("Register ") + arguments.value(0).toString());
        connection.send(message.createReply());
    } else if (interface == propertiesInterface && version &&
               arguments.value(0).toString() == shortcutsInterface) {
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(*version))));
    } else if (interface == shortcutsInterface && version &&
               method == QStringLiteral("CreateSession")) {
        createSession(message);
    } else if (interface == shortcutsInterface && version &&
               method == QStringLiteral("BindShortcuts")) {
        bindShortcuts(message);
    } else if (interface == shortcutsInterface && version &&
               method == QStringLiteral("ListShortcuts")) {
        listShortcuts(message);
    } else if (interface == sessionInterface && message.path() == session) {
        note(QStringLiteral("Close"));
        session.clear();
        connection.send(message.createReply());
    } else {
        fail(message, QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    }
    return true;
}

void FakeGlobalShortcutsPortal::note(const QString& call)
{
    calls.append(call);
    if (onCall)
        onCall(call);
}

void FakeGlobalShortcutsPortal::noteShortcut(const QString& call,
                                             const std::pair<QString, QVariantMap>& shortcut)
{
    id = shortcut.first;
    description = shortcut.second.value(QStringLiteral("description")).toString();
    note(QStringLiteral("%1 %2 \"%3\" %4")
             .arg(call, id, description,
                  shortcut.second.value(QStringLiteral("preferred_trigger")).toString()));
}

void FakeGlobalShortcutsPortal::fail(const QDBusMessage& message, const QString& error)
{
    connection.send(message.createErrorReply(error, QStringLiteral("not here")));
}

/// The handle of the request at once, the response when the person has answered.
void FakeGlobalShortcutsPortal::respond(const QDBusMessage& message, const QVariantMap& options,
                                        uint code, const QVariantMap& results)
{
    const QString token = choosesRequestPaths
                              ? QStringLiteral("chosen%1").arg(calls.size())
                              : options.value(QStringLiteral("handle_token")).toString();
    const QString path = pathOf(QStringLiteral("request"), client, token);
    connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
    pending = [this, path, code, results] {
        emitSignal(requestInterface, path, QStringLiteral("Response"), {code, results});
    };
    if (!isThinking)
        answerRequest();
}

void FakeGlobalShortcutsPortal::createSession(const QDBusMessage& message)
{
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(0));
    const QString token = options.value(QStringLiteral("session_handle_token")).toString();
    note(QStringLiteral("CreateSession"));
    if (token.isEmpty() || !session.isEmpty()) {
        fail(message, QStringLiteral("org.freedesktop.portal.Error.InvalidArgument"));
        return;
    }
    QVariantMap results;
    if (answerToSession == 0) {
        session = pathOf(QStringLiteral("session"), client, token);
        const QVariant handle =
            tellsSessionAsPath ? QVariant::fromValue(QDBusObjectPath(session)) : QVariant(session);
        results.insert(QStringLiteral("session_handle"), handle);
    }
    const auto asked = qdbus_cast<Shortcuts>(options.value(QStringLiteral("shortcuts")));
    if (bindsWithSession && asked.size() == 1) {
        noteShortcut(QStringLiteral("with the session:"), asked.first());
        results.insert(QStringLiteral("shortcuts"), shortcuts());
    }
    respond(message, options, answerToSession, results);
}

void FakeGlobalShortcutsPortal::bindShortcuts(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    const auto asked = qdbus_cast<Shortcuts>(arguments.value(1));
    const bool isSession = arguments.value(0).value<QDBusObjectPath>().path() == session;
    const bool isSigned = message.signature() == QStringLiteral("oa(sa{sv})sa{sv}");
    if (!isSession || !isSigned || asked.size() != 1) {
        note(QStringLiteral("BindShortcuts in vain"));
        fail(message, QStringLiteral("org.freedesktop.portal.Error.InvalidArgument"));
        return;
    }
    noteShortcut(QStringLiteral("BindShortcuts"), asked.first());
    QVariantMap results;
    if (answerToBinding == 0 && !bindsWithSession)
        results.insert(QStringLiteral("shortcuts"), shortcuts());
    respond(message, qdbus_cast<QVariantMap>(arguments.value(3)), answerToBinding, results);
}

void FakeGlobalShortcutsPortal::listShortcuts(const QDBusMessage& message)
{
    note(QStringLiteral("ListShortcuts"));
    respond(message, qdbus_cast<QVariantMap>(message.arguments().value(1)), 0,
            {{QStringLiteral("shortcuts"), shortcuts()}});
}

QVariant FakeGlobalShortcutsPortal::shortcuts() const
{
    Shortcuts bound;
    if (takesShortcut)
        bound.append({id,
                      {{QStringLiteral("description"), description},
                       {QStringLiteral("trigger_description"), trigger}}});
    return QVariant::fromValue(bound);
}

/// To the client alone, as portals do.
void FakeGlobalShortcutsPortal::emitSignal(const QString& interface, const QString& path,
                                           const QString& name, const QVariantList& arguments)
{
    QDBusMessage signal = QDBusMessage::createTargetedSignal(client, path, interface, name);
    signal.setArguments(arguments);
    connection.send(signal);
}

} // namespace vellumry::test
