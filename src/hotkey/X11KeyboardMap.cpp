#include "hotkey/X11KeyboardMap.h"

#include "hotkey/ModifierFlags.h"
#include "hotkey/X11Xkb.h"
#include "session/XcbReply.h"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>
#include <algorithm>
#include <linux/input-event-codes.h>
#include <ranges>

namespace vellumry::hotkey {

namespace {

struct KeyPlace {
    X11KeyboardMap::KeySymbol symbol; ///< What the key types, or XCB_NO_SYMBOL.
    std::uint16_t evdevCode;          ///< Where it is on a US keyboard.
};

/// X counts its key codes from here, and has 8 bits for them.
constexpr unsigned evdevOffset = 8;
constexpr unsigned lastKeycode = 255;

// In the order of Key.
constexpr std::array<KeyPlace, keyCount> keyPlaces{{
    {XK_a, KEY_A},
    {XK_b, KEY_B},
    {XK_c, KEY_C},
    {XK_d, KEY_D},
    {XK_e, KEY_E},
    {XK_f, KEY_F},
    {XK_g, KEY_G},
    {XK_h, KEY_H},
    {XK_i, KEY_I},
    {XK_j, KEY_J},
    {XK_k, KEY_K},
    {XK_l, KEY_L},
    {XK_m, KEY_M},
    {XK_n, KEY_N},
    {XK_o, KEY_O},
    {XK_p, KEY_P},
    {XK_q, KEY_Q},
    {XK_r, KEY_R},
    {XK_s, KEY_S},
    {XK_t, KEY_T},
    {XK_u, KEY_U},
    {XK_v, KEY_V},
    {XK_w, KEY_W},
    {XK_x, KEY_X},
    {XK_y, KEY_Y},
    {XK_z, KEY_Z},
    {XK_0, KEY_0},
    {XK_1, KEY_1},
    {XK_2, KEY_2},
    {XK_3, KEY_3},
    {XK_4, KEY_4},
    {XK_5, KEY_5},
    {XK_6, KEY_6},
    {XK_7, KEY_7},
    {XK_8, KEY_8},
    {XK_9, KEY_9},
    {XK_period, KEY_DOT},
    {XK_apostrophe, KEY_APOSTROPHE},
    {XK_bracketright, KEY_RIGHTBRACE},
    {XK_semicolon, KEY_SEMICOLON},
    {XK_slash, KEY_SLASH},
    {XK_backslash, KEY_BACKSLASH},
    {XK_comma, KEY_COMMA},
    {XK_equal, KEY_EQUAL},
    {XK_grave, KEY_GRAVE},
    {XK_bracketleft, KEY_LEFTBRACE},
    {XK_minus, KEY_MINUS},
    {XK_section, KEY_102ND},
    {XK_space, KEY_SPACE},
    {XK_Tab, KEY_TAB},
    {XK_Return, KEY_ENTER},
    {XK_Control_L, KEY_LEFTCTRL},
    {XK_Control_R, KEY_RIGHTCTRL},
    {XK_Alt_L, KEY_LEFTALT},
    {XK_Alt_R, KEY_RIGHTALT},
    {XK_Super_L, KEY_LEFTMETA},
    {XK_Super_R, KEY_RIGHTMETA},
    {XK_Shift_L, KEY_LEFTSHIFT},
    {XK_Shift_R, KEY_RIGHTSHIFT},
    {XCB_NO_SYMBOL, KEY_FN},
    {XK_Caps_Lock, KEY_CAPSLOCK},
    {XK_Page_Up, KEY_PAGEUP},
    {XK_Page_Down, KEY_PAGEDOWN},
    {XK_Home, KEY_HOME},
    {XK_End, KEY_END},
    {XK_Up, KEY_UP},
    {XK_Right, KEY_RIGHT},
    {XK_Down, KEY_DOWN},
    {XK_Left, KEY_LEFT},
    {XK_F1, KEY_F1},
    {XK_F2, KEY_F2},
    {XK_F3, KEY_F3},
    {XK_F4, KEY_F4},
    {XK_F5, KEY_F5},
    {XK_F6, KEY_F6},
    {XK_F7, KEY_F7},
    {XK_F8, KEY_F8},
    {XK_F9, KEY_F9},
    {XK_F10, KEY_F10},
    {XK_F11, KEY_F11},
    {XK_F12, KEY_F12},
    {XK_F13, KEY_F13},
    {XK_F14, KEY_F14},
    {XK_F15, KEY_F15},
    {XK_F16, KEY_F16},
    {XK_F17, KEY_F17},
    {XK_F18, KEY_F18},
    {XK_F19, KEY_F19},
    {XK_F20, KEY_F20},
    {XK_KP_0, KEY_KP0},
    {XK_KP_1, KEY_KP1},
    {XK_KP_2, KEY_KP2},
    {XK_KP_3, KEY_KP3},
    {XK_KP_4, KEY_KP4},
    {XK_KP_5, KEY_KP5},
    {XK_KP_6, KEY_KP6},
    {XK_KP_7, KEY_KP7},
    {XK_KP_8, KEY_KP8},
    {XK_KP_9, KEY_KP9},
    {XK_Clear, KEY_CLEAR},
    {XK_KP_Decimal, KEY_KPDOT},
    {XK_KP_Divide, KEY_KPSLASH},
    {XK_KP_Enter, KEY_KPENTER},
    {XK_KP_Equal, KEY_KPEQUAL},
    {XK_KP_Subtract, KEY_KPMINUS},
    {XK_KP_Multiply, KEY_KPASTERISK},
    {XK_KP_Add, KEY_KPPLUS},
    {XK_Escape, KEY_ESC},
    {XK_BackSpace, KEY_BACKSPACE},
    {XK_Delete, KEY_DELETE},
    {XK_Help, KEY_HELP},
    {XF86XK_AudioRaiseVolume, KEY_VOLUMEUP},
    {XF86XK_AudioLowerVolume, KEY_VOLUMEDOWN},
    {XF86XK_AudioMute, KEY_MUTE},
}};

constexpr std::size_t modifierCount = 8;
constexpr std::size_t firstFreeModifier = 3; // Mod1; the ones before have a fixed meaning.

void readSymbols(const xcb_xkb_get_map_reply_t& reply, X11KeyboardMap& map)
{
    xcb_xkb_get_map_map_t parts;
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(&reply), reply.nTypes, reply.nKeySyms,
                               reply.nKeyActions, reply.totalActions, reply.totalKeyBehaviors,
                               reply.virtualMods, reply.totalKeyExplicit, reply.totalModMapKeys,
                               reply.totalVModMapKeys, reply.present, &parts);
    std::size_t keycode = reply.firstKeySym;
    for (auto key = xcb_xkb_get_map_map_syms_rtrn_iterator(&reply, &parts);
         key.rem > 0 && keycode <= lastKeycode; xcb_xkb_key_sym_map_next(&key), ++keycode) {
        const std::size_t groupCount = key.data->groupInfo & 0x0FU;
        const std::size_t width = key.data->width;
        const xcb_keysym_t* symbols = xcb_xkb_key_sym_map_syms(key.data);
        for (std::size_t group = 0; group < groupCount; ++group)
            map.groups[keycode].emplace_back(symbols + group * width,
                                             symbols + (group + 1) * width);
    }
}

void readModifiers(const xcb_get_modifier_mapping_reply_t& reply, X11KeyboardMap& map)
{
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(&reply);
    for (std::size_t modifier = 0; modifier < modifierCount; ++modifier) {
        for (std::size_t index = 0; index < reply.keycodes_per_modifier; ++index) {
            const auto keycode = keycodes[modifier * reply.keycodes_per_modifier + index];
            if (keycode != XCB_NO_SYMBOL)
                map.modifierKeycodes[modifier].push_back(keycode);
        }
    }
}

std::optional<std::uint8_t> firstKeycode(const auto& matches)
{
    for (unsigned keycode = evdevOffset; keycode <= lastKeycode; ++keycode) {
        if (matches(keycode))
            return static_cast<std::uint8_t>(keycode);
    }
    return std::nullopt;
}

} // namespace

std::optional<X11KeyboardMap> X11KeyboardMap::read(xcb_connection_t* connection)
{
    const auto device = static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD);
    const auto mapRequest = xcb_xkb_get_map(connection, device, XCB_XKB_MAP_PART_KEY_SYMS, 0, 0, 0,
                                            0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const auto stateRequest = xcb_xkb_get_state(connection, device);
    const auto modifierRequest = xcb_get_modifier_mapping(connection);
    const XcbReply<xcb_xkb_get_map_reply_t> symbols(
        xcb_xkb_get_map_reply(connection, mapRequest, nullptr));
    const XcbReply<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(connection, stateRequest, nullptr));
    const XcbReply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection, modifierRequest, nullptr));
    if (!symbols || !state || !modifiers)
        return std::nullopt;

    X11KeyboardMap map;
    readSymbols(*symbols, map);
    readModifiers(*modifiers, map);
    map.currentGroup = state->group;
    return map;
}

std::optional<std::uint8_t> X11KeyboardMap::keycode(Key key) const
{
    const KeyPlace& place = keyPlaces[static_cast<std::size_t>(key)];
    const auto holds = [&](const Levels& levels) {
        return std::ranges::find(levels, place.symbol) != levels.end();
    };
    const auto isFirst = [&](const Levels& levels) {
        return !levels.empty() && levels.front() == place.symbol;
    };
    const auto inCurrentGroup = [&](const auto& matches) {
        return firstKeycode([&](unsigned code) {
            const auto& layouts = groups[code];
            // A key with fewer layouts than the keyboard goes through its own in turn.
            return !layouts.empty() && matches(layouts[currentGroup % layouts.size()]);
        });
    };
    const auto inAnyGroup = [&](const auto& matches) {
        return firstKeycode(
            [&](unsigned code) { return std::ranges::any_of(groups[code], matches); });
    };

    if (place.symbol != XCB_NO_SYMBOL) {
        // Plain before shifted: the "." of the main block before that of the keypad.
        if (const auto found = inCurrentGroup(isFirst))
            return found;
        if (const auto found = inCurrentGroup(holds))
            return found;
        if (const auto found = inAnyGroup(isFirst))
            return found;
        if (const auto found = inAnyGroup(holds))
            return found;
    }
    const unsigned onUsKeyboard = place.evdevCode + evdevOffset;
    if (onUsKeyboard > lastKeycode)
        return std::nullopt;
    return static_cast<std::uint8_t>(onUsKeyboard);
}

std::uint16_t X11KeyboardMap::modifierMask(std::uint32_t carbonModifiers) const
{
    std::uint16_t mask = 0;
    if ((carbonModifiers & carbonCommandBit) != 0)
        mask |= XCB_MOD_MASK_CONTROL;
    if ((carbonModifiers & carbonShiftBit) != 0)
        mask |= XCB_MOD_MASK_SHIFT;
    if ((carbonModifiers & carbonOptionBit) != 0)
        mask |= modifierHolding({XK_Alt_L, XK_Alt_R}).value_or(XCB_MOD_MASK_1);
    if ((carbonModifiers & carbonControlBit) != 0)
        mask |= modifierHolding({XK_Super_L, XK_Super_R}).value_or(XCB_MOD_MASK_4);
    return mask;
}

std::uint16_t X11KeyboardMap::lockMask() const
{
    std::uint16_t mask = XCB_MOD_MASK_LOCK;
    mask |= modifierHolding({XK_Num_Lock}).value_or(0);
    mask |= modifierHolding({XK_Scroll_Lock}).value_or(0);
    return mask;
}

bool X11KeyboardMap::types(std::uint8_t keycode, KeySymbol symbol) const
{
    return std::ranges::any_of(groups[keycode], [&](const Levels& levels) {
        return std::ranges::find(levels, symbol) != levels.end();
    });
}

std::optional<std::uint16_t>
X11KeyboardMap::modifierHolding(std::initializer_list<KeySymbol> symbols) const
{
    for (std::size_t modifier = firstFreeModifier; modifier < modifierCount; ++modifier) {
        for (const std::uint8_t keycode : modifierKeycodes[modifier]) {
            if (std::ranges::any_of(symbols,
                                    [&](KeySymbol symbol) { return types(keycode, symbol); }))
                return static_cast<std::uint16_t>(1U << modifier);
        }
    }
    return std::nullopt;
}

} // namespace vellumry::hotkey
