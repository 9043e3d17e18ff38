#include "expression/Expression.h"
#include "expression/ReferenceExpression.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

// Random texts against the plain reading of the grammar.

namespace vellumry::expression {

namespace {

using test::dump;
using test::readPlainly;
using test::Reference;

void expectSame(const std::string& text)
{
    const Reference expected = readPlainly(text);
    const ParsedExpression parsed = Expression::parse(text, false);
    if (expected.tree.empty()) {
        ASSERT_TRUE(parsed.error().has_value()) << text;
        ASSERT_EQ(parsed.error()->description(), expected.error) << text;
        return;
    }
    ASSERT_EQ(dump(parsed.root), expected.tree) << text;
    try {
        const double value = Expression(parsed).evaluate();
        ASSERT_EQ(expected.error, "") << text;
        ASSERT_TRUE(value == expected.value || (std::isnan(value) && std::isnan(expected.value)))
            << text << ": " << value << " and not " << expected.value;
    } catch (const Error& error) {
        ASSERT_EQ(error.description(), expected.error) << text;
    }
}

/// Texts of tokens with blanks between them or none, `count` of them for each length.
void compare(unsigned seed, const std::vector<std::string>& tokens, int longest, int count)
{
    std::mt19937 random(seed);
    for (int length = 0; length <= longest; ++length) {
        for (int i = 0; i < count; ++i) {
            std::string text;
            for (int k = 0; k < length; ++k) {
                text += tokens[random() % tokens.size()];
                if (random() % 3 == 0)
                    text += ' ';
            }
            expectSame(text);
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(ReferenceTest, operatorsAndOperands)
{
    compare(1, {"1", "2", "a", "+", "-", "*", "/", "%", "^", "<", "==", "?", ":", "!", "=", "or"},
            14, 1500);
}

TEST(ReferenceTest, chainsOfOperandsAndOperators)
{
    // Longer ones, in which an operand stands at every second place.
    const std::vector<std::string> operators{" + ", " - ",  "*",  " ^ ",  " < ",  " = ",  " ? ",
                                             " : ", "- ",   " -", " !",   "! ",   " or ", " .. ",
                                             ", ",  " ?? ", "<<", " && ", " -- ", " == "};
    const std::vector<std::string> operands{"1", "2", "(3!)", "(4-)", "-5", "a", "(- 6)", "f(7)"};
    std::mt19937 random(2);
    for (int i = 0; i < 20000; ++i) {
        std::string text = operands[random() % operands.size()];
        for (unsigned k = random() % 16; k > 0; --k) {
            if (random() % 8 > 0)
                text += operators[random() % operators.size()];
            text += operands[random() % operands.size()];
        }
        expectSame(text);
        if (HasFatalFailure())
            return;
    }
}

TEST(ReferenceTest, bracketsAndWords)
{
    compare(3, {"1", "x", "f", "(", ")", "[", "]", ",", "+", "-", "!", "(2)", "(3-)", "'q'", "0x"},
            14, 1500);
}

TEST(ReferenceTest, calculations)
{
    compare(4, {"1",    "2.5",  "pi",   "+",      "-", "*", "/", "%",  "sqrt(",    "max(",
                "min(", "abs(", "pow(", "round(", "(", ")", ",", ", ", "mod(1,2)", "log("},
            12, 1500);
}

TEST(ReferenceTest, anyCharacters)
{
    const std::string characters = "0123eExX.. \t\n+-*/%()[],?:<>=!&|^~_#$@abcF'\"`\\u{}nrt;";
    std::mt19937 random(5);
    for (int i = 0; i < 30000; ++i) {
        std::string text;
        for (unsigned k = random() % 16; k > 0; --k)
            text += characters[random() % characters.size()];
        expectSame(text);
        if (HasFatalFailure())
            return;
    }
}

TEST(ReferenceTest, numbers)
{
    const std::string characters = "0011259..eE+-x";
    std::mt19937 random(6);
    for (int i = 0; i < 30000; ++i) {
        std::string text;
        for (unsigned k = random() % 24; k > 0; --k)
            text += characters[random() % characters.size()];
        expectSame(text);
        if (HasFatalFailure())
            return;
    }
}

} // namespace

} // namespace vellumry::expression
