#pragma once

#include <QStringView>

namespace vellumry::test {

/// What the calculators find by faster means, as the regular expressions that define it.

/// One plain unsigned number raised to another; digits and blanks of any script count.
inline constexpr QStringView powerPattern = uR"((\p{Nd}+\.?\p{Nd}*)[\t\n\f\r\p{Z}]*)"
                                            uR"(\^[\t\n\f\r\p{Z}]*(\p{Nd}+\.?\p{Nd}*))";

/// A conversion, which the whole text must be. \d counts the ASCII digits only: others match, but
/// make no number.
inline constexpr QStringView conversionPattern =
    uR"(^(-?\d+\.?\d*) ?(cm|inch|inches|in|"|ft|feet|'|m|km|mi|miles|mile|lb|lbs|kg|g|ml|oz|)"
    uR"(cups?|°[fFcC]|[fF]|[cC]) ?=$)";

} // namespace vellumry::test
