#pragma once

#include "calculators/CalculationResult.h"

#include <QString>

#include <optional>

namespace vellumry {

/// Turns a query such as "10 km=" into a calculator row. Each unit converts to one fixed other.
class UnitConversionService {
public:
    /// What a conversion is, as a regular expression that must match the whole text. \d counts the
    /// ASCII digits only: others match, but make no number.
    static constexpr QStringView pattern =
        uR"(^(-?\d+\.?\d*) ?(cm|inch|inches|in|"|ft|feet|'|m|km|mi|miles|mile|lb|lbs|kg|g|ml|oz|)"
        uR"(cups?|°[fFcC]|[fF]|[cC]) ?=$)";

    /// The conversion that the query asks for, if it asks for one.
    [[nodiscard]] static std::optional<CalculationResult> convert(const QString& query);
};

} // namespace vellumry
