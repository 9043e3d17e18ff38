#include "platform/linux/FolderLook.h"

#include "storage/MemoryFileSystem.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

class FolderLookTest : public testing::Test {
protected:
    FolderLookTest()
    {
        files.makeFolder(folder);
        files.replace(a, "a");
        files.replace(b, "b");
        files.now += 1s;
    }

    const QString folder = QStringLiteral("/folder");
    const QString a = QStringLiteral("/folder/a");
    const QString b = QStringLiteral("/folder/b");
    MemoryFileSystem files;
};

TEST_F(FolderLookTest, findsWhatCameWentAndChangedOnce)
{
    FolderLook look(folder, files);
    EXPECT_EQ(look.changedNames(), QStringList());
    files.take(a);
    files.writeInPlace(b, "c");
    files.replace(folder + QStringLiteral("/new"), "");
    QStringList changed = look.changedNames();
    changed.sort();
    EXPECT_EQ(changed,
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("new")}));
    EXPECT_EQ(look.changedNames(), QStringList());
}

TEST_F(FolderLookTest, inodesChangeTimesAndFoldersDoNotCount)
{
    FolderLook look(folder, files);
    files.replace(a, "x", files.node(a).modified);
    files.setReadable(b, false);
    files.makeFolder(folder + QStringLiteral("/sub"));
    EXPECT_EQ(look.changedNames(), QStringList());
}

TEST_F(FolderLookTest, whatWasAcceptedIsSeen)
{
    FolderLook look(folder, files);
    files.writeInPlace(a, "other");
    look.accept(QStringLiteral("a"));
    files.take(b);
    look.accept(QStringLiteral("b"));
    EXPECT_EQ(look.changedNames(), QStringList());
    files.now += 1s;
    files.writeInPlace(a, "third");
    EXPECT_EQ(look.changedNames(), QStringList{QStringLiteral("a")});
}

TEST_F(FolderLookTest, aFolderThatCannotBeListedHasNotChangedUntilItCan)
{
    FolderLook look(folder, files);
    files.onOperation = [](const QString& operation, const QString& at) {
        throw MemoryFileSystem::error(operation, at, EIO);
    };
    files.take(a);
    EXPECT_EQ(look.changedNames(), QStringList());
    files.onOperation = nullptr;
    EXPECT_EQ(look.changedNames(), QStringList{QStringLiteral("a")});
}

TEST_F(FolderLookTest, aFolderThatCouldNotBeListedAtFirstIsNewWhenItCan)
{
    FolderLook look(QStringLiteral("/late"), files);
    files.makeFolder(QStringLiteral("/late"));
    files.replace(QStringLiteral("/late/a"), "a");
    EXPECT_EQ(look.changedNames(), QStringList{QStringLiteral("a")});
}

} // namespace

} // namespace vellumry::test
