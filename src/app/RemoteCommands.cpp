#include "app/RemoteCommands.h"

#include <utility>

namespace vellumry {

void RemoteCommands::listen(std::function<void(StartCommand)> onCommand)
{
    receiver = std::move(onCommand);
    for (const StartCommand command : std::exchange(waiting, {}))
        post(command);
}

void RemoteCommands::Activate(const QVariantMap&)
{
    post(StartCommand::open);
}

void RemoteCommands::Open(const QStringList&, const QVariantMap&)
{
    post(StartCommand::open);
}

void RemoteCommands::ActivateAction(const QString& name, const QVariantList&, const QVariantMap&)
{
    if (const auto command = commandOf(QStringLiteral("--") + name))
        post(*command);
}

void RemoteCommands::post(StartCommand command)
{
    if (!receiver) {
        waiting.append(command);
        return;
    }
    // Later, so that the caller has its answer before windows take their time.
    QMetaObject::invokeMethod(
        this, [this, command] { receiver(command); }, Qt::QueuedConnection);
}

} // namespace vellumry
