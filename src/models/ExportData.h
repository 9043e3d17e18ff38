#pragma once

#include "core/Date.h"
#include "models/Snippet.h"

#include <QList>
#include <QString>

#include <optional>

namespace vellumry {

/// A collection in a backup file, with its snippets inside.
struct ExportCollection {
    QString id;
    QString name;
    qint64 displayOrder = 0;
    std::optional<QString> color{}; ///< in hexadecimal form when written; read as it stands
    QList<Snippet> snippets{};

    friend bool operator==(const ExportCollection&, const ExportCollection&) = default;
};

/// A backup file. Its dates are whole seconds.
struct ExportData {
    static constexpr QStringView currentVersion = u"2.0";

    QString version; ///< any text when read
    Date exportedAt{};
    QList<ExportCollection> collections;

    friend bool operator==(const ExportData&, const ExportData&) = default;
};

} // namespace vellumry
