#include "core/SerialQueue.h"

namespace vellumry {

SerialQueue::SerialQueue(const QString& label)
{
    thread.setObjectName(label);
    object.moveToThread(&thread);
    thread.start(QThread::LowPriority);
}

SerialQueue::~SerialQueue()
{
    thread.quit();
    thread.wait();
}

void SerialQueue::runAndWait(QObject& queue, const std::function<void()>& task)
{
    if (queue.thread() == QThread::currentThread())
        task();
    else
        QMetaObject::invokeMethod(&queue, task, Qt::BlockingQueuedConnection);
}

} // namespace vellumry
