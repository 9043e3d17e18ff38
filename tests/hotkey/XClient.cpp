#include "hotkey/XClient.h"

#include "hotkey/X11Xkb.h"

#include <xcb/xtest.h>

#include <cstdlib>
#include <memory>

namespace vellumry::hotkey {

namespace {

struct FreeClientMessage {
    void operator()(void* message) const { std::free(message); }
};
template <typename T>
using ClientMessage = std::unique_ptr<T, FreeClientMessage>;

/// The letters by key code, from "q" on the upper row to "m" on the lower.
constexpr std::uint8_t firstLetterCode = 24;
constexpr std::string_view lettersByCode = "qwertyuiop????asdfghjkl?????zxcvbnm";

std::uint8_t codeOf(char letter)
{
    return static_cast<std::uint8_t>(firstLetterCode + lettersByCode.find(letter));
}

std::string textOf(std::uint8_t code)
{
    const std::size_t index = static_cast<std::size_t>(code) - firstLetterCode;
    if (code >= firstLetterCode && index < lettersByCode.size() && lettersByCode[index] != '?')
        return std::string(1, lettersByCode[index]);
    return "#" + std::to_string(code) + " ";
}

} // namespace

XClient::XClient(const std::string& display) : connection(xcb_connect(display.c_str(), nullptr))
{
    root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const ClientMessage<xcb_xkb_use_extension_reply_t> xkb(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr));
}

XClient::~XClient()
{
    xcb_disconnect(connection);
}

void XClient::press(std::uint8_t code)
{
    xcb_test_fake_input(connection, XCB_KEY_PRESS, code, 0, XCB_NONE, 0, 0, 0);
    roundTrip();
}

void XClient::release(std::uint8_t code)
{
    xcb_test_fake_input(connection, XCB_KEY_RELEASE, code, 0, XCB_NONE, 0, 0, 0);
    roundTrip();
}

void XClient::strike(std::uint8_t modifier, std::uint8_t code)
{
    press(modifier);
    press(code);
    release(code);
    release(modifier);
}

void XClient::type(std::string_view letters)
{
    for (const char letter : letters) {
        press(codeOf(letter));
        release(codeOf(letter));
    }
}

bool XClient::grab(std::uint8_t code, std::uint16_t modifiers)
{
    const ClientMessage<xcb_generic_error_t> error(xcb_request_check(
        connection, xcb_grab_key_checked(connection, 0, root, modifiers, code, XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_ASYNC)));
    return !error;
}

void XClient::ungrab(std::uint8_t code, std::uint16_t modifiers)
{
    xcb_ungrab_key(connection, code, root, modifiers);
    roundTrip();
}

bool XClient::isHeldByOther(std::uint8_t code, std::uint16_t modifiers)
{
    if (!grab(code, modifiers))
        return true;
    ungrab(code, modifiers);
    return false;
}

void XClient::lockGroup(std::uint8_t group)
{
    xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    roundTrip();
}

std::uint32_t XClient::serverTime()
{
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection, root, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, XCB_ATOM_CUT_BUFFER0,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    roundTrip();
    readEvents();
    return lastPropertyTime;
}

void XClient::focusWindow()
{
    if (window == 0) {
        window = xcb_generate_id(connection);
        const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE;
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, 0, 0, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &mask);
        xcb_map_window(connection, window);
    }
    xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    roundTrip();
}

void XClient::tellActive(const XClient* client)
{
    constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
    const ClientMessage<xcb_intern_atom_reply_t> property(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr));
    const std::uint32_t active = client == nullptr ? 0U : client->windowNumber();
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, property->atom, XCB_ATOM_WINDOW,
                        32, 1, &active);
    roundTrip();
}

void XClient::hideWindow()
{
    xcb_unmap_window(connection, window);
    roundTrip();
}

bool XClient::hasFocus()
{
    readEvents();
    return focused;
}

const std::string& XClient::typed()
{
    readEvents();
    return text;
}

int XClient::grabCount()
{
    readEvents();
    return grabs;
}

void XClient::roundTrip()
{
    const ClientMessage<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

void XClient::readEvents()
{
    while (const ClientMessage<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
        switch (event->response_type) {
        case XCB_KEY_PRESS:
            text += textOf(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail);
            break;
        case XCB_FOCUS_IN:
            focused = true;
            break;
        case XCB_FOCUS_OUT:
            if (reinterpret_cast<const xcb_focus_out_event_t&>(*event).mode == XCB_NOTIFY_MODE_GRAB)
                ++grabs;
            else
                focused = false;
            break;
        case XCB_PROPERTY_NOTIFY:
            lastPropertyTime = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
            break;
        default:
            break;
        }
    }
}

} // namespace vellumry::hotkey
