#include "session/PrivateBus.h"

#include <QTemporaryFile>
#include <QUuid>

#include <csignal>
#include <sys/prctl.h>
#include <utility>

namespace vellumry::test {

namespace {

constexpr int startLimit = 30'000; // milliseconds

constexpr char configuration[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus()
{
    QTemporaryFile file;
    if (!file.open() || file.write(configuration) < 0 || !file.flush()) {
        problem = QStringLiteral("no file for the configuration of the bus");
        return;
    }
    daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    daemon.start(QStringLiteral("dbus-daemon"),
                 {QStringLiteral("--config-file=") + file.fileName(), QStringLiteral("--nofork"),
                  QStringLiteral("--print-address=1")});
    while (!daemon.canReadLine() && daemon.waitForReadyRead(startLimit)) {
    }
    busAddress = QString::fromUtf8(daemon.readLine()).trimmed();
    if (busAddress.isEmpty())
        problem = QStringLiteral("dbus-daemon did not start: install the package dbus-daemon");
}

PrivateBus::~PrivateBus()
{
    for (const QString& name : std::as_const(names))
        QDBusConnection::disconnectFromBus(name);
    daemon.kill();
    daemon.waitForFinished();
}

QDBusConnection PrivateBus::connect()
{
    names.append(QUuid::createUuid().toString());
    return QDBusConnection::connectToBus(busAddress, names.last());
}

} // namespace vellumry::test
