#include "hotkey/HotKey.h"

#include "hotkey/RegistryTest.h"

#include <gtest/gtest.h>

#include <memory>

namespace vellumry::hotkey {

namespace {

using HotKeyTest = RegistryTest;

constexpr std::uint32_t codeOfT = 17;

TEST_F(HotKeyTest, registersForItsLifeFromEachConstructor)
{
    const KeyCombo combo(Key::t, ModifierFlags::option);
    {
        const HotKey hotKey(combo);
        EXPECT_EQ(hotKey.keyCombo, combo);
        EXPECT_FALSE(hotKey.keyDownHandler);
        EXPECT_FALSE(hotKey.keyUpHandler);
        EXPECT_FALSE(hotKey.isPaused());
        EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 1U);
    }
    EXPECT_TRUE(backend->held.empty());
    {
        const HotKey hotKey(Key::t, ModifierFlags::option);
        EXPECT_EQ(hotKey.keyCombo, combo);
        EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 2U);
    }
    {
        const HotKey hotKey(codeOfT, carbonOptionBit);
        EXPECT_EQ(hotKey.keyCombo, combo);
        EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 3U);
    }
    EXPECT_TRUE(backend->held.empty());
    EXPECT_TRUE(HotKeysController::hotKeys.empty());
    EXPECT_EQ(HotKeysController::hotKeysCount, 3U);
}

TEST_F(HotKeyTest, takesItsHandlers)
{
    int downs = 0;
    int ups = 0;
    const HotKey hotKey(
        codeOfT, carbonOptionBit, [&] { ++downs; }, [&] { ++ups; });
    hotKey.keyDownHandler();
    EXPECT_EQ(downs, 1);
    hotKey.keyUpHandler();
    EXPECT_EQ(ups, 1);
}

TEST_F(HotKeyTest, hasAnIdentifierOfItsOwn)
{
    const HotKey one(Key::t, ModifierFlags::option);
    const HotKey two(Key::t, ModifierFlags::option);
    EXPECT_EQ(one.identifier, one.identifier);
    EXPECT_FALSE(one.identifier == two.identifier);
    EXPECT_EQ(one.identifier.bytes[6] >> 4, 4);
    EXPECT_EQ(one.identifier.bytes[8] >> 6, 2);
}

TEST_F(HotKeyTest, pausingTakesItOffAndUnpausingGivesANewNumber)
{
    HotKey hotKey(Key::t, ModifierFlags::option);
    EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 1U);

    hotKey.setPaused(true);
    EXPECT_TRUE(hotKey.isPaused());
    EXPECT_TRUE(backend->held.empty());
    EXPECT_TRUE(HotKeysController::hotKeys.empty());

    hotKey.setPaused(false);
    EXPECT_FALSE(hotKey.isPaused());
    EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 2U);
    ASSERT_EQ(HotKeysController::hotKeys.size(), 1U);
    EXPECT_EQ(HotKeysController::hotKeys.begin()->first, 2U);
    EXPECT_EQ(HotKeysController::hotKeys.at(2).hotKey, &hotKey);
}

TEST_F(HotKeyTest, settingTheSamePausedValueChangesNothing)
{
    HotKey hotKey(Key::t, ModifierFlags::option);
    hotKey.setPaused(false);
    EXPECT_EQ(HotKeysController::hotKeysCount, 1U);
    EXPECT_EQ(HotKeysController::hotKeys.size(), 1U);
    hotKey.setPaused(true);
    hotKey.setPaused(true);
    EXPECT_EQ(backend->unregistered.size(), 1U);
    EXPECT_EQ(HotKeysController::hotKeysCount, 1U);
}

TEST_F(HotKeyTest, endingWhilePausedTakesNothingOff)
{
    {
        HotKey hotKey(Key::t, ModifierFlags::option);
        hotKey.setPaused(true);
    }
    EXPECT_EQ(backend->unregistered.size(), 1U);
}

TEST_F(HotKeyTest, aRefusedCombinationLeavesABoxAndIsSilent)
{
    backend->refusal = HotKeyBackend::Registration{hotKeyTaken, std::nullopt};
    {
        const HotKey hotKey(Key::t, ModifierFlags::option);
        ASSERT_EQ(HotKeysController::hotKeys.size(), 1U);
        const HotKeyBox& box = HotKeysController::hotKeys.at(1);
        EXPECT_EQ(box.identifier, hotKey.identifier);
        EXPECT_EQ(box.hotKey, &hotKey);
        EXPECT_EQ(box.carbonHotKeyID, 1U);
        EXPECT_FALSE(box.carbonEventHotKey.has_value());
    }
    EXPECT_TRUE(HotKeysController::hotKeys.empty());
    EXPECT_TRUE(backend->unregistered.empty()); // There was nothing to take off.
}

TEST_F(HotKeyTest, ofTwoWithOneCombinationTheSecondIsRefused)
{
    const HotKey one(Key::t, ModifierFlags::option);
    const HotKey two(Key::t, ModifierFlags::option);
    ASSERT_EQ(HotKeysController::hotKeys.size(), 2U);
    EXPECT_TRUE(HotKeysController::hotKeys.at(1).carbonEventHotKey.has_value());
    EXPECT_FALSE(HotKeysController::hotKeys.at(2).carbonEventHotKey.has_value());
    EXPECT_EQ(backend->numberOf(codeOfT, carbonOptionBit), 1U);
}

TEST_F(HotKeyTest, livesOnWithoutItsBackend)
{
    const auto hotKey = std::make_unique<HotKey>(Key::t, ModifierFlags::option);
    HotKeysController::setBackend(nullptr);
    EXPECT_FALSE(HotKeysController::hotKeys.at(1).carbonEventHotKey.has_value());
    hotKey->setPaused(true);
    hotKey->setPaused(false);
    EXPECT_EQ(HotKeysController::hotKeys.size(), 1U);
}

} // namespace

} // namespace vellumry::hotkey
