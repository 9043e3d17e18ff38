#include "platform/QuitSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace vellumry {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

/// What the signal handler may reach: it only wakes the event loop.
volatile sig_atomic_t wakeDescriptor = -1;

void wakeEventLoop(int)
{
    const int savedError = errno;
    const uint64_t one = 1;
    // A full counter means that the loop is about to wake anyway.
    [[maybe_unused]] const ssize_t written = write(wakeDescriptor, &one, sizeof one);
    errno = savedError;
}

/// Leaves a signal alone that is ignored, as SIGHUP is under nohup: who started the program wants
/// it to stay.
void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handledSignals) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

struct QuitSignals::State {
    int descriptor;
    QSocketNotifier notifier;

    explicit State(int wake) : descriptor(wake), notifier(wake, QSocketNotifier::Read) {}
};

QuitSignals::QuitSignals(std::function<void()> onQuit)
    : state(std::make_unique<State>(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)))
{
    // Without a descriptor the signals keep what they do by default: they end the process.
    if (state->descriptor < 0)
        return;
    QObject::connect(&state->notifier, &QSocketNotifier::activated, &state->notifier,
                     [descriptor = state->descriptor, quit = std::move(onQuit)] {
                         uint64_t count = 0;
                         if (read(descriptor, &count, sizeof count) == sizeof count)
                             quit();
                     });
    wakeDescriptor = state->descriptor;
    setHandler(wakeEventLoop);
}

QuitSignals::~QuitSignals()
{
    if (state->descriptor < 0)
        return;
    setHandler(SIG_DFL);
    wakeDescriptor = -1;
    state->notifier.setEnabled(false);
    close(state->descriptor);
}

} // namespace vellumry
