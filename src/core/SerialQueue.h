#pragma once

#include <QObject>
#include <QThread>

#include <functional>

namespace vellumry {

/// A thread that runs one task after another. Whatever is scheduled for its context, or happens to
/// objects that live there, runs on it. Whoever takes a queue takes the context alone, so that a
/// plain object stands for a queue on the thread that it was made on.
class SerialQueue final {
public:
    /// The label names the thread for debuggers.
    explicit SerialQueue(const QString& label);
    /// Waits for the tasks that are due; delayed ones do not run any more.
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    [[nodiscard]] QObject& context() { return object; }

    /// Runs the task on the queue and waits until it is done; at once when this is its thread.
    static void runAndWait(QObject& queue, const std::function<void()>& task);

private:
    QThread thread;
    QObject object;
};

} // namespace vellumry
