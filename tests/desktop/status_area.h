#pragma once

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

/// The watcher of status items, which is its own host, and the hand that clicks in their menus.
class StatusArea : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    [[nodiscard]] bool isHostRegistered() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }
    [[nodiscard]] QStringList items() const
    {
        return service.isEmpty() ? QStringList() : QStringList(service);
    }

    /// Clicks on the entry of that label.
    void click(const QString& label);

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& item);
    void RegisterStatusNotifierHost(const QString&) {}

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString& item);
    void StatusNotifierItemUnregistered(const QString& item);
    void StatusNotifierHostRegistered();

private:
    [[nodiscard]] QDBusMessage call(const QString& method) const;
    void readMenu();
    void readEntry(const QDBusArgument& layout);

    QString service;
    QHash<QString, int> entries;
};
