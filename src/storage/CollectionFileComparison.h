#pragma once

#include "models/SyncCollection.h"
#include "storage/CollectionFileCache.h"
#include "storage/SnippetsByCollection.h"

namespace vellumry {

/// Whether the file already holds the collection with these snippets, without a difference that is
/// written to disk. The order of the snippets is none, nor are creation dates, manual positions and
/// placeholder values: they ride along with the next difference that is. Ids must stand once in the
/// file; one that stands twice ends the process, which names `path` as where it does.
[[nodiscard]] bool holds(const CollectionFile& file, const SyncCollection& collection,
                         const SnippetSelection& snippets, const QString& path);

} // namespace vellumry
