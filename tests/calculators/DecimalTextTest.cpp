#include "calculators/DecimalText.h"

#include <QLocale>
#include <QRegularExpression>
#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

/// The rule as it is written: printf, and two regular expressions.
QString plainDecimalText(double value, int decimals)
{
    char buffer[400];
    if (std::trunc(value) == value && std::fabs(value) < 1e15) {
        std::snprintf(buffer, sizeof buffer, "%.0f", value);
        return QString::fromLatin1(buffer);
    }
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    QString text = QString::fromLatin1(buffer);
    static const QRegularExpression zerosAtTheEnd(u"0+$"_s);
    static const QRegularExpression pointAtTheEnd(u"\\.$"_s);
    text.replace(zerosAtTheEnd, QString());
    text.replace(pointAtTheEnd, QString());
    return text;
}

TEST(DecimalText, WholeNumbersHaveNoPoint)
{
    EXPECT_EQ(decimalText(5, 10), u"5"_s);
    EXPECT_EQ(decimalText(0, 10), u"0"_s);
    EXPECT_EQ(decimalText(-100, 10), u"-100"_s);
    EXPECT_EQ(decimalText(1200300, 10), u"1200300"_s);
    EXPECT_EQ(decimalText(999999999999999, 10), u"999999999999999"_s);
}

TEST(DecimalText, LargeNumbersAreWrittenOut)
{
    EXPECT_EQ(decimalText(1e15, 10), u"1000000000000000"_s);
    EXPECT_EQ(decimalText(-1e15, 4), u"-1000000000000000"_s);
    EXPECT_EQ(decimalText(1e23, 10), u"99999999999999991611392"_s);
    EXPECT_EQ(decimalText(std::numeric_limits<double>::max(), 10).size(), 309);
    EXPECT_EQ(decimalText(std::numeric_limits<double>::lowest(), 10).size(), 310);
}

TEST(DecimalText, FractionsLoseTheZerosAtTheirEnd)
{
    EXPECT_EQ(decimalText(0.5, 10), u"0.5"_s);
    EXPECT_EQ(decimalText(1.0 / 3, 10), u"0.3333333333"_s);
    EXPECT_EQ(decimalText(2.0 / 3, 4), u"0.6667"_s);
    EXPECT_EQ(decimalText(100.00000000001, 10), u"100"_s);
    EXPECT_EQ(decimalText(99.99999999999, 10), u"100"_s);
    EXPECT_EQ(decimalText(10.05, 10), u"10.05"_s);
    EXPECT_EQ(decimalText(999999999999999.5, 10), u"999999999999999.5"_s);
}

TEST(DecimalText, WhatIsTooSmallIsZeroWithItsSign)
{
    EXPECT_EQ(decimalText(1e-12, 10), u"0"_s);
    EXPECT_EQ(decimalText(-1e-12, 10), u"-0"_s);
    EXPECT_EQ(decimalText(-0.0, 10), u"-0"_s);
    EXPECT_EQ(decimalText(std::numeric_limits<double>::denorm_min(), 4), u"0"_s);
    EXPECT_EQ(decimalText(0.00005, 4), u"0.0001"_s); // a little more than a half
    EXPECT_EQ(decimalText(0.00015, 4), u"0.0001"_s); // a little less
    EXPECT_EQ(decimalText(-0.00004, 4), u"-0"_s);
}

TEST(DecimalText, ExactHalvesGoToTheEvenDigit)
{
    EXPECT_EQ(decimalText(0.03125, 4), u"0.0312"_s);
    EXPECT_EQ(decimalText(0.09375, 4), u"0.0938"_s);
    EXPECT_EQ(decimalText(0.00048828125, 10), u"0.0004882812"_s);
}

TEST(DecimalText, NoNumbersHaveTheNamesOfPrintf)
{
    EXPECT_EQ(decimalText(std::numeric_limits<double>::infinity(), 10), u"inf"_s);
    EXPECT_EQ(decimalText(-std::numeric_limits<double>::infinity(), 10), u"-inf"_s);
    EXPECT_EQ(decimalText(std::numeric_limits<double>::quiet_NaN(), 10), u"nan"_s);
}

TEST(DecimalText, IsTheSameInEveryLocale)
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(decimalText(1234567.5, 10), u"1234567.5"_s);
    QLocale::setDefault(before);
}

TEST(DecimalText, AgreesWithTheRuleForAllSortsOfNumbers)
{
    std::mt19937_64 random(20260101);
    std::uniform_real_distribution<double> exponent(-20, 20);
    std::uniform_int_distribution<int> hundredths(-1'000'000, 1'000'000);
    for (int i = 0; i < 5000; ++i) {
        const auto anyBits = std::bit_cast<double>(random());
        const double anySize = std::pow(10.0, exponent(random));
        for (const double value :
             {std::isnan(anyBits) ? 0.0 : anyBits, anySize, -anySize, std::trunc(anySize),
              hundredths(random) / 100.0, hundredths(random) / 32768.0}) {
            ASSERT_EQ(decimalText(value, 10), plainDecimalText(value, 10)) << value;
            ASSERT_EQ(decimalText(value, 4), plainDecimalText(value, 4)) << value;
        }
    }
}

} // namespace
} // namespace vellumry
