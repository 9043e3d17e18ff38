#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QObject>
#include <QString>
#include <QStringList>

namespace vellumry::test {

/// The file manager of a desktop, which writes down what it is to show.
class FakeFileManager : public QObject, public QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FakeFileManager(const QDBusConnection& bus) : connection(bus) {}
    ~FakeFileManager() override
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

    bool isRefusing = false; ///< Whether every call is answered with an error.
    QStringList calls;

public Q_SLOTS:
    void ShowFolders(const QStringList& uris, const QString& startupId)
    {
        note(QStringLiteral("ShowFolders"), uris, startupId);
    }
    void ShowItems(const QStringList& uris, const QString& startupId)
    {
        note(QStringLiteral("ShowItems"), uris, startupId);
    }

private:
    static QString service() { return QStringLiteral("org.freedesktop.FileManager1"); }
    static QString path() { return QStringLiteral("/org/freedesktop/FileManager1"); }

    void note(const QString& method, const QStringList& uris, const QString& startupId)
    {
        calls.append(QStringLiteral("%1 [%2] '%3'").arg(method, uris.join(u' '), startupId));
        if (isRefusing)
            sendErrorReply(QDBusError::Failed, QStringLiteral("not today"));
    }

    QDBusConnection connection;
};

} // namespace vellumry::test
