#include "hotkey/X11HotKeyConnection.h"

#include "hotkey/X11Xkb.h"
#include "session/XcbReply.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace vellumry::hotkey {

namespace {

/// Changes of the keyboard come in bursts, one event for each part of it.
constexpr std::chrono::milliseconds keyboardSettleTime{50};

/// Other programs move their keys at the same time, so that the new place of one of ours may be
/// theirs for a moment. It is asked for again, ever less often.
constexpr std::chrono::minutes longestRetryDelay{1};

/// The focus is followed by asking for it: a server tells of it only to those who watch the very
/// window that it comes to.
constexpr std::chrono::milliseconds focusLookInterval{2};

/// Where a window manager tells which window it has given the focus to.
constexpr std::string_view activeWindowName = "_NET_ACTIVE_WINDOW";

/// Bits 0 to 7 of an event's state are the modifiers; above are buttons and the layout group.
constexpr std::uint16_t modifierBits = 0xFF;

/// The first version whose raw events come whoever holds a grab is 2.1.
constexpr std::uint16_t inputMajorVersion = 2;
constexpr std::uint16_t inputMinorVersion = 2;

constexpr auto coreKeyboard = static_cast<xcb_xkb_device_spec_t>(XCB_XKB_ID_USE_CORE_KBD);

} // namespace

void X11HotKeyConnection::CloseConnection::operator()(xcb_connection_t* server) const
{
    xcb_disconnect(server);
}

std::unique_ptr<X11HotKeyConnection> X11HotKeyConnection::open(const std::string& display,
                                                               Clock::duration holdLimit)
{
    int screenNumber = 0;
    Connection server(xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber));
    if (xcb_connection_has_error(server.get()) != 0)
        return nullptr;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(server.get()));
    for (; screenNumber > 0 && screen.rem > 1; --screenNumber)
        xcb_screen_next(&screen);

    std::unique_ptr<X11HotKeyConnection> result(
        new X11HotKeyConnection(std::move(server), screen.data->root, holdLimit));
    return result->prepare() ? std::move(result) : nullptr;
}

X11HotKeyConnection::X11HotKeyConnection(Connection server, std::uint32_t rootWindow,
                                         Clock::duration holdLimit)
    : connection(std::move(server)), root(rootWindow), keyboardHoldLimit(holdLimit)
{
}

X11HotKeyConnection::~X11HotKeyConnection()
{
    xcb_ungrab_key(connection.get(), XCB_GRAB_ANY, root, XCB_MOD_MASK_ANY);
    xcb_ungrab_keyboard(connection.get(), XCB_CURRENT_TIME);
    xcb_flush(connection.get());
}

bool X11HotKeyConnection::prepare()
{
    xcb_connection_t* server = connection.get();
    xcb_prefetch_extension_data(server, &xcb_xkb_id);
    xcb_prefetch_extension_data(server, &xcb_input_id);
    const auto* xkb = xcb_get_extension_data(server, &xcb_xkb_id);
    const auto* input = xcb_get_extension_data(server, &xcb_input_id);
    if (xkb == nullptr || xkb->present == 0 || input == nullptr || input->present == 0)
        return false;
    xkbEvent = xkb->first_event;
    inputOpcode = input->major_opcode;

    const auto useXkb = xcb_xkb_use_extension(server, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto useInput = xcb_input_xi_query_version(server, inputMajorVersion, inputMinorVersion);
    const auto askName =
        xcb_intern_atom(server, 0, activeWindowName.size(), activeWindowName.data());
    const XcbReply<xcb_xkb_use_extension_reply_t> xkbVersion(
        xcb_xkb_use_extension_reply(server, useXkb, nullptr));
    const XcbReply<xcb_input_xi_query_version_reply_t> inputVersion(
        xcb_input_xi_query_version_reply(server, useInput, nullptr));
    const XcbReply<xcb_intern_atom_reply_t> name(xcb_intern_atom_reply(server, askName, nullptr));
    if (!xkbVersion || xkbVersion->supported == 0 || !inputVersion ||
        inputVersion->major_version < inputMajorVersion || !name)
        return false;
    activeWindowProperty = name->atom;

    // A key that is held repeats its press alone, without a release before each.
    const auto repeat = static_cast<std::uint32_t>(XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT);
    xcb_discard_reply(
        server, xcb_xkb_per_client_flags(server, coreKeyboard, repeat, repeat, 0, 0, 0).sequence);

    // XKB's own events, since a client that uses XKB is not told of changes in the core way.
    const std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                   XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(server, coreKeyboard,
                              XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                  XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY,
                              0, 0, mapParts, mapParts, &details);

    auto map = X11KeyboardMap::read(server);
    if (!map)
        return false;
    keyboard = std::move(*map);
    return true;
}

int X11HotKeyConnection::fileDescriptor() const
{
    return xcb_get_file_descriptor(connection.get());
}

bool X11HotKeyConnection::isLost() const
{
    return xcb_connection_has_error(connection.get()) != 0;
}

HotKeyBackend::Registration X11HotKeyConnection::registerHotKey(std::uint32_t keyCode,
                                                                std::uint32_t modifiers,
                                                                HotKeyID hotKeyID)
{
    std::vector<Grab> grabs = grabsFor(keyCode, modifiers);
    if (grabs.empty())
        return {hotKeyInvalid, std::nullopt};
    // The server would let a client take the same key twice.
    if (isHeld(grabs) || !take(grabs))
        return {isLost() ? hotKeyUnavailable : hotKeyTaken, std::nullopt};
    registrations[++lastReference] = {hotKeyID, keyCode, modifiers, std::move(grabs)};
    return {hotKeyNoError, lastReference};
}

void X11HotKeyConnection::unregisterHotKey(HotKeyBackend::Reference reference)
{
    const auto registration = registrations.find(reference);
    if (registration == registrations.end())
        return;
    giveBack(registration->second.grabs);
    registrations.erase(registration);
    if (freeze && freeze->reference == reference)
        thaw(presses);
    waitForServer();
}

void X11HotKeyConnection::thaw(std::uint64_t pressNumber)
{
    if (!freeze || presses != pressNumber)
        return;
    ungrabKeyboard(freeze->time);
    freeze.reset();
    xcb_flush(connection.get());
}

void X11HotKeyConnection::thawAfter(std::uint32_t closing, std::uint64_t pressNumber)
{
    if (!freeze || presses != pressNumber)
        return;
    freeze->closing = closing;
    // The main thread has answered; the window manager has as much time.
    freeze->until = Clock::now() + keyboardHoldLimit;
    lookForFocus();
}

void X11HotKeyConnection::processEvents(const EventReceiver& receiver)
{
    const auto next = [this] {
        if (auto* event = xcb_poll_for_event(connection.get()))
            return event;
        // Writing reads, too, when the server has something to say.
        xcb_flush(connection.get());
        return xcb_poll_for_queued_event(connection.get());
    };
    while (const XcbReply<xcb_generic_event_t> event{next()}) {
        const std::uint8_t type = event->response_type;
        if (type == XCB_KEY_PRESS) {
            handlePress(reinterpret_cast<const xcb_key_press_event_t&>(*event), receiver);
        } else if (type == XCB_GE_GENERIC) {
            handleRawRelease(reinterpret_cast<const xcb_ge_generic_event_t&>(*event), receiver);
        } else if (type == xkbEvent) {
            const auto settled = Clock::now() + keyboardSettleTime;
            nextFollow = nextFollow ? std::min(*nextFollow, settled) : settled;
            retryDelay = keyboardSettleTime;
        }
    }
}

std::optional<X11HotKeyConnection::Clock::time_point> X11HotKeyConnection::nextDeadline() const
{
    if (!freeze)
        return nextFollow;
    const auto next = freeze->look ? std::min(freeze->until, *freeze->look) : freeze->until;
    return nextFollow ? std::min(next, *nextFollow) : next;
}

void X11HotKeyConnection::runDeadlines(Clock::time_point now)
{
    if (freeze && freeze->until <= now)
        thaw(presses);
    if (freeze && freeze->look && *freeze->look <= now)
        lookForFocus();
    if (nextFollow && *nextFollow <= now) {
        nextFollow.reset();
        followKeyboard();
    }
}

std::vector<X11HotKeyConnection::Grab> X11HotKeyConnection::grabsFor(std::uint32_t keyCode,
                                                                     std::uint32_t modifiers) const
{
    const auto key = keyFromCarbonKeyCode(keyCode);
    const auto keycode = key ? keyboard.keycode(*key) : std::nullopt;
    if (!keycode)
        return {};
    const std::uint16_t wanted = keyboard.modifierMask(modifiers);
    const auto locks = static_cast<std::uint16_t>(keyboard.lockMask() & ~wanted);
    std::vector<Grab> grabs;
    for (unsigned state = 0; state <= modifierBits; ++state) {
        if ((state & ~locks) == 0)
            grabs.push_back({*keycode, static_cast<std::uint16_t>(wanted | state)});
    }
    return grabs;
}

bool X11HotKeyConnection::isHeld(const std::vector<Grab>& grabs) const
{
    return std::ranges::any_of(registrations, [&](const auto& entry) {
        return std::ranges::find_first_of(entry.second.grabs, grabs) != entry.second.grabs.end();
    });
}

/// All of them or none.
bool X11HotKeyConnection::take(const std::vector<Grab>& grabs)
{
    std::vector<xcb_void_cookie_t> requests;
    requests.reserve(grabs.size());
    for (const Grab& grab : grabs)
        requests.push_back(xcb_grab_key_checked(connection.get(), 0, root, grab.modifiers,
                                                grab.keycode, XCB_GRAB_MODE_ASYNC,
                                                XCB_GRAB_MODE_SYNC));
    std::vector<Grab> taken;
    for (std::size_t index = 0; index < grabs.size(); ++index) {
        const XcbReply<xcb_generic_error_t> error(
            xcb_request_check(connection.get(), requests[index]));
        if (!error)
            taken.push_back(grabs[index]);
    }
    if (taken.size() == grabs.size() && !isLost())
        return true;
    giveBack(taken);
    waitForServer();
    return false;
}

void X11HotKeyConnection::giveBack(const std::vector<Grab>& grabs)
{
    for (const Grab& grab : grabs)
        xcb_ungrab_key(connection.get(), grab.keycode, root, grab.modifiers);
}

/// Other programs find done what was asked for so far.
void X11HotKeyConnection::waitForServer()
{
    const XcbReply<xcb_get_input_focus_reply_t> anyReply(xcb_get_input_focus_reply(
        connection.get(), xcb_get_input_focus(connection.get()), nullptr));
}

/// Moves the grabs to where the keys are now.
void X11HotKeyConnection::followKeyboard()
{
    auto map = X11KeyboardMap::read(connection.get());
    if (!map)
        return;
    keyboard = std::move(*map);

    std::vector<HeldRegistration*> moved;
    for (auto& [reference, registration] : registrations) {
        if (registration.grabs != grabsFor(registration.keyCode, registration.modifiers))
            moved.push_back(&registration);
    }
    // All old places are free before the first new one is taken: two keys may change places.
    for (HeldRegistration* registration : moved)
        giveBack(std::exchange(registration->grabs, {}));
    for (HeldRegistration* registration : moved) {
        std::vector<Grab> grabs = grabsFor(registration->keyCode, registration->modifiers);
        if (grabs.empty())
            continue; // Until the keyboard has the key again.
        if (!isHeld(grabs) && take(grabs)) {
            registration->grabs = std::move(grabs);
        } else {
            nextFollow = Clock::now() + retryDelay;
        }
    }
    retryDelay = std::min<Clock::duration>(2 * retryDelay, longestRetryDelay);
    xcb_flush(connection.get());
}

void X11HotKeyConnection::handlePress(const xcb_key_press_event_t& event,
                                      const EventReceiver& receiver)
{
    const Grab pressed{event.detail, static_cast<std::uint16_t>(event.state & modifierBits)};
    const auto found = std::ranges::find_if(registrations, [&](const auto& entry) {
        return std::ranges::find(entry.second.grabs, pressed) != entry.second.grabs.end();
    });
    // A key that is held repeats its press, and each repeat freezes the keyboard anew.
    if (found == registrations.end() || keysDown.contains(event.detail)) {
        ungrabKeyboard(event.time);
        return;
    }
    const auto& [reference, registration] = *found;
    // The frozen server keeps the release back, so that this request comes before it.
    watchReleases(true);
    keysDown[event.detail] = reference;
    ++presses;
    freeze = Freeze{event.time, reference, Clock::now() + keyboardHoldLimit};
    receiver({HotKeyEvent::pressed, registration.hotKeyID, event.time});
}

void X11HotKeyConnection::handleRawRelease(const xcb_ge_generic_event_t& event,
                                           const EventReceiver& receiver)
{
    if (event.extension != inputOpcode || event.event_type != XCB_INPUT_RAW_KEY_RELEASE)
        return;
    const auto& release = reinterpret_cast<const xcb_input_raw_key_release_event_t&>(event);
    const auto key = keysDown.find(static_cast<std::uint8_t>(release.detail));
    if (key == keysDown.end())
        return;
    const HotKeyBackend::Reference reference = key->second;
    keysDown.erase(key);
    if (keysDown.empty())
        watchReleases(false);
    const auto registration = registrations.find(reference);
    if (registration != registrations.end())
        receiver({HotKeyEvent::released, registration->second.hotKeyID, release.time});
}

/// The release itself goes to whoever has the focus after the thaw; the raw one is told to all who
/// ask. Asked for only while a hot key is down: what else is typed is none of our business.
void X11HotKeyConnection::watchReleases(bool watch)
{
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                      watch ? static_cast<std::uint32_t>(XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE)
                            : 0U};
    xcb_input_xi_select_events(connection.get(), root, 1, &selection.head);
}

/// Ends the grab that a press of this time began, and with it the freeze. A later press keeps its
/// own: the server ignores a time before the grab's.
void X11HotKeyConnection::ungrabKeyboard(std::uint32_t time)
{
    xcb_ungrab_keyboard(connection.get(), time);
}

void X11HotKeyConnection::lookForFocus()
{
    if (hasFocusLeft(freeze->closing))
        thaw(presses);
    else
        freeze->look = Clock::now() + focusLookInterval;
}

/// Whether the focus has come to another window. On its way it is at the root window or nowhere,
/// and some window managers keep it at a window of their own meanwhile, but tell of none then.
bool X11HotKeyConnection::hasFocusLeft(std::uint32_t closing) const
{
    xcb_connection_t* server = connection.get();
    const auto askFocus = xcb_get_input_focus(server);
    const auto askActive =
        xcb_get_property(server, 0, root, activeWindowProperty, XCB_ATOM_WINDOW, 0, 1);
    const XcbReply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(server, askFocus, nullptr));
    const XcbReply<xcb_get_property_reply_t> active(
        xcb_get_property_reply(server, askActive, nullptr));
    if (!focus || !active)
        return true; // The server is gone.
    if (focus->focus == closing)
        return false;
    if (active->type != XCB_ATOM_WINDOW || xcb_get_property_value_length(active.get()) == 0)
        return true; // Nobody tells.
    std::uint32_t activeWindow = XCB_WINDOW_NONE;
    std::memcpy(&activeWindow, xcb_get_property_value(active.get()), sizeof activeWindow);
    return activeWindow != XCB_WINDOW_NONE && activeWindow != closing &&
           focus->focus != XCB_INPUT_FOCUS_NONE && focus->focus != XCB_INPUT_FOCUS_POINTER_ROOT &&
           focus->focus != root;
}

} // namespace vellumry::hotkey
