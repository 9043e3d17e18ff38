#pragma once

#include "expression/Subexpression.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellumry::expression {

/// Turns a tree back into text. For one use.
class Printer {
public:
    explicit Printer(const Subexpression& expression) : tree(expression) {}

    [[nodiscard]] std::string print();

private:
    using Index = std::uint32_t;

    /// What is still to be printed, the next on top: a node, the name of a node, or a fixed text.
    struct Task {
        enum class Kind : std::uint8_t { node, name, text };

        Kind kind;
        Index node;
        std::string_view text;
    };

    void pushNode(Index node) { tasks.push_back({Task::Kind::node, node, {}}); }
    void pushName(Index node) { tasks.push_back({Task::Kind::name, node, {}}); }
    void pushText(std::string_view text) { tasks.push_back({Task::Kind::text, 0, text}); }
    void pushInParentheses(Index node, bool isNeeded);
    void pushArguments(Index node, std::size_t count);

    void expand(Index node);
    void expandInfix(Index node);
    void expandUnary(Index node);

    [[nodiscard]] const Node& at(Index node) const { return tree.nodes[node]; }
    [[nodiscard]] Index before(Index node) const { return node - at(node).size; }
    [[nodiscard]] Index firstArgument(Index node) const;
    [[nodiscard]] bool isComma(Index node) const;
    [[nodiscard]] bool takesPrecedence(Index node, Index over) const;
    [[nodiscard]] bool bindsLooser(Index node) const;
    [[nodiscard]] bool runsInto(Index symbol, Index argument) const;
    [[nodiscard]] std::string firstToken(Index node) const;
    [[nodiscard]] std::string escapedName(Index node) const;

    const Subexpression& tree;
    std::vector<Task> tasks;
};

} // namespace vellumry::expression
