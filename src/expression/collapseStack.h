#pragma once

#include "expression/TreeBuilder.h"

namespace vellumry::expression {

/// The operands and bare operators that the parser has read, those of all open brackets behind each
/// other.
using NodeStack = SmallVector<TreeBuilder::Index, 24>;

/// Puts the operands and operators from `base` on together, as precedence has it. What is left
/// there begins with the result; operators may be left behind it.
/// Throws Error, also that of an error node which it comes upon.
///
/// Each operator is decided on by what stands near it. After a change the rules want to begin again
/// from the left, but as a decision looks at no more than five elements, all those that lie further
/// back would come out as before: it is enough to go back to the first one that could differ.
void collapseStack(TreeBuilder& tree, NodeStack& stack, std::size_t base);

} // namespace vellumry::expression
