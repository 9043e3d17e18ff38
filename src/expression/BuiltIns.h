#pragma once

#include "expression/NameTable.h"
#include "expression/SymbolEvaluator.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace vellumry::expression {

/// A symbol that needs no table of the caller's.
struct BuiltIn {
    enum class Table : std::uint8_t { math, boolean };

    Table table;
    Symbol symbol;
    SymbolEvaluator evaluator;
};

/// All built-in symbols. Built on first use, and constant from then on.
class BuiltIns {
public:
    [[nodiscard]] static const BuiltIns& shared();

    /// Those of one name: at most two.
    [[nodiscard]] std::span<const BuiltIn> named(NameNumber name) const
    {
        return name < NameTable::size ? byName[name] : std::span<const BuiltIn>();
    }

    [[nodiscard]] const SymbolTable& mathSymbols() const { return math; }
    [[nodiscard]] const SymbolTable& boolSymbols() const { return boolean; }

private:
    BuiltIns();

    std::vector<BuiltIn> all; ///< in the order of the names' numbers
    std::array<std::span<const BuiltIn>, NameTable::size> byName;
    SymbolTable math;
    SymbolTable boolean;
};

} // namespace vellumry::expression
