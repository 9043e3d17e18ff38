#include "hotkey/Key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vellumry::hotkey {

namespace {

const std::vector<std::pair<Key, std::uint32_t>> carbonKeyCodes{
    {Key::a, 0},
    {Key::b, 11},
    {Key::c, 8},
    {Key::d, 2},
    {Key::e, 14},
    {Key::f, 3},
    {Key::g, 5},
    {Key::h, 4},
    {Key::i, 34},
    {Key::j, 38},
    {Key::k, 40},
    {Key::l, 37},
    {Key::m, 46},
    {Key::n, 45},
    {Key::o, 31},
    {Key::p, 35},
    {Key::q, 12},
    {Key::r, 15},
    {Key::s, 1},
    {Key::t, 17},
    {Key::u, 32},
    {Key::v, 9},
    {Key::w, 13},
    {Key::x, 7},
    {Key::y, 16},
    {Key::z, 6},
    {Key::zero, 29},
    {Key::one, 18},
    {Key::two, 19},
    {Key::three, 20},
    {Key::four, 21},
    {Key::five, 23},
    {Key::six, 22},
    {Key::seven, 26},
    {Key::eight, 28},
    {Key::nine, 25},
    {Key::period, 47},
    {Key::quote, 39},
    {Key::rightBracket, 30},
    {Key::semicolon, 41},
    {Key::slash, 44},
    {Key::backslash, 42},
    {Key::comma, 43},
    {Key::equal, 24},
    {Key::grave, 50},
    {Key::leftBracket, 33},
    {Key::minus, 27},
    {Key::section, 10},
    {Key::space, 49},
    {Key::tab, 48},
    {Key::return_, 36},
    {Key::command, 55},
    {Key::rightCommand, 54},
    {Key::option, 58},
    {Key::rightOption, 61},
    {Key::control, 59},
    {Key::rightControl, 62},
    {Key::shift, 56},
    {Key::rightShift, 60},
    {Key::function, 63},
    {Key::capsLock, 57},
    {Key::pageUp, 116},
    {Key::pageDown, 121},
    {Key::home, 115},
    {Key::end, 119},
    {Key::upArrow, 126},
    {Key::rightArrow, 124},
    {Key::downArrow, 125},
    {Key::leftArrow, 123},
    {Key::f1, 122},
    {Key::f2, 120},
    {Key::f3, 99},
    {Key::f4, 118},
    {Key::f5, 96},
    {Key::f6, 97},
    {Key::f7, 98},
    {Key::f8, 100},
    {Key::f9, 101},
    {Key::f10, 109},
    {Key::f11, 103},
    {Key::f12, 111},
    {Key::f13, 105},
    {Key::f14, 107},
    {Key::f15, 113},
    {Key::f16, 106},
    {Key::f17, 64},
    {Key::f18, 79},
    {Key::f19, 80},
    {Key::f20, 90},
    {Key::keypad0, 82},
    {Key::keypad1, 83},
    {Key::keypad2, 84},
    {Key::keypad3, 85},
    {Key::keypad4, 86},
    {Key::keypad5, 87},
    {Key::keypad6, 88},
    {Key::keypad7, 89},
    {Key::keypad8, 91},
    {Key::keypad9, 92},
    {Key::keypadClear, 71},
    {Key::keypadDecimal, 65},
    {Key::keypadDivide, 75},
    {Key::keypadEnter, 76},
    {Key::keypadEquals, 81},
    {Key::keypadMinus, 78},
    {Key::keypadMultiply, 67},
    {Key::keypadPlus, 69},
    {Key::escape, 53},
    {Key::delete_, 51},
    {Key::forwardDelete, 117},
    {Key::help, 114},
    {Key::volumeUp, 72},
    {Key::volumeDown, 73},
    {Key::mute, 74},
};

const std::vector<std::pair<std::string, Key>> namesOfKeys{
    {"a", Key::a},
    {"b", Key::b},
    {"c", Key::c},
    {"d", Key::d},
    {"e", Key::e},
    {"f", Key::f},
    {"g", Key::g},
    {"h", Key::h},
    {"i", Key::i},
    {"j", Key::j},
    {"k", Key::k},
    {"l", Key::l},
    {"m", Key::m},
    {"n", Key::n},
    {"o", Key::o},
    {"p", Key::p},
    {"q", Key::q},
    {"r", Key::r},
    {"s", Key::s},
    {"t", Key::t},
    {"u", Key::u},
    {"v", Key::v},
    {"w", Key::w},
    {"x", Key::x},
    {"y", Key::y},
    {"z", Key::z},
    {"0", Key::zero},
    {"zero", Key::zero},
    {"1", Key::one},
    {"one", Key::one},
    {"2", Key::two},
    {"two", Key::two},
    {"3", Key::three},
    {"three", Key::three},
    {"4", Key::four},
    {"four", Key::four},
    {"5", Key::five},
    {"five", Key::five},
    {"6", Key::six},
    {"six", Key::six},
    {"7", Key::seven},
    {"seven", Key::seven},
    {"8", Key::eight},
    {"eight", Key::eight},
    {"9", Key::nine},
    {"nine", Key::nine},
    {".", Key::period},
    {"period", Key::period},
    {"\"", Key::quote},
    {"quote", Key::quote},
    {"]", Key::rightBracket},
    {"[", Key::leftBracket},
    {";", Key::semicolon},
    {"semicolon", Key::semicolon},
    {"/", Key::slash},
    {"slash", Key::slash},
    {"\\", Key::backslash},
    {"backslash", Key::backslash},
    {",", Key::comma},
    {"comma", Key::comma},
    {"=", Key::equal},
    {"equal", Key::equal},
    {"`", Key::grave},
    {"grave", Key::grave},
    {"-", Key::minus},
    {"minus", Key::minus},
    {"section", Key::section},
    {"§", Key::section},
    {"return", Key::return_},
    {"↩\ufe0e", Key::return_},
    {"tab", Key::tab},
    {"⇥", Key::tab},
    {"space", Key::space},
    {"␣", Key::space},
    {"delete", Key::delete_},
    {"⌫", Key::delete_},
    {"escape", Key::escape},
    {"⎋", Key::escape},
    {"forwarddelete", Key::forwardDelete},
    {"⌦", Key::forwardDelete},
    {"control", Key::control},
    {"⌃", Key::control},
    {"function", Key::function},
    {"fn", Key::function},
    {"help", Key::help},
    {"home", Key::home},
    {"↖", Key::home},
    {"end", Key::end},
    {"pageup", Key::pageUp},
    {"⇞", Key::pageUp},
    {"pagedown", Key::pageDown},
    {"leftarrow", Key::leftArrow},
    {"←", Key::leftArrow},
    {"rightarrow", Key::rightArrow},
    {"uparrow", Key::upArrow},
    {"downarrow", Key::downArrow},
    {"command", Key::command},
    {"shift", Key::shift},
    {"capslock", Key::capsLock},
    {"option", Key::option},
    {"rightcommand", Key::rightCommand},
    {"rightshift", Key::rightShift},
    {"rightoption", Key::rightOption},
    {"rightcontrol", Key::rightControl},
    {"keypad0", Key::keypad0},
    {"keypad1", Key::keypad1},
    {"keypad2", Key::keypad2},
    {"keypad3", Key::keypad3},
    {"keypad4", Key::keypad4},
    {"keypad5", Key::keypad5},
    {"keypad6", Key::keypad6},
    {"keypad7", Key::keypad7},
    {"keypad8", Key::keypad8},
    {"keypad9", Key::keypad9},
    {"keypaddecimal", Key::keypadDecimal},
    {"keypadmultiply", Key::keypadMultiply},
    {"keypadplus", Key::keypadPlus},
    {"keypaddivide", Key::keypadDivide},
    {"keypadenter", Key::keypadEnter},
    {"keypadminus", Key::keypadMinus},
    {"keypadequals", Key::keypadEquals},
    {"keypadclear", Key::keypadClear},
    {"⌧", Key::keypadClear},
    {"f1", Key::f1},
    {"f2", Key::f2},
    {"f3", Key::f3},
    {"f4", Key::f4},
    {"f5", Key::f5},
    {"f6", Key::f6},
    {"f7", Key::f7},
    {"f8", Key::f8},
    {"f9", Key::f9},
    {"f10", Key::f10},
    {"f11", Key::f11},
    {"f12", Key::f12},
    {"f13", Key::f13},
    {"f14", Key::f14},
    {"f15", Key::f15},
    {"f16", Key::f16},
    {"f17", Key::f17},
    {"f18", Key::f18},
    {"f19", Key::f19},
    {"f20", Key::f20},
    {"volumeup", Key::volumeUp},
    {"🔊", Key::volumeUp},
    {"volumedown", Key::volumeDown},
    {"🔉", Key::volumeDown},
    {"mute", Key::mute},
    {"🔇", Key::mute},
};

TEST(KeyTest, has114KeysWithTheirCodes)
{
    ASSERT_EQ(carbonKeyCodes.size(), keyCount);
    EXPECT_EQ(keyCount, 114U);
    std::set<Key> keys;
    std::set<std::uint32_t> codes;
    for (const auto& [key, code] : carbonKeyCodes) {
        EXPECT_EQ(carbonKeyCode(key), code) << description(key);
        EXPECT_EQ(keyFromCarbonKeyCode(code), key) << code;
        keys.insert(key);
        codes.insert(code);
    }
    EXPECT_EQ(keys.size(), keyCount);
    EXPECT_EQ(codes.size(), keyCount);
}

TEST(KeyTest, hasNoKeyForAnyOtherCode)
{
    for (std::uint32_t code = 0; code < 1000; ++code) {
        const bool isListed = std::ranges::any_of(
            carbonKeyCodes, [&](const auto& row) { return row.second == code; });
        EXPECT_EQ(keyFromCarbonKeyCode(code).has_value(), isListed) << code;
    }
    EXPECT_FALSE(keyFromCarbonKeyCode(52).has_value());
    EXPECT_FALSE(keyFromCarbonKeyCode(66).has_value());
    EXPECT_FALSE(keyFromCarbonKeyCode(127).has_value());
    EXPECT_FALSE(keyFromCarbonKeyCode(256).has_value());
    EXPECT_FALSE(keyFromCarbonKeyCode(0xFFFFFFFF).has_value());
}

TEST(KeyTest, readsEveryNameInAnyCase)
{
    for (const auto& [name, key] : namesOfKeys) {
        EXPECT_EQ(keyFromString(name), key) << name;
        std::string upper = name;
        std::ranges::transform(upper, upper.begin(), [](unsigned char character) {
            return character < 0x80 ? static_cast<char>(std::toupper(character))
                                    : static_cast<char>(character);
        });
        EXPECT_EQ(keyFromString(upper), key) << upper;
    }
    EXPECT_EQ(keyFromString("RETURN"), Key::return_);
    EXPECT_EQ(keyFromString("ForwardDelete"), Key::forwardDelete);
}

TEST(KeyTest, everyKeyHasAName)
{
    std::set<Key> named;
    for (const auto& [name, key] : namesOfKeys)
        named.insert(key);
    EXPECT_EQ(named.size(), keyCount);
}

TEST(KeyTest, readsTheBracketsByTheirSymbolsOnly)
{
    for (const char* word : {"rightbracket", "rightBracket", "RIGHTBRACKET", "leftbracket",
                             "leftBracket", "LEFTBRACKET"})
        EXPECT_FALSE(keyFromString(word).has_value()) << word;
    EXPECT_EQ(keyFromString("]"), Key::rightBracket);
    EXPECT_EQ(keyFromString("["), Key::leftBracket);
}

TEST(KeyTest, readsNothingElse)
{
    for (const char* text :
         {"",      " ",      "  ",       "tt",      "t ",        " t",  "'",    "10",
          "f0",    "f21",    "F99",      "ten",     "enter",     "esc", "up",   "down",
          "left",  "right",  "→",        "↑",       "↓",         "↩",   "⌘",    "⇧",
          "⌥",     "⇪",      "⇟",        "↘",       "backspace", "cmd", "ctrl", "alt",
          "super", "keypad", "keypad10", "page up", "plus",      "+",   "*",    "é",
          "É",     "ß",      "т",        "return_", "delete_",   "\xff"})
        EXPECT_FALSE(keyFromString(text).has_value()) << text;
}

TEST(KeyTest, describesKeysAsPeopleSeeThem)
{
    const std::vector<std::pair<Key, std::string>> descriptions{
        {Key::a, "A"},
        {Key::t, "T"},
        {Key::z, "Z"},
        {Key::zero, "0"},
        {Key::nine, "9"},
        {Key::period, "."},
        {Key::quote, "\""},
        {Key::rightBracket, "]"},
        {Key::leftBracket, "["},
        {Key::semicolon, ";"},
        {Key::slash, "/"},
        {Key::backslash, "\\"},
        {Key::comma, ","},
        {Key::equal, "="},
        {Key::grave, "`"},
        {Key::minus, "-"},
        {Key::section, "§"},
        {Key::return_, "↩\ufe0e"},
        {Key::tab, "⇥"},
        {Key::space, "␣"},
        {Key::delete_, "⌫"},
        {Key::escape, "⎋"},
        {Key::forwardDelete, "⌦"},
        {Key::home, "↖"},
        {Key::pageUp, "⇞"},
        {Key::leftArrow, "←"},
        {Key::keypadClear, "⌧"},
        {Key::volumeUp, "🔊"},
        {Key::volumeDown, "🔉"},
        {Key::mute, "🔇"},
        {Key::command, "⌘"},
        {Key::rightCommand, "⌘"},
        {Key::shift, "⇧"},
        {Key::rightShift, "⇧"},
        {Key::option, "⌥"},
        {Key::rightOption, "⌥"},
        {Key::control, "⌃"},
        {Key::rightControl, "⌃"},
        {Key::f1, "F1"},
        {Key::f20, "F20"},
    };
    for (const auto& [key, text] : descriptions)
        EXPECT_EQ(description(key), text);
}

TEST(KeyTest, describesEveryKeyDifferentlyButTheTwinsOfModifiers)
{
    std::set<std::string_view> texts;
    for (std::size_t index = 0; index < keyCount; ++index) {
        const std::string_view text = description(static_cast<Key>(index));
        EXPECT_FALSE(text.empty()) << index;
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), keyCount - 4); // ⌘, ⌥, ⌃ and ⇧ stand for two keys each.
}

} // namespace

} // namespace vellumry::hotkey
