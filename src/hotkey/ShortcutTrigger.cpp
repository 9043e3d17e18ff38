#include "hotkey/ShortcutTrigger.h"

#include "hotkey/Key.h"
#include "hotkey/ModifierFlags.h"

#include <array>
#include <string_view>

namespace vellumry::hotkey {

namespace {

// In the order of Key.
constexpr std::array<std::string_view, keyCount> symbolNames{"a",
                                                             "b",
                                                             "c",
                                                             "d",
                                                             "e",
                                                             "f",
                                                             "g",
                                                             "h",
                                                             "i",
                                                             "j",
                                                             "k",
                                                             "l",
                                                             "m",
                                                             "n",
                                                             "o",
                                                             "p",
                                                             "q",
                                                             "r",
                                                             "s",
                                                             "t",
                                                             "u",
                                                             "v",
                                                             "w",
                                                             "x",
                                                             "y",
                                                             "z",
                                                             "0",
                                                             "1",
                                                             "2",
                                                             "3",
                                                             "4",
                                                             "5",
                                                             "6",
                                                             "7",
                                                             "8",
                                                             "9",
                                                             "period",
                                                             "apostrophe",
                                                             "bracketright",
                                                             "semicolon",
                                                             "slash",
                                                             "backslash",
                                                             "comma",
                                                             "equal",
                                                             "grave",
                                                             "bracketleft",
                                                             "minus",
                                                             "section",
                                                             "space",
                                                             "Tab",
                                                             "Return",
                                                             "Control_L",
                                                             "Control_R",
                                                             "Alt_L",
                                                             "Alt_R",
                                                             "Super_L",
                                                             "Super_R",
                                                             "Shift_L",
                                                             "Shift_R",
                                                             "",
                                                             "Caps_Lock",
                                                             "Prior",
                                                             "Next",
                                                             "Home",
                                                             "End",
                                                             "Up",
                                                             "Right",
                                                             "Down",
                                                             "Left",
                                                             "F1",
                                                             "F2",
                                                             "F3",
                                                             "F4",
                                                             "F5",
                                                             "F6",
                                                             "F7",
                                                             "F8",
                                                             "F9",
                                                             "F10",
                                                             "F11",
                                                             "F12",
                                                             "F13",
                                                             "F14",
                                                             "F15",
                                                             "F16",
                                                             "F17",
                                                             "F18",
                                                             "F19",
                                                             "F20",
                                                             "KP_0",
                                                             "KP_1",
                                                             "KP_2",
                                                             "KP_3",
                                                             "KP_4",
                                                             "KP_5",
                                                             "KP_6",
                                                             "KP_7",
                                                             "KP_8",
                                                             "KP_9",
                                                             "Clear",
                                                             "KP_Decimal",
                                                             "KP_Divide",
                                                             "KP_Enter",
                                                             "KP_Equal",
                                                             "KP_Subtract",
                                                             "KP_Multiply",
                                                             "KP_Add",
                                                             "Escape",
                                                             "BackSpace",
                                                             "Delete",
                                                             "Help",
                                                             "XF86AudioRaiseVolume",
                                                             "XF86AudioLowerVolume",
                                                             "XF86AudioMute"};

struct ModifierName {
    std::uint32_t carbonBit;
    std::string_view name;
};

// The same keys of the keyboard as on X11.
constexpr std::array<ModifierName, 4> modifierNames{{
    {carbonCommandBit, "CTRL"},
    {carbonOptionBit, "ALT"},
    {carbonShiftBit, "SHIFT"},
    {carbonControlBit, "LOGO"},
}};

} // namespace

std::optional<std::string> shortcutTrigger(std::uint32_t keyCode, std::uint32_t modifiers)
{
    const auto key = keyFromCarbonKeyCode(keyCode);
    if (!key)
        return std::nullopt;
    const std::string_view symbol = symbolNames[static_cast<std::size_t>(*key)];
    if (symbol.empty())
        return std::nullopt;
    std::string trigger;
    for (const ModifierName& modifier : modifierNames) {
        if ((modifiers & modifier.carbonBit) != 0)
            trigger.append(modifier.name).append("+");
    }
    return trigger.append(symbol);
}

} // namespace vellumry::hotkey
