#pragma once

#include <QString>

namespace vellumry {

/// The number as decimal text, the same in every locale: no exponent and no grouping of digits. A
/// whole number below 1e15 stands without a point, any other number rounded to at most `decimals`
/// places, without zeros at its end. A negative number that rounds to nothing is "-0".
[[nodiscard]] QString decimalText(double value, int decimals);

} // namespace vellumry
