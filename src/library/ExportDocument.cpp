#include "library/ExportDocument.h"

#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"

#include <utility>

namespace vellumry {

ExportDocument::ExportDocument(ExportData given) : data(std::move(given)) {}

ExportDocument::ExportDocument(const PaddedBytes& file)
    : data(JSONDecoder::iso8601().decode<ExportData>(file))
{
}

QByteArray ExportDocument::fileWrapper() const
{
    JSONEncoder encoder = JSONEncoder::iso8601();
    return encoder.encode(data).toByteArray();
}

} // namespace vellumry
