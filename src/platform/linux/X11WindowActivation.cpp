#include "platform/linux/X11WindowActivation.h"

#include "session/XcbReply.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cstring>

namespace vellumry {

namespace {

// Of the Extended Window Manager Hints: who asks, and what is to be done with the states.
constexpr std::uint32_t sourceIsProgram = 1;
constexpr std::uint32_t sourceIsPerson = 2;
constexpr std::uint32_t addState = 1;

xcb_connection_t* connectionOfQt()
{
    // On other platforms the interface may exist without a connection behind it.
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return nullptr;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

} // namespace

X11WindowActivation::X11WindowActivation() : connection(connectionOfQt())
{
    if (!connection)
        return;
    root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    atoms = internAtoms();
    compositing = hasCompositor();
    followCompositor();
    qApp->installNativeEventFilter(this);
}

X11WindowActivation::~X11WindowActivation()
{
    if (connection && qApp)
        qApp->removeNativeEventFilter(this);
}

void X11WindowActivation::prepareToShow(QWindow& window)
{
    if (!connection)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    // Qt keeps what it finds here and adds its own states when it shows the window.
    const std::uint32_t states[] = {atoms.skipTaskbar, atoms.skipPager};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, atoms.state, XCB_ATOM_ATOM, 32, 2,
                        states);
}

void X11WindowActivation::activate(QWindow& window)
{
    if (!connection) {
        window.requestActivate();
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    if (hasWindowManager()) {
        // Panels: a window manager that is late takes the states off again as it comes to the
        // hiding before this showing.
        if (window.type() == Qt::Tool) {
            askWindowManager(id, atoms.state,
                             {addState, atoms.skipTaskbar, atoms.skipPager, sourceIsProgram});
            askWindowManager(id, atoms.state, {addState, atoms.above, 0, sourceIsProgram});
        }
        // Not the time of the press: a window manager that has given the keyboard to another window
        // since, as when the main window was hidden or when it came late to what was asked before,
        // turns down a wish that is older than that.
        askWindowManager(id, atoms.activeWindow, {sourceIsPerson, XCB_CURRENT_TIME});
    } else {
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, id, XCB_CURRENT_TIME);
    }
    xcb_flush(connection);
}

void X11WindowActivation::askWindowManager(std::uint32_t window, std::uint32_t wish,
                                           const std::array<std::uint32_t, 5>& details)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = wish;
    std::ranges::copy(details, message.data.data32);
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

void X11WindowActivation::offerToken(const QByteArray& token)
{
    if (connection && !token.isEmpty())
        broadcast("remove: ID=\"" + QByteArray(token).replace('\\', "\\\\").replace('"', "\\\"") +
                  '"');
}

/// As the Startup Notification Protocol has it: to whoever listens at the root window, in pieces,
/// in the name of a window of our own.
void X11WindowActivation::broadcast(const QByteArray& message)
{
    const auto sender = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = 8;
    piece.window = sender;
    piece.type = atoms.startupInfoBegin;
    constexpr qsizetype pieceSize = sizeof piece.data.data8;
    // The zero behind the text is part of it.
    for (qsizetype sent = 0; sent <= message.size(); sent += pieceSize) {
        std::memset(piece.data.data8, 0, pieceSize);
        std::memcpy(piece.data.data8, message.constData() + sent,
                    static_cast<std::size_t>(std::min(pieceSize, message.size() + 1 - sent)));
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char*>(&piece));
        piece.type = atoms.startupInfo;
    }
    xcb_destroy_window(connection, sender);
    xcb_flush(connection);
}

/// All in one round trip.
X11WindowActivation::Atoms X11WindowActivation::internAtoms() const
{
    struct Name {
        const char* text;
        std::uint32_t Atoms::*atom;
        xcb_intern_atom_cookie_t cookie;
    };
    Name names[] = {{"_NET_WM_STATE", &Atoms::state, {}},
                    {"_NET_WM_STATE_SKIP_TASKBAR", &Atoms::skipTaskbar, {}},
                    {"_NET_WM_STATE_SKIP_PAGER", &Atoms::skipPager, {}},
                    {"_NET_WM_STATE_ABOVE", &Atoms::above, {}},
                    {"_NET_ACTIVE_WINDOW", &Atoms::activeWindow, {}},
                    {"_NET_SUPPORTING_WM_CHECK", &Atoms::windowManagerCheck, {}},
                    {"_NET_WM_CM_S0", &Atoms::compositorSelection, {}},
                    {"_NET_STARTUP_INFO_BEGIN", &Atoms::startupInfoBegin, {}},
                    {"_NET_STARTUP_INFO", &Atoms::startupInfo, {}}};
    for (Name& name : names)
        name.cookie = xcb_intern_atom(
            connection, 0, static_cast<std::uint16_t>(std::strlen(name.text)), name.text);
    Atoms result;
    for (const Name& name : names) {
        const XcbReply<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection, name.cookie, nullptr));
        if (reply)
            result.*name.atom = reply->atom;
    }
    return result;
}

bool X11WindowActivation::hasWindowManager() const
{
    const auto check = [this](xcb_window_t window) -> xcb_window_t {
        const auto cookie = xcb_get_property(connection, 0, window, atoms.windowManagerCheck,
                                             XCB_ATOM_WINDOW, 0, 1);
        const XcbReply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4)
            return XCB_WINDOW_NONE;
        xcb_window_t value = XCB_WINDOW_NONE;
        std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
        return value;
    };
    // A manager that has gone may have left the property on the root, but not its own window.
    const xcb_window_t manager = check(root);
    return manager != XCB_WINDOW_NONE && check(manager) == manager;
}

bool X11WindowActivation::hasCompositor() const
{
    const auto cookie = xcb_get_selection_owner(connection, atoms.compositorSelection);
    const XcbReply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void X11WindowActivation::followCompositor()
{
    const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    const XcbReply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection,
        xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        nullptr));
    if (!version)
        return;
    xcb_xfixes_select_selection_input(connection, root, atoms.compositorSelection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    selectionNotifyEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
}

bool X11WindowActivation::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_FOCUS_IN) {
        const auto* focus = reinterpret_cast<const xcb_focus_in_event_t*>(event);
        if (focus->detail != XCB_NOTIFY_DETAIL_POINTER)
            windowGotFocus(focus->event);
    }
    if (type != selectionNotifyEvent)
        return false;
    const auto* change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (change->selection == atoms.compositorSelection)
        QMetaObject::invokeMethod(this, &X11WindowActivation::updateCompositing,
                                  Qt::QueuedConnection);
    return false;
}

void X11WindowActivation::windowGotFocus(std::uint32_t window)
{
    QWindow* focused = QGuiApplication::focusWindow();
    if (!focused || focused->winId() != window)
        return;
    // Behind Qt's own handling, which may be about to take the keyboard for gone.
    QMetaObject::invokeMethod(
        this,
        [this, back = QPointer(focused)] {
            if (back && back == QGuiApplication::focusWindow())
                Q_EMIT keyboardCameBack(back);
        },
        Qt::QueuedConnection);
}

void X11WindowActivation::updateCompositing()
{
    const bool isOn = hasCompositor();
    if (isOn == compositing)
        return;
    compositing = isOn;
    Q_EMIT compositingChanged(isOn);
}

} // namespace vellumry
