#include "expression/Symbol.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace vellumry::expression {

namespace {

TEST(SymbolTest, describesItself)
{
    EXPECT_EQ(Symbol::variable("x").description(), "variable x");
    EXPECT_EQ(Symbol::infix("+").description(), "infix operator +");
    EXPECT_EQ(Symbol::infix("?:").description(), "ternary operator ?:");
    EXPECT_EQ(Symbol::infix("[]").description(), "subscript operator []");
    EXPECT_EQ(Symbol::infix("()").description(), "function call operator ()");
    EXPECT_EQ(Symbol::prefix("-").description(), "prefix operator -");
    EXPECT_EQ(Symbol::prefix("?:").description(), "prefix operator ?:");
    EXPECT_EQ(Symbol::postfix("!").description(), "postfix operator !");
    EXPECT_EQ(Symbol::function("max", 2).description(), "function max()");
    EXPECT_EQ(Symbol::array("a").description(), "array a[]");
}

TEST(SymbolTest, tellsItsName)
{
    EXPECT_EQ(Symbol::variable("x").name(), "x");
    EXPECT_EQ(Symbol::infix("?:").name(), "?:");
    EXPECT_EQ(Symbol::function("max", Arity::atLeast(2)).name(), "max");
    EXPECT_EQ(Symbol::array("a").name(), "a");
}

TEST(SymbolTest, casesStandInOrder)
{
    EXPECT_LT(Symbol::Case::variable, Symbol::Case::infix);
    EXPECT_LT(Symbol::Case::infix, Symbol::Case::prefix);
    EXPECT_LT(Symbol::Case::prefix, Symbol::Case::postfix);
    EXPECT_LT(Symbol::Case::postfix, Symbol::Case::function);
    EXPECT_LT(Symbol::Case::function, Symbol::Case::array);
}

TEST(SymbolTest, isEqualByCaseAndName)
{
    EXPECT_EQ(Symbol::variable("x"), Symbol::variable("x"));
    EXPECT_NE(Symbol::variable("x"), Symbol::variable("y"));
    EXPECT_NE(Symbol::variable("x"), Symbol::array("x"));
    EXPECT_NE(Symbol::prefix("-"), Symbol::infix("-"));
    EXPECT_NE(Symbol::prefix("-"), Symbol::postfix("-"));
}

TEST(SymbolTest, functionsAreEqualInTheSenseOfTheirArities)
{
    EXPECT_EQ(Symbol::function("max", 3), Symbol::function("max", Arity::atLeast(2)));
    EXPECT_NE(Symbol::function("max", 1), Symbol::function("max", Arity::atLeast(2)));
    EXPECT_NE(Symbol::function("max", 2), Symbol::function("max", 3));
    EXPECT_NE(Symbol::function("max", 2), Symbol::function("min", 2));
}

TEST(SymbolTest, hashLeavesTheArityOut)
{
    const std::hash<Symbol> hash;
    EXPECT_EQ(hash(Symbol::function("max", 3)), hash(Symbol::function("max", Arity::atLeast(2))));
    EXPECT_NE(hash(Symbol::function("max", 3)), hash(Symbol::function("min", 3)));
    EXPECT_NE(hash(Symbol::variable("x")), hash(Symbol::array("x")));

    const std::unordered_set<Symbol> symbols{Symbol::function("max", Arity::atLeast(2))};
    EXPECT_TRUE(symbols.contains(Symbol::function("max", 3)));
    EXPECT_FALSE(symbols.contains(Symbol::function("max", 1)));
}

TEST(SymbolTest, expectsArguments)
{
    EXPECT_EQ(Symbol::variable("x").arity().description(), "0 arguments");
    EXPECT_EQ(Symbol::infix("()").arity().description(), "at least 1 argument");
    EXPECT_EQ(Symbol::infix("[]").arity().description(), "1 argument");
    EXPECT_EQ(Symbol::infix("?:").arity().description(), "3 arguments");
    EXPECT_EQ(Symbol::infix("+").arity().description(), "2 arguments");
    EXPECT_EQ(Symbol::prefix("-").arity().description(), "1 argument");
    EXPECT_EQ(Symbol::postfix("-").arity().description(), "1 argument");
    EXPECT_EQ(Symbol::array("a").arity().description(), "1 argument");
    EXPECT_EQ(Symbol::function("f", Arity::atLeast(4)).arity().description(),
              "at least 4 arguments");
}

} // namespace

} // namespace vellumry::expression
