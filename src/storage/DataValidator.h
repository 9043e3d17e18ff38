#pragma once

#include "models/LegacyExportData.h"
#include "models/VellumryData.h"

namespace vellumry {

/// Understands libraries in the older forms. Changes no file.
class DataValidator {
public:
    DataValidator() = delete;

    /// The library in a file that nests snippets in their collections. Collections come in their
    /// display order, those without one last; one without an id gets a fresh one at each call.
    [[nodiscard]] static VellumryData migrateFromLegacy(const LegacyExportData& legacy,
                                                        const Clock& clock = SystemClock::shared());

    /// The library in a plain list of snippets: a collection for each name that they bear, in no
    /// particular order.
    [[nodiscard]] static VellumryData
    migrateFromSnippetArray(const QList<Snippet>& snippets,
                            const Clock& clock = SystemClock::shared());
};

} // namespace vellumry
