// Plays long random sequences of operations against the model and against the plain one, and
// compares everything that can be seen of them.

#include "library/PlainListModel.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <tuple>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

using CollectionFields = std::tuple<QString, QString, qint64, Date>;

/// What can be seen of a list model.
struct State {
    QList<Snippet> snippets;
    QList<CollectionFields> collectionModels;
    QMap<QString, Snippet> unsavedEdits;
    QList<Snippet> effectiveSnippets;
    QList<Snippet> filteredSnippets;
    QStringList frozenSnippetOrder;
    QList<qsizetype> counts;
    QString searchText;
    bool isFilteringUnsaved = false;
    std::optional<QString> selectedCollection;
    std::optional<QString> selectedSnippetID;
    std::optional<QString> newlyCreatedSnippetID;
    bool showDeleteConfirmation = false;
    std::optional<QString> snippetIDToDelete;
    std::optional<ConflictDetectionResult> conflictDetectionResult;
    bool showImportConflictDialog = false;
    ConflictResolutionMode selectedConflictResolutionMode = {};
    std::optional<ImportResult> importResult;
    // What it has done to the things around it.
    QStringList storageCalls;
    std::optional<SyncDataContent> stored;
    QMap<QString, QString> colors;

    friend bool operator==(const State&, const State&) = default;
};

const QStringList& names()
{
    static const QStringList list{u"A"_s, u"a"_s,  u"B"_s,         u"Default"_s,
                                  u""_s,  u" A"_s, u"\u00a0C\t"_s, u"D\n"_s};
    return list;
}

template <typename Model>
QList<CollectionFields> modelFields(const Model& collections)
{
    QList<CollectionFields> result;
    for (const Collection& c : collections)
        result.append({c.id, c.name, c.displayOrder, c.createdAt});
    return result;
}

void addSurroundings(State& state, const LibraryParts& parts)
{
    state.storageCalls = parts.storage.calls;
    if (parts.storage.stored)
        state.stored = parts.storage.stored->data;
    state.colors = parts.colors.loadColors();
}

State stateOf(const LibraryWorld& world)
{
    const SnippetListViewModel& m = world.model;
    State state{m.snippets(),
                modelFields(m.collectionModels()),
                m.unsavedEdits(),
                m.effectiveSnippets(),
                m.filteredSnippets(),
                m.frozenSnippetOrder(),
                {},
                m.searchText(),
                m.isFilteringUnsaved(),
                m.selectedCollection(),
                m.selectedSnippetID(),
                m.newlyCreatedSnippetID(),
                m.showDeleteConfirmation(),
                m.snippetIDToDelete(),
                m.conflictDetectionResult(),
                m.showImportConflictDialog(),
                m.selectedConflictResolutionMode(),
                m.importResult(),
                {},
                {},
                {}};
    for (const QString& name : names())
        state.counts.append(m.snippetCount(name));
    addSurroundings(state, world);
    return state;
}

State stateOf(const PlainListModel& m, const LibraryParts& parts)
{
    State state{m.snippets,
                modelFields(m.collectionModels),
                m.unsavedEdits,
                m.effectiveSnippets(),
                m.filteredSnippets(),
                m.frozenSnippetOrder,
                {},
                m.searchText,
                m.isFilteringUnsaved,
                m.selectedCollection,
                m.selectedSnippetID,
                m.newlyCreatedSnippetID,
                m.showDeleteConfirmation,
                m.snippetIDToDelete,
                m.conflictDetectionResult,
                m.showImportConflictDialog,
                m.selectedConflictResolutionMode,
                m.importResult,
                {},
                {},
                {}};
    for (const QString& name : names())
        state.counts.append(m.snippetCount(name));
    addSurroundings(state, parts);
    return state;
}

/// The fields whose announcement is due between two states.
QMap<QString, int> dueAnnouncements(const State& a, const State& b)
{
    QMap<QString, int> due;
    const auto compare = [&](const QString& name, auto State::*field) {
        if (a.*field != b.*field)
            due[name] = 1;
    };
    compare(u"snippets"_s, &State::snippets);
    compare(u"collectionModels"_s, &State::collectionModels);
    compare(u"unsavedEdits"_s, &State::unsavedEdits);
    compare(u"filteredSnippets"_s, &State::filteredSnippets);
    compare(u"searchText"_s, &State::searchText);
    compare(u"isFilteringUnsaved"_s, &State::isFilteringUnsaved);
    compare(u"selectedCollection"_s, &State::selectedCollection);
    compare(u"selectedSnippetID"_s, &State::selectedSnippetID);
    compare(u"newlyCreatedSnippetID"_s, &State::newlyCreatedSnippetID);
    compare(u"showDeleteConfirmation"_s, &State::showDeleteConfirmation);
    compare(u"snippetIDToDelete"_s, &State::snippetIDToDelete);
    compare(u"conflictDetectionResult"_s, &State::conflictDetectionResult);
    compare(u"showImportConflictDialog"_s, &State::showImportConflictDialog);
    compare(u"selectedConflictResolutionMode"_s, &State::selectedConflictResolutionMode);
    compare(u"importResult"_s, &State::importResult);
    return due;
}

std::string text(const QMap<QString, int>& counts)
{
    std::ostringstream out;
    for (auto it = counts.begin(); it != counts.end(); ++it)
        out << it.key().toStdString() << ' ' << it.value() << ' ';
    return out.str();
}

std::string text(const State& s)
{
    std::ostringstream out;
    const auto list = [&](const char* name, const QList<Snippet>& snippets) {
        out << name << ":";
        for (const Snippet& each : snippets)
            out << ' ' << each.id().toStdString() << '/' << each.collection().toStdString() << '/'
                << each.title().toStdString() << '/' << each.displayOrder().value_or(-1);
        out << '\n';
    };
    const auto optional = [](const std::optional<QString>& value) {
        return value ? value->toStdString() : std::string("none");
    };
    list("snippets", s.snippets);
    list("drafts", s.unsavedEdits.values());
    list("effective", s.effectiveSnippets);
    list("filtered", s.filteredSnippets);
    out << "frozen: " << s.frozenSnippetOrder.join(u' ').toStdString() << "\ncounts:";
    for (const qsizetype count : s.counts)
        out << ' ' << count;
    out << "\ncollections:";
    for (const CollectionFields& collection : s.collectionModels)
        out << ' ' << std::get<0>(collection).toStdString() << '/'
            << std::get<1>(collection).toStdString() << '/' << std::get<2>(collection);
    out << "\nsearch: '" << s.searchText.toStdString() << "' unsaved: " << s.isFilteringUnsaved
        << " collection: " << optional(s.selectedCollection)
        << " snippet: " << optional(s.selectedSnippetID)
        << " new: " << optional(s.newlyCreatedSnippetID)
        << " delete: " << optional(s.snippetIDToDelete) << s.showDeleteConfirmation
        << "\nimport: " << (s.importResult ? s.importResult->text().toStdString() : "none")
        << " asking: " << s.showImportConflictDialog
        << "\ncalls: " << s.storageCalls.join(u", ").toStdString() << '\n';
    return out.str();
}

/// The two models, and the dice.
class Game {
public:
    Game(unsigned seed, bool hasDuplicateIds, bool hasFailures)
        : dice(seed), isWithDuplicates(hasDuplicateIds)
    {
        if (hasFailures) {
            const auto fails = [seed](qsizetype number) {
                return (static_cast<unsigned>(number) * 2654435761U + seed) % 7 < 2;
            };
            world.storage.fails = fails;
            parts.storage.fails = fails;
        }
        changeOutside();
    }

    /// Plays one operation on both and returns its name.
    QString step();

    [[nodiscard]] State state() const { return stateOf(world); }
    [[nodiscard]] State plainState() const { return stateOf(plain, parts); }

    LibraryWorld world;
    bool mayAnnounceTwice = false; ///< whether the last step was several operations

private:
    int roll(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }
    const QString& anyName() { return names()[roll(static_cast<int>(names().size()))]; }
    QString anyId()
    {
        if (!plain.snippets.isEmpty() && roll(8) > 0)
            return plain.snippets[roll(static_cast<int>(plain.snippets.size()))].id();
        return u"s%1"_s.arg(roll(10));
    }
    Snippet anySnippet(const QString& id);
    ExportData anyBackup();
    void changeOutside();
    std::set<qsizetype> anyOffsets(qsizetype size);

    std::mt19937 dice;
    bool isWithDuplicates;
    int edits = 0;
    LibraryParts parts;
    PlainListModel plain{parts};
};

Snippet Game::anySnippet(const QString& id)
{
    static const QStringList titles{u""_s, u"New Snippet"_s, u"alpha"_s, u"beta alpha"_s};
    Snippet snippet = makeSnippet(id, anyName(), roll(3) == 0 ? u""_s : u"text alpha"_s);
    snippet.setTitle(titles[roll(4)]);
    snippet.setUpdatedAt(dateAt(roll(5)));
    snippet.setCreatedAt(dateAt(roll(5)));
    if (roll(12) > 0)
        snippet.setDisplayOrder(roll(5));
    return snippet;
}

/// What a file can hold: whole seconds. Many of its titles are those of the library.
ExportData Game::anyBackup()
{
    ExportData data{.version = u"2.0"_s, .exportedAt = dateAt(0), .collections = {}};
    for (int i = roll(4); i > 0; --i) {
        ExportCollection collection{.id = u"x"_s, .name = anyName(), .displayOrder = roll(9)};
        if (roll(3) == 0)
            collection.color = u"#01020%1"_s.arg(roll(10));
        for (int j = roll(4); j > 0; --j) {
            Snippet snippet = anySnippet(anyId());
            if (!plain.snippets.isEmpty() && roll(2) == 0)
                snippet.setTitle(
                    plain.snippets[roll(static_cast<int>(plain.snippets.size()))].title());
            if (roll(4) > 0)
                snippet.setCollection(collection.name);
            if (roll(3) == 0)
                snippet.setKeywords({u"k"_s});
            snippet.setUpdatedAt(dateAt(qint64{1000} * (roll(3) - 1)));
            snippet.setCreatedAt(dateAt(0));
            snippet.setUsageCount(roll(3));
            collection.snippets.append(snippet);
        }
        data.collections.append(collection);
    }
    return data;
}

void Game::changeOutside()
{
    if (roll(10) == 0) {
        parts.storage.stored.reset();
    } else if (!parts.storage.stored || roll(3) == 0) {
        QList<SyncCollection> collections;
        QList<Snippet> snippets;
        for (const QString& name : names())
            if (roll(2) == 0)
                collections.append(makeCollection(u"id of "_s + name, name));
        for (int i = 0; i < 8; ++i)
            if (roll(4) > 0)
                snippets.append(anySnippet(u"s%1"_s.arg(isWithDuplicates ? roll(4) : i)));
        parts.storage.stored = makeLibrary(collections, snippets);
    } else {
        QList<Snippet>& snippets = parts.storage.stored->data.snippets;
        if (!snippets.isEmpty()) {
            const int i = roll(static_cast<int>(snippets.size()));
            if (roll(2) == 0)
                snippets.removeAt(i);
            else
                snippets[i] = anySnippet(snippets[i].id());
        }
    }
    world.storage.stored = parts.storage.stored;
}

std::set<qsizetype> Game::anyOffsets(qsizetype size)
{
    std::set<qsizetype> offsets;
    for (qsizetype i = 0; i < size; ++i)
        if (roll(3) == 0)
            offsets.insert(i);
    return offsets;
}

QString Game::step()
{
    SnippetListViewModel& model = world.model;
    mayAnnounceTwice = false;
    world.clock.advance(1ms);
    parts.clock.advance(1ms);
    switch (roll(30)) {
    case 0:
        model.createSnippet();
        plain.createSnippet();
        return u"create"_s;
    case 1: {
        const QString id = anyId();
        model.duplicateSnippet(id, u"copy"_s);
        plain.duplicateSnippet(id, u"copy"_s);
        return u"duplicate "_s + id;
    }
    case 2: {
        const Snippet snippet = anySnippet(anyId());
        model.updateSnippet(snippet);
        plain.updateSnippet(snippet);
        return u"update "_s + snippet.id();
    }
    case 3:
    case 4:
    case 5:
    case 6: {
        const QString id = anyId();
        Snippet draft = plain.effectiveSnippet(id).value_or(anySnippet(id));
        if (roll(3) > 0)
            draft.setTitle(u"alpha %1"_s.arg(++edits));
        if (roll(3) == 0)
            draft.setCollection(anyName());
        model.setUnsavedEdit(draft);
        plain.setUnsavedEdit(draft);
        return u"draft "_s + id + u" in "_s + draft.collection();
    }
    case 7: {
        const QString id = anyId();
        model.clearUnsavedEdit(id);
        plain.clearUnsavedEdit(id);
        return u"revert "_s + id;
    }
    case 8: {
        const QString id = anyId();
        model.requestDelete(id);
        plain.requestDelete(id);
        return u"request delete "_s + id;
    }
    case 9:
        model.confirmDelete();
        plain.confirmDelete();
        return u"confirm delete"_s;
    case 10: {
        const QString id = anyId();
        model.incrementUsage(id);
        plain.incrementUsage(id);
        return u"use "_s + id;
    }
    case 11:
    case 12: {
        const auto name = roll(4) == 0 ? std::nullopt : std::optional(anyName());
        model.selectCollection(name);
        plain.selectCollection(name);
        return u"select collection "_s + name.value_or(u"none"_s);
    }
    case 13:
        model.selectUnsaved();
        plain.selectUnsaved();
        return u"select unsaved"_s;
    case 14:
    case 15: {
        static const QStringList texts{u""_s, u"alpha"_s, u" "_s, u"beta"_s, u"a >"_s};
        const QString& searched = texts[roll(5)];
        model.setSearchText(searched);
        plain.setSearchText(searched);
        return u"search "_s + searched;
    }
    case 16: {
        const qsizetype size = plain.frozenSnippetOrder.size();
        const auto offsets = anyOffsets(size);
        const qsizetype target = roll(static_cast<int>(size) + 1);
        const bool persist = roll(2) == 0;
        model.moveSnippets(offsets, target, persist);
        plain.moveSnippets(offsets, target, persist);
        return u"move snippets"_s;
    }
    case 17: {
        const qsizetype size = plain.collectionModels.size();
        const auto offsets = anyOffsets(size);
        const qsizetype target = roll(static_cast<int>(size) + 1);
        model.moveCollections(offsets, target);
        plain.moveCollections(offsets, target);
        return u"move collections"_s;
    }
    case 18:
        roll(2) == 0 ? (model.moveSelectionUp(), plain.moveSelection(-1))
                     : (model.moveSelectionDown(), plain.moveSelection(1));
        return u"move selection"_s;
    case 19: {
        const QString id = anyId();
        model.setSelectedSnippetID(id);
        plain.selectedSnippetID = id;
        return u"select "_s + id;
    }
    case 20:
        EXPECT_EQ(model.collections(), plain.collections());
        return u"read collections"_s;
    case 21: {
        const QString name = anyName();
        EXPECT_EQ(model.isCollectionNameAvailable(name), plain.isCollectionNameAvailable(name));
        EXPECT_EQ(model.createEmptyCollection(name), plain.createEmptyCollection(name));
        return u"create collection "_s + name;
    }
    case 22: {
        const QString from = anyName();
        const QString to = anyName();
        model.renameCollection(from, to);
        plain.renameCollection(from, to);
        return u"rename "_s + from + u" to "_s + to;
    }
    case 23: {
        const QString name = anyName();
        model.deleteCollection(name);
        plain.deleteCollection(name);
        return u"delete collection "_s + name;
    }
    case 24:
        changeOutside();
        if (roll(2) == 0) {
            Q_EMIT world.notifications.syncDataDidChange({});
            plain.handleExternalDataChange();
            return u"outside change"_s;
        }
        Q_EMIT world.notifications.snippetDataChanged();
        plain.loadSnippets();
        return u"load"_s;
    case 25:
        if (roll(4) > 0) {
            model.saveAllUnsavedEdits();
            plain.saveAllUnsavedEdits();
            return u"save all drafts"_s;
        }
        changeOutside();
        model.refreshData();
        plain.refreshData();
        return u"refresh data"_s;
    case 26:
    case 27: {
        const ExportData data = anyBackup();
        world.files.replace(u"/backup"_s, ExportDocument(data).fileWrapper());
        model.handleImport({.path = u"/backup"_s, .error = std::nullopt});
        plain.handleImport(data);
        return u"import"_s;
    }
    case 28: {
        const auto mode = static_cast<ConflictResolutionMode>(roll(4));
        if (roll(5) == 0) {
            model.cancelConflictResolution();
            plain.cancelImport();
            return u"cancel import"_s;
        }
        model.setSelectedConflictResolutionMode(mode);
        model.confirmConflictResolution();
        plain.selectedConflictResolutionMode = mode;
        plain.confirmConflictResolution();
        return u"resolve import by %1"_s.arg(static_cast<int>(mode));
    }
    default: {
        const auto delay = roll(4) > 0 ? 100ms : 3000ms;
        mayAnnounceTwice = world.scheduler.pending() > 1;
        world.scheduler.advance(delay);
        parts.scheduler.advance(delay);
        return u"pass the delay"_s;
    }
    }
}

struct Kind {
    const char* name;
    bool hasDuplicateIds;
    bool hasFailures;
};

class RandomSequence : public testing::TestWithParam<Kind> {};

constexpr int games = 170; // a hundred thousand steps over the four kinds
constexpr int steps = 150;

TEST_P(RandomSequence, AgreesWithThePlainModelAfterEachStep)
{
    for (unsigned seed = 0; seed < games; ++seed) {
        Game game(seed, GetParam().hasDuplicateIds, GetParam().hasFailures);
        QStringList played;
        State before = game.state();
        for (int step = 0; step < steps; ++step) {
            played.append(game.step());
            const State now = game.state();
            const State expected = game.plainState();
            ASSERT_TRUE(now == expected)
                << "seed " << seed << "\nplayed: " << played.join(u"; ").toStdString() << "\nis:\n"
                << text(now) << "should be:\n"
                << text(expected);
            const QMap<QString, int> announced = game.world.announced.take();
            if (!game.mayAnnounceTwice) {
                ASSERT_EQ(text(announced), text(dueAnnouncements(before, now)))
                    << "seed " << seed << "\nplayed: " << played.join(u"; ").toStdString();
            }
            before = now;
        }
    }
}

TEST_P(RandomSequence, AgreesWithThePlainModelWhenItIsRarelyLookedAt)
{
    for (unsigned seed = 1000; seed < 1000 + games; ++seed) {
        Game game(seed, GetParam().hasDuplicateIds, GetParam().hasFailures);
        QStringList played;
        for (int step = 0; step < steps; ++step) {
            played.append(game.step());
            if (step % 7 != 6)
                continue;
            const State now = game.state();
            const State expected = game.plainState();
            ASSERT_TRUE(now == expected)
                << "seed " << seed << "\nplayed: " << played.join(u"; ").toStdString() << "\nis:\n"
                << text(now) << "should be:\n"
                << text(expected);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Libraries, RandomSequence,
                         testing::Values(Kind{"Sound", false, false},
                                         Kind{"WithDuplicateIds", true, false},
                                         Kind{"OnAFailingDisk", false, true},
                                         Kind{"WithDuplicateIdsOnAFailingDisk", true, true}),
                         [](const auto& kind) { return std::string(kind.param.name); });

} // namespace
} // namespace vellumry::test
