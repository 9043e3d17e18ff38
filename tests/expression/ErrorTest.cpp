#include "expression/Error.h"

#include <gtest/gtest.h>

#include <string>

namespace vellumry::expression {

namespace {

TEST(ErrorTest, describesItself)
{
    EXPECT_EQ(Error::message("any text").description(), "any text");
    EXPECT_EQ(Error::unexpectedToken("2").description(), "Unexpected token `2`");
    EXPECT_EQ(Error::unexpectedToken("").description(), "Empty expression");
    EXPECT_EQ(Error::missingDelimiter(")").description(), "Missing `)`");
    EXPECT_EQ(Error::undefinedSymbol(Symbol::variable("x")).description(), "Undefined variable x");
    EXPECT_EQ(Error::undefinedSymbol(Symbol::function("foo", 1)).description(),
              "Undefined function foo()");
}

TEST(ErrorTest, anArityMismatchTellsWhatIsExpected)
{
    const auto text = [](const Symbol& symbol) {
        return Error::arityMismatch(symbol).description();
    };
    EXPECT_EQ(text(Symbol::variable("x")), "Variable x expects 0 arguments");
    EXPECT_EQ(text(Symbol::infix("()")), "Function call operator () expects at least 1 argument");
    EXPECT_EQ(text(Symbol::infix("[]")), "Subscript operator [] expects 1 argument");
    EXPECT_EQ(text(Symbol::infix("?:")), "Ternary operator ?: expects 3 arguments");
    EXPECT_EQ(text(Symbol::infix("+")), "Infix operator + expects 2 arguments");
    EXPECT_EQ(text(Symbol::prefix("-")), "Prefix operator - expects 1 argument");
    EXPECT_EQ(text(Symbol::postfix("!")), "Postfix operator ! expects 1 argument");
    EXPECT_EQ(text(Symbol::array("a")), "Array a[] expects 1 argument");
    EXPECT_EQ(text(Symbol::function("max", Arity::atLeast(2))),
              "Function max() expects at least 2 arguments");
}

TEST(ErrorTest, arrayBoundsTellTheIndexPlainly)
{
    const Symbol array = Symbol::array("a");
    EXPECT_EQ(Error::arrayBounds(array, 5).description(), "Index 5 out of bounds for array a[]");
    EXPECT_EQ(Error::arrayBounds(array, -1.5).description(),
              "Index -1.5 out of bounds for array a[]");
    EXPECT_EQ(Error::arrayBounds(array, 5).index(), 5);
    EXPECT_EQ(Error::arrayBounds(array, 5).symbol(), array);
}

TEST(ErrorTest, emptyExpressionIsAnUnexpectedTokenWithoutText)
{
    EXPECT_EQ(Error::emptyExpression(), Error::unexpectedToken(""));
    EXPECT_EQ(Error::emptyExpression().kind(), Error::Case::unexpectedToken);
    EXPECT_EQ(Error::emptyExpression().text(), "");
}

TEST(ErrorTest, isEqualByCaseAndPayload)
{
    EXPECT_EQ(Error::unexpectedToken("x"), Error::unexpectedToken("x"));
    EXPECT_NE(Error::unexpectedToken("x"), Error::unexpectedToken("y"));
    EXPECT_NE(Error::unexpectedToken("x"), Error::missingDelimiter("x"));
    EXPECT_NE(Error::undefinedSymbol(Symbol::variable("x")),
              Error::undefinedSymbol(Symbol::variable("y")));
    EXPECT_NE(Error::arrayBounds(Symbol::array("a"), 1), Error::arrayBounds(Symbol::array("a"), 2));
}

TEST(ErrorTest, isAnExceptionWithItsDescription)
{
    try {
        throw Error::message("any text");
    } catch (const std::exception& exception) {
        EXPECT_STREQ(exception.what(), "any text");
    }
}

} // namespace

} // namespace vellumry::expression
