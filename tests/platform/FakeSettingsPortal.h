#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QStringList>

namespace vellumry::test {

/// The settings portal of a desktop, as far as the color scheme goes.
class FakeSettingsPortal : public QObject, public QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakeSettingsPortal(const QDBusConnection& bus) : connection(bus) {}
    ~FakeSettingsPortal() override
    {
        connection.unregisterService(service());
        connection.unregisterObject(path());
    }

    /// Comes onto the bus. False when that fails.
    [[nodiscard]] bool appear()
    {
        return connection.registerObject(path(), this,
                                         QDBusConnection::ExportAllSlots |
                                             QDBusConnection::ExportAllSignals) &&
               connection.registerService(service());
    }

    QVariant preference = 0U;
    bool hasReadOne = true;
    bool isSilent = false; ///< Whether questions stay without an answer.
    QString failure;       ///< Answered instead of the preference.
    QStringList questions; ///< What was asked for.

public Q_SLOTS:
    QDBusVariant ReadOne(const QString& group, const QString& key)
    {
        questions.append(QStringLiteral("ReadOne %1 %2").arg(group, key));
        if (!hasReadOne)
            sendErrorReply(QDBusError::UnknownMethod, QStringLiteral("No such method"));
        return answer(QDBusVariant(preference));
    }

    /// The older method wraps what it answers twice.
    QDBusVariant Read(const QString& group, const QString& key)
    {
        questions.append(QStringLiteral("Read %1 %2").arg(group, key));
        return answer(QDBusVariant(QVariant::fromValue(QDBusVariant(preference))));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    static QString service() { return QStringLiteral("org.freedesktop.portal.Desktop"); }
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }

    QDBusVariant answer(const QDBusVariant& value)
    {
        if (!failure.isEmpty())
            sendErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"), failure);
        else if (isSilent)
            setDelayedReply(true);
        return value;
    }

    QDBusConnection connection;
};

} // namespace vellumry::test
