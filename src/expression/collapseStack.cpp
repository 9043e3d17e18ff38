#include "expression/collapseStack.h"

#include <algorithm>

namespace vellumry::expression {

namespace {

using Index = TreeBuilder::Index;
using Case = Symbol::Case;

/// The elements stand on two stacks: those that have been passed by, and the rest in reverse, with
/// the present one on top. So nothing is ever inserted in the middle.
class Collapse {
public:
    Collapse(TreeBuilder& builder, NodeStack& stack, std::size_t base)
        : tree(builder), passed(stack)
    {
        moveBackTo(base);
    }

    void run()
    {
        while (rest.size() > 1)
            step();
        while (!rest.empty())
            advance();
    }

private:
    /// The element so many places behind the present one.
    [[nodiscard]] Index at(std::size_t distance) const { return rest[rest.size() - 1 - distance]; }
    void removeCurrent() { rest.pop_back(); }

    void advance()
    {
        passed.push_back(rest.back());
        rest.pop_back();
    }

    void moveBackTo(std::size_t position)
    {
        while (passed.size() > position) {
            rest.push_back(passed.back());
            passed.pop_back();
        }
    }

    /// Leaves the present element for the one so many places behind it.
    void skip(std::size_t count)
    {
        trail.push_back(passed.size());
        for (std::size_t i = 0; i < count; ++i)
            advance();
    }

    void noteChange() { changedFrom = std::min(changedFrom, passed.size()); }

    /// Goes back to where the change could make a difference.
    void resume()
    {
        noteChange();
        std::size_t position = passed.size();
        while (!trail.empty() && trail.back() + 3 >= changedFrom) {
            position = trail.back();
            trail.pop_back();
        }
        moveBackTo(position);
        changedFrom = static_cast<std::size_t>(-1);
    }

    void throwIfError(Index index) const
    {
        if (tree[index].isError())
            throw Error(tree.errorOf(index));
    }

    void step();
    void stepInfix(Index lhs, Index rhs);
    void reduceInfix(Index lhs, Index rhs, Index next);
    void reduceUnary(Index symbol, Index argument, Case symbolCase);

    TreeBuilder& tree;
    NodeStack& passed;
    NodeStack rest;
    SmallVector<std::size_t, 16> trail; ///< the passed positions at which something was decided
    std::size_t changedFrom = static_cast<std::size_t>(-1);
};

void Collapse::step()
{
    const Index lhs = at(0);
    const Index rhs = at(1);
    throwIfError(lhs);
    throwIfError(rhs);
    if (tree[lhs].isBareOperator()) {
        if (tree[rhs].isBareOperator())
            skip(1);
        else
            reduceUnary(lhs, rhs, Case::prefix);
        return;
    }
    if (tree[rhs].isBareOperator()) {
        if (!tree[rhs].isBare(Case::postfix) && rest.size() > 2)
            stepInfix(lhs, rhs);
        else
            reduceUnary(rhs, lhs, Case::postfix);
        return;
    }
    if (!tree[lhs].isSymbol(Case::postfix))
        throw Error::unexpectedToken(tree.description(rhs));
    // The blanks have made a postfix of what stands between two operands: undo it.
    const Index argument = tree.takeArgument(lhs);
    tree[lhs].symbolCase = Case::infix;
    rest.push_back(argument);
    noteChange();
}

void Collapse::stepInfix(Index lhs, Index rhs)
{
    const Index next = at(2);
    throwIfError(next);
    const NameNumber name = tree[rhs].name;
    if (tree[next].isBareOperator()) {
        if (tree[next].symbolCase == Case::prefix) {
            skip(2);
        } else if (name == name::plus || name == name::divide || name == name::times) {
            tree[next].symbolCase = Case::prefix;
            skip(2);
        } else {
            tree[rhs].symbolCase = Case::postfix;
        }
        return;
    }
    if (rest.size() > 3) {
        const Node& op2 = tree[at(3)];
        const bool isFirst =
            op2.isOperator() && rest.size() > 4 &&
            NameTable::precedence(name).takesPrecedence(NameTable::precedence(op2.name));
        if (!isFirst) {
            skip(2);
            return;
        }
    }
    reduceInfix(lhs, rhs, next);
}

void Collapse::reduceInfix(Index lhs, Index rhs, Index next)
{
    removeCurrent();
    removeCurrent();
    if (tree[rhs].name == name::colon && tree[lhs].isSymbol(Case::infix) &&
        tree[lhs].name == name::question) {
        tree[lhs].name = name::ternary;
        tree.appendArgument(lhs, next);
        rest.back() = lhs;
    } else {
        tree[rhs].symbolCase = Case::infix;
        tree.appendArgument(rhs, lhs);
        tree.appendArgument(rhs, next);
        rest.back() = rhs;
    }
    resume();
}

void Collapse::reduceUnary(Index symbol, Index argument, Case symbolCase)
{
    removeCurrent();
    tree[symbol].symbolCase = symbolCase;
    tree.appendArgument(symbol, argument);
    rest.back() = symbol;
    resume();
}

} // namespace

void collapseStack(TreeBuilder& tree, NodeStack& stack, std::size_t base)
{
    if (stack.size() - base > 1)
        Collapse(tree, stack, base).run();
}

} // namespace vellumry::expression
