#include "calculators/DecimalText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace vellumry {

QString decimalText(double value, int decimals)
{
    constexpr double largestWhole = 1e15;
    const bool isWhole = std::trunc(value) == value && std::abs(value) < largestWhole;

    // The longest is a sign, 309 digits, a point and the places. Rounds as printf does.
    std::array<char, 352> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::fixed, isWhole ? 0 : decimals);
    QLatin1StringView text(buffer.data(), written.ptr);
    if (text.contains(u'.')) {
        while (text.endsWith(u'0'))
            text.chop(1);
        if (text.endsWith(u'.'))
            text.chop(1);
    }
    return text;
}

} // namespace vellumry
