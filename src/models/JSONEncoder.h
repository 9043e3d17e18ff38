#pragma once

#include "models/Collection.h"
#include "models/CollectionFileData.h"
#include "models/ExportData.h"
#include "models/JSONWriter.h"
#include "models/LegacyExportData.h"
#include "models/MetadataFileData.h"
#include "models/VellumryData.h"

namespace vellumry {

/// Encodes the records of the files: pretty-printed JSON with sorted keys, dates in the form of
/// writeDate, absent optional fields left out. Keeps its buffer between calls, so that
/// one encoder serves a whole save. Not shared between threads.
class JSONEncoder {
public:
    /// The encoder of every stored file.
    [[nodiscard]] static JSONEncoder vellumry() { return JSONEncoder(DatePrecision::milliseconds); }
    /// The encoder of backup files, whose dates are cut to whole seconds.
    [[nodiscard]] static JSONEncoder iso8601() { return JSONEncoder(DatePrecision::seconds); }

    /// The text of the record, in UTF-8; valid until the next call or the end of the encoder.
    [[nodiscard]] QByteArrayView encode(const Snippet& record);
    [[nodiscard]] QByteArrayView encode(const Collection& record);
    [[nodiscard]] QByteArrayView encode(const SyncCollection& record);
    [[nodiscard]] QByteArrayView encode(const SyncSettings& record);
    [[nodiscard]] QByteArrayView encode(const SyncDataContent& record);
    [[nodiscard]] QByteArrayView encode(const VellumryData& record);
    [[nodiscard]] QByteArrayView encode(const CollectionFileData& record);
    [[nodiscard]] QByteArrayView encode(const MetadataFileData& record);
    [[nodiscard]] QByteArrayView encode(const LegacyExportCollection& record);
    [[nodiscard]] QByteArrayView encode(const LegacyExportData& record);
    [[nodiscard]] QByteArrayView encode(const ExportCollection& record);
    [[nodiscard]] QByteArrayView encode(const ExportData& record);

    /// Gives the same text to the sink in pieces as a Digest takes them. They stay in the
    /// processor's cache, where the whole text of a large file would not. What the sink throws ends
    /// the encoding.
    void encode(const CollectionFileData& record, const ByteSink& sink);

private:
    explicit JSONEncoder(DatePrecision ofDates) : writer(ofDates) {}

    JSONWriter writer;
};

} // namespace vellumry
