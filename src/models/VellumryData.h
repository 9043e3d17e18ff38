#pragma once

#include "models/SyncDataContent.h"
#include "models/SyncSettings.h"

#include <optional>

namespace vellumry {

/// The whole library as one value; lists are implicitly shared, so a copy is cheap.
struct VellumryData {
    /// The format version of a library in memory and of the old single file. The versions of
    /// collection files and of the metadata file are others, and stay so.
    static constexpr QStringView currentVersion = u"3.0";

    QString version;
    Date lastModified{}; ///< time of the last save
    QString deviceId;    ///< the machine that last saved
    SyncDataContent data;
    std::optional<SyncSettings> settings;

    friend bool operator==(const VellumryData&, const VellumryData&) = default;
};

} // namespace vellumry
