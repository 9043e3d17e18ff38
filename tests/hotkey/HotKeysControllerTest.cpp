#include "hotkey/HotKeysController.h"

#include "hotkey/HotKey.h"
#include "hotkey/NullHotKeyBackend.h"
#include "hotkey/RegistryTest.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace vellumry::hotkey {

namespace {

class HotKeysControllerTest : public RegistryTest {
protected:
    [[nodiscard]] static HotKeyEvent event(std::uint32_t kind, std::uint32_t number)
    {
        return {kind, {HotKeysController::eventHotKeySignature, number}};
    }
    static std::int32_t send(const HotKeyEvent& event)
    {
        return HotKeysController::handleEvent(&event);
    }
    [[nodiscard]] HotKey::Handler down()
    {
        return [this] { ++downs; };
    }
    [[nodiscard]] HotKey::Handler up()
    {
        return [this] { ++ups; };
    }

    int downs = 0;
    int ups = 0;
};

TEST_F(HotKeysControllerTest, signatureIsItsFourCharacters)
{
    EXPECT_EQ(HotKeysController::eventHotKeySignature, 0x5353486BU);
}

TEST_F(HotKeysControllerTest, asksTheBackendForTheCombination)
{
    const HotKey hotKey(Key::t, ModifierFlags::option | ModifierFlags::shift);
    ASSERT_EQ(backend->held.size(), 1U);
    const auto& [reference, held] = *backend->held.begin();
    EXPECT_EQ(held.keyCode, 17U);
    EXPECT_EQ(held.modifiers, 0xA00U);
    EXPECT_EQ(held.hotKeyID, (HotKeyID{HotKeysController::eventHotKeySignature, 1}));

    const HotKeyBox& box = HotKeysController::hotKeys.at(1);
    EXPECT_EQ(box.identifier, hotKey.identifier);
    EXPECT_EQ(box.hotKey, &hotKey);
    EXPECT_EQ(box.carbonHotKeyID, 1U);
    EXPECT_EQ(box.carbonEventHotKey, reference);
}

TEST_F(HotKeysControllerTest, registeringTwiceLeavesOneBox)
{
    HotKey hotKey(Key::t, ModifierFlags::option);
    HotKeysController::registerHotKey(hotKey);
    HotKeysController::registerHotKey(hotKey);
    EXPECT_EQ(HotKeysController::hotKeys.size(), 1U);
    EXPECT_EQ(HotKeysController::hotKeysCount, 1U);
    EXPECT_EQ(backend->held.size(), 1U);
}

TEST_F(HotKeysControllerTest, aRefusedOneIsRegisteredAllTheSame)
{
    backend->refusal = HotKeyBackend::Registration{hotKeyTaken, std::nullopt};
    HotKey hotKey(Key::t, ModifierFlags::option, down());
    backend->refusal.reset();
    HotKeysController::registerHotKey(hotKey);
    EXPECT_EQ(HotKeysController::hotKeys.size(), 1U);
    EXPECT_TRUE(backend->held.empty());
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, aStatusOrAMissingReferenceIsARefusal)
{
    for (const HotKeyBackend::Registration& refusal :
         {HotKeyBackend::Registration{hotKeyTaken, 5},
          HotKeyBackend::Registration{hotKeyNoError, std::nullopt}}) {
        backend->refusal = refusal;
        const HotKey hotKey(Key::t, ModifierFlags::option);
        EXPECT_FALSE(HotKeysController::hotKeys.begin()->second.carbonEventHotKey.has_value());
    }
    EXPECT_EQ(HotKeysController::eventHandler, nullptr);
    EXPECT_EQ(backend->handlersInstalled, 0);
}

TEST_F(HotKeysControllerTest, theHandlerIsInstalledOnce)
{
    EXPECT_EQ(HotKeysController::eventHandler, nullptr);
    {
        const HotKey one(Key::t, ModifierFlags::option, down());
        EXPECT_EQ(HotKeysController::eventHandler, backend);
        const HotKey two(Key::f, ModifierFlags::option);
    }
    const HotKey three(Key::t, ModifierFlags::option, down());
    EXPECT_EQ(backend->handlersInstalled, 1);
    EXPECT_EQ(HotKeysController::eventHandler, backend);

    const HotKeyEvent press = event(HotKeyEvent::pressed, 3);
    EXPECT_EQ(backend->handler(&press), 0);
    EXPECT_EQ(downs, 1);
}

TEST_F(HotKeysControllerTest, theNumberNeverGoesDown)
{
    std::make_unique<HotKey>(Key::t, ModifierFlags::option).reset();
    EXPECT_EQ(HotKeysController::hotKeysCount, 1U);
    const HotKey hotKey(Key::t, ModifierFlags::option);
    EXPECT_EQ(HotKeysController::hotKeysCount, 2U);
}

TEST_F(HotKeysControllerTest, pressAndReleaseGoToTheirHandlers)
{
    const HotKey hotKey(Key::t, ModifierFlags::option, down(), up());
    EXPECT_EQ(send(event(5, 1)), 0);
    EXPECT_EQ(downs, 1);
    EXPECT_EQ(ups, 0);
    EXPECT_EQ(send(event(6, 1)), 0);
    EXPECT_EQ(downs, 1);
    EXPECT_EQ(ups, 1);
}

TEST_F(HotKeysControllerTest, theNumberChoosesTheHotKey)
{
    const HotKey one(Key::t, ModifierFlags::option, down());
    const HotKey two(Key::f, ModifierFlags::option, up());
    EXPECT_EQ(send(event(5, 2)), 0);
    EXPECT_EQ(downs, 0);
    EXPECT_EQ(ups, 1);
}

TEST_F(HotKeysControllerTest, noEventIsNotHandled)
{
    EXPECT_EQ(HotKeysController::handleEvent(nullptr), -9874);
}

TEST_F(HotKeysControllerTest, aFailureToReadTheIdIsAnsweredAsItIs)
{
    const HotKey hotKey(Key::t, ModifierFlags::option, down());
    HotKeyEvent unreadable = event(5, 1);
    unreadable.parameterStatus = -9870;
    EXPECT_EQ(send(unreadable), -9870);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, anotherSignatureIsNotHandled)
{
    const HotKey hotKey(Key::t, ModifierFlags::option, down());
    EXPECT_EQ(send({5, {fourCharacterCode("VLMY"), 1}}), -9874);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, aNumberWithoutHotKeyIsNotHandled)
{
    const HotKey hotKey(Key::t, ModifierFlags::option, down());
    EXPECT_EQ(send(event(5, 2)), -9874);
    HotKeysController::hotKeys.at(1).hotKey = nullptr;
    EXPECT_EQ(send(event(5, 1)), -9874);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, anotherKindIsNotHandled)
{
    const HotKey hotKey(Key::t, ModifierFlags::option, down(), up());
    for (const std::uint32_t kind : {0U, 1U, 4U, 7U})
        EXPECT_EQ(send(event(kind, 1)), -9874) << kind;
    EXPECT_EQ(downs + ups, 0);
}

TEST_F(HotKeysControllerTest, aPausedHotKeyIsNotHandled)
{
    HotKey hotKey(Key::t, ModifierFlags::option, down());
    hotKey.setPaused(true);
    EXPECT_EQ(send(event(5, 1)), -9874);
    // Even if something had put it back.
    HotKeysController::registerHotKey(hotKey);
    EXPECT_EQ(send(event(5, 2)), -9874);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, theOldNumberIsNotHandledAfterAPause)
{
    HotKey hotKey(Key::t, ModifierFlags::option, down());
    hotKey.setPaused(true);
    hotKey.setPaused(false);
    EXPECT_EQ(send(event(5, 1)), -9874);
    EXPECT_EQ(send(event(5, 2)), 0);
    EXPECT_EQ(downs, 1);
}

TEST_F(HotKeysControllerTest, withoutItsHandlerAnEventIsNotHandled)
{
    HotKey hotKey(Key::t, ModifierFlags::option, down());
    EXPECT_EQ(send(event(6, 1)), -9874);
    hotKey.keyDownHandler = nullptr;
    EXPECT_EQ(send(event(5, 1)), -9874);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, anEndedHotKeyIsNotHandled)
{
    std::make_unique<HotKey>(Key::t, ModifierFlags::option, down()).reset();
    EXPECT_EQ(send(event(5, 1)), -9874);
    EXPECT_EQ(downs, 0);
}

TEST_F(HotKeysControllerTest, aHandlerMayEndItsHotKey)
{
    std::unique_ptr<HotKey> hotKey;
    const std::vector<int> captured{1, 2, 3};
    hotKey = std::make_unique<HotKey>(Key::t, ModifierFlags::option, [&, captured] {
        hotKey.reset();
        downs = static_cast<int>(captured.size()); // What it holds is still there.
    });
    EXPECT_EQ(send(event(5, 1)), 0);
    EXPECT_EQ(downs, 3);
    EXPECT_TRUE(HotKeysController::hotKeys.empty());
}

using HotKeysControllerDeathTest = HotKeysControllerTest;

TEST_F(HotKeysControllerDeathTest, runningOutOfNumbersIsFatal)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    HotKeysController::hotKeysCount = std::numeric_limits<std::uint32_t>::max() - 1;
    const HotKey last(Key::t, ModifierFlags::option);
    EXPECT_EQ(HotKeysController::hotKeysCount, std::numeric_limits<std::uint32_t>::max());
    EXPECT_DEATH(const HotKey oneTooMany(Key::f, ModifierFlags::option), "out of numbers");
}

TEST_F(HotKeysControllerTest, withoutABackendEverythingIsRefused)
{
    HotKeysController::setBackend(nullptr);
    const HotKey hotKey(Key::t, ModifierFlags::option);
    EXPECT_FALSE(HotKeysController::hotKeys.at(1).carbonEventHotKey.has_value());
    EXPECT_EQ(HotKeysController::eventHandler, nullptr);
}

TEST(NullHotKeyBackendTest, refusesEverything)
{
    NullHotKeyBackend none;
    const auto refused = none.registerHotKey(17, carbonOptionBit, {1, 1});
    EXPECT_EQ(refused.status, hotKeyUnavailable);
    EXPECT_FALSE(refused.reference.has_value());
    none.unregisterHotKey(1);
    none.releaseKeyboard();
    EXPECT_EQ(none.installEventHandler({}), nullptr);
    EXPECT_FALSE(none.copySymbolicHotKeys().has_value());
}

} // namespace

} // namespace vellumry::hotkey
