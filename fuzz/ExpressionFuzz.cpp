#include "FuzzInput.h"
#include "expression/Expression.h"
#include "expression/ReferenceExpression.h"
#include "expression/readsBack.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Reading, binding, evaluating and printing of any bytes. The plain reading of the tests says what
// is right for texts of ASCII characters.

namespace {

using namespace vellumry;
using namespace vellumry::expression;
using fuzz::require;

/// The plain reading, and the walk over a tree part by part, take the square of the length.
constexpr size_t plainLength = 300;

struct Outcome {
    std::optional<double> value;
    std::string error;

    friend bool operator==(const Outcome& a, const Outcome& b)
    {
        const bool areNumbers = a.value && b.value;
        return a.error == b.error &&
               (a.value == b.value || (areNumbers && std::isnan(*a.value) && std::isnan(*b.value)));
    }
};

Outcome evaluated(const Expression& expression)
{
    try {
        return {expression.evaluate(), {}};
    } catch (const Error& error) {
        return {{}, error.description()};
    }
}

void requirePlainReading(const std::string& text, const ParsedExpression& parsed)
{
    const test::Reference expected = test::readPlainly(text);
    require(parsed.error().has_value() == expected.tree.empty(), "what the plain reading reads");
    if (!expected.tree.empty())
        require(test::dump(parsed.root) == expected.tree, "the tree of the plain reading");
    const Outcome outcome = evaluated(Expression(parsed));
    require(outcome.error == expected.error, "the error of the plain reading");
    if (outcome.value)
        require(outcome == Outcome{expected.value, {}}, "the value of the plain reading");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const ParsedExpression parsed = Expression::parse(text, false);
    const std::string printed = parsed.description();

    const SymbolTable symbols{{Symbol::variable("x"), [](auto) { return 3.0; }},
                              {Symbol::infix("?"), [](auto) { return 4.0; }},
                              {Symbol::infix(":"), [](auto) { return 5.0; }},
                              {Symbol::function("f", Arity::any),
                               [](auto) -> double { throw Error::message("thrown"); }}};
    const Constants constants{{"c", 2}};
    const Arrays arrays{{"a", {1, 2, 3}}};
    for (const Options options : {Options{}, Options::boolSymbols, Options::pureSymbols}) {
        const Expression folded(parsed, options, constants, arrays, symbols);
        const Expression plain(parsed, options | Options::noOptimize, constants, arrays, symbols);
        require(evaluated(folded) == evaluated(plain), "folding changes no outcome");
        require(plain.description() == printed, "binding alone does not show");
    }

    const std::vector<std::string_view> delimiters{";", "=>"};
    ScalarView view(text);
    while (!view.isEmpty()) {
        const size_t start = view.position();
        const ParsedExpression part = Expression::parse(view, delimiters);
        require(view.position() >= start, "the view never moves back");
        if (part.error() || view.isEmpty() || !view.popFirst())
            break;
    }

    if (size > plainLength)
        return 0;
    if (!parsed.error() && test::readsBack(parsed.root)) {
        const ParsedExpression again = Expression::parse(printed, false);
        require(again.root == parsed.root, "the printed text reads as the same tree");
        require(again.description() == printed, "and prints as the same text");
    }
    if (std::all_of(text.begin(), text.end(), [](char c) { return c > 0; }))
        requirePlainReading(text, parsed);
    return 0;
}
