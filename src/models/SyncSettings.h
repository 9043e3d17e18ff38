#pragma once

#include <QtGlobal>

namespace vellumry {

/// A small block that the metadata file can carry. The palette's saves hand on what was loaded;
/// those of the main window leave it out.
struct SyncSettings {
    qint64 version = 0;
    bool syncAppSettings = false;

    friend bool operator==(const SyncSettings&, const SyncSettings&) = default;
};

} // namespace vellumry
