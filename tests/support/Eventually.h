#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <chrono>
#include <functional>

namespace vellumry::test {

/// Turns the event loop until the condition holds; false after a generous wait.
inline bool eventually(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    return true;
}

} // namespace vellumry::test
