#include "views/window/BackupDialogs.h"

#include "support/FakeFileChooser.h"
#include "views/MainFixture.h"
#include "views/common/FileDialog.h"
#include "views/common/Label.h"
#include "views/common/PillToast.h"
#include "views/sheets/ExportCollectionPickerView.h"
#include "views/sheets/ImportConflictView.h"

#include <cerrno>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

/// The main window with the dialogs of import and export, over files in memory.
class BackupDialogsTest : public MainFixture {
protected:
    BackupDialogsTest() { FileDialog::setDesktopChooser(&desktop); }
    ~BackupDialogsTest() override { FileDialog::setDesktopChooser(nullptr); }

    void openWindow()
    {
        loadFour();
        open();
        new BackupDialogs({.contents = content(),
                           .viewModel = model,
                           .colors = world.colors,
                           .scheduler = world.scheduler,
                           .theme = theme,
                           .defaultExportFilename = [] { return u"Backup.json"_s; }},
                          &content());
    }

    void importFile(const QByteArray& bytes)
    {
        world.files.replace(u"/backup.json"_s, bytes);
        Q_EMIT content().importRequested();
        desktop.choose(u"/backup.json"_s);
    }

    template <typename Sheet>
    [[nodiscard]] Sheet* sheet()
    {
        return qobject_cast<Sheet*>(sheets().presented());
    }

    /// One snippet of "Work" with this title and these contents.
    static QByteArray backup(const QByteArray& title, const QByteArray& content)
    {
        return R"({"version": "2.0", "exportedAt": "2025-01-01T00:00:00Z", "collections": [
            {"id": "W", "name": "Work", "displayOrder": 0, "snippets": [
              {"id": "x", "title": ")" +
               title + R"(", "collection": "Work", "content": ")" + content + R"(",
               "keywords": [], "usageCount": 0, "createdAt": "2025-01-01T00:00:00Z",
               "updatedAt": "2025-01-01T00:00:00Z", "variables": {}}]}]})";
    }

    FakeFileChooser desktop;
};

TEST_F(BackupDialogsTest, AnImportAsksForAFileOfJSON)
{
    openWindow();
    Q_EMIT content().importRequested();
    ASSERT_EQ(desktop.requests.size(), 1);
    EXPECT_EQ(desktop.requests[0].kind, FileChooser::Kind::openFile);
    EXPECT_EQ(desktop.requests[0].mimeType, u"application/json"_s);
    Q_EMIT content().importRequested();
    EXPECT_EQ(desktop.requests.size(), 1) << "one at a time";
    desktop.cancel();
    EXPECT_FALSE(model.showImportPicker());
    EXPECT_FALSE(content().toast().isVisible());
    Q_EMIT content().importRequested();
    EXPECT_EQ(desktop.requests.size(), 2);
    model.setShowImportPicker(false);
    EXPECT_FALSE(desktop.isOpen()) << "the model takes it away";
}

TEST_F(BackupDialogsTest, WhatIsNewIsImportedAtOnce)
{
    openWindow();
    importFile(backup("Five", "new"));
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(content().toast().text(), u"Imported 1 snippet"_s);
    EXPECT_EQ(content().toast().symbol(), u"checkmark"_s);
    EXPECT_EQ(model.snippets().size(), 5);
}

TEST_F(BackupDialogsTest, AFileOfAnyOtherShapeIsToldAndTheNextOneCanBeTaken)
{
    openWindow();
    const QList<QByteArray> shapes{
        "",
        "not JSON",
        "{}",
        "[]",
        "null",
        "[1, 2, 3]",
        "\xFF\xFE\x00",
        R"({"version": "2.0", "collections": []})",
        R"({"version": 2, "exportedAt": "2025-01-01T00:00:00Z", "collections": []})",
        R"({"version": "2.0", "exportedAt": "yesterday", "collections": []})",
        R"({"version": "2.0", "exportedAt": "2025-01-01T00:00:00Z", "collections": {}})",
        backup("Five", "new").chopped(3),
        QByteArray(100'000, '['),
    };
    for (const QByteArray& shape : shapes) {
        importFile(shape);
        EXPECT_EQ(content().toast().text(), u"Import failed: Invalid file format"_s)
            << shape.left(40).constData();
        EXPECT_EQ(content().toast().symbol(), u"xmark"_s);
        EXPECT_FALSE(sheets().isPresenting());
        EXPECT_EQ(model.snippets().size(), 4);
    }
    importFile(backup("Five", "new"));
    EXPECT_EQ(content().toast().text(), u"Imported 1 snippet"_s);
}

TEST_F(BackupDialogsTest, AFileThatIsGoneOrBeyondThisMachineIsTold)
{
    openWindow();
    Q_EMIT content().importRequested();
    desktop.choose(u"/gone.json"_s);
    EXPECT_EQ(content().toast().text(), u"Import failed: Invalid file format"_s);
    Q_EMIT content().importRequested();
    desktop.choose(QUrl(u"sftp://server/a.json"_s));
    EXPECT_EQ(content().toast().text(),
              u"Import failed: \"sftp://server/a.json\" is not a file of this computer."_s);
    EXPECT_EQ(model.snippets().size(), 4);
}

TEST_F(BackupDialogsTest, ASecondFilesConflictsTakeThePlaceOfTheFirstOnes)
{
    openWindow();
    importFile(backup("One", "other contents"));
    const QPointer<ImportConflictView> first = sheet<ImportConflictView>();
    ASSERT_TRUE(first);
    importFile(backup("Two", "other contents"));
    auto* second = sheet<ImportConflictView>();
    ASSERT_TRUE(second);
    EXPECT_NE(second, first);
    model.setSelectedConflictResolutionMode(ConflictResolutionMode::restoreFromBackup);
    key(Qt::Key_Return);
    EXPECT_FALSE(sheets().isPresenting()) << "none is left below";
    EXPECT_EQ(world.snippet(u"id-One"_s).content(), u"content of {{what}} One"_s);
    EXPECT_EQ(world.snippet(u"id-Two"_s).content(), u"other contents"_s);
}

TEST_F(BackupDialogsTest, ConflictsAreAskedAboutInASheet)
{
    openWindow();
    importFile(backup("One", "other contents"));
    auto* question = sheet<ImportConflictView>();
    ASSERT_TRUE(question);
    click(question->modeRows()[1]);
    EXPECT_EQ(model.selectedConflictResolutionMode(), ConflictResolutionMode::restoreFromBackup);
    EXPECT_EQ(model.snippets().size(), 4);
    EXPECT_NE(world.snippet(u"id-One"_s).content(), u"other contents"_s) << "not before Continue";
    key(Qt::Key_Return);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_EQ(world.snippet(u"id-One"_s).content(), u"other contents"_s);
    EXPECT_EQ(content().toast().text(), u"Imported 1 snippet"_s);
}

TEST_F(BackupDialogsTest, ACancelledQuestionImportsNothing)
{
    openWindow();
    importFile(backup("One", "other contents"));
    ASSERT_TRUE(sheet<ImportConflictView>());
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_NE(world.snippet(u"id-One"_s).content(), u"other contents"_s);
    EXPECT_FALSE(content().toast().isVisible());
    importFile(backup("One", "other contents"));
    EXPECT_TRUE(sheet<ImportConflictView>()) << "and the next import asks again";
}

TEST_F(BackupDialogsTest, AnExportAsksForCollectionsAndThenForAPlace)
{
    openWindow();
    Q_EMIT content().exportRequested();
    auto* picker = sheet<ExportCollectionPickerView>();
    ASSERT_TRUE(picker);
    EXPECT_EQ(picker->countLabel().text(), u"3 of 3 selected"_s);
    click(picker->row(u"Home"_s));
    click(picker->row(u"Empty"_s));
    key(Qt::Key_Return);
    EXPECT_FALSE(sheets().isPresenting());
    ASSERT_EQ(desktop.requests.size(), 1);
    EXPECT_EQ(desktop.requests[0].kind, FileChooser::Kind::saveFile);
    EXPECT_EQ(desktop.requests[0].fileName, u"Backup.json"_s);
    world.files.makeFolder(u"/out"_s);
    desktop.choose(u"/out/mine.json"_s);
    EXPECT_FALSE(model.showExportPicker());
    ASSERT_TRUE(world.files.exists(u"/out/mine.json"_s));
    EXPECT_TRUE(world.log.lines.last().contains(u"导出成功: /out/mine.json"_s))
        << qPrintable(world.log.lines.last());
}

TEST_F(BackupDialogsTest, ACollectionsOwnExportIsStillConfirmed)
{
    openWindow();
    Q_EMIT content().exportCollectionRequested(u"Home"_s);
    auto* picker = sheet<ExportCollectionPickerView>();
    ASSERT_TRUE(picker);
    EXPECT_EQ(picker->selectedCollectionNames(), QSet<QString>{u"Home"_s});
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_TRUE(model.selectedCollectionsToExport().isEmpty());
    EXPECT_TRUE(desktop.requests.isEmpty());
}

TEST_F(BackupDialogsTest, AnExportThatFailsIsLoggedAndTheNextOneCanBeMade)
{
    openWindow();
    world.files.onOperation = [](const QString& operation, const QString& path) {
        if (operation == u"write"_s && path == u"/full/a.json"_s)
            throw MemoryFileSystem::error(operation, path, ENOSPC);
    };
    for (const QUrl& place :
         {QUrl(u"sftp://server/a.json"_s), QUrl::fromLocalFile(u"/full/a.json"_s)}) {
        Q_EMIT content().exportRequested();
        key(Qt::Key_Return);
        desktop.choose(place);
        EXPECT_TRUE(world.log.lines.last().contains(u"导出失败: "_s))
            << qPrintable(world.log.lines.last());
        EXPECT_FALSE(model.showExportPicker());
    }
    EXPECT_FALSE(content().toast().isVisible());
}

} // namespace
} // namespace vellumry::test
