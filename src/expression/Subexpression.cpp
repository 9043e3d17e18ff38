#include "expression/Subexpression.h"

#include "expression/Printer.h"
#include "expression/SmallVector.h"

#include <span>
#include <utility>

namespace vellumry::expression {

Subexpression Subexpression::literal(double value)
{
    Subexpression tree;
    tree.nodes.push_back(Node::makeLiteral(value));
    return tree;
}

Subexpression Subexpression::symbol(const Symbol& symbol,
                                    const std::vector<Subexpression>& arguments,
                                    SymbolEvaluator evaluator)
{
    Subexpression tree;
    for (const Subexpression& argument : arguments)
        tree.append(argument);
    Node node = Node::makeSymbol(symbol.kind(), tree.numberOf(symbol.name()));
    if (symbol.kind() == Symbol::Case::function)
        node.setArity(symbol.arity());
    node.argumentCount = static_cast<std::uint32_t>(arguments.size());
    node.size = static_cast<std::uint32_t>(tree.nodes.size() + 1);
    if (evaluator)
        node.evaluator = tree.adopt(std::move(evaluator));
    tree.nodes.push_back(node);
    return tree;
}

Subexpression Subexpression::error(Error error, std::string text)
{
    Subexpression tree;
    tree.failures.push_back({std::move(error), std::move(text)});
    tree.nodes.push_back(Node::makeError(0));
    return tree;
}

Subexpression Subexpression::argument(std::size_t index) const
{
    std::size_t end = nodes.size() - 1;
    for (std::size_t i = root().argumentCount - 1; i > index; --i)
        end -= nodes[end - 1].size;
    Subexpression part;
    const auto last = nodes.begin() + static_cast<std::ptrdiff_t>(end);
    part.nodes.assign(last - static_cast<std::ptrdiff_t>(nodes[end - 1].size), last);
    part.names = names;
    part.failures = failures;
    part.evaluators = evaluators;
    return part;
}

std::unordered_set<Symbol> Subexpression::symbols() const
{
    std::unordered_set<Symbol> found;
    for (const Node& node : nodes) {
        if (node.kind == Kind::symbol)
            found.insert(symbolOf(node));
    }
    return found;
}

std::string Subexpression::description() const
{
    return Printer(*this).print();
}

double Subexpression::evaluate() const
{
    // A symbol without an evaluator fails before its arguments are looked at: where the first of
    // its leaves stands. Bound trees have none.
    const Node* undefined = nullptr;
    std::size_t undefinedFrom = nodes.size();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (nodes[i].kind == Kind::symbol && nodes[i].evaluator == nullptr &&
            i + 1 - nodes[i].size <= undefinedFrom) {
            undefined = &nodes[i];
            undefinedFrom = i + 1 - nodes[i].size;
        }
    }

    SmallVector<double, 32> values;
    for (std::size_t i = 0; i < undefinedFrom; ++i) {
        const Node& node = nodes[i];
        if (node.isLiteral()) {
            values.push_back(node.value);
        } else if (node.isError()) {
            throw Error(failures[node.error].error);
        } else {
            const std::size_t first = values.size() - node.argumentCount;
            const double result = (*node.evaluator)(
                std::span<const double>(values.data() + first, node.argumentCount));
            values.shrink(first);
            values.push_back(result);
        }
    }
    if (undefined != nullptr)
        throw Error::undefinedSymbol(symbolOf(*undefined));
    return values.back();
}

bool operator==(const Subexpression& a, const Subexpression& b)
{
    if (a.nodes.size() != b.nodes.size())
        return false;
    for (std::size_t i = 0; i < a.nodes.size(); ++i) {
        const Node& one = a.nodes[i];
        const Node& other = b.nodes[i];
        if (one.kind != other.kind || one.argumentCount != other.argumentCount)
            return false;
        switch (one.kind) {
        case Node::Kind::literal:
            if (one.value != other.value)
                return false;
            break;
        case Node::Kind::symbol:
            if (a.symbolOf(one) != b.symbolOf(other))
                return false;
            break;
        case Node::Kind::error:
            if (a.failures[one.error].error != b.failures[other.error].error ||
                a.failures[one.error].text != b.failures[other.error].text)
                return false;
            break;
        }
    }
    return true;
}

Symbol Subexpression::symbolOf(const Node& node) const
{
    return Symbol::make(node.symbolCase, std::string(nameOf(node)), node.arity());
}

NameNumber Subexpression::numberOf(std::string_view name)
{
    const NameNumber known = NameTable::find(name);
    if (known != NameTable::size)
        return known;
    names.emplace_back(name);
    return NameTable::size + static_cast<NameNumber>(names.size() - 1);
}

const SymbolEvaluator* Subexpression::adopt(SymbolEvaluator evaluator)
{
    evaluators.push_back(std::make_shared<const SymbolEvaluator>(std::move(evaluator)));
    return evaluators.back().get();
}

void Subexpression::append(const Subexpression& other)
{
    const auto nameShift = static_cast<NameNumber>(names.size());
    const auto failureShift = static_cast<std::uint32_t>(failures.size());
    for (Node node : other.nodes) {
        if (node.isError())
            node.error += failureShift;
        else if (node.kind == Kind::symbol && node.name >= NameTable::size)
            node.name += nameShift;
        nodes.push_back(node);
    }
    names.insert(names.end(), other.names.begin(), other.names.end());
    failures.insert(failures.end(), other.failures.begin(), other.failures.end());
    evaluators.insert(evaluators.end(), other.evaluators.begin(), other.evaluators.end());
}

} // namespace vellumry::expression
