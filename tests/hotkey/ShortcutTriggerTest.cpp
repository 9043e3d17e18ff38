#include "hotkey/ShortcutTrigger.h"

#include "hotkey/Key.h"
#include "hotkey/ModifierFlags.h"

#include <gtest/gtest.h>

#include <set>

namespace vellumry::hotkey {

namespace {

std::string triggerOf(Key key, std::uint32_t modifiers = 0)
{
    return shortcutTrigger(carbonKeyCode(key), modifiers).value_or("none");
}

TEST(ShortcutTriggerTest, modifiersComeFirstAndAreTheKeysThatX11Means)
{
    EXPECT_EQ(triggerOf(Key::t, carbonOptionBit), "ALT+t");
    EXPECT_EQ(triggerOf(Key::t, carbonCommandBit), "CTRL+t");
    EXPECT_EQ(triggerOf(Key::t, carbonControlBit), "LOGO+t");
    EXPECT_EQ(
        triggerOf(Key::t, carbonCommandBit | carbonOptionBit | carbonShiftBit | carbonControlBit),
        "CTRL+ALT+SHIFT+LOGO+t");
    EXPECT_EQ(triggerOf(Key::f5), "F5");
}

TEST(ShortcutTriggerTest, keysBearTheNamesOfTheirSymbols)
{
    EXPECT_EQ(triggerOf(Key::zero), "0");
    EXPECT_EQ(triggerOf(Key::space), "space");
    EXPECT_EQ(triggerOf(Key::return_), "Return");
    EXPECT_EQ(triggerOf(Key::tab), "Tab");
    EXPECT_EQ(triggerOf(Key::delete_), "BackSpace");
    EXPECT_EQ(triggerOf(Key::escape), "Escape");
    EXPECT_EQ(triggerOf(Key::minus), "minus");
    EXPECT_EQ(triggerOf(Key::quote), "apostrophe");
    EXPECT_EQ(triggerOf(Key::grave), "grave");
    EXPECT_EQ(triggerOf(Key::pageUp), "Prior");
    EXPECT_EQ(triggerOf(Key::keypad7), "KP_7");
    EXPECT_EQ(triggerOf(Key::mute), "XF86AudioMute");
}

TEST(ShortcutTriggerTest, aKeyWithoutASymbolAndACodeWithoutAKeyHaveNone)
{
    EXPECT_EQ(triggerOf(Key::function), "none");
    EXPECT_EQ(shortcutTrigger(52, carbonOptionBit), std::nullopt);
}

TEST(ShortcutTriggerTest, noTwoKeysShareOne)
{
    std::set<std::string> triggers;
    for (std::size_t index = 0; index < keyCount; ++index)
        triggers.insert(triggerOf(static_cast<Key>(index)));
    EXPECT_EQ(triggers.size(), keyCount);
}

} // namespace

} // namespace vellumry::hotkey
