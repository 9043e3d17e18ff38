#include "expression/readsBack.h"

#include <cctype>
#include <cmath>
#include <string>

namespace vellumry::test {

namespace {

using expression::Subexpression;
using expression::Symbol;

bool is(const Subexpression& tree, Symbol::Case kind)
{
    return tree.kind() == Subexpression::Kind::symbol && tree.symbol().kind() == kind;
}

bool beginsWithPrefix(const Subexpression& tree)
{
    if (is(tree, Symbol::Case::prefix))
        return true;
    return (is(tree, Symbol::Case::infix) || is(tree, Symbol::Case::postfix)) &&
           beginsWithPrefix(tree.argument(0));
}

/// Whether a name is written as a word, plain or quoted, and so is an operator only directly
/// behind an operand.
bool isWord(const std::string& name)
{
    const auto first = static_cast<unsigned char>(name.front());
    return first >= 0x80 || std::isalpha(first) != 0 ||
           std::string("#$@_`'\"").find(name.front()) != std::string::npos ||
           (first == '.' && name.find_first_not_of(".<=>+*/%!&|^~?:") != std::string::npos);
}

/// `isFirst` tells that nothing stands before the tree within its brackets.
bool readsBack(const Subexpression& tree, bool isFirst)
{
    if (tree.kind() == Subexpression::Kind::literal)
        return std::isfinite(tree.value());
    if (tree.kind() == Subexpression::Kind::error)
        return false;
    const Symbol symbol = tree.symbol();
    switch (symbol.kind()) {
    case Symbol::Case::prefix:
        return symbol.name() != "," && readsBack(tree.argument(0), true);
    case Symbol::Case::postfix:
        return symbol.name() != "," && isFirst && readsBack(tree.argument(0), true);
    case Symbol::Case::infix: {
        const Subexpression left = tree.argument(0);
        if (!readsBack(left, isFirst))
            return false;
        if (is(left, Symbol::Case::postfix) && isWord(symbol.name()))
            return false;
        const bool isCall = symbol.name() == "()" || symbol.name() == "[]";
        for (std::size_t i = 1; i < tree.argumentCount(); ++i) {
            if (!readsBack(tree.argument(i), isCall))
                return false;
            if (symbol.name() == "," && beginsWithPrefix(tree.argument(i)))
                return false;
        }
        return true;
    }
    case Symbol::Case::variable:
    case Symbol::Case::function:
    case Symbol::Case::array:
        break;
    }
    for (std::size_t i = 0; i < tree.argumentCount(); ++i) {
        if (!readsBack(tree.argument(i), true))
            return false;
    }
    return true;
}

} // namespace

bool readsBack(const Subexpression& tree)
{
    return readsBack(tree, true);
}

} // namespace vellumry::test
