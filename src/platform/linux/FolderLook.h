#pragma once

#include "core/Date.h"
#include "platform/FileSystem.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace vellumry {

/// Finds the files of a folder that have changed since the last look at it, by their names, sizes
/// and modification times: the way to notice what a file server does not tell. Inode numbers and
/// change times are left out, which some file servers make up anew. Folders do not count. Used by
/// one thread at a time.
class FolderLook final {
public:
    /// Looks for the first time. `fileSystem` outlives this object.
    FolderLook(const QString& folder, FileSystem& fileSystem);

    /// The files that came, went or changed since. None when the folder cannot be listed: its files
    /// are compared when it can be again.
    [[nodiscard]] QStringList changedNames();

    /// Takes what stands under this name now for seen.
    void accept(const QString& name);

private:
    using State = std::pair<qint64, Date>; ///< size and modification time
    using States = QHash<QString, State>;

    [[nodiscard]] std::optional<State> stateOf(const QString& name);
    [[nodiscard]] std::optional<States> states();

    const QString folder;
    FileSystem& files;
    States seen; ///< by name
};

} // namespace vellumry
