#include "settings/CategoryColorService.h"

#include "support/MemoryPreferences.h"

#include <gtest/gtest.h>

using namespace vellumry;
using namespace vellumry::test;

namespace {

const QString key = QStringLiteral("categoryColors");
const QColor gray(0x86, 0x8c, 0x89);

class CategoryColorServiceTest : public testing::Test {
protected:
    void set(const QString& name, const QString& color)
    {
        auto colors = service.loadColors();
        colors.insert(name, color);
        service.saveColors(colors);
    }

    MemoryPreferences preferences;
    CategoryColorService service{preferences};
    const QString work = QStringLiteral("Work");
};

TEST_F(CategoryColorServiceTest, startsEmptyAndGray)
{
    EXPECT_TRUE(service.loadColors().isEmpty());
    EXPECT_EQ(service.getColor(work), gray);
    EXPECT_EQ(service.getColorHex(work), QStringLiteral("#868C89"));
}

TEST_F(CategoryColorServiceTest, keepsTheMapAsJSONInThePreferences)
{
    const QMap<QString, QString> colors{{work, QStringLiteral("red")},
                                        {QStringLiteral("Ünï \"x\""), QStringLiteral("#123456")}};
    service.saveColors(colors);
    EXPECT_EQ(service.loadColors(), colors);
    EXPECT_EQ(CategoryColorService(preferences).loadColors(), colors);
    service.saveColors({{work, QStringLiteral("red")}});
    EXPECT_EQ(preferences.data(key), QByteArray("{\"Work\":\"red\"}"));
}

TEST_F(CategoryColorServiceTest, whatIsNoMapOfTextsReadsAsEmptyUntilTheNextSave)
{
    for (const char* stored : {"", "no JSON", "[]", "[\"a\"]", "null", "{\"Work\":1}",
                               "{\"Work\":\"red\",\"x\":null}", "{\"Work\":\"red\"} and more"}) {
        preferences.setData(key, stored);
        EXPECT_TRUE(service.loadColors().isEmpty()) << stored;
        EXPECT_EQ(service.getColor(work), gray);
    }
    set(work, QStringLiteral("blue"));
    EXPECT_EQ(service.getColor(work), QColor(0x2f, 0x7b, 0xe0));
}

TEST_F(CategoryColorServiceTest, hasTwelvePresetsInTheOrderOfTheMenu)
{
    const QList<std::pair<const char*, const char*>> expected{
        {"gray", "#868C89"}, {"blue", "#2F7BE0"},   {"purple", "#9A5BD0"}, {"pink", "#E2508F"},
        {"red", "#DC463D"},  {"orange", "#EF8722"}, {"yellow", "#DFAE12"}, {"green", "#3C9F57"},
        {"mint", "#00C6BF"}, {"teal", "#30AFC6"},   {"cyan", "#54C9EF"},   {"indigo", "#5956D6"}};
    const auto presets = CategoryColorService::presetColors();
    ASSERT_EQ(presets.size(), 12u);
    for (size_t i = 0; i < presets.size(); ++i) {
        const auto& [name, hex] = expected[static_cast<qsizetype>(i)];
        EXPECT_EQ(presets[i].name, QLatin1StringView(name));
        EXPECT_EQ(toHex(presets[i].color), QLatin1StringView(hex));
        set(work, presets[i].name);
        EXPECT_EQ(service.getColor(work), presets[i].color);
        EXPECT_EQ(service.getColorHex(work), QLatin1StringView(hex));
    }
}

TEST_F(CategoryColorServiceTest, theLastFourPresetsAreFractionsAsTheyAreCut)
{
    const auto hex = [](float red, float green, float blue) {
        return toHex(QColor::fromRgbF(red, green, blue));
    };
    const auto presets = CategoryColorService::presetColors();
    EXPECT_EQ(toHex(presets[8].color), hex(0, 0.78F, 0.75F));
    EXPECT_EQ(toHex(presets[9].color), hex(0.19F, 0.69F, 0.78F));
    EXPECT_EQ(toHex(presets[10].color), hex(0.33F, 0.79F, 0.94F));
    EXPECT_EQ(toHex(presets[11].color), hex(0.35F, 0.34F, 0.84F));
}

TEST_F(CategoryColorServiceTest, showsAHexadecimalColor)
{
    set(work, QStringLiteral("#12AbfF"));
    EXPECT_EQ(service.getColor(work), QColor(0x12, 0xab, 0xff));
    EXPECT_EQ(service.getColor(QStringLiteral("Nobody")), gray);
}

TEST_F(CategoryColorServiceTest, whatIsNoColorShowsAsGray)
{
    for (const char* text : {"#zzzzzz", "#12", "#", "no preset", "", "Red", "12ABFF"}) {
        set(work, QLatin1StringView(text));
        EXPECT_EQ(service.getColor(work), gray) << text;
    }
}

TEST_F(CategoryColorServiceTest, givesAStoredHexadecimalTextBackUnchecked)
{
    for (const char* text : {"#12abff", "#", "#no color", "#12ABFF80"}) {
        set(work, QLatin1StringView(text));
        EXPECT_EQ(service.getColorHex(work), QLatin1StringView(text));
    }
    set(work, QStringLiteral("no preset"));
    EXPECT_EQ(service.getColorHex(work), std::nullopt);
}

TEST(ColorFromHexTest, readsSixAndEightDigits)
{
    EXPECT_EQ(colorFromHex(QStringLiteral("#12ABFF")), QColor(0x12, 0xab, 0xff));
    EXPECT_EQ(colorFromHex(QStringLiteral("12abff")), QColor(0x12, 0xab, 0xff));
    EXPECT_EQ(colorFromHex(QStringLiteral("#12ABFF80")), QColor(0x12, 0xab, 0xff, 128));
    EXPECT_EQ(colorFromHex(QStringLiteral("FFFFFFFF")), QColor(255, 255, 255, 255));
    EXPECT_EQ(colorFromHex(QStringLiteral("00000000")), QColor(0, 0, 0, 0));
    EXPECT_EQ(colorFromHex(QStringLiteral(" \t\n#12ABFF \r\n")), QColor(0x12, 0xab, 0xff));
    EXPECT_EQ(colorFromHex(QStringLiteral("1#2#A#B#F#F#")), QColor(0x12, 0xab, 0xff));
}

TEST(ColorFromHexTest, readsToTheFirstOtherCharacterButCountsThemAll)
{
    EXPECT_EQ(colorFromHex(QStringLiteral("12345G")), QColor(0x01, 0x23, 0x45));
    EXPECT_EQ(colorFromHex(QStringLiteral("F-----")), QColor(0, 0, 0x0f));
    EXPECT_EQ(colorFromHex(QStringLiteral("12345GGG")), QColor(0, 0x01, 0x23, 0x45));
    EXPECT_EQ(colorFromHex(QStringLiteral("0x1234")), QColor(0, 0, 0)) << "no prefix is known";
    EXPECT_EQ(colorFromHex(QStringLiteral("12 345")), QColor(0, 0, 0x12));
    EXPECT_EQ(colorFromHex(QStringLiteral("12345👍")), QColor(0x01, 0x23, 0x45))
        << "an emoji is one character";
}

TEST(ColorFromHexTest, refusesOtherCountsAndTextsWithoutANumber)
{
    for (const char* text : {"", "#", "###", "123", "12345", "1234567", "123456789", "GGGGGG",
                             "G12345", "------", "0123456789ABCDEF0"})
        EXPECT_EQ(colorFromHex(QLatin1StringView(text)), std::nullopt) << text;
}

TEST(ToHexTest, cutsEachChannelAndDropsAlpha)
{
    EXPECT_EQ(toHex(QColor(0x0a, 0xb0, 0xff, 3)), QStringLiteral("#0AB0FF"));
    EXPECT_EQ(toHex(QColor::fromRgbF(0.999F, 0.5F, 0.0F)), QStringLiteral("#FE7F00"));
    EXPECT_EQ(toHex(QColor::fromHsv(120, 255, 255)), QStringLiteral("#00FF00"));
    EXPECT_EQ(toHex(QColor()), QStringLiteral("#808080"));
}

TEST(ToHexTest, takesWhatLiesOutsideToTheNearest)
{
    EXPECT_EQ(toHex(QColor::fromRgbF(1.5F, -0.5F, 0.25F)), QStringLiteral("#FF003F"));
}

TEST(ToHexTest, comesBackFromATextOfItsOwn)
{
    for (int value = 0; value < 256; ++value) {
        const QString text = toHex(QColor(value, 255 - value, value));
        ASSERT_TRUE(colorFromHex(text));
        EXPECT_EQ(colorFromHex(text)->red(), value);
        EXPECT_EQ(toHex(*colorFromHex(text)), text);
    }
}

} // namespace
