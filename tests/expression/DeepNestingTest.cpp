#include "expression/Expression.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// Texts whose trees are as deep as they are long: nothing may recurse along them.

namespace vellumry::expression {

namespace {

constexpr int deep = 100000;

std::string repeated(std::string_view text)
{
    std::string all;
    for (int i = 0; i < deep; ++i)
        all += text;
    return all;
}

/// Does with a text all that can be done; gives its value or the description of its error.
std::string exercised(const std::string& text, const SymbolTable& symbols = {})
{
    const ParsedExpression parsed = Expression::parse(text, false);
    ParsedExpression copy = parsed;
    EXPECT_EQ(copy.root, parsed.root);
    const std::string printed = copy.description();
    EXPECT_FALSE(printed.empty());
    EXPECT_EQ(copy.symbols().empty(), parsed.symbols().empty());
    if (!parsed.error()) {
        EXPECT_EQ(Expression::parse(printed, false).root, parsed.root);
        const Subexpression nested = Subexpression::symbol(Symbol::prefix("-"), {copy.root});
        EXPECT_EQ(nested.argument(0), copy.root);
    }
    const Expression kept(copy, Options::noOptimize | Options::boolSymbols, {}, {}, symbols);
    const Expression folded(std::move(copy), Options::boolSymbols, {}, {}, symbols);
    std::string result;
    for (const Expression* each : {&kept, &folded}) {
        try {
            result = std::to_string(each->evaluate());
        } catch (const Error& error) {
            result = error.description();
        }
    }
    return result;
}

TEST(DeepNestingTest, parentheses)
{
    EXPECT_EQ(exercised(repeated("(")), "Empty expression");
    EXPECT_EQ(exercised(repeated("(") + "1"), "Missing `)`");
    EXPECT_EQ(exercised(repeated("(") + "1" + repeated(")")), "1.000000");
    EXPECT_EQ(exercised(repeated("(1+") + "1" + repeated(")")), "100001.000000");
}

TEST(DeepNestingTest, squareBrackets)
{
    EXPECT_EQ(exercised(repeated("[")), "Missing `]`");
    EXPECT_EQ(exercised(repeated("[") + repeated("]")), "Unexpected token `[`");
    EXPECT_EQ(exercised(repeated("a[") + "1" + repeated("]")), "Undefined array a[]");
}

TEST(DeepNestingTest, prefixOperators)
{
    EXPECT_EQ(exercised(repeated("- ") + "1"), "1.000000");
    EXPECT_EQ(exercised(repeated("-(") + "1" + repeated(")")), "1.000000");
    EXPECT_EQ(exercised(repeated("- ")), "Unexpected token `-`");
    EXPECT_EQ(exercised(repeated("-") + "1"), "Undefined prefix operator " + repeated("-"));
}

TEST(DeepNestingTest, postfixOperators)
{
    const SymbolTable symbols{{Symbol::postfix("!"), [](auto values) { return values[0] + 1; }}};
    EXPECT_EQ(exercised("1" + repeated(" !"), symbols), "100001.000000");
}

TEST(DeepNestingTest, calls)
{
    EXPECT_EQ(exercised(repeated("f(")), "Missing `)`");
    EXPECT_EQ(exercised(repeated("abs(") + "1" + repeated(")")), "1.000000");
    EXPECT_EQ(exercised(repeated("max(1,") + "2" + repeated(")")), "2.000000");
    EXPECT_EQ(exercised("1" + repeated("(2)")), "Undefined function call operator ()");
}

TEST(DeepNestingTest, rightAssociativeChains)
{
    EXPECT_EQ(exercised("1" + repeated("<2")), "0.000000"); // 1 < (2 < ... (2 < 2))
    const SymbolTable symbols{{Symbol::infix("="), [](auto values) { return values[1] + 1; }}};
    EXPECT_EQ(exercised("1" + repeated(" = 0"), symbols), "100000.000000");
}

TEST(DeepNestingTest, leftAssociativeChains)
{
    EXPECT_EQ(exercised("0" + repeated("+1")), "100000.000000");
    EXPECT_EQ(exercised("x" + repeated("+1")), "Undefined variable x");
}

TEST(DeepNestingTest, ternaries)
{
    EXPECT_EQ(exercised(repeated("0 ? 1 : (") + "5" + repeated(")")), "5.000000");
    EXPECT_EQ(exercised("1" + repeated(" ? 2 : 3")), "2.000000");
}

TEST(DeepNestingTest, longArgumentLists)
{
    EXPECT_EQ(exercised("max(0" + repeated(",1") + ")"), "1.000000");
    EXPECT_EQ(exercised("1" + repeated(", 1")), "Unexpected token `,`");
}

TEST(DeepNestingTest, undefinedNames)
{
    EXPECT_EQ(exercised("a" + repeated(" + b")), "Undefined variable a");
    EXPECT_EQ(exercised(repeated("f(") + repeated(")")), "Undefined function f()");
}

} // namespace

} // namespace vellumry::expression
