#pragma once

namespace vellumry::expression {

/// How an Expression is built: a set of flags. The empty set is the default.
struct Options {
    int rawValue = 0;

    /// No folding: every symbol is evaluated anew each time.
    static const Options noOptimize;
    /// Makes the table Expression::boolSymbols available.
    static const Options boolSymbols;
    /// The caller's symbols, other than variables and arrays, may be folded.
    static const Options pureSymbols;

    [[nodiscard]] constexpr bool contains(Options flags) const
    {
        return (rawValue & flags.rawValue) == flags.rawValue;
    }

    friend constexpr Options operator|(Options a, Options b) { return {a.rawValue | b.rawValue}; }
    friend constexpr bool operator==(const Options&, const Options&) = default;
};

// 1 stands for nothing.
inline constexpr Options Options::noOptimize{2};
inline constexpr Options Options::boolSymbols{4};
inline constexpr Options Options::pureSymbols{8};

} // namespace vellumry::expression
