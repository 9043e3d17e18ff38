#include "calculators/MathCalculatorService.h"

#include "calculators/PlainPatterns.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using Service = MathCalculatorService;

// Is it a calculation?

struct Query {
    QString text;
    std::optional<QString> expression;
};

class ExtractMathExpressionTest : public testing::TestWithParam<Query> {};

TEST_P(ExtractMathExpressionTest, GivesTheExpression)
{
    EXPECT_EQ(Service::extractMathExpression(GetParam().text), GetParam().expression)
        << qPrintable(GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Trigger, ExtractMathExpressionTest,
                         testing::Values(Query{u"2+3="_s, u"2+3"_s}, Query{u"2+3 ="_s, u"2+3"_s},
                                         Query{u"  2+3=  "_s, u"2+3"_s},
                                         Query{u"\t\u00A0"
                                               "2+3\u3000=\u2003"_s,
                                               u"2+3"_s},
                                         Query{u"2 + 3="_s, u"2 + 3"_s},
                                         Query{u"2+3=="_s, u"2+3="_s}, Query{u"2+3"_s, {}},
                                         Query{u"2+3=x"_s, {}}, Query{u""_s, {}}, Query{u"="_s, {}},
                                         Query{u" = "_s, {}}, Query{u"=2+3"_s, {}},
                                         Query{u"2+3=\n"_s, {}},
                                         Query{u"\n2+3\n="_s, u"\n2+3\n"_s}));

INSTANTIATE_TEST_SUITE_P(Operators, ExtractMathExpressionTest,
                         testing::Values(Query{u"1+1="_s, u"1+1"_s}, Query{u"1-1="_s, u"1-1"_s},
                                         Query{u"1*1="_s, u"1*1"_s}, Query{u"1/1="_s, u"1/1"_s},
                                         Query{u"1^1="_s, u"1^1"_s}, Query{u"1%1="_s, u"1%1"_s},
                                         Query{u"(1="_s, u"(1"_s}, Query{u"1)="_s, u"1)"_s},
                                         Query{u"5="_s, {}}, Query{u"1,2="_s, {}},
                                         Query{u"1<2="_s, {}}, Query{u"1×2="_s, {}},
                                         Query{u"a+b="_s, {}}, Query{u"+="_s, {}},
                                         Query{u"pi*2="_s, u"pi*2"_s}, Query{u"pi*e="_s, {}}));

INSTANTIATE_TEST_SUITE_P(Functions, ExtractMathExpressionTest,
                         testing::Values(Query{u"sqrt 9="_s, u"sqrt 9"_s},
                                         Query{u"climax 5="_s, u"climax 5"_s},
                                         Query{u"SQRT 9="_s, u"SQRT 9"_s},
                                         Query{u"atan2="_s, u"atan2"_s}, Query{u"sqrt="_s, {}},
                                         Query{u"mod 5="_s, {}}, Query{u"sqrt(x)="_s, {}}));

// Any character with the property of a number counts, but not a letter that stands for a number.
INSTANTIATE_TEST_SUITE_P(
    Digits, ExtractMathExpressionTest,
    testing::Values(Query{u"x+\u0663="_s, u"x+\u0663"_s}, // Arabic 3
                    Query{u"x+½="_s, u"x+½"_s}, Query{u"x+²="_s, u"x+²"_s},
                    Query{u"x+Ⅷ="_s, u"x+Ⅷ"_s},                   // Roman 8
                    Query{u"x+\u3288="_s, u"x+\u3288"_s},         // a circled ideograph
                    Query{u"x+\U0001D7DA="_s, u"x+\U0001D7DA"_s}, // double-struck 2
                    Query{u"max \u0663="_s, u"max \u0663"_s}, Query{u"x+三="_s, {}}));

TEST(MathCalculator, FunctionNamesCountAnywhereInAnyCase)
{
    for (const QString& text :
         {u"sqrt"_s, u"pow"_s, u"abs"_s,      u"floor"_s,   u"ceil"_s,     u"round"_s,     u"sin"_s,
          u"cos"_s,  u"tan"_s, u"asin"_s,     u"acos"_s,    u"atan"_s,     u"log"_s,       u"exp"_s,
          u"max"_s,  u"min"_s, u"climax 5"_s, u"MINUTES"_s, u"Business"_s, u"eXpression"_s})
        EXPECT_TRUE(Service::containsMathFunction(text)) << qPrintable(text);
    for (const QString& text :
         {u""_s, u"sq rt"_s, u"mod"_s, u"ln"_s, u"pi"_s, u"sum"_s, u"\u017Fin"_s})
        EXPECT_FALSE(Service::containsMathFunction(text)) << qPrintable(text);
}

// The calculation

struct Calculation {
    QString expression;
    QString text;
};

class CalculationTest : public testing::TestWithParam<Calculation> {};

TEST_P(CalculationTest, GivesTheRow)
{
    const test::LogCapture log;
    const auto result = Service::calculate(GetParam().expression);
    ASSERT_TRUE(result) << qPrintable(GetParam().expression) << ' '
                        << qPrintable(log.lines.join(u'\n'));
    EXPECT_EQ(result->expression, GetParam().expression);
    EXPECT_EQ(result->formattedValue, GetParam().text);
    EXPECT_TRUE(log.lines.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Arithmetic, CalculationTest,
    testing::Values(Calculation{u"2+3"_s, u"5"_s}, Calculation{u"2+3*4"_s, u"14"_s},
                    Calculation{u"(2+3)*4"_s, u"20"_s}, Calculation{u"48*1.19"_s, u"57.12"_s},
                    Calculation{u"10%3"_s, u"1"_s}, Calculation{u"1/3"_s, u"0.3333333333"_s},
                    Calculation{u"-2*3"_s, u"-6"_s}, Calculation{u"0*-1"_s, u"-0"_s},
                    Calculation{u"0.1+0.2"_s, u"0.3"_s}, Calculation{u"1/1000000000000"_s, u"0"_s},
                    Calculation{u"pi*2"_s, u"6.2831853072"_s},
                    Calculation{u"e*2"_s, u"5.4365636569"_s},
                    Calculation{u"1000000*1000000000"_s, u"1000000000000000"_s},
                    Calculation{u"sqrt(2)"_s, u"1.4142135624"_s},
                    Calculation{u"max(1, 2, 3)"_s, u"3"_s}, Calculation{u"round(-2.5)"_s, u"-3"_s},
                    Calculation{u"log(e*e)"_s, u"2"_s}));

INSTANTIATE_TEST_SUITE_P(
    Powers, CalculationTest,
    testing::Values(Calculation{u"2^10"_s, u"1024"_s}, Calculation{u"2 ^ 0.5"_s, u"1.4142135624"_s},
                    Calculation{u"-2^2"_s, u"-4"_s}, Calculation{u"2.5^2"_s, u"6.25"_s},
                    Calculation{u"2^3+3^2"_s, u"17"_s}, Calculation{u"2^3*2^3"_s, u"64"_s},
                    Calculation{u"2\t^\u00A0"
                                "3"_s,
                                u"8"_s},
                    Calculation{u"(2^3)"_s, u"8"_s}, Calculation{u"sqrt(3^2+4^2)"_s, u"5"_s},
                    Calculation{u"10^15"_s, u"1000000000000000"_s}));

TEST(MathCalculator, PowersOfPlainNumbersBecomeCalls)
{
    EXPECT_EQ(Service::rewritePowers(u"2^10"_s), u"pow(2,10)"_s);
    EXPECT_EQ(Service::rewritePowers(u"2^3^2"_s), u"pow(2,3)^2"_s);
    EXPECT_EQ(Service::rewritePowers(u"2^3^2^4"_s), u"pow(2,3)^pow(2,4)"_s);
    EXPECT_EQ(Service::rewritePowers(u"(1+1)^2"_s), u"(1+1)^2"_s);
    EXPECT_EQ(Service::rewritePowers(u"x^2"_s), u"x^2"_s);
    EXPECT_EQ(Service::rewritePowers(u"x2^3"_s), u"xpow(2,3)"_s);
    EXPECT_EQ(Service::rewritePowers(u"-2^2"_s), u"-pow(2,2)"_s);
    EXPECT_EQ(Service::rewritePowers(u"2.5^.5"_s), u"2.5^.5"_s);
    EXPECT_EQ(Service::rewritePowers(u"2.^3."_s), u"pow(2.,3.)"_s);
    EXPECT_EQ(Service::rewritePowers(u"1.2.3^2"_s), u"1.pow(2.3,2)"_s);
    EXPECT_EQ(Service::rewritePowers(u"1e3^2"_s), u"1epow(3,2)"_s);
    EXPECT_EQ(Service::rewritePowers(u"2 \t^\u3000 3"_s), u"pow(2,3)"_s);
    EXPECT_EQ(Service::rewritePowers(u"2\v^3"_s), u"2\v^3"_s);
    EXPECT_EQ(Service::rewritePowers(u"\u0663^\uFF12"_s), u"pow(\u0663,\uFF12)"_s);
    EXPECT_EQ(Service::rewritePowers(u"^"_s), u"^"_s);
}

TEST(MathCalculator, FindsThePowersThatThePatternFinds)
{
    const QRegularExpression pattern(test::powerPattern.toString());
    ASSERT_TRUE(pattern.isValid());
    const QStringList pieces{u"1"_s,      u"23"_s, u"."_s, u"^"_s, u" "_s,      u"\t"_s,
                             u"\u00A0"_s, u"\v"_s, u"x"_s, u"-"_s, u"\u0663"_s, u"\U0001D7DA"_s};
    std::mt19937 random(20260101);
    std::uniform_int_distribution<qsizetype> anyPiece(0, pieces.size() - 1);
    int rewritten = 0;
    for (int i = 0; i < 100000; ++i) {
        QString text;
        for (int count = 3 + i % 8; count >= 0; --count)
            text += pieces[anyPiece(random)];
        const QString expected = QString(text).replace(pattern, u"pow(\\1,\\2)"_s);
        ASSERT_EQ(Service::rewritePowers(text), expected) << qPrintable(text);
        rewritten += expected != text ? 1 : 0;
    }
    EXPECT_GT(rewritten, 5000);
}

TEST(MathCalculator, APowerIsFoundBehindALongText)
{
    // The pattern as it stands takes minutes: its time grows with the square of the length.
    const QString digits = QString(1000000, u'1') + u'x';
    EXPECT_EQ(Service::rewritePowers(digits + u"2^3"_s), digits + u"pow(2,3)"_s);
    EXPECT_EQ(Service::rewritePowers(u"1^"_s.repeated(100000)), u"pow(1,1)^"_s.repeated(50000));
}

struct Failure {
    QString expression;
    QString description;
};

class FailingCalculationTest : public testing::TestWithParam<Failure> {};

TEST_P(FailingCalculationTest, IsLoggedWithTheExpressionAsItWasTyped)
{
    const test::LogCapture log;
    EXPECT_FALSE(Service::calculate(GetParam().expression));
    EXPECT_EQ(log.lines, QStringList{u"MathCalculator: Failed to evaluate '"_s +
                                     GetParam().expression + u"' - "_s + GetParam().description});
}

INSTANTIATE_TEST_SUITE_P(Powers, FailingCalculationTest,
                         testing::Values(Failure{u"(2)^2"_s, u"Undefined infix operator ^"_s},
                                         Failure{u"x^2"_s, u"Undefined variable x"_s},
                                         Failure{u"2^(2)"_s, u"Undefined infix operator ^"_s},
                                         Failure{u"2^-2"_s, u"Undefined postfix operator ^"_s},
                                         Failure{u"2.^3."_s, u"Undefined postfix operator ."_s},
                                         Failure{u"2^3^2"_s, u"Undefined infix operator ^"_s},
                                         Failure{u"2\n\v^2"_s,
                                                 u"Unexpected token `\v^2`"_s}, // no \s
                                         Failure{u"\u0663^2"_s, u"Undefined variable \u0663"_s}));

INSTANTIATE_TEST_SUITE_P(
    Others, FailingCalculationTest,
    testing::Values(Failure{u"2+"_s, u"Undefined postfix operator +"_s},
                    Failure{u"sqrt 9"_s, u"Unexpected token `9`"_s},
                    Failure{u"exp(1)"_s, u"Undefined function exp()"_s},
                    Failure{u"max(1)"_s, u"Function max() expects at least 2 arguments"_s},
                    Failure{u"1 2"_s, u"Unexpected token `2`"_s},
                    Failure{u"(1"_s, u"Missing `)`"_s}, Failure{u""_s, u"Empty expression"_s},
                    Failure{u"2+3="_s, u"Undefined postfix operator ="_s},
                    Failure{u"三+1"_s, u"Undefined variable 三"_s}));

TEST(MathCalculator, WhatIsNoNumberGivesNoRowInSilence)
{
    const test::LogCapture log;
    for (const QString& expression : {u"1/0"_s, u"-1/0"_s, u"0/0"_s, u"sqrt(-1)"_s, u"10^400"_s})
        EXPECT_FALSE(Service::calculate(expression)) << qPrintable(expression);
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST(MathCalculator, HasTheNumberInFull)
{
    EXPECT_EQ(Service::calculate(u"1/3"_s)->value, 1.0 / 3);
    EXPECT_EQ(Service::calculate(u"e"_s)->value, std::numbers::e);
    EXPECT_TRUE(std::signbit(Service::calculate(u"0*-1"_s)->value));
}

TEST(MathCalculator, ResultsHaveAtMostTenDecimals)
{
    EXPECT_EQ(Service::formatResult(5), u"5"_s);
    EXPECT_EQ(Service::formatResult(0.5), u"0.5"_s);
    EXPECT_EQ(Service::formatResult(1.0 / 3), u"0.3333333333"_s);
    EXPECT_EQ(Service::formatResult(1e-11), u"0"_s);
    EXPECT_EQ(Service::formatResult(1e15), u"1000000000000000"_s);
}

} // namespace
} // namespace vellumry
