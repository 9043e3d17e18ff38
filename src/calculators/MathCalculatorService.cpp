#include "calculators/MathCalculatorService.h"

#include "calculators/DecimalText.h"
#include "core/Log.h"
#include "core/Text.h"
#include "expression/Expression.h"

#include <QRegularExpression>
#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace vellumry {

namespace {

constexpr std::array functionNames{"sqrt"_L1, "pow"_L1, "abs"_L1, "floor"_L1, "ceil"_L1, "round"_L1,
                                   "sin"_L1,  "cos"_L1, "tan"_L1, "asin"_L1,  "acos"_L1, "atan"_L1,
                                   "log"_L1,  "exp"_L1, "max"_L1, "min"_L1};

constexpr QStringView operators = u"+-*/^%()";

bool holdsOperator(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return operators.contains(c); });
}

bool holdsNumericCharacter(QStringView text)
{
    const QList<uint> characters = text.toUcs4();
    return std::any_of(characters.begin(), characters.end(),
                       [](uint c) { return QChar::isNumber(c); });
}

/// The names that an expression may use beyond those of the evaluator.
const expression::SymbolTable& customSymbols()
{
    static const expression::SymbolTable symbols{
        {expression::Symbol::variable("e"), [](auto) { return std::numbers::e; }}};
    return symbols;
}

double evaluated(const QString& text)
{
    return expression::Expression(text.toStdString(), {}, {}, {}, customSymbols()).evaluate();
}

} // namespace

bool MathCalculatorService::containsMathFunction(const QString& text)
{
    const QString lowerCase = text.toLower();
    return std::any_of(functionNames.begin(), functionNames.end(),
                       [&](QLatin1StringView name) { return lowerCase.contains(name); });
}

std::optional<QString> MathCalculatorService::extractMathExpression(const QString& query)
{
    const QStringView trimmed = trimmedHorizontally(query);
    if (!trimmed.endsWith(u'='))
        return std::nullopt;
    const QString text = trimmedHorizontally(trimmed.chopped(1)).toString();
    if (!holdsNumericCharacter(text))
        return std::nullopt;
    if (!holdsOperator(text) && !containsMathFunction(text))
        return std::nullopt;
    return text;
}

QString MathCalculatorService::rewritePowers(QString text)
{
    if (!text.contains(u'^'))
        return text;
    // Number, "^", number, without a way back into a number: with one, the time would grow with the
    // square of the text's length.
    static const QRegularExpression power(uR"((?<!\p{Nd})(\p{Nd}++\.?+\p{Nd}*+)[\t\n\f\r\p{Z}]*+)"
                                          uR"(\^[\t\n\f\r\p{Z}]*+(\p{Nd}++\.?+\p{Nd}*+))"_s);
    return text.replace(power, u"pow(\\1,\\2)"_s);
}

std::optional<CalculationResult> MathCalculatorService::calculate(const QString& expression)
{
    double value = 0;
    try {
        value = evaluated(rewritePowers(expression));
    } catch (const expression::Error& error) {
        log(u"MathCalculator", QString(u"Failed to evaluate '" % expression % u"' - " %
                                       QString::fromStdString(error.description())));
        return std::nullopt;
    }
    if (!std::isfinite(value))
        return std::nullopt;
    return CalculationResult{
        .expression = expression, .value = value, .formattedValue = formatResult(value)};
}

QString MathCalculatorService::formatResult(double value)
{
    return decimalText(value, 10);
}

} // namespace vellumry
