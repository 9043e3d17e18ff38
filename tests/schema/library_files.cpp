// library_files write FOLDER: writes files of each kind, as full and as sparse as they come.
// library_files read: answers each line "KIND TEXT" of the input, TEXT being a file in one line,
// with "yes" when the program can read it as such a file, otherwise with "no".

#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"

#include <QFile>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

using namespace vellumry;
using namespace Qt::StringLiterals;

const Date written = std::chrono::sys_days(std::chrono::year(2026) / 3 / 9) +
                     std::chrono::hours(14) + std::chrono::milliseconds(123);

Snippet fullSnippet()
{
    return Snippet({.id = u"5B0E9B1C-3C1E-4B53-9E0B-0C7D1E5E7B11"_s,
                    .title = u"Letter \"A\"\n"_s,
                    .subtitle = u"éñ 中文 😀"_s,
                    .collection = u"Mail"_s,
                    .content = u"Dear {{name}},\t\u0001"_s,
                    .keywords = {u"mail"_s, u""_s},
                    .createdAt = written,
                    .updatedAt = written,
                    .usageCount = 7,
                    .lastUsedAt = written,
                    .displayOrder = -1,
                    .variables = {{u"name"_s, u"Ada"_s}, {u""_s, u""_s}}});
}

Snippet sparseSnippet()
{
    SnippetFields fields;
    fields.id = u"b"_s;
    fields.createdAt = written;
    fields.updatedAt = written;
    return Snippet(fields);
}

bool write(const QString& path, QByteArrayView text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.data(), text.size()) == text.size();
}

bool writeSamples(const QString& folder)
{
    CollectionFileData collection{
        .version = CollectionFileData::currentVersion.toString(),
        .lastModified = written,
        .deviceId = u"machine"_s,
        .collection = {.id = u"M"_s, .name = u"Mail"_s, .color = u"blue"_s, .createdAt = written},
        .snippets = {fullSnippet(), sparseSnippet()}};
    MetadataFileData metadata{.version = MetadataFileData::currentVersion.toString(),
                              .lastModified = written,
                              .deviceId = u"machine"_s,
                              .collectionOrder = {u"M"_s, u"N"_s},
                              .settings = SyncSettings{.version = 1, .syncAppSettings = true}};
    ExportData backup{.version = ExportData::currentVersion.toString(),
                      .exportedAt = written,
                      .collections = {{.id = u"M"_s,
                                       .name = u"Mail"_s,
                                       .displayOrder = 1,
                                       .color = u"#178B9A"_s,
                                       .snippets = {fullSnippet(), sparseSnippet()}},
                                      {.id = u"N"_s, .name = u"Notes"_s}}};
    JSONEncoder stored = JSONEncoder::vellumry();
    JSONEncoder exported = JSONEncoder::iso8601();
    if (!write(folder + u"/collection-full.json"_s, stored.encode(collection)) ||
        !write(folder + u"/metadata-full.json"_s, stored.encode(metadata)) ||
        !write(folder + u"/backup-full.json"_s, exported.encode(backup)))
        return false;
    collection.collection.color.reset();
    collection.snippets.clear();
    metadata.collectionOrder.clear();
    metadata.settings.reset();
    backup.collections.clear();
    return write(folder + u"/collection-sparse.json"_s, stored.encode(collection)) &&
           write(folder + u"/metadata-sparse.json"_s, stored.encode(metadata)) &&
           write(folder + u"/backup-sparse.json"_s, exported.encode(backup));
}

template <typename T>
bool decodes(JSONDecoder decoder, QByteArrayView text)
{
    try {
        (void)decoder.decode<T>(text);
        return true;
    } catch (const DecodingError&) {
        return false;
    }
}

bool canRead(const std::string& kind, QByteArrayView text)
{
    if (kind == "collection")
        return decodes<CollectionFileData>(JSONDecoder::vellumry(), text);
    if (kind == "metadata")
        return decodes<MetadataFileData>(JSONDecoder::vellumry(), text);
    if (kind == "backup")
        return decodes<ExportData>(JSONDecoder::iso8601(), text);
    return decodes<DefaultSnippetsContainer>(JSONDecoder::vellumry(), text);
}

void answer()
{
    for (std::string kind, text; std::cin >> kind && std::getline(std::cin, text);)
        std::puts(canRead(kind, QByteArrayView(text)) ? "yes" : "no");
}

} // namespace

int main(int argc, char** argv)
{
    const std::string task = argc > 1 ? argv[1] : "";
    if (task == "write" && argc == 3)
        return writeSamples(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    if (task != "read")
        return 2;
    answer();
    return 0;
}
