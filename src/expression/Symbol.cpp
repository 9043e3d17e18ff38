#include "expression/Symbol.h"

#include <utility>

namespace vellumry::expression {

Symbol::Symbol(Case kind, std::string name, Arity arity)
    : text(std::move(name)), declared(arity), which(kind)
{
}

Symbol Symbol::variable(std::string name)
{
    return {Case::variable, std::move(name), 0};
}

Symbol Symbol::infix(std::string name)
{
    return {Case::infix, std::move(name), 0};
}

Symbol Symbol::prefix(std::string name)
{
    return {Case::prefix, std::move(name), 0};
}

Symbol Symbol::postfix(std::string name)
{
    return {Case::postfix, std::move(name), 0};
}

Symbol Symbol::function(std::string name, Arity arity)
{
    return {Case::function, std::move(name), arity};
}

Symbol Symbol::array(std::string name)
{
    return {Case::array, std::move(name), 0};
}

Symbol Symbol::make(Case kind, std::string name, Arity arity)
{
    return {kind, std::move(name), arity};
}

Arity Symbol::arity() const
{
    switch (which) {
    case Case::variable:
        return 0;
    case Case::infix:
        if (text == "()")
            return Arity::atLeast(1);
        if (text == "[]")
            return 1;
        return text == "?:" ? 3 : 2;
    case Case::prefix:
    case Case::postfix:
    case Case::array:
        return 1;
    case Case::function:
        break;
    }
    return declared;
}

std::string Symbol::description() const
{
    switch (which) {
    case Case::variable:
        return "variable " + text;
    case Case::infix:
        if (text == "?:")
            return "ternary operator " + text;
        if (text == "[]")
            return "subscript operator " + text;
        if (text == "()")
            return "function call operator " + text;
        return "infix operator " + text;
    case Case::prefix:
        return "prefix operator " + text;
    case Case::postfix:
        return "postfix operator " + text;
    case Case::function:
        return "function " + text + "()";
    case Case::array:
        break;
    }
    return "array " + text + "[]";
}

} // namespace vellumry::expression
