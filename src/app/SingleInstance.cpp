#include "app/SingleInstance.h"

#include "core/Log.h"
#include "platform/linux/SessionBus.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace vellumry {

const QString SingleInstance::applicationId = QStringLiteral("org.vellumry.Vellumry");

namespace {

constexpr int answerTimeout = 5'000; // milliseconds
const QString objectPath = QStringLiteral("/org/vellumry/Vellumry");
const QString interfaceName = QStringLiteral("org.freedesktop.Application");

void log(QStringView message)
{
    vellumry::log(u"SingleInstance", message);
}

} // namespace

/// The desktop's common interface to running programs; the actions bear the names of the switches
/// without their dashes.
class RemoteCommands final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit RemoteCommands(QObject* parent) : QDBusAbstractAdaptor(parent) {}

    void listen(std::function<void(StartCommand)> onCommand)
    {
        receiver = std::move(onCommand);
        for (const StartCommand command : std::exchange(waiting, {}))
            post(command);
    }

public Q_SLOTS:
    void Activate(const QVariantMap&) { post(StartCommand::open); }
    void Open(const QStringList&, const QVariantMap&) { post(StartCommand::open); }
    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap&)
    {
        if (const auto command = commandOf(QStringLiteral("--") + name))
            post(*command);
    }

private:
    /// Later, so that the caller has its answer before windows take their time.
    void post(StartCommand command)
    {
        if (!receiver) {
            waiting.append(command);
            return;
        }
        QMetaObject::invokeMethod(
            this, [this, command] { receiver(command); }, Qt::QueuedConnection);
    }

    std::function<void(StartCommand)> receiver;
    QList<StartCommand> waiting;
};

SingleInstance::~SingleInstance()
{
    if (commands)
        QDBusConnection::sessionBus().unregisterService(applicationId);
}

SingleInstance::Role SingleInstance::claim(StartCommand command)
{
    if (!hasSessionBus()) {
        log(u"there is no session bus, so a second start will not find this one");
        return Role::first;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log(u"the session bus cannot be reached, so a second start will not find this one");
        return Role::first;
    }
    // The object first: whoever finds the name finds it too.
    auto* object = new RemoteCommands(this);
    bus.registerObject(objectPath, this);
    if (bus.registerService(applicationId)) {
        commands = object;
        return Role::first;
    }
    bus.unregisterObject(objectPath);
    delete object;
    return forward(command);
}

void SingleInstance::listen(std::function<void(StartCommand)> onCommand)
{
    if (commands)
        commands->listen(std::move(onCommand));
}

SingleInstance::Role SingleInstance::forward(StartCommand command)
{
    const QString action = switchOf(command).remove(0, 2);
    QDBusMessage call = QDBusMessage::createMethodCall(
        applicationId, objectPath, interfaceName,
        action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!action.isEmpty())
        call << action << QVariantList();
    call << QVariantMap();
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(call, QDBus::Block, answerTimeout);
    if (answer.type() == QDBusMessage::ReplyMessage) {
        log(u"Vellumry is running already and has been told");
        return Role::forwarded;
    }
    log(u"Vellumry is running already, but does not answer");
    return Role::refused;
}

} // namespace vellumry

#include "SingleInstance.moc"
