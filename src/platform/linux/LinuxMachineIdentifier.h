#pragma once

#include <QString>

#include <optional>

namespace vellumry {

/// The text of a machine-id file, see machine-id(5): 32 hexadecimal digits and a line break.
/// Nothing when the file is missing, unreadable or of another form, as in a system image that
/// was never booted.
[[nodiscard]] std::optional<QString> readMachineIdFile(const QString& path);

} // namespace vellumry
