#pragma once

#include <QByteArrayView>
#include <QString>

#include <chrono>
#include <optional>

namespace vellumry {

/// A point in time, UTC, with nanoseconds. Files keep milliseconds only (see formatDate), so a
/// date made in this run differs from the same date read back; rules of the store depend on that.
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Tells the time. Handed to whatever needs "now", so that tests can set it.
class Clock {
public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual Date now() const = 0;
};

/// The machine's clock.
class SystemClock final : public Clock {
public:
    [[nodiscard]] Date now() const override;
    [[nodiscard]] static const SystemClock& shared();
};

/// How finely the text of a date tells it.
enum class DatePrecision { milliseconds, seconds };

/// Length of the text of formatDate for the years 0 to 9999.
inline constexpr int dateTextLength = 24;

/// Cuts a date to whole milliseconds, towards the past: the precision that files keep.
[[nodiscard]] Date truncatedToMilliseconds(Date date);

/// The stored form of a date, ISO 8601 in UTC: "2026-03-09T14:05:07.123Z".
[[nodiscard]] QString formatDate(Date date);

/// Writes the text of formatDate as Latin-1 to `out`, which has room for 32 characters.
/// Returns the end of what was written. In seconds it has no fraction: "2026-03-09T14:05:07Z".
[[nodiscard]] char* writeDate(Date date, char* out,
                              DatePrecision precision = DatePrecision::milliseconds);

/// Reads ISO 8601 internet date-time (RFC 3339), with or without a fraction of a second, with "Z"
/// or a numeric offset. Anything beyond the millisecond is dropped. Empty when `text` is no such
/// date, or lies outside what a Date can hold (the years 1678 to 2262). In seconds, a text with a
/// fraction is no date.
[[nodiscard]] std::optional<Date> parseDate(QByteArrayView text,
                                            DatePrecision precision = DatePrecision::milliseconds);

} // namespace vellumry
