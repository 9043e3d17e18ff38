#include "models/JSONEncoder.h"

namespace vellumry {

namespace {

// Each function writes its keys in sorted order, as the files show them.
void write(JSONWriter& out, const Snippet& snippet);
void write(JSONWriter& out, const SyncCollection& collection);
void write(JSONWriter& out, const SyncSettings& settings);
void write(JSONWriter& out, const SyncDataContent& content);
void write(JSONWriter& out, const LegacyExportCollection& collection);
void write(JSONWriter& out, const ExportCollection& collection);

void write(JSONWriter& out, const QString& text)
{
    out.value(text);
}

void write(JSONWriter& out, qint64 number)
{
    out.value(number);
}

void write(JSONWriter& out, Date date)
{
    out.value(date);
}

void write(JSONWriter& out, const QMap<QString, QString>& map)
{
    out.beginObject();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        out.key(it.key());
        out.value(it.value());
    }
    out.endObject();
}

template <typename T>
void write(JSONWriter& out, const QList<T>& list)
{
    out.beginArray();
    for (const T& element : list)
        write(out, element);
    out.endArray();
}

void write(JSONWriter& out, const QList<Snippet>& list)
{
    out.beginArray();
    for (qsizetype i = 0; i < list.size(); ++i) {
        prefetchFields(list, i);
        write(out, list[i]);
        out.drain();
    }
    out.endArray();
}

template <size_t size, typename T>
void member(JSONWriter& out, const char (&key)[size], const T& value)
{
    out.key(key);
    write(out, value);
}

template <size_t size, typename T>
void member(JSONWriter& out, const char (&key)[size], const std::optional<T>& value)
{
    if (value)
        member(out, key, *value);
}

void write(JSONWriter& out, const Snippet& snippet)
{
    const SnippetFields& f = snippet.fields();
    out.beginObject();
    member(out, "collection", f.collection);
    member(out, "content", f.content);
    member(out, "createdAt", f.createdAt);
    member(out, "displayOrder", f.displayOrder);
    member(out, "id", f.id);
    member(out, "keywords", f.keywords);
    member(out, "lastUsedAt", f.lastUsedAt);
    member(out, "subtitle", f.subtitle);
    member(out, "title", f.title);
    member(out, "updatedAt", f.updatedAt);
    member(out, "usageCount", f.usageCount);
    member(out, "variables", f.variables);
    out.endObject();
}

void write(JSONWriter& out, const Collection& collection)
{
    out.beginObject();
    member(out, "createdAt", collection.createdAt);
    member(out, "displayOrder", collection.displayOrder);
    member(out, "id", collection.id);
    member(out, "name", collection.name);
    out.endObject();
}

void write(JSONWriter& out, const SyncCollection& collection)
{
    out.beginObject();
    member(out, "color", collection.color);
    member(out, "createdAt", collection.createdAt);
    member(out, "id", collection.id);
    member(out, "name", collection.name);
    out.endObject();
}

void write(JSONWriter& out, const SyncSettings& settings)
{
    out.beginObject();
    out.key("syncAppSettings");
    out.value(settings.syncAppSettings);
    member(out, "version", settings.version);
    out.endObject();
}

void write(JSONWriter& out, const SyncDataContent& content)
{
    out.beginObject();
    member(out, "categoryColors", content.categoryColors);
    member(out, "collections", content.collections);
    member(out, "snippets", content.snippets);
    out.endObject();
}

void write(JSONWriter& out, const VellumryData& library)
{
    out.beginObject();
    member(out, "data", library.data);
    member(out, "deviceId", library.deviceId);
    member(out, "lastModified", library.lastModified);
    member(out, "settings", library.settings);
    member(out, "version", library.version);
    out.endObject();
}

void write(JSONWriter& out, const CollectionFileData& file)
{
    out.beginObject();
    member(out, "collection", file.collection);
    member(out, "deviceId", file.deviceId);
    member(out, "lastModified", file.lastModified);
    member(out, "snippets", file.snippets);
    member(out, "version", file.version);
    out.endObject();
}

void write(JSONWriter& out, const MetadataFileData& file)
{
    out.beginObject();
    member(out, "collectionOrder", file.collectionOrder);
    member(out, "deviceId", file.deviceId);
    member(out, "lastModified", file.lastModified);
    member(out, "settings", file.settings);
    member(out, "version", file.version);
    out.endObject();
}

void write(JSONWriter& out, const LegacyExportCollection& collection)
{
    out.beginObject();
    member(out, "color", collection.color);
    member(out, "displayOrder", collection.displayOrder);
    member(out, "id", collection.id);
    member(out, "name", collection.name);
    member(out, "snippets", collection.snippets);
    out.endObject();
}

void write(JSONWriter& out, const LegacyExportData& file)
{
    out.beginObject();
    member(out, "collections", file.collections);
    member(out, "exportedAt", file.exportedAt);
    member(out, "version", file.version);
    out.endObject();
}

void write(JSONWriter& out, const ExportCollection& collection)
{
    out.beginObject();
    member(out, "color", collection.color);
    member(out, "displayOrder", collection.displayOrder);
    member(out, "id", collection.id);
    member(out, "name", collection.name);
    member(out, "snippets", collection.snippets);
    out.endObject();
}

void write(JSONWriter& out, const ExportData& file)
{
    out.beginObject();
    member(out, "collections", file.collections);
    member(out, "exportedAt", file.exportedAt);
    member(out, "version", file.version);
    out.endObject();
}

template <typename T>
QByteArrayView encodeWith(JSONWriter& writer, const T& record)
{
    writer.clear();
    write(writer, record);
    return writer.bytes();
}

} // namespace

QByteArrayView JSONEncoder::encode(const Snippet& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const Collection& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const SyncCollection& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const SyncSettings& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const SyncDataContent& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const VellumryData& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const CollectionFileData& record)
{
    return encodeWith(writer, record);
}
void JSONEncoder::encode(const CollectionFileData& record, const ByteSink& sink)
{
    writer.clear(&sink);
    write(writer, record);
    writer.drain();
    if (const QByteArrayView rest = writer.bytes(); !rest.isEmpty())
        sink(rest);
}
QByteArrayView JSONEncoder::encode(const MetadataFileData& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const LegacyExportCollection& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const LegacyExportData& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const ExportCollection& record)
{
    return encodeWith(writer, record);
}
QByteArrayView JSONEncoder::encode(const ExportData& record)
{
    return encodeWith(writer, record);
}

} // namespace vellumry
