#pragma once

#include "expression/Arity.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vellumry::expression {

/// A name for something that an expression refers to.
///
/// Two symbols are equal when case and name agree and, for functions, the arities are equal in the
/// sense of Arity. The hash leaves the arity out for that reason.
class Symbol {
public:
    enum class Case : std::uint8_t { variable, infix, prefix, postfix, function, array };

    [[nodiscard]] static Symbol variable(std::string name);
    [[nodiscard]] static Symbol infix(std::string name);
    [[nodiscard]] static Symbol prefix(std::string name);
    [[nodiscard]] static Symbol postfix(std::string name);
    [[nodiscard]] static Symbol function(std::string name, Arity arity);
    [[nodiscard]] static Symbol array(std::string name);
    /// Any case; the arity counts for functions alone.
    [[nodiscard]] static Symbol make(Case kind, std::string name, Arity arity = 0);

    [[nodiscard]] Case kind() const { return which; }
    [[nodiscard]] const std::string& name() const { return text; }
    /// How many arguments a use of the symbol must have: a function's own arity, 2 for most infix
    /// operators.
    [[nodiscard]] Arity arity() const;

    /// "function max()", "infix operator +".
    [[nodiscard]] std::string description() const;

    friend bool operator==(const Symbol& a, const Symbol& b)
    {
        return a.which == b.which && a.text == b.text &&
               (a.which != Case::function || a.declared == b.declared);
    }

private:
    Symbol(Case kind, std::string name, Arity arity);

    std::string text;
    Arity declared;
    Case which;
};

} // namespace vellumry::expression

template <>
struct std::hash<vellumry::expression::Symbol> {
    std::size_t operator()(const vellumry::expression::Symbol& symbol) const noexcept
    {
        constexpr std::size_t spread = 0x9E3779B97F4A7C15U;
        return std::hash<std::string>()(symbol.name()) ^
               (static_cast<std::size_t>(symbol.kind()) * spread);
    }
};
