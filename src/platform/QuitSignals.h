#pragma once

#include <functional>
#include <memory>

namespace vellumry {

/// Turns the system's requests to end the process (SIGTERM, SIGINT, SIGHUP) into a call on the
/// main thread for as long as the object lives, but for those that the process was started to
/// ignore. One at a time.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> onQuit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace vellumry
