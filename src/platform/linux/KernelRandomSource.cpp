#include "platform/linux/KernelRandomSource.h"

#include <cerrno>
#include <cstring>
#include <sys/random.h>
#include <system_error>

namespace vellumry {

RandomWord::~RandomWord()
{
    explicit_bzero(&value, sizeof value);
}

RandomSource& RandomSource::system()
{
    static KernelRandomSource source;
    return source;
}

KernelRandomSource::KernelRandomSource() : KernelRandomSource(&::getrandom) {}

void KernelRandomSource::fill(RandomWord& word)
{
    // A signal interrupts only the wait for the seed. So few bytes come whole or not at all.
    ssize_t count;
    do {
        count = getRandom(&word.value, sizeof word.value, 0);
    } while (count < 0 && errno == EINTR);
    if (count < 0)
        throw RandomSourceError(QString::fromStdString(std::system_category().message(errno)));
    if (count != sizeof word.value)
        throw RandomSourceError(QStringLiteral("too few of them"));
}

} // namespace vellumry
