#include "views/sheets/ConflictResolutionSheet.h"

#include "support/FakeFileViewer.h"
#include "sync/ConflictDetectionService.h"
#include "sync/ConflictResolution.h"
#include "views/SheetFixture.h"
#include "views/ShownToolTip.h"
#include "views/common/DateText.h"
#include "views/common/NoteView.h"
#include "views/sheets/ConflictFileRow.h"

#include <QPointer>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Strategy = ConflictMergeStrategy;

ConflictFile conflictFile(const QString& path, std::optional<CloudDriveType> drive)
{
    return {.id = QUuid::createUuid(),
            .url = path,
            .cloudDriveType = drive,
            .modifiedDate = Date(1'763'576'520s),
            .fileSize = 12,
            .originalFileName = {}};
}

class ConflictResolutionSheetTest : public SheetFixture {
protected:
    ConflictResolutionSheet& open(const QList<ConflictFile>& conflicts)
    {
        auto* made = new ConflictResolutionSheet(
            {.theme = theme,
             .scheduler = scheduler,
             .conflicts = conflicts,
             .onResolve = [this](Strategy strategy) { onResolve(strategy); },
             .fileViewer = fileViewer,
             .onDismiss = [this] { host.dismiss(sheet); }});
        sheet = made;
        return present(made, [this] { sheet->cancel(); });
    }

    QList<ConflictFile> two()
    {
        return {conflictFile(u"/data/Shell (conflicted copy 2025-11-19).json"_s,
                             CloudDriveType::dropbox),
                conflictFile(u"/data/Meetings-Workbench.json"_s, std::nullopt)};
    }

    ConflictFileRow& file(size_t number) { return *sheet->fileRows().at(number); }

    QList<Strategy> resolved;
    FakeFileViewer fileViewer;
    std::function<void(Strategy)> onResolve = [this](Strategy strategy) {
        resolved.append(strategy);
    };
    QPointer<ConflictResolutionSheet> sheet;
};

TEST_F(ConflictResolutionSheetTest, tellsWhatItIsAbout)
{
    open(two());
    EXPECT_EQ(labelTexts(*sheet),
              QStringList({u"Sync Conflict Detected"_s,
                           u"This usually happens when changes are made on multiple devices "
                           "before syncing completes."_s,
                           u"Multiple versions of your data were found"_s, u"Conflict Files (2)"_s,
                           u"Resolution Strategy"_s}));
    EXPECT_EQ(sheet->ignoreButton().text(), u"Ignore for Now"_s);
    EXPECT_EQ(sheet->resolveButton().text(), u"Resolve Conflict"_s);
    EXPECT_FALSE(sheet->errorLine().isVisible());
    EXPECT_EQ(focused(), u"Resolve Conflict"_s);
}

TEST_F(ConflictResolutionSheetTest, aNameIsReadInItsToolTipAsItStands)
{
    open({conflictFile(u"/data/<b>R&amp;D.json"_s, std::nullopt)});
    EXPECT_EQ(shownToolTip(file(0).headLine()), u"<b>R&amp;D.json");
}

TEST_F(ConflictResolutionSheetTest, aSingleRecordIsCountedInTheSameForm)
{
    open({two().first()});
    EXPECT_TRUE(labelTexts(*sheet).contains(u"Conflict Files (1)"_s));
}

TEST_F(ConflictResolutionSheetTest, offersTheStrategiesInTheirOrder)
{
    open(two());
    QStringList table;
    for (const StrategyOptionRow* row : sheet->strategyRows())
        table.append(row->contents().symbol + u'|' + row->contents().title + u'|' +
                     row->contents().badge + u'|' + row->mark());
    EXPECT_EQ(table, QStringList({u"internaldrive|Keep Local||circle"_s,
                                  u"cloud|Use Conflict Version||circle"_s,
                                  u"sparkles|Smart Merge|Recommended|checkmark.circle.fill"_s,
                                  u"doc.on.doc|Keep Both||circle"_s}));
    EXPECT_EQ(sheet->strategyRows()[3]->contents().detail,
              u"Keep all snippets from both versions (may create duplicates)"_s);
}

TEST_F(ConflictResolutionSheetTest, aRowOpensAndShowsMore)
{
    open(two());
    EXPECT_EQ(file(0).headLine().text(), u"Shell (conflicted copy 2025-11-19).json"_s);
    click(file(0).headLine());
    EXPECT_TRUE(file(0).isExpanded());
    const QStringList texts = labelTexts(file(0));
    EXPECT_EQ(texts,
              QStringList({u"Modified: "_s + mediumDateTime(Date(1'763'576'520s)), u"Full path:"_s,
                           u"/data/Shell (conflicted copy 2025-11-19).json"_s}));
    ASSERT_TRUE(file(0).revealButton());
    EXPECT_EQ(file(0).revealButton()->text(), u"Reveal in Finder"_s);
    click(*file(0).revealButton());
    EXPECT_EQ(fileViewer.items, QStringList({u"/data/Shell (conflicted copy 2025-11-19).json"_s}));
    click(file(0).headLine());
    EXPECT_FALSE(file(0).isExpanded());
}

TEST_F(ConflictResolutionSheetTest, aFileThatCannotBeShownIsToldInItsRow)
{
    open(two());
    click(file(0).headLine());
    EXPECT_FALSE(file(0).problemNote()->isVisible());
    click(*file(0).revealButton());
    fileViewer.fail(u"there is no such file"_s);
    settle();
    EXPECT_TRUE(file(0).problemNote()->isVisible());
    EXPECT_EQ(file(0).problemNote()->text(), u"The file cannot be shown: there is no such file"_s);
    EXPECT_EQ(file(0).problemNote()->symbol(), u"exclamationmark.triangle.fill"_s);
    EXPECT_FALSE(sheet->errorLine().isVisible());
    click(*file(0).revealButton());
    EXPECT_FALSE(file(0).problemNote()->isVisible()) << "until this one fails as well";
    // An answer that comes when the row has been closed finds nobody.
    click(file(0).headLine());
    fileViewer.fail(u"too late"_s);
    EXPECT_FALSE(file(0).isExpanded());
}

TEST_F(ConflictResolutionSheetTest, openingASecondRowClosesTheFirst)
{
    open(two());
    click(file(0).headLine());
    click(file(1).headLine());
    EXPECT_FALSE(file(0).isExpanded());
    EXPECT_TRUE(file(1).isExpanded());
}

TEST_F(ConflictResolutionSheetTest, theFocusGoesFromAboveToBelow)
{
    open(two());
    click(file(0).headLine());
    sheet->resolveButton().setFocus(Qt::TabFocusReason);
    EXPECT_EQ(tabWay(),
              QStringList({u"Resolve Conflict"_s, u"Shell (conflicted copy 2025-11-19).json"_s,
                           u"Reveal in Finder"_s, u"Meetings-Workbench.json"_s, u"Keep Local"_s,
                           u"Use Conflict Version"_s, u"Smart Merge"_s, u"Keep Both"_s,
                           u"Ignore for Now"_s}));
}

TEST_F(ConflictResolutionSheetTest, resolvesWithTheChosenStrategyAndGoesHalfASecondLater)
{
    open(two());
    click(*sheet->strategyRows()[0]);
    EXPECT_EQ(sheet->strategyRows()[0]->mark(), u"checkmark.circle.fill"_s);
    EXPECT_EQ(sheet->strategyRows()[2]->mark(), u"circle"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(resolved, QList<Strategy>({Strategy::useLocal}));
    EXPECT_EQ(sheet->resolveButton().text(), u"Resolving..."_s);
    EXPECT_FALSE(sheet->resolveButton().isEnabled());
    click(sheet->resolveButton());
    EXPECT_EQ(resolved.size(), 1);
    scheduler.advance(499ms);
    EXPECT_TRUE(host.isPresenting());
    scheduler.advance(1ms);
    EXPECT_FALSE(host.isPresenting());
}

TEST_F(ConflictResolutionSheetTest, escapeIgnoresForNow)
{
    open(two());
    key(Qt::Key_Escape);
    EXPECT_FALSE(host.isPresenting());
    EXPECT_TRUE(resolved.isEmpty());
}

/// With real copies in the data folder.
TEST_F(ConflictResolutionSheetTest, ignoringLeavesTheFilesAndTheWarning)
{
    const QString copy = u"/old/work (conflicted copy 2024-01-31).json"_s;
    files.makeFolder(u"/old"_s);
    files.replace(u"/old/_metadata.json"_s, metadataFileBytes({u"w"_s}));
    files.replace(u"/old/work.json"_s, collectionFileBytes(makeCollection(u"w"_s, u"Work"_s), {}));
    files.replace(copy, "{}");
    EXPECT_TRUE(world.service().loadFullData());
    const ConflictDetectionService detection({world.locations, files});
    ConflictResolution resolution(detection, world.service());
    onResolve = [&](Strategy strategy) { resolution.resolve(strategy); };
    world.service().setDetectedConflicts(detection.detectConflicts(u"/old"_s));
    ASSERT_EQ(world.service().detectedConflicts().size(), 1);

    open(world.service().detectedConflicts());
    click(sheet->ignoreButton());
    EXPECT_FALSE(host.isPresenting());
    EXPECT_TRUE(files.exists(copy));
    EXPECT_EQ(world.service().detectedConflicts().size(), 1);

    open(world.service().detectedConflicts());
    click(sheet->resolveButton());
    EXPECT_FALSE(files.exists(copy));
    EXPECT_TRUE(world.service().detectedConflicts().isEmpty());
}

TEST_F(ConflictResolutionSheetTest, manyCopiesScrollAndTheFocusStaysInSight)
{
    QList<ConflictFile> many;
    for (int i = 0; i < 200; ++i)
        many.append(conflictFile(u"/data/copy %1.json"_s.arg(i), CloudDriveType::oneDrive));
    open(many);
    EXPECT_LE(sheet->height(), 648);
    file(150).headLine().setFocus(Qt::TabFocusReason);
    settle();
    EXPECT_FALSE(file(150).headLine().visibleRegion().isEmpty());
    EXPECT_TRUE(sheet->resolveButton().isVisible());
}

TEST_F(ConflictResolutionSheetTest, Pictures)
{
    open(two());
    click(file(0).headLine());
    picture(u"conflict-resolution"_s);
    click(sheet->resolveButton());
    picture(u"conflict-resolution-resolving"_s);
}

} // namespace
} // namespace vellumry::test
