#pragma once

#include "hotkey/DesktopShortcut.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

namespace vellumry {
class PortalRequest;
}

namespace vellumry::hotkey {

/// One shortcut at the desktop's portal for global shortcuts (org.freedesktop.portal.
/// GlobalShortcuts), from the first question to the last press. Waits for nothing; every answer
/// arrives as a signal. Its end takes the shortcut back. Main thread only.
class GlobalShortcutsSession final : public QObject {
    Q_OBJECT

public:
    struct Shortcut {
        QString applicationId; ///< by which the desktop knows the program
        QString id;            ///< by which it knows the shortcut, from one run to the next
        QString description;   ///< for the person
        QString trigger;       ///< the wish; what the person chooses there counts
    };

    /// Asks at once. `bus` is a connection of the session's own: who a program is can be told to
    /// the portals only before anything else is.
    GlobalShortcutsSession(QDBusConnection bus, Shortcut shortcut, QObject* parent = nullptr);
    ~GlobalShortcutsSession() override;

    [[nodiscard]] const DesktopShortcut& state() const { return current; }

Q_SIGNALS:
    void changed();
    /// `time` is the desktop's in milliseconds; `token` lets a window take the keyboard, or is
    /// empty.
    void activated(quint64 time, const QString& token);
    void deactivated(quint64 time);

private Q_SLOTS:
    void hearActivated(const QDBusMessage& signal);
    void hearDeactivated(const QDBusMessage& signal);
    void hearShortcutsChanged(const QDBusMessage& signal);
    void hearClosed();

private:
    using Next = std::function<void(const QDBusMessage& reply)>;

    void ask(const QDBusMessage& question, Next next);
    PortalRequest& request();
    void introduce();
    void readVersion(const QDBusMessage& registered);
    void createSession(const QDBusMessage& version);
    void hearSession();
    void bindShortcut();
    [[nodiscard]] QString token() const;
    [[nodiscard]] QVariant wanted() const;
    bool takeShortcuts(const QVariant& shortcuts);
    void set(DesktopShortcut::State state, const QString& trigger = {});
    [[nodiscard]] bool isOurs(const QDBusMessage& signal) const;

    QDBusConnection bus;
    const Shortcut with;
    DesktopShortcut current;
    QString portal;  ///< its unique name, once it has answered
    QString session; ///< its object, once there is one
};

} // namespace vellumry::hotkey
