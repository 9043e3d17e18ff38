#pragma once

#include "expression/Subexpression.h"

namespace vellumry::test {

/// Whether the printed text of a parsed tree must be read as the same tree. Some trees have no such
/// text, since a postfix operator binds as loosely as a sum to what stands before it, and since
/// numbers beyond all doubles print as words.
[[nodiscard]] bool readsBack(const expression::Subexpression& tree);

} // namespace vellumry::test
