#pragma once

#include <QString>

#include <optional>

namespace vellumry {

// The names of the files in the data folder, beside the metadata file of StorageLocationManager.

/// The file of the older form, which held the whole library.
[[nodiscard]] QString legacyFilePath(const QString& folder);

[[nodiscard]] QString collectionFilePath(const QString& folder, const QString& baseName);

/// The base name, if a file of this name is a collection file: any JSON file but the metadata file.
[[nodiscard]] std::optional<QString> baseNameOfCollectionFile(const QString& fileName);

} // namespace vellumry
