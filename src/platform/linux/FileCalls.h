#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

namespace vellumry {

/// The system calls that reading and writing a file consist of, each as its manual page tells it:
/// a negative result and errno on failure. Tests put failures in their place.
class FileCalls {
public:
    virtual ~FileCalls() = default;

    virtual int open(const char* path, int flags, mode_t mode);
    virtual int close(int descriptor);
    virtual int fstat(int descriptor, struct ::stat* result);
    virtual int stat(const char* path, struct ::stat* result);
    virtual int lstat(const char* path, struct ::stat* result);
    virtual int fstatfs(int descriptor, struct ::statfs* result);
    virtual ssize_t read(int descriptor, void* buffer, size_t count);
    virtual ssize_t write(int descriptor, const void* buffer, size_t count);
    /// copy_file_range from and to where the descriptors stand.
    virtual ssize_t copyFileRange(int from, int to, size_t count);
    /// sync_file_range of the whole file, which starts to write it to the disk and waits for
    /// nothing.
    virtual int startFlush(int descriptor);
    virtual int fchmod(int descriptor, mode_t mode);
    virtual int futimens(int descriptor, const struct ::timespec times[2]);
    virtual int fdatasync(int descriptor);
    virtual int fsync(int descriptor);
    virtual int syncfs(int descriptor);
    virtual int rename(const char* from, const char* to);
    /// renameat2 with RENAME_NOREPLACE.
    virtual int renameWithoutReplacing(const char* from, const char* to);
    virtual int link(const char* from, const char* to);
    virtual int unlink(const char* path);
    virtual int rmdir(const char* path);
};

} // namespace vellumry
