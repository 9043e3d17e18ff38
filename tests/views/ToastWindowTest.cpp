#include "views/common/ToastWindow.h"

#include "platform/PanelActivation.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using namespace std::chrono_literals;

class QuietActivation final : public PanelActivation {
public:
    bool compositing = true;
    void prepareToShow(QWindow&) override {}
    void activate(QWindow&) override {}
    [[nodiscard]] bool isCompositing() const override { return compositing; }
};

class ToastWindowTest : public testing::Test {
protected:
    QuietActivation activation;
    ToastWindow toast{activation};
};

TEST_F(ToastWindowTest, standsInTheMiddleOfItsPlace)
{
    toast.showText(u"Copied to Clipboard"_s, QRect(100, 50, 680, 480));
    EXPECT_TRUE(toast.isVisible());
    EXPECT_EQ(toast.geometry(), QRect(100 + 190, 50 + 195, 300, 90));
    EXPECT_EQ(toast.text(), u"Copied to Clipboard"_s);
    EXPECT_EQ(toast.windowTitle(), u"Toast"_s);
}

TEST_F(ToastWindowTest, takesNeitherKeyboardNorMouse)
{
    EXPECT_TRUE(toast.windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(toast.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    toast.showText(u"text"_s, QRect(0, 0, 680, 480));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&toast));
    EXPECT_TRUE(other.isActiveWindow());
    EXPECT_FALSE(toast.isActiveWindow());
}

TEST_F(ToastWindowTest, isBlackAtSeventyPercentWithRoundCorners)
{
    toast.showText(u"x"_s, QRect(0, 0, 680, 480));
    const QImage image = toast.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    const qreal ratio = image.devicePixelRatio();
    const QColor ground = image.pixelColor(qRound(30 * ratio), qRound(45 * ratio));
    EXPECT_EQ(ground.alpha(), 179);
    EXPECT_EQ(ground.value(), 0);
    EXPECT_EQ(image.pixelColor(1, 1).alpha(), 0);
}

TEST_F(ToastWindowTest, aLongTextIsCut)
{
    toast.showText(QString(200, u'W'), QRect(0, 0, 680, 480));
    const QImage image = toast.grab().toImage();
    const qreal ratio = image.devicePixelRatio();
    const auto hasInk = [&](int from, int to) {
        for (int x = qRound(from * ratio); x < qRound(to * ratio); ++x) {
            for (int y = qRound(35 * ratio); y < qRound(55 * ratio); ++y) {
                if (image.pixelColor(x, y).value() > 0)
                    return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(hasInk(0, 15));
    EXPECT_TRUE(hasInk(20, 40));
    EXPECT_TRUE(hasInk(250, 280));
    EXPECT_FALSE(hasInk(285, 300));
}

TEST_F(ToastWindowTest, fadesHidesAndThenTells)
{
    toast.showText(u"text"_s, QRect(0, 0, 680, 480));
    bool isDone = false;
    bool wasHidden = false;
    QElapsedTimer time;
    time.start();
    toast.fade(60ms, [&] {
        isDone = true;
        wasHidden = !toast.isVisible();
    });
    EXPECT_TRUE(toast.isVisible());
    EXPECT_FALSE(isDone);
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    EXPECT_GE(time.elapsed(), 59);
    EXPECT_TRUE(wasHidden);
}

TEST_F(ToastWindowTest, theCallbackMayDeleteTheWindow)
{
    auto* shortLived = new ToastWindow(activation);
    shortLived->showText(u"text"_s, QRect(0, 0, 680, 480));
    bool isDone = false;
    shortLived->fade(10ms, [&] {
        delete shortLived;
        isDone = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }));
}

TEST_F(ToastWindowTest, isOpaqueAgainWhenShownAnew)
{
    toast.showText(u"one"_s, QRect(0, 0, 680, 480));
    bool isDone = false;
    toast.fade(10ms, [&] { isDone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isDone; }));
    toast.showText(u"two"_s, QRect(0, 0, 680, 480));
    EXPECT_TRUE(toast.isVisible());
    EXPECT_EQ(toast.windowOpacity(), 1.0);
}

TEST_F(ToastWindowTest, isMaskedWhileThereIsNoCompositor)
{
    EXPECT_TRUE(toast.mask().isEmpty());
    activation.compositing = false;
    Q_EMIT activation.compositingChanged(false);
    EXPECT_FALSE(toast.mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(toast.mask().contains(QPoint(150, 45)));
}

} // namespace
} // namespace vellumry
