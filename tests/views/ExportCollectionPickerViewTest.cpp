#include "views/sheets/ExportCollectionPickerView.h"

#include "views/SheetFixture.h"
#include "views/common/Label.h"

#include <QPointer>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class ExportCollectionPickerViewTest : public SheetFixture {
protected:
    ExportCollectionPickerView& open(const QStringList& names, const QSet<QString>& chosen)
    {
        QList<Collection> collections;
        for (const QString& name : names)
            collections.append({.id = name, .name = name, .displayOrder = 0, .createdAt = {}});
        auto* made = new ExportCollectionPickerView(
            {.theme = theme,
             .scheduler = scheduler,
             .collections = collections,
             .snippetCountProvider =
                 [](const QString& name) { return name == u"One"_s ? 1 : name.size(); },
             .colorProvider =
                 [](const QString& name) {
                     return QColor::fromHsv(int(name.size() * 37) % 360, 180, 200);
                 },
             .selectedCollectionNames = chosen,
             .onSelectionChange = [this](const QSet<QString>& now) { changes.append(now); },
             .onExport =
                 [this] {
                     ended.append(u"export"_s);
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

    QList<QSet<QString>> changes;
    QStringList ended;
    QPointer<ExportCollectionPickerView> view;
};

TEST_F(ExportCollectionPickerViewTest, listsTheCollectionsWithTheirCounts)
{
    open({u"One"_s, u"Work"_s}, {u"Work"_s});
    EXPECT_EQ(labelTexts(*view), QStringList({u"Export Collections"_s,
                                              u"Select collections to include in the export"_s,
                                              u"1 of 2 selected"_s}));
    EXPECT_EQ(view->width(), 320);
    EXPECT_EQ(view->row(u"One"_s)->accessibleName(), u"One, 1 snippet"_s);
    EXPECT_EQ(view->row(u"Work"_s)->accessibleName(), u"Work, 4 snippets"_s);
    EXPECT_FALSE(view->row(u"One"_s)->isChecked());
    EXPECT_TRUE(view->row(u"Work"_s)->isChecked());
}

TEST_F(ExportCollectionPickerViewTest, aClickTogglesAName)
{
    open({u"One"_s, u"Work"_s}, {u"Work"_s});
    click(*view->row(u"One"_s));
    click(*view->row(u"Work"_s));
    EXPECT_EQ(changes, QList<QSet<QString>>({{u"One"_s, u"Work"_s}, {u"One"_s}}));
    EXPECT_EQ(view->selectedCollectionNames(), QSet<QString>({u"One"_s}));
    EXPECT_EQ(view->countLabel().text(), u"1 of 2 selected"_s);
    EXPECT_TRUE(view->row(u"One"_s)->isChecked());
    EXPECT_FALSE(view->row(u"Work"_s)->isChecked());
}

TEST_F(ExportCollectionPickerViewTest, anAmpersandInANameIsNoKey)
{
    open({u"R&D"_s, u"Work"_s}, {u"Work"_s});
    key(Qt::Key_D, Qt::AltModifier);
    EXPECT_FALSE(view->row(u"R&D"_s)->isDown());
    EXPECT_TRUE(changes.isEmpty());
    click(*view->row(u"R&D"_s));
    EXPECT_EQ(view->selectedCollectionNames(), QSet<QString>({u"R&D"_s, u"Work"_s}));
}

TEST_F(ExportCollectionPickerViewTest, selectsAllOrNone)
{
    open({u"One"_s, u"Work"_s}, {u"Work"_s});
    EXPECT_EQ(view->selectAllButton().text(), u"Select All"_s);
    click(view->selectAllButton());
    EXPECT_EQ(view->selectAllButton().text(), u"Deselect All"_s);
    EXPECT_EQ(view->countLabel().text(), u"2 of 2 selected"_s);
    click(view->selectAllButton());
    EXPECT_EQ(view->selectAllButton().text(), u"Select All"_s);
    EXPECT_EQ(changes, QList<QSet<QString>>({{u"One"_s, u"Work"_s}, {}}));
}

TEST_F(ExportCollectionPickerViewTest, nothingChosenIsNotExported)
{
    open({u"One"_s}, {});
    EXPECT_EQ(view->countLabel().text(), u"0 of 1 selected"_s);
    EXPECT_FALSE(view->exportButton().isEnabled());
    view->row(u"One"_s)->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    EXPECT_TRUE(ended.isEmpty());
    click(*view->row(u"One"_s));
    EXPECT_TRUE(view->exportButton().isEnabled());
    click(*view->row(u"One"_s));
    EXPECT_FALSE(view->exportButton().isEnabled());
}

TEST_F(ExportCollectionPickerViewTest, exportsByReturnAndCancelsByEscape)
{
    open({u"One"_s}, {u"One"_s});
    key(Qt::Key_Return);
    open({u"One"_s}, {u"One"_s});
    key(Qt::Key_Escape);
    open({u"One"_s}, {u"One"_s});
    click(view->cancelButton());
    EXPECT_EQ(ended, QStringList({u"export"_s, u"cancel"_s, u"cancel"_s}));
}

TEST_F(ExportCollectionPickerViewTest, theKeyboardReachesEveryRow)
{
    open({u"One"_s, u"Work"_s}, {u"Work"_s});
    EXPECT_EQ(tabWay(),
              QStringList({u"Export"_s, u"Select All"_s, u"One"_s, u"Work"_s, u"Cancel"_s}));
    view->row(u"One"_s)->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    EXPECT_TRUE(view->row(u"One"_s)->isChecked());
    key(Qt::Key_Return);
    EXPECT_EQ(ended, QStringList({u"export"_s}));
}

TEST_F(ExportCollectionPickerViewTest, followsAChangeFromElsewhere)
{
    open({u"One"_s, u"Work"_s}, {});
    view->setSelectedCollectionNames({u"One"_s});
    EXPECT_TRUE(view->row(u"One"_s)->isChecked());
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(ExportCollectionPickerViewTest, Pictures)
{
    open({u"Customer Replies"_s, u"SQL & Data"_s, u"Shell"_s, u"Regex"_s, u"Meetings"_s,
          u"Addresses"_s, u"Releases"_s, u"Code Review"_s, u"Travel"_s, u"Legal"_s,
          u"A collection with a name that is far too long for its row"_s},
         {u"Customer Replies"_s, u"SQL & Data"_s, u"Releases"_s, u"Code Review"_s});
    picture(u"export-picker"_s, false);
}

} // namespace
} // namespace vellumry::test
