#include "views/common/EdgeScroll.h"

#include <QAbstractScrollArea>
#include <QScrollBar>

#include <chrono>
#include <utility>

namespace vellumry {

namespace {

constexpr int edge = 32;
constexpr int fastest = 12; ///< pixels of one step
constexpr std::chrono::milliseconds stepTime{16};

} // namespace

EdgeScroll::EdgeScroll(QAbstractScrollArea& area, std::function<void()> scrolled)
    : QObject(&area), scrollArea(area), onScroll(std::move(scrolled))
{
    timer.setInterval(stepTime);
    connect(&timer, &QTimer::timeout, this, &EdgeScroll::step);
}

void EdgeScroll::follow(const QPoint& pointer)
{
    const int y = scrollArea.viewport()->mapFromGlobal(pointer).y();
    const int below = y - (scrollArea.viewport()->height() - edge);
    const int above = edge - y;
    speed = 0;
    if (below > 0)
        speed = std::min(fastest, 1 + below * fastest / edge);
    else if (above > 0)
        speed = -std::min(fastest, 1 + above * fastest / edge);
    if (speed == 0)
        timer.stop();
    else if (!timer.isActive())
        timer.start();
}

void EdgeScroll::stop()
{
    timer.stop();
}

void EdgeScroll::step()
{
    auto* bar = scrollArea.verticalScrollBar();
    const int before = bar->value();
    bar->setValue(before + speed);
    if (bar->value() != before)
        onScroll();
}

} // namespace vellumry
