#include "platform/linux/InotifyCalls.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace vellumry {

int InotifyCalls::open()
{
    return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

int InotifyCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int InotifyCalls::addWatch(int descriptor, const char* path, uint32_t mask)
{
    return ::inotify_add_watch(descriptor, path, mask);
}

int InotifyCalls::removeWatch(int descriptor, int watch)
{
    return ::inotify_rm_watch(descriptor, watch);
}

ssize_t InotifyCalls::read(int descriptor, void* buffer, size_t count)
{
    return ::read(descriptor, buffer, count);
}

int InotifyCalls::stat(const char* path, struct ::stat* result)
{
    return ::stat(path, result);
}

int InotifyCalls::statfs(const char* path, struct ::statfs* result)
{
    return ::statfs(path, result);
}

ssize_t InotifyCalls::readLink(const char* path, char* buffer, size_t count)
{
    return ::readlink(path, buffer, count);
}

int InotifyCalls::openMountTable()
{
    return ::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
}

} // namespace vellumry
