#include "hotkey/PortalHotKeyBackend.h"

#include "hotkey/FakeGlobalShortcutsPortal.h"
#include "hotkey/HotKey.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/makeHotKeyBackend.h"
#include "platform/linux/SessionBus.h"
#include "session/PrivateBus.h"
#include "session/SilentBus.h"
#include "support/Environment.h"
#include "support/Eventually.h"
#include "support/LogCapture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <semaphore>
#include <thread>

namespace vellumry::hotkey {

using test::eventually;
using test::FakeGlobalShortcutsPortal;

namespace {

using State = DesktopShortcut::State;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr std::uint32_t codeOfT = 17;
constexpr std::uint32_t codeOfF = 3;
constexpr HotKeyID someID{fourCharacterCode("SSHk"), 7};

const QString created = u"CreateSession"_s;
const QString boundAltT = u"BindShortcuts toggle-palette \"Open the palette\" ALT+t"_s;
const QString boundCtrlAltF = u"BindShortcuts toggle-palette \"Open the palette\" CTRL+ALT+f"_s;

void postToApplication(std::function<void()> action)
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(action),
                              Qt::QueuedConnection);
}

class PortalHotKeyBackendTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        portal = std::make_unique<FakeGlobalShortcutsPortal>(bus.connect());
        connectBackend([this] { return bus.connect(); });
    }

    void connectBackend(PortalHotKeyBackend::BusConnector connector)
    {
        backend = std::make_unique<PortalHotKeyBackend>(
            &postToApplication,
            PortalHotKeyBackend::Name{u"org.vellumry.Vellumry"_s, u"toggle-palette"_s,
                                      u"Open the palette"_s},
            std::move(connector));
        backend->observeDesktopShortcut([this] { ++changes; });
        backend->installEventHandler([this](const HotKeyEvent* event) {
            events.push_back(*event);
            return answer;
        });
    }

    HotKeyBackend::Reference hold(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id)
    {
        const auto registration = backend->registerHotKey(keyCode, modifiers, id);
        EXPECT_EQ(registration.status, hotKeyNoError);
        return registration.reference.value_or(0);
    }
    HotKeyBackend::Reference registerAltT() { return hold(codeOfT, carbonOptionBit, someID); }

    /// Puts the shortcut in force, with everything that this takes.
    void bindAltT()
    {
        ASSERT_TRUE(portal->appear());
        registerAltT();
        ASSERT_TRUE(waitFor(State::granted));
    }

    [[nodiscard]] bool waitFor(State state) const
    {
        return eventually([&] { return backend->desktopShortcut()->state == state; });
    }
    [[nodiscard]] bool waitForTrigger(const std::string& trigger) const
    {
        return eventually([&] { return backend->desktopShortcut()->trigger == trigger; });
    }
    [[nodiscard]] bool waitForEvents(std::size_t count) const
    {
        return eventually([&] { return events.size() >= count; });
    }
    [[nodiscard]] bool waitForCalls(const QStringList& calls) const
    {
        return eventually([&] { return portal->calls == calls; });
    }

    test::PrivateBus bus;
    std::unique_ptr<FakeGlobalShortcutsPortal> portal;
    std::vector<HotKeyEvent> events;
    std::int32_t answer = hotKeyNoError;
    int changes = 0;
    std::unique_ptr<PortalHotKeyBackend> backend;
};

TEST_F(PortalHotKeyBackendTest, asksTheDesktopAndWaitsForNothing)
{
    ASSERT_TRUE(portal->appear());
    registerAltT();
    EXPECT_EQ(backend->desktopShortcut(), (DesktopShortcut{State::asked, ""}));
    EXPECT_TRUE(waitFor(State::granted));
    EXPECT_EQ(backend->desktopShortcut()->trigger, "Alt+T");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT}));
}

TEST_F(PortalHotKeyBackendTest, tellsANewerPortalFirstWhoItIs)
{
    portal->isNewer = true;
    bindAltT();
    EXPECT_EQ(portal->calls,
              (QStringList{u"Register org.vellumry.Vellumry"_s, created, boundAltT}));
}

TEST_F(PortalHotKeyBackendTest, takesAShortcutThatComesWithTheSession)
{
    portal->bindsWithSession = true;
    bindAltT();
    EXPECT_EQ(backend->desktopShortcut()->trigger, "Alt+T");
    EXPECT_EQ(
        portal->calls,
        (QStringList{created, u"with the session: toggle-palette \"Open the palette\" ALT+t"_s}))
        << "to bind it as well would open a settings page at each start";
    portal->press(5);
    ASSERT_TRUE(waitForEvents(1));
    portal->changeTrigger(u"Meta+V"_s);
    EXPECT_TRUE(waitForTrigger("Meta+V"));
}

TEST_F(PortalHotKeyBackendTest, hasTheSameSessionAtEachStartWithTheSameKeys)
{
    bindAltT();
    const QString token = portal->session.section(u'/', -1);
    EXPECT_EQ(token, u"vellumry_ALT_t"_s);
    portal->vanish();
    ASSERT_TRUE(waitFor(State::unavailable));
    ASSERT_TRUE(portal->appear());
    ASSERT_TRUE(waitFor(State::granted));
    EXPECT_EQ(portal->session.section(u'/', -1), token);
}

TEST_F(PortalHotKeyBackendTest, understandsOlderPortals)
{
    portal->choosesRequestPaths = true;
    portal->tellsSessionAsPath = true;
    portal->isThinking = true;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    ASSERT_TRUE(waitForCalls({created}));
    // The program learns the path from the reply; what is told before is lost, to any program.
    EXPECT_TRUE(eventually([this] {
        portal->answerRequest();
        return backend->desktopShortcut()->state == State::granted;
    }));
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT}));
}

TEST_F(PortalHotKeyBackendTest, tellsPressAndRelease)
{
    bindAltT();
    portal->press(1'000, u"the token"_s);
    portal->release(1'100);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(events[0].kind, HotKeyEvent::pressed);
    EXPECT_EQ(events[0].hotKeyID, someID);
    EXPECT_EQ(events[0].time, 1'000U);
    EXPECT_EQ(events[1].kind, HotKeyEvent::released);
    EXPECT_EQ(events[1].hotKeyID, someID);
    EXPECT_EQ(backend->takeActivationToken(), "the token");
    EXPECT_EQ(backend->takeActivationToken(), "") << "serves once";
}

TEST_F(PortalHotKeyBackendTest, aTokenIsForThePressThatItCameWith)
{
    bindAltT();
    portal->press(1, u"first"_s);
    portal->press(2);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(backend->takeActivationToken(), "");

    portal->press(3, u"third"_s);
    ASSERT_TRUE(waitForEvents(3));
    backend->releaseKeyboard();
    EXPECT_EQ(backend->takeActivationToken(), "");

    answer = hotKeyEventNotHandled;
    portal->press(4, u"fourth"_s);
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_EQ(backend->takeActivationToken(), "") << "nobody shows a window";
}

TEST_F(PortalHotKeyBackendTest, whatIsNotOursIsNotHeard)
{
    bindAltT();
    portal->pressOf(u"another"_s, portal->session);
    portal->pressOf(u"toggle-palette"_s, portal->session + u"x"_s);
    portal->press(9);
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(events[0].time, 9U);
}

TEST_F(PortalHotKeyBackendTest, thePersonsChoiceIsWhatCounts)
{
    portal->trigger = u"Press Ctrl+Space"_s;
    bindAltT();
    EXPECT_EQ(backend->desktopShortcut()->trigger, "Press Ctrl+Space");

    portal->changeTrigger(u"Meta+V ⌘"_s);
    EXPECT_TRUE(waitForTrigger("Meta+V ⌘"));
    EXPECT_EQ(changes, 2);

    portal->removeShortcut();
    EXPECT_TRUE(waitFor(State::refused));
    EXPECT_EQ(backend->desktopShortcut()->trigger, "");
}

TEST_F(PortalHotKeyBackendTest, aRefusalIsToldAndNotAskedAgain)
{
    portal->answerToBinding = 1;
    ASSERT_TRUE(portal->appear());
    const auto reference = registerAltT();
    EXPECT_TRUE(waitFor(State::refused));

    backend->unregisterHotKey(reference);
    registerAltT();
    QCoreApplication::processEvents();
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT}));
}

TEST_F(PortalHotKeyBackendTest, aSessionOrAShortcutThatIsNotGivenIsARefusal)
{
    portal->answerToSession = 2;
    ASSERT_TRUE(portal->appear());
    const auto reference = registerAltT();
    EXPECT_TRUE(waitFor(State::refused));
    EXPECT_EQ(portal->calls, QStringList{created});

    portal->answerToSession = 0;
    portal->takesShortcut = false;
    backend->unregisterHotKey(reference);
    hold(codeOfF, carbonCommandBit | carbonOptionBit, someID);
    EXPECT_TRUE(waitForCalls({created, created, boundCtrlAltF}));
    EXPECT_TRUE(waitFor(State::refused));
}

TEST_F(PortalHotKeyBackendTest, anotherCombinationIsAnotherSession)
{
    bindAltT();
    backend->unregisterHotKey(1);
    hold(codeOfF, carbonCommandBit | carbonOptionBit, {someID.signature, 8});
    EXPECT_TRUE(waitForCalls({created, boundAltT, u"Close"_s, created, boundCtrlAltF}));
    EXPECT_TRUE(waitFor(State::granted));
    portal->press(5);
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(events[0].hotKeyID.number, 8U);
}

TEST_F(PortalHotKeyBackendTest, aSessionThatIsGivenUpBeforeItsAnswerIsClosed)
{
    portal->isThinking = true;
    ASSERT_TRUE(portal->appear());
    const auto first = registerAltT();
    ASSERT_TRUE(waitForCalls({created}));
    portal->isThinking = false;
    backend->unregisterHotKey(first);
    hold(codeOfF, carbonCommandBit | carbonOptionBit, someID);
    EXPECT_TRUE(waitForCalls({created, u"Close"_s, created, boundCtrlAltF}));
    EXPECT_TRUE(waitFor(State::granted)) << "the portal has one session at a time";
}

TEST_F(PortalHotKeyBackendTest, aPauseKeepsTheShortcutAndHearsNothing)
{
    bindAltT();
    backend->unregisterHotKey(1);
    portal->press(1);
    portal->changeTrigger(u"Alt+U"_s);
    ASSERT_TRUE(waitForTrigger("Alt+U"));
    EXPECT_TRUE(events.empty());

    registerAltT();
    portal->press(2);
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(events[0].time, 2U);
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT})) << "nobody is asked again";
}

TEST_F(PortalHotKeyBackendTest, aCombinationThatIsOnlyTriedTroublesNobody)
{
    ASSERT_TRUE(portal->appear());
    const auto trial = backend->registerHotKey(codeOfF, carbonCommandBit, {1, 9'999});
    EXPECT_EQ(trial.status, hotKeyNoError);
    backend->unregisterHotKey(*trial.reference);
    registerAltT();
    EXPECT_TRUE(waitFor(State::granted));
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT}));
}

TEST_F(PortalHotKeyBackendTest, refusesWhatItHoldsAndWhatHasNoName)
{
    registerAltT();
    EXPECT_EQ(backend->registerHotKey(codeOfT, carbonOptionBit, someID).status, hotKeyTaken);
    constexpr std::uint32_t noKey = 52;
    EXPECT_EQ(backend->registerHotKey(noKey, carbonOptionBit, someID).status, hotKeyInvalid);
    EXPECT_EQ(backend->copySymbolicHotKeys(), std::nullopt);
}

TEST_F(PortalHotKeyBackendTest, withoutAPortalItIsUnavailableUntilOneComes)
{
    registerAltT();
    EXPECT_TRUE(waitFor(State::unavailable));
    ASSERT_TRUE(portal->appear());
    EXPECT_TRUE(waitFor(State::granted));

    portal->vanish();
    EXPECT_TRUE(waitFor(State::unavailable));
    ASSERT_TRUE(portal->appear());
    EXPECT_TRUE(waitFor(State::granted));
    portal->press(3);
    EXPECT_TRUE(waitForEvents(1));
}

TEST_F(PortalHotKeyBackendTest, aPortalWithoutGlobalShortcutsIsUnavailable)
{
    portal->version = std::nullopt;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    EXPECT_TRUE(waitFor(State::unavailable));
    EXPECT_TRUE(portal->calls.isEmpty());
}

TEST_F(PortalHotKeyBackendTest, aPortalThatLacksWhatItNamesIsUnavailable)
{
    portal->version = 0;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    EXPECT_TRUE(waitFor(State::unavailable));
    EXPECT_TRUE(portal->calls.isEmpty());
}

TEST_F(PortalHotKeyBackendTest, withoutABusItIsUnavailable)
{
    connectBackend([] { return QDBusConnection(u"no such connection"_s); });
    registerAltT();
    EXPECT_TRUE(waitFor(State::unavailable));
    hold(codeOfF, carbonOptionBit, someID);
    QCoreApplication::processEvents();
    EXPECT_EQ(backend->desktopShortcut()->state, State::unavailable);
}

TEST_F(PortalHotKeyBackendTest, aSilentPortalHoldsNothingUp)
{
    portal->isSilent = true;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    ASSERT_TRUE(waitForCalls({u"Register"_s}));
    EXPECT_EQ(backend->desktopShortcut()->state, State::asked);
    backend.reset();
}

TEST_F(PortalHotKeyBackendTest, aPersonWhoThinksHoldsNothingUp)
{
    portal->isThinking = true;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    ASSERT_TRUE(waitForCalls({created}));
    portal->answerRequest();
    ASSERT_TRUE(waitForCalls({created, boundAltT}));
    EXPECT_EQ(backend->desktopShortcut()->state, State::asked);
    portal->answerRequest();
    EXPECT_TRUE(waitFor(State::granted));
}

TEST_F(PortalHotKeyBackendTest, whatTheDesktopTakesBackIsToldAndCanBeHadAgain)
{
    bindAltT();
    portal->closeSession();
    EXPECT_TRUE(waitFor(State::refused));
    backend->unregisterHotKey(1);
    hold(codeOfF, carbonCommandBit | carbonOptionBit, someID);
    EXPECT_TRUE(waitFor(State::granted));
    EXPECT_EQ(portal->calls, (QStringList{created, boundAltT, created, boundCtrlAltF}));
}

TEST_F(PortalHotKeyBackendTest, endsInTheMiddleOfEverything)
{
    portal->isThinking = true;
    ASSERT_TRUE(portal->appear());
    registerAltT();
    backend.reset(); // the connection is being made
    connectBackend([this] { return bus.connect(); });
    registerAltT();
    ASSERT_TRUE(waitForCalls({created}));
    backend.reset(); // the portal is asked
    portal->answerRequest();
    QCoreApplication::processEvents();
    EXPECT_TRUE(events.empty());
}

TEST_F(PortalHotKeyBackendTest, theBusIsReachedOnAnotherThread)
{
    std::atomic<std::thread::id> thread;
    std::binary_semaphore mayConnect(0);
    connectBackend([&] {
        thread = std::this_thread::get_id();
        mayConnect.acquire();
        return bus.connect();
    });
    ASSERT_TRUE(portal->appear());
    registerAltT();
    EXPECT_TRUE(eventually([&] { return thread.load() != std::thread::id(); }))
        << "the main thread goes on meanwhile";
    EXPECT_NE(thread.load(), std::this_thread::get_id());
    mayConnect.release();
    EXPECT_TRUE(waitFor(State::granted));
}

TEST_F(PortalHotKeyBackendTest, aBusThatNeverAnswersHoldsUpNeitherStartNorEnd)
{
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toLocal8Bit() + "/bus";
    const test::SilentBus silent(path);
    ASSERT_TRUE(silent.isListening);
    const test::Environment session("WAYLAND_DISPLAY", "wayland-0");
    const test::Environment address("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
    const test::LogCapture log;
    avoidSilentSessionBus(50ms); // As the program does before all else.

    QElapsedTimer time;
    time.start();
    auto made = makeHotKeyBackend(&postToApplication, {});
    EXPECT_EQ(made->registerHotKey(codeOfT, carbonOptionBit, someID).status, hotKeyNoError);
    QCoreApplication::processEvents();
    made.reset(); // The connection is being made.
    made = makeHotKeyBackend(&postToApplication, {});
    EXPECT_EQ(made->registerHotKey(codeOfT, carbonOptionBit, someID).status, hotKeyNoError);
    EXPECT_TRUE(eventually([&] { return made->desktopShortcut()->state == State::unavailable; }));
    made.reset();
    EXPECT_LT(time.elapsed(), 20'000) << "a call that waits for a bus takes 25 s";
}

TEST_F(PortalHotKeyBackendTest, theFactoryTakesThePortalInAWaylandSession)
{
    const test::Environment session("WAYLAND_DISPLAY", "wayland-0");
    const auto made = makeHotKeyBackend(&postToApplication, {});
    EXPECT_EQ(made->desktopShortcut(), DesktopShortcut{});
}

TEST_F(PortalHotKeyBackendTest, drivesHotKeysThroughTheRegistry)
{
    ASSERT_TRUE(portal->appear());
    PortalHotKeyBackend& used = *backend;
    HotKeysController::setBackend(std::move(backend));
    int downs = 0;
    {
        const HotKey hotKey(Key::t, ModifierFlags::option, [&downs] { ++downs; });
        ASSERT_TRUE(eventually([&] { return used.desktopShortcut()->state == State::granted; }));
        portal->press(1);
        EXPECT_TRUE(eventually([&] { return downs == 1; }));
    }
    HotKeysController::setBackend(nullptr);
    EXPECT_EQ(HotKeysController::backend().desktopShortcut(), std::nullopt);
}

} // namespace

} // namespace vellumry::hotkey
