#pragma once

#include "core/Date.h"

#include <QLocale>
#include <QString>
#include <QTimeZone>

namespace vellumry {

/// A date for people: its day with the month in short, and the time to the minute, such as
/// "Mar 14, 2025 at 9:12 AM", in the manner of the locale, by default that of the desktop.
[[nodiscard]] QString mediumDateTime(Date date, const QLocale& locale = QLocale::system(),
                                     const QTimeZone& zone = QTimeZone::systemTimeZone());

} // namespace vellumry
