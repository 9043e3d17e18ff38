#include "expression/Scanner.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace vellumry::expression {

namespace {

using enum CharacterClass;

void scanExponent(ScalarView& view)
{
    const std::size_t start = view.position();
    if (!view.scanCharacter('e') && !view.scanCharacter('E'))
        return;
    if (!view.scanCharacter('+'))
        view.scanCharacter('-');
    if (view.scanCharacters(digit).empty())
        view.setPosition(start);
}

double hexadecimalValue(std::string_view digits)
{
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value,
                                              std::chars_format::hex);
    return error == std::errc::result_out_of_range ? std::numeric_limits<double>::infinity()
                                                   : value;
}

/// Whether a decimal number other than zero is at least 1, as told by its first digit that is not
/// zero and its exponent.
bool isLarge(std::string_view number)
{
    const std::size_t letter = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, letter);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t lead = mantissa.find_first_not_of("0.");
    const auto place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(lead);
    std::int64_t exponent = 0;
    if (letter < number.size()) {
        std::string_view digits = number.substr(letter + 1);
        const bool isNegative = digits.front() == '-';
        if (isNegative || digits.front() == '+')
            digits.remove_prefix(1);
        constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max() / 4;
        if (std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec !=
            std::errc())
            exponent = huge;
        exponent = std::min(exponent, huge);
        if (isNegative)
            exponent = -exponent;
    }
    return place + exponent > 0;
}

double decimalValue(std::string_view number)
{
    constexpr std::size_t exactDigits = 15; // whole numbers of so many digits are doubles
    if (number.size() <= exactDigits) {
        std::uint64_t whole = 0;
        const char* character = number.data();
        const char* const end = character + number.size();
        for (; character != end && *character >= '0' && *character <= '9'; ++character)
            whole = whole * 10 + static_cast<std::uint64_t>(*character - '0');
        if (character == end)
            return static_cast<double>(whole);
    }
    double value = 0;
    const auto status = std::from_chars(number.data(), number.data() + number.size(), value).ec;
    if (status == std::errc::result_out_of_range)
        return isLarge(number) ? std::numeric_limits<double>::infinity() : 0;
    return value;
}

bool isScalar(std::uint32_t value)
{
    return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

void appendScalar(std::string& text, std::uint32_t scalar)
{
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    const auto appendTail = [&](unsigned shift) { append(0x80U | ((scalar >> shift) & 0x3FU)); };
    if (scalar < 0x80) {
        append(scalar);
    } else if (scalar < 0x800) {
        append(0xC0U | (scalar >> 6U));
        appendTail(0);
    } else if (scalar < 0x10000) {
        append(0xE0U | (scalar >> 12U));
        appendTail(6);
        appendTail(0);
    } else {
        append(0xF0U | (scalar >> 18U));
        appendTail(12);
        appendTail(6);
        appendTail(0);
    }
}

/// Reads "{1F600}" behind "\u" and appends the scalar, or tells what is wrong.
std::optional<Error> scanScalarEscape(ScalarView& view, std::string& name)
{
    const auto unexpectedRest = [&view] {
        const std::string_view token = view.scanToEndOfToken();
        return token.empty() ? Error::missingDelimiter("}")
                             : Error::unexpectedToken(std::string(token));
    };
    if (!view.scanCharacter('{'))
        return unexpectedRest();
    const std::size_t start = view.position();
    const std::string_view digits = view.scanCharacters(hexDigit);
    if (!view.scanCharacter('}'))
        return unexpectedRest();
    if (digits.empty())
        return Error::unexpectedToken("}");
    std::uint32_t scalar = 0;
    const auto status =
        std::from_chars(digits.data(), digits.data() + digits.size(), scalar, 16).ec;
    if (status != std::errc() || !isScalar(scalar)) {
        view.setPosition(start);
        return unexpectedRest();
    }
    appendScalar(name, scalar);
    return std::nullopt;
}

/// Reads what follows a backslash.
std::optional<Error> scanEscape(ScalarView& view, std::string& name)
{
    const std::size_t start = view.position();
    const std::optional<char32_t> scalar = view.popFirst();
    if (!scalar)
        return std::nullopt; // the quote is missing, which the caller will find
    switch (*scalar) {
    case U'0':
        name += '\0';
        break;
    case U'n':
        name += '\n';
        break;
    case U'r':
        name += '\r';
        break;
    case U't':
        name += '\t';
        break;
    case U'u':
        return scanScalarEscape(view, name);
    default:
        name += view.textSince(start);
    }
    return std::nullopt;
}

} // namespace

std::string_view Scanner::scanNumber(ScalarView& view)
{
    const std::size_t start = view.position();
    const std::string_view integer = view.scanCharacters(digit);
    if (integer == "0" && view.scanCharacter('x')) {
        view.scanCharacters(hexDigit);
        return view.textSince(start);
    }
    const std::size_t point = view.position();
    if (view.scanCharacter('.') && view.scanCharacters(digit).empty()) {
        view.setPosition(point);
        return integer;
    }
    if (view.position() != start)
        scanExponent(view);
    return view.textSince(start);
}

std::optional<double> Scanner::valueOf(std::string_view number)
{
    if (!number.starts_with("0x"))
        return decimalValue(number);
    number.remove_prefix(2);
    if (number.empty())
        return std::nullopt;
    return hexadecimalValue(number);
}

std::string_view Scanner::scanIdentifier(ScalarView& view)
{
    const std::size_t start = view.position();
    std::size_t beforePoint = start;
    bool endsInPoint = view.scanCharacter('.');
    if (!endsInPoint) {
        if (view.scanCharacter(identifierHead).empty())
            return {};
        beforePoint = view.position();
        endsInPoint = view.scanCharacter('.');
    }
    while (!view.scanCharacters(identifierCharacter).empty()) {
        beforePoint = view.position();
        endsInPoint = view.scanCharacter('.');
    }
    if (endsInPoint)
        view.setPosition(beforePoint); // nothing is left of a name that was just a point
    else
        view.scanCharacter('\'');
    return view.textSince(start);
}

std::string_view Scanner::scanOperator(ScalarView& view)
{
    const std::size_t start = view.position();
    if (view.scanCharacters('.').empty())
        view.scanCharacters('-');
    view.scanCharacters(operatorCharacter);
    if (view.position() == start && !view.scanCharacter('(') && !view.scanCharacter('['))
        view.scanCharacter(',');
    return view.textSince(start);
}

std::optional<Scanner::QuotedToken> Scanner::scanQuoted(ScalarView& view)
{
    const std::size_t start = view.position();
    const char32_t first = view.first().value_or(U'\0');
    if (first != U'`' && first != U'\'' && first != U'"')
        return std::nullopt;
    const char quote = static_cast<char>(first);
    view.popFirst();

    QuotedToken token{{quote}, {}, {}};
    while (!view.scanCharacter(quote)) {
        const std::size_t before = view.position();
        if (view.scanCharacter('\\')) {
            token.error = scanEscape(view, token.name);
        } else if (view.popFirst()) {
            token.name += view.textSince(before);
        } else {
            token.error = view.position() - start == 1
                              ? Error::unexpectedToken(std::string(1, quote))
                              : Error::missingDelimiter(std::string(1, quote));
        }
        if (token.error) {
            token.text = view.textSince(start);
            return token;
        }
    }
    token.name += quote;
    return token;
}

} // namespace vellumry::expression
