#pragma once

#include "models/CollectionFileData.h"
#include "models/VellumryData.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace vellumry::bench {

/// Makes up libraries to measure with; the same count always gives the same library.
///
/// 50 collections with sizes in proportion to 1/(k + 4). Contents are log-normal in length, with a
/// median of 300 bytes (sigma 0.9), cut at 20 KB; 85 % are ASCII, 8 % mixed with Chinese, 5 % with
/// accented letters, 2 % with emoji. Words follow Zipf's law, and every content closes with "end.".
/// A snippet takes about 900 bytes in its file.
class LibraryGenerator {
public:
    [[nodiscard]] static VellumryData generate(int count);

    /// The contents of the collection files of a library.
    [[nodiscard]] static QList<CollectionFileData> collectionFiles(const VellumryData& library);

    /// The same with records as a load makes them: one behind the other in memory, in the order of
    /// the files, and not as they were made up.
    [[nodiscard]] static QList<CollectionFileData> loadedFiles(int count);

    /// Writes the files of generate(count) to a folder, which is made if need be. Returns the size
    /// of the files in bytes.
    static qint64 writeFolder(int count, const QString& folder);

    /// The words that contents are made of, the most frequent first.
    [[nodiscard]] static const QStringList& vocabulary();
};

} // namespace vellumry::bench
