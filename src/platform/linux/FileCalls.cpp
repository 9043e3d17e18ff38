#include "platform/linux/FileCalls.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace vellumry {

int FileCalls::open(const char* path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

int FileCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int FileCalls::fstat(int descriptor, struct ::stat* result)
{
    return ::fstat(descriptor, result);
}

int FileCalls::stat(const char* path, struct ::stat* result)
{
    return ::stat(path, result);
}

int FileCalls::lstat(const char* path, struct ::stat* result)
{
    return ::lstat(path, result);
}

int FileCalls::fstatfs(int descriptor, struct ::statfs* result)
{
    return ::fstatfs(descriptor, result);
}

ssize_t FileCalls::read(int descriptor, void* buffer, size_t count)
{
    return ::read(descriptor, buffer, count);
}

ssize_t FileCalls::write(int descriptor, const void* buffer, size_t count)
{
    return ::write(descriptor, buffer, count);
}

ssize_t FileCalls::copyFileRange(int from, int to, size_t count)
{
    return ::copy_file_range(from, nullptr, to, nullptr, count, 0);
}

int FileCalls::startFlush(int descriptor)
{
    return ::sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
}

int FileCalls::fchmod(int descriptor, mode_t mode)
{
    return ::fchmod(descriptor, mode);
}

int FileCalls::futimens(int descriptor, const struct ::timespec times[2])
{
    return ::futimens(descriptor, times);
}

int FileCalls::fdatasync(int descriptor)
{
    return ::fdatasync(descriptor);
}

int FileCalls::fsync(int descriptor)
{
    return ::fsync(descriptor);
}

int FileCalls::syncfs(int descriptor)
{
    return ::syncfs(descriptor);
}

int FileCalls::rename(const char* from, const char* to)
{
    return ::rename(from, to);
}

int FileCalls::renameWithoutReplacing(const char* from, const char* to)
{
    return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

int FileCalls::link(const char* from, const char* to)
{
    return ::link(from, to);
}

int FileCalls::unlink(const char* path)
{
    return ::unlink(path);
}

int FileCalls::rmdir(const char* path)
{
    return ::rmdir(path);
}

} // namespace vellumry
