#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

namespace vellumry {

/// The system calls that watching a folder consists of, each as its manual page tells it: a
/// negative result and errno on failure. Tests put other answers in their place.
class InotifyCalls {
public:
    virtual ~InotifyCalls() = default;

    /// inotify_init1, neither blocking nor inherited.
    virtual int open();
    virtual int close(int descriptor);
    virtual int addWatch(int descriptor, const char* path, uint32_t mask);
    virtual int removeWatch(int descriptor, int watch);
    virtual ssize_t read(int descriptor, void* buffer, size_t count);
    virtual int stat(const char* path, struct ::stat* result);
    virtual int statfs(const char* path, struct ::statfs* result);
    virtual ssize_t readLink(const char* path, char* buffer, size_t count);
    /// Opens the table of this process's mounts for reading; not inherited.
    virtual int openMountTable();
};

} // namespace vellumry
