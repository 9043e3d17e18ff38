#pragma once

#include "core/Digest.h"
#include "platform/FileSystem.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <optional>
#include <utility>

namespace vellumry::test {

/// Files that live in memory, below folders that exist as soon as they are created. Their times
/// come in ticks, and inode numbers are given anew at once, as on a real disk at its worst.
class MemoryFileSystem final : public FileSystem {
public:
    struct Node {
        QByteArray bytes;
        quint64 inode = 0;
        Date modified{};
        Date changed{};
        bool isReadable = true;
        bool isFolder = false;
    };

    Date now = Date(std::chrono::seconds(1'770'000'000));
    std::chrono::nanoseconds tick{std::chrono::milliseconds(4)};
    StampPrecision precision{std::chrono::milliseconds(10), true};
    /// How far the clock of the file system is behind that of the machine.
    std::chrono::nanoseconds lag{};

    /// Called with the name of each operation ("list", "attributes", "read", "write", "copy",
    /// "flush", "move", "remove", "removeAll", "removeEmptyFolder", "createFolders") and its path
    /// before it is done; may throw FileError in its place.
    std::function<void(const QString& operation, const QString& path)> onOperation;
    /// Called when write() has made a file: what another program does at once.
    std::function<void(const QString& path)> onWritten;
    /// The files that were opened for reading.
    QStringList opened;
    /// The files that were written by write().
    QStringList written;
    /// The folders in which leftovers were removed, and from before when.
    QList<std::pair<QString, Date>> tidied;
    /// Where exists() and isFolder() have looked.
    QStringList lookedAt;

    [[nodiscard]] static FileError error(const QString& operation, const QString& path, int number)
    {
        return {operation, path, number};
    }

    [[nodiscard]] QStringList list(const QString& folder) override
    {
        begin(QStringLiteral("list"), folder);
        if (!isFolder(folder))
            throw error(QStringLiteral("list"), folder, ENOENT);
        QStringList found;
        for (const QString& path : std::as_const(order)) {
            if (path.startsWith(folder + u'/') && !path.sliced(folder.size() + 1).contains(u'/'))
                found.append(path.sliced(folder.size() + 1));
        }
        return found;
    }

    [[nodiscard]] bool exists(const QString& path) override
    {
        lookedAt.append(path);
        return nodes.contains(path);
    }
    [[nodiscard]] bool isFolder(const QString& path) override
    {
        lookedAt.append(path);
        return nodes.value(path).isFolder;
    }
    [[nodiscard]] bool isWritable(const QString& path) override { return exists(path); }

    [[nodiscard]] bool isSame(const QString& path, const QString& other) override
    {
        return exists(path) && nodes.value(path).inode == nodes.value(other).inode;
    }

    [[nodiscard]] std::optional<FileStamp> stamp(const QString& path) override
    {
        const auto node = nodes.constFind(path);
        if (node == nodes.cend() || node->isFolder)
            return std::nullopt;
        return stampOf(*node);
    }

    [[nodiscard]] FileStamp attributes(const QString& path) override
    {
        begin(QStringLiteral("attributes"), path);
        if (!exists(path))
            throw error(QStringLiteral("look at"), path, ENOENT);
        return stampOf(nodes.value(path));
    }

    [[nodiscard]] FileContents read(const QString& path) override
    {
        begin(QStringLiteral("read"), path);
        const auto node = nodes.constFind(path);
        if (node == nodes.cend())
            throw error(QStringLiteral("read"), path, ENOENT);
        if (node->isFolder)
            throw error(QStringLiteral("read"), path, EISDIR);
        opened.append(path);
        if (!node->isReadable)
            throw error(QStringLiteral("read"), path, EACCES);
        return {{stampOf(*node), precision, now + lag}, PaddedBytes(node->bytes)};
    }

    [[nodiscard]] FileDigest digest(const QString& path) override
    {
        const FileContents contents = read(path);
        const FileReading& reading = contents;
        return {reading, Digest::of(contents.bytes.view())};
    }

    using FileSystem::write;
    std::optional<FileStamp> write(const QString& path, const ByteSource& source) override
    {
        begin(QStringLiteral("write"), path);
        if (isFolder(path))
            throw error(QStringLiteral("write"), path, EISDIR);
        QByteArray bytes;
        source([&bytes](QByteArrayView piece) { bytes.append(piece); });
        written.append(path);
        replace(path, bytes);
        const std::optional<FileStamp> made = stamp(path);
        if (onWritten)
            onWritten(path);
        return stamp(path) == made ? made : std::nullopt;
    }

    void copy(const QString& from, const QString& to) override
    {
        begin(QStringLiteral("copy"), from);
        if (isFolder(to))
            throw error(QStringLiteral("copy to"), to, EISDIR);
        const FileContents contents = read(from);
        replace(to, contents.bytes.view().toByteArray(), contents.stamp.modified);
    }

    void flush(const QString& folder) override { begin(QStringLiteral("flush"), folder); }

    void move(const QString& from, const QString& to) override
    {
        begin(QStringLiteral("move"), from);
        if (!exists(from))
            throw error(QStringLiteral("move"), from, ENOENT);
        if (exists(to))
            throw error(QStringLiteral("move"), from, EEXIST);
        rename(from, to);
    }

    void remove(const QString& path) override
    {
        begin(QStringLiteral("remove"), path);
        if (!exists(path))
            throw error(QStringLiteral("remove"), path, ENOENT);
        if (isFolder(path))
            throw error(QStringLiteral("remove"), path, EISDIR);
        take(path);
    }

    void removeAll(const QString& path) override
    {
        begin(QStringLiteral("removeAll"), path);
        if (!exists(path))
            throw error(QStringLiteral("remove"), path, ENOENT);
        for (const QString& inside : QStringList(order)) {
            if (inside.startsWith(path + u'/'))
                take(inside);
        }
        take(path);
    }

    void removeEmptyFolder(const QString& path) override
    {
        begin(QStringLiteral("removeEmptyFolder"), path);
        if (!list(path).isEmpty())
            throw error(QStringLiteral("remove"), path, ENOTEMPTY);
        take(path);
    }

    void createFolders(const QString& path) override
    {
        begin(QStringLiteral("createFolders"), path);
        makeFolder(path);
    }

    /// Nothing is ever left over in memory.
    void removeLeftovers(const QString& folder, Date before) override
    {
        tidied.append({folder, before});
    }

    // What other programs do to the files.

    /// Writes into the file, or makes it.
    void writeInPlace(const QString& path, const QByteArray& bytes)
    {
        if (!exists(path))
            return replace(path, bytes);
        Node& node = nodes[path];
        node.bytes = bytes;
        node.modified = node.changed = ticked();
    }

    /// Puts a new file in the place of the old one, with its modification time if one is given.
    void replace(const QString& path, const QByteArray& bytes,
                 std::optional<Date> modified = std::nullopt)
    {
        Node node;
        node.bytes = bytes;
        node.inode = freeInode();
        node.modified = modified.value_or(ticked());
        node.changed = ticked();
        if (exists(path)) {
            inodes.remove(nodes[path].inode);
            node.isReadable = nodes[path].isReadable;
        } else {
            order.append(path);
        }
        inodes.insert(node.inode);
        nodes.insert(path, node);
    }

    void makeFolder(const QString& path)
    {
        if (exists(path))
            return;
        Node node;
        node.inode = freeInode();
        node.modified = node.changed = ticked();
        node.isFolder = true;
        inodes.insert(node.inode);
        order.append(path);
        nodes.insert(path, node);
    }

    void take(const QString& path)
    {
        inodes.remove(nodes.value(path).inode);
        nodes.remove(path);
        order.removeAll(path);
    }

    /// Moves a file onto another or to a free name.
    void rename(const QString& from, const QString& to)
    {
        Node node = nodes.take(from);
        order.removeAll(from);
        if (exists(to))
            take(to);
        node.changed = ticked();
        nodes.insert(to, node);
        order.append(to);
    }

    void setReadable(const QString& path, bool isReadable)
    {
        Node& node = nodes[path];
        node.isReadable = isReadable;
        node.changed = ticked();
    }

    void touch(const QString& path) { nodes[path].modified = nodes[path].changed = ticked(); }

    [[nodiscard]] QByteArray bytes(const QString& path) const { return nodes.value(path).bytes; }
    [[nodiscard]] Node node(const QString& path) const { return nodes.value(path); }

    /// All paths, in the order in which folders list them.
    QStringList order;

private:
    void begin(const QString& operation, const QString& path) const
    {
        if (onOperation)
            onOperation(operation, path);
    }

    [[nodiscard]] Date ticked() const
    {
        const auto sinceEpoch = now.time_since_epoch();
        return Date(sinceEpoch - sinceEpoch % tick);
    }

    [[nodiscard]] quint64 freeInode() const
    {
        quint64 inode = 1;
        while (inodes.contains(inode))
            ++inode;
        return inode;
    }

    [[nodiscard]] static FileStamp stampOf(const Node& node)
    {
        return {1, node.inode, node.bytes.size(), node.modified, node.changed};
    }

    QHash<QString, Node> nodes;
    QSet<quint64> inodes;
};

} // namespace vellumry::test
