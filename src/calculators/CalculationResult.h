#pragma once

#include <QString>

namespace vellumry {

/// What the palette's one calculator row shows.
struct CalculationResult {
    QString expression;     ///< the left-hand text of the row
    double value = 0;       ///< the numeric result
    QString formattedValue; ///< the result as shown and as copied

    friend bool operator==(const CalculationResult&, const CalculationResult&) = default;
};

} // namespace vellumry
