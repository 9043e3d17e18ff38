#pragma once

#include <QtGlobal>

namespace vellumry {

/// A small block that the metadata file can carry. The program hands on what it loaded.
struct SyncSettings {
    qint64 version = 0;
    bool syncAppSettings = false;

    friend bool operator==(const SyncSettings&, const SyncSettings&) = default;
};

} // namespace vellumry
