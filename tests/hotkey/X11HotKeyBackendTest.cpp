#include "hotkey/X11HotKeyBackend.h"

#include "hotkey/HotKey.h"
#include "hotkey/HotKeysController.h"
#include "hotkey/MainQueue.h"
#include "hotkey/XClient.h"
#include "hotkey/XServer.h"
#include "hotkey/makeHotKeyBackend.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace vellumry::hotkey {

namespace {

using namespace std::chrono_literals;

constexpr HotKeyID anyID{fourCharacterCode("TEST"), 7};
constexpr std::uint32_t codeOfT = 17;
constexpr std::uint32_t codeOfF = 3;

/// Longer than any test: what goes on before has been let go by a call.
constexpr std::chrono::milliseconds endlessly = 1h;

/// The bits of the modifiers on the keyboard that every test begins with.
constexpr std::uint16_t altBit = XCB_MOD_MASK_1;
constexpr std::uint16_t capsBit = XCB_MOD_MASK_LOCK;
constexpr std::uint16_t numBit = XCB_MOD_MASK_2;

class X11HotKeyBackendTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(server.displayName().empty()) << server.failure();
        keyboard = std::make_unique<XClient>(server.displayName());
        editor = std::make_unique<XClient>(server.displayName());
        editor->focusWindow();
        ASSERT_TRUE(queue.runUntil([&] { return editor->hasFocus(); }));
    }

    void TearDown() override { HotKeysController::setBackend(nullptr); }

    /// A backend whose events are recorded and answered with `answer`.
    void connect(std::chrono::milliseconds holdLimit = X11HotKeyBackend::keyboardHoldLimit)
    {
        backend = X11HotKeyBackend::connect(queue.executor(), server.displayName(), holdLimit);
        ASSERT_NE(backend, nullptr);
        backend->installEventHandler([this](const HotKeyEvent* event) {
            events.push_back(*event);
            return answer;
        });
    }

    void registerAltT()
    {
        const auto registration = backend->registerHotKey(codeOfT, carbonOptionBit, anyID);
        ASSERT_EQ(registration.status, hotKeyNoError);
        ASSERT_TRUE(registration.reference.has_value());
        reference = *registration.reference;
    }

    [[nodiscard]] std::size_t count(std::uint32_t kind) const
    {
        return static_cast<std::size_t>(std::ranges::count(events, kind, &HotKeyEvent::kind));
    }
    [[nodiscard]] std::size_t presses() const { return count(HotKeyEvent::pressed); }
    [[nodiscard]] std::size_t releases() const { return count(HotKeyEvent::released); }

    [[nodiscard]] bool waitForPresses(std::size_t number)
    {
        return queue.runUntil([&] { return presses() >= number; });
    }
    [[nodiscard]] bool waitForReleases(std::size_t number)
    {
        return queue.runUntil([&] { return releases() >= number; });
    }
    [[nodiscard]] bool waitForTyped(XClient& client, const std::string& text)
    {
        return queue.runUntil([&] { return client.typed() == text; });
    }

    /// Strikes Alt and a key and waits for the events of it.
    void expectFires(std::uint8_t code)
    {
        const std::size_t before = releases();
        keyboard->strike(keycode::alt, code);
        ASSERT_TRUE(waitForReleases(before + 1))
            << "key code " << int{code} << ", presses " << presses() << ", releases " << before;
        EXPECT_EQ(presses(), before + 1);
        EXPECT_EQ(releases(), before + 1);
    }

    [[nodiscard]] bool isHeld(std::uint8_t code, std::uint16_t modifiers)
    {
        return keyboard->isHeldByOther(code, modifiers);
    }
    [[nodiscard]] bool waitUntilMoved(std::uint8_t from, std::uint8_t to,
                                      std::uint16_t modifiers = altBit)
    {
        return queue.runUntil([&] { return isHeld(to, modifiers) && !isHeld(from, modifiers); });
    }

    XServer server;
    MainQueue queue;
    std::unique_ptr<XClient> keyboard;
    std::unique_ptr<XClient> editor; ///< The program that the user is in.
    std::unique_ptr<X11HotKeyBackend> backend;
    std::vector<HotKeyEvent> events;
    std::int32_t answer = hotKeyNoError;
    HotKeyBackend::Reference reference = 0;
};

TEST_F(X11HotKeyBackendTest, tellsPressAndReleaseWithTheirIdAndTime)
{
    connect();
    registerAltT();
    const std::uint32_t before = keyboard->serverTime();
    keyboard->strike(keycode::alt, keycode::t);
    const std::uint32_t after = keyboard->serverTime();
    ASSERT_TRUE(waitForReleases(1));

    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].kind, HotKeyEvent::pressed);
    EXPECT_EQ(events[1].kind, HotKeyEvent::released);
    for (const HotKeyEvent& event : events) {
        EXPECT_EQ(event.hotKeyID, anyID);
        EXPECT_EQ(event.parameterStatus, hotKeyNoError);
        EXPECT_GE(event.time, before);
        EXPECT_LE(event.time, after);
    }
}

TEST_F(X11HotKeyBackendTest, firesWhateverTheLocksAre)
{
    connect();
    registerAltT();
    const auto toggle = [&](std::uint8_t code) {
        keyboard->press(code);
        keyboard->release(code);
    };
    expectFires(keycode::t);
    toggle(keycode::numLock);
    expectFires(keycode::t);
    toggle(keycode::capsLock);
    expectFires(keycode::t);
    toggle(keycode::numLock);
    expectFires(keycode::t);
    toggle(keycode::capsLock);
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, findsScrollLockWhereItIsAModifier)
{
    ASSERT_TRUE(server.run({"xmodmap", "-e", "add mod3 = Scroll_Lock"}));
    connect();
    registerAltT();
    for (const unsigned locks : {0x00U, 0x02U, 0x10U, 0x12U, 0x20U, 0x22U, 0x30U, 0x32U})
        EXPECT_TRUE(isHeld(keycode::t, static_cast<std::uint16_t>(altBit | locks))) << locks;
}

TEST_F(X11HotKeyBackendTest, doesNotFireWithOtherModifiers)
{
    connect();
    registerAltT();
    keyboard->press(keycode::t);
    keyboard->release(keycode::t);
    for (const std::uint8_t extra : {keycode::shift, keycode::control, keycode::super}) {
        keyboard->strike(extra, keycode::t);
        keyboard->press(extra);
        keyboard->strike(keycode::alt, keycode::t);
        keyboard->release(extra);
    }
    expectFires(keycode::t);
    EXPECT_EQ(events.size(), 2U);
}

TEST_F(X11HotKeyBackendTest, mapsTheFourModifiers)
{
    connect();
    const std::vector<std::pair<std::uint32_t, std::uint16_t>> expected{
        {carbonCommandBit, XCB_MOD_MASK_CONTROL},
        {carbonShiftBit, XCB_MOD_MASK_SHIFT},
        {carbonOptionBit, XCB_MOD_MASK_1},
        {carbonControlBit, XCB_MOD_MASK_4},
        {carbonCommandBit | carbonShiftBit, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT}};
    for (const auto& [carbon, mask] : expected) {
        EXPECT_FALSE(isHeld(keycode::t, mask));
        const auto registration = backend->registerHotKey(codeOfT, carbon, anyID);
        ASSERT_TRUE(registration.reference.has_value());
        EXPECT_TRUE(isHeld(keycode::t, mask));
        EXPECT_TRUE(isHeld(keycode::t, static_cast<std::uint16_t>(mask | capsBit | numBit)));
        backend->unregisterHotKey(*registration.reference);
        EXPECT_FALSE(isHeld(keycode::t, mask));
    }
}

TEST_F(X11HotKeyBackendTest, tellsAHeldKeyOnce)
{
    connect();
    registerAltT();
    keyboard->press(keycode::alt);
    keyboard->press(keycode::t);
    ASSERT_TRUE(waitForPresses(1));
    backend->releaseKeyboard();
    // Each repeat of the key goes to the grab anew.
    ASSERT_TRUE(queue.runUntil([&] { return editor->grabCount() >= 8; }));
    EXPECT_EQ(events.size(), 1U);
    keyboard->release(keycode::t);
    keyboard->release(keycode::alt);
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(events.size(), 2U);

    keyboard->type("x");
    EXPECT_TRUE(waitForTyped(*editor, "#64 x")) << editor->typed();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, refusesWhatAnotherProgramHolds)
{
    connect();
    XClient other(server.displayName());
    ASSERT_TRUE(other.grab(keycode::t, altBit));
    const auto refused = backend->registerHotKey(codeOfT, carbonOptionBit, anyID);
    EXPECT_EQ(refused.status, hotKeyTaken);
    EXPECT_FALSE(refused.reference.has_value());

    other.ungrab(keycode::t, altBit);
    registerAltT();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, takesAPartialRefusalForARefusal)
{
    connect();
    XClient other(server.displayName());
    ASSERT_TRUE(other.grab(keycode::t, altBit | numBit));
    const auto refused = backend->registerHotKey(codeOfT, carbonOptionBit, anyID);
    EXPECT_EQ(refused.status, hotKeyTaken);
    EXPECT_FALSE(refused.reference.has_value());
    // What was got besides has been given back.
    for (const int locks : {0, int{capsBit}, capsBit | numBit})
        EXPECT_FALSE(other.isHeldByOther(keycode::t, static_cast<std::uint16_t>(altBit | locks)))
            << locks;
}

TEST_F(X11HotKeyBackendTest, refusesWhatItHoldsItself)
{
    connect();
    registerAltT();
    const auto second = backend->registerHotKey(codeOfT, carbonOptionBit, {anyID.signature, 8});
    EXPECT_EQ(second.status, hotKeyTaken);
    EXPECT_FALSE(second.reference.has_value());
    expectFires(keycode::t);
    for (const HotKeyEvent& event : events)
        EXPECT_EQ(event.hotKeyID, anyID);
}

TEST_F(X11HotKeyBackendTest, refusesAKeyThatTheKeyboardLacks)
{
    connect();
    const std::uint32_t noKey = 52;
    for (const std::uint32_t code : {noKey, carbonKeyCode(Key::function)}) {
        const auto refused = backend->registerHotKey(code, carbonOptionBit, anyID);
        EXPECT_EQ(refused.status, hotKeyInvalid);
        EXPECT_FALSE(refused.reference.has_value());
    }
}

TEST_F(X11HotKeyBackendTest, testRegistrationLeavesNothingBehind)
{
    connect();
    registerAltT();
    const HotKeyID testID{fourCharacterCode("VLMY"), 9999};
    const auto test = backend->registerHotKey(codeOfF, carbonOptionBit, testID);
    ASSERT_TRUE(test.reference.has_value());
    backend->unregisterHotKey(*test.reference);
    EXPECT_FALSE(isHeld(keycode::f, altBit));
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, unregisteringTwiceIsHarmless)
{
    connect();
    registerAltT();
    backend->unregisterHotKey(reference);
    backend->unregisterHotKey(reference);
    EXPECT_FALSE(isHeld(keycode::t, altBit));
    registerAltT();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, worksAfterManyRegistrations)
{
    connect();
    for (int round = 0; round < 200; ++round) {
        registerAltT();
        backend->unregisterHotKey(reference);
    }
    EXPECT_FALSE(isHeld(keycode::t, altBit));
    registerAltT();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, servesSeveralCombinations)
{
    connect();
    registerAltT();
    const HotKeyID second{anyID.signature, 8};
    ASSERT_TRUE(backend->registerHotKey(codeOfF, carbonOptionBit, second).reference.has_value());
    expectFires(keycode::t);
    expectFires(keycode::f);
    EXPECT_EQ(events[0].hotKeyID, anyID);
    EXPECT_EQ(events[1].hotKeyID, anyID);
    EXPECT_EQ(events[2].hotKeyID, second);
    EXPECT_EQ(events[3].hotKeyID, second);
}

TEST_F(X11HotKeyBackendTest, followsAChangeOfLayout)
{
    connect();
    registerAltT();
    ASSERT_TRUE(server.run({"setxkbmap", "dvorak"}));
    ASSERT_TRUE(waitUntilMoved(keycode::t, keycode::k)); // Where Dvorak has its "t".
    expectFires(keycode::k);
    ASSERT_TRUE(server.run({"setxkbmap", "us"}));
    ASSERT_TRUE(waitUntilMoved(keycode::k, keycode::t));
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, tellsTwoKeysThatAreDownAtOnceApart)
{
    connect();
    registerAltT();
    const HotKeyID second{anyID.signature, 8};
    ASSERT_TRUE(backend->registerHotKey(codeOfF, carbonOptionBit, second).reference.has_value());
    keyboard->press(keycode::alt);
    keyboard->press(keycode::t);
    keyboard->press(keycode::f);
    ASSERT_TRUE(waitForPresses(1));
    backend->releaseKeyboard();
    ASSERT_TRUE(waitForPresses(2));
    backend->releaseKeyboard();
    keyboard->release(keycode::t);
    keyboard->release(keycode::alt);
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(events.back().hotKeyID, anyID);
    keyboard->release(keycode::f);
    ASSERT_TRUE(waitForReleases(2));
    EXPECT_EQ(events.back().hotKeyID, second);
    EXPECT_EQ(events.size(), 4U);
}

TEST_F(X11HotKeyBackendTest, tellsTheReleaseOfAKeyThatHasMovedMeanwhile)
{
    connect();
    registerAltT();
    keyboard->press(keycode::alt);
    keyboard->press(keycode::t);
    ASSERT_TRUE(waitForPresses(1));
    backend->releaseKeyboard();
    ASSERT_TRUE(server.run({"setxkbmap", "dvorak"}));
    ASSERT_TRUE(waitUntilMoved(keycode::t, keycode::k));
    keyboard->release(keycode::t);
    keyboard->release(keycode::alt);
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(events.size(), 2U);
    expectFires(keycode::k);
}

TEST_F(X11HotKeyBackendTest, followsAMovedKey)
{
    connect();
    registerAltT();
    ASSERT_TRUE(server.run({"xmodmap", "-e", "keycode 28 = y Y", "-e", "keycode 29 = t T"}));
    ASSERT_TRUE(waitUntilMoved(keycode::t, keycode::y));
    expectFires(keycode::y);
}

TEST_F(X11HotKeyBackendTest, followsTwoKeysThatChangePlaces)
{
    connect();
    registerAltT();
    const HotKeyID second{anyID.signature, 8};
    ASSERT_TRUE(backend->registerHotKey(codeOfF, carbonOptionBit, second).reference.has_value());
    ASSERT_TRUE(server.run({"xmodmap", "-e", "keycode 28 = f F", "-e", "keycode 41 = t T"}));
    ASSERT_TRUE(queue.runUntil([&] {
        events.clear();
        keyboard->strike(keycode::alt, keycode::f);
        return waitForReleases(1) && events.front().hotKeyID == anyID;
    }));
    expectFires(keycode::t);
    EXPECT_EQ(events.back().hotKeyID, second);
}

TEST_F(X11HotKeyBackendTest, followsNumLockToAnotherModifier)
{
    connect();
    registerAltT();
    constexpr std::uint16_t elsewhere = XCB_MOD_MASK_3;
    EXPECT_FALSE(isHeld(keycode::t, altBit | elsewhere));
    ASSERT_TRUE(server.run({"xmodmap", "-e", "clear mod2", "-e", "add mod3 = Num_Lock"}));
    ASSERT_TRUE(queue.runUntil([&] {
        return isHeld(keycode::t, altBit | elsewhere) && !isHeld(keycode::t, altBit | numBit);
    }));
    keyboard->press(keycode::numLock);
    keyboard->release(keycode::numLock);
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, takesTheNewPlaceOfAKeyOnceAnotherProgramHasLeftIt)
{
    connect();
    registerAltT();
    XClient other(server.displayName());
    ASSERT_TRUE(other.grab(keycode::k, altBit));
    ASSERT_TRUE(server.run({"setxkbmap", "dvorak"}));
    ASSERT_TRUE(queue.runUntil([&] { return !isHeld(keycode::t, altBit); }));
    other.ungrab(keycode::k, altBit);
    ASSERT_TRUE(queue.runUntil([&] { return isHeld(keycode::k, altBit); }));
    expectFires(keycode::k);
}

TEST_F(X11HotKeyBackendTest, comesBackWithTheOldLayoutWhenTheNewPlaceStaysTaken)
{
    connect();
    registerAltT();
    XClient other(server.displayName());
    ASSERT_TRUE(other.grab(keycode::k, altBit));
    ASSERT_TRUE(server.run({"setxkbmap", "dvorak"}));
    ASSERT_TRUE(queue.runUntil([&] { return !isHeld(keycode::t, altBit); }));
    ASSERT_TRUE(server.run({"setxkbmap", "us"}));
    ASSERT_TRUE(queue.runUntil([&] { return isHeld(keycode::t, altBit); }));
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, firesInASecondLayoutWithoutLatinLetters)
{
    ASSERT_TRUE(server.run({"setxkbmap", "us,ru"}));
    connect();
    registerAltT();
    expectFires(keycode::t);
    keyboard->lockGroup(1);
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, followsASecondLayoutThatHasTheLetterElsewhere)
{
    ASSERT_TRUE(server.run({"setxkbmap", "us,dvorak"}));
    connect();
    registerAltT();
    expectFires(keycode::t);
    keyboard->lockGroup(1);
    ASSERT_TRUE(waitUntilMoved(keycode::t, keycode::k));
    expectFires(keycode::k);
    keyboard->lockGroup(0);
    ASSERT_TRUE(waitUntilMoved(keycode::k, keycode::t));
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, usesTheKeysPlaceWhenNoLayoutHasTheLetter)
{
    ASSERT_TRUE(server.run({"setxkbmap", "ru"}));
    connect();
    registerAltT();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, whatIsTypedAfterThePressGoesWhole)
{
    connect(endlessly);
    registerAltT();
    XClient palette(server.displayName());
    for (int round = 1; round <= 10; ++round) {
        keyboard->strike(keycode::alt, keycode::t);
        keyboard->type("hello");
        ASSERT_TRUE(waitForPresses(static_cast<std::size_t>(round)));
        palette.focusWindow();
        ASSERT_TRUE(queue.runUntil([&] { return palette.hasFocus(); }));
        backend->releaseKeyboard();
        std::string expected;
        for (int word = 0; word < round; ++word)
            expected += "hello";
        ASSERT_TRUE(waitForTyped(palette, expected)) << palette.typed();
        ASSERT_TRUE(waitForReleases(static_cast<std::size_t>(round)));

        editor->focusWindow();
        ASSERT_TRUE(queue.runUntil([&] { return editor->hasFocus(); }));
    }
    // Of each round the first key alone, Alt.
    EXPECT_EQ(editor->typed(), "#64 #64 #64 #64 #64 #64 #64 #64 #64 #64 ");
}

TEST_F(X11HotKeyBackendTest, aSecondPressAmongWhatIsHeldBackHoldsTheRest)
{
    connect(endlessly);
    registerAltT();
    XClient palette(server.displayName());
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("ab");
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("cd");
    ASSERT_TRUE(waitForPresses(1));
    palette.focusWindow();
    ASSERT_TRUE(queue.runUntil([&] { return palette.hasFocus(); }));
    backend->releaseKeyboard();

    ASSERT_TRUE(waitForPresses(2));
    EXPECT_TRUE(waitForTyped(palette, "ab#64 ")) << palette.typed();
    editor->focusWindow();
    backend->releaseKeyboard();
    EXPECT_TRUE(waitForTyped(*editor, "#64 cd")) << editor->typed();
    EXPECT_EQ(palette.typed(), "ab#64 ");
    ASSERT_TRUE(waitForReleases(2));
    EXPECT_EQ(events.size(), 4U);
}

TEST_F(X11HotKeyBackendTest, aLateReleaseDoesNotLetGoOfALaterPress)
{
    connect(endlessly);
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    ASSERT_TRUE(waitForPresses(1));
    backend->releaseKeyboard();
    ASSERT_TRUE(waitForReleases(1));

    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("x");
    // The second press is on its way to the main thread, which still speaks of the first.
    while (queue.isEmpty())
        std::this_thread::yield();
    backend->releaseKeyboard();
    // A request that is served after the release: nothing has come through.
    const auto another = backend->registerHotKey(codeOfF, carbonOptionBit, anyID);
    ASSERT_TRUE(another.reference.has_value());
    EXPECT_EQ(editor->typed(), "#64 #64 ");
    ASSERT_TRUE(waitForPresses(2));
    backend->releaseKeyboard();
    EXPECT_TRUE(waitForTyped(*editor, "#64 #64 x")) << editor->typed();
}

TEST_F(X11HotKeyBackendTest, afterAPressThatClosesKeysWaitForTheNextWindowsFocus)
{
    connect(endlessly);
    registerAltT();
    XClient palette(server.displayName());
    palette.focusWindow();
    palette.tellActive(&palette);
    ASSERT_TRUE(queue.runUntil([&] { return palette.hasFocus(); }));
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    ASSERT_TRUE(waitForPresses(1));
    backend->releaseKeyboardAfter(palette.windowNumber());

    const auto expectNothingTyped = [&] {
        EXPECT_FALSE(queue.runUntil([&] { return palette.typed() != "#64 "; }, 30ms));
        EXPECT_EQ(editor->typed(), "");
    };
    expectNothingTyped();
    palette.hideWindow();
    expectNothingTyped();
    palette.tellActive(nullptr);
    XClient manager(server.displayName());
    manager.focusWindow(); // For the time between.
    expectNothingTyped();
    editor->focusWindow();
    expectNothingTyped();
    palette.tellActive(editor.get());
    EXPECT_TRUE(waitForTyped(*editor, "hello")) << editor->typed();
    EXPECT_EQ(palette.typed(), "#64 ");
    EXPECT_EQ(manager.typed(), "");
}

TEST_F(X11HotKeyBackendTest, afterAPressThatClosesKeysGoOnAtOnceWhenAnotherWindowHasTheFocus)
{
    connect(endlessly);
    registerAltT();
    constexpr std::uint32_t somewhereElse = 4711;
    for (const bool isManaged : {false, true}) {
        if (isManaged)
            keyboard->tellActive(editor.get());
        const std::string before = editor->typed();
        const std::size_t pressesBefore = presses();
        keyboard->strike(keycode::alt, keycode::t);
        keyboard->type("hello");
        ASSERT_TRUE(waitForPresses(pressesBefore + 1));
        backend->releaseKeyboardAfter(somewhereElse);
        EXPECT_TRUE(waitForTyped(*editor, before + "#64 hello")) << editor->typed();
    }
}

TEST_F(X11HotKeyBackendTest, afterAPressThatClosesKeysGoOnAfterTheLimitAtTheLatest)
{
    constexpr auto limit = 2s;
    connect(limit);
    registerAltT();
    keyboard->tellActive(editor.get());
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    ASSERT_TRUE(waitForPresses(1));
    // The main thread takes its time, which is not the window manager's.
    EXPECT_FALSE(queue.runUntil([&] { return editor->typed() == "#64 hello"; }, 500ms));
    const auto start = std::chrono::steady_clock::now();
    backend->releaseKeyboardAfter(editor->windowNumber()); // Which stays.
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
    EXPECT_GE(std::chrono::steady_clock::now() - start, limit);
}

TEST_F(X11HotKeyBackendTest, keysGoOnAfterTheLimitWhenNobodyAnswers)
{
    connect();
    registerAltT();
    const auto start = std::chrono::steady_clock::now();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
    EXPECT_GE(std::chrono::steady_clock::now() - start, X11HotKeyBackend::keyboardHoldLimit);
    EXPECT_EQ(presses(), 1U);
}

TEST_F(X11HotKeyBackendTest, aBlockedMainThreadDoesNotHoldTheKeyboard)
{
    connect();
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    // Nothing that the backend posts is run here.
    MainQueue waiting;
    EXPECT_TRUE(waiting.runUntil([&] { return editor->typed() == "#64 hello"; }))
        << editor->typed();
    EXPECT_TRUE(events.empty());
    ASSERT_TRUE(waitForReleases(1));
    EXPECT_EQ(events.size(), 2U);
}

TEST_F(X11HotKeyBackendTest, keysGoOnAtOnceWhenThePressIsNotHandled)
{
    connect(endlessly);
    answer = hotKeyEventNotHandled;
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
}

TEST_F(X11HotKeyBackendTest, keysGoOnAtOnceWithoutAHandler)
{
    connect(endlessly);
    backend->installEventHandler({});
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
}

TEST_F(X11HotKeyBackendTest, unregisteringLetsGoOfThePress)
{
    connect(endlessly);
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    ASSERT_TRUE(waitForPresses(1));
    backend->unregisterHotKey(reference);
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
    EXPECT_EQ(events.size(), 1U);
}

TEST_F(X11HotKeyBackendTest, aKeyThatIsDownDoesNotFireWhenRegisteredAnew)
{
    connect(endlessly);
    registerAltT();
    keyboard->press(keycode::alt);
    keyboard->press(keycode::t);
    ASSERT_TRUE(waitForPresses(1));
    backend->unregisterHotKey(reference);
    registerAltT();
    const int before = editor->grabCount();
    ASSERT_TRUE(queue.runUntil([&] { return editor->grabCount() >= before + 4; }));
    keyboard->release(keycode::t);
    keyboard->release(keycode::alt);
    keyboard->type("x");
    ASSERT_TRUE(queue.runUntil([&] { return editor->typed().ends_with("x"); }));
    EXPECT_EQ(presses(), 1U);
    keyboard->strike(keycode::alt, keycode::t);
    ASSERT_TRUE(waitForPresses(2));
}

TEST_F(X11HotKeyBackendTest, theEndOfTheBackendLetsGoOfEverything)
{
    connect(endlessly);
    registerAltT();
    keyboard->strike(keycode::alt, keycode::t);
    keyboard->type("hello");
    while (queue.isEmpty())
        std::this_thread::yield();
    backend.reset();
    EXPECT_TRUE(waitForTyped(*editor, "#64 hello")) << editor->typed();
    EXPECT_FALSE(isHeld(keycode::t, altBit));
    EXPECT_TRUE(events.empty()); // The press was on its way when the backend ended.
}

TEST_F(X11HotKeyBackendTest, releaseKeyboardIsHarmlessWhenNothingIsHeld)
{
    connect();
    backend->releaseKeyboard();
    registerAltT();
    backend->releaseKeyboard();
    expectFires(keycode::t);
}

TEST_F(X11HotKeyBackendTest, survivesTheEndOfTheServer)
{
    connect();
    registerAltT();
    server.kill();
    // At once, before the thread has seen it, and again when it has.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto refused = backend->registerHotKey(codeOfF, carbonOptionBit, anyID);
        EXPECT_EQ(refused.status, hotKeyUnavailable);
        EXPECT_FALSE(refused.reference.has_value());
    }
    backend->unregisterHotKey(reference);
    backend->releaseKeyboard();

    // The thread sleeps: it uses no time of the processor.
    const auto cpuTime = [] {
        timespec used{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
        return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
    };
    const auto before = cpuTime();
    EXPECT_FALSE(queue.runUntil([] { return false; }, 400ms));
    EXPECT_LT(cpuTime() - before, 200ms);
    backend.reset();
    EXPECT_TRUE(events.empty());
}

TEST_F(X11HotKeyBackendTest, survivesTheEndOfTheServerWhileTheKeyboardIsHeld)
{
    connect();
    registerAltT();
    keyboard->press(keycode::alt);
    keyboard->press(keycode::t);
    ASSERT_TRUE(waitForPresses(1));
    server.kill();
    backend->releaseKeyboard();
    EXPECT_EQ(backend->registerHotKey(codeOfF, carbonOptionBit, anyID).status, hotKeyUnavailable);
}

TEST_F(X11HotKeyBackendTest, connectsToNoServerThatIsNotThere)
{
    server.kill();
    EXPECT_EQ(X11HotKeyBackend::connect(queue.executor(), server.displayName()), nullptr);
}

TEST_F(X11HotKeyBackendTest, theFactoryTakesTheDisplayOfTheEnvironment)
{
    unsetenv("WAYLAND_DISPLAY");
    setenv("DISPLAY", server.displayName().c_str(), 1);
    auto made = makeHotKeyBackend(queue.executor(), {});
    EXPECT_TRUE(made->registerHotKey(codeOfT, carbonOptionBit, anyID).reference.has_value());
    EXPECT_TRUE(isHeld(keycode::t, altBit));
    made.reset();

    server.kill();
    made = makeHotKeyBackend(queue.executor(), {});
    EXPECT_EQ(made->registerHotKey(codeOfT, carbonOptionBit, anyID).status, hotKeyUnavailable);
    made.reset();

    unsetenv("DISPLAY");
    made = makeHotKeyBackend(queue.executor(), {});
    EXPECT_EQ(made->registerHotKey(codeOfT, carbonOptionBit, anyID).status, hotKeyUnavailable);
}

TEST_F(X11HotKeyBackendTest, drivesHotKeysThroughTheRegistry)
{
    connect();
    HotKeysController::setBackend(std::move(backend));
    int downs = 0;
    int ups = 0;
    HotKey hotKey(
        Key::t, ModifierFlags::option, [&] { ++downs; }, [&] { ++ups; });
    keyboard->strike(keycode::alt, keycode::t);
    ASSERT_TRUE(queue.runUntil([&] { return ups == 1; }));
    EXPECT_EQ(downs, 1);

    hotKey.setPaused(true);
    EXPECT_FALSE(isHeld(keycode::t, altBit));
    hotKey.setPaused(false);
    EXPECT_TRUE(isHeld(keycode::t, altBit));
    keyboard->strike(keycode::alt, keycode::t);
    ASSERT_TRUE(queue.runUntil([&] { return ups == 2; }));
    EXPECT_EQ(downs, 2);
}

TEST_F(X11HotKeyBackendTest, ofTwoHotKeysWithOneCombinationTheFirstFires)
{
    connect();
    HotKeysController::setBackend(std::move(backend));
    int first = 0;
    int second = 0;
    auto one = std::make_unique<HotKey>(Key::t, ModifierFlags::option, HotKey::Handler{},
                                        [&] { ++first; });
    HotKey two(Key::t, ModifierFlags::option, {}, [&] { ++second; });
    keyboard->strike(keycode::alt, keycode::t);
    ASSERT_TRUE(queue.runUntil([&] { return first == 1; }));
    EXPECT_EQ(second, 0);
    one.reset();
    EXPECT_FALSE(isHeld(keycode::t, altBit)); // The second was refused, and stays so.
}

} // namespace

} // namespace vellumry::hotkey
