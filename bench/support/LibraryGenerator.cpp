#include "support/LibraryGenerator.h"

#include "core/PaddedBytes.h"
#include "models/CollectionFileName.h"
#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <random>
#include <stdexcept>
#include <vector>

namespace vellumry::bench {

namespace {

using namespace Qt::StringLiterals;

constexpr int collectionCount = 50;
constexpr int vocabularySize = 3000;
constexpr double medianContent = 300;
constexpr double sigmaContent = 0.9;
constexpr qsizetype longestContent = 20000;
const Date firstDay{std::chrono::sys_days{std::chrono::year{2024} / 1 / 1}};

/// The standard's generator, which is the same everywhere.
class Random {
public:
    explicit Random(unsigned seed) : engine(seed) {}

    [[nodiscard]] double fraction() { return static_cast<double>(engine() >> 11) * 0x1p-53; }
    [[nodiscard]] int below(int limit) { return static_cast<int>(fraction() * limit); }
    [[nodiscard]] double normal()
    {
        constexpr double pi = 3.14159265358979323846;
        return std::sqrt(-2 * std::log(1 - fraction())) * std::cos(2 * pi * fraction());
    }

private:
    std::mt19937_64 engine;
};

QStringList makeVocabulary()
{
    constexpr std::array<QStringView, 24> starts{
        u"b", u"br", u"c", u"cl", u"d", u"f", u"g",  u"gr", u"h",  u"j", u"k", u"l",
        u"m", u"n",  u"p", u"pr", u"r", u"s", u"st", u"t",  u"tr", u"v", u"w", u"z"};
    constexpr std::array<QStringView, 8> vowels{u"a", u"e", u"i", u"o", u"u", u"ea", u"io", u"ou"};
    constexpr std::array<QStringView, 10> ends{u"", u"n", u"r", u"s",  u"t",
                                               u"", u"l", u"m", u"nd", u"ck"};
    Random random(1);
    QStringList words;
    QSet<QString> seen;
    while (words.size() < vocabularySize) {
        QString word;
        for (int syllables = 1 + random.below(3); syllables > 0; --syllables) {
            word += starts[static_cast<size_t>(random.below(starts.size()))];
            word += vowels[static_cast<size_t>(random.below(vowels.size()))];
            word += ends[static_cast<size_t>(random.below(ends.size()))];
        }
        if (word.size() >= 3 && !seen.contains(word)) {
            seen.insert(word);
            words.append(word);
        }
    }
    return words;
}

/// Sums of weights, for drawing by weight.
class WeightedChoice {
public:
    template <typename Weight>
    WeightedChoice(int count, Weight weight)
    {
        double sum = 0;
        for (int i = 0; i < count; ++i)
            sums.push_back(sum += weight(i));
    }

    [[nodiscard]] qsizetype draw(Random& random) const
    {
        const double value = random.fraction() * sums.back();
        return std::upper_bound(sums.begin(), sums.end() - 1, value) - sums.begin();
    }

private:
    std::vector<double> sums;
};

enum class Script { ascii, chinese, accented, emoji };

Script drawScript(Random& random)
{
    const double value = random.fraction();
    return value < 0.85   ? Script::ascii
           : value < 0.93 ? Script::chinese
           : value < 0.98 ? Script::accented
                          : Script::emoji;
}

class Writer {
public:
    Writer() : words(vocabularySize, [](int i) { return 1.0 / (i + 1); }) {}

    [[nodiscard]] QString word(Random& random) const
    {
        return LibraryGenerator::vocabulary()[words.draw(random)];
    }

    /// Words of at least `size` bytes together.
    [[nodiscard]] QString text(Random& random, qsizetype size, Script script) const
    {
        QString result;
        qsizetype bytes = 0;
        while (bytes < size) {
            QString next = word(random);
            qsizetype nextBytes = next.size();
            if (random.below(8) == 0)
                next[0] = next[0].toUpper();
            if (script == Script::chinese && random.below(2) == 0) {
                next.clear();
                for (int i = 2 + random.below(4); i > 0; --i)
                    next += QChar(0x4e00 + random.below(3000));
                nextBytes = 3 * next.size();
            } else if (script == Script::accented && random.below(3) == 0) {
                next += QStringView(u"éèüößñçåêî")[random.below(10)];
                nextBytes += 2;
            } else if (script == Script::emoji && random.below(10) == 0) {
                next = QChar::fromUcs4(U'\U0001F600' + static_cast<char32_t>(random.below(64)))
                           .
                           operator QStringView()
                           .toString();
                nextBytes = 4;
            }
            result += next;
            result += random.below(12) == 0 ? u'\n' : u' ';
            bytes += nextBytes + 1;
        }
        return result.trimmed();
    }

private:
    WeightedChoice words;
};

Date dateIn(Random& random, int days)
{
    return firstDay + std::chrono::milliseconds(
                          static_cast<qint64>(random.fraction() * days * 24 * 3600 * 1000));
}

QString identifier(Random& random)
{
    QString id;
    for (const int digits : {8, 4, 4, 4, 12}) {
        if (!id.isEmpty())
            id += u'-';
        for (int i = 0; i < digits; ++i)
            id += QStringView(u"0123456789ABCDEF")[random.below(16)];
    }
    return id;
}

Snippet makeSnippet(Random& random, const Writer& writer, const QString& collection)
{
    const Script script = drawScript(random);
    const double size = medianContent * std::exp(sigmaContent * random.normal());
    SnippetFields fields;
    fields.id = identifier(random);
    fields.title = writer.text(random, 8 + random.below(24), script);
    fields.title.replace(u'\n', u' ');
    fields.subtitle = writer.text(random, random.below(60), script);
    fields.collection = collection;
    fields.content =
        writer.text(random, std::min(static_cast<qsizetype>(size), longestContent), script) +
        u"\nend."_s;
    for (int i = random.below(4); i > 0; --i)
        fields.keywords.append(writer.word(random));
    fields.createdAt = dateIn(random, 365);
    fields.updatedAt = fields.createdAt + (dateIn(random, 365) - firstDay);
    if (random.below(3) == 0) {
        fields.usageCount = 1 + random.below(200);
        fields.lastUsedAt = fields.updatedAt + (dateIn(random, 60) - firstDay);
    }
    if (random.below(10) == 0) {
        const QString name = writer.word(random);
        fields.content.prepend(u"{{"_s + name + u"}} "_s);
        fields.variables.insert(name, writer.word(random));
    }
    return Snippet(std::move(fields));
}

qint64 writeFile(const QString& path, QByteArrayView bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(bytes.data(), bytes.size()) != bytes.size() || !file.flush())
        throw std::runtime_error("cannot write " + path.toStdString());
    return bytes.size();
}

} // namespace

const QStringList& LibraryGenerator::vocabulary()
{
    static const QStringList words = makeVocabulary();
    return words;
}

VellumryData LibraryGenerator::generate(int count)
{
    Random random(2);
    const Writer writer;
    const WeightedChoice collections(collectionCount, [](int k) { return 1.0 / (k + 4); });

    VellumryData library;
    library.version = VellumryData::currentVersion.toString();
    library.lastModified = firstDay;
    library.deviceId = u"bench"_s;
    for (int k = 0; k < collectionCount; ++k) {
        QString name = writer.word(random) + u" %1"_s.arg(k + 1);
        name[0] = name[0].toUpper();
        library.data.collections.append({identifier(random), name, u"#3A7BD5"_s, firstDay});
    }
    library.data.snippets.reserve(count);
    for (int i = 0; i < count; ++i) {
        // The name's text is shared, as it is between the records of a loaded file.
        const QString& name = library.data.collections[collections.draw(random)].name;
        library.data.snippets.append(makeSnippet(random, writer, name));
    }
    return library;
}

QList<CollectionFileData> LibraryGenerator::collectionFiles(const VellumryData& library)
{
    QList<CollectionFileData> files;
    QHash<QString, qsizetype> fileOf;
    for (const SyncCollection& collection : library.data.collections) {
        fileOf.insert(collection.name, files.size());
        files.append({CollectionFileData::currentVersion.toString(),
                      library.lastModified,
                      library.deviceId,
                      collection,
                      {}});
    }
    for (const Snippet& snippet : library.data.snippets)
        files[fileOf.value(snippet.collection())].snippets.append(snippet);
    return files;
}

QList<CollectionFileData> LibraryGenerator::loadedFiles(int count)
{
    std::vector<PaddedBytes> encoded;
    {
        JSONEncoder encoder = JSONEncoder::vellumry();
        for (const CollectionFileData& file : collectionFiles(generate(count)))
            encoded.emplace_back(encoder.encode(file));
    }
    JSONDecoder decoder = JSONDecoder::vellumry();
    QList<CollectionFileData> loaded;
    for (const PaddedBytes& bytes : encoded)
        loaded.append(decoder.decode<CollectionFileData>(bytes));
    return loaded;
}

qint64 LibraryGenerator::writeFolder(int count, const QString& folder)
{
    const QDir directory(folder);
    if (!directory.mkpath(u"."_s))
        throw std::runtime_error("cannot make " + folder.toStdString());
    const VellumryData library = generate(count);
    JSONEncoder encoder = JSONEncoder::vellumry();
    qint64 bytes = 0;
    MetadataFileData metadata{MetadataFileData::currentVersion.toString(),
                              library.lastModified,
                              library.deviceId,
                              {},
                              {}};
    for (const CollectionFileData& file : collectionFiles(library)) {
        const QString name = collectionFileBaseName(file.collection.name) + u".json"_s;
        bytes += writeFile(directory.filePath(name), encoder.encode(file));
        metadata.collectionOrder.append(file.collection.id);
    }
    return bytes + writeFile(directory.filePath(u"_metadata.json"_s), encoder.encode(metadata));
}

} // namespace vellumry::bench
