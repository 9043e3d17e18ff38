#pragma once

#include "core/PaddedBytes.h"
#include "models/Collection.h"
#include "models/CollectionFileData.h"
#include "models/DecodingError.h"
#include "models/DefaultSnippetsContainer.h"
#include "models/ExportData.h"
#include "models/LegacyExportData.h"
#include "models/MetadataFileData.h"
#include "models/VellumryData.h"

#include <memory>

namespace vellumry {

/// Decodes the records of the files. The whole document must be valid JSON (RFC 8259) in UTF-8,
/// nested at most 1,024 deep and at most 1 GiB long, and hold no number beyond 64 bits, even under
/// an unknown key; a byte order mark is skipped. Unknown keys are passed over, null counts as
/// missing where a key is optional, and of a key that stands twice the last one counts. Records
/// never decode partly: decode() throws DecodingError instead, with the place of what is wrong.
///
/// A decoder keeps its working memory between calls, so that one serves a whole load. Not shared
/// between threads.
class JSONDecoder {
public:
    /// The decoder of every stored file: dates are ISO 8601 texts (see parseDate).
    [[nodiscard]] static JSONDecoder vellumry();
    /// The decoder of backup files: the same, but dates have no fraction of a second.
    [[nodiscard]] static JSONDecoder iso8601();

    JSONDecoder(JSONDecoder&& other) noexcept;
    JSONDecoder& operator=(JSONDecoder&& other) noexcept;
    ~JSONDecoder();

    /// T is one of the records Snippet, Collection, SyncCollection, SyncSettings, SyncDataContent,
    /// VellumryData, CollectionFileData, MetadataFileData, LegacyExportCollection,
    /// LegacyExportData, ExportCollection, ExportData, DefaultSnippetsContainer, QList<Snippet>.
    template <typename T>
    [[nodiscard]] T decode(const PaddedBytes& bytes);

    /// For a text that may be any of several records: parses it, so that record() can try one
    /// after another. Throws DecodingError when it is no JSON.
    void parse(const PaddedBytes& bytes);

    /// A record out of the text that was parsed last; throws DecodingError when it is none.
    template <typename T>
    [[nodiscard]] T record();

    /// The same as decode of bytes without padding, which are copied first.
    template <typename T>
    [[nodiscard]] T decode(QByteArrayView bytes)
    {
        return decode<T>(PaddedBytes(bytes));
    }

private:
    explicit JSONDecoder(DatePrecision ofDates);

    struct State;
    std::unique_ptr<State> state;
};

} // namespace vellumry
