#include "storage/MetadataFile.h"

#include "core/Digest.h"
#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"
#include "platform/DeviceIdentifier.h"
#include "storage/StorageError.h"
#include "storage/StorageLocationManager.h"

namespace vellumry {

MetadataFileData MetadataFile::read(const QString& folder)
{
    try {
        const FileContents contents = files.read(StorageLocationManager::metadataPath(folder));
        known = {contents.stamp, Digest::of(contents.bytes.view())};
        holdsForeign = false;
        return JSONDecoder::vellumry().decode<MetadataFileData>(contents.bytes);
    } catch (const FileError& failure) {
        throw StorageError(failure.description());
    } catch (const DecodingError& failure) {
        throw StorageError(failure.description());
    }
}

void MetadataFile::noteMissing()
{
    known = {};
    holdsForeign = false;
}

std::optional<FileStamp> MetadataFile::write(const QString& folder,
                                             const MetadataFileData& metadata)
{
    JSONEncoder encoder = JSONEncoder::vellumry();
    const QByteArrayView bytes = encoder.encode(metadata);
    known = {files.write(StorageLocationManager::metadataPath(folder), bytes), Digest::of(bytes)};
    holdsForeign = !known.stamp; // replaced at once
    return known.stamp;
}

std::optional<FileStamp>
MetadataFile::update(const QString& folder, const std::function<void(MetadataFileData&)>& modifier)
{
    const State before = known;
    bool isForeign = holdsForeign;
    MetadataFileData metadata;
    try {
        metadata = read(folder);
        isForeign = isForeign || known != before;
    } catch (const StorageError&) {
        metadata.version = MetadataFileData::currentVersion.toString();
    }
    modifier(metadata);
    metadata.lastModified = clock.now();
    metadata.deviceId = DeviceIdentifier::current();
    write(folder, metadata);
    holdsForeign = holdsForeign || isForeign;
    return known.stamp;
}

bool MetadataFile::hasForeignChange(const QString& folder)
{
    const QString path = StorageLocationManager::metadataPath(folder);
    if (holdsForeign || files.stamp(path) != known.stamp)
        return true;
    if (!known.stamp)
        return false; // there is none, as before
    try {
        return files.digest(path).digest != known.digest;
    } catch (const FileError&) {
        return true;
    }
}

} // namespace vellumry
