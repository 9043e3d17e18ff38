#include "platform/linux/SessionBus.h"

#include <QFile>
#include <QString>

namespace vellumry {

bool hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !folder.isEmpty() && QFile::exists(folder + QStringLiteral("/bus"));
}

} // namespace vellumry
