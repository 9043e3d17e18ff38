#include "views/common/Theme.h"

#include <QApplication>
#include <QSignalSpy>
#include <QWindow>
#include <gtest/gtest.h>

#include <cmath>

namespace vellumry::test {
namespace {

QColor over(const QColor& top, const QColor& ground)
{
    const auto mix = [&](float a, float b) { return a * top.alphaF() + b * (1 - top.alphaF()); };
    return QColor::fromRgbF(mix(top.redF(), ground.redF()), mix(top.greenF(), ground.greenF()),
                            mix(top.blueF(), ground.blueF()));
}

double luminance(const QColor& color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// The contrast of two colours as the web's guidelines compute it.
double contrast(const QColor& a, const QColor& b)
{
    const double one = luminance(a);
    const double other = luminance(b);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

class ThemeTest : public testing::TestWithParam<ColorScheme> {};
INSTANTIATE_TEST_SUITE_P(Schemes, ThemeTest,
                         testing::Values(ColorScheme::light, ColorScheme::dark));

TEST_P(ThemeTest, TextsCanBeReadOnTheirGrounds)
{
    constexpr double readable = 4.5;
    const ColorTokens& token = colorTokens(GetParam());
    for (const QColor& ground : {token.sidebar, token.list, token.editor, token.sheet, token.card,
                                 token.cardHover, token.cardSelected, token.field, token.group}) {
        EXPECT_GE(contrast(token.textPrimary, ground), readable);
        EXPECT_GE(contrast(token.textSecondary, ground), readable);
        EXPECT_GE(contrast(token.textTertiary, ground), readable) << ground.name().toStdString();
        EXPECT_GE(contrast(token.accent, ground), readable);
        EXPECT_GE(contrast(token.focusRing, ground), 3);
    }
    EXPECT_GE(contrast(token.textSecondary, over(token.rowSelected, token.sidebar)), readable);
    EXPECT_GE(contrast(token.accent, over(token.accentTint, token.sidebar)), readable);
    EXPECT_GE(contrast(token.onAccent, token.accentFill), readable);
    EXPECT_GE(contrast(token.onAccent, token.accentFillHover), readable);
    EXPECT_GE(contrast(token.onDanger, token.dangerFill), readable);
    EXPECT_GE(contrast(token.danger, over(token.dangerTint, token.sheet)), readable);
    EXPECT_GE(contrast(token.warning, over(token.warningTint, token.sheet)), readable);
    EXPECT_GE(contrast(token.success, token.card), readable);
    EXPECT_GE(contrast(token.keycapText, token.keycap), readable);
    EXPECT_GE(contrast(token.tooltipText, token.tooltip), readable);
}

TEST_P(ThemeTest, ThePaletteIsOfTheScheme)
{
    const Theme theme(GetParam(), 1);
    const QPalette palette = theme.palette();
    EXPECT_EQ(palette.color(QPalette::Window), theme.colors().window);
    EXPECT_EQ(palette.color(QPalette::Text), theme.colors().textPrimary);
    EXPECT_EQ(palette.color(QPalette::PlaceholderText), theme.colors().textTertiary);
}

TEST(ThemeChangeTest, TellsOfChangesAndOnlyOfThem)
{
    Theme theme(ColorScheme::light, 1);
    const QSignalSpy changed(&theme, &Theme::changed);
    theme.setScheme(ColorScheme::light);
    theme.setTextScale(1);
    EXPECT_EQ(changed.size(), 0);
    theme.setScheme(ColorScheme::dark);
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(theme.colors().window, colorTokens(ColorScheme::dark).window);
    theme.setTextScale(1.2);
    EXPECT_EQ(changed.size(), 2);
}

TEST(ThemeChangeTest, TheTextFollowsTheDesktopsFontWhereAskedTo)
{
    Theme theme(ColorScheme::light, 1.6);
    const QSignalSpy changed(&theme, &Theme::changed);
    QEvent event(QEvent::ApplicationFontChange);
    QApplication::sendEvent(qApp, &event);
    EXPECT_EQ(theme.textScale(), 1.6);
    theme.followSystemFont();
    QApplication::sendEvent(qApp, &event);
    EXPECT_EQ(theme.textScale(), Theme::systemTextScale());
    EXPECT_LT(theme.textScale(), 1.6);
    EXPECT_EQ(changed.size(), 1);

    theme.setTextScale(1.6);
    QWindow window;
    QEvent another(QEvent::ThemeChange);
    QApplication::sendEvent(&window, &another);
    EXPECT_EQ(theme.textScale(), Theme::systemTextScale());
    EXPECT_EQ(changed.size(), 3);
}

TEST(ThemeChangeTest, AChangeOfTheDesktopsFontIsToldOnceForAllWindows)
{
    Theme theme(ColorScheme::light, 1.6); // As if the desktop's font had been large until now.
    theme.followSystemFont();
    const QSignalSpy changed(&theme, &Theme::changed);
    QWindow window;
    QWindow another;
    QEvent themeChange(QEvent::ThemeChange);
    QEvent fontChange(QEvent::ApplicationFontChange);
    QApplication::sendEvent(&window, &themeChange);
    EXPECT_EQ(changed.size(), 1);
    QApplication::sendEvent(&another, &themeChange);
    QApplication::sendEvent(qApp, &fontChange);
    EXPECT_EQ(changed.size(), 1);
}

TEST(ThemeChangeTest, FontsAndLinesFollowTheTextScaleWithinLimits)
{
    Theme theme(ColorScheme::light, 1);
    EXPECT_EQ(theme.font(TextStyle::body).pixelSize(), 13);
    EXPECT_EQ(theme.font(TextStyle::hero).pixelSize(), 24);
    EXPECT_EQ(theme.font(TextStyle::hero).weight(), QFont::DemiBold);
    EXPECT_EQ(theme.lineHeight(TextStyle::body), 18);
    EXPECT_EQ(theme.rowHeight(32, TextStyle::body), 32);
    theme.setTextScale(5);
    EXPECT_EQ(theme.textScale(), 1.6);
    EXPECT_EQ(theme.font(TextStyle::body).pixelSize(), 21);
    EXPECT_EQ(theme.lineHeight(TextStyle::body), 29);
    EXPECT_GT(theme.rowHeight(32, TextStyle::body), 32);
    theme.setTextScale(0.1);
    EXPECT_EQ(theme.textScale(), 0.85);
}

} // namespace
} // namespace vellumry::test
