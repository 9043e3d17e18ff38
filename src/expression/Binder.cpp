#include "expression/Binder.h"

#include "expression/SmallVector.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace vellumry::expression {

namespace {

using Case = Symbol::Case;

/// Whether a built-in may be called: trees built by hand can have any number of arguments.
bool takesArguments(const Node& node)
{
    switch (node.symbolCase) {
    case Case::variable:
        return true;
    case Case::infix:
        return node.argumentCount == 2 || (node.name == name::ternary && node.argumentCount == 3);
    case Case::function:
        return Arity::exactly(static_cast<int>(node.argumentCount)) == node.arity();
    case Case::prefix:
    case Case::postfix:
    case Case::array:
        break;
    }
    return node.argumentCount == 1;
}

} // namespace

void Binder::bind()
{
    // Arguments stand before their symbol, so they are bound when it is reached. What is folded
    // leaves nodes over, and the rest moves up.
    std::vector<Node>& nodes = tree.nodes;
    for (Node node : nodes) {
        if (node.kind != Node::Kind::symbol) {
            nodes[bound++] = node;
            continue;
        }
        Binding binding{};
        std::optional<double> value;
        if (const std::optional<Binding> found = impure(node)) {
            binding = *found;
        } else {
            binding = pure(node);
            value = folded(node, binding);
        }
        if (value) {
            bound -= node.argumentCount;
            nodes[bound++] = Node::makeLiteral(*value);
            continue;
        }
        std::size_t first = bound;
        for (std::uint32_t i = 0; i < node.argumentCount; ++i)
            first -= nodes[first - 1].size;
        node.size = static_cast<std::uint32_t>(bound - first + 1);
        node.evaluator = binding.evaluator;
        nodes[bound++] = node;
    }
    nodes.resize(bound);
}

/// The value of a symbol whose arguments are all literals, unless its evaluator throws.
std::optional<double> Binder::folded(const Node& node, const Binding& binding) const
{
    if (binding.alwaysThrows)
        return std::nullopt;
    SmallVector<double, 8> values;
    const std::size_t first = bound - std::min<std::size_t>(bound, node.argumentCount);
    for (std::size_t i = first; i < bound; ++i) {
        if (!tree.nodes[i].isLiteral())
            return std::nullopt;
        values.push_back(tree.nodes[i].value);
    }
    try {
        return (*binding.evaluator)(std::span<const double>(values.data(), values.size()));
    } catch (...) { // whatever it is, it will come again when the expression is evaluated
        return std::nullopt;
    }
}

/// The evaluator of a symbol that must be evaluated anew each time.
std::optional<Binder::Binding> Binder::impure(const Node& node)
{
    if (!symbols.empty()) {
        std::optional<Binding> found;
        if (node.symbolCase == Case::array || node.symbolCase == Case::variable) {
            if (arrayOf(node) == nullptr && constantOf(node) == nullptr)
                found = entryOf(node);
        } else if (!options.contains(Options::pureSymbols)) {
            found = symbolEvaluator(node);
        }
        if (found)
            return found;
    }
    return options.contains(Options::noOptimize) ? std::optional(pure(node)) : std::nullopt;
}

/// The evaluator of any symbol; one that throws if nothing defines it.
Binder::Binding Binder::pure(const Node& node)
{
    if (const std::vector<double>* elements = arrayOf(node))
        return indexing(node, *elements);
    if (const double* constant = constantOf(node))
        return {tree.adopt([value = *constant](auto) { return value; })};
    if (!symbols.empty() && node.symbolCase != Case::variable) {
        if (const std::optional<Binding> found = symbolEvaluator(node))
            return *found;
    }
    if (const std::optional<Binding> found = fromBuiltIns(node, BuiltIn::Table::math))
        return *found;
    if (options.contains(Options::boolSymbols)) {
        if (const std::optional<Binding> found = fromBuiltIns(node, BuiltIn::Table::boolean))
            return *found;
    }
    if (node.symbolCase == Case::function) {
        for (const auto& [declared, evaluator] : symbols) {
            if (declared.kind() == Case::function && declared.name() == tree.nameOf(node) &&
                evaluator)
                return throwing(Error::arityMismatch(declared));
        }
    }
    return throwing(failureOf(node));
}

const SymbolEvaluator* Binder::find(const Symbol& symbol) const
{
    const auto entry = symbols.find(symbol);
    return entry != symbols.end() && entry->second ? &entry->second : nullptr;
}

std::optional<Binder::Binding> Binder::entryOf(const Node& node)
{
    const SymbolEvaluator* found = find(tree.symbolOf(node));
    return found != nullptr ? std::optional(Binding{tree.adopt(*found)}) : std::nullopt;
}

/// The caller's symbol, or a ternary made of the caller's "?" and ":".
std::optional<Binder::Binding> Binder::symbolEvaluator(const Node& node)
{
    if (const std::optional<Binding> found = entryOf(node))
        return found;
    if (options.contains(Options::boolSymbols) || node.symbolCase != Case::infix ||
        node.name != name::ternary)
        return std::nullopt;
    const SymbolEvaluator* question = find(Symbol::infix("?"));
    const SymbolEvaluator* colon = find(Symbol::infix(":"));
    if (question == nullptr || colon == nullptr)
        return std::nullopt;
    return Binding{tree.adopt([first = *question, second = *colon](std::span<const double> values) {
        if (values.size() != 3)
            throw Error::arityMismatch(Symbol::infix("?:"));
        const double pair[] = {first(values.first(2)), values[2]};
        return second(pair);
    })};
}

std::optional<Binder::Binding> Binder::fromBuiltIns(const Node& node, BuiltIn::Table table)
{
    for (const BuiltIn& each : builtIns.named(node.name)) {
        if (each.table != table || each.symbol.kind() != node.symbolCase)
            continue;
        if (node.symbolCase == Case::function && !(each.symbol.arity() == node.arity()))
            continue;
        if (!takesArguments(node))
            return throwing(Error::arityMismatch(tree.symbolOf(node)));
        return Binding{&each.evaluator};
    }
    return std::nullopt;
}

Binder::Binding Binder::throwing(Error error)
{
    return {tree.adopt([error = std::move(error)](std::span<const double>) -> double {
                throw Error(error);
            }),
            true};
}

/// What is wrong with a symbol that nothing defines.
Error Binder::failureOf(const Node& node) const
{
    const bool isFunction = node.symbolCase == Case::function;
    if ((isFunction && node.name == name::subscript) ||
        (node.symbolCase == Case::infix && node.name == name::comma))
        return Error::unexpectedToken(std::string(tree.nameOf(node).substr(0, 1)));
    if (isFunction) {
        const Arity arity = node.arity();
        for (const BuiltIn& each : builtIns.named(node.name)) {
            if (each.symbol.kind() != Case::function)
                continue;
            const Arity declared = each.symbol.arity();
            const bool hasOtherCount =
                declared.kind() == arity.kind() && declared.count() != arity.count();
            const bool hasTooFew = arity.kind() == Arity::Case::exactly &&
                                   declared.kind() == Arity::Case::atLeast &&
                                   arity.count() < declared.count();
            if (hasOtherCount || hasTooFew)
                return Error::arityMismatch(each.symbol);
        }
    }
    return Error::undefinedSymbol(tree.symbolOf(node));
}

Binder::Binding Binder::indexing(const Node& node, const std::vector<double>& elements)
{
    std::shared_ptr<const std::vector<double>>& copy = copies[&elements];
    if (!copy)
        copy = std::make_shared<const std::vector<double>>(elements);
    return {tree.adopt([copy, symbol = tree.symbolOf(node)](std::span<const double> values) {
        if (values.size() != 1)
            throw Error::arityMismatch(symbol);
        const double index = std::floor(values[0]);
        if (!(index >= 0 && index < static_cast<double>(copy->size())))
            throw Error::arrayBounds(symbol, values[0]);
        return (*copy)[static_cast<std::size_t>(index)];
    })};
}

const std::vector<double>* Binder::arrayOf(const Node& node) const
{
    if (node.symbolCase != Case::array || arrays.empty())
        return nullptr;
    const auto entry = arrays.find(std::string(tree.nameOf(node)));
    return entry != arrays.end() ? &entry->second : nullptr;
}

const double* Binder::constantOf(const Node& node) const
{
    if (node.symbolCase != Case::variable || constants.empty())
        return nullptr;
    const auto entry = constants.find(std::string(tree.nameOf(node)));
    return entry != constants.end() ? &entry->second : nullptr;
}

} // namespace vellumry::expression
