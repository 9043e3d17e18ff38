#include "calculators/UnitConversionService.h"

#include "calculators/PlainPatterns.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <random>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

/// A query with the row that it gives.
struct Conversion {
    QString query;
    QString expression;
    QString text;
};

class ConversionTest : public testing::TestWithParam<Conversion> {};

TEST_P(ConversionTest, GivesTheRow)
{
    const auto result = UnitConversionService::convert(GetParam().query);
    ASSERT_TRUE(result) << qPrintable(GetParam().query);
    EXPECT_EQ(result->expression, GetParam().expression);
    EXPECT_EQ(result->formattedValue, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Units, ConversionTest,
                         testing::Values(Conversion{u"10 cm="_s, u"10 cm"_s, u"3.937 inches"_s},
                                         Conversion{u"10 inch="_s, u"10 inch"_s, u"25.4 cm"_s},
                                         Conversion{u"10 inches="_s, u"10 inches"_s, u"25.4 cm"_s},
                                         Conversion{u"10 in="_s, u"10 in"_s, u"25.4 cm"_s},
                                         Conversion{u"5\"="_s, u"5 \""_s, u"12.7 cm"_s},
                                         Conversion{u"5 ft="_s, u"5 ft"_s, u"1.524 m"_s},
                                         Conversion{u"5 feet="_s, u"5 feet"_s, u"1.524 m"_s},
                                         Conversion{u"5'="_s, u"5 '"_s, u"1.524 m"_s},
                                         Conversion{u"1 m="_s, u"1 m"_s, u"3.2808 ft"_s},
                                         Conversion{u"10 km="_s, u"10 km"_s, u"6.2137 miles"_s},
                                         Conversion{u"10 mi="_s, u"10 mi"_s, u"16.0934 km"_s},
                                         Conversion{u"1 mile="_s, u"1 mile"_s, u"1.6093 km"_s},
                                         Conversion{u"10 miles="_s, u"10 miles"_s, u"16.0934 km"_s},
                                         Conversion{u"1 lb="_s, u"1 lb"_s, u"0.4536 kg"_s},
                                         Conversion{u"150 lbs="_s, u"150 lbs"_s, u"68.0389 kg"_s},
                                         Conversion{u"70 kg="_s, u"70 kg"_s, u"154.3236 lb"_s},
                                         Conversion{u"10 g="_s, u"10 g"_s, u"0.022 lb"_s},
                                         Conversion{u"500 ml="_s, u"500 ml"_s, u"16.907 oz"_s},
                                         Conversion{u"12 oz="_s, u"12 oz"_s, u"354.882 ml"_s},
                                         Conversion{u"1 cup="_s, u"1 cup"_s, u"8 oz"_s},
                                         Conversion{u"2.5 cups="_s, u"2.5 cups"_s, u"20 oz"_s}));

INSTANTIATE_TEST_SUITE_P(Temperatures, ConversionTest,
                         testing::Values(Conversion{u"100 C="_s, u"100 °C"_s, u"212 °F"_s},
                                         Conversion{u"100 c="_s, u"100 °C"_s, u"212 °F"_s},
                                         Conversion{u"100 °C="_s, u"100 °C"_s, u"212 °F"_s},
                                         Conversion{u"100 °c="_s, u"100 °C"_s, u"212 °F"_s},
                                         Conversion{u"32 f="_s, u"32 °F"_s, u"0 °C"_s},
                                         Conversion{u"32 F="_s, u"32 °F"_s, u"0 °C"_s},
                                         Conversion{u"32 °F="_s, u"32 °F"_s, u"0 °C"_s},
                                         Conversion{u"32 °f="_s, u"32 °F"_s, u"0 °C"_s},
                                         Conversion{u"-40 f="_s, u"-40 °F"_s, u"-40 °C"_s},
                                         Conversion{u"-40 c="_s, u"-40 °C"_s, u"-40 °F"_s},
                                         Conversion{u"98.6f="_s, u"98.6 °F"_s, u"37 °C"_s},
                                         Conversion{u"37.5 C="_s, u"37.5 °C"_s, u"99.5 °F"_s}));

INSTANTIATE_TEST_SUITE_P(Blanks, ConversionTest,
                         testing::Values(Conversion{u"10km="_s, u"10 km"_s, u"6.2137 miles"_s},
                                         Conversion{u"10km ="_s, u"10 km"_s, u"6.2137 miles"_s},
                                         Conversion{u"10 km ="_s, u"10 km"_s, u"6.2137 miles"_s},
                                         Conversion{u"  10 km=  "_s, u"10 km"_s, u"6.2137 miles"_s},
                                         Conversion{u"\t\u00A0"
                                                    "10 km=\u3000"_s,
                                                    u"10 km"_s, u"6.2137 miles"_s}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, ConversionTest,
    testing::Values(Conversion{u"1. km="_s, u"1 km"_s, u"0.6214 miles"_s},
                    Conversion{u"1.km="_s, u"1 km"_s, u"0.6214 miles"_s},
                    Conversion{u"-3.25 km="_s, u"-3.25 km"_s, u"-2.0195 miles"_s},
                    Conversion{u"007 km="_s, u"7 km"_s, u"4.3496 miles"_s},
                    Conversion{u"0 km="_s, u"0 km"_s, u"0 miles"_s},
                    Conversion{u"-0 km="_s, u"-0 km"_s, u"-0 miles"_s},
                    Conversion{u"0.00001 cm="_s, u"0 cm"_s, u"0 inches"_s},
                    Conversion{u"-0.00001 cm="_s, u"-0 cm"_s, u"-0 inches"_s},
                    Conversion{u"1000000000000000 cups="_s, u"1000000000000000 cups"_s,
                               u"8000000000000000 oz"_s},
                    Conversion{u"3.14159265 m="_s, u"3.1416 m"_s, u"10.3071 ft"_s}));

class NoConversionTest : public testing::TestWithParam<QString> {};

TEST_P(NoConversionTest, GivesNoRow)
{
    EXPECT_FALSE(UnitConversionService::convert(GetParam())) << qPrintable(GetParam());
}

INSTANTIATE_TEST_SUITE_P(Trigger, NoConversionTest,
                         testing::Values(u""_s, u"="_s, u" = "_s, u"10 km"_s, u"10 km=="_s,
                                         u"10 km=\n"_s, u"\n10 km="_s, u"10 km=x"_s, u"x10 km="_s));

INSTANTIATE_TEST_SUITE_P(Blanks, NoConversionTest,
                         testing::Values(u"10  km="_s, u"10 km  ="_s, u"10\tkm="_s,
                                         u"10\u00A0km="_s, u"10 km\t="_s, u"- 10 km="_s,
                                         u"1 0 km="_s, u"10 k m="_s));

INSTANTIATE_TEST_SUITE_P(Numbers, NoConversionTest,
                         testing::Values(u"km="_s, u" km="_s, u"-km="_s, u".5 km="_s, u"-.5 km="_s,
                                         u"+5 km="_s, u"--5 km="_s, u"1.2.3 km="_s, u"1..2 km="_s,
                                         u"1,5 km="_s, u"1e3 km="_s, u"0x10 km="_s, u"\u0661 km="_s,
                                         u"\uFF11 km="_s, u"1="_s, u"1.="_s, u"1. ="_s));

INSTANTIATE_TEST_SUITE_P(Units, NoConversionTest,
                         testing::Values(u"10 KM="_s, u"10 Cm="_s, u"10 cM="_s, u"10 M="_s,
                                         u"10 G="_s, u"10 IN="_s, u"10 l="_s, u"10 yd="_s,
                                         u"10 t="_s, u"10 mm="_s, u"10 °K="_s, u"10 °="_s,
                                         u"10 ° C="_s, u"10 cupss="_s, u"10 kms="_s, u"10 ''="_s,
                                         u"10 km m="_s, u"10 km to m="_s, u"10 \u2032="_s,
                                         u"10 \u2103="_s));

TEST(UnitConversion, HasTheNumberInFull)
{
    EXPECT_EQ(UnitConversionService::convert(u"10 km="_s)->value, 10 / 1.609344);
    EXPECT_EQ(UnitConversionService::convert(u"10 g="_s)->value, 10 / 453.59237);
    EXPECT_EQ(UnitConversionService::convert(u"0.00001 cm="_s)->value, 0.00001 / 2.54);
}

TEST(UnitConversion, TheOperationsStandInTheirOrder)
{
    // Another order gives another last digit.
    volatile double v = 1.5;
    EXPECT_NE((v - 32) * 5 / 9, (v - 32) * (5.0 / 9));
    EXPECT_EQ(UnitConversionService::convert(u"1.5 f="_s)->value, (v - 32) * 5 / 9);
    v = 3.6;
    EXPECT_NE(v * 9 / 5 + 32, v * (9.0 / 5) + 32);
    EXPECT_EQ(UnitConversionService::convert(u"3.6 c="_s)->value, v * 9 / 5 + 32);
}

TEST(UnitConversion, ANumberBeyondAllDoublesIsNone)
{
    EXPECT_FALSE(UnitConversionService::convert(QString(400, u'9') + u" km="_s));
    EXPECT_EQ(UnitConversionService::convert(u"1"_s + QString(300, u'0') + u" cups="_s)->value,
              8e300);
}

TEST(UnitConversion, MatchesExactlyWhatThePatternMatches)
{
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(test::conversionPattern.toString()));
    ASSERT_TRUE(pattern.isValid());
    const QStringList pieces{u"1"_s,  u"20"_s, u"."_s,    u"-"_s,   u" "_s,  u"="_s,  u"k"_s,
                             u"m"_s,  u"c"_s,  u"in"_s,   u"ch"_s,  u"es"_s, u"\""_s, u"'"_s,
                             u"ft"_s, u"°"_s,  u"F"_s,    u"f"_s,   u"C"_s,  u"g"_s,  u"l"_s,
                             u"b"_s,  u"s"_s,  u"mile"_s, u"cup"_s, u"oz"_s, u"mi"_s, u"feet"_s};
    std::mt19937 random(20260101);
    std::uniform_int_distribution<qsizetype> anyPiece(0, pieces.size() - 1);
    std::uniform_int_distribution<int> anyCount(0, 3);
    int matches = 0;
    for (int i = 0; i < 200000; ++i) {
        // Never a blank at the ends, since the pattern sees the trimmed text.
        QString text = pieces[i % 2];
        for (int count = anyCount(random); count >= 0; --count)
            text += pieces[anyPiece(random)];
        text += u'=';
        const bool isMatch = pattern.match(text).hasMatch();
        ASSERT_EQ(UnitConversionService::convert(text).has_value(), isMatch) << qPrintable(text);
        matches += isMatch ? 1 : 0;
    }
    EXPECT_GT(matches, 1000);
}

} // namespace
} // namespace vellumry
