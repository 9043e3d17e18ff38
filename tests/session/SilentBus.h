#pragma once

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellumry::test {

/// A bus where nobody ever looks at who calls.
class SilentBus {
public:
    /// `name` is what the kernel calls the socket.
    explicit SilentBus(const QByteArray& name)
        : descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un place = {};
        place.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), place.sun_path);
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
        isListening = bind(descriptor, reinterpret_cast<const sockaddr*>(&place), length) == 0 &&
                      listen(descriptor, waitingRoom) == 0;
    }
    ~SilentBus() { close(descriptor); }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

    bool isListening = false;

private:
    static constexpr int waitingRoom = 1;
    int descriptor;
};

} // namespace vellumry::test
