#pragma once

#include "app/CommandLine.h"
#include "app/RemoteCommands.h"

#include <QObject>
#include <QString>

namespace vellumry {

/// Sees to it that one program runs in a session, over the session bus: the first to start keeps a
/// name there, and the others hand over to it what they were started for. Without a bus each start
/// is the first. Main thread only.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// The name of the program for the desktop.
    static constexpr QLatin1StringView applicationId{"org.vellumry.Vellumry"};

    enum class Role {
        first,     ///< this process is the program
        forwarded, ///< another one is, and does what was asked
        refused,   ///< another one is, and did not answer
    };

    using QObject::QObject;
    ~SingleInstance() override;

    /// Takes the name, or hands the command to the one that has it, along with what the desktop
    /// gave this start for the window that comes up there, since none does here.
    [[nodiscard]] Role claim(StartCommand command, const QString& activationToken = {});

    /// From now on `onCommand` is called, in a turn of the event loop, with what later starts ask
    /// for; what came before waits until then.
    void listen(RemoteCommands::Receiver onCommand);

private:
    /// Whether the one that has the name has answered.
    [[nodiscard]] static bool forward(StartCommand command, const QString& activationToken);

    RemoteCommands* commands = nullptr; ///< its child; null unless it is the first
};

} // namespace vellumry
