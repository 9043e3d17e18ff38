#include "platform/linux/PortalAppearance.h"

#include "core/BackgroundRunner.h"
#include "platform/FakeSettingsPortal.h"
#include "session/PrivateBus.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"
#include "support/ManualBackgroundRunner.h"

#include <QPalette>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <semaphore>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

const QString group = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;
const QString readOne = u"ReadOne org.freedesktop.appearance color-scheme"_s;
const QString readOld = u"Read org.freedesktop.appearance color-scheme"_s;
constexpr uint noPreference = 0;
constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

class PortalAppearanceTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        portal = std::make_unique<FakeSettingsPortal>(bus.connect());
    }

    void start(ColorScheme startScheme = ColorScheme::light)
    {
        appearance = std::make_unique<PortalAppearance>(startScheme, runner,
                                                        [this] { return bus.connect(); });
        QObject::connect(appearance.get(), &Appearance::colorSchemeChanged, appearance.get(),
                         [this] { ++changes; });
        runner.runWork();
        runner.runActions();
    }

    void tell(const QVariant& value, const QString& ofGroup = group, const QString& ofKey = key)
    {
        Q_EMIT portal->SettingChanged(ofGroup, ofKey, QDBusVariant(value));
    }

    [[nodiscard]] bool isDark() const { return appearance->colorScheme() == ColorScheme::dark; }

    /// Waits until the portal was asked. From then on its signals arrive, behind its answer.
    [[nodiscard]] bool wasAsked(const QStringList& questions) const
    {
        return eventually([&] { return portal->questions == questions; });
    }

    LogCapture log;
    PrivateBus bus;
    ManualBackgroundRunner runner;
    std::unique_ptr<FakeSettingsPortal> portal;
    std::unique_ptr<PortalAppearance> appearance;
    int changes = 0;
};

TEST_F(PortalAppearanceTest, TakesThePreferenceOfTheStart)
{
    portal->preference = prefersDark;
    ASSERT_TRUE(portal->appear());
    start();
    EXPECT_FALSE(isDark()) << "nothing waits for the answer";
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(portal->questions, QStringList{readOne});
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(PortalAppearanceTest, APreferenceForLightBeatsADarkStart)
{
    portal->preference = prefersLight;
    ASSERT_TRUE(portal->appear());
    start(ColorScheme::dark);
    EXPECT_TRUE(eventually([this] { return !isDark(); }));
}

TEST_F(PortalAppearanceTest, AnOlderPortalIsAskedInItsOwnWay)
{
    portal->hasReadOne = false;
    portal->preference = prefersDark;
    ASSERT_TRUE(portal->appear());
    start();
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    EXPECT_EQ(portal->questions, (QStringList{readOne, readOld}));
    EXPECT_TRUE(log.lines.isEmpty());
}

TEST_F(PortalAppearanceTest, FollowsEachChange)
{
    ASSERT_TRUE(portal->appear());
    start();
    ASSERT_TRUE(wasAsked({readOne}));
    tell(prefersDark);
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    tell(prefersLight);
    EXPECT_TRUE(eventually([this] { return !isDark(); }));
    tell(prefersLight);
    tell(prefersDark);
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    EXPECT_EQ(changes, 3) << "the same once more is no change";
    tell(noPreference);
    EXPECT_TRUE(eventually([this] { return !isDark(); })) << "as at the start";
    EXPECT_EQ(portal->questions.size(), 1);
}

TEST_F(PortalAppearanceTest, WithoutAPreferenceTheStartDecides)
{
    portal->preference = noPreference;
    ASSERT_TRUE(portal->appear());
    start(ColorScheme::dark);
    ASSERT_TRUE(wasAsked({readOne}));
    tell(prefersLight);
    EXPECT_TRUE(eventually([this] { return changes == 1; }));
    EXPECT_FALSE(isDark()) << "had the answer been light, this would be no change";
}

TEST_F(PortalAppearanceTest, WhatIsNoKnownPreferenceIsNone)
{
    ASSERT_TRUE(portal->appear());
    start();
    ASSERT_TRUE(wasAsked({readOne}));
    for (const QVariant& value : {QVariant(3U), QVariant(u"1"_s), QVariant(u"prefer-dark"_s),
                                  QVariant(true), QVariant(1), QVariant(QStringList{u"1"_s})}) {
        tell(prefersDark);
        ASSERT_TRUE(eventually([this] { return isDark(); }));
        tell(value);
        EXPECT_TRUE(eventually([this] { return !isDark(); })) << value.typeName();
    }
}

TEST_F(PortalAppearanceTest, OtherSettingsAreNotOurs)
{
    ASSERT_TRUE(portal->appear());
    start();
    ASSERT_TRUE(wasAsked({readOne}));
    tell(prefersDark, u"org.gnome.desktop.interface"_s);
    tell(prefersDark, group, u"contrast"_s);
    tell(prefersLight);
    tell(prefersDark);
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(PortalAppearanceTest, APortalThatNeverAnswersHoldsNobodyUp)
{
    portal->isSilent = true;
    ASSERT_TRUE(portal->appear());
    start();
    ASSERT_TRUE(wasAsked({readOne}));
    EXPECT_FALSE(isDark());
    tell(prefersDark);
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    tell(prefersLight);
    appearance.reset();
}

TEST_F(PortalAppearanceTest, APortalThatComesLaterIsHeard)
{
    start();
    ASSERT_TRUE(eventually([this] { return !log.lines.isEmpty(); }));
    EXPECT_TRUE(log.lines[0].startsWith(
        u"PortalAppearance: The desktop does not tell its color scheme: "_s))
        << qPrintable(log.lines[0]);
    EXPECT_TRUE(log.lines[0].contains(u"org.freedesktop.portal.Desktop"_s))
        << qPrintable(log.lines[0]);
    ASSERT_TRUE(portal->appear());
    tell(prefersDark);
    EXPECT_TRUE(eventually([this] { return isDark(); }));
    EXPECT_EQ(log.lines.size(), 1);
}

TEST_F(PortalAppearanceTest, APortalWithoutTheSettingIsToldInWords)
{
    portal->failure = u"Requested setting not found"_s;
    ASSERT_TRUE(portal->appear());
    start(ColorScheme::dark);
    ASSERT_TRUE(eventually([this] { return !log.lines.isEmpty(); }));
    EXPECT_EQ(log.lines, QStringList{u"PortalAppearance: The desktop does not tell its color "
                                     "scheme: Requested setting not found"_s});
    EXPECT_EQ(portal->questions, QStringList{readOne});
    EXPECT_TRUE(isDark());
}

TEST_F(PortalAppearanceTest, WithoutABusTheStartDecides)
{
    const QString name = u"nowhere"_s;
    const PortalAppearance lonely(ColorScheme::dark, runner, [&] {
        return QDBusConnection::connectToBus(u"unix:path=/nowhere/at/all"_s, name);
    });
    runner.runWork();
    runner.runActions();
    EXPECT_EQ(lonely.colorScheme(), ColorScheme::dark);
    ASSERT_EQ(log.lines.size(), 1);
    const QString beginning = u"PortalAppearance: The desktop does not tell its color scheme: "_s;
    EXPECT_TRUE(log.lines[0].startsWith(beginning)) << qPrintable(log.lines[0]);
    EXPECT_GT(log.lines[0].size(), beginning.size()) << "and why";
    QDBusConnection::disconnectFromBus(name);
}

TEST_F(PortalAppearanceTest, ABusThatIsSlowHoldsNobodyUp)
{
    std::binary_semaphore isConnecting(0);
    std::binary_semaphore mayConnect(0);
    std::atomic<bool> isConnected = false;
    {
        ThreadRunner thread;
        {
            const PortalAppearance early(ColorScheme::light, thread, [&] {
                isConnecting.release();
                mayConnect.acquire();
                isConnected = true;
                return bus.connect();
            });
            isConnecting.acquire();
        }
        EXPECT_FALSE(isConnected) << "it came and went meanwhile";
        mayConnect.release();
    }
    EXPECT_TRUE(isConnected);
    // What the other thread has left behind finds nobody.
    QCoreApplication::processEvents();
}

TEST(ColorSchemeOfTest, IsDarkWhereTheTextIsTheLighterOne)
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0xf0, 0xf0, 0xf0));
    palette.setColor(QPalette::WindowText, Qt::black);
    EXPECT_EQ(colorSchemeOf(palette), ColorScheme::light);
    palette.setColor(QPalette::Window, QColor(0x30, 0x30, 0x40));
    palette.setColor(QPalette::WindowText, QColor(0xee, 0xee, 0xee));
    EXPECT_EQ(colorSchemeOf(palette), ColorScheme::dark);
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Window));
    EXPECT_EQ(colorSchemeOf(palette), ColorScheme::light);
}

} // namespace
} // namespace vellumry::test
