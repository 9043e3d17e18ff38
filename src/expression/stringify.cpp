#include "expression/stringify.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace vellumry::expression {

std::string stringify(double number)
{
    constexpr double limit = 0x1p63;
    if (std::isnan(number))
        return "nan"; // whatever its sign
    if (number >= -limit && number < limit && std::trunc(number) == number)
        return std::to_string(static_cast<std::int64_t>(number));
    char text[32]; // the longest takes 24
    const auto [end, status] = std::to_chars(text, text + sizeof text, number);
    return {text, end};
}

} // namespace vellumry::expression
