#include "hotkey/X11KeyboardMap.h"

#include "hotkey/ModifierFlags.h"

#include <gtest/gtest.h>

#include <X11/XF86keysym.h>
#include <X11/keysym.h>

namespace vellumry::hotkey {

namespace {

constexpr std::uint8_t placeOfT = 28; // On every keyboard with the codes of evdev.

TEST(X11KeyboardMapTest, findsTheKeyThatTypesALetter)
{
    X11KeyboardMap map;
    map.groups[45] = {{XK_t, XK_T}};
    map.groups[placeOfT] = {{XK_y, XK_Y}};
    EXPECT_EQ(map.keycode(Key::t), 45);
}

TEST(X11KeyboardMapTest, prefersTheLayoutInUse)
{
    X11KeyboardMap map;
    map.groups[28] = {{XK_t}, {XK_y}};
    map.groups[45] = {{XK_k}, {XK_t}};
    EXPECT_EQ(map.keycode(Key::t), 28);
    map.currentGroup = 1;
    EXPECT_EQ(map.keycode(Key::t), 45);
    map.currentGroup = 2; // Back to the first.
    EXPECT_EQ(map.keycode(Key::t), 28);
}

TEST(X11KeyboardMapTest, takesAnotherLayoutWhenTheOneInUseLacksTheLetter)
{
    X11KeyboardMap map;
    map.groups[45] = {{XK_t, XK_T}, {XK_Cyrillic_el, XK_Cyrillic_EL}};
    map.currentGroup = 1;
    EXPECT_EQ(map.keycode(Key::t), 45);
}

TEST(X11KeyboardMapTest, takesThePlaceWhenNoLayoutHasTheLetter)
{
    X11KeyboardMap map;
    map.groups[placeOfT] = {{XK_Cyrillic_ie, XK_Cyrillic_IE}};
    EXPECT_EQ(map.keycode(Key::t), placeOfT);
    EXPECT_EQ(map.keycode(Key::f13), 191);
    EXPECT_EQ(map.keycode(Key::section), 94);
}

TEST(X11KeyboardMapTest, prefersAPlainSymbolToAShiftedOne)
{
    X11KeyboardMap map;
    map.groups[20] = {{XK_less, XK_period}};
    map.groups[60] = {{XK_period, XK_greater}};
    EXPECT_EQ(map.keycode(Key::period), 60);
    map.groups[60] = {};
    EXPECT_EQ(map.keycode(Key::period), 20);
}

TEST(X11KeyboardMapTest, takesTheFirstOfSeveralKeys)
{
    X11KeyboardMap map;
    map.groups[28] = {{XK_t}};
    map.groups[200] = {{XK_t}};
    EXPECT_EQ(map.keycode(Key::t), 28);
}

TEST(X11KeyboardMapTest, knowsNoPlaceForAKeyBeyondTheCodesOfX)
{
    EXPECT_FALSE(X11KeyboardMap{}.keycode(Key::function).has_value());
    EXPECT_FALSE(X11KeyboardMap{}.keycode(Key::keypadClear).has_value());
}

TEST(X11KeyboardMapTest, knowsThePlaceOrSymbolOfEveryKey)
{
    // The symbol decides wherever it is; here every key is told apart by one.
    const std::vector<std::pair<Key, std::uint32_t>> symbols{
        {Key::a, XK_a},
        {Key::zero, XK_0},
        {Key::nine, XK_9},
        {Key::quote, XK_apostrophe},
        {Key::rightBracket, XK_bracketright},
        {Key::leftBracket, XK_bracketleft},
        {Key::grave, XK_grave},
        {Key::section, XK_section},
        {Key::space, XK_space},
        {Key::return_, XK_Return},
        {Key::tab, XK_Tab},
        {Key::escape, XK_Escape},
        {Key::delete_, XK_BackSpace},
        {Key::forwardDelete, XK_Delete},
        {Key::command, XK_Control_L},
        {Key::rightCommand, XK_Control_R},
        {Key::option, XK_Alt_L},
        {Key::rightOption, XK_Alt_R},
        {Key::control, XK_Super_L},
        {Key::rightControl, XK_Super_R},
        {Key::pageUp, XK_Page_Up},
        {Key::pageDown, XK_Page_Down},
        {Key::leftArrow, XK_Left},
        {Key::f1, XK_F1},
        {Key::f20, XK_F20},
        {Key::keypad0, XK_KP_0},
        {Key::keypadEnter, XK_KP_Enter},
        {Key::keypadClear, XK_Clear},
        {Key::help, XK_Help},
        {Key::volumeUp, XF86XK_AudioRaiseVolume},
        {Key::volumeDown, XF86XK_AudioLowerVolume},
        {Key::mute, XF86XK_AudioMute},
    };
    constexpr std::uint8_t somewhere = 240;
    for (const auto& [key, symbol] : symbols) {
        X11KeyboardMap map;
        map.groups[somewhere] = {{symbol}};
        EXPECT_EQ(map.keycode(key), somewhere) << description(key);
    }
}

TEST(X11KeyboardMapTest, usesTheUsualModifiersWhenTheKeyboardTellsNone)
{
    const X11KeyboardMap map;
    EXPECT_EQ(map.modifierMask(0), 0);
    EXPECT_EQ(map.modifierMask(carbonShiftBit), 0x01);
    EXPECT_EQ(map.modifierMask(carbonCommandBit), 0x04);
    EXPECT_EQ(map.modifierMask(carbonOptionBit), 0x08);
    EXPECT_EQ(map.modifierMask(carbonControlBit), 0x40);
    EXPECT_EQ(map.modifierMask(0x1B00), 0x4D);
    EXPECT_EQ(map.modifierMask(0x400), 0);
    EXPECT_EQ(map.lockMask(), 0x02);
}

TEST(X11KeyboardMapTest, findsModifiersByTheirKeys)
{
    X11KeyboardMap map;
    map.groups[64] = {{XK_Alt_L, XK_Meta_L}};
    map.groups[133] = {{XK_Super_L}};
    map.groups[77] = {{XK_Num_Lock}};
    map.groups[78] = {{XK_Scroll_Lock}};
    map.modifierKeycodes[3] = {133};
    map.modifierKeycodes[4] = {64};
    map.modifierKeycodes[5] = {78};
    map.modifierKeycodes[6] = {12, 77};
    EXPECT_EQ(map.modifierMask(carbonControlBit), 0x08);
    EXPECT_EQ(map.modifierMask(carbonOptionBit), 0x10);
    EXPECT_EQ(map.lockMask(), 0x02 | 0x20 | 0x40);
}

} // namespace

} // namespace vellumry::hotkey
