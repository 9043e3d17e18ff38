#include "expression/Expression.h"
#include "expression/ReferenceExpression.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellumry::expression {

namespace {

/// The tree of a text, or "! " and the error.
std::string tree(std::string_view text)
{
    const ParsedExpression parsed = Expression::parse(text, false);
    const std::optional<Error> error = parsed.error();
    return error ? "! " + error->description() : test::dump(parsed.root);
}

TEST(ParserTest, emptyTexts)
{
    EXPECT_EQ(tree(""), "! Empty expression");
    EXPECT_EQ(tree(" \t\r\n"), "! Empty expression");
    EXPECT_EQ(tree("()"), "! Empty expression");
    EXPECT_EQ(tree("(())"), "! Empty expression");
    EXPECT_EQ(Expression::parse("", false).error(), Error::emptyExpression());
}

TEST(ParserTest, operandsDoNotStandSideBySide)
{
    EXPECT_EQ(tree("1 2"), "! Unexpected token `2`");
    EXPECT_EQ(tree("1 2+3"), "! Unexpected token `2`");
    EXPECT_EQ(tree("(1)(2) 3"), "! Unexpected token `3`");
    EXPECT_EQ(tree("(1) 2"), "! Unexpected token `2`");
    EXPECT_EQ(tree("1.5.5"), "! Unexpected token `0.5`");
    EXPECT_EQ(tree("1 f(2)"), "(infix f 1 2)"); // a word is an operator there
}

TEST(ParserTest, aWordBehindAnOperandIsAnOperator)
{
    EXPECT_EQ(tree("2 x"), "(postfix x 2)");
    EXPECT_EQ(tree("2 x 3"), "(infix x 2 3)");
    EXPECT_EQ(tree("a b c"), "(infix b (variable a) (variable c))");
    EXPECT_EQ(tree("a 'b' c"), "(infix 'b' (variable a) (variable c))");
    EXPECT_EQ(tree("1e"), "(postfix e 1)");
    EXPECT_EQ(tree("1 or 2 and 3"), "(infix or 1 (infix and 2 3))");
}

TEST(ParserTest, aCallOfSomethingElseThanAName)
{
    EXPECT_EQ(tree("2(3)"), "(infix () 2 3)");
    EXPECT_EQ(tree("2()"), "(infix () 2)");
    EXPECT_EQ(tree("(1+2)(3, 4)"), "(infix () (infix + 1 2) 3 4)");
    EXPECT_EQ(tree("f(1)(2)"), "(infix () (function f 1) 2)");
    EXPECT_EQ(tree("[1](2)"), "(infix () (function [] 1) 2)");
}

TEST(ParserTest, groupingLeavesNoTrace)
{
    EXPECT_EQ(tree("((1))"), "1");
    EXPECT_EQ(tree("(a)(3)"), "(function a 3)");
    EXPECT_EQ(tree("(a)[3]"), "(array a 3)");
    EXPECT_EQ(tree("( 1 + 2 ) * 3"), "(infix * (infix + 1 2) 3)");
}

TEST(ParserTest, bracketsThatDoNotMatch)
{
    EXPECT_EQ(tree("(1"), "! Missing `)`");
    EXPECT_EQ(tree("1)"), "! Unexpected token `)`");
    EXPECT_EQ(tree("f(1"), "! Missing `)`");
    EXPECT_EQ(tree("a[1"), "! Missing `]`");
    EXPECT_EQ(tree("[1"), "! Missing `]`");
    EXPECT_EQ(tree("1]"), "! Unexpected token `]`");
    EXPECT_EQ(tree("1]2 3"), "! Unexpected token `]2`"); // up to the next blank
    EXPECT_EQ(tree("f(1]"), "! Unexpected token `]`");
    EXPECT_EQ(tree("(1]"), "! Unexpected token `]`");
    EXPECT_EQ(tree("("), "! Empty expression");
    EXPECT_EQ(tree("f("), "! Missing `)`");
    EXPECT_EQ(tree("a["), "! Missing `]`");
}

TEST(ParserTest, emptyPlacesInArguments)
{
    EXPECT_EQ(tree("f()"), "(function f)");
    EXPECT_EQ(tree("f( )"), "(function f)");
    EXPECT_EQ(tree("f(,1)"), "! Unexpected token `,`");
    EXPECT_EQ(tree("f(1,)"), "! Unexpected token `)`");
    EXPECT_EQ(tree("f(1,,2)"), "! Unexpected token `,`");
    EXPECT_EQ(tree("f(1,"), "! Missing `)`");
    EXPECT_EQ(tree("[,]"), "! Unexpected token `,`");
    // An empty group within arguments is told by what stands in its place.
    EXPECT_EQ(tree("f(())"), "! Unexpected token `)`");
    EXPECT_EQ(tree("f(1, (("), "! Missing `)`");
    EXPECT_EQ(tree("[(())]"), "! Unexpected token `)`");
    EXPECT_EQ(tree("f(\u00E9, )"), "! Unexpected token `)`");
}

TEST(ParserTest, calls)
{
    EXPECT_EQ(tree("f(1)"), "(function f 1)");
    EXPECT_EQ(tree("f (1)"), "(function f 1)");
    EXPECT_EQ(tree("f( 1 , 2 )"), "(function f 1 2)");
    EXPECT_EQ(tree("f((1, 2))"), "(function f (infix , 1 2))");
    EXPECT_EQ(tree("'f'(1)"), "(function 'f' 1)");
    EXPECT_EQ(tree("f(1)+g(2)"), "(infix + (function f 1) (function g 2))");
    EXPECT_EQ(tree("f(-1, - 2)"), "(function f (prefix - 1) (prefix - 2))");
    EXPECT_EQ(Expression::parse("f(1, 2)", false).root.symbol().arity().description(),
              "2 arguments");
}

TEST(ParserTest, subscripts)
{
    EXPECT_EQ(tree("a[1]"), "(array a 1)");
    EXPECT_EQ(tree("a [1]"), "(array a 1)");
    EXPECT_EQ(tree("2[1]"), "(infix [] 2 1)");
    EXPECT_EQ(tree("a[1][2]"), "(infix [] (array a 1) 2)");
    EXPECT_EQ(tree("f(1)[2]"), "(infix [] (function f 1) 2)");
    EXPECT_EQ(tree("a[]"), "! Array a[] expects 1 argument");
    EXPECT_EQ(tree("a[1,2]"), "! Array a[] expects 1 argument");
    EXPECT_EQ(tree("2[]"), "! Subscript operator [] expects 1 argument");
    EXPECT_EQ(tree("2[1,2]"), "! Subscript operator [] expects 1 argument");
}

TEST(ParserTest, arrayLiterals)
{
    EXPECT_EQ(tree("[]"), "(function [])");
    EXPECT_EQ(tree("[1,2]"), "(function [] 1 2)");
    EXPECT_EQ(tree("1+[2]"), "(infix + 1 (function [] 2))");
    EXPECT_EQ(tree("[[1],[2]]"), "(function [] (function [] 1) (function [] 2))");
}

TEST(ParserTest, bracketsBehindAnErrorAreGroups)
{
    EXPECT_EQ(tree("0x(1)"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("0x[1]"), "! Unexpected token `0x`");
}

TEST(ParserTest, signs)
{
    EXPECT_EQ(tree("-5"), "(prefix - 5)");
    EXPECT_EQ(tree("- 5"), "(prefix - 5)");
    EXPECT_EQ(tree("- - 5"), "(prefix - (prefix - 5))");
    EXPECT_EQ(tree("(-5)"), "(prefix - 5)");
    EXPECT_EQ(tree("--5"), "(prefix -- 5)");
}

TEST(ParserTest, subtractionWithAllBlanks)
{
    EXPECT_EQ(tree("2 - 3"), "(infix - 2 3)");
    EXPECT_EQ(tree("2-3"), "(infix - 2 3)");
    EXPECT_EQ(tree("2 -3"), "(infix - 2 3)");
    EXPECT_EQ(tree("2- 3"), "(infix - 2 3)");
    EXPECT_EQ(tree("a- b"), "(infix - (variable a) (variable b))");
    EXPECT_EQ(tree("a- b* c"), "(infix - (variable a) (infix * (variable b) (variable c)))");
}

TEST(ParserTest, aPostfixTakesWhatStandsBeforeIt)
{
    EXPECT_EQ(tree("5- -3"), "(infix - (postfix - 5) 3)");
    EXPECT_EQ(tree("a! + b"), "(infix + (postfix ! (variable a)) (variable b))");
    EXPECT_EQ(tree("a!"), "(postfix ! (variable a))");
    EXPECT_EQ(tree("(a!)"), "(postfix ! (variable a))");
    EXPECT_EQ(tree("f(a!, b)"), "(function f (postfix ! (variable a)) (variable b))");
    EXPECT_EQ(tree("5."), "(postfix . 5)");
    EXPECT_EQ(tree("5.e3"), "(postfix .e3 5)");
    // It binds no more strongly than a sum does.
    EXPECT_EQ(tree("c + a! + b"),
              "(infix + (postfix ! (infix + (variable c) (variable a))) (variable b))");
}

TEST(ParserTest, anOperandIsExpectedBehindAPostfix)
{
    EXPECT_EQ(tree("a! b"), "(infix ! (variable a) (variable b))");
    EXPECT_EQ(tree("a! b c"), "(infix ! (variable a) (postfix c (variable b)))");
}

TEST(ParserTest, operatorsThatAreOneToken)
{
    EXPECT_EQ(tree("2--3"), "(infix -- 2 3)");
    EXPECT_EQ(tree("2*+3"), "(infix *+ 2 3)");
    EXPECT_EQ(tree("1...2"), "(infix ... 1 2)");
    EXPECT_EQ(tree("1..<2"), "(infix ..< 1 2)");
    EXPECT_EQ(tree("a..b"), "(infix .. (variable a) (variable b))");
}

TEST(ParserTest, onlyPlusDivideAndTimesMakeAPrefixOfWhatFollows)
{
    EXPECT_EQ(tree("2+-3"), "(infix + 2 (prefix - 3))");
    EXPECT_EQ(tree("2*-3"), "(infix * 2 (prefix - 3))");
    EXPECT_EQ(tree("2/-3"), "(infix / 2 (prefix - 3))");
    EXPECT_EQ(tree("10%-3"), "(infix - (postfix % 10) 3)");
    EXPECT_EQ(tree("2^-3"), "(infix - (postfix ^ 2) 3)");
    EXPECT_EQ(tree("10 % -3"), "(infix % 10 (prefix - 3))");
    EXPECT_EQ(tree("2 ^ -3"), "(infix ^ 2 (prefix - 3))");
    EXPECT_EQ(tree("2*- 3"), "(infix * 2 (prefix - 3))");
}

TEST(ParserTest, operatorsMayBeLeftOver)
{
    EXPECT_EQ(tree("2 * -"), "2");
    EXPECT_EQ(tree("(2 * -) + 1"), "(infix + 2 1)");
    EXPECT_EQ(tree("f(2 * -, 3)"), "(function f 2 3)");
}

TEST(ParserTest, operatorsWithoutOperands)
{
    EXPECT_EQ(tree("-"), "! Unexpected token `-`");
    EXPECT_EQ(tree("+ -"), "! Unexpected token `+`");
    EXPECT_EQ(tree("(*)"), "! Unexpected token `*`");
    EXPECT_EQ(tree("f(*)"), "! Unexpected token `*`");
    EXPECT_EQ(tree(","), "! Unexpected token `,`");
}

TEST(ParserTest, ternaries)
{
    EXPECT_EQ(tree("a ? b : c"), "(infix ?: (variable a) (variable b) (variable c))");
    EXPECT_EQ(tree("1?2:3"), "(infix ?: 1 2 3)");
    EXPECT_EQ(tree("(1 ? 2) : 3"), "(infix ?: 1 2 3)"); // no trace of the group
    EXPECT_EQ(tree("1 ? 2"), "(infix ? 1 2)");
    EXPECT_EQ(tree("1 : 2"), "(infix : 1 2)");
    EXPECT_EQ(tree("1 ?: 2"), "(infix ?: 1 2)");
    EXPECT_EQ(tree("1 ? 2 : 3 ? 4 : 5"), "(infix ?: (infix ?: 1 2 3) 4 5)");
    EXPECT_EQ(tree("1 + 2 ? 3 == 4 : 5 or 6"),
              "(infix ?: (infix + 1 2) (infix == 3 4) (infix or 5 6))");
}

TEST(ParserTest, topLevelCommas)
{
    EXPECT_EQ(tree("1,2"), "(infix , 1 2)");
    EXPECT_EQ(tree("1, 2, 3"), "(infix , (infix , 1 2) 3)");
    EXPECT_EQ(tree("1!,2"), "(infix , (postfix ! 1) 2)");
    EXPECT_EQ(tree("1 x,2"), "(infix , (postfix x 1) 2)");
    // The blanks behind a comma do not count as standing before the next token.
    EXPECT_EQ(tree("1, -2"), "(infix - (postfix , 1) 2)");
    EXPECT_EQ(tree("1, - 2"), "(infix - (postfix , 1) 2)");
}

TEST(ParserTest, theComparisonLevelIsRightAssociative)
{
    EXPECT_EQ(tree("1<2<3"), "(infix < 1 (infix < 2 3))");
    EXPECT_EQ(tree("1 == 2 != 3"), "(infix == 1 (infix != 2 3))");
    EXPECT_EQ(tree("1 = 2 += 3"), "(infix = 1 (infix += 2 3))");
    EXPECT_EQ(tree("1 - 2 - 3"), "(infix - (infix - 1 2) 3)");
    EXPECT_EQ(tree("1 ^ 2 ^ 3"), "(infix ^ (infix ^ 1 2) 3)");
}

TEST(ParserTest, precedence)
{
    const std::vector<std::pair<bool, std::vector<std::string>>> levels{
        {false, {","}},
        {true, {"=", "*=", "/=", "%=", "+=", "-=", "<<=", ">>=", "&=", "^=", "|=", ":="}},
        {false, {"?"}}, // ":" makes a ternary of it
        {false, {"||", "or"}},
        {false, {"&&", "and"}},
        {true,
         {"<", "<=", ">=", ">", "==", "!=", "<>", "===", "!==", "lt", "le", "lte", "gt", "ge",
          "gte", "eq", "ne"}},
        {false, {"??", "?:"}},
        {false, {"is", "as", "isa"}},
        {false, {"..", "...", "..<"}},
        {false, {"+", "-", "|", "~", "foo", "\u00D7", "--", "!"}}, // and all that have no level
        {false, {"*", "/", "%", "&"}},
        {false, {"^"}},
        {false, {"<<", ">>", ">>>"}},
    };
    for (std::size_t i = 0; i < levels.size(); ++i) {
        for (std::size_t k = 0; k < levels.size(); ++k) {
            const bool isFirst = i > k || (i == k && !levels[i].first);
            for (const std::string& a : levels[i].second) {
                for (const std::string& b : levels[k].second) {
                    std::string text = "1 ";
                    text.append(a).append(" 2 ").append(b).append(" 3");
                    std::string expected = "(infix ";
                    if (isFirst)
                        expected.append(b).append(" (infix ").append(a).append(" 1 2) 3)");
                    else
                        expected.append(a).append(" 1 (infix ").append(b).append(" 2 3))");
                    EXPECT_EQ(tree(text), expected);
                }
            }
        }
    }
    EXPECT_EQ(NameTable::precedence(":"), NameTable::precedence("?"));
    EXPECT_EQ(NameTable::precedence("[]"), (Precedence{13, false}));
    EXPECT_EQ(NameTable::precedence("anything"), NameTable::precedence("+"));
}

TEST(ParserTest, numbers)
{
    EXPECT_EQ(tree("1e3"), "1000");
    EXPECT_EQ(tree(".5"), "0.5");
    EXPECT_EQ(tree("0x1F"), "31");
    EXPECT_EQ(tree("0x1e3"), "483");
    EXPECT_EQ(tree("0x"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("1+0x"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("-0x"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("0X1F"), "(postfix X1F 0)");
    EXPECT_EQ(tree("1e999"), "inf");
    EXPECT_EQ(tree("1e-999"), "0");
}

TEST(ParserTest, variables)
{
    EXPECT_EQ(tree("a.b"), "(variable a.b)");
    EXPECT_EQ(tree("a."), "(postfix . (variable a))");
    EXPECT_EQ(tree("x'"), "(variable x')");
    EXPECT_EQ(tree("'a b'"), "(variable 'a b')");
    EXPECT_EQ(tree("\u4E2D + \u00E9"), "(infix + (variable \u4E2D) (variable \u00E9))");
}

TEST(ParserTest, failuresOfQuotedTokens)
{
    EXPECT_EQ(tree("'"), "! Unexpected token `'`");
    EXPECT_EQ(tree("'a"), "! Missing `'`");
    EXPECT_EQ(tree("\"\\u{}\""), "! Unexpected token `}`");
    EXPECT_EQ(tree("\"\\ux\""), "! Unexpected token `x\"`");
    EXPECT_EQ(tree("1 + 'a"), "! Missing `'`");
}

TEST(ParserTest, anErrorNodeIsThrownWhenItIsReached)
{
    // What cannot be read at all is found out first.
    EXPECT_EQ(tree("0x + )"), "! Unexpected token `)`");
    EXPECT_EQ(tree("0x 1"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("1 0x"), "! Unexpected token `0x`");
    EXPECT_EQ(tree("1 2 0x"), "! Unexpected token `2`");
    // Reached by way of the second operator.
    EXPECT_EQ(tree("- + 0x"), "! Unexpected token `0x`");
}

TEST(ParserTest, whitespaceIsFourCharactersAndNoMore)
{
    EXPECT_EQ(tree("\t1\n+\r2 "), "(infix + 1 2)");
    EXPECT_EQ(tree("1\v+2"), "! Unexpected token `\v+2`");
    EXPECT_EQ(tree("1\u00A0+2"), "! Unexpected token `\u00A0+2`");
}

TEST(ParserTest, bytesThatAreNoTextAreUnexpected)
{
    EXPECT_EQ(tree("1 + \xFF"), "! Unexpected token `\xFF`");
    EXPECT_EQ(tree("\xC3 2"), "! Unexpected token `\xC3`");
    EXPECT_EQ(tree("f(\x80)"), "! Unexpected token `\x80)`");
    EXPECT_EQ(tree("'\xFF'"), "(variable '\xFF')");
}

TEST(ParserTest, aFailureHoldsTheTextThatWasRead)
{
    const ParsedExpression parsed = Expression::parse("1 2)", false);
    EXPECT_EQ(parsed.root.kind(), Subexpression::Kind::error);
    EXPECT_EQ(parsed.root.errorText(), "1 2");
    EXPECT_EQ(parsed.description(), "1 2");
    EXPECT_EQ(Expression::parse("f(,1)", false).description(), "f(,");
    EXPECT_EQ(Expression::parse("1 2", false).description(), "1 2");
}

TEST(ParserTest, tellsItsSymbols)
{
    const ParsedExpression parsed = Expression::parse("-a + max(b, 2) - a[1]!", false);
    const std::unordered_set<Symbol> expected{Symbol::prefix("-"),   Symbol::variable("a"),
                                              Symbol::infix("+"),    Symbol::infix("-"),
                                              Symbol::variable("b"), Symbol::function("max", 2),
                                              Symbol::array("a"),    Symbol::postfix("!")};
    EXPECT_EQ(parsed.symbols(), expected);
    EXPECT_TRUE(Expression::parse("1", false).symbols().empty());
    EXPECT_TRUE(Expression::parse("1 2", false).symbols().empty());
    EXPECT_EQ(Expression::parse("1 2", false).error(), Error::unexpectedToken("2"));
    EXPECT_EQ(Expression::parse("1", false).error(), std::nullopt);
}

TEST(DelimiterTest, theViewIsMovedPastWhatWasRead)
{
    ScalarView view("1 + 2; 3)");
    const std::vector<std::string_view> delimiters{";", ")"};
    EXPECT_EQ(Expression::parse(view, delimiters).description(), "1 + 2");
    EXPECT_EQ(view.rest(), "; 3)");
    view.popFirst();
    EXPECT_EQ(Expression::parse(view, delimiters).description(), "3");
    EXPECT_EQ(view.rest(), ")");
}

TEST(DelimiterTest, mayBeLong)
{
    ScalarView view("1 => 2");
    const std::vector<std::string_view> delimiters{"=>"};
    EXPECT_EQ(Expression::parse(view, delimiters).description(), "1");
    EXPECT_EQ(view.rest(), "=> 2");
}

TEST(DelimiterTest, countsOnlyOutsideOfBracketsAndTokens)
{
    ScalarView view("f(1, 2), 3");
    const std::vector<std::string_view> delimiters{","};
    EXPECT_EQ(Expression::parse(view, delimiters).description(), "f(1, 2)");
    EXPECT_EQ(view.rest(), ", 3");
    ScalarView inside("1+=2");
    const std::vector<std::string_view> equals{"="};
    EXPECT_EQ(Expression::parse(inside, equals).description(), "1 += 2");
}

TEST(DelimiterTest, anEmptyOneStandsEverywhere)
{
    ScalarView view("1 + 2");
    const std::vector<std::string_view> delimiters{""};
    EXPECT_EQ(Expression::parse(view, delimiters).error(), Error::emptyExpression());
    EXPECT_EQ(view.rest(), "1 + 2");
}

TEST(DelimiterTest, withoutAnyAllOfTheTextMustBeAnExpression)
{
    ScalarView view("1 ; 2");
    EXPECT_EQ(Expression::parse(view).error(), Error::unexpectedToken(";"));
    EXPECT_EQ(view.rest(), "; 2");
}

TEST(DelimiterTest, missingOnesAreNoFailure)
{
    ScalarView view("1 + 2");
    const std::vector<std::string_view> delimiters{";"};
    EXPECT_EQ(Expression::parse(view, delimiters).description(), "1 + 2");
    EXPECT_TRUE(view.isEmpty());
}

} // namespace

} // namespace vellumry::expression
