#pragma once

#include "models/ConflictFile.h"
#include "platform/FileSystem.h"
#include "storage/StorageLocationManager.h"

#include <QList>
#include <QRegularExpression>
#include <QSet>
#include <QString>

#include <optional>

namespace vellumry {

/// Finds the copies that sync clients leave beside the files of the data folder, by their names
/// alone, and can delete them. Has no state; main thread only.
class ConflictDetectionService {
public:
    /// Both outlive the service.
    struct Dependencies {
        StorageLocationManager& locations;
        FileSystem& files;
    };

    explicit ConflictDetectionService(const Dependencies& dependencies);

    /// The one that the program uses.
    [[nodiscard]] static ConflictDetectionService& shared();

    /// The conflict copies in the folder, the newest first. What cannot be listed or looked at is
    /// told in the log and left out.
    [[nodiscard]] QList<ConflictFile> detectConflicts(const QString& folder) const;

    /// Looks for the conflict copies of the current location anew and removes them. Throws
    /// FileError at the first that cannot be removed; those before it are gone by then.
    void deleteAllConflicts() const;

private:
    /// How a drive names its copies.
    struct ConflictPattern {
        QRegularExpression regex;
        std::optional<CloudDriveType> type;
    };

    [[nodiscard]] static const QList<ConflictPattern>& conflictPatterns();
    [[nodiscard]] std::optional<ConflictFile>
    checkConflictPatterns(const QString& path, const QString& fileName,
                          const QSet<QString>& normalFileNames) const;

    Dependencies with;
};

} // namespace vellumry
