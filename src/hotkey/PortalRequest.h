#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace vellumry::hotkey {

/// A call of a desktop portal whose answer comes later as a signal, maybe after the person was
/// asked. Ends unheard with the
/// object, which goes by itself once it is answered. Main thread only.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    static const QString portalPath;

    enum Code : uint { granted = 0, cancelled = 1, other = 2 };

    explicit PortalRequest(const QDBusConnection& connection, QObject* parent = nullptr);

    /// Calls a method of a portal, whose unique name `portal` is; its last argument, the options,
    /// is made of `options`. Once.
    void call(const QString& portal, const QString& interface, const QString& method,
              QVariantList arguments, QVariantMap options);

    /// A token that no other object of this process has, as portals name objects by it.
    [[nodiscard]] static QString newToken();

Q_SIGNALS:
    void answered(uint code, const QVariantMap& results);
    void failed(const QString& reason);

private Q_SLOTS:
    void response(uint code, const QVariantMap& results);

private:
    void listen(const QString& portal, const QString& path);

    QDBusConnection bus;
    QString heardPath;
    bool isAnswered = false;
};

} // namespace vellumry::hotkey
