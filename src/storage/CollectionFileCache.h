#pragma once

#include "models/CollectionFileData.h"
#include "models/JSONDecoder.h"
#include "platform/FileSystem.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace vellumry {

/// What a collection file says, with dates and texts as the file holds them.
struct CollectionFile {
    SyncCollection collection;
    QList<Snippet> snippets;
    bool hasUniqueIds = true; ///< whether no id of a snippet stands twice
};

/// The collection files of the data folder as they stand on disk. To its users it is as if every
/// file were read and decoded each time; in truth a file is opened only if it may have changed
/// since the last time.
///
/// An unchanged stamp proves an unchanged file only if the file's last change is far enough in
/// the past: file systems keep time in ticks, and a second change within the tick of the first
/// leaves the stamp as it is. A file that was read soon after a change is therefore read again and
/// compared by a digest of its bytes, until the tick is over for sure.
///
/// Main thread only.
class CollectionFileCache {
public:
    explicit CollectionFileCache(FileSystem& fileSystem) : files(fileSystem) {}

    /// Starts a walk over the folder, which lists collection files of these base names. Whatever
    /// else was known is forgotten, and each file is checked against the disk once in the walk.
    void beginWalk(const QString& folder, const QStringList& baseNames);
    /// A walk over a folder that does not tell what it holds: files are met by their names.
    void beginWalk(const QString& folder);

    /// The file as it stands. Throws FileError when it cannot be read and DecodingError when it is
    /// no collection file. Valid until the next call.
    [[nodiscard]] const CollectionFile& file(const QString& baseName, JSONDecoder& decoder);

    /// The same; null when it cannot be read or is no collection file.
    [[nodiscard]] const CollectionFile* decodableFile(const QString& baseName,
                                                      JSONDecoder& decoder);

    /// Whether the file, which file() has given in this walk, stands there unchanged since.
    [[nodiscard]] bool isStillAsRead(const QString& baseName) const;

    /// Remembers what was written, so that the own file need not be decoded. The stamp is that of
    /// FileSystem::write, the digest that of the bytes.
    void remember(const QString& baseName, const std::optional<FileStamp>& stamp, quint64 digest,
                  const CollectionFileData& written);

    /// Follows a file that was moved by this program to another base name.
    void move(const QString& from, const QString& to);

    void forget(const QString& baseName);
    void clear();

    /// Whether a walk met files that somebody else has changed, made or removed since
    /// acceptForeignChanges. What the first walk over a folder meets is new, but not foreign.
    [[nodiscard]] bool hasForeignChanges() const { return metForeignChange; }
    void acceptForeignChanges() { metForeignChange = false; }

    /// Tells the time by the clock of the folder's file system: the stamp of a file written there
    /// just now.
    void noteTime(const std::optional<FileStamp>& stamp);

private:
    struct Entry {
        FileStamp stamp;
        bool isSettled = false;        ///< an equal stamp proves an unchanged file
        std::optional<quint64> digest; ///< of the bytes, while not settled
        unsigned walk = 0;             ///< the last walk in which it was checked
        CollectionFile file;
        std::optional<DecodingError> failure; ///< why the file is no collection file
    };

    void check(const QString& baseName, JSONDecoder& decoder);
    [[nodiscard]] Entry read(const QString& path, JSONDecoder& decoder);
    void noteForeignChange();
    [[nodiscard]] QString pathOf(const QString& baseName) const;
    [[nodiscard]] bool isSettled(const FileReading& reading) const;

    FileSystem& files;
    QString folder;
    QHash<QString, Entry> entries;        ///< by base name
    QHash<QString, FileStamp> unreadable; ///< files that could not be read
    std::optional<FileStamp> folderTime;
    unsigned walk = 0;
    unsigned walksOfFolder = 0; ///< since it is the folder or everything was forgotten
    bool metForeignChange = false;
};

} // namespace vellumry
