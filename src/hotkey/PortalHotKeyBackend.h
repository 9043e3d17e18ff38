#pragma once

#include "hotkey/GlobalShortcutsSession.h"
#include "hotkey/HotKeyBackend.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace vellumry::hotkey {

/// Global hot keys where the desktop gives them out, as under Wayland: through its portal. There
/// the person has the last word on the keys, so a registration is a wish, and desktopShortcut()
/// tells what became of it. The desktop remembers a shortcut by one name, so one registration is in
/// force at a time, the newest. Waits for nothing; a portal that appears later is asked then. Main
/// thread only.
class PortalHotKeyBackend final : public QObject, public HotKeyBackend {
    Q_OBJECT

public:
    /// Makes a connection to the bus of the user's session that nobody else uses, which ends with
    /// the backend. Called on another thread, since it may take its time.
    using BusConnector = std::function<QDBusConnection()>;

    /// How the desktop and the person are to know the shortcut.
    struct Name {
        QString applicationId;
        QString id;
        QString description;
    };

    /// Can be made before there is an application; registrations need one.
    PortalHotKeyBackend(MainThreadExecutor executor, Name name,
                        BusConnector connectToBus = &connectToSessionBus);
    ~PortalHotKeyBackend() override;

    [[nodiscard]] Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                              HotKeyID hotKeyID) override;
    void unregisterHotKey(Reference reference) override;
    EventHandlerReference installEventHandler(EventHandler newHandler) override;
    [[nodiscard]] std::optional<std::vector<SymbolicHotKey>> copySymbolicHotKeys() override;
    void releaseKeyboard() override;
    [[nodiscard]] std::string takeActivationToken() override;
    [[nodiscard]] std::optional<DesktopShortcut> desktopShortcut() const override;
    void observeDesktopShortcut(const std::function<void()>& newObserver) override;

private Q_SLOTS:
    void portalOwnerChanged(const QString& name, const QString& before, const QString& now);

private:
    struct Held {
        Reference reference;
        QString trigger;
        HotKeyID hotKeyID;
    };

    [[nodiscard]] static QDBusConnection connectToSessionBus();

    void apply();
    void connectBus();
    void follow(const QDBusConnection& connection);
    void openSession();
    void set(const DesktopShortcut& state);
    void deliver(std::uint32_t kind, quint64 time, const QString& token);

    const MainThreadExecutor runOnMainThread;
    const Name shortcutName;
    const BusConnector connectToBus;
    std::thread connecting;
    std::optional<QDBusConnection> bus;

    std::vector<Held> held;
    Reference lastReference = 0;
    QString wish; ///< the trigger that the portal has been asked for
    std::unique_ptr<GlobalShortcutsSession> session;
    DesktopShortcut shortcut;

    EventHandler handler;
    std::function<void()> observer;
    std::string activationToken;
};

} // namespace vellumry::hotkey
