#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vellumry::expression {

/// The number of arguments that a function takes.
///
/// Equality is not structural: `exactly(3)` equals `atLeast(2)`, as a call with three arguments
/// must find a function declared with at least two. So it is not transitive either.
class Arity {
public:
    enum class Case : std::uint8_t { exactly, atLeast };

    /// A plain number stands for `exactly`.
    constexpr Arity(int count) : number(count) {} // NOLINT: converts on purpose

    [[nodiscard]] static constexpr Arity exactly(int count) { return {Case::exactly, count}; }
    [[nodiscard]] static constexpr Arity atLeast(int count) { return {Case::atLeast, count}; }
    static const Arity any;

    [[nodiscard]] constexpr Case kind() const { return which; }
    [[nodiscard]] constexpr int count() const { return number; }

    /// "1 argument", "at least 2 arguments".
    [[nodiscard]] std::string description() const;

    friend constexpr bool operator==(const Arity& a, const Arity& b)
    {
        if (a.which == b.which)
            return a.number == b.number;
        return a.which == Case::exactly ? a.number >= b.number : b.number >= a.number;
    }

private:
    constexpr Arity(Case kind, int count) : number(count), which(kind) {}

    int number;
    Case which = Case::exactly;
};

inline constexpr Arity Arity::any = Arity::atLeast(0);

} // namespace vellumry::expression

/// The same for all: arities of different payloads may be equal.
template <>
struct std::hash<vellumry::expression::Arity> {
    std::size_t operator()(const vellumry::expression::Arity&) const noexcept { return 0; }
};
