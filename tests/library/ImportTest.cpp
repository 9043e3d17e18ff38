// The list model's import.

#include "library/LibraryWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using enum ConflictResolutionMode;

const QString backup = u"/backup.json"_s;

/// The backup file with these collections.
QByteArray bytesOf(const QList<ExportCollection>& collections)
{
    return ExportDocument(
               {.version = u"2.0"_s, .exportedAt = dateAt(0), .collections = collections})
        .fileWrapper();
}

ExportCollection exported(const QString& name, const QList<Snippet>& snippets,
                          const std::optional<QString>& color = std::nullopt)
{
    return {
        .id = u"foreign"_s, .name = name, .displayOrder = 7, .color = color, .snippets = snippets};
}

/// A snippet with this title and content, updated in the second of this number.
Snippet version(const QString& title, const QString& content, int second)
{
    Snippet snippet = makeSnippet(u"foreign id of "_s + title, u"Work"_s, content);
    snippet.setTitle(title);
    snippet.setUpdatedAt(dateAt(qint64{1000} * second));
    return snippet;
}

/// The same as it stands in the library, with a number.
Snippet local(const QString& id, const QString& title, const QString& content, int second,
              qint64 number)
{
    Snippet snippet = version(title, content, second);
    snippet.setId(id);
    snippet.setDisplayOrder(number);
    return snippet;
}

/// Operations that both worlds have.
class ImportBase : public testing::Test {
protected:
    static QStringList titlesIn(const SnippetListViewModel& model)
    {
        QStringList titles;
        for (const Snippet& snippet : model.snippets())
            titles.append(snippet.title());
        return titles;
    }
};

class Import : public ImportBase {
protected:
    void SetUp() override
    {
        world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
                   {local(u"a"_s, u"alpha"_s, u"local"_s, 5, 0),
                    local(u"b"_s, u"beta"_s, u"local"_s, 5, 1)});
    }

    void import(const QList<ExportCollection>& collections) { importBytes(bytesOf(collections)); }

    void importBytes(const QByteArray& bytes)
    {
        world.files.replace(backup, bytes);
        model.handleImport({.path = backup, .error = std::nullopt});
    }

    void resolve(ConflictResolutionMode mode)
    {
        ASSERT_TRUE(model.showImportConflictDialog());
        model.setSelectedConflictResolutionMode(mode);
        model.confirmConflictResolution();
    }

    [[nodiscard]] QString pill() const
    {
        return model.importResult() ? model.importResult()->text() : u"none"_s;
    }

    [[nodiscard]] QStringList titles() const { return titlesIn(model); }

    LibraryWorld world;
    SnippetListViewModel& model = world.model;
};

using ImportFailure = Import;
using ImportWithoutConflicts = Import;
using ImportConflicts = Import;
using ImportResultTime = Import;
using ImportOnAFailingDisk = Import;

TEST(ImportResultText, TellsTheCount)
{
    EXPECT_EQ(ImportResult::success(0).text(), u"No new snippets"_s);
    EXPECT_EQ(ImportResult::success(1).text(), u"Imported 1 snippet"_s);
    EXPECT_EQ(ImportResult::success(2).text(), u"Imported 2 snippets"_s);
    EXPECT_EQ(ImportResult::success(12'345).text(), u"Imported 12345 snippets"_s);
    EXPECT_EQ(ImportResult::success(0).symbol(), u"checkmark"_s);
    EXPECT_EQ(ImportResult::success(2).symbol(), u"checkmark"_s);
    EXPECT_EQ(ImportResult::failure(u"%1 words"_s).text(), u"Import failed: %1 words"_s);
    EXPECT_EQ(ImportResult::failure(u""_s).symbol(), u"xmark"_s);
}

// Failures

TEST_F(ImportFailure, OfTheDialogIsToldForThreeSeconds)
{
    model.handleImport({.path = {}, .error = u"no such place"_s});
    EXPECT_EQ(pill(), u"Import failed: no such place"_s);
    world.scheduler.advance(2999ms);
    EXPECT_TRUE(model.importResult());
    world.scheduler.advance(1ms);
    EXPECT_FALSE(model.importResult());
    EXPECT_THAT(world.storage.calls, IsEmpty());
}

TEST_F(ImportFailure, OfTheReadingIsLoggedAndStays)
{
    world.log.lines.clear();
    model.handleImport({.path = u"/missing.json"_s, .error = std::nullopt});
    EXPECT_THAT(world.log.lines,
                ElementsAre(u"ImportExportService: 导入失败 - cannot read \"/missing.json\": "
                            "No such file or directory"_s));
    EXPECT_EQ(pill(), u"Import failed: Invalid file format"_s);
    world.scheduler.advance(1h);
    EXPECT_EQ(pill(), u"Import failed: Invalid file format"_s);
}

TEST_F(ImportFailure, OfTheFormatStaysAndIsNotLogged)
{
    world.log.lines.clear();
    importBytes("{}");
    EXPECT_EQ(pill(), u"Import failed: Invalid file format"_s);
    EXPECT_THAT(world.log.lines, IsEmpty());
    world.scheduler.advance(1h);
    EXPECT_EQ(pill(), u"Import failed: Invalid file format"_s);
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"importResult"_s, 1}}));
}

TEST_F(ImportFailure, OfTheLibrarysOwnFiles)
{
    importBytes(collectionFileBytes(makeCollection(u"W"_s, u"Work"_s), model.snippets()));
    EXPECT_EQ(pill(), u"Import failed: Invalid file format"_s);
}

TEST_F(ImportResultTime, OfAnOlderImportEndsANewerResult)
{
    model.handleImport({.path = {}, .error = u"first"_s});
    world.scheduler.advance(2s);
    importBytes("{}");
    world.scheduler.advance(1s);
    EXPECT_FALSE(model.importResult()) << "which has no time of its own";
    import({});
    world.scheduler.advance(1s);
    import({});
    world.scheduler.advance(2s);
    EXPECT_FALSE(model.importResult());
    world.scheduler.advance(1s);
    EXPECT_FALSE(model.importResult());
    EXPECT_EQ(world.scheduler.pending(), 0U);
}

TEST(ImportLifetime, DoesNotKeepTheModelAlive)
{
    LibraryParts parts;
    parts.files.replace(backup, bytesOf({exported(u"New"_s, {version(u"t"_s, u"x"_s, 0)})}));
    auto shortLived = std::make_unique<SnippetListViewModel>(
        SnippetListViewModel::Dependencies{.storageService = parts.storage,
                                           .searchService = parts.search,
                                           .colors = parts.colors,
                                           .notifications = parts.notifications,
                                           .scheduler = parts.scheduler,
                                           .clock = parts.clock,
                                           .newIdentifier = [&] { return parts.newIdentifier(); },
                                           .files = parts.files});
    shortLived->setSelectedSnippetID(u"a"_s);
    shortLived->handleImport({.path = backup, .error = std::nullopt});
    EXPECT_EQ(parts.scheduler.pending(), 2U);
    shortLived.reset();
    parts.scheduler.advance(10s);
    EXPECT_EQ(parts.scheduler.pending(), 0U);
}

// Without conflicts

TEST_F(ImportWithoutConflicts, OfOnesOwnExportFindsNothingNew)
{
    world.clock.advance(123'456'789ns);
    model.createSnippet();
    model.createSnippet();
    model.showExport();
    model.exportTo(backup);
    world.storage.calls.clear();
    const QList<Snippet> before = model.snippets();
    model.handleImport({.path = backup, .error = std::nullopt});
    EXPECT_EQ(pill(), u"No new snippets"_s);
    EXPECT_FALSE(model.showImportConflictDialog());
    EXPECT_EQ(model.snippets(), before);
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"load"_s));
}

TEST_F(ImportWithoutConflicts, MakesANewSnippetOfWhatIsNew)
{
    Snippet given = version(u"gamma"_s, u"text"_s, 1);
    given.setSubtitle(u"sub"_s);
    given.setKeywords({u"k"_s, u"l"_s});
    given.setUsageCount(4);
    given.setLastUsedAt(dateAt(9000));
    given.setDisplayOrder(0);
    given.setVariables({{u"name"_s, u"value"_s}});
    world.clock.advance(1h);
    import({exported(u"Work"_s, {given})});
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    SnippetFields expected = given.fields();
    expected.id = u"new-1"_s;
    expected.createdAt = expected.updatedAt = world.clock.now();
    expected.displayOrder = 2;
    expected.variables.clear();
    EXPECT_EQ(world.snippet(u"new-1"_s), Snippet(expected));
    EXPECT_EQ(world.storage.stored->data.snippets, model.snippets());
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"load"_s, u"save"_s));
}

TEST_F(ImportWithoutConflicts, BringsNewCollectionsWithTheirColours)
{
    world.colors.saveColors({{u"Plain"_s, u"green"_s}});
    import({exported(u"Painted"_s, {}, u"#102030"_s), exported(u"Plain"_s, {}),
            exported(u"Odd"_s, {version(u"t"_s, u"x"_s, 0)}, u"no colour"_s),
            exported(u"Work"_s, {}, u"#405060"_s)});
    EXPECT_THAT(world.modelNames(),
                ElementsAre(u"Work"_s, u"Home"_s, u"Painted"_s, u"Plain"_s, u"Odd"_s));
    EXPECT_EQ(model.collectionModels()[2].displayOrder, 2) << "not that of the file";
    EXPECT_EQ(model.collectionModels()[2].id, u"new-1"_s);
    EXPECT_EQ(world.colors.loadColors(), (QMap<QString, QString>{{u"Painted"_s, u"#102030"_s},
                                                                 {u"Plain"_s, u"green"_s},
                                                                 {u"Odd"_s, u"no colour"_s}}));
    EXPECT_EQ(world.storage.stored->data.collections[2].color, u"#102030"_s);
}

TEST_F(ImportWithoutConflicts, JoinsNewCollectionsOfOneName)
{
    import(
        {exported(u"Twice"_s, {inCollection(version(u"t"_s, u"1"_s, 0), u"Twice"_s)}, u"#000001"_s),
         exported(u"Twice"_s, {inCollection(version(u"t"_s, u"2"_s, 0), u"Twice"_s)},
                  u"#000002"_s)});
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s, u"Twice"_s));
    EXPECT_EQ(model.snippetCount(u"Twice"_s), 2) << "also two of one title";
    EXPECT_EQ(world.colors.loadColors().value(u"Twice"_s), u"#000002"_s);
    EXPECT_EQ(pill(), u"Imported 2 snippets"_s);
}

TEST_F(ImportWithoutConflicts, PutsASnippetIntoItsOwnCollectionAndBringsThatIntoBeing)
{
    import({exported(u"Work"_s, {inCollection(version(u"z"_s, u"x"_s, 0), u"Zoo"_s),
                                 inCollection(version(u"c"_s, u"x"_s, 0), u"Car"_s)}),
            exported(u"New"_s, {inCollection(version(u"n"_s, u"x"_s, 0), u"Home"_s)})});
    EXPECT_THAT(world.modelNames(),
                ElementsAre(u"Work"_s, u"Home"_s, u"New"_s, u"Car"_s, u"Zoo"_s));
    EXPECT_EQ(model.snippetCount(u"Zoo"_s), 1);
    EXPECT_EQ(model.snippetCount(u"New"_s), 0);
    EXPECT_EQ(model.snippetCount(u"Home"_s), 1);
    EXPECT_EQ(model.collections(), world.modelNames()) << "nothing is missing";
}

TEST_F(ImportWithoutConflicts, KeepsNamesWithEveryKindOfWhiteSpaceApart)
{
    const QStringList names{u""_s,       u" "_s,          u" Work"_s,  u"Work\t"_s,
                            u"Work\n"_s, u"\u00a0Work"_s, u"\u2028"_s, u"Work\0x"_s};
    QList<ExportCollection> collections;
    for (const QString& name : names)
        collections.append(exported(name, {inCollection(version(u"t"_s, u"x"_s, 0), name)}));
    import(collections);
    EXPECT_EQ(world.modelNames(), (QStringList{u"Work"_s, u"Home"_s} + names));
    for (const QString& name : names)
        EXPECT_EQ(model.snippetCount(name), 1) << name.toStdString();
}

TEST_F(ImportWithoutConflicts, RenumbersEveryCollectionByDate)
{
    world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
               {orderedSnippet(u"a"_s, u"Work"_s, 0, 2), orderedSnippet(u"b"_s, u"Work"_s, 1, 1),
                orderedSnippet(u"c"_s, u"Home"_s, 0, 2), orderedSnippet(u"d"_s, u"Home"_s, 1, 1)});
    import({exported(u"Work"_s, {version(u"first"_s, u"x"_s, 0), version(u"then"_s, u"x"_s, 0)})});
    model.selectCollection(u"Work"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"b"_s, u"a"_s, u"new-1"_s, u"new-2"_s));
    model.selectCollection(u"Home"_s);
    EXPECT_THAT(world.shown(), ElementsAre(u"d"_s, u"c"_s));
}

TEST_F(ImportWithoutConflicts, LeavesSnippetsOfTheSameTimeAlone)
{
    import({exported(u"Work"_s, {version(u"alpha"_s, u"other"_s, 5)})});
    EXPECT_EQ(pill(), u"No new snippets"_s);
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"local"_s);
}

TEST_F(ImportWithoutConflicts, BuildsTheEditorAnewOnTheNextTurn)
{
    model.setSelectedSnippetID(u"b"_s);
    (void)world.announced.take();
    import({});
    EXPECT_EQ(model.selectedSnippetID(), std::nullopt);
    EXPECT_EQ(world.announced.take().value(u"selectedSnippetID"_s), 1);
    world.scheduler.advance(0ms);
    EXPECT_EQ(model.selectedSnippetID(), u"b"_s);
    EXPECT_EQ(world.announced.take().value(u"selectedSnippetID"_s), 1);
}

TEST_F(ImportWithoutConflicts, KeepsDrafts)
{
    model.setUnsavedEdit(titled(world.snippet(u"a"_s), u"draft"_s));
    import({exported(u"Work"_s, {version(u"gamma"_s, u"x"_s, 0)})});
    EXPECT_TRUE(model.isUnsaved(u"a"_s));
    EXPECT_EQ(model.effectiveSnippet(u"a"_s)->title(), u"draft"_s);
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"alpha"_s);
}

TEST_F(ImportWithoutConflicts, AnnouncesOnceWhatHasChanged)
{
    import({exported(u"New"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"New"_s)})});
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"snippets"_s, 1},
                                                          {u"collectionModels"_s, 1},
                                                          {u"filteredSnippets"_s, 1},
                                                          {u"importResult"_s, 1}}));
}

TEST_F(ImportWithoutConflicts, TakesNumbersAndTextsOfAnySize)
{
    Snippet huge = version(u"t"_s.repeated(100'000), u"漢😀"_s.repeated(200'000), 0);
    huge.setSubtitle(u"a\r\nb"_s + u"c"_s.repeated(1000));
    huge.setUsageCount(std::numeric_limits<qint64>::max());
    Snippet empty = inCollection(version(u""_s, u""_s, 0), u""_s);
    import({exported(u"Work"_s, {huge, empty, empty})});
    EXPECT_EQ(pill(), u"Imported 3 snippets"_s);
    EXPECT_EQ(world.snippet(u"new-1"_s).content(), huge.content());
    EXPECT_EQ(world.snippet(u"new-1"_s).subtitle().size(), 200);
    model.incrementUsage(u"new-1"_s);
    EXPECT_EQ(world.snippet(u"new-1"_s).usageCount(), std::numeric_limits<qint64>::max());
}

TEST_F(ImportWithoutConflicts, GivesForeignAndDuplicateIdsNoMeaning)
{
    Snippet one = version(u"one"_s, u"x"_s, 0);
    one.setId(u"a"_s);
    Snippet two = version(u"two"_s, u"x"_s, 0);
    two.setId(u"a"_s);
    import({exported(u"Work"_s, {one, two})});
    EXPECT_EQ(idsOf(model.snippets()), (QStringList{u"a"_s, u"b"_s, u"new-1"_s, u"new-2"_s}));
    EXPECT_EQ(world.snippet(u"a"_s).title(), u"alpha"_s);
}

TEST_F(ImportWithoutConflicts, TakesAFileOfAnyVersion)
{
    importBytes(R"({"version":"9","exportedAt":"2026-03-09T14:05:07Z","collections":[]})");
    EXPECT_EQ(pill(), u"No new snippets"_s);
}

TEST_F(ImportWithoutConflicts, IsAskedForByItsPicker)
{
    model.setShowImportPicker(true);
    EXPECT_TRUE(model.showImportPicker());
    model.setShowImportPicker(false);
    EXPECT_FALSE(model.showImportPicker());
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"showImportPicker"_s, 2}}));
}

// With conflicts

TEST_F(ImportConflicts, WaitForAnAnswer)
{
    import({exported(u"Work"_s,
                     {version(u"alpha"_s, u"imported"_s, 6), version(u"gamma"_s, u"new"_s, 0)})});
    EXPECT_TRUE(model.showImportConflictDialog());
    ASSERT_TRUE(model.conflictDetectionResult());
    EXPECT_EQ(model.conflictDetectionResult()->snippetConflictCount(), 1);
    ASSERT_TRUE(model.pendingImportData());
    EXPECT_EQ(model.pendingImportData()->snippets.size(), 2);
    EXPECT_EQ(model.selectedConflictResolutionMode(), smartUpdate);
    EXPECT_EQ(model.importResult(), std::nullopt);
    EXPECT_EQ(model.snippets().size(), 2);
    EXPECT_THAT(world.storage.calls, IsEmpty());
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"showImportConflictDialog"_s, 1},
                                                          {u"conflictDetectionResult"_s, 1}}));
}

TEST_F(ImportConflicts, AreOfferedSmartUpdateEachTime)
{
    const auto file = {exported(u"Work"_s, {version(u"alpha"_s, u"imported"_s, 6)})};
    import(file);
    model.setSelectedConflictResolutionMode(keepBoth);
    model.cancelConflictResolution();
    EXPECT_EQ(model.selectedConflictResolutionMode(), keepBoth);
    EXPECT_EQ(world.announced.take().value(u"selectedConflictResolutionMode"_s), 1);
    import(file);
    EXPECT_EQ(model.selectedConflictResolutionMode(), smartUpdate);
}

TEST_F(ImportConflicts, AreCancelledWithAllThatIsNew)
{
    import({exported(u"Work"_s,
                     {version(u"alpha"_s, u"imported"_s, 6), version(u"gamma"_s, u"new"_s, 0)}),
            exported(u"New"_s, {})});
    model.cancelConflictResolution();
    EXPECT_FALSE(model.showImportConflictDialog());
    EXPECT_FALSE(model.conflictDetectionResult());
    EXPECT_FALSE(model.pendingImportData());
    EXPECT_FALSE(model.importResult());
    EXPECT_THAT(titles(), ElementsAre(u"alpha"_s, u"beta"_s));
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    model.confirmConflictResolution();
    EXPECT_THAT(world.storage.calls, IsEmpty()) << "there is nothing to confirm any more";
}

TEST_F(ImportConflicts, GoByTimeInASmartUpdate)
{
    Snippet newer = version(u"alpha"_s, u"newer"_s, 6);
    newer.setSubtitle(u"sub"_s);
    newer.setKeywords({u"k"_s});
    newer.setUsageCount(99);
    newer.setVariables({{u"foreign"_s, u"v"_s}});
    newer.setCreatedAt(dateAt(77'000));
    Snippet before = world.snippet(u"a"_s);
    before.setVariables({{u"own"_s, u"v"_s}});
    before.setUsageCount(3);
    before.setLastUsedAt(dateAt(4));
    model.updateSnippet(before);
    import({exported(u"Work"_s, {newer, version(u"beta"_s, u"older"_s, 4)})});
    resolve(smartUpdate);
    EXPECT_FALSE(model.showImportConflictDialog());
    EXPECT_FALSE(model.conflictDetectionResult());
    EXPECT_FALSE(model.pendingImportData());
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    SnippetFields expected = before.fields();
    expected.content = u"newer"_s;
    expected.subtitle = u"sub"_s;
    expected.keywords = {u"k"_s};
    expected.updatedAt = dateAt(6000);
    EXPECT_EQ(world.snippet(u"a"_s), Snippet(expected));
    EXPECT_EQ(world.snippet(u"b"_s).content(), u"local"_s);
}

TEST_F(ImportConflicts, WithOlderOnesAloneCountNothing)
{
    import({exported(u"Work"_s, {version(u"alpha"_s, u"older"_s, 4)})});
    resolve(smartUpdate);
    EXPECT_EQ(pill(), u"No new snippets"_s);
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"local"_s);
}

TEST_F(ImportConflicts, WithinOneSecondAreWonByTheLocalSide)
{
    Snippet saved = world.snippet(u"a"_s);
    saved.setUpdatedAt(dateAt(10'300));
    model.updateSnippet(saved);
    model.showExport();
    model.exportTo(backup);
    saved.setUpdatedAt(dateAt(10'700));
    saved.setContent(u"edited in the same second"_s);
    model.updateSnippet(saved);
    model.handleImport({.path = backup, .error = std::nullopt});
    resolve(smartUpdate);
    EXPECT_EQ(pill(), u"No new snippets"_s);
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"edited in the same second"_s);
}

TEST_F(ImportConflicts, AreAllReplacedInARestore)
{
    import(
        {exported(u"Work"_s, {version(u"alpha"_s, u"newer"_s, 6), version(u"beta"_s, u"older"_s, 4),
                              version(u"gamma"_s, u"new"_s, 0)})});
    resolve(restoreFromBackup);
    EXPECT_EQ(pill(), u"Imported 3 snippets"_s);
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"newer"_s);
    EXPECT_EQ(world.snippet(u"b"_s).content(), u"older"_s);
    EXPECT_EQ(world.snippet(u"b"_s).updatedAt(), dateAt(4000));
}

TEST_F(ImportConflicts, AreSkipped)
{
    import({exported(u"Work"_s,
                     {version(u"alpha"_s, u"newer"_s, 6), version(u"gamma"_s, u"new"_s, 0)})});
    resolve(skipConflicts);
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"local"_s);
    EXPECT_THAT(titles(), ElementsAre(u"alpha"_s, u"beta"_s, u"gamma"_s));
}

TEST_F(ImportConflicts, KeepBothSides)
{
    Snippet other = version(u"alpha"_s, u"other"_s, 4);
    other.setUsageCount(8);
    other.setVariables({{u"v"_s, u"w"_s}});
    import({exported(u"Work"_s, {other})});
    resolve(keepBoth);
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    EXPECT_THAT(titles(), ElementsAre(u"alpha"_s, u"beta"_s, u"alpha (imported)"_s));
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"local"_s);
    const Snippet made = world.snippet(u"new-1"_s);
    EXPECT_EQ(made.content(), u"other"_s);
    EXPECT_EQ(made.usageCount(), 8);
    EXPECT_EQ(made.updatedAt(), world.clock.now());
    EXPECT_THAT(made.variables(), IsEmpty());
    EXPECT_EQ(made.displayOrder(), 2);
}

TEST_F(ImportConflicts, OfOneTitleInTwoCollectionsBothMeetTheFirst)
{
    world.load({makeCollection(u"W"_s, u"Work"_s), makeCollection(u"H"_s, u"Home"_s)},
               {local(u"w"_s, u"same"_s, u"work"_s, 5, 0),
                inCollection(local(u"h"_s, u"same"_s, u"home"_s, 1, 0), u"Home"_s)});
    const auto file = {
        exported(u"Home"_s, {inCollection(version(u"same"_s, u"for home"_s, 4), u"Home"_s)}),
        exported(u"Work"_s, {version(u"same"_s, u"for work"_s, 4)})};
    import(file);
    ASSERT_EQ(model.conflictDetectionResult()->snippetConflictCount(), 2);
    resolve(smartUpdate);
    EXPECT_EQ(pill(), u"Imported 2 snippets"_s) << "also the one that is older at work";
    EXPECT_EQ(world.snippet(u"h"_s).content(), u"for work"_s) << "the later one overwrites";
    EXPECT_EQ(world.snippet(u"h"_s).collection(), u"Home"_s);
    EXPECT_EQ(world.snippet(u"w"_s).content(), u"work"_s);
}

TEST_F(ImportConflicts, WithASnippetThatIsGoneMeanwhileCountNothing)
{
    import({exported(u"Work"_s, {version(u"alpha"_s, u"newer"_s, 6)})});
    world.storage.stored->data.snippets.removeFirst();
    Q_EMIT world.notifications.syncDataDidChange({});
    EXPECT_TRUE(model.showImportConflictDialog());
    resolve(restoreFromBackup);
    EXPECT_EQ(pill(), u"No new snippets"_s);
    EXPECT_THAT(titles(), ElementsAre(u"beta"_s));
}

TEST_F(ImportConflicts, UpdateTheFirstOfLocalSnippetsWithOneId)
{
    world.load({makeCollection(u"W"_s, u"Work"_s)}, {local(u"a"_s, u"one"_s, u"first"_s, 5, 0),
                                                     local(u"a"_s, u"two"_s, u"second"_s, 5, 1)});
    import({exported(u"Work"_s, {version(u"two"_s, u"newer"_s, 6)})});
    resolve(smartUpdate);
    EXPECT_THAT(titles(), ElementsAre(u"two"_s, u"two"_s));
    EXPECT_EQ(model.snippets().first().content(), u"newer"_s);
    EXPECT_EQ(model.snippets().last().content(), u"second"_s);
}

// When it cannot be saved

TEST_F(ImportOnAFailingDisk, LeavesTheLibraryAsItWasAndSaysWhy)
{
    model.setSelectedSnippetID(u"a"_s);
    (void)world.announced.take();
    const QList<Snippet> before = model.snippets();
    const auto stored = world.storage.stored;
    world.storage.fails = [](qsizetype number) { return number == 0; };
    import({exported(u"New"_s, {version(u"t"_s, u"x"_s, 0)}, u"#010203"_s)});
    EXPECT_EQ(pill(), u"Import failed: no space"_s);
    EXPECT_EQ(model.snippets(), before);
    EXPECT_THAT(world.modelNames(), ElementsAre(u"Work"_s, u"Home"_s));
    EXPECT_THAT(world.colors.loadColors(), IsEmpty());
    EXPECT_EQ(world.storage.stored->data.snippets, stored->data.snippets);
    EXPECT_EQ(world.storage.stored->data.collections.size(), 2);
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"save"_s)) << "the second one undoes";
    EXPECT_EQ(model.selectedSnippetID(), u"a"_s);
    EXPECT_EQ(world.announced.take(), (QMap<QString, int>{{u"importResult"_s, 1}}));
    world.scheduler.advance(3s);
    EXPECT_FALSE(model.importResult());
}

TEST_F(ImportOnAFailingDisk, EndsTheQuestionAboutConflicts)
{
    import({exported(u"Work"_s, {version(u"alpha"_s, u"newer"_s, 6)})});
    world.storage.fails = [](qsizetype) { return true; };
    resolve(restoreFromBackup);
    EXPECT_EQ(pill(), u"Import failed: no space"_s);
    EXPECT_FALSE(model.showImportConflictDialog());
    EXPECT_FALSE(model.pendingImportData());
    EXPECT_EQ(world.snippet(u"a"_s).content(), u"local"_s);
}

TEST_F(ImportOnAFailingDisk, WithoutTheNumbersIsDoneAllTheSame)
{
    world.storage.fails = [](qsizetype number) { return number == 2; };
    import({exported(u"Work"_s, {version(u"gamma"_s, u"x"_s, 0)})});
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"load"_s, u"save"_s));
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    EXPECT_EQ(world.snippet(u"new-1"_s).displayOrder(), 2);
    EXPECT_EQ(world.storage.stored->data.snippets.last().title(), u"gamma"_s);
    EXPECT_FALSE(world.storage.stored->data.snippets.last().displayOrder());
}

TEST_F(ImportOnAFailingDisk, ShowsAnEmptyListWhenItCannotBeReadAgainAndLosesNothingOnTheDisk)
{
    world.storage.fails = [](qsizetype number) { return number == 1; };
    import({exported(u"Work"_s, {version(u"gamma"_s, u"x"_s, 0)})});
    EXPECT_THAT(world.storage.calls, ElementsAre(u"save"_s, u"load"_s));
    EXPECT_EQ(pill(), u"Imported 1 snippet"_s);
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(world.storage.stored->data.snippets.size(), 3);
    model.loadSnippets();
    EXPECT_THAT(titles(), ElementsAre(u"alpha"_s, u"beta"_s, u"gamma"_s));
}

/// The same over the real store and its files.
class ImportOverFiles : public ImportBase {
protected:
    void SetUp() override
    {
        files.makeFolder(world.folder);
        files.replace(world.path(u"_metadata.json"_s), metadataFileBytes({u"W"_s}));
        files.replace(world.path(u"work.json"_s),
                      collectionFileBytes(makeCollection(u"W"_s, u"Work"_s),
                                          {local(u"a"_s, u"alpha"_s, u"local"_s, 5, 0)}));
        files.replace(world.path(u"strange.json"_s), "no collection");
        model.loadSnippets();
        model.saveAllData();
    }

    void import(const QList<ExportCollection>& collections)
    {
        files.replace(backup, bytesOf(collections));
        model.handleImport({.path = backup, .error = std::nullopt});
    }

    QMap<QString, QByteArray> folder()
    {
        QMap<QString, QByteArray> contents;
        for (const QString& name : files.list(world.folder))
            contents.insert(name, files.bytes(world.path(name)));
        return contents;
    }

    LogCapture log;
    MemoryFileSystem files;
    StorageWorld world{files, u"/data"_s};
    FuzzySearchService search;
    SnippetListViewModel model{{.storageService = world.service(),
                                .searchService = search,
                                .colors = world.colors,
                                .notifications = world.notifications,
                                .scheduler = world.scheduler,
                                .clock = world.clock,
                                .files = files}};
};

TEST_F(ImportOverFiles, LosesNoSnippetWhoseCollectionNobodyKnows)
{
    import({exported(u"Work"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"Nowhere"_s)})});
    EXPECT_THAT(titlesIn(model), ElementsAre(u"alpha"_s, u"t"_s));
    ASSERT_TRUE(files.exists(world.path(u"nowhere.json"_s)));
    world.restart();
    const auto again = world.service().loadFullData();
    ASSERT_TRUE(again);
    EXPECT_EQ(again->data.snippets.size(), 2);
    EXPECT_EQ(files.bytes(world.path(u"strange.json"_s)), "no collection");
}

TEST_F(ImportOverFiles, LosesNothingUnderNamesOfAnyForm)
{
    const QStringList names{u""_s,      u" "_s,        u"metadata_"_s, u"../up"_s,
                            u"a/b"_s,   u"A/B"_s,      u"strange"_s,   u"WORK"_s,
                            u".json"_s, u"\u2028\t"_s, u"nul\0"_s,     u"x"_s.repeated(5000)};
    QList<ExportCollection> collections;
    for (const QString& name : names)
        collections.append(exported(name, {inCollection(version(u"t"_s, name, 0), name)}));
    import(collections);
    EXPECT_EQ(model.importResult(), ImportResult::success(names.size()));
    world.restart();
    const auto again = world.service().loadFullData();
    ASSERT_TRUE(again);
    QStringList found;
    for (const Snippet& snippet : again->data.snippets) {
        if (snippet.title() == u"t"_s && snippet.collection() == snippet.content())
            found.append(snippet.collection());
    }
    found.sort();
    QStringList expected = names;
    expected.sort();
    EXPECT_EQ(found, expected);
    EXPECT_EQ(files.bytes(world.path(u"strange.json"_s)), "no collection");
}

TEST_F(ImportOverFiles, LosesACollectionNamedAsTheMetadataFileAsEverySaveDoes)
{
    import({exported(u"_metadata"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"_metadata"_s)})});
    EXPECT_EQ(model.importResult(), ImportResult::success(1));
    EXPECT_THAT(titlesIn(model), ElementsAre(u"alpha"_s));
    EXPECT_EQ(model.collectionModels().size(), 1);
}

TEST_F(ImportOverFiles, LeavesTheFolderAsItWasWhicheverWriteFails)
{
    const auto hasSameLibrary = [](const QByteArray& a, const QByteArray& b) {
        return decodeCollectionFile(a).snippets == decodeCollectionFile(b).snippets &&
               decodeCollectionFile(a).collection == decodeCollectionFile(b).collection;
    };
    const auto before = folder();
    const QList<Snippet> snippets = model.snippets();
    for (int failing = 0; failing < 4; ++failing) {
        int writes = 0;
        files.onOperation = [&](const QString& operation, const QString& path) {
            if (operation == u"write"_s && writes++ == failing)
                throw MemoryFileSystem::error(operation, path, ENOSPC);
        };
        import({exported(u"One"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"One"_s)}),
                exported(u"Two"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"Work"_s)})});
        files.onOperation = nullptr;
        ASSERT_TRUE(model.importResult());
        EXPECT_TRUE(model.importResult()->message().contains(u"No space left"_s)) << failing;
        EXPECT_EQ(model.snippets(), snippets);
        EXPECT_EQ(model.collectionModels().size(), 1);
        const auto after = folder();
        EXPECT_EQ(after.keys(), before.keys()) << failing;
        EXPECT_TRUE(hasSameLibrary(after.value(u"work.json"_s), before.value(u"work.json"_s)))
            << failing;
        EXPECT_EQ(decodeMetadataFile(after.value(u"_metadata.json"_s)).collectionOrder,
                  QStringList{u"W"_s});
    }
}

TEST_F(ImportOverFiles, IsUndoneByTheNextSaveWhereTheDiskStaysFull)
{
    const auto before = folder();
    for (int failing = 0; failing < 3; ++failing) {
        int writes = 0;
        files.onOperation = [&](const QString& operation, const QString& path) {
            if (operation == u"write"_s && writes++ >= failing)
                throw MemoryFileSystem::error(operation, path, ENOSPC);
        };
        import({exported(u"One"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"One"_s)}),
                exported(u"Two"_s, {inCollection(version(u"t"_s, u"x"_s, 0), u"Work"_s)})});
        files.onOperation = nullptr;
        ASSERT_TRUE(model.importResult());
        EXPECT_TRUE(model.importResult()->message().contains(u"No space left"_s)) << failing;
        EXPECT_THAT(titlesIn(model), ElementsAre(u"alpha"_s));
        model.saveAllData();
        EXPECT_EQ(folder().keys(), before.keys()) << failing;
        EXPECT_EQ(decodeCollectionFile(files.bytes(world.path(u"work.json"_s))).snippets,
                  model.snippets())
            << failing;
        EXPECT_EQ(decodeMetadataFile(files.bytes(world.path(u"_metadata.json"_s))).collectionOrder,
                  QStringList{u"W"_s});
    }
}

} // namespace
} // namespace vellumry::test
