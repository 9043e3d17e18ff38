#include "hotkey/X11HotKeyBackend.h"

#include "hotkey/X11HotKeyConnection.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <future>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace vellumry::hotkey {

namespace {

constexpr int noTimeout = -1;

/// For poll(): milliseconds from now, rounded up so that the wait does not end just before.
int timeoutUntil(std::optional<X11HotKeyConnection::Clock::time_point> deadline)
{
    if (!deadline)
        return noTimeout;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*deadline - X11HotKeyConnection::Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

} // namespace

std::unique_ptr<X11HotKeyBackend> X11HotKeyBackend::connect(MainThreadExecutor executor,
                                                            const std::string& display,
                                                            std::chrono::milliseconds holdLimit)
{
    auto server = X11HotKeyConnection::open(display, holdLimit);
    if (!server)
        return nullptr;
    const int wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeDescriptor < 0)
        return nullptr;
    return std::unique_ptr<X11HotKeyBackend>(
        new X11HotKeyBackend(std::move(server), wakeDescriptor, std::move(executor)));
}

X11HotKeyBackend::X11HotKeyBackend(std::unique_ptr<X11HotKeyConnection> server, int wakeDescriptor,
                                   MainThreadExecutor executor)
    : connection(std::move(server)), wakeEvent(wakeDescriptor),
      runOnMainThread(std::move(executor)),
      receiver(std::make_shared<Receiver>(Receiver{*this, {}})),
      thread([this] { readConnection(); })
{
}

X11HotKeyBackend::~X11HotKeyBackend()
{
    isStopping = true;
    wake();
    thread.join();
    close(wakeEvent);
}

HotKeyBackend::Registration
X11HotKeyBackend::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID hotKeyID)
{
    Registration registration;
    postAndWait([&] { registration = connection->registerHotKey(keyCode, modifiers, hotKeyID); });
    return registration;
}

void X11HotKeyBackend::unregisterHotKey(Reference reference)
{
    postAndWait([&] { connection->unregisterHotKey(reference); });
}

HotKeyBackend::EventHandlerReference X11HotKeyBackend::installEventHandler(EventHandler handler)
{
    receiver->handler = std::move(handler);
    return receiver.get();
}

std::optional<std::vector<SymbolicHotKey>> X11HotKeyBackend::copySymbolicHotKeys()
{
    return std::nullopt; // An X server has no such list.
}

void X11HotKeyBackend::releaseKeyboard()
{
    post([this, pressNumber = lastPress.load()] { connection->thaw(pressNumber); });
}

void X11HotKeyBackend::releaseKeyboardAfter(std::uint32_t closing)
{
    post([this, closing, pressNumber = lastPress.load()] {
        connection->thawAfter(closing, pressNumber);
    });
}

void X11HotKeyBackend::readConnection()
{
    // Signals are for the main thread; and a server that goes away must not end the program.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);

    const auto passOn = [this](const HotKeyEvent& event) {
        runOnMainThread([event, pressNumber = connection->pressCount(),
                         destination = std::weak_ptr<Receiver>(receiver)] {
            if (const auto alive = destination.lock())
                alive->backend.deliver(event, pressNumber);
        });
    };
    while (!isStopping) {
        runTasks();
        connection->runDeadlines(X11HotKeyConnection::Clock::now());
        // Last, since the requests before may have read events, and the connection is not readable
        // any more then.
        connection->processEvents(passOn);
        waitForWork();
    }
    connection.reset();
}

void X11HotKeyBackend::waitForWork()
{
    // A lost connection is always readable; poll() passes over negative numbers.
    const int server = connection->isLost() ? -1 : connection->fileDescriptor();
    std::array<pollfd, 2> sources{{{server, POLLIN, 0}, {wakeEvent, POLLIN, 0}}};
    poll(sources.data(), sources.size(), timeoutUntil(connection->nextDeadline()));
    eventfd_t count = 0;
    eventfd_read(wakeEvent, &count);
}

void X11HotKeyBackend::runTasks()
{
    std::deque<Task> waiting;
    {
        const std::lock_guard lock(taskMutex);
        waiting.swap(tasks);
    }
    for (const Task& task : waiting)
        task();
}

void X11HotKeyBackend::post(Task task)
{
    {
        const std::lock_guard lock(taskMutex);
        tasks.push_back(std::move(task));
    }
    wake();
}

void X11HotKeyBackend::postAndWait(const Task& task)
{
    std::promise<void> done;
    post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

void X11HotKeyBackend::wake() const
{
    eventfd_write(wakeEvent, 1);
}

void X11HotKeyBackend::deliver(const HotKeyEvent& event, std::uint64_t pressNumber)
{
    lastPress = pressNumber;
    const EventHandler handler = receiver->handler;
    const std::int32_t status = handler ? handler(&event) : hotKeyEventNotHandled;
    // Nobody will show a window for this press.
    if (status != hotKeyNoError && event.kind == HotKeyEvent::pressed)
        releaseKeyboard();
}

} // namespace vellumry::hotkey
