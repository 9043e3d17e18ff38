#pragma once

#include "expression/Arity.h"
#include "expression/NameTable.h"
#include "expression/Symbol.h"
#include "expression/SymbolEvaluator.h"

#include <cstdint>

namespace vellumry::expression {

/// One node of a Subexpression, as that class stores it: a plain value.
struct Node {
    enum class Kind : std::uint8_t { literal, symbol, error };

    Kind kind;
    Symbol::Case symbolCase;
    Arity::Case arityCase;
    int arityCount;
    std::uint32_t argumentCount;
    std::uint32_t size; ///< of the nodes of its subtree, itself included
    union {
        NameNumber name;     ///< of a symbol
        std::uint32_t error; ///< where the failure is in the list of its tree
    };
    union {
        double value;                     ///< of a literal
        const SymbolEvaluator* evaluator; ///< of a symbol; null when it has none
    };

    Node() = default; // uninitialised
    [[nodiscard]] static constexpr Node makeLiteral(double value)
    {
        return {Kind::literal, Symbol::Case::variable, 0, value};
    }
    [[nodiscard]] static constexpr Node makeSymbol(Symbol::Case symbolCase, NameNumber name)
    {
        return {Kind::symbol, symbolCase, name, nullptr};
    }
    [[nodiscard]] static constexpr Node makeError(std::uint32_t error)
    {
        return {Kind::error, Symbol::Case::variable, error, nullptr};
    }

    [[nodiscard]] bool isLiteral() const { return kind == Kind::literal; }
    [[nodiscard]] bool isError() const { return kind == Kind::error; }
    [[nodiscard]] bool isSymbol(Symbol::Case wanted) const
    {
        return kind == Kind::symbol && symbolCase == wanted;
    }
    /// Infix, prefix or postfix, with arguments or without.
    [[nodiscard]] bool isOperator() const
    {
        return isSymbol(Symbol::Case::infix) || isSymbol(Symbol::Case::prefix) ||
               isSymbol(Symbol::Case::postfix);
    }
    [[nodiscard]] bool isBareOperator() const { return isOperator() && argumentCount == 0; }
    [[nodiscard]] bool isBare(Symbol::Case wanted) const
    {
        return isSymbol(wanted) && argumentCount == 0;
    }
    /// An infix operator with its operands.
    [[nodiscard]] bool isInfixNode() const
    {
        return isSymbol(Symbol::Case::infix) && argumentCount > 0;
    }

    [[nodiscard]] Arity arity() const
    {
        return arityCase == Arity::Case::exactly ? Arity::exactly(arityCount)
                                                 : Arity::atLeast(arityCount);
    }
    void setArity(Arity arity)
    {
        arityCase = arity.kind();
        arityCount = arity.count();
    }

private:
    constexpr Node(Kind ofKind, Symbol::Case ofCase, NameNumber number, double literal)
        : kind(ofKind), symbolCase(ofCase), arityCase(Arity::Case::exactly), arityCount(0),
          argumentCount(0), size(1), name(number), value(literal)
    {
    }
    constexpr Node(Kind ofKind, Symbol::Case ofCase, NameNumber number,
                   const SymbolEvaluator* bound)
        : kind(ofKind), symbolCase(ofCase), arityCase(Arity::Case::exactly), arityCount(0),
          argumentCount(0), size(1), name(number), evaluator(bound)
    {
    }
};

} // namespace vellumry::expression
