#pragma once

#include <QObject>

class QDBusConnection;

namespace vellumry {

/// Whether the desktop shows the menus of windows in a place of its own. Nothing waits for the
/// bus: until it has answered, there is no such place. Main thread only.
class GlobalMenu : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Asks now, and hears of it from then on when the desktop begins or ends to show menus.
    void startLooking(const QDBusConnection& bus);

    [[nodiscard]] bool isThere() const { return there; }

Q_SIGNALS:
    void changed();

private:
    void setThere(bool isThere);

    bool there = false;
};

} // namespace vellumry
