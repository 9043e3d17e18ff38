#include "core/Date.h"

#include <array>
#include <limits>

namespace vellumry {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

char* writeDigits(char* out, unsigned value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        out[i] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
    return out + count;
}

/// Takes characters off the front of a text.
class Cursor {
public:
    explicit Cursor(QByteArrayView text) : next(text.begin()), end(text.end()) {}

    [[nodiscard]] bool atEnd() const { return next == end; }

    bool take(char expected)
    {
        if (next == end || *next != expected)
            return false;
        ++next;
        return true;
    }

    /// Exactly `count` decimal digits.
    bool digits(int count, int& value)
    {
        if (end - next < count)
            return false;
        value = 0;
        for (int i = 0; i < count; ++i, ++next) {
            if (*next < '0' || *next > '9')
                return false;
            value = value * 10 + (*next - '0');
        }
        return true;
    }

    /// One or more digits of a fraction, as milliseconds; further digits are dropped.
    bool fraction(int& millis)
    {
        int count = 0;
        millis = 0;
        for (; next != end && *next >= '0' && *next <= '9'; ++next, ++count) {
            if (count < 3)
                millis = millis * 10 + (*next - '0');
        }
        for (int i = count; i < 3; ++i)
            millis *= 10;
        return count > 0;
    }

private:
    const char* next;
    const char* end;
};

/// "Z", "+hh:mm" or "-hh:mm", as minutes east of UTC.
bool parseOffset(Cursor& cursor, int& offsetMinutes)
{
    if (cursor.take('Z')) {
        offsetMinutes = 0;
        return true;
    }
    int sign = 1;
    if (cursor.take('-'))
        sign = -1;
    else if (!cursor.take('+'))
        return false;
    int hour = 0;
    int minute = 0;
    if (!cursor.digits(2, hour) || !cursor.take(':') || !cursor.digits(2, minute) || hour > 23 ||
        minute > 59)
        return false;
    offsetMinutes = sign * (hour * 60 + minute);
    return true;
}

} // namespace

Date SystemClock::now() const
{
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

const SystemClock& SystemClock::shared()
{
    static const SystemClock clock;
    return clock;
}

Date truncatedToMilliseconds(Date date)
{
    return floor<milliseconds>(date);
}

char* writeDate(Date date, char* out, DatePrecision precision)
{
    const auto time = floor<milliseconds>(date);
    const auto day = floor<days>(time);
    const std::chrono::year_month_day ymd{day};
    const std::chrono::hh_mm_ss clock{time - day};
    out = writeDigits(out, static_cast<unsigned>(static_cast<int>(ymd.year())), 4);
    *out++ = '-';
    out = writeDigits(out, static_cast<unsigned>(ymd.month()), 2);
    *out++ = '-';
    out = writeDigits(out, static_cast<unsigned>(ymd.day()), 2);
    *out++ = 'T';
    out = writeDigits(out, static_cast<unsigned>(clock.hours().count()), 2);
    *out++ = ':';
    out = writeDigits(out, static_cast<unsigned>(clock.minutes().count()), 2);
    *out++ = ':';
    out = writeDigits(out, static_cast<unsigned>(clock.seconds().count()), 2);
    if (precision == DatePrecision::milliseconds) {
        *out++ = '.';
        out = writeDigits(out, static_cast<unsigned>(clock.subseconds().count()), 3);
    }
    *out++ = 'Z';
    return out;
}

QString formatDate(Date date)
{
    std::array<char, 32> buffer{};
    const char* end = writeDate(date, buffer.data());
    return QString::fromLatin1(buffer.data(), end - buffer.data());
}

std::optional<Date> parseDate(QByteArrayView text, DatePrecision precision)
{
    Cursor cursor(text);
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millis = 0;
    int offset = 0;
    if (!cursor.digits(4, year) || !cursor.take('-') || !cursor.digits(2, month) ||
        !cursor.take('-') || !cursor.digits(2, day) || !cursor.take('T') ||
        !cursor.digits(2, hour) || !cursor.take(':') || !cursor.digits(2, minute) ||
        !cursor.take(':') || !cursor.digits(2, second))
        return std::nullopt;
    const bool mayHaveFraction = precision == DatePrecision::milliseconds;
    if (mayHaveFraction && cursor.take('.') && !cursor.fraction(millis))
        return std::nullopt;
    if (!parseOffset(cursor, offset) || !cursor.atEnd())
        return std::nullopt;

    const std::chrono::year_month_day ymd{std::chrono::year(year),
                                          std::chrono::month(static_cast<unsigned>(month)),
                                          std::chrono::day(static_cast<unsigned>(day))};
    if (!ymd.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const auto time = std::chrono::sys_time<milliseconds>(std::chrono::sys_days(ymd)) +
                      hours(hour) + minutes(minute - offset) + seconds(second) +
                      milliseconds(millis);
    constexpr auto limit = floor<milliseconds>(Date::max());
    if (time > limit || time < -limit.time_since_epoch() + std::chrono::sys_time<milliseconds>())
        return std::nullopt;
    return Date(time);
}

} // namespace vellumry
