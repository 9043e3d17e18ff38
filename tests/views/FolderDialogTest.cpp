#include "views/sheets/FolderDialog.h"

#include "support/Eventually.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class FolderDialogTest : public testing::Test {
protected:
    QFileDialog* ask()
    {
        window->show();
        pick = FolderDialog::over(*window);
        pick(u"Choose Folder"_s, [this](const auto& answer) { answers.append(answer); });
        return window->findChild<QFileDialog*>();
    }

    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    PickFolder pick;
    QList<std::optional<PickedFile>> answers;
};

TEST_F(FolderDialogTest, givesTheChosenFolder)
{
    const QTemporaryDir folder;
    QFileDialog* dialog = ask();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), u"Choose Folder"_s);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_TRUE(answers.isEmpty());
    dialog->setDirectory(folder.path());
    dialog->selectFile(folder.path());
    static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
    ASSERT_EQ(answers.size(), 1);
    ASSERT_TRUE(answers[0]);
    EXPECT_EQ(answers[0]->path, folder.path());
    EXPECT_EQ(answers[0]->error, std::nullopt);
    EXPECT_TRUE(eventually([this] { return !window->findChild<QFileDialog*>(); }));
}

TEST_F(FolderDialogTest, givesNothingWhenCancelled)
{
    QFileDialog* dialog = ask();
    ASSERT_TRUE(dialog);
    dialog->reject();
    ASSERT_EQ(answers.size(), 1);
    EXPECT_FALSE(answers[0]);
}

TEST_F(FolderDialogTest, goesWithItsWindow)
{
    ASSERT_TRUE(ask());
    window.reset();
    EXPECT_TRUE(answers.isEmpty());
}

} // namespace
} // namespace vellumry::test
