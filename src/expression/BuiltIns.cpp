#include "expression/BuiltIns.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <string>
#include <utility>

namespace vellumry::expression {

namespace {

using Values = std::span<const double>;
using Plain = double (*)(Values);

// A function without captures needs no memory of its own as a SymbolEvaluator.

template <double (*Function)(double)>
double unary(Values values)
{
    return Function(values[0]);
}

template <double (*Function)(double, double)>
double binary(Values values)
{
    return Function(values[0], values[1]);
}

template <typename Operation>
double binary(Values values)
{
    return static_cast<double>(Operation()(values[0], values[1]));
}

double choice(Values values)
{
    if (values.size() == 2)
        return values[0] != 0 ? values[0] : values[1];
    return values[0] != 0 ? values[1] : values[2];
}

std::vector<BuiltIn> mathBuiltIns()
{
    std::vector<BuiltIn> all;
    const auto add = [&all](Symbol symbol, Plain evaluator) {
        all.push_back({BuiltIn::Table::math, std::move(symbol), evaluator});
    };
    add(Symbol::variable("pi"), [](Values) { return std::numbers::pi; });
    add(Symbol::infix("+"), binary<std::plus<>>);
    add(Symbol::infix("-"), binary<std::minus<>>);
    add(Symbol::infix("*"), binary<std::multiplies<>>);
    add(Symbol::infix("/"), binary<std::divides<>>);
    add(Symbol::infix("%"), binary<std::fmod>);
    add(Symbol::prefix("-"), [](Values values) { return -values[0]; });
    const std::pair<const char*, Plain> unaries[] = {
        {"sqrt", unary<std::sqrt>},   {"floor", unary<std::floor>}, {"ceil", unary<std::ceil>},
        {"round", unary<std::round>}, {"cos", unary<std::cos>},     {"acos", unary<std::acos>},
        {"sin", unary<std::sin>},     {"asin", unary<std::asin>},   {"tan", unary<std::tan>},
        {"atan", unary<std::atan>},   {"abs", unary<std::fabs>},    {"log", unary<std::log>}};
    for (const auto& [name, evaluator] : unaries)
        add(Symbol::function(name, 1), evaluator);
    add(Symbol::function("pow", 2), binary<std::pow>);
    add(Symbol::function("atan2", 2), binary<std::atan2>);
    add(Symbol::function("mod", 2), binary<std::fmod>);
    add(Symbol::function("max", Arity::atLeast(2)),
        [](Values values) { return *std::max_element(values.begin(), values.end()); });
    add(Symbol::function("min", Arity::atLeast(2)),
        [](Values values) { return *std::min_element(values.begin(), values.end()); });
    return all;
}

std::vector<BuiltIn> boolBuiltIns()
{
    std::vector<BuiltIn> all;
    const auto add = [&all](Symbol symbol, Plain evaluator) {
        all.push_back({BuiltIn::Table::boolean, std::move(symbol), evaluator});
    };
    add(Symbol::variable("true"), [](Values) { return 1.0; });
    add(Symbol::variable("false"), [](Values) { return 0.0; });
    add(Symbol::infix("=="), binary<std::equal_to<>>);
    add(Symbol::infix("!="), binary<std::not_equal_to<>>);
    add(Symbol::infix(">"), binary<std::greater<>>);
    add(Symbol::infix(">="), binary<std::greater_equal<>>);
    add(Symbol::infix("<"), binary<std::less<>>);
    add(Symbol::infix("<="), binary<std::less_equal<>>);
    add(Symbol::infix("&&"), binary<std::logical_and<>>);
    add(Symbol::infix("||"), binary<std::logical_or<>>);
    add(Symbol::prefix("!"), [](Values values) { return values[0] == 0 ? 1.0 : 0.0; });
    add(Symbol::infix("?:"), choice);
    return all;
}

SymbolTable tableOf(const std::vector<BuiltIn>& builtIns)
{
    SymbolTable table;
    for (const BuiltIn& each : builtIns)
        table.emplace(each.symbol, each.evaluator);
    return table;
}

} // namespace

const BuiltIns& BuiltIns::shared()
{
    static const BuiltIns builtIns;
    return builtIns;
}

BuiltIns::BuiltIns() : all(mathBuiltIns()), math(tableOf(all))
{
    const std::vector<BuiltIn> more = boolBuiltIns();
    boolean = tableOf(more);
    all.insert(all.end(), more.begin(), more.end());
    const auto number = [](const BuiltIn& each) { return NameTable::find(each.symbol.name()); };
    std::stable_sort(all.begin(), all.end(), [number](const BuiltIn& a, const BuiltIn& b) {
        return number(a) < number(b);
    });
    for (std::size_t i = 0; i < all.size();) {
        std::size_t end = i + 1;
        while (end < all.size() && number(all[end]) == number(all[i]))
            ++end;
        byName[number(all[i])] = std::span(all).subspan(i, end - i);
        i = end;
    }
}

} // namespace vellumry::expression
