#pragma once

#include "models/VellumryData.h"

#include <QList>
#include <QString>

#include <optional>

namespace vellumry {

/// What the rest of the program asks of the library's storage. Main thread only.
class StorageServiceProtocol {
public:
    virtual ~StorageServiceProtocol() = default;

    /// Reads the whole library anew; nothing when there is none or it cannot be read.
    virtual std::optional<VellumryData> loadFullData() = 0;

    /// Writes the library; throws StorageError. `createBackup` asks for a backup.
    virtual void saveFullData(const VellumryData& data, bool createBackup) = 0;

    /// All snippets, from the cache where there is one.
    [[nodiscard]] virtual QList<Snippet> loadSnippets() = 0;

    /// Writes the snippets back in place of those of the library; true on success.
    virtual bool saveSnippets(const QList<Snippet>& snippets) = 0;

    /// Removes one collection's file; throws StorageError.
    virtual void deleteCollectionFile(const QString& collectionId) = 0;

    /// Moves one collection's file to the name that `newName` gives; throws StorageError.
    virtual void renameCollectionFile(const QString& collectionId, const QString& newName) = 0;

    /// Counts one use of the snippet, now, and saves. False when there is no such snippet or the
    /// save failed. One implementation for all storages, over loadSnippets and saveSnippets.
    bool incrementUsage(const QString& id, const Clock& clock = SystemClock::shared());
};

} // namespace vellumry
