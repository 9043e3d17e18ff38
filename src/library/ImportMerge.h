#pragma once

#include "core/Date.h"
#include "library/ImportConflicts.h"
#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <functional>

namespace vellumry {

/// What an import makes of the snippets of a library.
struct ImportMerge {
    QList<Snippet> snippets; ///< of the library from then on
    qsizetype count = 0;     ///< how many of them are new or updated
};

/// Appends the new snippets and settles the conflicts. What is appended is a snippet of `now`, with
/// the count and time of use that it had, without a number and without values for placeholders.
/// What is updated keeps its collection, number, use and values.
///
/// Of several conflicts of one title, the first stands for all.
[[nodiscard]] ImportMerge mergeImport(const QList<Snippet>& snippets,
                                      const ConflictDetectionResult& found,
                                      ConflictResolutionMode mode, Date now,
                                      const std::function<QString()>& newIdentifier);

} // namespace vellumry
