#pragma once

#include <QString>

#include <optional>

namespace vellumry {

/// The permanent identifier of this machine, or nothing where the system has none.
[[nodiscard]] std::optional<QString> machineIdentifier();

} // namespace vellumry
