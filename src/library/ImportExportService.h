#pragma once

#include "core/Date.h"
#include "core/PaddedBytes.h"
#include "library/ImportConflicts.h"
#include "models/Collection.h"
#include "models/ExportData.h"
#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <optional>

namespace vellumry {

/// Reads backup files and compares them with the library. See ExportDocument for the writing.
class ImportExportService {
public:
    /// The contents of a backup file.
    struct ImportedData {
        QList<ExportCollection> collections;
        QList<Snippet> snippets; ///< of all collections, in the order of the file

        friend bool operator==(const ImportedData&, const ImportedData&) = default;
    };

    /// The clock outlives the service.
    explicit ImportExportService(const Clock& ofNames) : clock(ofNames) {}

    /// The one that the program uses.
    [[nodiscard]] static ImportExportService& shared();

    /// Nothing when the bytes are no backup file in every part. Its version is not looked at.
    [[nodiscard]] static std::optional<ImportedData> importFromJSON(const PaddedBytes& data);

    /// Sorts the imported snippets into those that are new, those that conflict, and those that
    /// there is nothing to do about. A snippet is known by the name of its collection and its
    /// title, never by its id. One of the same content, subtitle and keywords is the same; one
    /// with the same time stamp is not touched, whatever its texts.
    [[nodiscard]] static ConflictDetectionResult
    detectConflicts(const ImportedData& importedData, const QList<Collection>& existingCollections,
                    const QList<Snippet>& existingSnippets);

    /// Such as "Vellumry_Backup_2026-03-09_140507.json", of the local time.
    [[nodiscard]] QString defaultExportFilename() const;

private:
    const Clock& clock;
};

} // namespace vellumry
