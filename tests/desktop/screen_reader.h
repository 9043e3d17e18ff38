#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QJsonArray>
#include <QString>

/// The registry that accessible programs report to, and the eyes that look at the last of them.
class ScreenReader : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// What the program shows now in the windows of that title, or in all when it is empty: parents
    /// before their children, each with the position of its parent in the list.
    [[nodiscard]] QJsonArray look(const QString& window) const;

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }
    /// Tells programs that they are listened to, and on which bus: this one.
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QString program;
};
