#include "calculators/UnitConversionService.h"

#include "calculators/DecimalText.h"
#include "core/Text.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>
#include <charconv>

namespace vellumry {

namespace {

struct Unit {
    QStringView name;                ///< as typed; letter case counts
    double (*convert)(double value); ///< rounds as its operations stand: their order matters
    QStringView target;
    QStringView label = name; ///< how the unit is shown
};

double toFeet(double v)
{
    return v / 0.3048;
}
double toMetres(double v)
{
    return v * 0.3048;
}
double inchesToCentimetres(double v)
{
    return v * 2.54;
}
double milesToKilometres(double v)
{
    return v * 1.609344;
}
double poundsToKilograms(double v)
{
    return v * 0.45359237;
}
double cupsToOunces(double v)
{
    return v * 8;
}
double toCelsius(double v)
{
    return (v - 32) * 5 / 9;
}
double toFahrenheit(double v)
{
    return v * 9 / 5 + 32;
}

constexpr std::array units{
    Unit{u"cm", [](double v) { return v / 2.54; }, u"inches"},
    Unit{u"inch", inchesToCentimetres, u"cm"},
    Unit{u"inches", inchesToCentimetres, u"cm"},
    Unit{u"in", inchesToCentimetres, u"cm"},
    Unit{u"\"", inchesToCentimetres, u"cm"},
    Unit{u"ft", toMetres, u"m"},
    Unit{u"feet", toMetres, u"m"},
    Unit{u"'", toMetres, u"m"},
    Unit{u"m", toFeet, u"ft"},
    Unit{u"km", [](double v) { return v / 1.609344; }, u"miles"},
    Unit{u"mi", milesToKilometres, u"km"},
    Unit{u"mile", milesToKilometres, u"km"},
    Unit{u"miles", milesToKilometres, u"km"},
    Unit{u"lb", poundsToKilograms, u"kg"},
    Unit{u"lbs", poundsToKilograms, u"kg"},
    Unit{u"kg", [](double v) { return v / 0.45359237; }, u"lb"},
    Unit{u"g", [](double v) { return v / 453.59237; }, u"lb"},
    Unit{u"ml", [](double v) { return v / 29.5735; }, u"oz"},
    Unit{u"oz", [](double v) { return v * 29.5735; }, u"ml"},
    Unit{u"cup", cupsToOunces, u"oz"},
    Unit{u"cups", cupsToOunces, u"oz"},
    Unit{u"°F", toCelsius, u"°C"},
    Unit{u"°f", toCelsius, u"°C", u"°F"},
    Unit{u"F", toCelsius, u"°C", u"°F"},
    Unit{u"f", toCelsius, u"°C", u"°F"},
    Unit{u"°C", toFahrenheit, u"°F"},
    Unit{u"°c", toFahrenheit, u"°F", u"°C"},
    Unit{u"C", toFahrenheit, u"°F", u"°C"},
    Unit{u"c", toFahrenheit, u"°F", u"°C"},
};

/// How much of the text is a number: a sign perhaps, digits, and perhaps a point with digits.
qsizetype numberLength(QStringView text)
{
    qsizetype end = text.startsWith(u'-') ? 1 : 0;
    const auto skipDigits = [&] {
        const qsizetype begin = end;
        while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
            ++end;
        return end > begin;
    };
    if (!skipDigits())
        return 0;
    if (end < text.size() && text[end] == u'.') {
        ++end;
        skipDigits();
    }
    return end;
}

std::optional<double> parsed(QStringView number)
{
    const QByteArray bytes = number.toLatin1();
    double value = 0;
    const auto [stop, error] = std::from_chars(bytes.begin(), bytes.end(), value);
    if (stop != bytes.end() || error != std::errc())
        return std::nullopt;
    return value;
}

QString formatNumber(double value)
{
    return decimalText(value, 4);
}

std::optional<CalculationResult> performConversion(double value, QStringView unitText)
{
    const auto unit = std::find_if(units.begin(), units.end(),
                                   [unitText](const Unit& one) { return one.name == unitText; });
    if (unit == units.end())
        return std::nullopt;
    const double converted = unit->convert(value);
    return CalculationResult{.expression = formatNumber(value) % u' ' % unit->label,
                             .value = converted,
                             .formattedValue = formatNumber(converted) % u' ' % unit->target};
}

} // namespace

std::optional<CalculationResult> UnitConversionService::convert(const QString& query)
{
    QStringView text = trimmedHorizontally(query);
    if (!text.endsWith(u'='))
        return std::nullopt;
    text.chop(1);
    if (text.endsWith(u' '))
        text.chop(1);
    const QStringView number = text.first(numberLength(text));
    const auto value = parsed(number);
    if (!value)
        return std::nullopt;
    text = text.sliced(number.size());
    if (text.startsWith(u' '))
        text = text.sliced(1);
    return performConversion(*value, text);
}

} // namespace vellumry
