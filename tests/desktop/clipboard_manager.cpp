// A clipboard manager of X11: keeps the text of a program that ends, as the selection
// CLIPBOARD_MANAGER promises it (SAVE_TARGETS). Prints "ready" when it is the one.

#include <QAbstractNativeEventFilter>
#include <QClipboard>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QWindow>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

xcb_atom_t atom(xcb_connection_t* connection, const char* name)
{
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr);
    const auto freeReply = qScopeGuard([reply] { std::free(reply); });
    return reply != nullptr ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

class Manager final : public QAbstractNativeEventFilter {
public:
    Manager(xcb_connection_t* server, xcb_window_t ownWindow)
        : connection(server), window(ownWindow), selection(atom(server, "CLIPBOARD_MANAGER")),
          saveTargets(atom(server, "SAVE_TARGETS"))
    {
        // While the owner is there; at its end there is only the answer left to give.
        QObject::connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, [this] {
            if (!QGuiApplication::clipboard()->ownsClipboard())
                text = QGuiApplication::clipboard()->text();
        });
        xcb_set_selection_owner(connection, window, selection, XCB_CURRENT_TIME);
        xcb_flush(connection);
    }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        const auto* event = static_cast<const xcb_generic_event_t*>(message);
        if ((event->response_type & 0x7f) != XCB_SELECTION_REQUEST)
            return false;
        const auto* request = reinterpret_cast<const xcb_selection_request_event_t*>(event);
        if (request->selection != selection || request->target != saveTargets)
            return false;
        QGuiApplication::clipboard()->setText(text);
        xcb_selection_notify_event_t answer{};
        answer.response_type = XCB_SELECTION_NOTIFY;
        answer.time = request->time;
        answer.requestor = request->requestor;
        answer.selection = request->selection;
        answer.target = request->target;
        answer.property = request->property;
        xcb_send_event(connection, 0, request->requestor, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&answer));
        xcb_flush(connection);
        return true;
    }

private:
    xcb_connection_t* connection;
    xcb_window_t window;
    xcb_atom_t selection;
    xcb_atom_t saveTargets;
    QString text;
};

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const auto* x11 = application.nativeInterface<QNativeInterface::QX11Application>();
    if (QGuiApplication::platformName() != QStringLiteral("xcb") || x11 == nullptr) {
        std::fputs("clipboard_manager: there is no X server\n", stderr);
        return 1;
    }
    QWindow window;
    window.create();
    Manager manager(x11->connection(), static_cast<xcb_window_t>(window.winId()));
    qApp->installNativeEventFilter(&manager);
    std::puts("ready");
    std::fflush(stdout);
    return QGuiApplication::exec();
}
