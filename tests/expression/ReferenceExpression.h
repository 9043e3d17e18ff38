#pragma once

#include "expression/Subexpression.h"

#include <string>

namespace vellumry::test {

/// What a slow and plain reading of the grammar makes of a text of ASCII characters: the rules one
/// by one, with recursion, a list that is cut up in place, and a new beginning from the left after
/// each step. It shares no code with the library.
struct Reference {
    std::string tree;  ///< as `dump` tells it; empty when the text is no expression
    std::string error; ///< the description of the failure, of the text or of its evaluation
    double value = 0;  ///< when nothing failed, with the mathematical symbols alone
};

[[nodiscard]] Reference readPlainly(const std::string& text);

/// A tree with all that it holds: "(infix + 1 (prefix - 2))".
[[nodiscard]] std::string dump(const expression::Subexpression& tree);

} // namespace vellumry::test
