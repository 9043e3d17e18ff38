#pragma once

#include "calculators/CalculationResult.h"

#include <QString>

#include <optional>

namespace vellumry {

/// Turns a query such as "2+3*4=" into a calculator row; the "=" at its end is what asks for it.
/// Whatever cannot be calculated gives no row.
class MathCalculatorService {
public:
    /// Whether the name of a function occurs anywhere in the text, also within a word.
    [[nodiscard]] static bool containsMathFunction(const QString& text);

    /// The expression to calculate; nothing if the query asks for no calculation.
    [[nodiscard]] static std::optional<QString> extractMathExpression(const QString& query);

    /// The text with each power as a call of "pow", which is what the evaluator knows. A power is
    /// one plain unsigned number raised to another.
    [[nodiscard]] static QString rewritePowers(QString text);

    /// The result of the expression, if it has a finite one. What keeps it from being evaluated is
    /// told in a diagnostic line.
    [[nodiscard]] static std::optional<CalculationResult> calculate(const QString& expression);

    /// The number with at most ten decimals.
    [[nodiscard]] static QString formatResult(double value);
};

} // namespace vellumry
