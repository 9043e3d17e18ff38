#include "expression/Expression.h"

#include "expression/BuiltIns.h"
#include "expression/ParseCache.h"
#include "expression/Parser.h"
#include "expression/Scanner.h"

#include <utility>

namespace vellumry::expression {

Expression::Expression(std::string_view text, Options options, const Constants& constants,
                       const Arrays& arrays, const SymbolTable& symbols)
    : Expression(parse(text), options, constants, arrays, symbols)
{
}

Expression::Expression(ParsedExpression parsed, Options options, const Constants& constants,
                       const Arrays& arrays, const SymbolTable& symbols)
    : root(std::move(parsed.root))
{
    Binder(root, options, constants, arrays, symbols).bind();
}

ParsedExpression Expression::parse(std::string_view text, bool usingCache)
{
    constexpr auto parseAnew = [](std::string_view source) {
        ScalarView view(source);
        return parse(view);
    };
    return usingCache ? ParseCache::shared().get(text, parseAnew) : parseAnew(text);
}

ParsedExpression Expression::parse(ScalarView& view, std::span<const std::string_view> upTo)
{
    const std::size_t start = view.position();
    try {
        return ParsedExpression(Parser(view, upTo).parse());
    } catch (const Error& error) {
        return ParsedExpression(Subexpression::error(error, std::string(view.textSince(start))));
    }
}

void Expression::clearCache(std::optional<std::string_view> text)
{
    if (text)
        ParseCache::shared().clear(*text);
    else
        ParseCache::shared().clear();
}

bool Expression::isValidIdentifier(std::string_view text)
{
    ScalarView view(text);
    if (!Scanner::scanIdentifier(view).empty())
        return view.isEmpty();
    const std::optional<Scanner::QuotedToken> token = Scanner::scanQuoted(view);
    return token && !token->error && view.isEmpty();
}

bool Expression::isValidOperator(std::string_view text)
{
    ScalarView view(text);
    const std::string_view name = Scanner::scanOperator(view);
    return !name.empty() && view.isEmpty() && name != "(" && name != "[";
}

const SymbolTable& Expression::mathSymbols()
{
    return BuiltIns::shared().mathSymbols();
}

const SymbolTable& Expression::boolSymbols()
{
    return BuiltIns::shared().boolSymbols();
}

} // namespace vellumry::expression
