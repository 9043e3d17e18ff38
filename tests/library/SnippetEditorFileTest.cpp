// Saving the text of a snippet as a file.

#include "library/EditorWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class SaveAsFile : public testing::Test {
protected:
    void SetUp() override { world.files.makeFolder(u"/out"_s); }

    void open(const QString& title, const QString& content = u"Dear {{name}}\u20ac"_s)
    {
        Snippet snippet = titled(makeSnippet(u"a"_s, u"Work"_s, content), title);
        snippet.setVariables({{u"name"_s, u"Ann"_s}});
        world.openAlone(snippet);
    }
    [[nodiscard]] QByteArray file() const { return world.files.bytes(path); }

    EditorWorld world;
    const QString path = u"/out/file.md"_s;
};

TEST_F(SaveAsFile, IsOfferedForTitlesOfTextFiles)
{
    const auto isOffered = [&](const QString& title) {
        open(title);
        return world.editor->canSaveAsFile();
    };
    for (const char* title : {"a.md", "a.txt", "A.MD", "a.Txt", ".md", ".txt", "a.b.mD"})
        EXPECT_TRUE(isOffered(QString::fromLatin1(title))) << title;
    for (const char* title : {"", "a", "md", "a.mdx", "a.md ", "a.text", "a.txt.gz", "a.sh"})
        EXPECT_FALSE(isOffered(QString::fromLatin1(title))) << title;
}

TEST_F(SaveAsFile, IsOfferedForTheTitleInTheEditor)
{
    open(u"a"_s);
    world.editor->setTitle(u"a.txt"_s);
    EXPECT_TRUE(world.editor->canSaveAsFile());
}

TEST_F(SaveAsFile, AsksWithTitleNameAndType)
{
    open(u"Notes.MD"_s);
    world.editor->saveAsFile();
    open(u"a/b.txt"_s);
    world.editor->saveAsFile();
    ASSERT_EQ(world.dialog.requests.size(), 2);
    EXPECT_EQ(world.dialog.requests[0].title, u"Save Snippet as File");
    EXPECT_EQ(world.dialog.requests[0].fileName, u"Notes.MD");
    EXPECT_EQ(world.dialog.requests[0].mimeType, u"text/markdown");
    EXPECT_EQ(world.dialog.requests[1].fileName, u"a/b.txt");
    EXPECT_EQ(world.dialog.requests[1].mimeType, u"text/plain");
    EXPECT_THAT(world.files.written, IsEmpty());
}

TEST_F(SaveAsFile, AsksNothingForAnotherTitle)
{
    open(u"a.sh"_s);
    world.editor->saveAsFile();
    EXPECT_THAT(world.dialog.requests, IsEmpty());
}

TEST_F(SaveAsFile, WritesTheRawTextAndLeavesTheSnippet)
{
    open(u"a.md"_s);
    world.editor->setContent(u"Dear {{name}}\u20ac\n"_s);
    world.reports.clear();
    (void)world.edited->take();
    world.editor->saveAsFile();
    world.dialog.choose(path);
    EXPECT_EQ(file(), QByteArray("Dear {{name}}\xe2\x82\xac\n"));
    EXPECT_THAT(world.log.lines, ElementsAre(u"File saved successfully: /out/file.md"_s));
    EXPECT_THAT(world.dialog.warnings, IsEmpty());
    EXPECT_THAT(world.reports, IsEmpty());
    EXPECT_EQ(world.edited->take(), (QMap<QString, int>()));
    EXPECT_TRUE(world.editor->isDirty());
    EXPECT_EQ(world.editor->usageCount(), 0);
}

TEST_F(SaveAsFile, WritesTextsOfAnySize)
{
    open(u"a.md"_s, u""_s);
    world.editor->saveAsFile();
    world.dialog.choose(path);
    EXPECT_THAT(world.files.written, ElementsAre(path));
    EXPECT_EQ(file(), QByteArray());
    open(u"a.md"_s, QString(5'000'000, u'x'));
    world.editor->saveAsFile();
    world.dialog.choose(path);
    EXPECT_EQ(file().size(), 5'000'000);
}

TEST_F(SaveAsFile, WritesTheTextOfTheMomentOfTheChoice)
{
    open(u"a.md"_s);
    world.editor->saveAsFile();
    world.editor->setContent(u"later"_s);
    world.dialog.choose(path);
    EXPECT_EQ(file(), QByteArray("later"));
}

TEST_F(SaveAsFile, WritesAlsoWhenTheEditorHasGone)
{
    open(u"a.md"_s, u"text"_s);
    world.editor->saveAsFile();
    world.edited.reset();
    world.editor.reset();
    world.dialog.choose(path);
    EXPECT_EQ(file(), QByteArray("text"));
}

TEST_F(SaveAsFile, TellsAFailureInWords)
{
    world.files.onOperation = [](const QString& operation, const QString& where) {
        throw MemoryFileSystem::error(operation, where, ENOSPC);
    };
    open(u"a.txt"_s);
    world.editor->saveAsFile();
    world.dialog.choose(path);
    const QString words = MemoryFileSystem::error(u"write"_s, path, ENOSPC).description();
    EXPECT_TRUE(words.contains(path)) << words.toStdString();
    EXPECT_THAT(world.dialog.warnings, ElementsAre(std::pair(u"Save Failed"_s, words)));
    EXPECT_THAT(world.log.lines, ElementsAre(QString(u"Failed to save file: "_s + words)));
    EXPECT_FALSE(world.files.exists(path));
}

} // namespace
} // namespace vellumry::test
