#include "models/JSONDecoder.h"

#include <QJsonDocument>
#include <simdjson.h>

#include <array>
#include <cmath>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vellumry {

namespace {

namespace dom = simdjson::dom;

constexpr size_t largestDocument = size_t{1} << 30;

/// Turns the parser's UTF-8, which is known to be valid, into texts that hold no spare memory.
class TextReader {
public:
    explicit TextReader(DatePrecision ofDates) : datePrecision(ofDates) {}

    QString text(std::string_view utf8)
    {
        if (utf8.empty())
            return QStringLiteral("");
        if (units.size() < utf8.size() + 16)
            units.resize(utf8.size() + 16);
        const char16_t* end = widen(utf8, units.data());
        return QString(reinterpret_cast<const QChar*>(units.data()), end - units.data());
    }

    /// Nothing when it is no date in the form of this document.
    [[nodiscard]] std::optional<Date> date(QByteArrayView utf8) const
    {
        return parseDate(utf8, datePrecision);
    }

    /// The same as text() for one that often equals the one before: such texts share their memory.
    QString repeatedText(std::string_view utf8)
    {
        if (utf8 != lastUtf8) {
            lastUtf8 = utf8;
            lastText = text(utf8);
        }
        return lastText;
    }

private:
    static char16_t* widen(std::string_view utf8, char16_t* out)
    {
        const auto* in = reinterpret_cast<const unsigned char*>(utf8.data());
        const unsigned char* const end = in + utf8.size();
        while (in != end) {
#if defined(__SSE2__)
            while (end - in >= 16) {
                const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
                if (_mm_movemask_epi8(block) != 0)
                    break;
                const __m128i zero = _mm_setzero_si128();
                _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(block, zero));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 8),
                                 _mm_unpackhi_epi8(block, zero));
                in += 16;
                out += 16;
            }
            const unsigned char* const blockEnd = end - in >= 16 ? in + 16 : end;
#else
            const unsigned char* const blockEnd = end;
#endif
            while (in < blockEnd)
                in = widenCharacter(in, out);
        }
        return out;
    }

    static const unsigned char* widenCharacter(const unsigned char* in, char16_t*& out)
    {
        const char32_t lead = in[0];
        if (lead < 0x80) {
            *out++ = static_cast<char16_t>(lead);
            return in + 1;
        }
        if (lead < 0xe0) {
            *out++ = static_cast<char16_t>((lead & 0x1f) << 6 | (in[1] & 0x3fu));
            return in + 2;
        }
        if (lead < 0xf0) {
            *out++ =
                static_cast<char16_t>((lead & 0x0f) << 12 | (in[1] & 0x3fu) << 6 | (in[2] & 0x3fu));
            return in + 3;
        }
        const char32_t c =
            (lead & 0x07) << 18 | (in[1] & 0x3fu) << 12 | (in[2] & 0x3fu) << 6 | (in[3] & 0x3fu);
        *out++ = QChar::highSurrogate(c);
        *out++ = QChar::lowSurrogate(c);
        return in + 4;
    }

    DatePrecision datePrecision;
    std::u16string units;
    std::string_view lastUtf8; ///< points into the document in hand
    QString lastText;
};

QString keyText(std::string_view key)
{
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

[[noreturn]] void failType(const char* expected, std::string_view key)
{
    throw DecodingError(QStringLiteral("expected ") + QLatin1StringView(expected), keyText(key));
}

/// The members of one object that a record knows, found in one walk over the object.
/// Keys come sorted from our own writer, so the search for the next starts where the last ended.
template <size_t N>
class Members {
public:
    using Keys = std::array<std::string_view, N>;

    Members(dom::element element, const Keys& sortedKeys) : keys(sortedKeys)
    {
        dom::object object;
        if (element.get(object) != simdjson::SUCCESS)
            throw DecodingError(QStringLiteral("expected an object"));
        size_t next = 0;
        for (const dom::key_value_pair member : object) {
            for (size_t step = 0; step < N; ++step) {
                const size_t i = next + step < N ? next + step : next + step - N;
                if (keys[i] == member.key) {
                    values[i] = member.value;
                    isPresent[i] = !member.value.is_null();
                    next = i + 1;
                    break;
                }
            }
        }
    }

    [[nodiscard]] bool has(size_t i) const { return isPresent[i]; }
    [[nodiscard]] std::string_view key(size_t i) const { return keys[i]; }

    [[nodiscard]] dom::element required(size_t i) const
    {
        if (!isPresent[i])
            throw DecodingError(QStringLiteral("missing"), keyText(keys[i]));
        return values[i];
    }

    [[nodiscard]] std::string_view text(size_t i) const
    {
        std::string_view utf8;
        if (required(i).get(utf8) != simdjson::SUCCESS)
            failType("a text", keys[i]);
        return utf8;
    }

    /// JSON knows one kind of number, so 3.0 is the integer 3; true is none.
    [[nodiscard]] qint64 integer(size_t i) const
    {
        const dom::element element = required(i);
        int64_t number = 0;
        if (element.get(number) == simdjson::SUCCESS)
            return number;
        double real = 0;
        constexpr double largestExact = 9007199254740992.0;
        if (element.is_double() && element.get(real) == simdjson::SUCCESS &&
            std::trunc(real) == real && std::abs(real) <= largestExact)
            return static_cast<qint64>(real);
        failType("an integer", keys[i]);
    }

    [[nodiscard]] bool boolean(size_t i) const
    {
        bool truth = false;
        if (required(i).get(truth) != simdjson::SUCCESS)
            failType("true or false", keys[i]);
        return truth;
    }

    [[nodiscard]] Date date(size_t i, const TextReader& reader) const
    {
        const std::string_view utf8 = text(i);
        const QByteArrayView bytes(utf8.data(), static_cast<qsizetype>(utf8.size()));
        if (const auto date = reader.date(bytes))
            return *date;
        throw DecodingError(QStringLiteral("无法解析日期字符串: ") + QString::fromUtf8(bytes),
                            keyText(keys[i]));
    }

    [[nodiscard]] dom::array array(size_t i) const
    {
        dom::array elements;
        if (required(i).get(elements) != simdjson::SUCCESS)
            failType("a list", keys[i]);
        return elements;
    }

    [[nodiscard]] dom::object object(size_t i) const
    {
        dom::object members;
        if (required(i).get(members) != simdjson::SUCCESS)
            failType("an object", keys[i]);
        return members;
    }

private:
    const Keys& keys;
    std::array<dom::element, N> values;
    std::array<bool, N> isPresent{};
};

/// Reads a list, telling in errors which element was wrong.
template <typename T, typename Read>
QList<T> readList(dom::array elements, std::string_view key, Read read)
{
    QList<T> list;
    list.reserve(static_cast<qsizetype>(elements.size()));
    for (const dom::element element : elements) {
        try {
            list.append(read(element));
        } catch (const DecodingError& error) {
            throw error.within(QStringLiteral("%1[%2]").arg(keyText(key)).arg(list.size()));
        }
    }
    return list;
}

template <typename Read>
auto readMember(dom::element element, std::string_view key, Read read)
{
    try {
        return read(element);
    } catch (const DecodingError& error) {
        throw error.within(keyText(key));
    }
}

QStringList readTexts(dom::array elements, std::string_view key, TextReader& reader)
{
    return readList<QString>(elements, key, [&](dom::element element) {
        std::string_view utf8;
        if (element.get(utf8) != simdjson::SUCCESS)
            throw DecodingError(QStringLiteral("expected a text"));
        return reader.text(utf8);
    });
}

QMap<QString, QString> readTextMap(dom::object object, std::string_view key, TextReader& reader)
{
    // A value that is no text is null until a later member of its key, if any, takes its place.
    QMap<QString, QString> map;
    for (const dom::key_value_pair member : object) {
        std::string_view utf8;
        const bool isText = member.value.get(utf8) == simdjson::SUCCESS;
        map.insert(reader.text(member.key), isText ? reader.text(utf8) : QString());
    }
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it->isNull())
            throw DecodingError(QStringLiteral("expected a text"), keyText(key) + u'.' + it.key());
    }
    return map;
}

// One function for each record. The order of the checks is the order in which errors are told.

Snippet readSnippet(dom::element element, TextReader& reader)
{
    enum Key {
        category,
        collection,
        content,
        createdAt,
        displayOrder,
        id,
        keywords,
        lastUsedAt,
        subtitle,
        title,
        updatedAt,
        usageCount,
        variables,
        keyCount
    };
    static constexpr Members<keyCount>::Keys keys{
        "category",   "collection", "content", "createdAt", "displayOrder", "id",       "keywords",
        "lastUsedAt", "subtitle",   "title",   "updatedAt", "usageCount",   "variables"};
    const Members<keyCount> members(element, keys);
    SnippetFields f;
    f.id = reader.text(members.text(id));
    f.title = reader.text(members.text(title));
    if (members.has(subtitle))
        f.subtitle = reader.text(members.text(subtitle));
    // "category" is the older name of "collection" and counts only in its absence.
    if (members.has(collection))
        f.collection = reader.repeatedText(members.text(collection));
    else if (members.has(category))
        f.collection = reader.repeatedText(members.text(category));
    else
        f.collection = QStringLiteral("Default");
    f.content = reader.text(members.text(content));
    if (members.has(keywords))
        f.keywords = readTexts(members.array(keywords), keys[keywords], reader);
    f.updatedAt = members.date(updatedAt, reader);
    f.createdAt = members.has(createdAt) ? members.date(createdAt, reader) : f.updatedAt;
    if (members.has(usageCount))
        f.usageCount = members.integer(usageCount);
    if (members.has(lastUsedAt))
        f.lastUsedAt = members.date(lastUsedAt, reader);
    if (members.has(displayOrder))
        f.displayOrder = members.integer(displayOrder);
    if (members.has(variables))
        f.variables = readTextMap(members.object(variables), keys[variables], reader);
    return Snippet(std::move(f));
}

Collection readCollection(dom::element element, TextReader& reader)
{
    enum Key { createdAt, displayOrder, id, name, keyCount };
    static constexpr Members<keyCount>::Keys keys{"createdAt", "displayOrder", "id", "name"};
    const Members<keyCount> members(element, keys);
    Collection collection;
    collection.id = reader.text(members.text(id));
    collection.name = reader.text(members.text(name));
    collection.displayOrder = members.integer(displayOrder);
    collection.createdAt = members.date(createdAt, reader);
    return collection;
}

SyncCollection readSyncCollection(dom::element element, TextReader& reader)
{
    enum Key { color, createdAt, id, name, keyCount };
    static constexpr Members<keyCount>::Keys keys{"color", "createdAt", "id", "name"};
    const Members<keyCount> members(element, keys);
    SyncCollection collection;
    collection.id = reader.text(members.text(id));
    collection.name = reader.text(members.text(name));
    if (members.has(color))
        collection.color = reader.text(members.text(color));
    collection.createdAt = members.date(createdAt, reader);
    return collection;
}

SyncSettings readSyncSettings(dom::element element)
{
    enum Key { syncAppSettings, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"syncAppSettings", "version"};
    const Members<keyCount> members(element, keys);
    SyncSettings settings;
    settings.version = members.integer(version);
    settings.syncAppSettings = members.boolean(syncAppSettings);
    return settings;
}

template <size_t N>
QList<Snippet> readSnippets(const Members<N>& members, size_t i, TextReader& reader)
{
    return readList<Snippet>(members.array(i), members.key(i),
                             [&](dom::element element) { return readSnippet(element, reader); });
}

template <size_t N>
std::optional<SyncSettings> readOptionalSettings(const Members<N>& members, size_t i)
{
    if (!members.has(i))
        return std::nullopt;
    return readMember(members.required(i), members.key(i), readSyncSettings);
}

SyncDataContent readSyncDataContent(dom::element element, TextReader& reader)
{
    enum Key { categoryColors, collections, snippets, keyCount };
    static constexpr Members<keyCount>::Keys keys{"categoryColors", "collections", "snippets"};
    const Members<keyCount> members(element, keys);
    SyncDataContent content;
    content.collections = readList<SyncCollection>(
        members.array(collections), keys[collections],
        [&](dom::element collection) { return readSyncCollection(collection, reader); });
    content.snippets = readSnippets(members, snippets, reader);
    content.categoryColors =
        readTextMap(members.object(categoryColors), keys[categoryColors], reader);
    return content;
}

VellumryData readVellumryData(dom::element element, TextReader& reader)
{
    enum Key { data, deviceId, lastModified, settings, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"data", "deviceId", "lastModified", "settings",
                                                  "version"};
    const Members<keyCount> members(element, keys);
    VellumryData library;
    library.version = reader.text(members.text(version));
    library.lastModified = members.date(lastModified, reader);
    library.deviceId = reader.text(members.text(deviceId));
    library.data = readMember(members.required(data), keys[data], [&](dom::element content) {
        return readSyncDataContent(content, reader);
    });
    library.settings = readOptionalSettings(members, settings);
    return library;
}

CollectionFileData readCollectionFileData(dom::element element, TextReader& reader)
{
    enum Key { collection, deviceId, lastModified, snippets, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"collection", "deviceId", "lastModified",
                                                  "snippets", "version"};
    const Members<keyCount> members(element, keys);
    CollectionFileData file;
    file.version = reader.text(members.text(version));
    file.lastModified = members.date(lastModified, reader);
    file.deviceId = reader.text(members.text(deviceId));
    file.collection =
        readMember(members.required(collection), keys[collection],
                   [&](dom::element head) { return readSyncCollection(head, reader); });
    file.snippets = readSnippets(members, snippets, reader);
    return file;
}

MetadataFileData readMetadataFileData(dom::element element, TextReader& reader)
{
    enum Key { collectionOrder, deviceId, lastModified, settings, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"collectionOrder", "deviceId", "lastModified",
                                                  "settings", "version"};
    const Members<keyCount> members(element, keys);
    MetadataFileData file;
    file.version = reader.text(members.text(version));
    file.lastModified = members.date(lastModified, reader);
    file.deviceId = reader.text(members.text(deviceId));
    file.collectionOrder = readTexts(members.array(collectionOrder), keys[collectionOrder], reader);
    file.settings = readOptionalSettings(members, settings);
    return file;
}

LegacyExportCollection readLegacyExportCollection(dom::element element, TextReader& reader)
{
    enum Key { color, displayOrder, id, name, snippets, keyCount };
    static constexpr Members<keyCount>::Keys keys{"color", "displayOrder", "id", "name",
                                                  "snippets"};
    const Members<keyCount> members(element, keys);
    LegacyExportCollection collection;
    if (members.has(id))
        collection.id = reader.text(members.text(id));
    collection.name = reader.text(members.text(name));
    if (members.has(displayOrder))
        collection.displayOrder = members.integer(displayOrder);
    if (members.has(color))
        collection.color = reader.text(members.text(color));
    collection.snippets = readSnippets(members, snippets, reader);
    return collection;
}

LegacyExportData readLegacyExportData(dom::element element, TextReader& reader)
{
    enum Key { collections, exportedAt, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"collections", "exportedAt", "version"};
    const Members<keyCount> members(element, keys);
    LegacyExportData file;
    if (members.has(version))
        file.version = reader.text(members.text(version));
    if (members.has(exportedAt))
        file.exportedAt = members.date(exportedAt, reader);
    file.collections = readList<LegacyExportCollection>(
        members.array(collections), keys[collections],
        [&](dom::element collection) { return readLegacyExportCollection(collection, reader); });
    return file;
}

ExportCollection readExportCollection(dom::element element, TextReader& reader)
{
    enum Key { color, displayOrder, id, name, snippets, keyCount };
    static constexpr Members<keyCount>::Keys keys{"color", "displayOrder", "id", "name",
                                                  "snippets"};
    const Members<keyCount> members(element, keys);
    ExportCollection collection;
    collection.id = reader.text(members.text(id));
    collection.name = reader.text(members.text(name));
    collection.displayOrder = members.integer(displayOrder);
    if (members.has(color))
        collection.color = reader.text(members.text(color));
    collection.snippets = readSnippets(members, snippets, reader);
    return collection;
}

ExportData readExportData(dom::element element, TextReader& reader)
{
    enum Key { collections, exportedAt, version, keyCount };
    static constexpr Members<keyCount>::Keys keys{"collections", "exportedAt", "version"};
    const Members<keyCount> members(element, keys);
    ExportData file;
    file.version = reader.text(members.text(version));
    file.exportedAt = members.date(exportedAt, reader);
    file.collections = readList<ExportCollection>(
        members.array(collections), keys[collections],
        [&](dom::element collection) { return readExportCollection(collection, reader); });
    return file;
}

DefaultCollection readDefaultCollection(dom::element element, TextReader& reader)
{
    enum Key { color, name, snippets, keyCount };
    static constexpr Members<keyCount>::Keys keys{"color", "name", "snippets"};
    const Members<keyCount> members(element, keys);
    DefaultCollection collection;
    collection.name = reader.text(members.text(name));
    collection.color = reader.text(members.text(color));
    collection.snippets = readList<
        DefaultSnippet>(members.array(snippets), keys[snippets], [&](dom::element snippet) {
        enum SnippetKey { content, title, snippetKeyCount };
        static constexpr Members<snippetKeyCount>::Keys snippetKeys{"content", "title"};
        const Members<snippetKeyCount> fields(snippet, snippetKeys);
        return DefaultSnippet{reader.text(fields.text(title)), reader.text(fields.text(content))};
    });
    return collection;
}

DefaultSnippetsContainer readDefaultSnippets(dom::element element, TextReader& reader)
{
    static constexpr Members<1>::Keys keys{"collections"};
    const Members<1> members(element, keys);
    return {readList<DefaultCollection>(members.array(0), keys[0], [&](dom::element collection) {
        return readDefaultCollection(collection, reader);
    })};
}

QList<Snippet> readSnippets(dom::element root, TextReader& reader)
{
    dom::array elements;
    if (root.get(elements) != simdjson::SUCCESS)
        throw DecodingError(QStringLiteral("expected a list"));
    return readList<Snippet>(elements, {},
                             [&](dom::element element) { return readSnippet(element, reader); });
}

template <typename T>
T readRecord(dom::element element, TextReader& reader)
{
    if constexpr (std::is_same_v<T, Snippet>)
        return readSnippet(element, reader);
    else if constexpr (std::is_same_v<T, Collection>)
        return readCollection(element, reader);
    else if constexpr (std::is_same_v<T, SyncCollection>)
        return readSyncCollection(element, reader);
    else if constexpr (std::is_same_v<T, SyncSettings>)
        return readSyncSettings(element);
    else if constexpr (std::is_same_v<T, SyncDataContent>)
        return readSyncDataContent(element, reader);
    else if constexpr (std::is_same_v<T, VellumryData>)
        return readVellumryData(element, reader);
    else if constexpr (std::is_same_v<T, CollectionFileData>)
        return readCollectionFileData(element, reader);
    else if constexpr (std::is_same_v<T, MetadataFileData>)
        return readMetadataFileData(element, reader);
    else if constexpr (std::is_same_v<T, LegacyExportCollection>)
        return readLegacyExportCollection(element, reader);
    else if constexpr (std::is_same_v<T, LegacyExportData>)
        return readLegacyExportData(element, reader);
    else if constexpr (std::is_same_v<T, ExportCollection>)
        return readExportCollection(element, reader);
    else if constexpr (std::is_same_v<T, ExportData>)
        return readExportData(element, reader);
    else if constexpr (std::is_same_v<T, QList<Snippet>>)
        return readSnippets(element, reader);
    else
        return readDefaultSnippets(element, reader);
}

/// The fast parser tells no place, so a damaged text is parsed once more by one that does.
DecodingError syntaxError(QByteArrayView bytes, simdjson::error_code code)
{
    QJsonParseError detail;
    (void)QJsonDocument::fromJson(QByteArray::fromRawData(bytes.data(), bytes.size()), &detail);
    if (detail.error != QJsonParseError::NoError)
        return DecodingError(QStringLiteral("invalid JSON at byte %1: %2")
                                 .arg(detail.offset)
                                 .arg(detail.errorString()));
    return DecodingError(QStringLiteral("invalid JSON: ") +
                         QString::fromUtf8(simdjson::error_message(code)));
}

} // namespace

struct JSONDecoder::State {
    explicit State(DatePrecision ofDates) : datePrecision(ofDates) {}

    DatePrecision datePrecision;
    dom::parser parser;
    dom::element root;
};

JSONDecoder::JSONDecoder(DatePrecision ofDates) : state(std::make_unique<State>(ofDates)) {}
JSONDecoder::JSONDecoder(JSONDecoder&& other) noexcept = default;
JSONDecoder& JSONDecoder::operator=(JSONDecoder&& other) noexcept = default;
JSONDecoder::~JSONDecoder() = default;

JSONDecoder JSONDecoder::vellumry()
{
    return JSONDecoder(DatePrecision::milliseconds);
}

JSONDecoder JSONDecoder::iso8601()
{
    return JSONDecoder(DatePrecision::seconds);
}

void JSONDecoder::parse(const PaddedBytes& bytes)
{
    static_assert(PaddedBytes::padding >= simdjson::SIMDJSON_PADDING);
    if (bytes.size() > largestDocument)
        throw DecodingError(QStringLiteral("larger than 1 GiB"));
    const bool hasMark = bytes.view().startsWith("\xef\xbb\xbf");
    const QByteArrayView text = bytes.view().sliced(hasMark ? 3 : 0);
    const simdjson::error_code code = state->parser
                                          .parse(reinterpret_cast<const uint8_t*>(text.data()),
                                                 static_cast<size_t>(text.size()), false)
                                          .get(state->root);
    if (code != simdjson::SUCCESS)
        throw syntaxError(text, code);
}

template <typename T>
T JSONDecoder::record()
{
    TextReader reader(state->datePrecision);
    return readRecord<T>(state->root, reader);
}

template <typename T>
T JSONDecoder::decode(const PaddedBytes& bytes)
{
    parse(bytes);
    return record<T>();
}

template Snippet JSONDecoder::decode(const PaddedBytes&);
template Collection JSONDecoder::decode(const PaddedBytes&);
template SyncCollection JSONDecoder::decode(const PaddedBytes&);
template SyncSettings JSONDecoder::decode(const PaddedBytes&);
template SyncDataContent JSONDecoder::decode(const PaddedBytes&);
template VellumryData JSONDecoder::decode(const PaddedBytes&);
template CollectionFileData JSONDecoder::decode(const PaddedBytes&);
template MetadataFileData JSONDecoder::decode(const PaddedBytes&);
template LegacyExportCollection JSONDecoder::decode(const PaddedBytes&);
template LegacyExportData JSONDecoder::decode(const PaddedBytes&);
template ExportCollection JSONDecoder::decode(const PaddedBytes&);
template ExportData JSONDecoder::decode(const PaddedBytes&);
template DefaultSnippetsContainer JSONDecoder::decode(const PaddedBytes&);
template QList<Snippet> JSONDecoder::decode(const PaddedBytes&);

template VellumryData JSONDecoder::record();
template CollectionFileData JSONDecoder::record();
template MetadataFileData JSONDecoder::record();
template LegacyExportData JSONDecoder::record();
template QList<Snippet> JSONDecoder::record();

} // namespace vellumry
