#pragma once

#include <QObject>

namespace vellumry {

/// The place of the desktop where programs that stay in the background have their items. It can
/// come into being long after the program has started, and some desktops have none. Main thread
/// only.
class StatusArea : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to look for the area. Answers by one of the signals, later.
    virtual void startLooking() = 0;

Q_SIGNALS:
    /// The area is there: items made from now on are shown, also after it has been restarted.
    /// Emitted once.
    void appeared();
    /// There has been none for so long that the person should know. It may still appear.
    void missing();
};

} // namespace vellumry
