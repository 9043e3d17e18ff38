// The states of the palette as pictures. With VELLUMRY_SCREENSHOTS set to a folder they are written
// there, to be looked at; in any case each must show what it is about.

#include "views/PaletteFixture.h"

#include <QDir>
#include <QSet>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class PalettePictures : public PaletteFixture {
protected:
    PalettePictures()
    {
        storage.snippets = {
            snippet(u"Refund confirmation"_s, clock.now() - 5min, 12, u"Support"_s),
            snippet(u"Deploy to 10 km = staging"_s, clock.now() - 3h, 7),
            snippet(u"A title that is so long that it takes all of the room of its row and is cut"_s
                    u" where the trailing text begins"_s,
                    {}, 3),
            snippet(u"Short"_s, {}, 2, QString(120, u'w')),
            snippet(u"gyÄ 😀 日本"_s, {}, 1),
        };
    }

    /// The picture must have each of the colours.
    void picture(const QString& name, const QList<QColor>& colors)
    {
        QCoreApplication::processEvents();
        const QImage image = view().grab().toImage();
        QSet<QRgb> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                found.insert(image.pixel(x, y));
        for (const QColor& color : colors)
            EXPECT_TRUE(found.contains(color.rgb())) << qPrintable(name);
        const QString folder = qEnvironmentVariable("VELLUMRY_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        EXPECT_TRUE(QDir().mkpath(folder));
        EXPECT_TRUE(image.save(folder + u'/' + name + u".png"_s));
    }

    /// All that it can show.
    void pictures(const QString& suffix)
    {
        open();
        field().clearFocus(); // whose caret blinks
        picture(u"palette-start"_s + suffix, {ground, selected, dot});
        moveTo(u"id-Short"_s);
        picture(u"palette-hover"_s + suffix, {selected, hovered});
        type(u"10 km="_s);
        field().clearFocus();
        picture(u"palette-calculator"_s + suffix, {selected, orange, dot});
        ask(u"/rand:24"_s);
        picture(u"palette-passwords"_s + suffix, {orange, pink, green});
        ask(u"zebra"_s);
        picture(u"palette-empty"_s + suffix, {ground, faint});
        QTest::mouseMove(&field()); // no row of the next test's palette shall lie under it
    }

    void ask(const QString& query)
    {
        key(Qt::Key_A, Qt::ControlModifier);
        type(query);
        field().clearFocus();
    }

    const QColor ground{0x17, 0x17, 0x17};
    const QColor selected{0x2E, 0x2E, 0x2E};
    const QColor hovered{0x26, 0x26, 0x26};
    const QColor faint{0x59, 0x59, 0x59};
    const QColor dot{0x3C, 0x9F, 0x57};
    const QColor orange{0xFF, 0x9F, 0x0A};
    const QColor pink{0xFF, 0x37, 0x5F};
    const QColor green{0x30, 0xD1, 0x58};
};

TEST_F(PalettePictures, NormalText)
{
    pictures({});
}

TEST_F(PalettePictures, LargeText)
{
    theme.setTextScale(1.6);
    pictures(u"-large-text"_s);
}

TEST_F(PalettePictures, SmallText)
{
    theme.setTextScale(0.85);
    pictures(u"-small-text"_s);
}

} // namespace
} // namespace vellumry::test
