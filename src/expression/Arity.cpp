#include "expression/Arity.h"

namespace vellumry::expression {

std::string Arity::description() const
{
    std::string text = which == Case::atLeast ? "at least " : "";
    text += std::to_string(number);
    text += number == 1 ? " argument" : " arguments";
    return text;
}

} // namespace vellumry::expression
