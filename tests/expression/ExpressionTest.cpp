#include "expression/Expression.h"

#include "expression/evaluators.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellumry::expression {

namespace {

using test::constant;
using test::failing;

std::string outcome(const Expression& expression)
{
    try {
        const double value = expression.evaluate();
        return Subexpression::literal(value).description();
    } catch (const Error& error) {
        return error.description();
    }
}

std::string outcome(std::string_view text, Options options = {})
{
    return outcome(Expression(text, options));
}

bool isLiteral(const Expression& expression)
{
    return expression.tree().kind() == Subexpression::Kind::literal;
}

TEST(ExpressionTest, optionsAreFlags)
{
    EXPECT_EQ(Options::noOptimize.rawValue, 2);
    EXPECT_EQ(Options::boolSymbols.rawValue, 4);
    EXPECT_EQ(Options::pureSymbols.rawValue, 8);
    EXPECT_EQ(Options{}.rawValue, 0);
    const Options both = Options::boolSymbols | Options::pureSymbols;
    EXPECT_EQ(both.rawValue, 12);
    EXPECT_TRUE(both.contains(Options::boolSymbols));
    EXPECT_FALSE(both.contains(Options::noOptimize));
}

TEST(ExpressionTest, evaluates)
{
    EXPECT_EQ(outcome("2 + 3 * 4"), "14");
    EXPECT_EQ(outcome("max(1, 2, 3) % 2"), "1");
    EXPECT_EQ(outcome("2 -3"), "-1");
    EXPECT_EQ(outcome("2- 3"), "-1");
    EXPECT_EQ(outcome("2+-3"), "-1");
    EXPECT_EQ(outcome("2*-3"), "-6");
    EXPECT_EQ(outcome("10 % -3"), "1");
    EXPECT_EQ(outcome("2 * -"), "2");
}

TEST(ExpressionTest, aSyntaxErrorComesAtEvaluate)
{
    EXPECT_EQ(outcome(""), "Empty expression");
    EXPECT_EQ(outcome("1 2"), "Unexpected token `2`");
    EXPECT_EQ(outcome("(1"), "Missing `)`");
    EXPECT_EQ(outcome("0x"), "Unexpected token `0x`");
    EXPECT_EQ(Expression("(1").description(), "(1");
}

TEST(ExpressionTest, undefinedOperators)
{
    EXPECT_EQ(outcome("2 x"), "Undefined postfix operator x");
    EXPECT_EQ(outcome("5- -3"), "Undefined postfix operator -");
    EXPECT_EQ(outcome("2--3"), "Undefined infix operator --");
    EXPECT_EQ(outcome("2*+3"), "Undefined infix operator *+");
    EXPECT_EQ(outcome("10%-3"), "Undefined postfix operator %");
    EXPECT_EQ(outcome("2^-3"), "Undefined postfix operator ^");
    EXPECT_EQ(outcome("2^3"), "Undefined infix operator ^");
    EXPECT_EQ(outcome("+3"), "Undefined prefix operator +");
    EXPECT_EQ(outcome("5."), "Undefined postfix operator .");
    EXPECT_EQ(outcome("2(3)"), "Undefined function call operator ()");
    EXPECT_EQ(outcome("2[3]"), "Undefined subscript operator []");
    EXPECT_EQ(outcome("1 ? 2 : 3"), "Undefined ternary operator ?:");
    EXPECT_EQ(outcome("1, -2"), "Undefined postfix operator ,");
}

TEST(ExpressionTest, undefinedNames)
{
    EXPECT_EQ(outcome("x"), "Undefined variable x");
    EXPECT_EQ(outcome("e"), "Undefined variable e");
    EXPECT_EQ(outcome("x'"), "Undefined variable x'");
    EXPECT_EQ(outcome("a[1]"), "Undefined array a[]");
    EXPECT_EQ(outcome("foo(1)"), "Undefined function foo()");
    EXPECT_EQ(outcome("exp(1)"), "Undefined function exp()");
    EXPECT_EQ(outcome("pi()"), "Undefined function pi()");
    EXPECT_EQ(outcome("sqrt"), "Undefined variable sqrt");
}

TEST(ExpressionTest, wrongNumbersOfArguments)
{
    EXPECT_EQ(outcome("sqrt(4, 9)"), "Function sqrt() expects 1 argument");
    EXPECT_EQ(outcome("sqrt()"), "Function sqrt() expects 1 argument");
    EXPECT_EQ(outcome("pow(2)"), "Function pow() expects 2 arguments");
    EXPECT_EQ(outcome("max(1)"), "Function max() expects at least 2 arguments");
    EXPECT_EQ(outcome("min()"), "Function min() expects at least 2 arguments");
}

TEST(ExpressionTest, arrayLiteralsAndCommasReportAsSyntaxErrors)
{
    EXPECT_EQ(outcome("1,2"), "Unexpected token `,`");
    EXPECT_EQ(outcome("[1,2]"), "Unexpected token `[`");
    EXPECT_EQ(outcome("[]"), "Unexpected token `[`");
}

TEST(ExpressionTest, anArgumentsErrorComesBeforeTheOperators)
{
    EXPECT_EQ(outcome("-x"), "Undefined variable x");
    EXPECT_EQ(outcome("x ^ y"), "Undefined variable x");
    EXPECT_EQ(outcome("1 ^ y"), "Undefined variable y");
    EXPECT_EQ(outcome("sqrt(x, y)"), "Undefined variable x");
    EXPECT_EQ(outcome("foo(x)"), "Undefined variable x");
    EXPECT_EQ(outcome("[x]"), "Undefined variable x");
    EXPECT_EQ(outcome("(2 ^ 3) + x"), "Undefined infix operator ^");
}

TEST(ExpressionTest, theMathSymbols)
{
    const std::vector<std::pair<const char*, double>> cases{{"pi", std::numbers::pi},
                                                            {"1 + 2", 3},
                                                            {"1 - 2", -1},
                                                            {"3 * 2", 6},
                                                            {"3 / 2", 1.5},
                                                            {"7 % 3", 1},
                                                            {"-7 % 3", -1},
                                                            {"5.5 % 2", 1.5},
                                                            {"-3", -3},
                                                            {"sqrt(16)", 4},
                                                            {"floor(-1.5)", -2},
                                                            {"ceil(-1.5)", -1},
                                                            {"round(2.5)", 3},
                                                            {"round(-2.5)", -3},
                                                            {"cos(1)", std::cos(1.0)},
                                                            {"acos(0.5)", std::acos(0.5)},
                                                            {"sin(1)", std::sin(1.0)},
                                                            {"asin(0.5)", std::asin(0.5)},
                                                            {"tan(1)", std::tan(1.0)},
                                                            {"atan(1)", std::atan(1.0)},
                                                            {"abs(-2.5)", 2.5},
                                                            {"log(10)", std::log(10.0)},
                                                            {"pow(2, 10)", 1024},
                                                            {"atan2(1, 2)", std::atan2(1.0, 2.0)},
                                                            {"mod(7, 3)", 1},
                                                            {"max(1, 2)", 2},
                                                            {"max(1, 3, 2)", 3},
                                                            {"min(1, 2)", 1},
                                                            {"min(3, 1, 2)", 1}};
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Expression(text).evaluate(), value) << text;
    EXPECT_EQ(Expression::mathSymbols().size(), 24U);
    EXPECT_FALSE(Expression::mathSymbols().contains(Symbol::prefix("+")));
    EXPECT_FALSE(Expression::mathSymbols().contains(Symbol::function("exp", 1)));
    EXPECT_FALSE(Expression::mathSymbols().contains(Symbol::variable("e")));
    EXPECT_TRUE(Expression::mathSymbols().contains(Symbol::function("max", 7)));
}

TEST(ExpressionTest, theBoolSymbols)
{
    const std::vector<std::pair<const char*, double>> cases{
        {"true", 1},      {"false", 0},     {"1 == 1", 1},    {"1 == 2", 0},    {"1 != 1", 0},
        {"1 != 2", 1},    {"2 > 1", 1},     {"1 > 1", 0},     {"1 >= 1", 1},    {"0 >= 1", 0},
        {"1 < 2", 1},     {"1 < 1", 0},     {"1 <= 1", 1},    {"2 <= 1", 0},    {"2 && 3", 1},
        {"2 && 0", 0},    {"0 && 2", 0},    {"0 || 2", 1},    {"2 || 0", 1},    {"0 || 0", 0},
        {"!0", 1},        {"!2", 0},        {"1 ? 2 : 3", 2}, {"0 ? 2 : 3", 3}, {"5 ?: 6", 5},
        {"0 ?: 6", 6},    {"1 > 2 > 0", 0}, // (1 > 2) > 0 is 0 too,
        {"0 < 5 < 3", 0},                   // but (0 < 5) < 3 would be 1
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Expression(text, Options::boolSymbols).evaluate(), value) << text;
    EXPECT_EQ(Expression::boolSymbols().size(), 12U);
}

TEST(ExpressionTest, boolSymbolsMustBeAskedFor)
{
    EXPECT_EQ(outcome("1 == 1"), "Undefined infix operator ==");
    EXPECT_EQ(outcome("1 == 1", Options::boolSymbols), "1");
    EXPECT_EQ(outcome("true"), "Undefined variable true");
    EXPECT_EQ(outcome("!1"), "Undefined prefix operator !");
}

TEST(ExpressionTest, infiniteValuesAreNoFailure)
{
    EXPECT_EQ(Expression("1/0").evaluate(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Expression("-1/0").evaluate(), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(Expression("0/0").evaluate()));
    EXPECT_TRUE(std::isnan(Expression("sqrt(-1)").evaluate()));
}

TEST(ExpressionTest, nothingShortCircuits)
{
    EXPECT_EQ(outcome("0 && x", Options::boolSymbols), "Undefined variable x");
    EXPECT_EQ(outcome("1 || x", Options::boolSymbols), "Undefined variable x");
    EXPECT_EQ(outcome("1 ? 2 : x", Options::boolSymbols), "Undefined variable x");
    EXPECT_EQ(outcome("0 ? x : 2", Options::boolSymbols), "Undefined variable x");
}

TEST(FoldingTest, whatDependsOnNothingIsOneLiteral)
{
    EXPECT_TRUE(isLiteral(Expression("pi")));
    EXPECT_TRUE(isLiteral(Expression("2*pi+1")));
    EXPECT_EQ(Expression("2*3 + x*(4+5)").description(), "6 + x * 9");
    EXPECT_EQ(Expression("max(1+1, x, -2)").description(), "max(2, x, -2)");
}

TEST(FoldingTest, aBadCallStaysANodeThatThrows)
{
    const Expression bad("1 + sqrt(2*2, 9)");
    EXPECT_EQ(bad.description(), "1 + sqrt(4, 9)");
    EXPECT_EQ(outcome(bad), "Function sqrt() expects 1 argument");
    EXPECT_EQ(outcome(bad), "Function sqrt() expects 1 argument");
}

TEST(FoldingTest, anErrorIsDroppedAndComesAgainAtEvaluate)
{
    int calls = 0;
    const SymbolTable symbols{{Symbol::function("f", 1), [&calls](auto) -> double {
                                   ++calls;
                                   throw Error::message("call " + std::to_string(calls));
                               }}};
    const Expression expression("f(1)", Options::pureSymbols, {}, {}, symbols);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(expression.tree().kind(), Subexpression::Kind::symbol);
    EXPECT_EQ(outcome(expression), "call 2");
}

TEST(FoldingTest, noOptimizeKeepsEverySymbol)
{
    const Expression expression("2*pi+c", Options::noOptimize, {{"c", 1}});
    EXPECT_EQ(expression.description(), "2 * pi + c");
    EXPECT_EQ(expression.evaluate(), 2 * std::numbers::pi + 1);
    EXPECT_EQ(outcome("sqrt(1, 2)", Options::noOptimize), "Function sqrt() expects 1 argument");
}

TEST(FoldingTest, variablesAndArraysOfSymbolsNeverFold)
{
    double value = 1;
    const SymbolTable symbols{
        {Symbol::variable("e"), [&value](auto) { return value; }},
        {Symbol::array("a"), [&value](auto index) { return value + index[0]; }}};
    for (const Options options : {Options{}, Options::pureSymbols}) {
        value = 1;
        const Expression variable("e * 2", options, {}, {}, symbols);
        const Expression array("a[1 + 1]", options, {}, {}, symbols);
        EXPECT_EQ(variable.description(), "e * 2");
        EXPECT_EQ(array.description(), "a[2]");
        EXPECT_EQ(variable.evaluate(), 2);
        EXPECT_EQ(array.evaluate(), 3);
        value = 5;
        EXPECT_EQ(variable.evaluate(), 10);
        EXPECT_EQ(array.evaluate(), 7);
    }
}

TEST(FoldingTest, otherSymbolsFoldOnlyWhenTheyArePure)
{
    const SymbolTable symbols{{Symbol::function("f", 1), constant(7)},
                              {Symbol::infix("+"), constant(8)},
                              {Symbol::postfix("!"), constant(9)}};
    for (const char* text : {"f(1)", "1 + 2", "1!"}) {
        EXPECT_FALSE(isLiteral(Expression(text, {}, {}, {}, symbols))) << text;
        EXPECT_TRUE(isLiteral(Expression(text, Options::pureSymbols, {}, {}, symbols))) << text;
    }
    EXPECT_EQ(outcome(Expression("1 + 2", {}, {}, {}, symbols)), "8");
    EXPECT_EQ(outcome(Expression("f(1)", Options::pureSymbols, {}, {}, symbols)), "7");
}

TEST(TablesTest, constantsFold)
{
    EXPECT_TRUE(isLiteral(Expression("c + 1", {}, {{"c", 2}})));
    EXPECT_EQ(outcome(Expression("c + 1", {}, {{"c", 2}})), "3");
    EXPECT_EQ(outcome(Expression("pi", {}, {{"pi", 3}})), "3");
    EXPECT_EQ(outcome(Expression("'a b' + 1", {}, {{"'a b'", 2}})), "3");
    EXPECT_EQ(outcome(Expression("c(1)", {}, {{"c", 2}})), "Undefined function c()");
}

TEST(TablesTest, aConstantBeatsAVariableOfSymbols)
{
    const SymbolTable symbols{{Symbol::variable("x"), constant(5)}};
    EXPECT_EQ(outcome(Expression("x", {}, {{"x", 2}}, {}, symbols)), "2");
    EXPECT_EQ(outcome(Expression("x", Options::noOptimize, {{"x", 2}}, {}, symbols)), "2");
}

TEST(TablesTest, arraysFold)
{
    const Arrays arrays{{"a", {10, 20, 30}}};
    EXPECT_TRUE(isLiteral(Expression("a[1]", {}, {}, arrays)));
    EXPECT_EQ(outcome(Expression("a[1]", {}, {}, arrays)), "20");
    EXPECT_EQ(outcome(Expression("a[1.9]", {}, {}, arrays)), "20");
    EXPECT_EQ(outcome(Expression("a[0] + a[a[0] - 8]", {}, {}, arrays)), "40");
    const SymbolTable symbols{{Symbol::array("a"), constant(5)}};
    EXPECT_EQ(outcome(Expression("a[1]", {}, {}, arrays, symbols)), "20");
}

TEST(TablesTest, arrayBounds)
{
    const Arrays arrays{{"a", {10, 20, 30}}, {"empty", {}}};
    const auto indexed = [&arrays](const char* text) {
        return outcome(Expression(text, {}, {}, arrays));
    };
    EXPECT_EQ(indexed("a[3]"), "Index 3 out of bounds for array a[]");
    EXPECT_EQ(indexed("a[3.5]"), "Index 3.5 out of bounds for array a[]"); // before rounding
    EXPECT_EQ(indexed("a[-0.5]"), "Index -0.5 out of bounds for array a[]");
    EXPECT_EQ(indexed("a[-1]"), "Index -1 out of bounds for array a[]");
    EXPECT_EQ(indexed("a[1e300]"), "Index 1e+300 out of bounds for array a[]");
    EXPECT_EQ(indexed("a[0/0]"), "Index nan out of bounds for array a[]");
    EXPECT_EQ(indexed("a[1/0]"), "Index inf out of bounds for array a[]");
    EXPECT_EQ(indexed("empty[0]"), "Index 0 out of bounds for array empty[]");
}

TEST(TablesTest, tablesAreLookedAtDuringConstructionAlone)
{
    std::optional<Expression> expression;
    {
        const SymbolTable symbols{{Symbol::variable("x"), constant(5)},
                                  {Symbol::function("f", 1), constant(6)}};
        const Arrays arrays{{"a", {10, 20}}};
        expression.emplace("x + f(x) + a[x - 4]", Options{}, Constants{}, arrays, symbols);
    }
    EXPECT_EQ(expression->evaluate(), 31);
    const Expression copy = *expression;
    expression.reset();
    EXPECT_EQ(copy.evaluate(), 31);
}

TEST(TablesTest, symbolsBeatTheBuiltInOnes)
{
    const SymbolTable symbols{{Symbol::variable("pi"), constant(3)},
                              {Symbol::function("max", 2), constant(4)},
                              {Symbol::prefix("-"), constant(5)}};
    EXPECT_EQ(outcome(Expression("pi", {}, {}, {}, symbols)), "3");
    EXPECT_EQ(outcome(Expression("max(1, 2)", {}, {}, {}, symbols)), "4");
    EXPECT_EQ(outcome(Expression("max(1, 2, 3)", {}, {}, {}, symbols)), "3");
    EXPECT_EQ(outcome(Expression("-1", {}, {}, {}, symbols)), "5");
}

TEST(TablesTest, aCallFindsAFunctionOfAtLeast)
{
    const SymbolTable symbols{{Symbol::function("sum", Arity::atLeast(2)), [](auto values) {
                                   double sum = 0;
                                   for (const double value : values)
                                       sum += value;
                                   return sum;
                               }}};
    EXPECT_EQ(outcome(Expression("sum(1, 2, 3)", {}, {}, {}, symbols)), "6");
    EXPECT_EQ(outcome(Expression("sum(1)", {}, {}, {}, symbols)),
              "Function sum() expects at least 2 arguments");
}

TEST(TablesTest, aFunctionOfAnotherArityInSymbolsIsNamed)
{
    const SymbolTable symbols{{Symbol::function("f", 2), constant(1)},
                              {Symbol::function("sqrt", 3), constant(2)}};
    EXPECT_EQ(outcome(Expression("f(1)", {}, {}, {}, symbols)), "Function f() expects 2 arguments");
    // It beats the built-in table's error, but not its function.
    EXPECT_EQ(outcome(Expression("sqrt(1, 2)", {}, {}, {}, symbols)),
              "Function sqrt() expects 3 arguments");
    EXPECT_EQ(outcome(Expression("sqrt(4)", {}, {}, {}, symbols)), "2");
    EXPECT_EQ(outcome(Expression("f", {}, {}, {}, symbols)), "Undefined variable f");
}

TEST(TablesTest, aTernaryIsMadeOfQuestionAndColon)
{
    const SymbolTable symbols{
        {Symbol::infix("?"), [](auto values) { return values[0] * 10 + values[1]; }},
        {Symbol::infix(":"), [](auto values) { return values[0] * 100 + values[1]; }}};
    const Expression expression("1 ? 2 : 3", {}, {}, {}, symbols);
    EXPECT_EQ(outcome(expression), "1203");
    EXPECT_FALSE(isLiteral(expression));
    EXPECT_TRUE(isLiteral(Expression("1 ? 2 : 3", Options::pureSymbols, {}, {}, symbols)));
    // The built-in one goes first, and one of the caller's before all.
    EXPECT_EQ(outcome(Expression("1 ? 2 : 3", Options::boolSymbols, {}, {}, symbols)), "2");
    SymbolTable more = symbols;
    more.emplace(Symbol::infix("?:"), constant(7));
    EXPECT_EQ(outcome(Expression("1 ? 2 : 3", {}, {}, {}, more)), "7");
    EXPECT_EQ(outcome(Expression("1 ?: 3", {}, {}, {}, symbols)),
              "Ternary operator ?: expects 3 arguments");
    const SymbolTable half{{Symbol::infix("?"), constant(1)}};
    EXPECT_EQ(outcome(Expression("1 ? 2 : 3", {}, {}, {}, half)), "Undefined ternary operator ?:");
}

TEST(TablesTest, theFirstErrorFromLeftToRightComes)
{
    const SymbolTable symbols{{Symbol::variable("x"), failing("of x")},
                              {Symbol::variable("y"), failing("of y")}};
    EXPECT_EQ(outcome(Expression("x + y", {}, {}, {}, symbols)), "of x");
    EXPECT_EQ(outcome(Expression("y + x", {}, {}, {}, symbols)), "of y");
    EXPECT_EQ(outcome(Expression("z + x", {}, {}, {}, symbols)), "Undefined variable z");
}

TEST(TablesTest, anEmptyEvaluatorIsNoEntry)
{
    const SymbolTable symbols{{Symbol::variable("x"), {}}, {Symbol::infix("+"), {}}};
    EXPECT_EQ(outcome(Expression("x", {}, {}, {}, symbols)), "Undefined variable x");
    EXPECT_EQ(outcome(Expression("1 + 2", {}, {}, {}, symbols)), "3");
}

TEST(TablesTest, builtInsAreNotCalledWithTooFewArguments)
{
    // Trees built by hand may have any number.
    const auto outcomeOf = [](const Symbol& symbol, int count) {
        return outcome(
            Expression(ParsedExpression(Subexpression::symbol(
                           symbol, std::vector<Subexpression>(static_cast<std::size_t>(count),
                                                              Subexpression::literal(4)))),
                       Options::boolSymbols, {}, {{"a", {1}}}));
    };
    EXPECT_EQ(outcomeOf(Symbol::infix("+"), 1), "Infix operator + expects 2 arguments");
    EXPECT_EQ(outcomeOf(Symbol::infix("+"), 0), "Infix operator + expects 2 arguments");
    EXPECT_EQ(outcomeOf(Symbol::prefix("-"), 0), "Prefix operator - expects 1 argument");
    EXPECT_EQ(outcomeOf(Symbol::infix("?:"), 1), "Ternary operator ?: expects 3 arguments");
    EXPECT_EQ(outcomeOf(Symbol::function("sqrt", 1), 0), "Function sqrt() expects 1 argument");
    EXPECT_EQ(outcomeOf(Symbol::function("sqrt", 1), 1), "2");
    EXPECT_EQ(outcomeOf(Symbol::function("sqrt", Arity::atLeast(1)), 1), "2");
    EXPECT_EQ(outcomeOf(Symbol::function("sqrt", Arity::atLeast(2)), 2),
              "Undefined function sqrt()");
    EXPECT_EQ(outcomeOf(Symbol::function("max", Arity::atLeast(3)), 3),
              "Function max() expects at least 2 arguments");
    EXPECT_EQ(outcomeOf(Symbol::array("a"), 2), "Array a[] expects 1 argument");
}

TEST(TablesTest, aParsedExpressionMayBeBoundManyTimes)
{
    const ParsedExpression parsed = Expression::parse("x + 1", false);
    EXPECT_EQ(Expression(parsed, {}, {{"x", 1}}).evaluate(), 2);
    EXPECT_EQ(Expression(parsed, {}, {{"x", 2}}).evaluate(), 3);
    EXPECT_EQ(outcome(Expression(parsed)), "Undefined variable x");
}

TEST(ExpressionTest, theExamplesOfTheHeader)
{
    EXPECT_EQ(Expression("a > 1", Options::boolSymbols, {{"a", 2}}).evaluate(), 1);
    const Expression twice(
        "twice(x)", {}, {}, {},
        {{Symbol::variable("x"), [](auto) { return 21; }},
         {Symbol::function("twice", 1), [](auto values) { return 2 * values[0]; }}});
    EXPECT_EQ(twice.evaluate(), 42);
    EXPECT_EQ(outcome("2 +* 3"), "Undefined infix operator +*");
}

} // namespace

} // namespace vellumry::expression
