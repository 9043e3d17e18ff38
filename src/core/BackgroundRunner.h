#pragma once

#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include <functional>

namespace vellumry {

/// Work away from the main thread, and the way back to it. Tests hand in a runner whose work they
/// run by hand.
class BackgroundRunner {
public:
    virtual ~BackgroundRunner() = default;

    /// Runs `work`, which throws nothing, away from the main thread; one piece after the other, in
    /// the order of the calls.
    virtual void run(std::function<void()> work) = 0;

    /// From any thread: runs `action` on the main thread, never at once, unless `owner` has been
    /// destroyed by then. Actions from one thread run in the order of the calls.
    virtual void onMain(const QPointer<QObject>& owner, std::function<void()> action) = 0;
};

/// The runner on a worker thread. The shared one lives longer than the application object, which
/// work may need: whoever runs the event loop calls drain() when the loop is over, before the
/// application object goes.
class ThreadRunner final : public BackgroundRunner {
public:
    ThreadRunner();
    /// Drains.
    ~ThreadRunner() override;

    void run(std::function<void()> work) override;
    void onMain(const QPointer<QObject>& owner, std::function<void()> action) override;

    /// Drops the work that was not begun and waits for the one in hand: when this returns, none is
    /// running, until run() is called again.
    void drain();

    /// The one that the program uses.
    [[nodiscard]] static ThreadRunner& shared();

private:
    QThreadPool pool; ///< of a single thread
};

} // namespace vellumry
