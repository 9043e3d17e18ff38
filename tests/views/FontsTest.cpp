#include "views/common/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

TEST(FontsTest, hasTheGivenSizeAndWeight)
{
    const QFont font = uiFont(14, QFont::Medium);
    EXPECT_EQ(font.pixelSize(), 14);
    EXPECT_EQ(font.weight(), QFont::Medium);
    EXPECT_EQ(uiFont(11).weight(), QFont::Normal);
}

TEST(FontsTest, anInstalledFamilyLeadsAndColourEmojiComeSecond)
{
    const QStringList families = uiFont(14).families();
    ASSERT_GE(families.size(), 2);
    EXPECT_TRUE(QFontDatabase::hasFamily(families[0])) << qPrintable(families[0]);
    EXPECT_EQ(families[1], u"Noto Color Emoji"_s);
}

TEST(FontsTest, blanksAndDigitsAreNotThoseOfTheEmojiFont)
{
    const QFontMetricsF metrics(uiFont(100));
    EXPECT_LT(metrics.horizontalAdvance(u' '), 50);
    EXPECT_LT(metrics.horizontalAdvance(u'0'), 75);
}

TEST(FontsTest, monospacedCharactersAreOfOneWidth)
{
    EXPECT_TRUE(QFontDatabase::hasFamily(u"JetBrains Mono"_s));
    const QFont font = monoFont(22, QFont::Medium);
    EXPECT_EQ(font.pixelSize(), 22);
    EXPECT_EQ(font.weight(), QFont::Medium);
    const QFontMetricsF metrics(font);
    EXPECT_EQ(metrics.horizontalAdvance(u"iiii"_s), metrics.horizontalAdvance(u"WWWW"_s));
}

TEST(FontsTest, monospacedCharactersAreNotDrawnTogether)
{
    const auto drawn = [](const QStringList& parts) {
        QImage image(400, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setFont(monoFont(40));
        painter.setPen(Qt::white);
        qreal x = 10;
        for (const QString& part : parts) {
            painter.drawText(QPointF(x, 45), part);
            x += painter.fontMetrics().horizontalAdvance(u'x') * static_cast<qreal>(part.size());
        }
        painter.end();
        return image;
    };
    for (const auto& [first, second] :
         {std::pair(u'-', u'>'), {u'!', u'='}, {u'=', u'='}, {u'<', u'='}, {u'|', u'|'}})
        EXPECT_EQ(drawn({QString(first) + QChar(second)}), drawn({QString(first), QString(second)}))
            << int(QChar(first).unicode());
}

} // namespace
} // namespace vellumry
