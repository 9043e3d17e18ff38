#pragma once

#include <QString>

#include <optional>

namespace vellumry {

/// Text that names this machine in stored files. It is informative only: nothing is looked up
/// by it.
class DeviceIdentifier {
public:
    DeviceIdentifier() = delete;

    /// The machine's permanent identifier; where there is none, the host's name, a dash and eight
    /// random characters, which differ at each call. Computed anew at each call.
    [[nodiscard]] static QString current();

    /// The rule behind current(), for any source of its two inputs. An empty host name counts
    /// as "Unknown".
    [[nodiscard]] static QString from(const std::optional<QString>& machineIdentifier,
                                      const QString& hostName);
};

} // namespace vellumry
