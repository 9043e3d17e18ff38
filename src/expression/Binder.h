#pragma once

#include "expression/BuiltIns.h"
#include "expression/Options.h"
#include "expression/Subexpression.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace vellumry::expression {

/// Values of variables, and of the elements of arrays, by name.
using Constants = std::unordered_map<std::string, double>;
using Arrays = std::unordered_map<std::string, std::vector<double>>;

/// Gives each symbol of a tree its evaluator, and puts values in the place of what can be computed
/// at once. For one use.
class Binder {
public:
    Binder(Subexpression& expression, Options flags, const Constants& constantTable,
           const Arrays& arrayTable, const SymbolTable& symbolTable)
        : tree(expression), options(flags), constants(constantTable), arrays(arrayTable),
          symbols(symbolTable)
    {
    }

    /// Changes the tree in place.
    void bind();

private:
    /// An evaluator that a symbol can have.
    struct Binding {
        const SymbolEvaluator* evaluator;
        bool alwaysThrows = false; ///< known beforehand, so that nothing is tried
    };

    [[nodiscard]] std::optional<Binding> impure(const Node& node);
    [[nodiscard]] Binding pure(const Node& node);
    [[nodiscard]] std::optional<Binding> entryOf(const Node& node);
    [[nodiscard]] std::optional<Binding> symbolEvaluator(const Node& node);
    [[nodiscard]] std::optional<Binding> fromBuiltIns(const Node& node, BuiltIn::Table table);
    [[nodiscard]] Binding throwing(Error error);
    [[nodiscard]] Error failureOf(const Node& node) const;
    [[nodiscard]] Binding indexing(const Node& node, const std::vector<double>& elements);
    [[nodiscard]] const std::vector<double>* arrayOf(const Node& node) const;
    [[nodiscard]] const double* constantOf(const Node& node) const;
    [[nodiscard]] const SymbolEvaluator* find(const Symbol& symbol) const;

    [[nodiscard]] std::optional<double> folded(const Node& node, const Binding& binding) const;

    Subexpression& tree;
    const Options options;
    const Constants& constants;
    const Arrays& arrays;
    const SymbolTable& symbols;
    const BuiltIns& builtIns = BuiltIns::shared();
    std::size_t bound = 0; ///< the nodes at the beginning of the tree that are done
    std::unordered_map<const std::vector<double>*, std::shared_ptr<const std::vector<double>>>
        copies; ///< of the arrays that the tree uses
};

} // namespace vellumry::expression
