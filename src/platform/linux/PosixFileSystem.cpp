#include "platform/linux/PosixFileSystem.h"

#include "core/Digest.h"

#include <QRandomGenerator>
#include <QStringBuilder>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <limits>
#include <linux/magic.h>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

/// Repeats a call that a signal broke off.
template <typename Call>
auto uninterrupted(Call call)
{
    decltype(call()) result = 0;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

[[noreturn]] void fail(const char* action, const QString& path, int errorNumber = errno)
{
    throw FileError(QLatin1StringView(action), path, errorNumber);
}

/// The path as the system wants it. A zero byte would silently cut it off.
QByteArray native(const QString& path)
{
    QByteArray bytes = path.toUtf8();
    if (bytes.contains('\0'))
        fail("use", QString(path).replace(QChar(u'\0'), QChar::ReplacementCharacter), EINVAL);
    return bytes;
}

QByteArray folderOf(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : path.left(std::max<qsizetype>(slash, 1));
}

/// A file may bear any time; one that a Date cannot hold becomes one near the end of what it can.
Date dateOf(const timespec& time)
{
    constexpr time_t farthest = 9'000'000'000;
    const time_t seconds = std::clamp(time.tv_sec, -farthest, farthest);
    return Date(std::chrono::seconds(seconds) + std::chrono::nanoseconds(time.tv_nsec));
}

FileStamp stampOf(const struct ::stat& status)
{
    return {status.st_dev, status.st_ino, status.st_size, dateOf(status.st_mtim),
            dateOf(status.st_ctim)};
}

/// The file that a chain of links ends at, there or not. The folders of the path are the system's
/// business.
QByteArray withoutLinks(const QString& path, QByteArray nativePath)
{
    constexpr int longestChain = 40;
    std::array<char, 4096> target{};
    for (int step = 0; step < longestChain; ++step) {
        const ssize_t length = ::readlink(nativePath.constData(), target.data(), target.size());
        if (length < 0 && (errno == EINVAL || errno == ENOENT))
            return nativePath;
        if (length < 0)
            fail("write", path);
        if (length == static_cast<ssize_t>(target.size()))
            fail("write", path, ENAMETOOLONG);
        const QByteArray next(target.data(), length);
        nativePath = next.startsWith('/') ? next : folderOf(nativePath) + '/' + next;
    }
    fail("write", path, ELOOP);
}

QString textOf(const fs::path& name)
{
    // A byte order mark at the beginning belongs to the name; the shorter ways drop it.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(name.native()));
}

bool saysUnsupported(int errorNumber)
{
    return errorNumber == EINVAL || errorNumber == ENOSYS || errorNumber == EOPNOTSUPP;
}

} // namespace

/// An open file, closed in the end.
class PosixFileSystem::Descriptor {
public:
    Descriptor(FileCalls& systemCalls, int openDescriptor)
        : calls(systemCalls), number(openDescriptor)
    {
    }
    ~Descriptor()
    {
        if (number >= 0)
            calls.close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool isOpen() const { return number >= 0; }
    [[nodiscard]] int get() const { return number; }

    /// False with errno set when the system tells a failure; closed in any case.
    bool close() { return calls.close(std::exchange(number, -1)) == 0 || errno == EINTR; }

private:
    FileCalls& calls;
    int number;
};

/// The new contents beside the old file, until they take its place. Removed if they never do.
class PosixFileSystem::TemporaryFile {
public:
    TemporaryFile(FileCalls& systemCalls, QByteArray pathInFolder, int openDescriptor)
        : calls(systemCalls), path(std::move(pathInFolder)),
          descriptor(systemCalls, openDescriptor), isThere(openDescriptor >= 0)
    {
    }
    ~TemporaryFile()
    {
        if (isThere && !isInPlace)
            calls.unlink(path.constData());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    static constexpr std::string_view digits = "0123456789abcdefghijklmnopqrstuvwxyz";
    static constexpr int digitCount = 13; // of 64 bits
    static constexpr const char* prefix = ".vellumry-";

    /// Whether create() can have made a file of this name.
    static bool isNameOfOne(std::string_view name)
    {
        if (!name.starts_with(prefix))
            return false;
        name.remove_prefix(std::string_view(prefix).size());
        return name.size() == digitCount &&
               name.find_first_not_of(digits) == std::string_view::npos;
    }

    /// Makes an empty file with a name of its own: hidden, short however long the target's name
    /// is, and without the extension by which folders are scanned.
    static TemporaryFile create(FileCalls& calls, const QByteArray& folder)
    {
        constexpr int attempts = 100;
        constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
        QByteArray path;
        int descriptor = -1;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            const QByteArray random =
                QByteArray::number(QRandomGenerator::global()->generate64(), digits.size());
            path = folder + '/' + prefix + random.rightJustified(digitCount, '0');
            descriptor = uninterrupted([&] {
                return calls.open(path.constData(),
                                  O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, ownerOnly);
            });
            if (descriptor >= 0 || errno != EEXIST)
                break;
        }
        return {calls, path, descriptor};
    }

    [[nodiscard]] bool isOpen() const { return descriptor.isOpen(); }
    [[nodiscard]] int get() const { return descriptor.get(); }

    /// False with errno set when not every byte could be written.
    bool write(QByteArrayView bytes)
    {
        while (!bytes.isEmpty()) {
            const ssize_t written = uninterrupted([&] {
                return calls.write(descriptor.get(), bytes.data(),
                                   static_cast<size_t>(bytes.size()));
            });
            if (written <= 0) {
                if (written == 0)
                    errno = EIO;
                return false;
            }
            bytes = bytes.sliced(written);
        }
        return true;
    }

    /// Gives the file the mode of another. A file system without modes is no failure.
    bool takeMode(mode_t mode)
    {
        struct ::stat status {};
        if (calls.fstat(descriptor.get(), &status) != 0)
            return false;
        if ((status.st_mode & ALLPERMS) == mode)
            return true;
        return uninterrupted([&] { return calls.fchmod(descriptor.get(), mode); }) == 0 ||
               errno == EPERM || saysUnsupported(errno);
    }

    /// Gives the file the modification time of another, where the file system has such times.
    void takeTime(const struct ::timespec& modified)
    {
        const struct ::timespec times[2] = {{0, UTIME_OMIT}, modified};
        (void)calls.futimens(descriptor.get(), times);
    }

    /// Lets the disk work while the program goes on; a later flush waits for it.
    void startFlush() { (void)calls.startFlush(descriptor.get()); }

    bool flush()
    {
        return uninterrupted([&] { return calls.fdatasync(descriptor.get()); }) == 0;
    }

    /// False with errno set when something could not be written: a file server tells it only here.
    bool close() { return descriptor.close(); }

    bool takePlaceOf(const QByteArray& target)
    {
        isInPlace =
            uninterrupted([&] { return calls.rename(path.constData(), target.constData()); }) == 0;
        return isInPlace;
    }

private:
    FileCalls& calls;
    QByteArray path;
    Descriptor descriptor;
    bool isThere;
    bool isInPlace = false;
};

/// Writes a file from pieces. The disk works on what has come while the source makes the rest.
class PosixFileSystem::BlockWriter {
public:
    /// `likelySize` in bytes, of what will come in all; 0 when that is not known. What will likely
    /// fill no block is written piece by piece.
    BlockWriter(TemporaryFile& target, qint64 likelySize) : file(target)
    {
        if (likelySize >= blockSize)
            block = std::make_unique_for_overwrite<char[]>(blockSize);
    }

    /// False with errno set when not every byte could be written.
    bool add(QByteArrayView piece)
    {
        if (!block)
            return pass(piece);
        while (!piece.isEmpty()) {
            const QByteArrayView part = piece.first(std::min(piece.size(), blockSize - filled));
            std::memcpy(block.get() + filled, part.data(), static_cast<size_t>(part.size()));
            filled += part.size();
            piece = piece.sliced(part.size());
            if (filled == blockSize && !writeOut())
                return false;
        }
        return true;
    }

    /// Writes what is still in the block. False as add() is.
    bool writeOut() { return pass({block.get(), std::exchange(filled, 0)}); }

private:
    /// The system's cache can keep such a block as one huge page: less memory to find piece by
    /// piece, and less to hand to the disk. Half a block gains nothing.
    static constexpr qsizetype blockSize = qsizetype{2} << 20;
    static constexpr qsizetype flushStep = qsizetype{1} << 20;

    bool pass(QByteArrayView bytes)
    {
        if (!file.write(bytes))
            return false;
        unflushed += bytes.size();
        if (unflushed >= flushStep) {
            file.startFlush();
            unflushed = 0;
        }
        return true;
    }

    TemporaryFile& file;
    std::unique_ptr<char[]> block;
    qsizetype filled = 0;
    qsizetype unflushed = 0;
};

QStringList PosixFileSystem::list(const QString& folder)
{
    QStringList names;
    std::error_code error;
    fs::directory_iterator entry(native(folder).toStdString(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        names.append(textOf(entry->path().filename()));
    if (error)
        fail("list", folder, error.value());
    return names;
}

bool PosixFileSystem::exists(const QString& path)
{
    return status(path).has_value();
}

bool PosixFileSystem::isFolder(const QString& path)
{
    const auto found = status(path);
    return found && S_ISDIR(found->st_mode);
}

bool PosixFileSystem::isWritable(const QString& path)
{
    return status(path) && ::access(native(path).constData(), W_OK) == 0;
}

bool PosixFileSystem::isSame(const QString& path, const QString& other)
{
    const auto one = status(path);
    const auto two = status(other);
    return one && two && one->st_dev == two->st_dev && one->st_ino == two->st_ino;
}

FileStamp PosixFileSystem::attributes(const QString& path)
{
    struct ::stat result {};
    if (calls.lstat(native(path).constData(), &result) != 0)
        fail("look at", path);
    return stampOf(result);
}

std::optional<FileStamp> PosixFileSystem::stamp(const QString& path)
{
    const auto found = status(path);
    if (!found || !S_ISREG(found->st_mode))
        return std::nullopt;
    return stampOf(*found);
}

std::optional<struct ::stat> PosixFileSystem::status(const QString& path)
{
    struct ::stat result {};
    if (path.contains(QChar(u'\0')) || calls.stat(native(path).constData(), &result) != 0)
        return std::nullopt;
    return result;
}

FileContents PosixFileSystem::read(const QString& path)
{
    return readUnchanged<FileContents>(path, largestFile, [&](int descriptor, FileContents& file) {
        file.bytes = PaddedBytes(static_cast<size_t>(file.stamp.size));
        return fill(descriptor, file.bytes.data(), file.bytes.size(), path) == file.bytes.size();
    });
}

FileDigest PosixFileSystem::digest(const QString& path)
{
    // A piece that stays in the processor's cache is read and digested several times as fast as
    // fresh memory for the whole file.
    const auto piece = std::make_unique_for_overwrite<char[]>(Digest::pieceSize);
    return readUnchanged<FileDigest>(path, largestFile, [&](int descriptor, FileDigest& file) {
        Digest digest;
        qint64 remaining = file.stamp.size;
        while (remaining > 0) {
            const qint64 count = std::min<qint64>(remaining, Digest::pieceSize);
            if (fill(descriptor, piece.get(), static_cast<size_t>(count), path) !=
                static_cast<size_t>(count))
                return false;
            digest.add({piece.get(), count});
            remaining -= count;
        }
        file.digest = digest.value();
        return true;
    });
}

/// Reads until no one changes the file meanwhile. `readBytes` gets the open file, with the stamp
/// filled in, and tells whether all of its bytes were there.
template <typename Result, typename ReadBytes>
Result PosixFileSystem::readUnchanged(const QString& path, qint64 largest, ReadBytes readBytes)
{
    constexpr int attempts = 3;
    const QByteArray nativePath = native(path);
    try {
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (auto result = readOnce<Result>(path, nativePath, largest, readBytes))
                return std::move(*result);
        }
    } catch (const std::bad_alloc&) {
        fail("read", path, ENOMEM);
    }
    throw FileError(QStringLiteral("read"), path, QStringLiteral("it keeps changing"));
}

/// Nothing when the file changed meanwhile.
template <typename Result, typename ReadBytes>
std::optional<Result> PosixFileSystem::readOnce(const QString& path, const QByteArray& nativePath,
                                                qint64 largest, ReadBytes readBytes)
{
    struct ::stat status {};
    const auto refuseUnlessRegular = [&] {
        if (S_ISDIR(status.st_mode))
            fail("read", path, EISDIR);
        if (!S_ISREG(status.st_mode))
            throw FileError(QStringLiteral("read"), path, QStringLiteral("not a regular file"));
        if (status.st_size > largest)
            throw FileError(QStringLiteral("read"), path, QStringLiteral("larger than 1 GiB"));
    };
    // Looked at before it is opened, since opening alone can set a device off.
    if (calls.stat(nativePath.constData(), &status) != 0)
        fail("read", path);
    refuseUnlessRegular();

    Result result;
    result.readAt = SystemClock::shared().now();
    const Descriptor file(calls, uninterrupted([&] {
                              return calls.open(nativePath.constData(),
                                                O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0);
                          }));
    if (!file.isOpen() || calls.fstat(file.get(), &status) != 0)
        fail("read", path);
    refuseUnlessRegular();
    result.stamp = stampOf(status);

    const bool isWhole = readBytes(file.get(), result);
    if (calls.fstat(file.get(), &status) != 0)
        fail("read", path);
    if (stampOf(status) != result.stamp || !isWhole)
        return std::nullopt;
    result.precision = precision(file.get(), result.stamp);
    return result;
}

/// Reads `count` bytes, or fewer at the end of the file, and returns how many.
size_t PosixFileSystem::fill(int descriptor, char* buffer, size_t count, const QString& path)
{
    size_t filled = 0;
    while (filled < count) {
        const ssize_t read =
            uninterrupted([&] { return calls.read(descriptor, buffer + filled, count - filled); });
        if (read < 0)
            fail("read", path);
        if (read == 0)
            break;
        filled += static_cast<size_t>(read);
    }
    return filled;
}

StampPrecision PosixFileSystem::precision(int descriptor, const FileStamp& stamp)
{
    constexpr StampPrecision fine{10ms, true};
    constexpr StampPrecision coarse{3s, true};
    constexpr StampPrecision foreign{3s, false};
    struct ::statfs system {};
    if (calls.fstatfs(descriptor, &system) != 0)
        return foreign;
    // Some older file systems share a magic number with a newer one and keep whole seconds only.
    const bool keepsFractions = stamp.changed.time_since_epoch() % 1s != 0ns;
    constexpr decltype(system.f_type) xfs = 0x58465342;
    constexpr decltype(system.f_type) exfat = 0x2011BAB0;
    switch (system.f_type) {
    case EXT4_SUPER_MAGIC:
    case xfs:
    case BTRFS_SUPER_MAGIC:
    case TMPFS_MAGIC:
        return keepsFractions ? fine : coarse;
    case OVERLAYFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case MSDOS_SUPER_MAGIC:
    case exfat:
        return coarse;
    default:
        return foreign;
    }
}

std::optional<FileStamp> PosixFileSystem::write(const QString& path, const ByteSource& source)
{
    const QByteArray target = withoutLinks(path, native(path));
    const QByteArray folder = folderOf(target);
    struct ::stat status {};
    const bool isNew = calls.stat(target.constData(), &status) != 0;
    if (isNew && errno != ENOENT)
        fail("write", path);
    if (!isNew && !S_ISREG(status.st_mode))
        throw FileError(QStringLiteral("write"), path, QStringLiteral("not a regular file"));

    TemporaryFile file = TemporaryFile::create(calls, folder);
    if (!file.isOpen())
        fail("write", path);
    BlockWriter writer(file, isNew ? 0 : status.st_size);
    source([&](QByteArrayView piece) {
        if (!writer.add(piece))
            fail("write", path);
    });
    if (!writer.writeOut())
        fail("write", path);
    if ((!isNew && !file.takeMode(status.st_mode & ALLPERMS)) || !file.flush() ||
        !file.takePlaceOf(target))
        fail("write", path);

    // Compared while the file is still open, so that its inode number cannot belong to another.
    struct ::stat inPlace {};
    const bool isOurs = calls.fstat(file.get(), &status) == 0 &&
                        calls.stat(target.constData(), &inPlace) == 0 &&
                        stampOf(status) == stampOf(inPlace);
    flushFolder(path, folder);
    return isOurs ? std::optional(stampOf(inPlace)) : std::nullopt;
}

/// Makes the names in a folder survive a power cut, where the file system knows how.
void PosixFileSystem::flushFolder(const QString& path, const QByteArray& nativePath)
{
    const Descriptor folder(calls, uninterrupted([&] {
                                return calls.open(nativePath.constData(),
                                                  O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
                            }));
    if (!folder.isOpen()) {
        // A folder may be open for writing and not for reading; then there is nothing to flush.
        if (errno == EACCES)
            return;
        fail("flush the folder of", path);
    }
    if (uninterrupted([&] { return calls.fsync(folder.get()); }) != 0 && !saysUnsupported(errno))
        fail("flush the folder of", path);
}

void PosixFileSystem::copy(const QString& from, const QString& to)
{
    constexpr qint64 anySize = std::numeric_limits<qint64>::max();
    const QByteArray target = native(to);
    std::unique_ptr<TemporaryFile> file;
    struct ::stat status {};
    (void)readUnchanged<FileReading>(from, anySize, [&](int source, const FileReading& reading) {
        // NOLINTNEXTLINE(modernize-make-unique): it cannot be moved, only made in its place
        file.reset(new TemporaryFile(TemporaryFile::create(calls, folderOf(target))));
        if (!file->isOpen())
            fail("copy to", to);
        if (calls.fstat(source, &status) != 0)
            fail("copy", from);
        return copyBytes(source, *file, reading.stamp.size, from, to);
    });

    file->startFlush();
    file->takeTime(status.st_mtim);
    struct ::stat replaced {};
    const bool isNew = calls.lstat(target.constData(), &replaced) != 0 && errno == ENOENT;
    if (!file->takeMode(status.st_mode & ALLPERMS) || (!isNew && !file->flush()) ||
        !file->close() || !file->takePlaceOf(target))
        fail("copy to", to);
}

/// Copies `count` bytes from where the file stands. False when it has fewer.
bool PosixFileSystem::copyBytes(int source, TemporaryFile& file, qint64 count, const QString& from,
                                const QString& to)
{
    // The system copies without a detour, or shares the blocks, where the file systems can.
    while (count > 0) {
        const ssize_t copied = uninterrupted(
            [&] { return calls.copyFileRange(source, file.get(), static_cast<size_t>(count)); });
        if (copied < 0 && errno != EXDEV && errno != EPERM && !saysUnsupported(errno))
            fail("copy to", to);
        if (copied <= 0)
            break;
        count -= copied;
    }
    if (count == 0)
        return true;
    constexpr qint64 pieceSize = qint64{1} << 18;
    const auto piece = std::make_unique_for_overwrite<char[]>(pieceSize);
    while (count > 0) {
        const auto wanted = static_cast<size_t>(std::min(count, pieceSize));
        const size_t read = fill(source, piece.get(), wanted, from);
        if (!file.write({piece.get(), static_cast<qsizetype>(read)}))
            fail("copy to", to);
        if (read < wanted)
            return false;
        count -= static_cast<qint64>(read);
    }
    return true;
}

void PosixFileSystem::flush(const QString& folder)
{
    Descriptor descriptor(calls, uninterrupted([&] {
                              return calls.open(native(folder).constData(),
                                                O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
                          }));
    // Its whole file system at once: one flush for each file takes several times as long.
    if (!descriptor.isOpen() || uninterrupted([&] { return calls.syncfs(descriptor.get()); }) != 0)
        fail("flush", folder);
}

void PosixFileSystem::move(const QString& from, const QString& to)
{
    const QByteArray source = native(from);
    const QByteArray target = native(to);
    const bool isMoved =
        calls.renameWithoutReplacing(source.constData(), target.constData()) == 0 ||
        (saysUnsupported(errno) && moveInSteps(source, target));
    if (!isMoved)
        fail("move", from);
    flushFolder(to, folderOf(target));
}

/// For file systems without a move that refuses to overwrite. False with errno set on failure.
bool PosixFileSystem::moveInSteps(const QByteArray& source, const QByteArray& target)
{
    // A second name is refused as well where there is a file of that name.
    if (calls.link(source.constData(), target.constData()) == 0) {
        if (calls.unlink(source.constData()) == 0)
            return true;
        const int reason = errno;
        calls.unlink(target.constData());
        errno = reason;
        return false;
    }
    if (errno != EPERM && !saysUnsupported(errno))
        return false;
    std::error_code error;
    if (fs::exists(fs::symlink_status(target.toStdString(), error))) {
        errno = EEXIST;
        return false;
    }
    return calls.rename(source.constData(), target.constData()) == 0;
}

void PosixFileSystem::remove(const QString& path)
{
    if (calls.unlink(native(path).constData()) != 0)
        fail("remove", path);
}

void PosixFileSystem::removeAll(const QString& path)
{
    struct ::stat status {};
    const QByteArray nativePath = native(path);
    if (calls.lstat(nativePath.constData(), &status) != 0)
        fail("remove", path);
    if (!S_ISDIR(status.st_mode))
        return remove(path);
    std::error_code error;
    fs::remove_all(nativePath.toStdString(), error);
    if (error)
        fail("remove", path, error.value());
}

void PosixFileSystem::removeEmptyFolder(const QString& path)
{
    if (calls.rmdir(native(path).constData()) != 0)
        fail("remove", path);
}

void PosixFileSystem::createFolders(const QString& path)
{
    std::error_code error;
    fs::create_directories(native(path).toStdString(), error);
    if (error)
        fail("create", path, error.value());
}

void PosixFileSystem::removeLeftovers(const QString& folder, Date before)
{
    std::error_code error;
    fs::directory_iterator entry(native(folder).toStdString(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().native();
        struct ::stat status {};
        if (!TemporaryFile::isNameOfOne(name) || calls.lstat(entry->path().c_str(), &status) != 0 ||
            !S_ISREG(status.st_mode))
            continue;
        // A copy that is under way may already bear the modification time of its original.
        if (std::max(dateOf(status.st_mtim), dateOf(status.st_ctim)) < before)
            (void)calls.unlink(entry->path().c_str());
    }
}

FileSystem& FileSystem::local()
{
    static FileCalls calls;
    static PosixFileSystem files(calls);
    return files;
}

} // namespace vellumry
