#pragma once

#include "core/PaddedBytes.h"
#include "models/ExportData.h"

#include <QByteArray>

namespace vellumry {

/// A backup file as a value that can be written to any place.
class ExportDocument {
public:
    explicit ExportDocument(ExportData data);
    /// Throws DecodingError when the bytes are no backup file.
    explicit ExportDocument(const PaddedBytes& file);

    [[nodiscard]] const ExportData& exportData() const { return data; }

    /// The bytes of the file. Dates are cut to whole seconds.
    [[nodiscard]] QByteArray fileWrapper() const;

private:
    ExportData data;
};

} // namespace vellumry
