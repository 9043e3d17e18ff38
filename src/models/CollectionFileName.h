#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace vellumry {

/// The base name (without ".json") of the file of a collection called `name`: lower-cased, blanks
/// turned to dashes, characters that file systems refuse deleted, dashes collapsed and trimmed.
/// "collection" when nothing is left. Not yet unique.
[[nodiscard]] QString collectionFileBaseName(const QString& name);

/// `baseName` itself when it is not taken, otherwise the first free one of `baseName`-1, -2, ...
[[nodiscard]] QString generateUniqueFileName(const QString& baseName,
                                             const QSet<QString>& existingNames);

/// The name without its extension, if the extension is "json" exactly; nothing for any other name.
/// A name that is nothing but an extension has none.
[[nodiscard]] std::optional<QString> jsonFileBaseName(const QString& fileName);

} // namespace vellumry
