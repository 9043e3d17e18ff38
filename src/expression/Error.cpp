#include "expression/Error.h"

#include "expression/stringify.h"

#include <utility>

namespace vellumry::expression {

namespace {

std::string withCapital(std::string text)
{
    text.front() = static_cast<char>(text.front() - 'a' + 'A'); // descriptions begin with a to z
    return text;
}

} // namespace

Error::Error(Case kind, std::string text, std::optional<Symbol> about, double index,
             std::string description)
    : which(kind), words(std::move(text)), subject(std::move(about)), number(index),
      line(std::move(description))
{
}

Error Error::message(std::string text)
{
    std::string description = text;
    return {Case::message, std::move(text), {}, 0, std::move(description)};
}

Error Error::unexpectedToken(std::string token)
{
    std::string description =
        token.empty() ? "Empty expression" : "Unexpected token `" + token + "`";
    return {Case::unexpectedToken, std::move(token), {}, 0, std::move(description)};
}

Error Error::missingDelimiter(std::string delimiter)
{
    std::string description = "Missing `" + delimiter + "`";
    return {Case::missingDelimiter, std::move(delimiter), {}, 0, std::move(description)};
}

Error Error::undefinedSymbol(Symbol symbol)
{
    std::string description = "Undefined " + symbol.description();
    return {Case::undefinedSymbol, {}, std::move(symbol), 0, std::move(description)};
}

Error Error::arityMismatch(Symbol symbol)
{
    std::string description =
        withCapital(symbol.description()) + " expects " + symbol.arity().description();
    return {Case::arityMismatch, {}, std::move(symbol), 0, std::move(description)};
}

Error Error::arrayBounds(Symbol symbol, double index)
{
    std::string description =
        "Index " + stringify(index) + " out of bounds for " + symbol.description();
    return {Case::arrayBounds, {}, std::move(symbol), index, std::move(description)};
}

const Error& Error::emptyExpression()
{
    static const Error error = unexpectedToken("");
    return error;
}

} // namespace vellumry::expression
