#pragma once

#include "models/Snippet.h"
#include "models/SyncCollection.h"

#include <QList>
#include <QMap>

namespace vellumry {

/// The contents of a library.
struct SyncDataContent {
    QList<SyncCollection> collections;
    QList<Snippet> snippets;
    QMap<QString, QString> categoryColors; ///< colour text by collection name

    friend bool operator==(const SyncDataContent&, const SyncDataContent&) = default;
};

} // namespace vellumry
