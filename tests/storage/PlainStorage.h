#pragma once

#include "storage/StorageWorld.h"

#include <QStringList>

namespace vellumry::test {

/// The storage without any cleverness: reads and decodes every file each time. What the service
/// does must look just like it.
class PlainStorage {
public:
    PlainStorage(FileSystem& fileSystem, const QString& dataFolder, const Clock& time)
        : files(fileSystem), folder(dataFolder), clock(time)
    {
    }

    std::optional<VellumryData> load();
    /// False when it failed.
    bool save(const VellumryData& data);
    bool remove(const QString& collectionId);
    bool rename(const QString& collectionId, const QString& newName);

    /// The lines that the last operation logs, without the reasons of failures.
    QStringList lines;

private:
    struct Entry {
        QString baseName;
        std::optional<CollectionFileData> file;
    };

    [[nodiscard]] QList<Entry> readAll();
    [[nodiscard]] std::optional<CollectionFileData> readFile(const QString& baseName);
    [[nodiscard]] bool shouldWrite(const QString& baseName, const SyncCollection& collection,
                                   const QList<Snippet>& snippets);
    void write(const QString& fileName, QByteArrayView bytes);
    void updateMetadata(const std::optional<QString>& removedId);
    void log(const QString& text) { lines.append(text); }

    FileSystem& files;
    QString folder;
    const Clock& clock;
};

} // namespace vellumry::test
