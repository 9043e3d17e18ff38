#include "core/BackgroundRunner.h"

#include <QCoreApplication>

#include <utility>

namespace vellumry {

ThreadRunner::ThreadRunner()
{
    pool.setMaxThreadCount(1);
}

ThreadRunner::~ThreadRunner()
{
    drain();
}

void ThreadRunner::drain()
{
    pool.clear();
    pool.waitForDone();
}

void ThreadRunner::run(std::function<void()> work)
{
    pool.start(std::move(work));
}

void ThreadRunner::onMain(const QPointer<QObject>& owner, std::function<void()> action)
{
    // The owner itself cannot be the receiver: it may be destroyed while another thread posts.
    if (QCoreApplication* application = QCoreApplication::instance())
        QMetaObject::invokeMethod(
            application,
            [owner, action = std::move(action)] {
                if (owner)
                    action();
            },
            Qt::QueuedConnection);
}

ThreadRunner& ThreadRunner::shared()
{
    static ThreadRunner runner;
    return runner;
}

} // namespace vellumry
