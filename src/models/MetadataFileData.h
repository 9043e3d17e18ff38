#pragma once

#include "core/Date.h"
#include "models/SyncSettings.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace vellumry {

/// The metadata file of the data folder.
struct MetadataFileData {
    static constexpr QStringView currentVersion = u"3.1";

    QString version;
    Date lastModified{};
    QString deviceId;
    QStringList collectionOrder; ///< ids of the collections in display order
    std::optional<SyncSettings> settings;

    friend bool operator==(const MetadataFileData&, const MetadataFileData&) = default;
};

} // namespace vellumry
