#pragma once

#include <string>

namespace vellumry::expression {

/// The text of a number: without a point when it is whole and fits 64 signed bits, else in the
/// shortest form that reads back as the same value. So minus zero is "0"; the rest are "inf",
/// "-inf" and "nan". The locale plays no part.
[[nodiscard]] std::string stringify(double number);

} // namespace vellumry::expression
