#include "hotkey/Key.h"

#include <algorithm>
#include <array>
#include <string>

namespace vellumry::hotkey {

namespace {

struct KeyRow {
    Key key;
    std::uint8_t carbonKeyCode;
    std::string_view description;
    std::array<std::string_view, 2> names; ///< What keyFromString knows the key by.
};

// The words of the two bracket keys hold a capital letter and are compared with a text in lower
// case, so that they never match: only their symbols name these keys. Settings that people have
// stored depend on it. The second name of "return" ends with a variation selector.
constexpr std::array<KeyRow, keyCount> keyRows{{
    {Key::a, 0, "A", {"a"}},
    {Key::b, 11, "B", {"b"}},
    {Key::c, 8, "C", {"c"}},
    {Key::d, 2, "D", {"d"}},
    {Key::e, 14, "E", {"e"}},
    {Key::f, 3, "F", {"f"}},
    {Key::g, 5, "G", {"g"}},
    {Key::h, 4, "H", {"h"}},
    {Key::i, 34, "I", {"i"}},
    {Key::j, 38, "J", {"j"}},
    {Key::k, 40, "K", {"k"}},
    {Key::l, 37, "L", {"l"}},
    {Key::m, 46, "M", {"m"}},
    {Key::n, 45, "N", {"n"}},
    {Key::o, 31, "O", {"o"}},
    {Key::p, 35, "P", {"p"}},
    {Key::q, 12, "Q", {"q"}},
    {Key::r, 15, "R", {"r"}},
    {Key::s, 1, "S", {"s"}},
    {Key::t, 17, "T", {"t"}},
    {Key::u, 32, "U", {"u"}},
    {Key::v, 9, "V", {"v"}},
    {Key::w, 13, "W", {"w"}},
    {Key::x, 7, "X", {"x"}},
    {Key::y, 16, "Y", {"y"}},
    {Key::z, 6, "Z", {"z"}},
    {Key::zero, 29, "0", {"0", "zero"}},
    {Key::one, 18, "1", {"1", "one"}},
    {Key::two, 19, "2", {"2", "two"}},
    {Key::three, 20, "3", {"3", "three"}},
    {Key::four, 21, "4", {"4", "four"}},
    {Key::five, 23, "5", {"5", "five"}},
    {Key::six, 22, "6", {"6", "six"}},
    {Key::seven, 26, "7", {"7", "seven"}},
    {Key::eight, 28, "8", {"8", "eight"}},
    {Key::nine, 25, "9", {"9", "nine"}},
    {Key::period, 47, ".", {".", "period"}},
    {Key::quote, 39, "\"", {"\"", "quote"}},
    {Key::rightBracket, 30, "]", {"]", "rightBracket"}},
    {Key::semicolon, 41, ";", {";", "semicolon"}},
    {Key::slash, 44, "/", {"/", "slash"}},
    {Key::backslash, 42, "\\", {"\\", "backslash"}},
    {Key::comma, 43, ",", {",", "comma"}},
    {Key::equal, 24, "=", {"=", "equal"}},
    {Key::grave, 50, "`", {"`", "grave"}},
    {Key::leftBracket, 33, "[", {"[", "leftBracket"}},
    {Key::minus, 27, "-", {"-", "minus"}},
    {Key::section, 10, "§", {"§", "section"}},
    {Key::space, 49, "␣", {"space", "␣"}},
    {Key::tab, 48, "⇥", {"tab", "⇥"}},
    {Key::return_, 36, "↩\ufe0e", {"return", "↩\ufe0e"}},
    {Key::command, 55, "⌘", {"command"}},
    {Key::rightCommand, 54, "⌘", {"rightcommand"}},
    {Key::option, 58, "⌥", {"option"}},
    {Key::rightOption, 61, "⌥", {"rightoption"}},
    {Key::control, 59, "⌃", {"control", "⌃"}},
    {Key::rightControl, 62, "⌃", {"rightcontrol"}},
    {Key::shift, 56, "⇧", {"shift"}},
    {Key::rightShift, 60, "⇧", {"rightshift"}},
    {Key::function, 63, "fn", {"function", "fn"}},
    {Key::capsLock, 57, "⇪", {"capslock"}},
    {Key::pageUp, 116, "⇞", {"pageup", "⇞"}},
    {Key::pageDown, 121, "⇟", {"pagedown"}},
    {Key::home, 115, "↖", {"home", "↖"}},
    {Key::end, 119, "↘", {"end"}},
    {Key::upArrow, 126, "↑", {"uparrow"}},
    {Key::rightArrow, 124, "→", {"rightarrow"}},
    {Key::downArrow, 125, "↓", {"downarrow"}},
    {Key::leftArrow, 123, "←", {"leftarrow", "←"}},
    {Key::f1, 122, "F1", {"f1"}},
    {Key::f2, 120, "F2", {"f2"}},
    {Key::f3, 99, "F3", {"f3"}},
    {Key::f4, 118, "F4", {"f4"}},
    {Key::f5, 96, "F5", {"f5"}},
    {Key::f6, 97, "F6", {"f6"}},
    {Key::f7, 98, "F7", {"f7"}},
    {Key::f8, 100, "F8", {"f8"}},
    {Key::f9, 101, "F9", {"f9"}},
    {Key::f10, 109, "F10", {"f10"}},
    {Key::f11, 103, "F11", {"f11"}},
    {Key::f12, 111, "F12", {"f12"}},
    {Key::f13, 105, "F13", {"f13"}},
    {Key::f14, 107, "F14", {"f14"}},
    {Key::f15, 113, "F15", {"f15"}},
    {Key::f16, 106, "F16", {"f16"}},
    {Key::f17, 64, "F17", {"f17"}},
    {Key::f18, 79, "F18", {"f18"}},
    {Key::f19, 80, "F19", {"f19"}},
    {Key::f20, 90, "F20", {"f20"}},
    {Key::keypad0, 82, "Keypad 0", {"keypad0"}},
    {Key::keypad1, 83, "Keypad 1", {"keypad1"}},
    {Key::keypad2, 84, "Keypad 2", {"keypad2"}},
    {Key::keypad3, 85, "Keypad 3", {"keypad3"}},
    {Key::keypad4, 86, "Keypad 4", {"keypad4"}},
    {Key::keypad5, 87, "Keypad 5", {"keypad5"}},
    {Key::keypad6, 88, "Keypad 6", {"keypad6"}},
    {Key::keypad7, 89, "Keypad 7", {"keypad7"}},
    {Key::keypad8, 91, "Keypad 8", {"keypad8"}},
    {Key::keypad9, 92, "Keypad 9", {"keypad9"}},
    {Key::keypadClear, 71, "⌧", {"keypadclear", "⌧"}},
    {Key::keypadDecimal, 65, "Keypad .", {"keypaddecimal"}},
    {Key::keypadDivide, 75, "Keypad /", {"keypaddivide"}},
    {Key::keypadEnter, 76, "Keypad Enter", {"keypadenter"}},
    {Key::keypadEquals, 81, "Keypad =", {"keypadequals"}},
    {Key::keypadMinus, 78, "Keypad -", {"keypadminus"}},
    {Key::keypadMultiply, 67, "Keypad *", {"keypadmultiply"}},
    {Key::keypadPlus, 69, "Keypad +", {"keypadplus"}},
    {Key::escape, 53, "⎋", {"escape", "⎋"}},
    {Key::delete_, 51, "⌫", {"delete", "⌫"}},
    {Key::forwardDelete, 117, "⌦", {"forwarddelete", "⌦"}},
    {Key::help, 114, "Help", {"help"}},
    {Key::volumeUp, 72, "🔊", {"volumeup", "🔊"}},
    {Key::volumeDown, 73, "🔉", {"volumedown", "🔉"}},
    {Key::mute, 74, "🔇", {"mute", "🔇"}},
}};

constexpr bool rowsFollowTheEnumeration()
{
    for (std::size_t index = 0; index < keyCount; ++index) {
        if (keyRows[index].key != static_cast<Key>(index))
            return false;
    }
    return true;
}
static_assert(rowsFollowTheEnumeration());

const KeyRow& rowOf(Key key)
{
    return keyRows[static_cast<std::size_t>(key)];
}

/// All names are in lower case of ASCII or have no case.
std::string lowerCased(std::string_view text)
{
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return result;
}

} // namespace

std::uint32_t carbonKeyCode(Key key)
{
    return rowOf(key).carbonKeyCode;
}

std::optional<Key> keyFromCarbonKeyCode(std::uint32_t code)
{
    const auto* row = std::ranges::find(keyRows, code, &KeyRow::carbonKeyCode);
    return row == keyRows.end() ? std::nullopt : std::optional(row->key);
}

std::optional<Key> keyFromString(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    const std::string name = lowerCased(text);
    const auto* row = std::ranges::find_if(
        keyRows, [&](const KeyRow& each) { return std::ranges::count(each.names, name) != 0; });
    return row == keyRows.end() ? std::nullopt : std::optional(row->key);
}

std::string_view description(Key key)
{
    return rowOf(key).description;
}

} // namespace vellumry::hotkey
