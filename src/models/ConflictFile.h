#pragma once

#include "core/Date.h"
#include "models/CloudDriveType.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace vellumry {

/// A copy of a collection file that a cloud drive's client left in the data folder.
struct ConflictFile {
    QUuid id;    ///< identifies the record in a list, made at each detection
    QString url; ///< the path of the copy
    std::optional<CloudDriveType> cloudDriveType;
    Date modifiedDate{};
    qint64 fileSize = 0; ///< bytes
    std::optional<QString> originalFileName;

    friend bool operator==(const ConflictFile&, const ConflictFile&) = default;
};

} // namespace vellumry
