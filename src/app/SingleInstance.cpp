#include "app/SingleInstance.h"

#include "core/Log.h"
#include "platform/linux/SessionBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QVariantMap>

#include <utility>

namespace vellumry {

namespace {

constexpr int answerTimeout = 5'000; // milliseconds
constexpr QLatin1StringView objectPath("/org/vellumry/Vellumry");
constexpr QLatin1StringView interfaceName("org.freedesktop.Application");

} // namespace

SingleInstance::~SingleInstance()
{
    if (!commands)
        return;
    // Without waiting for the answer, which a bus that hangs would not give.
    QDBusMessage release = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReleaseName"));
    release << applicationId;
    QDBusConnection::sessionBus().send(release);
}

SingleInstance::Role SingleInstance::claim(StartCommand command, const QString& activationToken)
{
    if (!hasSessionBus()) {
        log(u"SingleInstance",
            u"there is no session bus, so a second start will not find this one");
        return Role::first;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log(u"SingleInstance",
            u"the session bus cannot be reached, so a second start will not find this one");
        return Role::first;
    }
    // The object first: whoever finds the name finds it too.
    auto* object = new RemoteCommands(this);
    bus.registerObject(objectPath, this);
    const auto takeName = [&] {
        if (bus.registerService(applicationId))
            commands = object;
        return commands != nullptr;
    };
    if (takeName())
        return Role::first;
    // One that did not answer may have been on its way out.
    const bool isForwarded = forward(command, activationToken);
    if (!isForwarded && takeName())
        return Role::first;
    bus.unregisterObject(objectPath);
    delete object;
    log(u"SingleInstance", isForwarded ? u"Vellumry is running already and has been told"
                                       : u"Vellumry is running already, but does not answer");
    return isForwarded ? Role::forwarded : Role::refused;
}

void SingleInstance::listen(RemoteCommands::Receiver onCommand)
{
    if (commands)
        commands->listen(std::move(onCommand));
}

bool SingleInstance::forward(StartCommand command, const QString& activationToken)
{
    const QString action = switchOf(command).remove(0, 2);
    QDBusMessage call = QDBusMessage::createMethodCall(
        applicationId, objectPath, interfaceName,
        action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!action.isEmpty())
        call << action << QVariantList();
    QVariantMap platformData;
    if (!activationToken.isEmpty())
        platformData.insert(RemoteCommands::tokenKey, activationToken);
    call << platformData;
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerTimeout);
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace vellumry
