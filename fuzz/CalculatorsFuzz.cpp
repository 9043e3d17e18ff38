#include "FuzzInput.h"
#include "calculators/MathCalculatorService.h"
#include "calculators/PlainPatterns.h"
#include "calculators/UnitConversionService.h"
#include "core/Log.h"
#include "core/Text.h"
#include "expression/Expression.h"
#include "palette/RandomPasswordService.h"

#include <QRegularExpression>

#include <cmath>

// What the palette answers by itself, against the patterns that tell what it answers. The input is
// one query.

namespace {

using namespace vellumry;
using namespace Qt::StringLiterals;
using fuzz::require;

/// The number must stand at the beginning of the text, as a number of that many decimals.
void requireNumber(const CalculationResult& result, int decimals)
{
    static const QRegularExpression form(u"\\A-?(0|[1-9][0-9]*)(\\.[0-9]*[1-9])?(?![0-9.])"_s);
    const auto match = form.match(result.formattedValue);
    require(match.hasMatch(), "a result begins with a plain number");
    require(match.capturedLength(2) <= decimals + 1, "a result is rounded");
    const double half = 0.5000001 * std::pow(10.0, -decimals);
    const double shown = match.captured().toDouble();
    require(std::abs(shown - result.value) <= half + std::abs(result.value) * 1e-15,
            "a result shows its value");
}

void checkConversion(const QString& query)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(test::conversionPattern.toString()));
    const auto result = UnitConversionService::convert(query);
    // The pattern's engine refuses texts with broken surrogates, which are no conversions either.
    const auto match = pattern.match(trimmedHorizontally(query).toString());
    const bool isNumber = match.hasMatch() && std::isfinite(match.captured(1).toDouble());
    if (result)
        require(match.hasMatch(), "a conversion has the form of one");
    else
        require(!isNumber || match.capturedLength(1) > 300, "what has its form is a conversion");
    if (result && std::isfinite(result->value))
        requireNumber(*result, 4);
}

void checkCalculation(const QString& query)
{
    static const QRegularExpression power(test::powerPattern.toString());
    const QString rewritten = MathCalculatorService::rewritePowers(query);
    require(rewritten == QString(query).replace(power, u"pow(\\1,\\2)"_s),
            "exactly the powers of the pattern are rewritten");

    const auto expression = MathCalculatorService::extractMathExpression(query);
    if (!expression)
        return;
    require(trimmedHorizontally(query).endsWith(u'='), "a calculation is asked for");
    require(query.contains(*expression), "an expression stands in the query");
    const auto result = MathCalculatorService::calculate(*expression);
    if (!result)
        return;
    require(result->expression == *expression, "the expression is shown as typed");
    require(std::isfinite(result->value), "a result is a number");
    requireNumber(*result, 10);
}

void checkCommand(const QString& query)
{
    static const QRegularExpression command(u"\\A/rand:\\h*([+-]?[0-9]+)\\h*\\z"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    const auto length = RandomPasswordService::shared().extractRandomCommand(query);
    const auto match = command.match(trimmedHorizontally(query).toString());
    bool fits = false;
    const qint64 number = match.captured(1).toLongLong(&fits);
    require(length.has_value() == (fits && number >= 1), "a command has a length");
    if (length)
        require(*length == std::min<qint64>(number, RandomPasswordService::maxLength),
                "the length is the one asked for, or the longest");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    setLogSink([](QStringView) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzInput input(data, size);
    const QString query = input.text();
    checkConversion(query);
    checkCalculation(query);
    checkCommand(query);
    expression::Expression::clearCache(); // it would grow with each input
    return 0;
}
