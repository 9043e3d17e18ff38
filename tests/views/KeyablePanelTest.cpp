#include "views/palette/KeyablePanel.h"

#include "platform/PanelActivation.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using testing::ElementsAre;

/// Writes down what the panel asks of the desktop, and whether it was on the screen then.
class RecordingActivation final : public PanelActivation {
public:
    QStringList calls;
    bool compositing = true;

    void prepareToShow(QWindow& window) override
    {
        calls << u"prepare visible %1"_s.arg(window.isVisible());
    }
    void activate(QWindow& window) override
    {
        calls << u"activate visible %1"_s.arg(window.isVisible());
        window.requestActivate();
    }
    [[nodiscard]] bool isCompositing() const override { return compositing; }

    void setCompositing(bool isOn)
    {
        compositing = isOn;
        Q_EMIT compositingChanged(isOn);
    }
};

class KeyablePanelTest : public testing::Test {
protected:
    RecordingActivation activation;
    KeyablePanel panel{activation};
};

TEST_F(KeyablePanelTest, isAFloatingWindowWithoutAFrame)
{
    EXPECT_EQ(panel.windowTitle(), u"Palette"_s);
    EXPECT_EQ(panel.windowType(), Qt::Tool);
    EXPECT_TRUE(panel.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(panel.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(panel.testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_EQ(panel.size(), QSize(680, 480));
    EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(KeyablePanelTest, isPreparedBeforeItShowsAndActivatedAfter)
{
    panel.orderFront();
    EXPECT_THAT(activation.calls, ElementsAre(u"prepare visible 0"_s, u"activate visible 1"_s));
    panel.orderFront();
    EXPECT_EQ(activation.calls.last(), u"activate visible 1"_s);
    EXPECT_EQ(activation.calls.size(), 3);
    panel.orderOut();
    EXPECT_FALSE(panel.isVisible());
    panel.orderFront();
    EXPECT_EQ(activation.calls.size(), 5);
}

TEST_F(KeyablePanelTest, tellsOfGainedAndLostKeyStatus)
{
    int gained = 0;
    int resigned = 0;
    QObject::connect(&panel, &KeyablePanel::gainedKeyStatus, &panel, [&] { ++gained; });
    QObject::connect(&panel, &KeyablePanel::resignedKeyStatus, &panel, [&] { ++resigned; });
    panel.orderFront();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    EXPECT_TRUE(panel.isKey());
    EXPECT_EQ(gained, 1);
    EXPECT_EQ(resigned, 0);

    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(panel.isKey());
    EXPECT_EQ(gained, 1);
    EXPECT_EQ(resigned, 1);
}

TEST_F(KeyablePanelTest, standsInTheMiddleOfTheScreen)
{
    panel.move(3, 4);
    panel.center();
    panel.orderFront();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint corner(screen.x() + (screen.width() - 680) / 2,
                        screen.y() + (screen.height() - 480) / 2);
    EXPECT_EQ(panel.pos(), corner);
    EXPECT_EQ(panel.place(), QRect(corner, QSize(680, 480)));
}

TEST_F(KeyablePanelTest, isMaskedWhileThereIsNoCompositor)
{
    EXPECT_TRUE(panel.mask().isEmpty());
    activation.setCompositing(false);
    const QRegion mask = panel.mask();
    EXPECT_FALSE(mask.contains(QPoint(0, 0)));
    EXPECT_FALSE(mask.contains(QPoint(679, 479)));
    EXPECT_TRUE(mask.contains(QPoint(12, 0)));
    EXPECT_TRUE(mask.contains(QPoint(340, 240)));
    activation.setCompositing(true);
    EXPECT_TRUE(panel.mask().isEmpty());

    RecordingActivation bare;
    bare.compositing = false;
    EXPECT_FALSE(KeyablePanel(bare).mask().isEmpty());
}

TEST_F(KeyablePanelTest, isMovedByItsBackground)
{
    panel.center();
    panel.orderFront();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    const QPoint start = panel.pos();
    const auto send = [this](QEvent::Type type, const QPoint& global, Qt::MouseButtons held) {
        QMouseEvent event(type, QPointF(panel.mapFromGlobal(global)), QPointF(global),
                          Qt::LeftButton, held, {});
        QCoreApplication::sendEvent(&panel, &event);
    };
    const QPoint hold = start + QPoint(30, 460);
    send(QEvent::MouseButtonPress, hold, Qt::LeftButton);
    send(QEvent::MouseMove, hold + QPoint(25, -10), Qt::LeftButton);
    EXPECT_EQ(panel.pos(), start + QPoint(25, -10));
    EXPECT_EQ(panel.place().topLeft(), start + QPoint(25, -10));
    send(QEvent::MouseButtonRelease, hold + QPoint(25, -10), Qt::NoButton);
    send(QEvent::MouseMove, hold + QPoint(90, 90), Qt::NoButton);
    EXPECT_EQ(panel.pos(), start + QPoint(25, -10));
}

TEST_F(KeyablePanelTest, isMovedFromWhereTheWindowManagerHasPlacedIt)
{
    panel.center();
    panel.orderFront();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    const QPoint start = panel.pos() + QPoint(2, 18);
    panel.move(start);
    const QPointF hold(30, 460);
    QMouseEvent press(QEvent::MouseButtonPress, hold, start + hold, Qt::LeftButton, Qt::LeftButton,
                      {});
    QCoreApplication::sendEvent(&panel, &press);
    const QPointF way(25, -10);
    QMouseEvent move(QEvent::MouseMove, hold + way, start + hold + way, Qt::LeftButton,
                     Qt::LeftButton, {});
    QCoreApplication::sendEvent(&panel, &move);
    EXPECT_EQ(panel.pos(), start + way.toPoint());
}

TEST_F(KeyablePanelTest, itsContentFillsIt)
{
    auto* content = new QWidget;
    panel.setContentView(content);
    EXPECT_EQ(content->parent(), &panel);
    EXPECT_EQ(content->geometry(), panel.rect());
    panel.orderFront();
    EXPECT_TRUE(content->isVisible());
}

TEST_F(KeyablePanelTest, preparingMakesTheWindowButDoesNotShowIt)
{
    EXPECT_EQ(panel.windowHandle(), nullptr);
    panel.prepare();
    EXPECT_NE(panel.windowHandle(), nullptr);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(activation.calls.isEmpty());
}

} // namespace
} // namespace vellumry
