#pragma once

#include "expression/SmallVector.h"
#include "expression/Subexpression.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vellumry::expression {

/// The trees of a parse while they grow: nodes linked by number, since the operators put them
/// together in any order.
class TreeBuilder {
public:
    using Index = std::uint32_t;

    Index addLiteral(double value) { return add(Node::makeLiteral(value)); }
    Index addSymbol(Symbol::Case symbolCase, std::string_view name)
    {
        return add(Node::makeSymbol(symbolCase, tables.numberOf(name)));
    }
    Index addError(Error error, std::string text);

    [[nodiscard]] Node& operator[](Index index) { return entries[index].node; }
    [[nodiscard]] const Node& operator[](Index index) const { return entries[index].node; }

    /// Makes `argument` the last argument of the symbol `parent`.
    void appendArgument(Index parent, Index argument);
    /// Takes the only argument away from a symbol.
    Index takeArgument(Index parent);

    [[nodiscard]] Symbol symbolOf(Index index) const
    {
        return tables.symbolOf(entries[index].node);
    }
    [[nodiscard]] const Error& errorOf(Index index) const
    {
        return tables.failures[entries[index].node.error].error;
    }
    [[nodiscard]] std::string description(Index index) const;

    /// The tree below a node. It is the last that is asked of a builder.
    [[nodiscard]] Subexpression take(Index root);

private:
    static constexpr Index none = ~Index{0};

    struct Entry {
        Entry() = default; // uninitialised
        explicit Entry(const Node& alone) : node(alone), lastArgument(none), previousArgument(none)
        {
        }

        Node node;
        Index lastArgument;
        Index previousArgument; ///< of the same parent
    };

    Index add(const Node& node)
    {
        entries.emplace_back(node);
        return static_cast<Index>(entries.size() - 1);
    }
    [[nodiscard]] std::vector<Node> inOrder(Index root) const;

    SmallVector<Entry, 24> entries;
    Subexpression tables; ///< names and failures; no nodes
};

} // namespace vellumry::expression
