#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>

#include <functional>

class QAbstractScrollArea;

namespace vellumry {

/// Scrolls an area while something is dragged near its upper or lower edge.
class EdgeScroll : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of `area`; `onScroll` runs after each step.
    EdgeScroll(QAbstractScrollArea& area, std::function<void()> onScroll);

    /// The pointer is here now, in screen coordinates.
    void follow(const QPoint& pointer);
    void stop();

private:
    void step();

    QAbstractScrollArea& scrollArea;
    std::function<void()> onScroll;
    QTimer timer;
    int speed = 0;
};

} // namespace vellumry
