#include "platform/DeviceIdentifier.h"

#include "platform/MachineIdentifier.h"

#include <QSysInfo>
#include <QUuid>

namespace vellumry {

QString DeviceIdentifier::current()
{
    return from(machineIdentifier(), QSysInfo::machineHostName());
}

QString DeviceIdentifier::from(const std::optional<QString>& machineIdentifier,
                               const QString& hostName)
{
    if (machineIdentifier)
        return *machineIdentifier;
    const QString suffix = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().left(8);
    return (hostName.isEmpty() ? QStringLiteral("Unknown") : hostName) + u'-' + suffix;
}

} // namespace vellumry
