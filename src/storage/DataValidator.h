#pragma once

#include "models/CollectionFileData.h"
#include "models/LegacyExportData.h"
#include "models/VellumryData.h"
#include "platform/FileSystem.h"

#include <QString>

#include <optional>
#include <variant>

namespace vellumry {

/// Tells whether a usable library is at a place that the user picked, and understands libraries in
/// the older forms. Only reads. Has no state of its own, so it is safe to use from any thread.
class DataValidator {
public:
    DataValidator() = delete;

    /// Usable data, given here.
    struct Valid {
        VellumryData data;
    };
    /// Something is there and cannot be used; the reason is shown to the user as it stands.
    struct Invalid {
        QString reason;
    };
    /// Nothing that looks like a library.
    struct NotFound {};
    using ValidationResult = std::variant<Valid, Invalid, NotFound>;

    /// The verdict on a file or a folder; every failure is one. A folder without a metadata file
    /// is judged by the first collection file that can be understood, and the data given are then
    /// that file's alone. An id that stands twice in the collection order of a folder ends the
    /// process, as it does at loading.
    [[nodiscard]] static ValidationResult validate(const QString& location,
                                                   FileSystem& files = FileSystem::local(),
                                                   const Clock& clock = SystemClock::shared());

    /// The library in the single file of the older form, which has one of three shapes: a library
    /// as it stands, or one of the two below. Nothing for anything else.
    [[nodiscard]] static std::optional<VellumryData>
    singleFileLibrary(const PaddedBytes& bytes, const Clock& clock = SystemClock::shared());

    /// The library in a file that nests snippets in their collections. Collections come in their
    /// display order, those without one last; one without an id gets a fresh one at each call.
    [[nodiscard]] static VellumryData migrateFromLegacy(const LegacyExportData& legacy,
                                                        const Clock& clock = SystemClock::shared());

    /// The library in a plain list of snippets: a collection for each name that they bear, in no
    /// particular order.
    [[nodiscard]] static VellumryData
    migrateFromSnippetArray(const QList<Snippet>& snippets,
                            const Clock& clock = SystemClock::shared());

private:
    [[nodiscard]] static ValidationResult validateFile(const QString& path, FileSystem& files,
                                                       const Clock& clock);
    [[nodiscard]] static ValidationResult
    validateMultiFileFormat(const QString& folder, const QString& metadataPath, FileSystem& files);
    [[nodiscard]] static ValidationResult validateData(const PaddedBytes& bytes,
                                                       const Clock& clock);
    [[nodiscard]] static ValidationResult validateVellumryData(VellumryData data);
};

} // namespace vellumry
