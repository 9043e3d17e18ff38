#include "storage/DataValidator.h"

#include "core/Log.h"
#include "models/CollectionFileName.h"
#include "models/Identifier.h"
#include "models/JSONDecoder.h"
#include "models/MetadataFileData.h"
#include "platform/DeviceIdentifier.h"
#include "storage/CollectionOrder.h"
#include "storage/DataFolder.h"
#include "storage/StorageLocationManager.h"

#include <QSet>
#include <QStringBuilder>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace vellumry {

namespace {

VellumryData library(SyncDataContent content, Date now)
{
    return {.version = VellumryData::currentVersion.toString(),
            .lastModified = now,
            .deviceId = DeviceIdentifier::current(),
            .data = std::move(content),
            .settings = std::nullopt};
}

/// The library that a single collection file makes.
VellumryData libraryOf(CollectionFileData file, Date now)
{
    SyncDataContent content;
    content.collections.append(std::move(file.collection));
    content.snippets = std::move(file.snippets);
    return library(std::move(content), now);
}

/// What was parsed, if it is such a record.
template <typename T>
std::optional<T> parsed(JSONDecoder& decoder)
{
    try {
        return decoder.record<T>();
    } catch (const DecodingError&) {
        return std::nullopt; // another shape, perhaps
    }
}

/// The library, if what was parsed is one of the two shapes that need a conversion.
std::optional<VellumryData> migrated(JSONDecoder& decoder, const Clock& clock)
{
    if (const auto legacy = parsed<LegacyExportData>(decoder))
        return DataValidator::migrateFromLegacy(*legacy, clock);
    if (const auto snippets = parsed<QList<Snippet>>(decoder))
        return DataValidator::migrateFromSnippetArray(*snippets, clock);
    return std::nullopt;
}

/// The collection file at the path; nothing when it cannot be read or is none.
std::optional<CollectionFileData> collectionFile(const QString& path, FileSystem& files,
                                                 JSONDecoder& decoder)
{
    try {
        return decoder.decode<CollectionFileData>(files.read(path).bytes);
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

} // namespace

DataValidator::ValidationResult DataValidator::validate(const QString& location, FileSystem& files,
                                                        const Clock& clock)
{
    if (!files.exists(location))
        return NotFound();
    if (!files.isFolder(location))
        return validateFile(location, files, clock);

    const QString metadataPath = StorageLocationManager::metadataPath(location);
    if (files.exists(metadataPath))
        return validateMultiFileFormat(location, metadataPath, files);
    const QString singlePath = legacyFilePath(location);
    if (files.exists(singlePath))
        return validateFile(singlePath, files, clock);

    QStringList names;
    try {
        names = files.list(location);
    } catch (const FileError&) {
        return NotFound();
    }
    JSONDecoder decoder = JSONDecoder::vellumry();
    for (const QString& name : std::as_const(names)) {
        const auto baseName = jsonFileBaseName(name);
        if (!baseName || baseName->startsWith(u'_'))
            continue;
        if (auto file = collectionFile(location % u'/' % name, files, decoder))
            return Valid{libraryOf(*std::move(file), clock.now())};
    }
    return NotFound();
}

DataValidator::ValidationResult DataValidator::validateFile(const QString& path, FileSystem& files,
                                                            const Clock& clock)
{
    try {
        return validateData(files.read(path).bytes, clock);
    } catch (const FileError& failure) {
        return Invalid{u"Cannot read file: " % failure.description()};
    }
}

DataValidator::ValidationResult DataValidator::validateMultiFileFormat(const QString& folder,
                                                                       const QString& metadataPath,
                                                                       FileSystem& files)
{
    const auto unreadable = [](const QString& description) {
        return Invalid{u"Cannot read metadata file: " % description};
    };
    JSONDecoder decoder = JSONDecoder::vellumry();
    MetadataFileData metadata;
    try {
        metadata = decoder.decode<MetadataFileData>(files.read(metadataPath).bytes);
    } catch (const FileError& failure) {
        return unreadable(failure.description());
    } catch (const DecodingError& failure) {
        return unreadable(failure.description());
    }

    QStringList names;
    try {
        names = files.list(folder);
    } catch (const FileError&) {
        // A folder that cannot be listed is one without collections.
    }
    SyncDataContent content;
    for (const QString& name : std::as_const(names)) {
        if (!baseNameOfCollectionFile(name))
            continue;
        if (auto file = collectionFile(folder % u'/' % name, files, decoder)) {
            content.collections.append(std::move(file->collection));
            content.snippets.append(std::move(file->snippets));
        }
    }
    arrangeByOrder(content.collections, metadata.collectionOrder, metadataPath);
    content.categoryColors = colorsByName(content.collections);
    return Valid{{.version = VellumryData::currentVersion.toString(),
                  .lastModified = metadata.lastModified,
                  .deviceId = metadata.deviceId,
                  .data = std::move(content),
                  .settings = metadata.settings}};
}

/// The order of the shapes is binding: a text may be more than one of them.
DataValidator::ValidationResult DataValidator::validateData(const PaddedBytes& bytes,
                                                            const Clock& clock)
{
    if (bytes.size() == 0)
        return Invalid{QStringLiteral("Data file is empty")};
    JSONDecoder decoder = JSONDecoder::vellumry();
    try {
        decoder.parse(bytes);
    } catch (const DecodingError& failure) {
        return Invalid{u"Invalid JSON: " % failure.description()};
    }
    if (auto data = parsed<VellumryData>(decoder))
        return validateVellumryData(*std::move(data));
    if (parsed<MetadataFileData>(decoder))
        return Invalid{QStringLiteral("This appears to be a metadata file. Please select the "
                                      "folder containing this file.")};
    if (auto file = parsed<CollectionFileData>(decoder))
        return Valid{libraryOf(*std::move(file), clock.now())};
    if (auto data = migrated(decoder, clock))
        return Valid{*std::move(data)};
    return Invalid{QStringLiteral("JSON format is not compatible with Vellumry")};
}

std::optional<VellumryData> DataValidator::singleFileLibrary(const PaddedBytes& bytes,
                                                             const Clock& clock)
{
    JSONDecoder decoder = JSONDecoder::vellumry();
    try {
        decoder.parse(bytes);
    } catch (const DecodingError&) {
        return std::nullopt;
    }
    auto data = parsed<VellumryData>(decoder);
    return data ? data : migrated(decoder, clock);
}

/// Another version is told in the log and rejects nothing.
DataValidator::ValidationResult DataValidator::validateVellumryData(VellumryData data)
{
    if (data.version != VellumryData::currentVersion)
        log(u"DataValidator",
            QString(u"数据版本 " % data.version % u"，当前版本 " % VellumryData::currentVersion));
    return Valid{std::move(data)};
}

VellumryData DataValidator::migrateFromLegacy(const LegacyExportData& legacy, const Clock& clock)
{
    const auto position = [](const LegacyExportCollection& collection) {
        return collection.displayOrder.value_or(std::numeric_limits<qint64>::max());
    };
    QList<LegacyExportCollection> collections = legacy.collections;
    std::stable_sort(collections.begin(), collections.end(),
                     [&](const auto& a, const auto& b) { return position(a) < position(b); });
    SyncDataContent content;
    for (const LegacyExportCollection& collection : std::as_const(collections)) {
        content.collections.append({.id = collection.id ? *collection.id : makeIdentifier(),
                                    .name = collection.name,
                                    .color = collection.color,
                                    .createdAt = clock.now()});
        if (collection.color)
            content.categoryColors.insert(collection.name, *collection.color);
        content.snippets.append(collection.snippets);
    }
    return library(std::move(content), clock.now());
}

VellumryData DataValidator::migrateFromSnippetArray(const QList<Snippet>& snippets,
                                                    const Clock& clock)
{
    QSet<QString> names;
    for (const Snippet& snippet : snippets)
        names.insert(snippet.collection());
    SyncDataContent content;
    content.snippets = snippets;
    for (const QString& name : std::as_const(names))
        content.collections.append({.id = makeIdentifier(),
                                    .name = name,
                                    .color = std::nullopt,
                                    .createdAt = clock.now()});
    return library(std::move(content), clock.now());
}

} // namespace vellumry
