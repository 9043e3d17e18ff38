#pragma once

#include "calculators/CalculationResult.h"

#include <QString>

#include <optional>

namespace vellumry {

/// Turns a query such as "10 km=" into a calculator row. Each unit converts to one fixed other.
class UnitConversionService {
public:
    /// The conversion that the query asks for, if it asks for one.
    [[nodiscard]] static std::optional<CalculationResult> convert(const QString& query);
};

} // namespace vellumry
