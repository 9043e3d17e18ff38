#include "expression/Subexpression.h"

#include "expression/evaluators.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vellumry::expression {

namespace {

using test::constant;
using test::failing;

std::string errorOf(const Subexpression& tree)
{
    try {
        return std::to_string(tree.evaluate());
    } catch (const Error& error) {
        return error.description();
    }
}

TEST(SubexpressionTest, aLiteralHasAValue)
{
    const auto tree = Subexpression::literal(1.5);
    EXPECT_EQ(tree.kind(), Subexpression::Kind::literal);
    EXPECT_EQ(tree.value(), 1.5);
    EXPECT_EQ(tree.evaluate(), 1.5);
    EXPECT_TRUE(tree.symbols().empty());
}

TEST(SubexpressionTest, aSymbolHasArguments)
{
    const auto inner = Subexpression::symbol(Symbol::function("unusual", Arity::atLeast(1)),
                                             {Subexpression::literal(3)});
    const auto tree = Subexpression::symbol(
        Symbol::infix("+"),
        {Subexpression::literal(1), inner, Subexpression::symbol(Symbol::variable("other"))});
    EXPECT_EQ(tree.kind(), Subexpression::Kind::symbol);
    EXPECT_EQ(tree.symbol(), Symbol::infix("+"));
    ASSERT_EQ(tree.argumentCount(), 3U);
    EXPECT_EQ(tree.argument(0), Subexpression::literal(1));
    EXPECT_EQ(tree.argument(1), inner);
    EXPECT_EQ(tree.argument(1).symbol().arity().kind(), Arity::Case::atLeast);
    EXPECT_EQ(tree.argument(1).argument(0).value(), 3);
    EXPECT_EQ(tree.argument(2).symbol().name(), "other");
    EXPECT_EQ(tree.symbols().size(), 3U);
}

TEST(SubexpressionTest, anErrorHasItsText)
{
    const auto tree = Subexpression::symbol(Symbol::prefix("-"),
                                            {Subexpression::error(Error::message("why"), "typed")});
    EXPECT_EQ(tree.argument(0).kind(), Subexpression::Kind::error);
    EXPECT_EQ(tree.argument(0).error(), Error::message("why"));
    EXPECT_EQ(tree.argument(0).errorText(), "typed");
    EXPECT_EQ(errorOf(tree.argument(0)), "why");
}

TEST(SubexpressionTest, evaluatorsPlayNoPartInEquality)
{
    const Symbol x = Symbol::variable("x");
    EXPECT_EQ(Subexpression::symbol(x, {}, constant(1)), Subexpression::symbol(x));
    EXPECT_NE(Subexpression::symbol(x), Subexpression::symbol(Symbol::variable("y")));
    EXPECT_NE(Subexpression::literal(1), Subexpression::literal(2));
    EXPECT_NE(Subexpression::literal(1), Subexpression::symbol(x));
    EXPECT_NE(Subexpression::error(Error::message("a"), "t"),
              Subexpression::error(Error::message("b"), "t"));
    EXPECT_NE(Subexpression::error(Error::message("a"), "t"),
              Subexpression::error(Error::message("a"), "u"));
}

TEST(SubexpressionTest, isCopiedAsAWhole)
{
    Subexpression copy = Subexpression::literal(0);
    {
        const auto tree = Subexpression::symbol(
            Symbol::function("f", 1),
            {Subexpression::symbol(Symbol::variable("name"), {}, constant(4))},
            [](std::span<const double> values) { return values[0] * 2; });
        copy = tree;
    }
    EXPECT_EQ(copy.evaluate(), 8);
    EXPECT_EQ(copy.description(), "f(name)");
    EXPECT_EQ(copy.argument(0).evaluate(), 4);
}

TEST(SubexpressionTest, aSymbolWithoutAnEvaluatorIsUndefined)
{
    const auto tree = Subexpression::symbol(Symbol::infix("+"),
                                            {Subexpression::literal(1), Subexpression::literal(2)});
    EXPECT_FALSE(tree.hasEvaluator());
    EXPECT_EQ(errorOf(tree), "Undefined infix operator +");
}

TEST(SubexpressionTest, undefinedIsFoundOutBeforeTheArguments)
{
    const auto failure = Subexpression::symbol(Symbol::variable("a"), {}, failing("first"));
    const auto undefined = Subexpression::symbol(Symbol::function("f", 1), {failure});
    EXPECT_EQ(errorOf(undefined), "Undefined function f()");
    const auto sum = [](const Subexpression& a, const Subexpression& b) {
        return Subexpression::symbol(Symbol::infix("+"), {a, b}, constant(0));
    };
    EXPECT_EQ(errorOf(sum(failure, undefined)), "first");
    EXPECT_EQ(errorOf(sum(undefined, failure)), "Undefined function f()");
    EXPECT_EQ(errorOf(sum(sum(failure, undefined), undefined)), "first");
    // The outermost one of those that begin at the same place.
    EXPECT_EQ(errorOf(Subexpression::symbol(Symbol::prefix("-"), {undefined})),
              "Undefined prefix operator -");
}

TEST(SubexpressionTest, argumentsAreEvaluatedFromLeftToRight)
{
    std::vector<int> order;
    const auto noted = [&order](int number, const std::vector<Subexpression>& arguments) {
        return Subexpression::symbol(Symbol::function("f", Arity::any), arguments,
                                     [&order, number](auto values) {
                                         order.push_back(number);
                                         return static_cast<double>(values.size());
                                     });
    };
    const auto tree = noted(6, {noted(2, {noted(1, {})}), noted(5, {noted(3, {}), noted(4, {})})});
    EXPECT_EQ(tree.evaluate(), 2);
    EXPECT_EQ(order, (std::vector{1, 2, 3, 4, 5, 6}));
}

} // namespace

} // namespace vellumry::expression
