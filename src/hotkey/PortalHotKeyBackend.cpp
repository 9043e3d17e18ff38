#include "hotkey/PortalHotKeyBackend.h"

#include "hotkey/ShortcutTrigger.h"
#include "session/PortalRequest.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace vellumry::hotkey {

PortalHotKeyBackend::PortalHotKeyBackend(MainThreadExecutor executor, Name name,
                                         BusConnector connector)
    : runOnMainThread(std::move(executor)), shortcutName(std::move(name)),
      connectToBus(std::move(connector))
{
}

PortalHotKeyBackend::~PortalHotKeyBackend()
{
    if (connecting.joinable())
        connecting.join();
    session.reset();
    if (bus)
        QDBusConnection::disconnectFromBus(bus->name());
}

QDBusConnection PortalHotKeyBackend::connectToSessionBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                         QStringLiteral("vellumry-hotkey"));
}

HotKeyBackend::Registration PortalHotKeyBackend::registerHotKey(std::uint32_t keyCode,
                                                                std::uint32_t modifiers,
                                                                HotKeyID hotKeyID)
{
    const auto combination = shortcutTrigger(keyCode, modifiers);
    if (!combination)
        return {hotKeyInvalid, std::nullopt};
    const QString trigger = QString::fromStdString(*combination);
    const bool isHeld = std::any_of(
        held.begin(), held.end(), [&trigger](const Held& each) { return each.trigger == trigger; });
    if (isHeld)
        return {hotKeyTaken, std::nullopt};
    held.push_back({++lastReference, trigger, hotKeyID});
    // In a later turn: one that is only tried has gone by then, and troubles nobody.
    runOnMainThread([backend = QPointer(this)] {
        if (backend)
            backend->apply();
    });
    return {hotKeyNoError, lastReference};
}

/// The portal keeps its shortcut: to take it back for the time of a pause would ask the person
/// again at the end of it.
void PortalHotKeyBackend::unregisterHotKey(Reference reference)
{
    std::erase_if(held, [reference](const Held& each) { return each.reference == reference; });
}

HotKeyBackend::EventHandlerReference
PortalHotKeyBackend::installEventHandler(EventHandler newHandler)
{
    handler = std::move(newHandler);
    return this;
}

std::optional<std::vector<SymbolicHotKey>> PortalHotKeyBackend::copySymbolicHotKeys()
{
    return std::nullopt; // A portal has no such list.
}

void PortalHotKeyBackend::releaseKeyboard()
{
    // Nothing is held back here; but the press has brought what it was to bring.
    activationToken.clear();
}

std::string PortalHotKeyBackend::takeActivationToken()
{
    return std::exchange(activationToken, {});
}

std::optional<DesktopShortcut> PortalHotKeyBackend::desktopShortcut() const
{
    return shortcut;
}

void PortalHotKeyBackend::observeDesktopShortcut(const std::function<void()>& newObserver)
{
    observer = newObserver;
}

void PortalHotKeyBackend::apply()
{
    if (held.empty() || held.back().trigger == wish)
        return;
    wish = held.back().trigger;
    if (bus)
        openSession();
    else if (!connecting.joinable())
        connectBus();
}

void PortalHotKeyBackend::connectBus()
{
    connecting =
        std::thread([connect = connectToBus, post = runOnMainThread, backend = QPointer(this)] {
            post([backend, connection = connect()] {
                if (backend)
                    backend->follow(connection);
            });
        });
}

void PortalHotKeyBackend::follow(const QDBusConnection& connection)
{
    bus = connection;
    if (!bus->isConnected()) {
        set({DesktopShortcut::State::unavailable, {}});
        return;
    }
    // From any sender, since to follow the owner of a name would wait for the bus.
    bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus"),
                 QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                 {portalName}, QString(), this,
                 SLOT(portalOwnerChanged(QString, QString, QString)));
    openSession();
}

void PortalHotKeyBackend::openSession()
{
    if (!bus->isConnected())
        return;
    using Session = GlobalShortcutsSession;
    session = std::make_unique<Session>(
        *bus, Session::Shortcut{.applicationId = shortcutName.applicationId,
                                .id = shortcutName.id,
                                .description = shortcutName.description,
                                .trigger = wish});
    connect(session.get(), &Session::changed, this, [this] { set(session->state()); });
    connect(session.get(), &Session::activated, this, [this](quint64 time, const QString& token) {
        deliver(HotKeyEvent::pressed, time, token);
    });
    connect(session.get(), &Session::deactivated, this,
            [this](quint64 time) { deliver(HotKeyEvent::released, time, {}); });
    set(session->state());
}

void PortalHotKeyBackend::portalOwnerChanged(const QString&, const QString& before,
                                             const QString& now)
{
    using State = DesktopShortcut::State;
    if (now.isEmpty()) {
        // With the portal, all that it gave out has gone.
        session.reset();
        set({State::unavailable, {}});
    } else if (!before.isEmpty() || shortcut.state == State::unavailable) {
        openSession();
    }
}

void PortalHotKeyBackend::set(const DesktopShortcut& state)
{
    if (std::exchange(shortcut, state) != state && observer)
        observer();
}

void PortalHotKeyBackend::deliver(std::uint32_t kind, quint64 time, const QString& token)
{
    if (held.empty() || !handler)
        return;
    if (kind == HotKeyEvent::pressed)
        activationToken = token.toStdString();
    const HotKeyEvent event{
        .kind = kind, .hotKeyID = held.back().hotKeyID, .time = static_cast<std::uint32_t>(time)};
    const EventHandler told = handler;
    if (told(&event) != hotKeyNoError)
        activationToken.clear();
}

} // namespace vellumry::hotkey
