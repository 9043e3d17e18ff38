// What the main window's list model costs, over a real folder: against a fixed time where a person
// waits for a key or a click, and else against the search or the save that it cannot do without.
// Each is also set against itself in the smallest library.
//
//   library_bench [N ...]     measures with libraries of N snippets, by default 1000 10000 100000

#include "core/Log.h"
#include "library/ImportExportService.h"
#include "library/SaveFileDialog.h"
#include "library/SnippetEditorViewModel.h"
#include "library/SnippetListViewModel.h"
#include "palette/ClipboardServiceProtocol.h"
#include "palette/FuzzySearchService.h"
#include "palette/SnippetVariableService.h"
#include "support/LibraryGenerator.h"
#include "support/Ratio.h"
#include "support/World.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

namespace vellumry::bench {

namespace {

/// What is measured against a search or a save has its goal in a library of this size: in a small
/// one, what the listening view asks for outweighs both.
constexpr int goalCount = 100000;

/// Below this a person takes a reaction for none at all, many times over.
constexpr double unnoticed = 0.0001;

/// A world with a list model and somebody who looks at it after each announcement, as views do.
class ListWorld : public World {
public:
    explicit ListWorld(int count) : World(count)
    {
        load();
        const auto look = [this] {
            keep(model.filteredSnippets().size());
            keep(model.collections());
            keep(model.snippetCount(QStringLiteral("Default")));
        };
        QObject::connect(&model, &SnippetListViewModel::unsavedEditsChanged, &model, look);
        QObject::connect(&model, &SnippetListViewModel::filteredSnippetsChanged, &model, look);
        QObject::connect(&model, &SnippetListViewModel::selectedSnippetIDChanged, &model, look);
        model.loadSnippets();
        (void)model.collections();
        model.saveAllData();
        model.loadSnippets();
    }

    FuzzySearchService search;
    SnippetListViewModel model{
        {storage, search, colors, center, EventLoopScheduler::shared(), SystemClock::shared()}};
};

/// Prints how a time has grown from the first library to this one.
void printGrowth(const std::string& what, int count, double seconds)
{
    static std::map<std::string, double> first;
    const double base = first.emplace(what, seconds).first->second;
    printTimes({what, count, seconds, "itself in the first library", base, std::nullopt});
}

void measureAgainstTime(const std::string& what, int count, const Variant& variant)
{
    const double seconds = medianTimes({variant}).front();
    printTimes({what, count, seconds, "0.1 ms", unnoticed, 1.0});
    printGrowth(what, count, seconds);
}

void measureAgainst(const std::string& what, int count, const Variant& ours,
                    const std::string& limit, const Variant& limitVariant,
                    std::optional<double> goal)
{
    const std::vector<double> times = medianTimes({ours, limitVariant}, 15);
    printTimes({what, count, times[0], limit, times[1], count == goalCount ? goal : std::nullopt});
    printGrowth(what, count, times[0]);
}

void measureReads(int count)
{
    ListWorld world(count);
    SnippetListViewModel& model = world.model;
    measureAgainstTime("read of filteredSnippets", count,
                       {[&] { keep(model.filteredSnippets().constData()); }, {}});
    measureAgainstTime("read of collections and all counts", count,
                       {[&] {
                            for (const QString& name : model.collections())
                                keep(model.snippetCount(name));
                        },
                        {}});
}

void measureDrafts(int count)
{
    ListWorld world(count);
    SnippetListViewModel& model = world.model;
    int edits = 0;
    const auto edit = [&](qsizetype position) {
        Snippet draft = model.snippets().at(position);
        draft.setContent(draft.content() + QString::number(++edits));
        model.setUnsavedEdit(draft);
    };
    const qsizetype size = model.snippets().size();
    measureAgainstTime("draft update and announcement", count, {[&] { edit(size / 2); }, {}});
    measureAgainstTime("first draft after a refresh", count,
                       {[&] { edit(size / 3); },
                        [&] {
                            model.discardAllUnsavedEdits();
                            model.setSearchText(QStringLiteral(" "));
                            model.setSearchText({});
                        }});
    model.discardAllUnsavedEdits();
    qsizetype next = 0;
    measureAgainstTime("draft update, each of another snippet of 100", count,
                       {[&] { edit(next++ % 100 * size / 100); }, {}});
    model.selectCollection(model.snippets().first().collection());
    measureAgainstTime("draft update in the biggest collection", count, {[&] { edit(0); }, {}});
    model.selectUnsaved();
    measureAgainstTime("draft update in Unsaved with 100 drafts", count, {[&] { edit(0); }, {}});
}

class NoClipboard final : public ClipboardServiceProtocol {
public:
    void copy(const QString&) override {}
    void copySecret(const QString&) override {}
};

class NoSaveDialog final : public SaveFileDialog {
public:
    void ask(const Request&, std::function<void(const QString&)>) override {}
    void warn(const QString&, const QString&) override {}
};

/// What a keystroke in the editor costs, with the list that follows it.
void measureEditor(int count)
{
    ListWorld world(count);
    SnippetListViewModel& model = world.model;
    NoClipboard clipboard;
    NoSaveDialog dialog;
    const auto open = [&](const Snippet& snippet) {
        return std::make_unique<SnippetEditorViewModel>(
            SnippetEditorViewModel::Dependencies{
                world.storage, [&] { return world.storage.currentData(); }, clipboard,
                FileSystem::local(), dialog, world.center, EventLoopScheduler::shared(),
                SystemClock::shared()},
            snippet, false, model.snippets(),
            SnippetEditorViewModel::reportingTo(model, snippet.id()));
    };
    const Snippet snippet = model.snippets().at(count / 2);
    const auto editor = open(snippet);
    // The texts are made before they are typed, as the text control makes them.
    const QString huge(5 * 1000 * 1000, u'x');
    const QStringList texts{snippet.content(), snippet.content() + u'x'};
    const QStringList hugeTexts{huge, huge + u'x'};
    const QStringList titles{QStringLiteral("a title"), QStringLiteral("a title.")};
    int edits = 0;
    const auto type = [&](const QStringList& typed) { editor->setContent(typed[++edits % 2]); };
    measureAgainstTime("keystroke in the content", count, {[&] { type(texts); }, {}});
    measureAgainstTime("keystroke in a content of 5 million characters", count,
                       {[&] { type(hugeTexts); }, {}});
    measureAgainstTime("keystroke in the title over such a content", count,
                       {[&] { editor->setTitle(titles[++edits % 2]); }, {}});
    editor->setVariableValue(QStringLiteral("value"), QStringLiteral("name"));
    measureAgainstTime("keystroke in the title, with a value of a placeholder", count,
                       {[&] { editor->setTitle(titles[++edits % 2]); }, {}});
    measureAgainst("keystroke in that content, with a value of a placeholder", count,
                   {[&] { type(hugeTexts); }, {}}, "the search for placeholders alone",
                   {[&] { keep(SnippetVariableService::shared().extractNames(huge)); }, {}}, 1.3);
    measureAgainst("opening of an editor", count, {[&] { keep(open(snippet)); }, {}},
                   "a pass over all collection names",
                   {[&] {
                        qsizetype size = 0;
                        for (const Snippet& each : model.snippets())
                            size += each.collection().size();
                        keep(size);
                    },
                    {}},
                   2.0);
}

void measureSelection(int count)
{
    ListWorld world(count);
    SnippetListViewModel& model = world.model;
    model.setSelectedSnippetID(
        model.filteredSnippets().at(model.filteredSnippets().size() - 2).id());
    bool isDown = false;
    measureAgainstTime("selection move at the end of the list", count,
                       {[&] {
                            isDown = !isDown;
                            isDown ? model.moveSelectionDown() : model.moveSelectionUp();
                        },
                        {}});
}

/// Types one text after the other into the filter, and searches them alone.
void measureFilter(const char* what, int count, ListWorld& world, const QStringList& texts)
{
    SnippetListViewModel& model = world.model;
    const FuzzySearchService search;
    const std::optional<QString> collection = model.selectedCollection();
    QList<Snippet> list;
    for (const Snippet& snippet : model.effectiveSnippets()) {
        if (!collection || snippet.collection() == *collection)
            list.append(snippet);
    }
    if (!collection)
        list = model.effectiveSnippets();
    search.prepare(list);
    QList<Snippet> result; // held until the next one, as a list that is shown is
    qsizetype ours = 0;
    qsizetype alone = 0;
    measureAgainst(std::string("change of filter text, ") + what, count,
                   {[&] { model.setSearchText(texts[ours++ % texts.size()]); }, {}},
                   "the search alone",
                   {[&] { result = search.search(texts[alone++ % texts.size()], list); }, {}}, 1.3);
    model.setSearchText({});
}

void measureFilters(int count)
{
    ListWorld world(count);
    SnippetListViewModel& model = world.model;
    const QStringList& words = LibraryGenerator::vocabulary();
    const QStringList frequent{words[0], words[1]};
    const QStringList rare{words[1500], words[1600]};
    measureFilter("frequent words", count, world, frequent);
    measureFilter("rare words", count, world, rare);
    measureFilter("a word and none", count, world, {words[1500], QString()});
    Snippet draft = model.snippets().first();
    draft.setTitle(words[0]);
    model.setUnsavedEdit(draft);
    measureFilter("frequent words, with a draft", count, world, frequent);
    model.selectCollection(model.snippets().first().collection());
    measureFilter("frequent words, in the biggest collection", count, world, frequent);
}

/// A snippet in the middle of its collection, which is the biggest or that of median size.
Snippet snippetToChange(const QList<Snippet>& snippets, bool isInBiggest)
{
    std::map<QString, QList<Snippet>> byCollection;
    for (const Snippet& snippet : snippets)
        byCollection[snippet.collection()].append(snippet);
    std::vector<QList<Snippet>> bySize;
    for (const auto& [name, members] : byCollection)
        bySize.push_back(members);
    std::sort(bySize.begin(), bySize.end(),
              [](const auto& a, const auto& b) { return a.size() < b.size(); });
    const QList<Snippet>& members = isInBiggest ? bySize.back() : bySize[bySize.size() / 2];
    return members[members.size() / 2];
}

void measureChanges(int count, bool isInBiggest)
{
    ListWorld world(count);
    World other(count); // has the same changes saved by its store alone
    other.load();
    SnippetListViewModel& model = world.model;
    const Snippet original = snippetToChange(model.snippets(), isInBiggest);
    const std::string file = isInBiggest ? ", biggest file" : ", median file";
    VellumryData given = *world.storage.currentData();
    other.storage.saveFullData(given, false);
    const Variant save{[&] { other.storage.saveFullData(given, false); },
                       [&] {
                           // One more or one less than was saved last.
                           QList<Snippet>& list = given.data.snippets;
                           if (list.size() > count) {
                               list.removeLast();
                           } else {
                               SnippetFields fields = original.fields();
                               fields.id = makeIdentifier();
                               list.append(Snippet(fields));
                           }
                       }};
    const auto deleteLast = [&] {
        model.setSnippetIDToDelete(model.snippets().last().id());
        model.confirmDelete();
    };
    const auto duplicate = [&] { model.duplicateSnippet(original.id(), QStringLiteral("copy")); };
    measureAgainst("duplicate" + file, count,
                   {duplicate,
                    [&] {
                        if (model.snippets().size() > count)
                            deleteLast();
                    }},
                   "the save alone", save, 1.5);
    measureAgainst("request and confirm the deletion" + file, count,
                   {[&] {
                        model.requestDelete(model.snippets().last().id());
                        model.confirmDelete();
                    },
                    duplicate},
                   "the save alone", save, 1.5);
    int edits = 0;
    measureAgainst("save of a draft" + file, count,
                   {[&] { model.updateSnippet(*model.effectiveSnippet(original.id())); },
                    [&] {
                        Snippet draft = original;
                        draft.setTitle(QString::number(++edits));
                        model.setUnsavedEdit(draft);
                    }},
                   "the save alone", save, 1.5);
}

void measureLoad(int count)
{
    ListWorld world(count);
    measureAgainst("load after a change elsewhere", count,
                   {[&] { world.model.loadSnippets(); }, {}}, "the store's load alone",
                   {[&] { keep(world.storage.loadFullData()); }, {}}, std::nullopt);
    bool isDown = false;
    world.model.moveSnippets({0}, 1, false);
    const double seconds = medianTimes({{[&] {
                                             isDown = !isDown;
                                             isDown ? world.model.moveSnippets({10}, 12, false)
                                                    : world.model.moveSnippets({11}, 10, false);
                                         },
                                         {}}})
                               .front();
    printGrowth("step of a drag", count, seconds);
}

/// A library against a backup of itself in which each second snippet is another one, so that there
/// is one look-up for each, and texts to compare.
void measureImport(int count)
{
    const VellumryData library = LibraryGenerator::generate(count);
    QList<Collection> collections;
    ImportExportService::ImportedData imported;
    std::map<QString, qsizetype> places;
    for (const SyncCollection& collection : library.data.collections) {
        places.emplace(collection.name, collections.size());
        collections.append({.id = collection.id, .name = collection.name});
        imported.collections.append({.id = collection.id, .name = collection.name});
    }
    for (const Snippet& local : library.data.snippets) {
        // With memory of its own, as one that was read.
        SnippetFields fields = local.fields();
        fields.title = QString(fields.title.constData(), fields.title.size());
        fields.content = QString(fields.content.constData(), fields.content.size());
        if (imported.snippets.size() % 2 == 0) {
            fields.content.append(u'.');
            fields.updatedAt += std::chrono::seconds(1);
        }
        imported.snippets.append(Snippet(fields));
        imported.collections[places.at(local.collection())].snippets.append(
            imported.snippets.last());
    }
    // What it cannot do without: to look at the title of each snippet on both sides.
    const auto hashTitles = [&] {
        size_t sum = 0;
        for (const Snippet& snippet : library.data.snippets)
            sum ^= qHash(snippet.title());
        for (const Snippet& snippet : std::as_const(imported.snippets))
            sum ^= qHash(snippet.title());
        keep(sum);
    };
    measureAgainst("conflicts of an import of the same size", count,
                   {[&] {
                        keep(ImportExportService::detectConflicts(imported, collections,
                                                                  library.data.snippets));
                    },
                    {}},
                   "the hash of each title", {hashTitles, {}}, std::nullopt);
}

} // namespace

} // namespace vellumry::bench

int main(int argc, char** argv)
{
    using namespace vellumry::bench;
    const QCoreApplication application(argc, argv);
    vellumry::setLogSink([](QStringView) {});
    std::vector<int> counts;
    for (int i = 1; i < argc; ++i) {
        if (const int count = std::atoi(argv[i]); count > 0)
            counts.push_back(count);
    }
    if (counts.empty())
        counts = {1000, 10000, 100000};
    for (const int count : counts) {
        measureReads(count);
        measureDrafts(count);
        measureEditor(count);
        measureSelection(count);
        measureFilters(count);
        measureChanges(count, false);
        measureChanges(count, true);
        measureLoad(count);
        measureImport(count);
    }
    return 0;
}
