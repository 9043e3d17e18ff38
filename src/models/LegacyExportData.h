#pragma once

#include "core/Date.h"
#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <optional>

namespace vellumry {

/// A collection with its snippets inside, as older files nest them.
struct LegacyExportCollection {
    std::optional<QString> id;
    QString name;
    std::optional<qint64> displayOrder;
    std::optional<QString> color;
    QList<Snippet> snippets;

    friend bool operator==(const LegacyExportCollection&, const LegacyExportCollection&) = default;
};

/// One of the shapes of the old single file.
struct LegacyExportData {
    std::optional<QString> version;
    std::optional<Date> exportedAt;
    QList<LegacyExportCollection> collections;

    friend bool operator==(const LegacyExportData&, const LegacyExportData&) = default;
};

} // namespace vellumry
