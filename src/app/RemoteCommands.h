#pragma once

#include "app/CommandLine.h"

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
    /// Of the object under which the bus knows the program.
    explicit RemoteCommands(QObject* parent) : QDBusAbstractAdaptor(parent) {}

    /// From now on `onCommand` is called, in a turn of the event loop; what came before waits until
    /// then.
    void listen(std::function<void(StartCommand)> onCommand);

public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& files, const QVariantMap& platformData);
    void ActivateAction(const QString& name, const QVariantList& parameter,
                        const QVariantMap& platformData);

private:
    void post(StartCommand command);

    std::function<void(StartCommand)> receiver;
    QList<StartCommand> waiting;
};

} // namespace vellumry
