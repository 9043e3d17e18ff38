#pragma once

#include "core/Date.h"
#include "platform/FileSystem.h"
#include "storage/MigrationHelperError.h"

#include <QString>

#include <functional>

namespace vellumry {

/// The file operations of a move of the library to another folder. Has no state of its own, so it
/// is safe to use from any thread.
class DataMigrationHelper {
public:
    DataMigrationHelper() = delete;

    /// Copies every file with the extension "json" exactly: the metadata file, the collection
    /// files, the old single file and conflict copies. A file of the same name at the target is
    /// replaced, other files there stay. `progress` is called after each file with a fraction
    /// that grows up to 0.9. Returns when everything is on the disk. Throws FileError, and
    /// MigrationHelperError when the target has no metadata file afterwards; what was copied until
    /// then stays at the target, and nothing is ever removed from the source.
    static void copyMultiFileData(const QString& from, const QString& to,
                                  const std::function<void(double)>& progress,
                                  FileSystem& files = FileSystem::local());

    /// Makes a valid, empty library in the folder: a metadata file without collections. Throws
    /// FileError.
    static void createEmptyData(const QString& folder, FileSystem& files = FileSystem::local(),
                                const Clock& clock = SystemClock::shared());
};

} // namespace vellumry
