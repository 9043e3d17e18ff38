#include "views/PaletteFixture.h"

#include <QImage>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

class PaletteRowDelegateTest : public test::PaletteFixture {
protected:
    /// Whether something of that colour is painted in a part of a row, give or take `tolerance`.
    bool hasColour(const QRect& row, const QRect& part, const QColor& wanted, int tolerance = 0)
    {
        const QImage image = view().grab().toImage();
        const qreal ratio = image.devicePixelRatio();
        const QPoint corner = list().viewport()->mapTo(&view(), row.topLeft()) + part.topLeft();
        for (int y = qRound(corner.y() * ratio); y < qRound((corner.y() + part.height()) * ratio);
             ++y) {
            for (int x = qRound(corner.x() * ratio);
                 x < qRound((corner.x() + part.width()) * ratio); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (std::abs(color.red() - wanted.red()) <= tolerance &&
                    std::abs(color.green() - wanted.green()) <= tolerance &&
                    std::abs(color.blue() - wanted.blue()) <= tolerance)
                    return true;
            }
        }
        return false;
    }

    /// Whether anything but ground is painted between two places of a row, around that height.
    bool hasInkIn(const QRect& row, int left, int right, int middle = 20)
    {
        const QImage image = view().grab().toImage();
        const qreal ratio = image.devicePixelRatio();
        const QPoint corner = list().viewport()->mapTo(&view(), row.topLeft());
        const int y = qRound((corner.y() + middle) * ratio);
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

    /// How high the ink is in that part of the view, the ground of whose left edge is bare.
    qreal inkHeight(const QRect& part)
    {
        const QImage image = view().grab().toImage();
        const qreal ratio = image.devicePixelRatio();
        const int left = qRound(part.left() * ratio);
        int first = -1;
        int last = -1;
        for (int y = qRound(part.top() * ratio); y < qRound((part.bottom() + 1) * ratio); ++y) {
            bool hasInk = false;
            for (int x = left; x < qRound((part.right() + 1) * ratio); ++x)
                hasInk = hasInk || image.pixel(x, y) != image.pixel(left, y);
            if (hasInk) {
                first = first < 0 ? y : first;
                last = y;
            }
        }
        return first < 0 ? 0 : (last - first + 1) / ratio;
    }
    QRect onView(const QRect& row, const QRect& part)
    {
        return part.translated(list().viewport()->mapTo(&view(), row.topLeft()));
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

TEST_F(PaletteRowDelegateTest, answersAreHigherThanOtherRows)
{
    storage.snippets = {snippet(u"10 km run"_s)};
    open();
    type(u"10 km="_s);
    const QRect calculation = list().rowRect(u"calculator-result"_s);
    const QPoint corner = list().viewport()->mapTo(&view(), calculation.topLeft());
    EXPECT_EQ(corner, QPoint(8, 60 + 4 + 28));
    EXPECT_EQ(calculation.size(), QSize(664, 72));
    EXPECT_EQ(list().rowRect(u"id-10 km run"_s).top(), calculation.top() + 72 + 28);
    EXPECT_EQ(list().rowRect(u"id-10 km run"_s).height(), 40);

    key(Qt::Key_A, Qt::ControlModifier);
    type(u"/rand:8"_s);
    const auto row = [this](int number) {
        return list().rowRect(u"password-"_s + viewModel.passwordResults()[number].id);
    };
    EXPECT_EQ(row(0), QRect(calculation.topLeft(), QSize(664, 54)));
    EXPECT_EQ(row(1), row(0).translated(0, 54));
    EXPECT_EQ(row(2), row(1).translated(0, 54));
}

TEST_F(PaletteRowDelegateTest, answersHaveSymbolsInTheirColours)
{
    open();
    type(u"2+3="_s);
    EXPECT_TRUE(hasColour(list().rowRect(u"calculator-result"_s), {12, 26, 20, 20},
                          QColor(0xFF, 0x9F, 0x0A)));
    key(Qt::Key_A, Qt::ControlModifier);
    type(u"/rand:8"_s);
    const QList<QColor> colours{{0xFF, 0x9F, 0x0A}, {0xFF, 0x37, 0x5F}, {0x30, 0xD1, 0x58}};
    for (int i = 0; i < 3; ++i) {
        const QRect row = list().rowRect(u"password-"_s + viewModel.passwordResults()[i].id);
        for (int other = 0; other < 3; ++other)
            EXPECT_EQ(hasColour(row, {12, 17, 20, 20}, colours[other]), i == other) << i << other;
    }
}

TEST_F(PaletteRowDelegateTest, theCalculatorsBadgeIsOrangeAndThePasswordsAreNot)
{
    open();
    type(u"2+3="_s);
    const QRect badge(610, 26, 44, 20);
    EXPECT_TRUE(
        hasColour(list().rowRect(u"calculator-result"_s), badge, QColor(0xFF, 0x9F, 0x0A), 60));
    key(Qt::Key_A, Qt::ControlModifier);
    type(u"/rand:8"_s);
    const QString first = u"password-"_s + viewModel.passwordResults()[0].id;
    EXPECT_FALSE(hasColour(list().rowRect(first), {600, 17, 54, 20}, QColor(0xFF, 0x9F, 0x0A), 60));
    EXPECT_TRUE(hasInkIn(list().rowRect(first), 610, 650, 27));
}

TEST_F(PaletteRowDelegateTest, bothTextsOfAnAnswerAreThere)
{
    open();
    type(u"2+3="_s);
    const QRect calculation = list().rowRect(u"calculator-result"_s);
    EXPECT_TRUE(hasInkIn(calculation, 44, 90, 22));
    EXPECT_TRUE(hasInkIn(calculation, 44, 60, 45));
    EXPECT_FALSE(hasInkIn(calculation, 100, 500, 36));
    EXPECT_TRUE(hasInkIn(calculation, 530, 600, 36)); // "Copy result"
    key(Qt::Key_A, Qt::ControlModifier);
    type(u"/rand:64"_s);
    const QRect password = list().rowRect(u"password-"_s + viewModel.passwordResults()[2].id);
    EXPECT_TRUE(hasInkIn(password, 44, 90, 37));
    EXPECT_TRUE(hasInkIn(password, 540, 580, 19));  // the longest one is cut ...
    EXPECT_FALSE(hasInkIn(password, 590, 600, 19)); // ... before the badge
}

TEST_F(PaletteRowDelegateTest, aResultOfHundredsOfDigitsIsCut)
{
    open();
    type(u"10^300="_s);
    EXPECT_EQ(viewModel.calculationResult()->formattedValue.size(), 301);
    const QRect calculation = list().rowRect(u"calculator-result"_s);
    EXPECT_TRUE(hasInkIn(calculation, 480, 510, 45));
    EXPECT_FALSE(hasInkIn(calculation, 600, 608, 45)); // between the caption and the badge
}

TEST_F(PaletteRowDelegateTest, answersGrowWithTheTextAndOtherRowsHaveRoom)
{
    storage.snippets = {snippet(u"10 km run"_s)};
    theme.setTextScale(1.6);
    open();
    EXPECT_EQ(list().rowRect(u"open-app-item"_s).height(), 40);
    type(u"10 km="_s);
    const QRect calculation = list().rowRect(u"calculator-result"_s);
    EXPECT_EQ(calculation.height(), 29 + 45 + 12);
    EXPECT_EQ(list().rowRect(u"id-10 km run"_s).top(), calculation.bottom() + 1 + 28);
    EXPECT_EQ(list().rowRect(u"id-10 km run"_s).height(), 40);
    key(Qt::Key_A, Qt::ControlModifier);
    type(u"/rand:8"_s);
    const QString second = u"password-"_s + viewModel.passwordResults()[1].id;
    EXPECT_EQ(list().rowRect(second).height(), 32 + 26 + 12);
    theme.setTextScale(1);
    EXPECT_EQ(list().rowRect(second).height(), 54);
}

TEST_F(PaletteRowDelegateTest, largeTextsAreNotCutInHeight)
{
    const QString high = u"Ågj|"_s;
    const auto heightIn = [&](TextStyle style) {
        return QFontMetricsF(theme.font(style)).tightBoundingRect(high).height();
    };
    storage.snippets = {snippet(high, {}, 1, high)};
    theme.setTextScale(1.6);
    open();
    const QRect row = list().rowRect(u"id-"_s + high);
    const auto widthIn = [&](TextStyle style) {
        return qRound(QFontMetricsF(theme.font(style)).horizontalAdvance(high));
    };
    const int titleWidth = widthIn(TextStyle::paletteRow);
    EXPECT_NEAR(inkHeight(onView(row, {42, 0, titleWidth + 2, 40})),
                heightIn(TextStyle::paletteRow), 1.5);
    EXPECT_NEAR(
        inkHeight(onView(row, {44 + titleWidth + 10, 0, widthIn(TextStyle::label) + 2, 40})),
        heightIn(TextStyle::label), 1.5);
    field().setText(high);
    field().clearFocus();
    EXPECT_NEAR(inkHeight({48, 0, widthIn(TextStyle::paletteField) + 4, 59}),
                heightIn(TextStyle::paletteField), 1.5);
}

TEST_F(PaletteRowDelegateTest, aLivingPaletteTakesOverAnotherTextSize)
{
    Theme another(ColorScheme::light, 1);
    const auto freshPicture = [&] {
        CommandPaletteView fresh({.viewModel = viewModel,
                                  .notifications = notifications,
                                  .scheduler = scheduler,
                                  .clock = clock,
                                  .theme = another,
                                  .collectionColor = collectionColor});
        return fresh.grab().toImage();
    };
    for (int i = 0; i < 12; ++i)
        storage.snippets.append(snippet(u"1+1 no %1"_s.arg(i), clock.now(), i));
    open();
    for (const QString& query : {u""_s, u"1+1="_s, u"/rand:16"_s, u"zebra"_s}) {
        viewModel.setQuery(query);
        settle();
        viewModel.setSelectedIndex(6);
        list().select(viewModel.selectedIndex(), false);
        for (const qreal scale : {1.6, 0.85, 1.0}) {
            const QImage before = view().grab().toImage();
            theme.setTextScale(scale);
            another.setTextScale(scale);
            field().clearFocus(); // whose caret blinks
            const QImage after = view().grab().toImage();
            EXPECT_NE(after, before) << qPrintable(query) << scale;
            EXPECT_EQ(after, freshPicture()) << qPrintable(query) << scale;
        }
    }
}

TEST_F(PaletteRowDelegateTest, anotherSchemeChangesNothing)
{
    fillLibrary();
    open();
    field().clearFocus();
    const QImage before = view().grab().toImage();
    theme.setScheme(ColorScheme::dark);
    EXPECT_EQ(view().grab().toImage(), before);
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
