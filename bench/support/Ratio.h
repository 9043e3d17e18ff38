#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vellumry::bench {

/// One of several ways that are measured against each other.
struct Variant {
    std::function<void()> run;    ///< what is timed
    std::function<void()> before; ///< what makes ready for one run, untimed; may be empty
};

/// The median times of the variants, in seconds. They run in turns, and each turn begins with
/// another one, so that whatever slows the machine down slows all of them. Short ones without
/// `before` run several times a turn.
[[nodiscard]] std::vector<double> medianTimes(const std::vector<Variant>& variants,
                                              int repetitions = 9);

/// The middle one of the values, of which there is at least one.
[[nodiscard]] double median(std::vector<double> values);

/// Keeps the compiler from leaving out the computation of a value.
template <typename T>
void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

/// Something measured, and what it is measured against.
struct Ratio {
    std::string what;
    int count; ///< of the snippets in the library
    double value;
    std::string limit; ///< what `limitValue` is
    double limitValue;
    std::optional<double> goal; ///< the largest ratio aimed at; shown with whether it is met
};

/// Prints a row such as "search, 1 keyword, 1 % hits, N=100000: 1.90 ms, 1.5x of the sum (goal
/// 2.0x) ok", with values in seconds.
void printTimes(const Ratio& ratio);

/// The same with values in bytes.
void printBytes(const Ratio& ratio);

} // namespace vellumry::bench
