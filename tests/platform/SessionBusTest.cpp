#include "platform/linux/SessionBus.h"

#include "session/PrivateBus.h"
#include "session/SilentBus.h"
#include "support/Environment.h"
#include "support/LogCapture.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <unistd.h>

using namespace vellumry;
using namespace vellumry::test;

namespace {

using namespace std::chrono_literals;

constexpr char address[] = "DBUS_SESSION_BUS_ADDRESS";
constexpr char runtimeFolder[] = "XDG_RUNTIME_DIR";

class SessionBusTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(silent.isListening); }

    QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit() + "/bus";
    SilentBus silent{path};
    LogCapture capture;
};

TEST_F(SessionBusTest, OneThatNeverAnswersIsDoneWithout)
{
    const Environment bus(address, "unix:guid=0,path=" + path);
    QElapsedTimer time;
    time.start();
    avoidSilentSessionBus(50ms);
    EXPECT_GE(time.elapsed(), 49);
    EXPECT_EQ(qgetenv(address), "silent:");
    EXPECT_FALSE(QDBusConnection::connectToBus(QString::fromLatin1(qgetenv(address)),
                                               QStringLiteral("silent"))
                     .isConnected())
        << "and at once";
    EXPECT_EQ(capture.lines,
              QStringList{QStringLiteral("SessionBus: the session bus takes connections but does "
                                         "not answer, so Vellumry does without it")});
}

TEST_F(SessionBusTest, TheOneOfTheUserIsLookedAtToo)
{
    const Environment bus(address, {});
    const Environment user(runtimeFolder, folder.path().toLocal8Bit());
    EXPECT_TRUE(hasSessionBus());
    avoidSilentSessionBus(1ms);
    EXPECT_EQ(qgetenv(address), "silent:");
}

TEST_F(SessionBusTest, NamesMayBeEscapedOrAbstract)
{
    {
        const Environment bus(address, "unix:path=" + QByteArray(path).replace("bus", "b%75s"));
        avoidSilentSessionBus(1ms);
        EXPECT_EQ(qgetenv(address), "silent:");
    }
    const QByteArray name = "vellumry-test-" + QByteArray::number(getpid());
    const SilentBus abstractly('\0' + name);
    ASSERT_TRUE(abstractly.isListening);
    const Environment bus(address, "unix:abstract=" + name);
    avoidSilentSessionBus(1ms);
    EXPECT_EQ(qgetenv(address), "silent:");
}

TEST_F(SessionBusTest, OneThatHasNoRoomForAnotherIsSilentToo)
{
    const Environment bus(address, "unix:path=" + path);
    // Those who call stay in line, also after they have gone.
    for (int caller = 0; caller < 3; ++caller) {
        qputenv(address, "unix:path=" + path);
        avoidSilentSessionBus(1ms);
    }
    QElapsedTimer time;
    time.start();
    qputenv(address, "unix:path=" + path);
    avoidSilentSessionBus(1min);
    EXPECT_LT(time.elapsed(), 30'000);
    EXPECT_EQ(qgetenv(address), "silent:");
}

TEST_F(SessionBusTest, OneThatAnswersStays)
{
    PrivateBus answering;
    ASSERT_FALSE(answering.address().isEmpty()) << qPrintable(answering.failure());
    const QByteArray listed =
        "unix:path=/nonexistent;" + answering.address().toLocal8Bit() + ";unix:path=" + path;
    const Environment bus(address, listed);
    avoidSilentSessionBus(1min);
    EXPECT_EQ(qgetenv(address), listed);
    EXPECT_TRUE(capture.lines.isEmpty());
}

TEST_F(SessionBusTest, WhatCannotBeReachedOrIsOfAnotherKindStays)
{
    for (const QByteArray& text :
         {QByteArray("unix:path=/nonexistent"), QByteArray("unix:path=" + QByteArray(200, 'x')),
          QByteArray("unix:"), QByteArray("unix:path"), QByteArray("tcp:host=localhost,port=1"),
          QByteArray("autolaunch:"), QByteArray(";;=,")}) {
        const Environment bus(address, text);
        avoidSilentSessionBus(1min);
        EXPECT_EQ(qgetenv(address), text);
    }
    const Environment bus(address, {});
    const Environment user(runtimeFolder, {});
    EXPECT_FALSE(hasSessionBus());
    avoidSilentSessionBus(1min);
    EXPECT_TRUE(capture.lines.isEmpty());
}

} // namespace
