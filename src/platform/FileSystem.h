#pragma once

#include "core/ByteSink.h"
#include "core/Date.h"
#include "core/PaddedBytes.h"

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <chrono>
#include <exception>
#include <optional>

namespace vellumry {

/// A file operation that failed.
class FileError : public std::exception {
public:
    /// `action` in words, such as "open"; `cause` in the words of the system.
    FileError(const QString& action, const QString& path, const QString& cause);
    /// The cause is an error number of the system.
    FileError(const QString& action, const QString& path, int errorNumber);

    /// What failed, where and why.
    [[nodiscard]] const QString& description() const { return words; }
    [[nodiscard]] const char* what() const noexcept override;

private:
    QString words;
    QByteArray bytes;
};

/// What tells one state of a file from another without opening it. The change time belongs to it:
/// tools that copy files restore the modification time, and inode numbers come back.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    Date modified{};
    Date changed{};

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// How far the times of a stamp can be trusted.
struct StampPrecision {
    /// Two changes of a file that lie further apart than this have different times.
    std::chrono::nanoseconds slack{};
    /// Whether the times come from the clock of this machine; those of a file server may not.
    bool followsMachineClock = false;
};

/// The state of a file while it was read.
struct FileReading {
    FileStamp stamp; ///< the same before and after the reading
    StampPrecision precision;
    Date readAt{}; ///< the machine's time just before the reading
};

/// A file that was read whole.
struct FileContents : FileReading {
    PaddedBytes bytes;
};

/// A file that was read in passing.
struct FileDigest : FileReading {
    quint64 digest = 0; ///< Digest::of its bytes
};

/// Files and folders, as the storage needs them. Paths are absolute. Every operation that says so
/// throws FileError and leaves nothing half done. Safe to use from any thread.
class FileSystem {
public:
    /// Files beyond this size are refused before they are read, in bytes.
    static constexpr qint64 largestFile = qint64{1} << 30;

    virtual ~FileSystem() = default;

    /// The names in the folder, hidden ones included, in the order in which the system tells
    /// them. Throws.
    [[nodiscard]] virtual QStringList list(const QString& folder) = 0;

    /// Whether something is there; a link counts as what it leads to.
    [[nodiscard]] virtual bool exists(const QString& path) = 0;
    [[nodiscard]] virtual bool isFolder(const QString& path) = 0;

    /// Whether the running user may write to the file or folder.
    [[nodiscard]] virtual bool isWritable(const QString& path) = 0;

    /// Whether both paths lead to one and the same file or folder, by whatever names and links.
    /// False when one of them leads nowhere.
    [[nodiscard]] virtual bool isSame(const QString& path, const QString& other) = 0;

    /// The stamp of a regular file or of one that a link leads to; nothing for anything else.
    [[nodiscard]] virtual std::optional<FileStamp> stamp(const QString& path) = 0;

    /// The stamp of whatever stands at the path, which is not opened; of a link its own. Throws.
    [[nodiscard]] virtual FileStamp attributes(const QString& path) = 0;

    /// Reads a regular file whole; never waits for one that is a pipe or a device. Throws, also
    /// when the file keeps changing meanwhile.
    [[nodiscard]] virtual FileContents read(const QString& path) = 0;

    /// Reads a file as `read` does and keeps only the digest of its bytes. Throws.
    [[nodiscard]] virtual FileDigest digest(const QString& path) = 0;

    /// Replaces the file's contents in one step that survives a crash: at any time there is the
    /// old file or the new one, whole. An existing file keeps its mode, a new one is for its owner
    /// alone; a link stays, and the file it leads to is written. Returns the stamp of what was
    /// written, or nothing when another file has taken its place at once. Throws; the old file is
    /// then as it was, unless it was the last step that failed, the flush of the folder. What the
    /// source throws ends the operation in the same way.
    virtual std::optional<FileStamp> write(const QString& path, const ByteSource& source) = 0;
    std::optional<FileStamp> write(const QString& path, QByteArrayView bytes);

    /// Makes a regular file at `to` with the contents, the mode and the modification time of the
    /// one at `from`, of whatever size; never waits for one that is a pipe or a device. A link at
    /// `from` gives the file that it leads to. What stands at `to` is replaced in one step: a link
    /// itself, not what it leads to; a folder not at all. A file that replaces another is on the
    /// disk before it does; a new one needs flush() to survive a crash. Throws; what stood at
    /// `to` is then as it was.
    virtual void copy(const QString& from, const QString& to) = 0;

    /// Makes everything that was copied into the folder survive a crash; much cheaper once than
    /// after each file. Throws when a part of it could not be written to the disk.
    virtual void flush(const QString& folder) = 0;

    /// Moves a file, never onto another: fails when there is one at `to`, even the same. Throws.
    virtual void move(const QString& from, const QString& to) = 0;

    /// Removes a file, never a folder. Throws.
    virtual void remove(const QString& path) = 0;

    /// Removes a file, a link, or a folder with everything in it; links are removed, never
    /// followed. Throws, and may have removed a part of a folder by then.
    virtual void removeAll(const QString& path) = 0;

    /// Removes a folder that is empty. Throws.
    virtual void removeEmptyFolder(const QString& path) = 0;

    /// Creates a folder with those above it; an existing one is no failure. Throws.
    virtual void createFolders(const QString& path) = 0;

    /// Removes what write() and copy() have left in the folder when their process was killed: their
    /// own temporary files, regular ones, that nobody has touched since `before`. Whatever cannot
    /// be removed stays.
    virtual void removeLeftovers(const QString& folder, Date before) = 0;

    /// The files of this machine.
    [[nodiscard]] static FileSystem& local();
};

} // namespace vellumry
