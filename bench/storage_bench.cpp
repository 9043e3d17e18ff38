// Loading, validating, encoding, writing, saving and moving libraries of 1,000, 10,000 and 100,000
// snippets, and looking for conflict copies, each set against what the machine can do at best, or
// against the obvious way, in the same run.

#include "core/Log.h"
#include "library/LocationChange.h"
#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"
#include "palette/FuzzySearchService.h"
#include "storage/DataValidator.h"
#include "support/LibraryGenerator.h"
#include "support/Ratio.h"
#include "support/World.h"
#include "sync/ConflictDetectionService.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <simdjson.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <malloc.h>
#include <optional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <variant>

namespace vellumry::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int repetitions = 9;

void check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "storage_bench: %s\n", what);
    std::exit(1);
}

QStringList collectionFiles(const QString& folder)
{
    QStringList paths;
    for (const QString& name : QDir(folder).entryList({QStringLiteral("*.json")}, QDir::Files)) {
        if (name != QLatin1StringView("_metadata.json"))
            paths.append(folder + u'/' + name);
    }
    return paths;
}

/// Runs `work` in a process of its own, whose heap is fresh, and returns the seconds it took.
double coldSeconds(const std::function<void()>& work)
{
    int ends[2];
    check(pipe(ends) == 0, "no pipe");
    const pid_t child = fork();
    if (child == 0) {
        const auto start = Clock::now();
        work();
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        check(write(ends[1], &seconds, sizeof seconds) == sizeof seconds, "no answer");
        _exit(0);
    }
    double seconds = 0;
    check(read(ends[0], &seconds, sizeof seconds) == sizeof seconds, "a measured process failed");
    close(ends[0]);
    close(ends[1]);
    waitpid(child, nullptr, 0);
    return seconds;
}

std::vector<double> coldMedians(const std::vector<std::function<void()>>& works)
{
    std::vector<std::vector<double>> times(works.size());
    for (int turn = 0; turn < repetitions; ++turn) {
        for (size_t i = 0; i < works.size(); ++i) {
            const size_t which = (i + static_cast<size_t>(turn)) % works.size();
            times[which].push_back(coldSeconds(works[which]));
        }
    }
    std::vector<double> medians;
    medians.reserve(times.size());
    for (const auto& values : times)
        medians.push_back(median(values));
    return medians;
}

PaddedBytes readWhole(const QString& path)
{
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    const off_t size = lseek(file, 0, SEEK_END);
    PaddedBytes bytes(static_cast<size_t>(size));
    check(pread(file, bytes.data(), bytes.size(), 0) == size, "cannot read");
    close(file);
    return bytes;
}

void readAndParse(const QStringList& paths)
{
    simdjson::dom::parser parser;
    for (const QString& path : paths) {
        const PaddedBytes bytes = readWhole(path);
        const auto document =
            parser.parse(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), false);
        check(document.error() == simdjson::SUCCESS, "cannot parse");
    }
}

/// The obvious way to load with Qt alone.
QList<Snippet> loadWithQt(const QStringList& paths)
{
    const auto date = [](const QJsonValue& value) {
        const QDateTime time = QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
        return Date(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
    };
    QList<Snippet> snippets;
    for (const QString& path : paths) {
        QFile file(path);
        check(file.open(QIODevice::ReadOnly), "cannot open");
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        for (const auto& value : root.value(QLatin1StringView("snippets")).toArray()) {
            const QJsonObject object = value.toObject();
            const auto text = [&object](const char* key) {
                return object.value(QLatin1StringView(key)).toString();
            };
            SnippetFields fields;
            fields.id = text("id");
            fields.title = text("title");
            fields.subtitle = text("subtitle");
            fields.collection = text("collection");
            fields.content = text("content");
            for (const auto& keyword : object.value(QLatin1StringView("keywords")).toArray())
                fields.keywords.append(keyword.toString());
            fields.createdAt = date(object.value(QLatin1StringView("createdAt")));
            fields.updatedAt = date(object.value(QLatin1StringView("updatedAt")));
            fields.usageCount = object.value(QLatin1StringView("usageCount")).toInteger();
            const QJsonObject variables = object.value(QLatin1StringView("variables")).toObject();
            for (auto it = variables.begin(); it != variables.end(); ++it)
                fields.variables.insert(it.key(), it.value().toString());
            snippets.append(Snippet(std::move(fields)));
        }
    }
    return snippets;
}

void measureLoad(int count)
{
    World world(count);
    const QStringList paths = collectionFiles(world.folder());
    readAndParse(paths); // into the page cache
    const std::vector<double> times =
        coldMedians({[&] { check(world.storage.loadFullData().has_value(), "cannot load"); },
                     [&] { readAndParse(paths); },
                     [&] { check(!loadWithQt(paths).empty(), "cannot load with Qt"); }});
    printTimes(
        {"cold load of the folder", count, times[0], "read + simdjson DOM parse", times[1], 4.0});
    printTimes({"cold load of the folder", count, times[0], "QJsonDocument and QDateTime", times[2],
                0.25});
}

void measureEncode(int count)
{
    const QList<CollectionFileData> files = LibraryGenerator::loadedFiles(count);
    QByteArray all;
    JSONEncoder encoder = JSONEncoder::vellumry();
    for (const CollectionFileData& file : files)
        all.append(encoder.encode(file));
    QByteArray copy(all.size(), Qt::Uninitialized);
    const std::vector<double> times = medianTimes(
        {{[&] {
              for (const CollectionFileData& file : files)
                  keep(encoder.encode(file));
          },
          {}},
         {[&] {
              std::memcpy(copy.data(), all.constData(), static_cast<size_t>(all.size()));
              keep(copy);
          },
          {}}});
    printTimes(
        {"encode the whole library", count, times[0], "memcpy of the bytes", times[1], 14.0});
}

/// The least that an atomic write can be.
void writeByHand(const QString& folder, const QString& name, const QByteArray& bytes)
{
    const QByteArray path = QFile::encodeName(folder + u'/' + name);
    const QByteArray temporary = QFile::encodeName(folder + QStringLiteral("/.by-hand"));
    const int file = open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    check(write(file, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size(),
          "cannot write");
    check(fdatasync(file) == 0, "cannot flush");
    close(file);
    check(rename(temporary.constData(), path.constData()) == 0, "cannot rename");
    const int directory =
        open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    check(fsync(directory) == 0, "cannot flush the folder");
    close(directory);
}

void measureWrite()
{
    const QTemporaryDir directory;
    const QString ours = directory.filePath(QStringLiteral("ours.json"));
    for (const int kilobytes : {4, 40, 180, 1800, 18000}) {
        const QByteArray bytes(qsizetype{kilobytes} * 1000, 'x');
        const std::vector<double> times = medianTimes(
            {{[&] { FileSystem::local().write(ours, bytes); }, [] {}},
             {[&] { writeByHand(directory.path(), QStringLiteral("by-hand.json"), bytes); },
              [] {}}},
            25);
        printTimes({"atomic write of " + std::to_string(kilobytes) + " KB", 0, times[0],
                    "open + write + fdatasync + rename + fsync of the folder", times[1], 1.3});
    }
}

/// The snippets of the collection at `rank` when collections are ordered by size.
QString collectionOfRank(const QList<CollectionFileData>& files, double rank)
{
    QList<CollectionFileData> bySize = files;
    std::sort(bySize.begin(), bySize.end(),
              [](const auto& a, const auto& b) { return a.snippets.size() < b.snippets.size(); });
    const auto index = static_cast<qsizetype>(rank * static_cast<double>(bySize.size() - 1));
    return bySize[index].collection.name;
}

void measureSave(int count, const char* which, double rank, double goal)
{
    World world(count);
    const auto loaded = world.storage.loadFullData();
    check(loaded.has_value(), "cannot load");
    const QList<CollectionFileData> files = LibraryGenerator::collectionFiles(*loaded);
    const QString collection = collectionOfRank(files, rank);
    const auto file = std::find_if(files.begin(), files.end(), [&](const auto& candidate) {
        return candidate.collection.name == collection;
    });
    const QString id = file->snippets.first().id();
    MetadataFileData metadata;
    for (const CollectionFileData& each : files)
        metadata.collectionOrder.append(each.collection.id);

    // Settles the stamps of the files, as the seconds between two copies do.
    usleep(50'000);
    JSONEncoder encoder = JSONEncoder::vellumry();
    const std::vector<double> times = medianTimes(
        {{[&] { check(world.storage.incrementUsage(id), "cannot save"); }, [] {}},
         {[&] {
              FileSystem::local().write(world.directory.filePath(QStringLiteral("limit.json")),
                                        encoder.encode(*file));
              FileSystem::local().write(world.directory.filePath(QStringLiteral("limit-meta.json")),
                                        encoder.encode(metadata));
          },
          [] {}}},
        15);
    printTimes({std::string("save after one snippet changed, ") + which, count, times[0],
                "encode + atomic write of that file and the metadata file", times[1], goal});
}

/// The first letter of the first content moves on, so that each file differs from the one before.
void changeFile(CollectionFileData& file, const QString& path)
{
    QString content = file.snippets[0].content();
    content[0] = content[0] == u'a' ? u'b' : u'a';
    file.snippets[0].setContent(content);
    JSONEncoder encoder = JSONEncoder::vellumry();
    FileSystem::local().write(path, encoder.encode(file));
}

/// What stands between the end of the quiet time after a foreign change and the library.
void measureReload(int count, const char* which, double rank, std::optional<double> goal)
{
    World world(count);
    const auto loaded = world.storage.loadFullData();
    check(loaded.has_value(), "cannot load");
    const QList<CollectionFileData> files = LibraryGenerator::collectionFiles(*loaded);
    const QString collection = collectionOfRank(files, rank);
    CollectionFileData file = *std::find_if(files.begin(), files.end(), [&](const auto& candidate) {
        return candidate.collection.name == collection;
    });
    const QStringList paths = collectionFiles(world.folder());
    const QString path = *std::find_if(paths.begin(), paths.end(), [&](const QString& candidate) {
        return JSONDecoder::vellumry()
                   .decode<CollectionFileData>(readWhole(candidate))
                   .collection.id == file.collection.id;
    });
    std::optional<CollectionFileData> decoded;
    const auto change = [&] {
        changeFile(file, path);
        usleep(50'000); // settles the stamps, as the quiet time does
    };
    const std::vector<double> times =
        medianTimes({{[&] { world.storage.reloadFromDisk(); }, change},
                     {[&] {
                          decoded = JSONDecoder::vellumry().decode<CollectionFileData>(
                              FileSystem::local().read(path).bytes);
                      },
                      change}},
                    15);
    printTimes({std::string("foreign change to reloaded library, ") + which, count, times[0],
                "read + decode of that file", times[1], goal});
}

void measureValidate(int count)
{
    World world(count);
    readAndParse(collectionFiles(world.folder())); // into the page cache
    std::optional<DataValidator::ValidationResult> verdict;
    const auto validate = [&] {
        verdict = DataValidator::validate(world.folder());
        check(std::holds_alternative<DataValidator::Valid>(*verdict), "not valid");
    };
    // Both end with the library in memory; to free it again takes about half as long as to load it.
    const std::vector<double> times = coldMedians(
        {validate, [&] { check(world.storage.loadFullData().has_value(), "cannot load"); },
         [&] {
             validate();
             verdict.reset();
         }});
    printTimes({"validate the folder", count, times[0], "its load", times[1], 1.2});
    printTimes(
        {"validate the folder and free what it found", count, times[2], "its load", times[1], {}});
}

/// Does at once what the program does on another thread or later.
class AtOnce final : public BackgroundRunner, public Scheduler {
public:
    void run(std::function<void()> work) override { work(); }
    void onMain(const QPointer<QObject>&, std::function<void()> action) override { action(); }
    void after(std::chrono::milliseconds, QObject*, std::function<void()> action) override
    {
        action();
    }
};

void measureMove(int count)
{
    World world(count);
    const QString original = world.directory.filePath(QStringLiteral("original"));
    const QString from = world.directory.filePath(QStringLiteral("from"));
    const QString to = world.directory.filePath(QStringLiteral("to"));
    const QString copied = world.directory.filePath(QStringLiteral("copied"));
    const QString cleared = world.directory.filePath(QStringLiteral("cleared"));
    check(QDir().rename(world.folder(), original), "cannot rename");
    const auto copyAll = [](const QString& source, const QString& target) {
        check(QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-a"), source, target}) == 0,
              "cannot copy");
        sync();
    };
    // A centre of its own, so that no store loads the library again.
    NotificationCenter center;
    StorageLocationManager locations{{world.preferences, FileSystem::local(), center,
                                      world.directory.path(), world.directory.path()}};
    AtOnce atOnce;
    LocationChange change({.locations = locations,
                           .files = FileSystem::local(),
                           .notifications = center,
                           .scheduler = atOnce,
                           .background = atOnce,
                           .clock = SystemClock::shared(),
                           .clearCacheAndReload = [] {},
                           .refreshData = [] {}});
    const std::vector<double> times = medianTimes(
        {{[&] {
              change.applyChanges(to);
              check(!change.errorMessage() && !QDir(from).exists(), "cannot move");
          },
          [&] {
              QDir(to).removeRecursively();
              QDir(from).removeRecursively();
              copyAll(original, from);
              world.preferences.setString(QStringLiteral("Vellumry.customStorageLocation"), from);
              world.preferences.setBoolean(QStringLiteral("Vellumry.useCustomLocation"), true);
          }},
         {[&] { copyAll(original, copied); },
          [&] {
              QDir(copied).removeRecursively();
              sync();
          }},
         {[&] {
              copyAll(cleared, copied);
              check(QDir(cleared).removeRecursively(), "cannot remove");
          },
          [&] {
              QDir(copied).removeRecursively();
              copyAll(original, cleared);
          }}});
    const std::string what = "move to another folder, up to the reload";
    printTimes({what, count, times[0], "cp -a of the files and sync", times[1], 1.5});
    printTimes({what, count, times[0], "the same and removing the old files", times[2], {}});
}

/// Lists a folder and looks at each entry, by the calls of the system alone.
void listAndStat(const QByteArray& folder)
{
    DIR* const directory = opendir(folder.constData());
    check(directory != nullptr, "cannot list");
    qint64 bytes = 0;
    while (const dirent* entry = readdir(directory)) {
        struct stat status {};
        if (fstatat(dirfd(directory), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
            bytes += status.st_size;
    }
    closedir(directory);
    keep(bytes);
}

void measureConflictScan()
{
    constexpr int count = 10'000;
    World world(1);
    const QTemporaryDir folder;
    for (int i = 0; i < count; ++i) {
        // Names as they are in a folder where drives left copies of every kind.
        static constexpr const char* endings[] = {"", " (1)", "-Laptop", " 2", " notes"};
        const char* const ending =
            i % 100 == 0 ? " (conflicted copy 2024-01-31)" : endings[i % std::size(endings)];
        QFile file(folder.filePath(
            QStringLiteral("collection %1%2.json").arg(i).arg(QLatin1StringView(ending))));
        check(file.open(QIODevice::WriteOnly), "cannot write");
    }
    const ConflictDetectionService detection({world.locations, FileSystem::local()});
    const QByteArray nativeFolder = QFile::encodeName(folder.path());
    const std::vector<double> times = medianTimes(
        {{[&] { check(detection.detectConflicts(folder.path()).size() == count / 100, "missed"); },
          {}},
         {[&] { listAndStat(nativeFolder); }, {}}});
    printTimes({"look for conflict copies among 10,000 names", 0, times[0],
                "readdir and stat of each", times[1], 3.0});
}

size_t usedMemory()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void measureMemory(int count)
{
    World world(count);
    const size_t before = usedMemory();
    const auto library = world.storage.loadFullData();
    check(library.has_value(), "cannot load");
    const auto records = static_cast<double>(usedMemory() - before);
    const FuzzySearchService search;
    search.prepare(library->data.snippets);
    const auto withSearch = static_cast<double>(usedMemory() - before);
    const auto bytes = static_cast<double>(world.fileBytes);
    printBytes({"memory of the records", count, records, "bytes of the files", bytes, 1.8});
    printBytes(
        {"memory with the search text", count, withSearch, "bytes of the files", bytes, 2.5});
}

} // namespace

} // namespace vellumry::bench

int main(int argc, char** argv)
{
    using namespace vellumry::bench;
    const QCoreApplication application(argc, argv);
    vellumry::setLogSink([](QStringView) {});
    for (const int count : {1000, 10000, 100000}) {
        measureLoad(count);
        measureEncode(count);
        measureSave(count, "median file", 0.5, 3.0);
        measureSave(count, "biggest file", 1.0, 1.5);
        // Of a small library, the listing is more than the decoding of one file.
        const auto reloadGoal = count < 100000 ? std::nullopt : std::optional(1.5);
        measureReload(count, "median file", 0.5, reloadGoal);
        measureReload(count, "biggest file", 1.0, reloadGoal);
        measureMemory(count);
        measureValidate(count);
        measureMove(count);
    }
    measureWrite();
    measureConflictScan();
    return 0;
}
