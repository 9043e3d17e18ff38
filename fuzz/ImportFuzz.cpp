#include "FuzzInput.h"
#include "library/ExportDocument.h"
#include "library/ImportExportService.h"
#include "library/ImportMerge.h"

#include <QSet>

// Backup files. What is read must come back unchanged from its export; imported into the library
// that it makes, it must find nothing to do; and a merge loses none of the snippets it is given.
// The first byte says what has changed in that library before the merge.

namespace {

using namespace vellumry;
using fuzz::require;

/// The library that a file makes when it is imported into an empty one.
struct Library {
    QList<Collection> collections;
    QList<Snippet> snippets;
};

Library libraryOf(const ImportExportService::ImportedData& data)
{
    Library library;
    for (const ExportCollection& collection : data.collections) {
        library.collections.append({.id = collection.id, .name = collection.name});
        for (Snippet snippet : collection.snippets) {
            snippet.setCollection(collection.name);
            library.snippets.append(snippet);
        }
    }
    return library;
}

void exportAndImport(const PaddedBytes& bytes, const ImportExportService::ImportedData& data)
{
    const ExportDocument document(bytes);
    require(document.exportData().collections == data.collections, "both ways read the same");
    const QByteArray written = document.fileWrapper();
    const ExportDocument again{PaddedBytes(written)};
    require(again.exportData() == document.exportData(), "a file comes back from its export");
    require(again.fileWrapper() == written, "exporting it again gives the same bytes");
}

bool hasUniqueTitles(const Library& library)
{
    QSet<std::pair<QString, QString>> titles;
    for (const Snippet& snippet : library.snippets)
        titles.insert({snippet.collection(), snippet.title()});
    return titles.size() == library.snippets.size();
}

void merge(const ImportExportService::ImportedData& data, Library library, std::uint8_t changes)
{
    const auto same =
        ImportExportService::detectConflicts(data, library.collections, library.snippets);
    require(same.newCollections.isEmpty() && same.newSnippets.isEmpty(), "nothing is new");
    require(!hasUniqueTitles(library) || same.conflicts.isEmpty(), "nothing conflicts");

    for (qsizetype i = 0; i < library.snippets.size(); ++i) {
        Snippet& snippet = library.snippets[i];
        if ((changes >> (i % 4) & 1) != 0)
            snippet.setContent(snippet.content() + u'x');
        if ((changes >> (4 + i % 4) & 1) != 0)
            snippet.setUpdatedAt(Date(snippet.updatedAt().time_since_epoch() / 2));
    }
    if ((changes & 1) != 0 && !library.collections.isEmpty())
        library.collections.removeFirst();
    const auto found =
        ImportExportService::detectConflicts(data, library.collections, library.snippets);
    require(found.snippetConflictCount() == found.conflictingSnippets.size(),
            "each conflict has its two sides");
    require(found.newSnippets.size() + found.conflicts.size() <= data.snippets.size(),
            "nothing is found that the file does not have");
    int made = 0;
    for (const auto mode :
         {ConflictResolutionMode::smartUpdate, ConflictResolutionMode::restoreFromBackup,
          ConflictResolutionMode::skipConflicts, ConflictResolutionMode::keepBoth}) {
        const ImportMerge merged = mergeImport(library.snippets, found, mode, Date(), [&] {
            return QStringLiteral("new-%1").arg(++made);
        });
        const bool isKept = mode == ConflictResolutionMode::keepBoth;
        const qsizetype appended = found.newSnippets.size() + (isKept ? found.conflicts.size() : 0);
        require(merged.snippets.size() == library.snippets.size() + appended,
                "every snippet is there, and every new one");
        require(merged.count >= found.newSnippets.size(), "all that is new is counted");
        require(mode != ConflictResolutionMode::skipConflicts ||
                    merged.snippets.first(library.snippets.size()) == library.snippets,
                "what is skipped stays");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzInput input(data, size);
    const std::uint8_t changes = input.byte();
    const PaddedBytes bytes(input.remaining());
    if (const auto imported = ImportExportService::importFromJSON(bytes)) {
        exportAndImport(bytes, *imported);
        merge(*imported, libraryOf(*imported), changes);
    }
    return 0;
}
