#include "views/common/FileDialog.h"

#include "support/FakeFileChooser.h"

#include <QApplication>
#include <QFileDialog>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using Kind = FileChooser::Kind;

class FileDialogTest : public testing::Test {
protected:
    FileDialogTest() { window->show(); }
    ~FileDialogTest() override { FileDialog::setDesktopChooser(nullptr); }

    FileDialog* ask(const FileDialog::Request& request)
    {
        return FileDialog::show(*window, request,
                                [this](const auto& answer) { answers.append(answer); });
    }

    QFileDialog* toolkitDialog() { return window->findChild<QFileDialog*>(); }

    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    FakeFileChooser desktop;
    QList<std::optional<PickedFile>> answers;
};

const FileDialog::Request saving{.kind = Kind::saveFile,
                                 .title = u"Export to JSON"_s,
                                 .fileName = u"Backup.json"_s,
                                 .mimeType = u"application/json"_s};

TEST_F(FileDialogTest, TheDesktopsComesFirst)
{
    FileDialog::setDesktopChooser(&desktop);
    ask(saving);
    ASSERT_EQ(desktop.requests.size(), 1);
    EXPECT_EQ(desktop.requests[0].kind, Kind::saveFile);
    EXPECT_EQ(desktop.requests[0].title, u"Export to JSON"_s);
    EXPECT_EQ(desktop.requests[0].fileName, u"Backup.json"_s);
    EXPECT_EQ(desktop.requests[0].mimeType, u"application/json"_s);
    EXPECT_FALSE(desktop.requests[0].fileTypeName.isEmpty());
    EXPECT_FALSE(toolkitDialog());
    desktop.choose(u"/home/tester/a.json"_s);
    ASSERT_EQ(answers.size(), 1);
    EXPECT_EQ(answers[0]->path, u"/home/tester/a.json"_s);
    EXPECT_EQ(answers[0]->error, std::nullopt);
}

TEST_F(FileDialogTest, ACancelledOneIsNoAnswer)
{
    FileDialog::setDesktopChooser(&desktop);
    ask({.kind = Kind::folder, .title = u"Choose Folder"_s});
    desktop.cancel();
    ASSERT_EQ(answers.size(), 1);
    EXPECT_FALSE(answers[0]);
}

TEST_F(FileDialogTest, WithoutOneOfTheDesktopTheToolkitsIsShown)
{
    FileDialog::setDesktopChooser(&desktop);
    ask(saving);
    desktop.beUnavailable();
    QFileDialog* dialog = toolkitDialog();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowTitle(), u"Export to JSON"_s);
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->fileMode(), QFileDialog::AnyFile);
    EXPECT_EQ(dialog->mimeTypeFilters(), QStringList{u"application/json"_s});
    EXPECT_EQ(dialog->defaultSuffix(), u"json"_s);
    const QTemporaryDir folder;
    dialog->setDirectory(folder.path());
    dialog->selectFile(u"other.json"_s);
    static_cast<QDialog*>(dialog)->accept();
    ASSERT_EQ(answers.size(), 1);
    EXPECT_EQ(answers[0]->path, folder.filePath(u"other.json"_s));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(toolkitDialog());
    EXPECT_FALSE(window->findChild<FileDialog*>());
}

TEST_F(FileDialogTest, AFileToOpenIsOneThatIsThere)
{
    ask({.kind = Kind::openFile, .title = u"Import"_s, .mimeType = u"application/json"_s});
    ASSERT_TRUE(toolkitDialog());
    EXPECT_EQ(toolkitDialog()->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(toolkitDialog()->acceptMode(), QFileDialog::AcceptOpen);
    toolkitDialog()->reject();
    ASSERT_EQ(answers.size(), 1);
    EXPECT_FALSE(answers[0]);
}

TEST_F(FileDialogTest, OneThatIsTakenAwayAnswersNobody)
{
    FileDialog::setDesktopChooser(&desktop);
    delete ask(saving);
    EXPECT_FALSE(desktop.isOpen());
    FileDialog* second = ask(saving);
    desktop.beUnavailable();
    delete second;
    EXPECT_FALSE(toolkitDialog());
    ask(saving);
    window.reset();
    EXPECT_FALSE(desktop.isOpen());
    EXPECT_TRUE(answers.isEmpty());
}

TEST_F(FileDialogTest, APlaceBeyondThisMachineIsAnError)
{
    const PickedFile folder = FileDialog::picked(QUrl(u"smb://server/share"_s), Kind::folder);
    EXPECT_EQ(folder.path, QString());
    EXPECT_EQ(folder.error, u"\"smb://server/share\" is not a folder of this computer."_s);
    const PickedFile file = FileDialog::picked(QUrl(u"sftp://server/a.json"_s), Kind::openFile);
    EXPECT_EQ(file.error, u"\"sftp://server/a.json\" is not a file of this computer."_s);
}

TEST_F(FileDialogTest, NamesAreKeptAndPathsTidied)
{
    EXPECT_EQ(FileDialog::picked(QUrl::fromLocalFile(u"/a b/ü%/"_s), Kind::folder).path,
              u"/a b/ü%"_s);
}

} // namespace
} // namespace vellumry::test
