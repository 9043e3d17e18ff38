#include "views/editor/SaveFilePanel.h"

#include "views/common/AlertCard.h"
#include "views/common/SheetHost.h"

#include <QApplication>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class SaveFilePanelTest : public testing::Test {
protected:
    void SetUp() override
    {
        window.resize(600, 400);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    QFileDialog* ask(const QString& fileName, const QString& mimeType)
    {
        panel.ask({u"Save Snippet as File"_s, fileName, mimeType},
                  [this](const QString& path) { chosen.append(path); });
        return window.findChild<QFileDialog*>();
    }

    Theme theme{ColorScheme::light, 1};
    QWidget window;
    SheetHost sheets{theme, &window};
    SaveFilePanel panel{theme, [this]() -> SheetHost& { return sheets; }};
    QTemporaryDir folder;
    QStringList chosen;
};

TEST_F(SaveFilePanelTest, AsksForAPlaceOfATextFile)
{
    QFileDialog* dialog = ask(u"Notes.md"_s, u"text/markdown"_s);
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), u"Save Snippet as File");
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->mimeTypeFilters(), QStringList{u"text/markdown"_s});
    EXPECT_EQ(dialog->defaultSuffix(), u"md");
    EXPECT_TRUE(dialog->selectedFiles().constFirst().endsWith(u"/Notes.md"));
    EXPECT_FALSE(dialog->testOption(QFileDialog::ReadOnly)) << "new folders can be made";

    dialog->setDirectory(folder.path());
    dialog->selectFile(u"Other.md"_s);
    static_cast<QDialog*>(dialog)->accept();
    EXPECT_EQ(chosen, QStringList{folder.filePath(u"Other.md"_s)});
}

TEST_F(SaveFilePanelTest, CancelChoosesNothing)
{
    QFileDialog* dialog = ask(u"Notes.txt"_s, u"text/plain"_s);
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->defaultSuffix(), u"txt");
    dialog->reject();
    EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(SaveFilePanelTest, AnUnknownTypeIsPlainText)
{
    QFileDialog* dialog = ask(u"Notes.md"_s, u"text/x-never-heard-of"_s);
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->mimeTypeFilters(), QStringList{u"text/plain"_s});
}

TEST_F(SaveFilePanelTest, ANameIsNoPath)
{
    QFileDialog* dialog = ask(u"a/../b.txt"_s, u"text/plain"_s);
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->selectedFiles().constFirst().endsWith(u"/a-..-b.txt"));
}

TEST_F(SaveFilePanelTest, WarnsInASheet)
{
    panel.warn(u"Save Failed"_s, u"no space"_s);
    auto* alert = qobject_cast<AlertCard*>(sheets.presented());
    ASSERT_TRUE(alert);
    EXPECT_EQ(alert->accessibleName(), u"Save Failed");
    EXPECT_EQ(alert->accessibleDescription(), u"no space");
    ASSERT_TRUE(alert->button(u"OK"_s));
    alert->button(u"OK"_s)->click();
    EXPECT_FALSE(sheets.isPresenting());
}

} // namespace
} // namespace vellumry::test
