#pragma once

#include "library/PickedFile.h"

#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// Asks the person for a folder with the platform's dialog and answers once, later: the folder, an
/// error, or nothing when they cancel. The views implement it. Main thread only.
using PickFolder = std::function<void(
    const QString& title, std::function<void(const std::optional<PickedFile>& answer)> onAnswer)>;

} // namespace vellumry
