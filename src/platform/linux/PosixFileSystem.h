#pragma once

#include "platform/FileSystem.h"
#include "platform/linux/FileCalls.h"

namespace vellumry {

/// Files through the system's own calls.
class PosixFileSystem final : public FileSystem {
public:
    /// `systemCalls` outlives this object.
    explicit PosixFileSystem(FileCalls& systemCalls) : calls(systemCalls) {}

    [[nodiscard]] QStringList list(const QString& folder) override;
    [[nodiscard]] bool exists(const QString& path) override;
    [[nodiscard]] bool isFolder(const QString& path) override;
    [[nodiscard]] bool isWritable(const QString& path) override;
    [[nodiscard]] bool isSame(const QString& path, const QString& other) override;
    [[nodiscard]] std::optional<FileStamp> stamp(const QString& path) override;
    [[nodiscard]] FileStamp attributes(const QString& path) override;
    [[nodiscard]] FileContents read(const QString& path) override;
    [[nodiscard]] FileDigest digest(const QString& path) override;
    using FileSystem::write;
    std::optional<FileStamp> write(const QString& path, const ByteSource& source) override;
    void copy(const QString& from, const QString& to) override;
    void flush(const QString& folder) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void removeAll(const QString& path) override;
    void removeEmptyFolder(const QString& path) override;
    void createFolders(const QString& path) override;
    void removeLeftovers(const QString& folder, Date before) override;

private:
    class Descriptor;
    class TemporaryFile;
    class BlockWriter;

    [[nodiscard]] std::optional<struct ::stat> status(const QString& path);
    template <typename Result, typename ReadBytes>
    [[nodiscard]] Result readUnchanged(const QString& path, qint64 largest, ReadBytes readBytes);
    template <typename Result, typename ReadBytes>
    [[nodiscard]] std::optional<Result> readOnce(const QString& path, const QByteArray& nativePath,
                                                 qint64 largest, ReadBytes readBytes);
    [[nodiscard]] size_t fill(int descriptor, char* buffer, size_t count, const QString& path);
    [[nodiscard]] bool copyBytes(int source, TemporaryFile& file, qint64 count, const QString& from,
                                 const QString& to);
    [[nodiscard]] StampPrecision precision(int descriptor, const FileStamp& stamp);
    bool moveInSteps(const QByteArray& source, const QByteArray& target);
    void flushFolder(const QString& path, const QByteArray& nativePath);

    FileCalls& calls;
};

} // namespace vellumry
