#pragma once

#include "core/Date.h"
#include "models/MetadataFileData.h"
#include "platform/FileSystem.h"

#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// The metadata file of the data folder, which knows its own writing from that of others. Main
/// thread only.
class MetadataFile {
public:
    /// Both outlive the object.
    MetadataFile(FileSystem& fileSystem, const Clock& systemClock)
        : files(fileSystem), clock(systemClock)
    {
    }

    /// The file as it stands. Throws StorageError when it cannot be read or is no metadata file.
    [[nodiscard]] MetadataFileData read(const QString& folder);

    /// Takes note that there is no such file.
    void noteMissing();

    /// Replaces the file and returns its stamp, as FileSystem::write does. Throws FileError.
    std::optional<FileStamp> write(const QString& folder, const MetadataFileData& metadata);

    /// Changes the file that stands there, or an empty one where there is none that can be
    /// understood, and sets its time and device. Returns and throws as write does.
    std::optional<FileStamp> update(const QString& folder,
                                    const std::function<void(MetadataFileData&)>& modifier);

    /// Whether the file holds something of others that was neither read nor overwritten, or is gone
    /// by others. Looks at the contents too: a change within one tick of the file system's clock
    /// leaves the stamp as it is.
    [[nodiscard]] bool hasForeignChange(const QString& folder);

private:
    struct State {
        std::optional<FileStamp> stamp;
        quint64 digest = 0; ///< of the bytes
        friend bool operator==(const State&, const State&) = default;
    };

    FileSystem& files;
    const Clock& clock;
    State known;               ///< of the file as last read or written
    bool holdsForeign = false; ///< a change of others was kept by an update, or followed a write
};

} // namespace vellumry
