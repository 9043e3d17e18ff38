#include "views/common/Icon.h"

#include <QImage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

/// The strongest pixel, unmultiplied.
QColor inkOf(const QPixmap& pixmap)
{
    const QImage image = pixmap.toImage();
    QColor ink(Qt::transparent);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > ink.alpha())
                ink = image.pixelColor(x, y);
        }
    }
    return ink;
}

TEST(IconTest, isDrawnInTheGivenColour)
{
    for (const QString& name : {u"magnifyingglass"_s, u"macwindow"_s, u"checkmark"_s}) {
        const QColor ink = inkOf(Icon(name).pixmap(48, QColor(0xC7, 0x10, 0x20), 1));
        EXPECT_EQ(ink, QColor(0xC7, 0x10, 0x20)) << qPrintable(name);
    }
}

TEST(IconTest, symbolsWithColoursKeepThem)
{
    for (const QString& name : {u"SidebarLogo"_s, u"vellumry"_s}) {
        const QColor ink = inkOf(Icon(name).pixmap(32, Qt::red, 1));
        EXPECT_EQ(ink.alpha(), 255) << qPrintable(name);
        EXPECT_NE(ink, QColor(Qt::red));
    }
}

TEST(IconTest, isMadeForTheScaleOfTheScreen)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0}) {
        const QPixmap pixmap = Icon(u"macwindow"_s).pixmap(20, Qt::white, ratio);
        EXPECT_EQ(pixmap.size(), QSize(qRound(20 * ratio), qRound(20 * ratio)));
        EXPECT_EQ(pixmap.devicePixelRatio(), ratio);
    }
}

TEST(IconTest, isDrawnOnceForEachLook)
{
    const Icon icon(u"checkmark"_s);
    const auto key = icon.pixmap(18, Qt::green, 1).cacheKey();
    EXPECT_EQ(icon.pixmap(18, Qt::green, 1).cacheKey(), key);
    EXPECT_NE(icon.pixmap(18, Qt::blue, 1).cacheKey(), key);
    EXPECT_NE(icon.pixmap(18, Qt::green, 2).cacheKey(), key);
    EXPECT_NE(icon.pixmap(20, Qt::green, 1).cacheKey(), key);
}

} // namespace
} // namespace vellumry
