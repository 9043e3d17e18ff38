// Plays long random sequences of operations against an editor on the list model and against the
// plain ones, and compares everything that can be seen of them.

#include "core/Text.h"
#include "library/EditorWorld.h"
#include "library/PlainEditor.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// What can be seen of an editor and of the list that it reports to.
struct EditorState {
    QString title;
    QString subtitle;
    QString collection;
    QString content;
    QStringList keywords;
    QMap<QString, QString> variableValues;
    qint64 usageCount = 0;
    std::optional<Date> lastUsedAt;
    QStringList availableCollections;
    bool isDirty = false;
    bool showSaveSuccess = false;
    std::optional<Date> lastSavedAt;
    bool showCopySuccess = false;
    bool isAddingNewCollection = false;
    QString newCollectionName;
    // Computed
    Snippet currentSnippet;
    QStringList detectedVariables;
    qsizetype filledVariableCount = 0;
    QString resolvedContent;
    // Around it
    QList<Snippet> snippets;
    QMap<QString, Snippet> drafts;
    QList<Snippet> shown;
    std::optional<QString> idToDelete;
    std::optional<SyncDataContent> stored;
    QStringList storageCalls;
    QString lastCopied;
    int listFocuses = 0;

    friend bool operator==(const EditorState&, const EditorState&) = default;
};

/// The fields whose announcement is due between two states.
QMap<QString, int> dueAnnouncements(const EditorState& a, const EditorState& b)
{
    QMap<QString, int> due;
    const auto compare = [&](const char* name, auto EditorState::*field) {
        if (a.*field != b.*field)
            due[QString::fromLatin1(name)] = 1;
    };
    compare("title", &EditorState::title);
    compare("subtitle", &EditorState::subtitle);
    compare("collection", &EditorState::collection);
    compare("content", &EditorState::content);
    compare("keywords", &EditorState::keywords);
    compare("variableValues", &EditorState::variableValues);
    compare("usageCount", &EditorState::usageCount);
    compare("lastUsedAt", &EditorState::lastUsedAt);
    compare("availableCollections", &EditorState::availableCollections);
    compare("isDirty", &EditorState::isDirty);
    compare("showSaveSuccess", &EditorState::showSaveSuccess);
    compare("lastSavedAt", &EditorState::lastSavedAt);
    compare("showCopySuccess", &EditorState::showCopySuccess);
    compare("isAddingNewCollection", &EditorState::isAddingNewCollection);
    compare("newCollectionName", &EditorState::newCollectionName);
    return due;
}

std::string text(const QMap<QString, int>& counts)
{
    std::ostringstream out;
    for (auto it = counts.begin(); it != counts.end(); ++it)
        out << it.key().toStdString() << ' ' << it.value() << ' ';
    return out.str();
}

std::string text(const Snippet& s)
{
    std::ostringstream out;
    out << s.id().toStdString() << '/' << s.title().toStdString() << '/'
        << s.subtitle().toStdString() << '/' << s.collection().toStdString() << '/'
        << s.content().toStdString() << '/' << s.keywords().join(u',').toStdString() << '/'
        << s.usageCount() << '/' << s.displayOrder().value_or(-1) << '/'
        << s.updatedAt().time_since_epoch().count();
    for (auto it = s.variables().begin(); it != s.variables().end(); ++it)
        out << '/' << it.key().toStdString() << '=' << it.value().toStdString();
    return out.str();
}

std::string text(const EditorState& s)
{
    std::ostringstream out;
    out << "editor: " << text(s.currentSnippet) << "\nvalues:";
    for (auto it = s.variableValues.begin(); it != s.variableValues.end(); ++it)
        out << ' ' << it.key().toStdString() << '=' << it.value().toStdString();
    out << "\nvariables: " << s.detectedVariables.join(u',').toStdString() << " filled "
        << s.filledVariableCount
        << "\ncollections: " << s.availableCollections.join(u',').toStdString() << "\ndirty "
        << s.isDirty << " saved " << s.showSaveSuccess << " copied " << s.showCopySuccess
        << " adding " << s.isAddingNewCollection << " '" << s.newCollectionName.toStdString()
        << "' delete " << s.idToDelete.value_or(u"none"_s).toStdString() << "\nsnippets:\n";
    for (const Snippet& each : s.snippets)
        out << "  " << text(each) << '\n';
    out << "drafts:\n";
    for (const Snippet& each : s.drafts)
        out << "  " << text(each) << '\n';
    out << "calls: " << s.storageCalls.join(u", ").toStdString() << '\n';
    return out.str();
}

/// The two pairs of models, and the dice.
class EditorGame {
public:
    EditorGame(unsigned seed, bool hasFailures) : dice(seed)
    {
        if (hasFailures) {
            const auto fails = [seed](qsizetype number) {
                return (static_cast<unsigned>(number) * 2654435761U + seed) % 7 < 2;
            };
            world.storage.fails = fails;
            parts.storage.fails = fails;
        }
        QList<Snippet> snippets;
        for (int i = 0; i < 5; ++i)
            snippets.append(anySnippet(u"s%1"_s.arg(i)));
        parts.storage.stored =
            makeLibrary({makeCollection(u"1"_s, u"A"_s), makeCollection(u"2"_s, u"B"_s)}, snippets);
        world.storage.stored = parts.storage.stored;
        world.model.loadSnippets();
        plain.loadSnippets();
        while (!open())
            reload();
    }

    /// Plays one operation on both and returns its name.
    QString step();

    [[nodiscard]] EditorState state() const;
    [[nodiscard]] EditorState plainState() const;

    EditorWorld world;
    bool isOpenedAnew = false; ///< whether the last step opened another editor

private:
    int roll(int sides) { return static_cast<int>(dice() % static_cast<unsigned>(sides)); }
    const QString& anyOf(const QStringList& list) { return list[roll(int(list.size()))]; }
    const QString& anyName()
    {
        static const QStringList names{u"A"_s, u"B"_s, u"C"_s, u" A "_s, u"\t"_s, u""_s};
        return anyOf(names);
    }
    const QString& anyText()
    {
        static const QStringList texts{u""_s,
                                       u"New Snippet"_s,
                                       u"{{a}} and {{ b }}"_s,
                                       u"{{b}}{{b}}{{c"_s,
                                       u"a\r\nb\nc\rd"_s,
                                       u" \n\t"_s,
                                       u"text {{a}}"_s,
                                       QString(250, u'x')};
        return anyOf(texts);
    }
    const QString& anyVariable()
    {
        static const QStringList names{u"a"_s, u"b"_s, u"c"_s};
        return anyOf(names);
    }
    Snippet anySnippet(const QString& id);
    bool open();
    void reload();

    std::mt19937 dice;
    int edits = 0;
    LibraryParts parts;
    PlainListModel plain{parts};
    std::unique_ptr<PlainEditor> editor;
};

Snippet EditorGame::anySnippet(const QString& id)
{
    Snippet snippet = makeSnippet(id, anyName(), anyText());
    if (roll(2) == 0)
        snippet.setTitle(anyText());
    snippet.setSubtitle(anyText());
    if (roll(2) == 0)
        snippet.setKeywords(QStringList(roll(12), u"Swift"_s));
    if (roll(2) == 0)
        snippet.setVariables({{anyVariable(), anyText()}, {anyVariable(), u"1"_s}});
    snippet.setUsageCount(roll(3));
    if (roll(2) == 0)
        snippet.setLastUsedAt(dateAt(roll(5)));
    snippet.setUpdatedAt(dateAt(roll(5)));
    snippet.setDisplayOrder(roll(5));
    return snippet;
}

/// Opens one of the snippets in both worlds; false if it is not there any more.
bool EditorGame::open()
{
    const QString id = u"s%1"_s.arg(roll(5));
    if (!plain.effectiveSnippet(id)) {
        EXPECT_FALSE(world.model.effectiveSnippet(id));
        return false;
    }
    const bool inMemory = roll(4) > 0;
    world.hasLibraryInMemory = inMemory;
    EXPECT_TRUE(world.openFromList(id));
    const QStringList copied = editor ? editor->copied : QStringList();
    const int focuses = editor ? editor->listFocuses : 0;
    editor = std::make_unique<PlainEditor>(parts, plain, *plain.effectiveSnippet(id),
                                           plain.unsavedEdits.contains(id));
    editor->hasLibraryInMemory = inMemory;
    editor->copied = copied;
    editor->listFocuses = focuses;
    editor->loadCollections();
    return true;
}

/// Brings a snippet that may have gone back, from outside, or changes it there.
void EditorGame::reload()
{
    if (!parts.storage.stored)
        return;
    const Snippet snippet = anySnippet(u"s%1"_s.arg(roll(5)));
    QList<Snippet>& snippets = parts.storage.stored->data.snippets;
    snippets.removeIf([&](const Snippet& each) { return each.id() == snippet.id(); });
    if (roll(4) > 0)
        snippets.append(snippet);
    world.storage.stored = parts.storage.stored;
    world.model.loadSnippets();
    plain.loadSnippets();
}

EditorState EditorGame::state() const
{
    const SnippetEditorViewModel& e = *world.editor;
    EditorState state;
    state.title = e.title();
    state.subtitle = e.subtitle();
    state.collection = e.collection();
    state.content = e.content();
    state.keywords = e.keywords();
    state.variableValues = e.variableValues();
    state.usageCount = e.usageCount();
    state.lastUsedAt = e.lastUsedAt();
    state.availableCollections = e.availableCollections();
    state.isDirty = e.isDirty();
    state.showSaveSuccess = e.showSaveSuccess();
    state.lastSavedAt = e.lastSavedAt();
    state.showCopySuccess = e.showCopySuccess();
    state.isAddingNewCollection = e.isAddingNewCollection();
    state.newCollectionName = e.newCollectionName();
    state.currentSnippet = e.currentSnippet();
    state.detectedVariables = e.detectedVariables();
    state.filledVariableCount = e.filledVariableCount();
    state.resolvedContent = e.resolvedContent();
    state.snippets = world.model.snippets();
    state.drafts = world.model.unsavedEdits();
    state.shown = world.model.filteredSnippets();
    state.idToDelete = world.model.snippetIDToDelete();
    if (world.storage.stored)
        state.stored = world.storage.stored->data;
    state.storageCalls = world.storage.calls;
    if (!world.clipboard.texts.isEmpty())
        state.lastCopied = world.clipboard.texts.last();
    state.listFocuses = world.listFocuses;
    return state;
}

EditorState EditorGame::plainState() const
{
    const PlainEditor& e = *editor;
    EditorState state;
    state.title = e.title;
    state.subtitle = e.subtitle;
    state.collection = e.collection;
    state.content = e.content;
    state.keywords = e.keywords;
    state.variableValues = e.variableValues;
    state.usageCount = e.usageCount;
    state.lastUsedAt = e.lastUsedAt;
    state.availableCollections = e.availableCollections;
    state.isDirty = e.isDirty;
    state.showSaveSuccess = e.showSaveSuccess;
    state.lastSavedAt = e.lastSavedAt;
    state.showCopySuccess = e.showCopySuccess;
    state.isAddingNewCollection = e.isAddingNewCollection;
    state.newCollectionName = e.newCollectionName;
    state.currentSnippet = e.currentSnippet();
    state.detectedVariables = e.detectedVariables();
    state.filledVariableCount = e.filledVariableCount();
    state.resolvedContent = e.resolvedContent();
    state.snippets = plain.snippets;
    state.drafts = plain.unsavedEdits;
    state.shown = plain.filteredSnippets();
    state.idToDelete = plain.snippetIDToDelete;
    if (parts.storage.stored)
        state.stored = parts.storage.stored->data;
    state.storageCalls = parts.storage.calls;
    if (!e.copied.isEmpty())
        state.lastCopied = e.copied.last();
    state.listFocuses = e.listFocuses;
    return state;
}

QString EditorGame::step()
{
    SnippetEditorViewModel& real = *world.editor;
    isOpenedAnew = false;
    world.clock.advance(1ms);
    parts.clock.advance(1ms);
    switch (roll(24)) {
    case 0:
    case 1: {
        const QString title = roll(2) == 0 ? anyText() : u"title %1"_s.arg(++edits);
        real.setTitle(title);
        editor->title = title;
        editor->noteEdit();
        return u"title "_s + title;
    }
    case 2:
    case 3: {
        const QString content = editor->content + anyText().left(7);
        const QString typed = roll(3) == 0 ? anyText() : content;
        real.setContent(typed);
        editor->content = typed;
        editor->noteEdit();
        return u"content "_s + typed;
    }
    case 4: {
        const QString line = anyText();
        real.setSubtitle(line);
        editor->setSubtitle(line);
        return u"subtitle "_s + line;
    }
    case 5:
    case 6: {
        static const QStringList terms{u"Swift"_s,        u" swift\n"_s,     u""_s,  u" "_s,
                                       QString(30, u'k'), QString(31, u'k'), u"b"_s, u"c"_s,
                                       u"\u00c4\u00d6"_s};
        const QString term = roll(3) == 0 ? u"k%1"_s.arg(++edits) : anyOf(terms);
        real.addKeyword(term);
        editor->addKeyword(term);
        return u"add keyword "_s + term;
    }
    case 7: {
        const QString term = editor->keywords.isEmpty() ? u"none"_s : anyOf(editor->keywords);
        real.removeKeyword(term);
        editor->removeKeyword(term);
        return u"remove keyword "_s + term;
    }
    case 8:
    case 9: {
        const QString name = anyVariable();
        const QString value = anyText();
        real.setVariableValue(value, name);
        editor->setVariableValue(value, name);
        return u"value of "_s + name + u": "_s + value;
    }
    case 10:
        real.clearVariableValues();
        editor->clearVariableValues();
        return u"clear values"_s;
    case 11:
        real.save();
        editor->save();
        return u"save"_s;
    case 12:
        real.revertChanges();
        editor->revertChanges();
        return u"revert"_s;
    case 13:
        real.copyToClipboard();
        editor->copyToClipboard();
        return u"copy"_s;
    case 14: {
        const QString name =
            roll(2) == 0 ? anyOf(editor->availableCollections) : QString(anyName());
        real.changeCollection(name);
        editor->changeCollection(name);
        return u"change to "_s + name;
    }
    case 15: {
        const QString name = anyName();
        real.setNewCollectionName(name);
        editor->newCollectionName = name;
        const bool isAdding = roll(3) > 0;
        real.setIsAddingNewCollection(isAdding);
        editor->isAddingNewCollection = isAdding;
        return u"new collection "_s + name;
    }
    case 16: {
        const QString from = anyName();
        const QString to = anyName();
        const QString trimmed = trimmedHorizontally(to).toString();
        world.model.renameCollection(from, to);
        plain.renameCollection(from, to);
        if (!trimmed.isEmpty() && trimmed != from)
            editor->collectionsDidChange(from, trimmed);
        return u"rename "_s + from + u" to "_s + to;
    }
    case 17: {
        const std::chrono::milliseconds time(100 * (1 + roll(20)));
        world.scheduler.advance(time);
        parts.scheduler.advance(time);
        editor->passTime(static_cast<int>(time.count()));
        return u"pass time"_s;
    }
    case 18:
        real.escape();
        editor->escape();
        return u"escape"_s;
    case 19:
        real.loadCollections();
        editor->loadCollections();
        return u"load collections"_s;
    case 20:
        if (plain.frozenSnippetOrder.size() < 2)
            return u"nothing"_s;
        world.model.moveSnippets({0}, 2, true);
        plain.moveSnippets({0}, 2, true);
        return u"move"_s;
    case 21: {
        const bool isUnsaved = roll(2) == 0;
        isUnsaved ? world.model.selectUnsaved() : world.model.selectCollection(std::nullopt);
        isUnsaved ? plain.selectUnsaved() : plain.selectCollection(std::nullopt);
        return u"select"_s;
    }
    case 22:
        reload();
        return u"reload"_s;
    default:
        isOpenedAnew = open();
        return u"open"_s;
    }
}

class EditorRandomSequence : public testing::TestWithParam<bool> {};

constexpr int games = 150;
constexpr int steps = 200;

TEST_P(EditorRandomSequence, AgreesWithThePlainEditorAfterEachStep)
{
    for (unsigned seed = 0; seed < games; ++seed) {
        EditorGame game(seed, GetParam());
        QStringList played;
        EditorState before = game.state();
        for (int step = 0; step < steps; ++step) {
            played.append(game.step());
            const EditorState now = game.state();
            const EditorState expected = game.plainState();
            ASSERT_TRUE(now == expected)
                << "seed " << seed << "\nplayed: " << played.join(u"; ").toStdString() << "\nis:\n"
                << text(now) << "should be:\n"
                << text(expected);
            const QMap<QString, int> announced = game.world.edited->take();
            if (!game.isOpenedAnew) {
                ASSERT_EQ(text(announced), text(dueAnnouncements(before, now)))
                    << "seed " << seed << "\nplayed: " << played.join(u"; ").toStdString();
            }
            before = now;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Disks, EditorRandomSequence, testing::Values(false, true),
                         [](const auto& kind) { return kind.param ? "Failing" : "Sound"; });

} // namespace
} // namespace vellumry::test
