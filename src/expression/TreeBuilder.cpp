#include "expression/TreeBuilder.h"

#include <utility>

namespace vellumry::expression {

TreeBuilder::Index TreeBuilder::addError(Error error, std::string text)
{
    tables.failures.push_back({std::move(error), std::move(text)});
    return add(Node::makeError(static_cast<std::uint32_t>(tables.failures.size() - 1)));
}

void TreeBuilder::appendArgument(Index parent, Index argument)
{
    Entry& above = entries[parent];
    Entry& below = entries[argument];
    below.previousArgument = above.lastArgument;
    above.lastArgument = argument;
    ++above.node.argumentCount;
    above.node.size += below.node.size;
}

TreeBuilder::Index TreeBuilder::takeArgument(Index parent)
{
    Entry& above = entries[parent];
    const Index argument = above.lastArgument;
    above.lastArgument = none;
    above.node.argumentCount = 0;
    above.node.size = 1;
    return argument;
}

std::string TreeBuilder::description(Index index) const
{
    Subexpression tree = tables;
    tree.nodes = inOrder(index);
    return tree.description();
}

Subexpression TreeBuilder::take(Index root)
{
    tables.nodes = inOrder(root);
    return std::move(tables);
}

std::vector<Node> TreeBuilder::inOrder(Index root) const
{
    // From the last node to the first: a symbol, its last argument with all below, the one before.
    std::vector<Node> nodes(entries[root].node.size);
    SmallVector<Index, 16> waiting;
    Index current = root;
    for (std::size_t i = nodes.size(); i-- > 0;) {
        const Entry& entry = entries[current];
        nodes[i] = entry.node;
        if (current != root && entry.previousArgument != none)
            waiting.push_back(entry.previousArgument);
        if (entry.lastArgument != none) {
            current = entry.lastArgument;
        } else if (!waiting.empty()) {
            current = waiting.back();
            waiting.pop_back();
        }
    }
    return nodes;
}

} // namespace vellumry::expression
