#include "views/sheets/ImportConflictView.h"

#include "views/SheetFixture.h"
#include "views/common/DateText.h"
#include "views/sheets/ConflictTableView.h"

#include <QMouseEvent>
#include <QPointer>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Mode = ConflictResolutionMode;

class ImportConflictViewTest : public SheetFixture {
protected:
    static ImportConflict conflictOf(const QString& name, std::chrono::hours local,
                                     std::chrono::hours imported)
    {
        const Date day{1'762'938'180s};
        return {.id = name,
                .type = ConflictType::snippet,
                .name = name,
                .localUpdatedAt = day + local,
                .importedUpdatedAt = day + imported};
    }

    static ConflictDetectionResult four()
    {
        ConflictDetectionResult result;
        result.conflicts = {conflictOf(u"Refund confirmation"_s, 0h, 100h),
                            conflictOf(u"Weekly sync notes"_s, 100h, 0h),
                            conflictOf(u"Find large files"_s, 0h, 1h),
                            conflictOf(u"Delivery address"_s, 0h, 0h)};
        for (int i = 0; i < 9; ++i)
            result.newSnippets.append(makeSnippet(QString::number(i), u"Work"_s));
        return result;
    }

    ImportConflictView& open(const ConflictDetectionResult& result = four())
    {
        auto* made =
            new ImportConflictView({.theme = theme,
                                    .scheduler = scheduler,
                                    .conflictResult = result,
                                    .onModeChange = [this](Mode mode) { modes.append(mode); },
                                    .onConfirm =
                                        [this] {
                                            ended.append(u"confirm"_s);
                                            host.dismiss(view);
                                        },
                                    .onCancel =
                                        [this] {
                                            ended.append(u"cancel"_s);
                                            host.dismiss(view);
                                        }});
        view = made;
        return present(made, [this] { view->cancel(); });
    }

    /// The descriptions of the rows, as a screen reader has them.
    QStringList rowTexts()
    {
        QStringList texts;
        const auto* model = view->table().model();
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->index(row, 0)
                             .data(Qt::AccessibleTextRole)
                             .toString()
                             .section(u", local"_s, 0, 0));
        return texts;
    }

    void moveTo(const QPoint& position)
    {
        QWidget* viewport = view->table().viewport();
        QMouseEvent move(QEvent::MouseMove, position, viewport->mapToGlobal(QPointF(position)),
                         Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(viewport, &move);
        settle();
    }

    QList<Mode> modes;
    QStringList ended;
    QPointer<ImportConflictView> view;
};

TEST_F(ImportConflictViewTest, tellsHowManyThereAre)
{
    open();
    EXPECT_EQ(view->size(), QSize(540, 480));
    EXPECT_EQ(labelTexts(*view), QStringList({u"Import Conflicts Detected"_s,
                                              u"Found 4 snippet(s) with the same title"_s,
                                              u"How would you like to resolve these conflicts?"_s,
                                              u"9 new item(s) will be imported"_s}));
    EXPECT_EQ(view->cancelButton().text(), u"Cancel"_s);
    EXPECT_EQ(view->continueButton().text(), u"Continue"_s);
}

TEST_F(ImportConflictViewTest, withoutNewItemsThereIsNoNote)
{
    ConflictDetectionResult result = four();
    result.newSnippets.clear();
    open(result);
    EXPECT_EQ(view->note(), QString());
    EXPECT_EQ(labelTexts(*view).size(), 3);
}

TEST_F(ImportConflictViewTest, theModesAreRadioRows)
{
    open();
    QStringList table;
    for (const OptionRow* row : view->modeRows())
        table.append(row->mark() + u'|' + row->contents().symbol + u'|' + row->contents().title);
    EXPECT_EQ(table, QStringList({u"largecircle.fill.circle|clock.arrow.circlepath|Smart Update"_s,
                                  u"circle|arrow.down.doc.fill|Restore from Backup"_s,
                                  u"circle|arrow.uturn.right|Skip Conflicts"_s,
                                  u"circle|doc.on.doc.fill|Keep Both"_s}));
    EXPECT_EQ(view->modeRows()[3]->contents().detail,
              u"Keep both versions, imported items will have \"(imported)\" suffix"_s);
}

TEST_F(ImportConflictViewTest, aModeChangesEveryDecisionAtOnceAndNothingElse)
{
    open();
    EXPECT_EQ(rowTexts(), QStringList({u"Snippet Refund confirmation, Import newer, Use Imported"_s,
                                       u"Snippet Weekly sync notes, Local newer, Keep Local"_s,
                                       u"Snippet Find large files, Import newer, Use Imported"_s,
                                       u"Snippet Delivery address, Same, Keep Local"_s}));
    const QStringList decisions{{}, u"Use Imported"_s, u"Keep Local"_s, u"Keep Both"_s};
    for (size_t mode = 1; mode < 4; ++mode) {
        click(*view->modeRows()[mode]);
        for (const QString& text : rowTexts())
            EXPECT_TRUE(text.endsWith(u", "_s + decisions[qsizetype(mode)])) << qPrintable(text);
        EXPECT_EQ(view->modeRows()[mode]->mark(), u"largecircle.fill.circle"_s);
        EXPECT_EQ(view->modeRows()[0]->mark(), u"circle"_s);
    }
    EXPECT_EQ(modes, QList<Mode>({Mode::restoreFromBackup, Mode::skipConflicts, Mode::keepBoth}));
    EXPECT_TRUE(ended.isEmpty());
}

TEST_F(ImportConflictViewTest, continuesByReturnAndCancelsByEscape)
{
    open();
    key(Qt::Key_Return);
    open();
    key(Qt::Key_Escape);
    open();
    view->modeRows()[0]->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    open();
    view->table().setFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    open();
    view->table().setFocus(Qt::TabFocusReason);
    key(Qt::Key_Escape);
    open();
    click(view->cancelButton());
    EXPECT_EQ(ended, QStringList({u"confirm"_s, u"cancel"_s, u"confirm"_s, u"confirm"_s,
                                  u"cancel"_s, u"cancel"_s}));
}

TEST_F(ImportConflictViewTest, theKeyboardReachesTheTableAndTheModes)
{
    open();
    EXPECT_EQ(tabWay(), QStringList({u"Continue"_s, u"Conflicts"_s, u"Smart Update"_s,
                                     u"Restore from Backup"_s, u"Skip Conflicts"_s, u"Keep Both"_s,
                                     u"Cancel"_s}));
    view->modeRows()[1]->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_EQ(view->selectedMode(), Mode::restoreFromBackup);
}

TEST_F(ImportConflictViewTest, thePointerOverTheMarkOpensTheTimes)
{
    open();
    const QRect mark = view->table().infoRect(0);
    moveTo(mark.center());
    EXPECT_TRUE(view->detail().isVisible());
    EXPECT_EQ(view->detail().localText(), mediumDateTime(Date{1'762'938'180s}));
    EXPECT_EQ(view->detail().importedText(), mediumDateTime(Date{1'762'938'180s} + 100h));
    EXPECT_TRUE(view->detail().accessibleName().startsWith(u"Update Time, Local: "_s));
    EXPECT_TRUE(view->detail().accessibleName().contains(u", Imported: "_s));
    moveTo(mark.center() - QPoint(200, 0));
    EXPECT_FALSE(view->detail().isVisible());
}

TEST_F(ImportConflictViewTest, aClickKeepsTheTimesOpen)
{
    open();
    const QPoint mark = view->table().infoRect(3).center();
    QTest::mouseClick(view->table().viewport(), Qt::LeftButton, {}, mark);
    moveTo(mark - QPoint(200, 0));
    EXPECT_TRUE(view->detail().isVisible());
    // All of it lies within the sheet, whatever the row.
    constexpr int shadow = 24;
    EXPECT_TRUE(view->rect().contains(
        view->detail().geometry().adjusted(shadow, shadow, -shadow, -shadow)));
    QTest::mouseClick(view->table().viewport(), Qt::LeftButton, {}, mark - QPoint(200, 0));
    EXPECT_FALSE(view->detail().isVisible());
}

TEST_F(ImportConflictViewTest, spaceOpensTheTimesOfTheCurrentRow)
{
    open();
    view->table().setFocus(Qt::TabFocusReason);
    key(Qt::Key_Down);
    EXPECT_EQ(view->table().currentIndex().row(), 1);
    key(Qt::Key_Space);
    EXPECT_EQ(view->table().detailRow(), 1);
    EXPECT_TRUE(view->detail().isVisible());
    key(Qt::Key_Down);
    EXPECT_FALSE(view->detail().isVisible());
    key(Qt::Key_Space);
    key(Qt::Key_Space);
    EXPECT_FALSE(view->detail().isVisible());
}

TEST_F(ImportConflictViewTest, followsAChangeFromElsewhere)
{
    open();
    view->setSelectedMode(Mode::keepBoth);
    EXPECT_EQ(view->modeRows()[3]->mark(), u"largecircle.fill.circle"_s);
    EXPECT_TRUE(modes.isEmpty());
}

TEST_F(ImportConflictViewTest, aHundredThousandConflictsAreNoMoreWidgets)
{
    ConflictDetectionResult result;
    for (int i = 0; i < 100'000; ++i)
        result.conflicts.append(conflictOf(u"Title %1"_s.arg(i), 0h, std::chrono::hours(i % 3)));
    open(four());
    const auto few = view->findChildren<QWidget*>().size();
    host.dismiss(view);
    settle();
    open(result);
    EXPECT_EQ(view->findChildren<QWidget*>().size(), few - 1) << "the note is missing";
    EXPECT_TRUE(labelTexts(*view).contains(u"Found 100000 snippet(s) with the same title"_s));
    EXPECT_EQ(view->size(), QSize(540, 480));
    view->table().setFocus(Qt::TabFocusReason);
    key(Qt::Key_End);
    EXPECT_EQ(view->table().currentIndex().row(), 99'999);
    click(*view->modeRows()[3]);
    picture(u"import-conflicts-many"_s);
}

TEST_F(ImportConflictViewTest, Pictures)
{
    open();
    picture(u"import-conflicts"_s);
    moveTo(view->table().infoRect(0).center());
    picture(u"import-conflicts-detail"_s);
    theme.setTextScale(1.6);
    picture(u"import-conflicts-large"_s, false);
}

} // namespace
} // namespace vellumry::test
