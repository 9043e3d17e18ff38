#pragma once

#include "expression/Symbol.h"

#include <functional>
#include <span>
#include <unordered_map>

namespace vellumry::expression {

/// Gives a symbol its value: from the values of the arguments to the result. It may throw, and is
/// called from whichever thread evaluates.
using SymbolEvaluator = std::function<double(std::span<const double>)>;

/// What a set of symbols stands for. An empty evaluator counts as no entry.
using SymbolTable = std::unordered_map<Symbol, SymbolEvaluator>;

} // namespace vellumry::expression
