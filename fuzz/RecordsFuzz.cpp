#include "FuzzInput.h"
#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"

#include <array>

// Every decoder. The first byte chooses the record. What decodes must come back unchanged from its
// encoded form, and what does not must say why.

namespace {

using namespace vellumry;
using fuzz::require;

template <typename T>
void roundTrip(QByteArrayView json)
{
    const T record = JSONDecoder::vellumry().decode<T>(json);
    JSONEncoder encoder = JSONEncoder::vellumry();
    const QByteArray encoded = encoder.encode(record).toByteArray();
    const T again = JSONDecoder::vellumry().decode<T>(QByteArrayView(encoded));
    require(again == record, "a record comes back from its encoded form");
    require(encoder.encode(again) == encoded, "encoding it again gives the same text");
}

template <typename T>
void decodeAlone(QByteArrayView json)
{
    (void)JSONDecoder::vellumry().decode<T>(json);
}

constexpr std::array decoders = {
    roundTrip<Snippet>,
    roundTrip<Collection>,
    roundTrip<SyncCollection>,
    roundTrip<SyncSettings>,
    roundTrip<SyncDataContent>,
    roundTrip<VellumryData>,
    roundTrip<CollectionFileData>,
    roundTrip<MetadataFileData>,
    roundTrip<LegacyExportCollection>,
    roundTrip<LegacyExportData>,
    decodeAlone<DefaultSnippetsContainer>,
    decodeAlone<QList<Snippet>>,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzInput input(data, size);
    const auto decoder = decoders[input.byte() % decoders.size()];
    try {
        decoder(input.remaining());
    } catch (const DecodingError& error) {
        require(!error.description().isEmpty(), "a failure has a description");
    }
    return 0;
}
