#include "views/PaletteFixture.h"

#include <QImage>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

class PaletteRowDelegateTest : public test::PaletteFixture {
protected:
    /// Whether anything but ground is painted between two places of a row.
    bool hasInkIn(const QRect& row, int left, int right)
    {
        const QImage image = view().grab().toImage();
        const qreal ratio = image.devicePixelRatio();
        const QPoint corner = list().viewport()->mapTo(&view(), row.topLeft());
        const int y = qRound((corner.y() + 20) * ratio);
        const QColor ground = image.pixelColor(qRound((corner.x() + 5) * ratio), y);
        for (int dy = -8; dy <= 8; ++dy) {
            for (int x = qRound((corner.x() + left) * ratio);
                 x < qRound((corner.x() + right) * ratio); ++x) {
                if (image.pixelColor(x, y + dy) != ground)
                    return true;
            }
        }
        return false;
    }

    void show(const QString& title, const QString& collection)
    {
        SnippetFields fields;
        fields.id = u"s"_s;
        fields.title = title;
        fields.collection = collection;
        fields.usageCount = 12;
        storage.snippets = {Snippet(fields)};
        open();
    }
    QRect row() { return list().rowRect(u"s"_s); }
};

TEST_F(PaletteRowDelegateTest, rowsHaveTheirPlaces)
{
    fillLibrary();
    open();
    const QRect first = list().rowRect(u"open-app-item"_s);
    const QPoint corner = list().viewport()->mapTo(&view(), first.topLeft());
    EXPECT_EQ(corner, QPoint(8, 60 + 4 + 28));
    EXPECT_EQ(first.size(), QSize(664, 40));
    EXPECT_EQ(list().rowRect(u"id-a00"_s).top(), first.top() + 40 + 28);
    EXPECT_EQ(list().rowRect(u"id-a01"_s).top(), first.top() + 40 + 28 + 40);
}

TEST_F(PaletteRowDelegateTest, theDotHasTheCollectionsColour)
{
    show(u"Title"_s, u"Shell"_s);
    const QPoint dot = list().viewport()->mapTo(&view(), row().topLeft()) + QPoint(22, 20);
    EXPECT_EQ(pixel(dot), QColor(0x3C, 0x9F, 0x57));
}

TEST_F(PaletteRowDelegateTest, aLongCollectionIsCutAndTheTrailingTextStays)
{
    show(u"Title"_s, QString(200, u'w'));
    EXPECT_TRUE(hasInkIn(row(), 600, 615));  // the collection goes as far as it may
    EXPECT_FALSE(hasInkIn(row(), 620, 625)); // then the gap
    EXPECT_TRUE(hasInkIn(row(), 625, 652));  // then "12×"
    EXPECT_FALSE(hasInkIn(row(), 653, 664));
}

TEST_F(PaletteRowDelegateTest, aLongTitleIsCutWhenTheCollectionHasGone)
{
    show(QString(2000, u'w'), u"Shell"_s);
    EXPECT_TRUE(hasInkIn(row(), 590, 610));
    EXPECT_TRUE(hasInkIn(row(), 625, 652));
}

TEST_F(PaletteRowDelegateTest, aTitleOfSeveralLinesIsShownAsOne)
{
    show(u"one\ntwo\u2028three\tfour"_s, u"Shell"_s);
    const QImage broken = view().grab().toImage();
    storage.snippets[0].setTitle(u"one two three four"_s);
    view().setPresented(false);
    view().setPresented(true);
    settle();
    EXPECT_EQ(view().grab().toImage(), broken);
}

TEST_F(PaletteRowDelegateTest, emojiAreInColour)
{
    show(u"😀"_s, {});
    const QImage image = view().grab().toImage();
    const qreal ratio = image.devicePixelRatio();
    const QPoint middle = list().viewport()->mapTo(&view(), row().topLeft()) + QPoint(52, 20);
    bool isColoured = false;
    for (int dx = -6; dx <= 6; ++dx) {
        const QColor color = image.pixelColor((QPointF(middle + QPoint(dx, 0)) * ratio).toPoint());
        isColoured = isColoured || (color.saturation() > 100 && color.value() > 100);
    }
    EXPECT_TRUE(isColoured);
}

} // namespace
} // namespace vellumry
