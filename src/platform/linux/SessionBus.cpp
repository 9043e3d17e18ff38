#include "platform/linux/SessionBus.h"

#include "core/Log.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFile>
#include <QString>

#include <cerrno>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellumry {

namespace {

constexpr char addressVariable[] = "DBUS_SESSION_BUS_ADDRESS";

QByteArray addressOfUserBus()
{
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? QByteArray() : folder + "/bus";
}

/// The name of the socket of one address, as the kernel takes it, which for an abstract one begins
/// with a zero. Nothing for another kind of address.
std::optional<QByteArray> socketName(const QByteArray& address)
{
    if (!address.startsWith("unix:"))
        return std::nullopt;
    for (const QByteArray& part : address.sliced(5).split(',')) {
        const QByteArray value =
            QByteArray::fromPercentEncoding(part.sliced(part.indexOf('=') + 1));
        if (part.startsWith("path="))
            return value;
        if (part.startsWith("abstract="))
            return '\0' + value;
    }
    return std::nullopt;
}

class Descriptor {
public:
    explicit Descriptor(int number) : descriptor(number) {}
    ~Descriptor()
    {
        if (descriptor >= 0)
            close(descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int number() const { return descriptor; }

private:
    int descriptor;
};

enum class Answer { nobody, silence, some };

/// What comes back to the beginning of the handshake, which every bus answers, if only with a no.
Answer callBus(const QByteArray& name, std::chrono::milliseconds patience)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<size_t>(name.size()) >= sizeof address.sun_path)
        return Answer::nobody;
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    const auto length =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(name.size()));

    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (connect(socket.number(), reinterpret_cast<const sockaddr*>(&address), length) != 0) {
        // So many wait to be let in that there is no room for another.
        return errno == EAGAIN ? Answer::silence : Answer::nobody;
    }
    const QByteArray greeting =
        '\0' + ("AUTH EXTERNAL " + QByteArray::number(getuid()).toHex() + "\r\n");
    if (send(socket.number(), greeting.constData(), static_cast<size_t>(greeting.size()),
             MSG_NOSIGNAL) != greeting.size())
        return Answer::nobody;
    const QDeadlineTimer deadline(patience);
    pollfd ready{socket.number(), POLLIN, 0};
    int result = 0;
    do
        result = poll(&ready, 1, static_cast<int>(deadline.remainingTime()));
    while (result < 0 && errno == EINTR);
    return result > 0 ? Answer::some : Answer::silence;
}

} // namespace

bool hasSessionBus()
{
    if (!qEnvironmentVariableIsEmpty(addressVariable))
        return true;
    const QByteArray path = addressOfUserBus();
    return !path.isEmpty() && QFile::exists(QFile::decodeName(path));
}

void avoidSilentSessionBus(std::chrono::milliseconds patience)
{
    const QByteArray addresses = qgetenv(addressVariable);
    QList<QByteArray> names;
    if (addresses.isEmpty())
        names.append(addressOfUserBus());
    for (const QByteArray& address : addresses.split(';')) {
        if (const auto name = socketName(address))
            names.append(*name);
    }
    for (const QByteArray& name : names) {
        const Answer answer = name.isEmpty() ? Answer::nobody : callBus(name, patience);
        // The first one that takes the connection is the one that counts.
        if (answer == Answer::some)
            return;
        if (answer == Answer::silence) {
            qputenv(addressVariable, "silent:");
            log(u"SessionBus",
                u"the session bus takes connections but does not answer, so Vellumry "
                u"does without it");
            return;
        }
    }
}

} // namespace vellumry
