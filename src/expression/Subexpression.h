#pragma once

#include "expression/Error.h"
#include "expression/Node.h"
#include "expression/Symbol.h"
#include "expression/SymbolEvaluator.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace vellumry::expression {

/// The tree of an expression, and each part of it: a value that is copied as a whole.
///
///     const auto sum = Subexpression::symbol(Symbol::infix("+"), {Subexpression::literal(1),
///                                                                Subexpression::literal(2)});
///     sum.description();           // "1 + 2"
///     sum.argument(1).value();     // 2
///
/// The nodes lie in one array, arguments before the symbol that they belong to: to evaluate is to
/// walk along it, and no operation is recursive, however deep the tree is.
class Subexpression {
public:
    using Kind = Node::Kind;

    [[nodiscard]] static Subexpression literal(double value);
    /// An infix, prefix or postfix symbol without arguments is a bare operator.
    [[nodiscard]] static Subexpression symbol(const Symbol& symbol,
                                              const std::vector<Subexpression>& arguments = {},
                                              SymbolEvaluator evaluator = {});
    /// A failure, and the text that it comes from.
    [[nodiscard]] static Subexpression error(Error error, std::string text);

    [[nodiscard]] Kind kind() const { return root().kind; }
    /// Of a literal.
    [[nodiscard]] double value() const { return root().value; }
    /// Of a symbol.
    [[nodiscard]] Symbol symbol() const { return symbolOf(root()); }
    [[nodiscard]] std::size_t argumentCount() const { return root().argumentCount; }
    /// A copy of one argument of a symbol, counted from 0.
    [[nodiscard]] Subexpression argument(std::size_t index) const;
    [[nodiscard]] bool hasEvaluator() const
    {
        return kind() == Kind::symbol && root().evaluator != nullptr;
    }
    /// Of an error.
    [[nodiscard]] const Error& error() const { return failures[root().error].error; }
    [[nodiscard]] const std::string& errorText() const { return failures[root().error].text; }

    /// All symbols in the tree.
    [[nodiscard]] std::unordered_set<Symbol> symbols() const;

    /// The tree as text, with plain spacing and the parentheses that infix operators need. It reads
    /// back as the same tree but for what blanks alone decide: a postfix operator before another
    /// operator or a word, and a prefix operator behind a comma.
    [[nodiscard]] std::string description() const;

    /// The value: that of a literal, or what the evaluator of a symbol makes of its arguments. All
    /// arguments are evaluated first, from left to right; nothing is left out.
    /// Throws Error, and what evaluators throw. A symbol without an evaluator is undefined.
    [[nodiscard]] double evaluate() const;

    /// The same tree. Evaluators play no part.
    friend bool operator==(const Subexpression& a, const Subexpression& b);

private:
    friend class Binder;
    friend class Printer;
    friend class TreeBuilder;

    struct Failure {
        Error error;
        std::string text;
    };

    Subexpression() = default;

    [[nodiscard]] const Node& root() const { return nodes.back(); }
    [[nodiscard]] std::string_view nameOf(const Node& node) const
    {
        return node.name < NameTable::size ? NameTable::entries[node.name].name
                                           : names[node.name - NameTable::size];
    }
    [[nodiscard]] Symbol symbolOf(const Node& node) const;
    NameNumber numberOf(std::string_view name);
    const SymbolEvaluator* adopt(SymbolEvaluator evaluator);
    void append(const Subexpression& other);

    // Copying copies the arrays; the evaluators themselves never change and are shared.
    std::vector<Node> nodes;        ///< the last one is the root
    std::vector<std::string> names; ///< those that NameTable lacks
    std::vector<Failure> failures;
    std::vector<std::shared_ptr<const SymbolEvaluator>> evaluators; ///< all but the built-in ones
};

} // namespace vellumry::expression
