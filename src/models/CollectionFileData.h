#pragma once

#include "models/Snippet.h"
#include "models/SyncCollection.h"

#include <QList>

namespace vellumry {

/// One collection file: the head of the collection and its snippets.
struct CollectionFileData {
    static constexpr QStringView currentVersion = u"1.0";

    QString version;
    Date lastModified{};
    QString deviceId;
    SyncCollection collection;
    QList<Snippet> snippets;

    friend bool operator==(const CollectionFileData&, const CollectionFileData&) = default;
};

} // namespace vellumry
