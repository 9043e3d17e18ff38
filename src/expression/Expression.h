#pragma once

#include "expression/Binder.h"
#include "expression/Options.h"
#include "expression/ParsedExpression.h"
#include "expression/ScalarView.h"
#include "expression/SymbolEvaluator.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vellumry::expression {

/// An arithmetic expression held as text, ready to be evaluated. All values are doubles.
///
///     Expression("2 + 3 * 4").evaluate();                          // 14
///     Expression("max(1, 2, 3) % 2").evaluate();                   // 1
///     Expression("a > 1", Options::boolSymbols, {{"a", 2}}).evaluate();  // 1
///     Expression("twice(x)", {}, {}, {},
///                {{Symbol::variable("x"), [](auto) { return 21; }},
///                 {Symbol::function("twice", 1), [](auto values) { return 2 * values[0]; }}})
///         .evaluate();                                             // 42
///     Expression("2 +* 3").evaluate();  // throws Error: Undefined infix operator +*
///
/// There is no fixed set of operators: every run of operator characters is one, and so is every
/// word between two operands. Whether it means anything is found out when the expression is bound.
/// The blanks around an operator tell whether it stands before, between or behind: `2 - 3`, `2 -3`
/// and `-3` work, `5- -3` does not. There is no implicit multiplication.
///
/// Construction folds what depends on nothing: `2*pi+1` is a single number afterwards. The caller's
/// symbols are evaluated each time, unless Options::pureSymbols allows otherwise. A text that is no
/// expression does not fail construction; `evaluate` throws the error.
///
/// Texts are UTF-8. An expression does not change after construction: any thread may evaluate it,
/// as far as the caller's evaluators allow.
class Expression {
public:
    using Options = expression::Options;

    /// The tables are looked at during construction alone. A name in `constants` or `arrays` beats
    /// a variable or array of `symbols`.
    explicit Expression(std::string_view text, Options options = {},
                        const Constants& constants = {}, const Arrays& arrays = {},
                        const SymbolTable& symbols = {});
    explicit Expression(ParsedExpression parsed, Options options = {},
                        const Constants& constants = {}, const Arrays& arrays = {},
                        const SymbolTable& symbols = {});

    /// Throws Error, and what the caller's evaluators throw. Infinite values and NaN are no
    /// failure.
    [[nodiscard]] double evaluate() const { return root.evaluate(); }
    /// The bound and folded tree as text.
    [[nodiscard]] std::string description() const { return root.description(); }
    [[nodiscard]] const Subexpression& tree() const { return root; }

    /// Reads a text; a failure is a root of kind `error`. With the cache each text is read once in
    /// the life of the process, until it is cleared.
    [[nodiscard]] static ParsedExpression parse(std::string_view text, bool usingCache = true);
    /// Reads from the view's position up to the first of the delimiters, or to the end of the text,
    /// and moves the view behind what it has read. An empty delimiter stands everywhere.
    [[nodiscard]] static ParsedExpression parse(ScalarView& view,
                                                std::span<const std::string_view> upTo = {});
    /// Forgets one text, or all.
    static void clearCache(std::optional<std::string_view> text = std::nullopt);

    /// Whether a text is read as one variable, quoted ones included.
    [[nodiscard]] static bool isValidIdentifier(std::string_view text);
    /// Whether a text is read as one operator other than an opening bracket.
    [[nodiscard]] static bool isValidOperator(std::string_view text);

    /// The symbols that are always there.
    [[nodiscard]] static const SymbolTable& mathSymbols();
    /// Those that Options::boolSymbols adds.
    [[nodiscard]] static const SymbolTable& boolSymbols();

private:
    Subexpression root;
};

} // namespace vellumry::expression
