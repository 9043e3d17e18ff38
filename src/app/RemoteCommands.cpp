#include "app/RemoteCommands.h"

#include <utility>

namespace vellumry {

namespace {

constexpr QLatin1StringView startupIdKey("desktop-startup-id");

} // namespace

void RemoteCommands::listen(Receiver onCommand)
{
    receiver = std::move(onCommand);
    for (const Request& request : std::exchange(waiting, {}))
        post(request);
}

void RemoteCommands::Activate(const QVariantMap& platformData)
{
    post(StartCommand::open, platformData);
}

void RemoteCommands::Open(const QStringList&, const QVariantMap& platformData)
{
    post(StartCommand::open, platformData);
}

void RemoteCommands::ActivateAction(const QString& name, const QVariantList&,
                                    const QVariantMap& platformData)
{
    if (const auto command = commandOf(QStringLiteral("--") + name))
        post(*command, platformData);
}

void RemoteCommands::post(StartCommand command, const QVariantMap& platformData)
{
    // Older launchers have but one name for what they give.
    const QString token = platformData.value(tokenKey).toString();
    post({command,
          (token.isEmpty() ? platformData.value(startupIdKey).toString() : token).toUtf8()});
}

void RemoteCommands::post(const Request& request)
{
    if (!receiver) {
        waiting.append(request);
        return;
    }
    // Later, so that the caller has its answer before windows take their time.
    QMetaObject::invokeMethod(
        this, [this, request] { receiver(request.command, request.activationToken); },
        Qt::QueuedConnection);
}

} // namespace vellumry
