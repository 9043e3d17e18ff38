#pragma once

#include "app/CommandLine.h"

#include <QByteArray>
#include <QDBusAbstractAdaptor>
#include <QList>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace vellumry {

/// What other processes can ask of the program, by the desktop's common interface to running
/// programs. The actions bear the names of the switches without their dashes. Main thread only.
class RemoteCommands final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Under which the data of the platform hold the token.
    static constexpr QLatin1StringView tokenKey{"activation-token"};

    /// Of the object under which the bus knows the program.
    explicit RemoteCommands(QObject* parent) : QDBusAbstractAdaptor(parent) {}

    /// Told what is asked for, and the desktop's token for the window that this may bring up, empty
    /// when there is none.
    using Receiver = std::function<void(StartCommand command, const QByteArray& activationToken)>;

    /// From now on `onCommand` is called, in a turn of the event loop; what came before waits until
    /// then.
    void listen(Receiver onCommand);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& files, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameter,
                        const QVariantMap& platformData);

private:
    struct Request {
        StartCommand command;
        QByteArray activationToken;
    };

    void post(StartCommand command, const QVariantMap& platformData);
    void post(const Request& request);

    Receiver receiver;
    QList<Request> waiting;
};

} // namespace vellumry
