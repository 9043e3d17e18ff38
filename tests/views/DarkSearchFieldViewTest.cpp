#include "views/palette/DarkSearchFieldView.h"

#include "support/ManualScheduler.h"
#include "views/common/Theme.h"
#include "views/palette/KeyHandlingTextField.h"
#include "views/palette/QuickSearchStyle.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class DarkSearchFieldViewTest : public testing::Test {
protected:
    void SetUp() override
    {
        window.resize(680, 60);
        view.setGeometry(0, 0, 680, 60);
        window.show();
    }

    void showActive()
    {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    KeyHandlingTextField& field() { return view.textField(); }

    Theme theme{ColorScheme::light, 1};
    test::ManualScheduler scheduler;
    QStringList calls;
    QStringList texts;
    QWidget window;
    DarkSearchFieldView view{theme,
                             scheduler,
                             {.onTextChanged = [this](const QString& text) { texts << text; },
                              .onEscape = [this] { calls << u"escape"_s; },
                              .onArrowUp = [this] { calls << u"up"_s; },
                              .onArrowDown = [this] { calls << u"down"_s; },
                              .onArrowRight = [this] { calls << u"right"_s; },
                              .onReturn = [this] { calls << u"return"_s; }},
                             &window};
};

TEST_F(DarkSearchFieldViewTest, keysOnTheirWayWhenThePaletteClosesDoNothing)
{
    window.hide();
    QTest::keyClick(&field(), Qt::Key_Return);
    QTest::keyClick(&field(), Qt::Key_A);
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_TRUE(texts.isEmpty());
}

TEST_F(DarkSearchFieldViewTest, keysRunTheirCallbacks)
{
    for (const Qt::Key key :
         {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Down, Qt::Key_Up, Qt::Key_Right})
        QTest::keyClick(&field(), key);
    EXPECT_THAT(calls,
                ElementsAre(u"return"_s, u"return"_s, u"escape"_s, u"down"_s, u"up"_s, u"right"_s));
}

TEST_F(DarkSearchFieldViewTest, eachKeyRunsItsCallbackOnceInTheActiveWindow)
{
    showActive();
    QTest::keyClick(&field(), Qt::Key_Return);
    QTest::keyClick(&window, Qt::Key_Down);
    EXPECT_THAT(calls, ElementsAre(u"return"_s, u"down"_s));
}

TEST_F(DarkSearchFieldViewTest, keysToAnyWidgetOfTheActiveWindowAreCaught)
{
    QLineEdit other(&window);
    other.show();
    showActive();
    other.setFocus();
    QTest::keyClick(&other, Qt::Key_Escape);
    QTest::keyClick(&other, Qt::Key_Up);
    QTest::keyClicks(&other, u"a"_s);
    EXPECT_THAT(calls, ElementsAre(u"escape"_s, u"up"_s));
    EXPECT_EQ(other.text(), u"a"_s);
}

TEST_F(DarkSearchFieldViewTest, keysToOtherWindowsAreLeftAlone)
{
    showActive();
    QLineEdit elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    QTest::keyClick(&elsewhere, Qt::Key_Return);
    QTest::keyClick(&elsewhere, Qt::Key_Escape);
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(DarkSearchFieldViewTest, rightMovesTheCursorUnlessItIsAtTheEnd)
{
    QTest::keyClicks(&field(), u"abc"_s);
    field().setCursorPosition(1);
    QTest::keyClick(&field(), Qt::Key_Right);
    EXPECT_EQ(field().cursorPosition(), 2);
    QTest::keyClick(&field(), Qt::Key_Right);
    EXPECT_EQ(field().cursorPosition(), 3);
    EXPECT_TRUE(calls.isEmpty());
    QTest::keyClick(&field(), Qt::Key_Right);
    EXPECT_THAT(calls, ElementsAre(u"right"_s));
}

TEST_F(DarkSearchFieldViewTest, rightDropsASelectionThatReachesTheEnd)
{
    QTest::keyClicks(&field(), u"abc"_s);
    field().selectAll();
    QTest::keyClick(&field(), Qt::Key_Right);
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_FALSE(field().hasSelectedText());
    QTest::keyClick(&field(), Qt::Key_Right);
    EXPECT_THAT(calls, ElementsAre(u"right"_s));
}

TEST_F(DarkSearchFieldViewTest, copyWithoutASelectionMeansReturn)
{
    QTest::keyClicks(&field(), u"abc"_s);
    QTest::keyClick(&field(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_THAT(calls, ElementsAre(u"return"_s));
    EXPECT_EQ(field().text(), u"abc"_s);
}

TEST_F(DarkSearchFieldViewTest, copyWithASelectionCopiesTheText)
{
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::keyClicks(&field(), u"abc"_s);
    field().setSelection(1, 2);
    QTest::keyClick(&field(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(calls.isEmpty());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"bc"_s);
}

TEST_F(DarkSearchFieldViewTest, otherKeysEditTheText)
{
    QTest::keyClicks(&field(), u"cab"_s);
    QTest::keyClick(&field(), Qt::Key_Left);
    QTest::keyClick(&field(), Qt::Key_Backspace);
    EXPECT_EQ(field().text(), u"cb"_s);
    EXPECT_THAT(texts, ElementsAre(u"c"_s, u"ca"_s, u"cab"_s, u"cb"_s));
    EXPECT_TRUE(calls.isEmpty());
}

TEST_F(DarkSearchFieldViewTest, typingSixtyCharactersLeavesFifty)
{
    const QString sixty = QString(60, u'x');
    QTest::keyClicks(&field(), sixty);
    EXPECT_EQ(field().text(), sixty.left(50));
    EXPECT_EQ(texts.last(), sixty.left(50));
}

TEST_F(DarkSearchFieldViewTest, fiftyCharactersStay)
{
    const QString fifty = QString(50, u'x');
    QTest::keyClicks(&field(), fifty);
    EXPECT_EQ(field().text(), fifty);
}

TEST_F(DarkSearchFieldViewTest, pastingSixtyCharactersLeavesFifty)
{
    QGuiApplication::clipboard()->setText(QString(60, u'y'));
    QTest::keyClick(&field(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field().text(), QString(50, u'y'));
    EXPECT_THAT(texts, ElementsAre(QString(50, u'y')));
}

TEST_F(DarkSearchFieldViewTest, theLimitCountsPerceivedCharacters)
{
    const QString family = u"👩‍👩‍👧"_s;
    QGuiApplication::clipboard()->setText(family.repeated(50));
    QTest::keyClick(&field(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(field().text(), family.repeated(50));
    field().setCursorPosition(static_cast<int>(family.size()));
    QTest::keyClicks(&field(), u"z"_s);
    EXPECT_EQ(field().text(), family + u"z"_s + family.repeated(48));
    EXPECT_EQ(field().cursorPosition(), family.size() + 1);
}

TEST_F(DarkSearchFieldViewTest, whatGoesBeyondTheLimitCanBeUndone)
{
    const QString fifty = QString(50, u'x');
    QTest::keyClicks(&field(), fifty + u"yz"_s);
    EXPECT_EQ(field().text(), fifty);
    EXPECT_EQ(field().cursorPosition(), 50);
    field().setCursorPosition(0);
    QTest::keyClicks(&field(), u"a"_s);
    EXPECT_EQ(field().text(), u"a"_s + fifty.left(49));
    EXPECT_EQ(field().cursorPosition(), 1);
    texts.clear();
    QTest::keyClick(&field(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&field(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(texts, ElementsAre(fifty, QString()));
    QTest::keyClick(&field(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(field().text(), fifty);
}

TEST_F(DarkSearchFieldViewTest, aLongTextOfTheModelIsCutByTheNextEdit)
{
    view.updateText(QString(60, u'x'));
    field().setCursorPosition(60);
    QTest::keyClick(&field(), Qt::Key_Backspace);
    EXPECT_EQ(field().text(), QString(50, u'x'));
    QTest::keyClick(&field(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(field().text(), QString(50, u'x')) << "that much was never typed";
    EXPECT_EQ(texts.last(), QString(50, u'x'));
}

TEST_F(DarkSearchFieldViewTest, aTextOfTheModelIsNotCut)
{
    view.updateText(QString(60, u'x'));
    EXPECT_EQ(view.text().size(), 60);
    EXPECT_TRUE(texts.isEmpty());
}

TEST_F(DarkSearchFieldViewTest, takesTheFocusATenthOfASecondAfterCreation)
{
    QLineEdit other(&window);
    other.show();
    showActive();
    other.setFocus();
    scheduler.advance(99ms);
    EXPECT_FALSE(field().hasFocus());
    scheduler.advance(1ms);
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(DarkSearchFieldViewTest, takesTheFocusFiftyMillisecondsAfterAnUpdate)
{
    QLineEdit other(&window);
    other.show();
    showActive();
    scheduler.advance(1s);
    other.setFocus();
    view.updateText(u"new"_s);
    EXPECT_EQ(field().text(), u"new"_s);
    scheduler.advance(49ms);
    EXPECT_FALSE(field().hasFocus());
    scheduler.advance(1ms);
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(DarkSearchFieldViewTest, anUpdateWithTheSameTextKeepsCursorAndSelection)
{
    QTest::keyClicks(&field(), u"abc"_s);
    field().setSelection(0, 2);
    view.updateText(u"abc"_s);
    EXPECT_EQ(field().selectedText(), u"ab"_s);
}

TEST_F(DarkSearchFieldViewTest, aDelayedFocusDoesNotOutliveTheView)
{
    auto* shortLived = new DarkSearchFieldView(theme, scheduler, {}, &window);
    delete shortLived;
    scheduler.advance(1s);
    EXPECT_EQ(scheduler.pending(), 0U);
}

TEST_F(DarkSearchFieldViewTest, looksAsToldOfIt)
{
    EXPECT_EQ(field().placeholderText(), u"Search snippets..."_s);
    EXPECT_EQ(field().font().pixelSize(), 20);
    EXPECT_FALSE(field().hasFrame());
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        EXPECT_EQ(field().palette().color(group, QPalette::Text), QColor(Qt::white));
        EXPECT_EQ(field().palette().color(group, QPalette::PlaceholderText),
                  QColor::fromRgbF(0.4F, 0.4F, 0.4F));
    }
}

TEST_F(DarkSearchFieldViewTest, followsTheTextSizeWithinItsPlace)
{
    EXPECT_EQ(field().geometry(), QRect(48, 16, 612, 28));
    theme.setTextScale(1.6);
    EXPECT_EQ(field().font().pixelSize(), 32);
    EXPECT_EQ(field().font().weight(), QFont::Normal);
    EXPECT_EQ(field().geometry(), QRect(48, 7, 612, 45));
    EXPECT_EQ(view.height(), 60);
    theme.setTextScale(1);
    EXPECT_EQ(field().font().pixelSize(), 20);
    EXPECT_EQ(field().geometry(), QRect(48, 16, 612, 28));
}

TEST_F(DarkSearchFieldViewTest, theCaretGrowsWithTheText)
{
    showActive();
    QTest::keyClicks(&field(), u" "_s);
    const auto caretHeight = [this] {
        field().setFocus();
        const QImage image = field().grab().toImage();
        int lines = 0;
        for (int y = 0; y < image.height(); ++y) {
            bool hasCaret = false;
            for (int x = 0; x < image.width(); ++x)
                hasCaret = hasCaret || image.pixelColor(x, y) == QuickSearchStyle::caret;
            lines += hasCaret ? 1 : 0;
        }
        return lines / image.devicePixelRatio();
    };
    EXPECT_NEAR(caretHeight(), 24, 1);
    theme.setTextScale(1.6);
    EXPECT_NEAR(caretHeight(), 36, 1);
}

TEST_F(DarkSearchFieldViewTest, theCaretStandsBesideThePlaceholderNotUponIt)
{
    showActive();
    const auto picture = [this] {
        return field().grab().toImage().convertToFormat(QImage::Format_RGB32);
    };
    field().clearFocus();
    const QImage bare = picture();
    field().setFocus();
    const QImage withCaret = picture();
    const auto columns = [](const QImage& image, auto isMarked) {
        QList<int> found;
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (isMarked(x, y)) {
                    found << x;
                    break;
                }
            }
        }
        return found;
    };
    const auto placeholder =
        columns(bare, [&](int x, int y) { return bare.pixel(x, y) != bare.pixel(0, 0); });
    const auto caret =
        columns(bare, [&](int x, int y) { return bare.pixel(x, y) != withCaret.pixel(x, y); });
    ASSERT_FALSE(placeholder.isEmpty());
    ASSERT_FALSE(caret.isEmpty());
    EXPECT_LT(caret.last(), placeholder.first());
    // Whole, also at the field's edge.
    constexpr int caretWidth = 2;
    EXPECT_GE(caret.size(), qFloor(caretWidth * bare.devicePixelRatio()));
}

} // namespace
} // namespace vellumry
