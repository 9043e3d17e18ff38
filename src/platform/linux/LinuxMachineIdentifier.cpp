#include "platform/linux/LinuxMachineIdentifier.h"

#include "platform/MachineIdentifier.h"

#include <QFile>

#include <algorithm>

namespace vellumry {

std::optional<QString> readMachineIdFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray text = file.read(64).trimmed();
    constexpr int length = 32;
    const bool isHexadecimal = std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    });
    if (text.size() != length || !isHexadecimal)
        return std::nullopt;
    return QString::fromLatin1(text);
}

std::optional<QString> machineIdentifier()
{
    return readMachineIdFile(QStringLiteral("/etc/machine-id"));
}

} // namespace vellumry
