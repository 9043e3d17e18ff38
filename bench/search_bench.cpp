// Search and what prepares it, against what the machine can do at best and against the plainest
// way.
//
//   search_bench [N ...]     measures with libraries of N snippets, by default 1000 10000 100000

#include "models/JSONDecoder.h"
#include "models/JSONEncoder.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/CommandPaletteViewModel.h"
#include "palette/FuzzySearchService.h"
#include "palette/NaiveSearch.h"
#include "palette/RandomPasswordService.h"
#include "palette/SearchText.h"
#include "storage/StorageServiceProtocol.h"
#include "support/LibraryGenerator.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/Ratio.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <memory>
#include <numeric>
#include <optional>
#include <sys/mman.h>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

using namespace vellumry;
using namespace Qt::StringLiterals;
using bench::keep;
using bench::LibraryGenerator;
using bench::Variant;

/// Goals are set for libraries of this size.
constexpr int goalCount = 100000;

std::optional<double> goalAt(int count, double goal)
{
    return count == goalCount ? std::optional(goal) : std::nullopt;
}

// The least that a search must do is to read all bytes once; a sum does nothing else.

#if defined(__x86_64__)
__attribute__((target("avx2"))) quint64 vectorSum(const unsigned char* begin,
                                                  const unsigned char* end)
{
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums[4] = {zero, zero, zero, zero};
    for (; end - begin >= 128; begin += 128) {
        for (int i = 0; i < 4; ++i) {
            const auto* source = reinterpret_cast<const __m256i*>(begin) + i;
            sums[i] = _mm256_add_epi64(sums[i], _mm256_sad_epu8(_mm256_loadu_si256(source), zero));
        }
    }
    const __m256i sum =
        _mm256_add_epi64(_mm256_add_epi64(sums[0], sums[1]), _mm256_add_epi64(sums[2], sums[3]));
    alignas(32) quint64 parts[4];
    _mm256_store_si256(reinterpret_cast<__m256i*>(parts), sum);
    return std::accumulate(begin, end, parts[0] + parts[1] + parts[2] + parts[3]);
}
#endif

quint64 sumOf(const unsigned char* begin, const unsigned char* end)
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return vectorSum(begin, end);
#endif
    return std::accumulate(begin, end, quint64{0});
}

constexpr const char* sumName = "a sum of the text's bytes";

/// The word of at least four letters that comes nearest to being found in a share of the snippets.
QString wordFoundIn(double share, const FuzzySearchService& service, const QList<Snippet>& snippets)
{
    QString best;
    double bestDistance = 1e9;
    const QStringList& words = LibraryGenerator::vocabulary();
    for (qsizetype i = 0; i < words.size(); i += i < 100 ? 1 : 23) {
        if (words[i].size() < 4)
            continue;
        const auto hits = static_cast<double>(service.search(words[i], snippets).size());
        const double distance =
            std::abs(std::log((hits + 0.1) / (share * static_cast<double>(snippets.size()))));
        if (distance < bestDistance) {
            bestDistance = distance;
            best = words[i];
        }
    }
    return best;
}

struct Query {
    std::string what;
    QString text;
    double goal;          ///< against the sum
    bool isNaiveToo;      ///< also measured against the plain search
    double naiveGoal = 0; ///< against the plain search
};

void measureSearches(const QList<Snippet>& snippets)
{
    const auto count = static_cast<int>(snippets.size());
    const FuzzySearchService service;
    service.prepare(snippets);
    SearchText text;
    text.update(snippets);

    const QString rare = wordFoundIn(0.01, service, snippets);
    const QString common = wordFoundIn(0.3, service, snippets);
    const QString frequent = wordFoundIn(0.6, service, snippets);
    const QString collection = snippets.first().collection();
    const std::vector<Query> queries{
        {"1 keyword, 1 % aimed at", rare, 2, true, 0.01},
        {"1 keyword, 30 % aimed at", common, 3, true, 0.01},
        {"1 keyword, 100 % (\"end.\")", u"end."_s, 5, true, 0.01},
        {"1 letter (\"e\")", u"e"_s, 15, true, 0.025},
        {"2 keywords", common + u' ' + frequent, 3.5, true, 0.025},
        {"4 keywords", common + u' ' + frequent + u" end. e"_s, 5, true, 0.025},
        {"2 frequent keywords", u"end. e"_s, 15, true, 0.025},
        {"no hit", u"qqqzzz"_s, 2, false},
        {"collection alone", collection + u" > "_s, 15, false},
        {"collection and keyword", collection + u" > "_s + common, 15, false},
        {"empty query", QString(), 15, false},
    };
    for (const Query& query : queries) {
        QList<Snippet> found;
        std::vector<Variant> variants{
            {[&] { found = service.search(query.text, snippets); }, {}},
            {[&] { keep(sumOf(text.begin(), text.end())); }, {}},
        };
        const auto times = bench::medianTimes(variants);
        const double share = static_cast<double>(found.size()) / count * 100;
        char what[128];
        std::snprintf(what, sizeof what, "search, %s: %.1f %% hits", query.what.c_str(), share);
        bench::printTimes({what, count, times[0], sumName, times[1], goalAt(count, query.goal)});
        if (!query.isNaiveToo)
            continue;
        variants[1] = {[&] { keep(test::naiveSearch(query.text, snippets)); }, {}};
        const auto naiveTimes = bench::medianTimes(variants, 7);
        bench::printTimes({what, count, naiveTimes[0],
                           "lower-casing at each search and plain scoring", naiveTimes[1],
                           goalAt(count, query.naiveGoal)});
    }
}

/// A library that is just a list.
class ListStorage final : public StorageServiceProtocol {
public:
    explicit ListStorage(QList<Snippet> library) : snippets(std::move(library)) {}

    std::optional<VellumryData> loadFullData() override { return std::nullopt; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override { return snippets; }
    bool saveSnippets(const QList<Snippet>&) override { return false; }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}

private:
    QList<Snippet> snippets;
};

class NoClipboard final : public ClipboardServiceProtocol {
public:
    void copy(const QString&) override {}
    void copySecret(const QString&) override {}
};

/// All that a keystroke in the palette sets off: is it a command, a conversion, a calculation, and
/// which snippets are there.
void measureKeystrokes(const QList<Snippet>& snippets)
{
    const auto count = static_cast<int>(snippets.size());
    FuzzySearchService service;
    service.prepare(snippets);
    const QString rare = wordFoundIn(0.01, service, snippets);

    FuzzySearchService otherService; // a service keeps the text of one list
    ListStorage storage(snippets);
    NoClipboard clipboard;
    NotificationCenter notifications;
    test::ManualScheduler scheduler;
    const test::ManualClock clock;
    const auto typeInto = [&](CommandPaletteViewModel& model, const QString& text) {
        model.setQuery(text);
        scheduler.advance(std::chrono::milliseconds(50));
    };
    const auto dependencies = [&](SearchServiceProtocol& search) {
        return CommandPaletteViewModel::Dependencies{
            storage,       search,    clipboard, RandomPasswordService::shared(),
            notifications, scheduler, clock};
    };
    const auto ignoreSnippet = [](const Snippet&) {};
    CommandPaletteViewModel model(dependencies(service), ignoreSnippet, [] {});
    model.onAppear();
    scheduler.advance(std::chrono::milliseconds(50));
    CommandPaletteViewModel withoutSnippets(dependencies(otherService), ignoreSnippet, [] {});

    const auto times = bench::medianTimes({
        {[&] { keep(service.search(rare, snippets)); }, {}},
        {[&] { typeInto(model, rare); }, {}},
        {[&] { typeInto(model, rare + u'='); }, {}},
        {[&] { typeInto(withoutSnippets, rare); }, {}},
        {[&] { typeInto(withoutSnippets, u"2+3*4^2="_s); }, {}},
        {[&] { typeInto(withoutSnippets, u"10 km="_s); }, {}},
        {[&] { typeInto(withoutSnippets, u"/rand:16"_s); }, {}},
    });
    const auto print = [&](const char* what, double time, std::optional<double> goal) {
        bench::printTimes({what, count, time, "the search alone", times[0], goal});
    };
    print("keystroke, 1 keyword, 1 % aimed at", times[1], goalAt(count, 1.2));
    print("keystroke, the same and \"=\"", times[2], goalAt(count, 1.2));
    print("keystroke without snippets, 1 keyword", times[3], {});
    print("keystroke without snippets, \"2+3*4^2=\"", times[4], {});
    print("keystroke without snippets, \"10 km=\"", times[5], {});
    print("keystroke without snippets, \"/rand:16\"", times[6], {});
}

struct FreshPages {
    explicit FreshPages(size_t bytes)
        : size(bytes),
          memory(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        if (memory == MAP_FAILED)
            std::abort();
    }
    ~FreshPages() { munmap(memory, size); }
    FreshPages(const FreshPages&) = delete;
    FreshPages& operator=(const FreshPages&) = delete;

    size_t size;
    void* memory;
};

void measurePreparing(const QList<Snippet>& snippets)
{
    const auto count = static_cast<int>(snippets.size());
    SearchText source;
    source.update(snippets);
    const auto bytes = static_cast<size_t>(source.end() - source.begin());

    auto fresh = std::make_unique<SearchText>();
    std::unique_ptr<FreshPages> pages;
    SearchText kept;
    QList<Snippet> other = snippets;
    other[count / 2].setTitle(u"Changed"_s);
    const QList<Snippet>* next = &other;
    kept.update(snippets);
    const auto times = bench::medianTimes({
        {[&] { fresh->update(snippets); }, [&] { fresh = std::make_unique<SearchText>(); }},
        {[&] { std::memcpy(pages->memory, source.begin(), bytes); },
         [&] {
             pages.reset();
             pages = std::make_unique<FreshPages>(bytes);
         }},
        {[&] {
             kept.update(*next);
             next = next == &other ? &snippets : &other;
         },
         [] {}},
        {[&] {
             // The least that finding the change takes: reading the handles of both lists.
             const auto* first = reinterpret_cast<const unsigned char*>(snippets.constData());
             const auto* second = reinterpret_cast<const unsigned char*>(other.constData());
             const size_t size = snippets.size() * sizeof(Snippet);
             keep(sumOf(first, first + size) + sumOf(second, second + size));
         },
         [] {}},
    });
    bench::printTimes({"preparing the search text", count, times[0], "memcpy into fresh pages",
                       times[1], goalAt(count, 4)});
    bench::printTimes({"preparing again after one changed snippet", count, times[2],
                       "preparing the whole", times[0], goalAt(count, 0.001)});
    bench::printTimes({"preparing again after one changed snippet",
                       count,
                       times[2],
                       "reading the handles of both lists",
                       times[3],
                       {}});
}

double heapInUse()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void measureMemory(int count)
{
    // Records as a load makes them, not as the generator does.
    std::vector<PaddedBytes> files;
    double fileBytes = 0;
    {
        JSONEncoder encoder = JSONEncoder::vellumry();
        const VellumryData library = LibraryGenerator::generate(count);
        for (const CollectionFileData& file : LibraryGenerator::collectionFiles(library)) {
            files.emplace_back(encoder.encode(file));
            fileBytes += static_cast<double>(encoder.encode(file).size());
        }
    }
    const double before = heapInUse();
    QList<Snippet> snippets;
    {
        snippets.reserve(count);
        JSONDecoder decoder = JSONDecoder::vellumry();
        for (const PaddedBytes& file : files)
            snippets.append(decoder.decode<CollectionFileData>(file).snippets);
    }
    const double records = heapInUse() - before;
    SearchText text;
    text.update(snippets);
    const double all = heapInUse() - before;
    std::printf("files, N=%d: %.2f MB, %.0f bytes for each snippet\n", count, fileBytes / 1e6,
                fileBytes / count);
    bench::printBytes(
        {"records in memory", count, records, "the files' bytes", fileBytes, goalAt(count, 1.8)});
    bench::printBytes({"records with search text", count, all, "the files' bytes", fileBytes,
                       goalAt(count, 2.5)});
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<int> counts{1000, 10000, goalCount};
    if (argc > 1) {
        counts.clear();
        for (int i = 1; i < argc; ++i)
            counts.push_back(std::max(1, std::atoi(argv[i])));
    }
    for (const int count : counts) {
        measureMemory(count);
        QList<Snippet> snippets;
        for (const CollectionFileData& file : LibraryGenerator::loadedFiles(count))
            snippets.append(file.snippets);
        measurePreparing(snippets);
        measureSearches(snippets);
        measureKeystrokes(snippets);
        std::printf("\n");
    }
    return 0;
}
