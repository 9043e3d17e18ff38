#pragma once

#include "hotkey/HotKeyBackend.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace vellumry::hotkey {

class X11HotKeyConnection;

/// Global hot keys of an X server, on a connection and a thread of their own: they are there
/// before the windows are, and a busy main thread can never hold the user's keyboard. Needs nothing
/// of the toolkit. When the server goes away, everything is refused and nothing comes any more.
class X11HotKeyBackend final : public HotKeyBackend {
public:
    /// The longest time for which a press holds the keyboard until it is answered, and then until
    /// the focus has left the window that it closes.
    static constexpr std::chrono::milliseconds keyboardHoldLimit{250};

    /// Connects to a display, "" for the one that the environment names; nothing when that fails.
    /// `executor` brings the events to the main thread.
    [[nodiscard]] static std::unique_ptr<X11HotKeyBackend>
    connect(MainThreadExecutor executor, const std::string& display = {},
            std::chrono::milliseconds holdLimit = keyboardHoldLimit);
    /// Gives all keys back. Events on their way to the main thread are dropped.
    ~X11HotKeyBackend() override;

    [[nodiscard]] Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                              HotKeyID hotKeyID) override;
    void unregisterHotKey(Reference reference) override;
    EventHandlerReference installEventHandler(EventHandler handler) override;
    [[nodiscard]] std::optional<std::vector<SymbolicHotKey>> copySymbolicHotKeys() override;
    void releaseKeyboard() override;
    void releaseKeyboardAfter(std::uint32_t closing) override;

private:
    using Task = std::function<void()>;
    /// The end of the road on the main thread; events find it gone when the backend is.
    struct Receiver {
        X11HotKeyBackend& backend;
        EventHandler handler;
    };

    X11HotKeyBackend(std::unique_ptr<X11HotKeyConnection> server, int wakeDescriptor,
                     MainThreadExecutor executor);

    void readConnection();
    void waitForWork();
    void runTasks();
    void post(Task task);
    void postAndWait(const Task& task);
    void wake() const;
    void deliver(const HotKeyEvent& event, std::uint64_t pressNumber);

    std::unique_ptr<X11HotKeyConnection> connection; ///< Of the thread alone, once it runs.
    const int wakeEvent;
    const MainThreadExecutor runOnMainThread;
    std::shared_ptr<Receiver> receiver;
    std::atomic<std::uint64_t> lastPress = 0; ///< Told the handler; the connection's number.

    std::mutex taskMutex;
    std::deque<Task> tasks;
    std::atomic<bool> isStopping = false;
    std::thread thread;
};

} // namespace vellumry::hotkey
