// "Another program" for the desktop tests: a window with the title "Recorder" that takes the focus
// and prints a line for each key press it receives, so that no key can get lost or leak unseen.
// Letters, digits and signs print as themselves, other keys as their key symbol in hexadecimal;
// modifier keys alone print nothing.

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

constexpr std::uint16_t width = 240;
constexpr std::uint16_t height = 100;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

void setText(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
             const std::string& text)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

/// Asks the window manager to leave the window at (20, 20), away from the middle of the screen.
void setPlace(xcb_connection_t* connection, xcb_window_t window)
{
    constexpr std::uint32_t userPosition = 1;
    const std::array<std::uint32_t, 18> hints{userPosition, 20, 20, width, height};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
}

xcb_window_t showWindow(xcb_connection_t* connection, const xcb_screen_t& screen)
{
    const xcb_window_t window = xcb_generate_id(connection);
    const std::array<std::uint32_t, 2> values{screen.white_pixel,
                                              XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen.root, 20, 20, width, height,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
    setText(connection, window, XCB_ATOM_WM_NAME, "Recorder");
    setText(connection, window, XCB_ATOM_WM_CLASS, std::string("recorder\0Recorder\0", 18));
    setPlace(connection, window);
    xcb_map_window(connection, window);
    return window;
}

void printKey(xcb_keysym_t symbol)
{
    if (xcb_is_modifier_key(symbol) != 0)
        return;
    if (symbol > 0x20 && symbol < 0x7f)
        std::printf("key %c\n", static_cast<int>(symbol));
    else
        std::printf("key 0x%x\n", symbol);
}

} // namespace

int main()
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) != 0) {
        std::fputs("Recorder: cannot connect to the display\n", stderr);
        return 1;
    }
    showWindow(connection, *xcb_setup_roots_iterator(xcb_get_setup(connection)).data);
    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(connection);
    xcb_flush(connection);

    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_wait_for_event(connection)}) {
        switch (event->response_type & 0x7f) {
        case XCB_EXPOSE:
            std::puts("shown");
            break;
        case XCB_KEY_PRESS:
            printKey(xcb_key_press_lookup_keysym(
                symbols, reinterpret_cast<xcb_key_press_event_t*>(event.get()), 0));
            break;
        case XCB_MAPPING_NOTIFY:
            // Made anew, because a refresh forgets changes that come before the first key.
            xcb_key_symbols_free(symbols);
            symbols = xcb_key_symbols_alloc(connection);
            break;
        default:
            break;
        }
    }
    return 0;
}
