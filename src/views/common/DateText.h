#pragma once

#include "core/Date.h"

#include <QString>

namespace vellumry {

/// A date and its time of day for people, in the local time and the language of the desktop, with
/// the month shortened: "Nov 18, 2025, 4:47 PM".
[[nodiscard]] QString mediumDateTime(Date date);

} // namespace vellumry
