#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QVariantMap>

namespace vellumry {

/// Where the desktop's portals are on the bus: the name of all of them, and their object.
inline constexpr QLatin1StringView portalName("org.freedesktop.portal.Desktop");
inline constexpr QLatin1StringView portalPath("/org/freedesktop/portal/desktop");

/// A call of a desktop portal whose answer comes later as a signal, maybe after the person was
/// asked. Goes by itself once it is answered or has failed, as it does when the portal ends;
/// whoever destroys it earlier takes off the screen what the portal shows. Main thread only.
class PortalRequest final : public QObject {
    Q_OBJECT

public:
    enum Code : uint { granted = 0, cancelled = 1, other = 2 };

    explicit PortalRequest(const QDBusConnection& connection, QObject* parent = nullptr);
    ~PortalRequest() override;

    /// Calls a method of `portal`, which is its name or its unique name; the method's last
    /// argument, the options, is made of `options`. Once.
    void call(const QString& portal, const QString& interface, const QString& method,
              QVariantList arguments, QVariantMap options);

    /// Where the portal makes an object of this connection's, a "request" or a "session", that
    /// bears the token.
    [[nodiscard]] static QString pathOf(QStringView kind, const QDBusConnection& bus,
                                        const QString& token);

Q_SIGNALS:
    void answered(uint code, const QVariantMap& results);
    void failed(const QString& reason);

private Q_SLOTS:
    void response(uint code, const QVariantMap& results);
    void portalOwnerChanged(const QString& name, const QString& before, const QString& now);

private:
    void listen(const QString& path);
    /// False for a second end.
    [[nodiscard]] bool end();

    QDBusConnection bus;
    QString service; ///< whom to tell that nobody waits any more
    QString handle;  ///< the request at the portal
    bool isOpen = false;
};

} // namespace vellumry
