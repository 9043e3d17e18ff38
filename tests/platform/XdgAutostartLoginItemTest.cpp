#include "platform/linux/XdgAutostartLoginItem.h"

#include "platform/linux/PosixFileSystem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <utility>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

/// A disk that may be mounted for reading only.
class ReadOnlyCalls final : public FileCalls {
public:
    int open(const char* path, int flags, mode_t mode) override
    {
        if (!isReadOnly || (flags & O_ACCMODE) == O_RDONLY)
            return FileCalls::open(path, flags, mode);
        errno = EROFS;
        return -1;
    }

    bool isReadOnly = false;
};

class XdgAutostartLoginItemTest : public testing::Test {
protected:
    [[nodiscard]] QString folder() const { return home.filePath(u"config/autostart"_s); }
    [[nodiscard]] QString path() const { return folder() + u"/vellumry.desktop"_s; }

    void put(const QByteArray& content) const
    {
        ASSERT_TRUE(QDir().mkpath(folder()));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    [[nodiscard]] static QByteArray contentOf(const QString& file)
    {
        QFile reader(file);
        return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray("no such file");
    }
    [[nodiscard]] QByteArray content() const { return contentOf(path()); }

    /// The words of the failure, or nothing when there was none.
    static QString failureOf(const std::function<void()>& change)
    {
        try {
            change();
        } catch (const LoginItemError& error) {
            EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
            return error.description();
        }
        return {};
    }

    QTemporaryDir home;
    ReadOnlyCalls calls;
    PosixFileSystem files{calls};
    XdgAutostartLoginItem item{files, folder(), u"/opt/My Programs/vellumry"_s};
};

const QByteArray newEntry = "[Desktop Entry]\n"
                            "Type=Application\n"
                            "Name=Vellumry\n"
                            "Comment=Snippets at the press of a key\n"
                            "Icon=vellumry\n"
                            "Terminal=false\n"
                            "TryExec=/opt/My Programs/vellumry\n"
                            "Exec=\"/opt/My Programs/vellumry\"\n";

TEST_F(XdgAutostartLoginItemTest, NothingIsThereAtFirst)
{
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u"config"_s))) << "to look makes no folder";
}

TEST_F(XdgAutostartLoginItemTest, RegisteringWritesAnEntryAndMakesTheFolder)
{
    item.registerItem();
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(content(), newEntry);
    EXPECT_EQ(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"vellumry.desktop"_s})
        << "nothing is left of the writing";
    item.registerItem();
    EXPECT_EQ(content(), newEntry);
}

TEST_F(XdgAutostartLoginItemTest, UnregisteringHidesTheEntryAndRegisteringShowsItAgain)
{
    item.registerItem();
    item.unregisterItem();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(content(), newEntry + "Hidden=true\n");
    item.unregisterItem();
    EXPECT_EQ(content(), newEntry + "Hidden=true\n");
    item.registerItem();
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(content(), newEntry);
}

TEST_F(XdgAutostartLoginItemTest, UnregisteringWhereNothingIsMakesNothing)
{
    item.unregisterItem();
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u"config"_s)));
}

TEST_F(XdgAutostartLoginItemTest, TheEntryAsOthersChangeItDecides)
{
    for (const auto& [text, isEnabled] :
         {std::pair{"[Desktop Entry]\nExec=x\n", true},
          std::pair{"[Desktop Entry]\nExec=x\nHidden=false\n", true},
          std::pair{"[Desktop Entry]\nExec=x\nHidden=true\n", false},
          std::pair{"[Desktop Entry]\nExec=x\nX-GNOME-Autostart-enabled=true\n", true},
          std::pair{"[Desktop Entry]\nExec=x\nX-GNOME-Autostart-enabled=false\n", false},
          std::pair{"[Desktop Entry]\nExec=x\nHidden=true\nX-GNOME-Autostart-enabled=true\n",
                    false},
          std::pair{"[Desktop Entry]\nExec=x\n[Other]\nHidden=true\n", true},
          std::pair{"[Desktop Entry]\nHidden=false\n", false},
          std::pair{"[Desktop Entry]\nExec=\n", false}, std::pair{"Exec=x\n", false},
          std::pair{"", false}}) {
        put(text);
        EXPECT_EQ(item.isEnabled(), isEnabled) << text;
    }
}

TEST_F(XdgAutostartLoginItemTest, AnEntryOfSomebodyElseKeepsWhatIsNotOurs)
{
    put("# by hand\n[Desktop Entry]\nName=My snippets\nName[de]=Meine\nExec=/old/vellumry\n"
        "X-Mine=1\nHidden=true\nX-GNOME-Autostart-enabled=false\nX-GNOME-Autostart-Delay=5\n"
        "\n[Desktop Action New]\nExec=x\n");
    item.registerItem();
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(content(), QByteArray("# by hand\n[Desktop Entry]\nName=My snippets\nName[de]=Meine\n"
                                    "Exec=\"/opt/My Programs/vellumry\"\nX-Mine=1\n"
                                    "X-GNOME-Autostart-Delay=5\nType=Application\n"
                                    "Comment=Snippets at the press of a key\nIcon=vellumry\n"
                                    "Terminal=false\n"
                                    "TryExec=/opt/My Programs/vellumry\n"
                                    "\n[Desktop Action New]\nExec=x\n"));
}

TEST_F(XdgAutostartLoginItemTest, AnEntryThatOnlyHidesBecomesAWholeOne)
{
    put("[Desktop Entry]\nHidden=true\n");
    item.registerItem();
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(content(), newEntry);
}

TEST_F(XdgAutostartLoginItemTest, WhatIsNoEntryStaysAsItIs)
{
    put("a shopping list\n");
    EXPECT_EQ(failureOf([&] { item.registerItem(); }),
              path() + u" is no desktop entry; it stays as it is"_s);
    EXPECT_EQ(failureOf([&] { item.unregisterItem(); }),
              path() + u" is no desktop entry; it stays as it is"_s);
    EXPECT_EQ(content(), QByteArray("a shopping list\n"));

    ASSERT_TRUE(QFile::remove(path()));
    ASSERT_TRUE(QDir().mkdir(path()));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_TRUE(failureOf([&] { item.registerItem(); }).contains(path()));
    EXPECT_TRUE(QFileInfo(path()).isDir());
}

TEST_F(XdgAutostartLoginItemTest, ALinkBecomesAFileAndWhatItLeadsToStays)
{
    const QString menuEntry = home.filePath(u"menu.desktop"_s);
    put("[Desktop Entry]\nName=Menu\nExec=x\n");
    ASSERT_TRUE(QFile::rename(path(), menuEntry));
    ASSERT_TRUE(QFile::link(menuEntry, path()));
    EXPECT_TRUE(item.isEnabled());
    item.unregisterItem();
    EXPECT_FALSE(item.isEnabled());
    EXPECT_FALSE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(content(), QByteArray("[Desktop Entry]\nName=Menu\nExec=x\nHidden=true\n"));
    EXPECT_EQ(contentOf(menuEntry), QByteArray("[Desktop Entry]\nName=Menu\nExec=x\n"));
}

TEST_F(XdgAutostartLoginItemTest, AReadOnlyHomeIsToldInWordsAndChangesNothing)
{
    calls.isReadOnly = true;
    EXPECT_FALSE(failureOf([&] { item.registerItem(); }).isEmpty());
    EXPECT_FALSE(item.isEnabled());

    calls.isReadOnly = false;
    item.registerItem();
    calls.isReadOnly = true;
    const QString failure = failureOf([&] { item.unregisterItem(); });
    EXPECT_TRUE(failure.contains(path())) << qPrintable(failure);
    EXPECT_TRUE(failure.contains(u"Read-only file system"_s)) << qPrintable(failure);
    EXPECT_TRUE(item.isEnabled());
    EXPECT_EQ(content(), newEntry);
    EXPECT_EQ(QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"vellumry.desktop"_s});
}

TEST_F(XdgAutostartLoginItemTest, AFolderThatCannotBeMadeIsToldInWords)
{
    QFile file(home.filePath(u"config"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(failureOf([&] { item.registerItem(); }).contains(folder()));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(failureOf([&] { item.unregisterItem(); }), QString()) << "there is nothing to end";
}

TEST_F(XdgAutostartLoginItemTest, APathThatNoEntryCanNameIsRefused)
{
    XdgAutostartLoginItem odd(files, folder(), u"/opt/a=b/vellumry"_s);
    EXPECT_EQ(failureOf([&] { odd.registerItem(); }),
              u"The path of the program, /opt/a=b/vellumry, has a \"=\" in it, which an autostart "
              "entry cannot name"_s);
    EXPECT_FALSE(QFileInfo::exists(path()));
}

TEST(XdgAutostartFolderTest, IsBelowTheConfigurationFolder)
{
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    const bool wasSet = qEnvironmentVariableIsSet("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/somewhere/else");
    EXPECT_EQ(XdgAutostartLoginItem::userFolder(), u"/somewhere/else/autostart"_s);
    for (const char* unusable : {"", "relative/path"}) {
        qputenv("XDG_CONFIG_HOME", unusable);
        EXPECT_EQ(XdgAutostartLoginItem::userFolder(), QDir::homePath() + u"/.config/autostart"_s)
            << unusable;
    }
    if (wasSet)
        qputenv("XDG_CONFIG_HOME", before);
    else
        qunsetenv("XDG_CONFIG_HOME");
}

} // namespace
} // namespace vellumry
