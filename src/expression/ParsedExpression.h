#pragma once

#include "expression/Error.h"
#include "expression/Subexpression.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

namespace vellumry::expression {

/// What a text has been read as: a tree, or the failure of a text that is no expression.
class ParsedExpression {
public:
    explicit ParsedExpression(Subexpression tree) : root(std::move(tree)) {}

    Subexpression root;

    /// All symbols in the tree.
    [[nodiscard]] std::unordered_set<Symbol> symbols() const { return root.symbols(); }
    /// The failure, if the text was no expression.
    [[nodiscard]] std::optional<Error> error() const
    {
        return root.kind() == Subexpression::Kind::error ? std::optional(root.error())
                                                         : std::nullopt;
    }
    [[nodiscard]] std::string description() const { return root.description(); }
};

} // namespace vellumry::expression
