#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace vellumry::test {

/// A dialog of the portal that is up.
class FakePortalRequest : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")

public:
    using QObject::QObject;

    bool isClosed = false;

public Q_SLOTS:
    void Close() { isClosed = true; }
};

/// The portal of a desktop, as far as the dialogs for files go.
class FakeFileChooserPortal : public QObject, public QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

public:
    explicit FakeFileChooserPortal(const QDBusConnection& bus) : connection(bus) {}
    ~FakeFileChooserPortal() override
    {
        connection.unregisterService(service());
        connection.unregisterObject(path());
    }

    /// Comes onto the bus. False when that fails.
    [[nodiscard]] bool appear()
    {
        return connection.registerObject(path(), this, QDBusConnection::ExportAllSlots) &&
               connection.registerService(service());
    }

    /// Answers the dialog that is up: 0 for a choice, 1 for none.
    void answer(uint code, const QStringList& uris)
    {
        QDBusMessage response = QDBusMessage::createSignal(
            handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        response << code << QVariantMap{{QStringLiteral("uris"), uris}};
        connection.send(response);
    }

    bool isRefusing = false; ///< Whether there is nothing behind the portal that shows dialogs.
    QString method;          ///< of the last call, with its arguments
    QString parentWindow;
    QString title;
    QVariantMap options;
    FakePortalRequest request; ///< of the last call

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString& parent, const QString& name, const QVariantMap& given)
    {
        return take(QStringLiteral("OpenFile"), parent, name, given);
    }
    QDBusObjectPath SaveFile(const QString& parent, const QString& name, const QVariantMap& given)
    {
        return take(QStringLiteral("SaveFile"), parent, name, given);
    }

private:
    static QString service() { return QStringLiteral("org.freedesktop.portal.Desktop"); }
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }

    QDBusObjectPath take(const QString& called, const QString& parent, const QString& name,
                         const QVariantMap& given)
    {
        method = called;
        parentWindow = parent;
        title = name;
        options = given;
        if (isRefusing)
            sendErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such interface"));
        handle = path() + QStringLiteral("/request/") +
                 message().service().mid(1).replace(u'.', u'_') + u'/' +
                 given.value(QStringLiteral("handle_token")).toString();
        connection.registerObject(handle, &request, QDBusConnection::ExportAllSlots);
        return QDBusObjectPath(handle);
    }

    QDBusConnection connection;
    QString handle;
};

} // namespace vellumry::test
