#pragma once

#include "expression/Error.h"
#include "expression/SymbolEvaluator.h"

#include <string>

namespace vellumry::test {

/// Gives always the same value.
inline expression::SymbolEvaluator constant(double value)
{
    return [value](auto) { return value; };
}

/// Throws a message.
inline expression::SymbolEvaluator failing(const std::string& text)
{
    return [text](auto) -> double { throw expression::Error::message(text); };
}

} // namespace vellumry::test
