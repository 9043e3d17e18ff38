#pragma once

#include "platform/linux/FileCalls.h"

#include <QByteArray>
#include <QByteArrayList>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <ostream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace vellumry::test {

// What may stand in a data folder on a real disk, and what tests need to see that it stays.

/// The real calls without the waiting for the disk. Files named here may not be opened.
class QuickFileCalls final : public FileCalls {
public:
    QByteArrayList forbidden;

    int open(const char* path, int flags, mode_t mode) override
    {
        for (const QByteArray& name : forbidden) {
            if (QByteArrayView(path).endsWith("/" + name)) {
                errno = EACCES;
                return -1;
            }
        }
        return FileCalls::open(path, flags, mode);
    }
    /// What is too large to be anything but a hole stays one, as where file systems share blocks.
    ssize_t copyFileRange(int from, int to, size_t count) override
    {
        if (count < size_t{1} << 30)
            return FileCalls::copyFileRange(from, to, count);
        return ::ftruncate(to, static_cast<off_t>(count)) == 0 ? static_cast<ssize_t>(count) : -1;
    }
    int startFlush(int) override { return 0; }
    int fdatasync(int) override { return 0; }
    int fsync(int) override { return 0; }
    int syncfs(int) override { return 0; }
};

inline void putFile(const std::filesystem::path& path, const QByteArray& bytes)
{
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.constData(), bytes.size());
    ASSERT_TRUE(file.good()) << path;
}

inline QByteArray bytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

/// Everything below a folder: what it is, and what is in it.
using FolderContents = std::map<std::string, QByteArray>;

inline FolderContents contentsOf(const std::filesystem::path& folder)
{
    FolderContents contents;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        QByteArray& text = contents[entry.path().lexically_relative(folder).native()];
        text = QByteArray::number(static_cast<int>(entry.symlink_status().type())) + ' ';
        if (entry.is_symlink())
            text += QByteArray::fromStdString(std::filesystem::read_symlink(entry.path()).native());
        else if (entry.is_regular_file() && entry.file_size() > 100'000'000)
            text += QByteArray::number(static_cast<qint64>(entry.file_size()));
        else if (entry.is_regular_file())
            text += bytesOf(entry.path());
    }
    return contents;
}

inline void makeSocket(const std::filesystem::path& path)
{
    namespace fs = std::filesystem;
    // The path of a socket is short; the folder's is not.
    const fs::path shortPath = fs::path("/tmp") / ("v-" + std::to_string(::getpid()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ::sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy_n(shortPath.c_str(), shortPath.native().size() + 1, address.sun_path);
    ASSERT_EQ(::bind(socket, reinterpret_cast<::sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    std::error_code error;
    fs::rename(shortPath, path, error);
    if (error) { // another file system
        fs::remove(shortPath);
        ASSERT_EQ(::mknod(path.c_str(), S_IFSOCK | 0600, 0), 0);
    }
}

/// Something that no library puts where a file is expected.
struct OddEntry {
    const char* what;
    std::function<void(const std::filesystem::path& path)> make;
    /// Whether somebody could take it for a file that is missing.
    bool leadsNowhere = false;
    /// Whether it is a file after all, which is too large to be read.
    bool isLarge = false;
};

inline void PrintTo(const OddEntry& entry, std::ostream* out)
{
    *out << entry.what;
}

inline const std::vector<OddEntry>& oddEntries()
{
    namespace fs = std::filesystem;
    static const std::vector<OddEntry> entries{
        {"a folder", [](const fs::path& path) { fs::create_directory(path); }},
        {"a folder with a file",
         [](const fs::path& path) {
             fs::create_directory(path);
             std::ofstream(path / "inner.json") << "{}";
         }},
        {"a socket", makeSocket},
        {"a pipe", [](const fs::path& path) { ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); }},
        {"a link to itself",
         [](const fs::path& path) { fs::create_symlink(path.filename(), path); }, true},
        {"a loop of links",
         [](const fs::path& path) {
             const fs::path other = path.parent_path() / "loop";
             fs::create_symlink(path, other);
             fs::create_symlink(other, path);
         },
         true},
        {"a link to nothing", [](const fs::path& path) { fs::create_symlink("nowhere", path); },
         true},
        {"a link to a device", [](const fs::path& path) { fs::create_symlink("/dev/zero", path); }},
        {"a link to a folder",
         [](const fs::path& path) { fs::create_directory_symlink("/usr", path); }},
        {"two gigabytes of nothing",
         [](const fs::path& path) {
             std::ofstream(path).put('{');
             fs::resize_file(path, std::uintmax_t{2} << 30);
         },
         false, true},
    };
    return entries;
}

} // namespace vellumry::test
