#pragma once

#include "core/Date.h"
#include "models/ExportData.h"
#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <algorithm>

namespace vellumry {

/// Only snippets ever conflict.
enum class ConflictType { collection, snippet };

/// A snippet that stands on both sides of an import, with different texts and times.
struct ImportConflict {
    QString id; ///< of the local snippet
    ConflictType type = ConflictType::snippet;
    QString name; ///< the title
    Date localUpdatedAt{};
    Date importedUpdatedAt{};

    friend bool operator==(const ImportConflict&, const ImportConflict&) = default;
};

/// What an import would bring into the library.
struct ConflictDetectionResult {
    QList<ImportConflict> conflicts;
    QList<ExportCollection> newCollections;
    QList<Snippet> newSnippets;
    QList<ExportCollection> conflictingCollections; ///< always empty
    QList<Snippet> conflictingSnippets;             ///< the imported side of each conflict

    [[nodiscard]] qsizetype snippetConflictCount() const
    {
        return std::count_if(conflicts.begin(), conflicts.end(), [](const auto& conflict) {
            return conflict.type == ConflictType::snippet;
        });
    }

    friend bool operator==(const ConflictDetectionResult&,
                           const ConflictDetectionResult&) = default;
};

/// What an import does about its conflicts, in the order in which the choices are offered.
enum class ConflictResolutionMode {
    smartUpdate,       ///< the version that was updated later stays
    restoreFromBackup, ///< the imported one stays
    skipConflicts,     ///< the local one stays
    keepBoth,          ///< the imported one comes beside it
};

} // namespace vellumry
