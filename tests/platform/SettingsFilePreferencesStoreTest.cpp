#include "platform/linux/SettingsFilePreferencesStore.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

class SettingsFilePreferencesStoreTest : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return folder.filePath(u"preferences.ini"_s); }

    void writeFile(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir folder;
};

TEST_F(SettingsFilePreferencesStoreTest, IsEmptyAtFirst)
{
    const SettingsFilePreferencesStore store(path());
    EXPECT_FALSE(store.boolean(u"a"_s));
    EXPECT_FALSE(store.integer(u"a"_s));
    EXPECT_FALSE(store.string(u"a"_s));
    EXPECT_FALSE(store.data(u"a"_s));
}

TEST_F(SettingsFilePreferencesStoreTest, ASecondInstanceSeesEveryValueAtOnce)
{
    SettingsFilePreferencesStore store(path());
    const SettingsFilePreferencesStore other(path());

    for (const bool value : {true, false}) {
        store.setBoolean(u"boolean"_s, value);
        EXPECT_EQ(store.boolean(u"boolean"_s), value);
        EXPECT_EQ(SettingsFilePreferencesStore(path()).boolean(u"boolean"_s), value);
        EXPECT_EQ(other.boolean(u"boolean"_s), value);
    }
    for (const qint64 value :
         {qint64(0), qint64(1), qint64(-1), qint64(0x80000), std::numeric_limits<qint64>::max(),
          std::numeric_limits<qint64>::min()}) {
        store.setInteger(u"integer"_s, value);
        EXPECT_EQ(store.integer(u"integer"_s), value);
        EXPECT_EQ(SettingsFilePreferencesStore(path()).integer(u"integer"_s), value);
    }
    for (const QByteArray& value : {QByteArray(""), QByteArray("plain"),
                                    QByteArray("\0\xFF\x80\n;=\"@", 8), QByteArray(100'000, '\xA5'),
                                    QByteArray(R"({"Work":"blue"})"), QByteArray("@Invalid()")}) {
        store.setData(u"data"_s, value);
        EXPECT_EQ(store.data(u"data"_s), value);
        EXPECT_EQ(SettingsFilePreferencesStore(path()).data(u"data"_s), value);
    }
}

TEST_F(SettingsFilePreferencesStoreTest, KeepsOddTexts)
{
    SettingsFilePreferencesStore store(path());
    for (const QString& value : {u""_s,
                                 u"t"_s,
                                 u";"_s,
                                 u"a;b"_s,
                                 u"a,b"_s,
                                 u","_s,
                                 u"\\"_s,
                                 u"'"_s,
                                 u"\""_s,
                                 u"`"_s,
                                 u"["_s,
                                 u"]"_s,
                                 u"="_s,
                                 u"#"_s,
                                 u"%41"_s,
                                 u" blank "_s,
                                 u"line\nline\r\n\ttab"_s,
                                 u"漢字 ä 😀"_s,
                                 u"@Invalid()"_s,
                                 u"@ByteArray(x)"_s,
                                 u"@@x"_s,
                                 u"true"_s,
                                 u"false"_s,
                                 u"1"_s,
                                 u"0"_s,
                                 u"/home/someone/My Files/Ünïcode"_s,
                                 u"a\\x41"_s,
                                 QString(QChar(1)),
                                 QString::fromUtf16(u"a\0b", 3),
                                 QString(20'000, u'ä')}) {
        store.setString(u"string"_s, value);
        EXPECT_EQ(store.string(u"string"_s), value) << qPrintable(value.left(20));
        EXPECT_EQ(SettingsFilePreferencesStore(path()).string(u"string"_s), value)
            << qPrintable(value.left(20));
    }
}

TEST_F(SettingsFilePreferencesStoreTest, AValueOfAnotherTypeIsMissing)
{
    SettingsFilePreferencesStore store(path());
    store.setString(u"string"_s, u"abc"_s);
    store.setBoolean(u"boolean"_s, true);
    store.setInteger(u"integer"_s, 5);
    store.setData(u"data"_s, "\x01\x02");
    const SettingsFilePreferencesStore again(path());
    for (const SettingsFilePreferencesStore* reader : {&std::as_const(store), &again}) {
        EXPECT_FALSE(reader->integer(u"string"_s));
        EXPECT_FALSE(reader->boolean(u"string"_s));
        EXPECT_FALSE(reader->integer(u"boolean"_s));
        EXPECT_FALSE(reader->boolean(u"integer"_s));
        EXPECT_FALSE(reader->boolean(u"data"_s));
        EXPECT_FALSE(reader->integer(u"data"_s));
    }
}

TEST_F(SettingsFilePreferencesStoreTest, TellsWhetherThereIsAValueOfWhateverType)
{
    writeFile("[General]\nlist=a, b\n");
    SettingsFilePreferencesStore store(path());
    EXPECT_FALSE(store.contains(u"a"_s));
    store.setBoolean(u"a"_s, false);
    EXPECT_TRUE(store.contains(u"a"_s));
    EXPECT_TRUE(SettingsFilePreferencesStore(path()).contains(u"a"_s));
    EXPECT_TRUE(store.contains(u"list"_s));
    EXPECT_FALSE(store.string(u"list"_s)) << "a list is no text";
    EXPECT_FALSE(store.integer(u"list"_s));
}

TEST_F(SettingsFilePreferencesStoreTest, KeysAreIndependent)
{
    SettingsFilePreferencesStore store(path());
    store.setString(u"quickSearchHotkeyKey"_s, u"t"_s);
    store.setInteger(u"quickSearchHotkeyModifiers"_s, 0x80000);
    store.setString(u"quickSearchHotkeyKey"_s, u"f5"_s);
    const SettingsFilePreferencesStore again(path());
    EXPECT_EQ(again.string(u"quickSearchHotkeyKey"_s), u"f5"_s);
    EXPECT_EQ(again.integer(u"quickSearchHotkeyModifiers"_s), 0x80000);
    EXPECT_FALSE(again.string(u"quicksearchhotkeykey"_s));
}

TEST_F(SettingsFilePreferencesStoreTest, ADamagedFileHasNoValuesAndTakesNewOnes)
{
    for (const QByteArray& content :
         {QByteArray("\0\0\0\0\xFF\xFE garbage", 14), QByteArray("[[[[\n====\n"),
          QByteArray(10'000, '\xFF'), QByteArray("string"), QByteArray("=\n=\n[\n"),
          QByteArray("string=@Variant(\\0\\0)\n"), QByteArray("[General\nstring=x\n")}) {
        writeFile(content);
        SettingsFilePreferencesStore store(path());
        EXPECT_FALSE(store.boolean(u"string"_s));
        EXPECT_FALSE(store.integer(u"string"_s));
        store.setString(u"string"_s, u"new"_s);
        EXPECT_EQ(store.string(u"string"_s), u"new"_s) << content.left(20).toHex().constData();
    }
}

TEST_F(SettingsFilePreferencesStoreTest, AFolderThatIsMissingIsMade)
{
    const QString deep = folder.filePath(u"config/vellumry/preferences.ini"_s);
    SettingsFilePreferencesStore(deep).setString(u"a"_s, u"b"_s);
    EXPECT_EQ(SettingsFilePreferencesStore(deep).string(u"a"_s), u"b"_s);
}

TEST_F(SettingsFilePreferencesStoreTest, AFileThatCannotBeWrittenStillServesTheRun)
{
    const QString impossible = folder.filePath(u"file/preferences.ini"_s);
    QFile file(folder.filePath(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    SettingsFilePreferencesStore store(impossible);
    store.setString(u"a"_s, u"b"_s);
    EXPECT_EQ(store.string(u"a"_s), u"b"_s);
}

TEST_F(SettingsFilePreferencesStoreTest, TellsWhetherTheNextProcessWillFindItAll)
{
    SettingsFilePreferencesStore good(path());
    EXPECT_TRUE(good.isSaved());
    good.setBoolean(u"a"_s, true);
    EXPECT_TRUE(good.isSaved());
    // Below a file there can be no folder, whoever runs the test.
    SettingsFilePreferencesStore lost(path() + u"/below/a/file"_s);
    lost.setBoolean(u"a"_s, true);
    EXPECT_FALSE(lost.isSaved());
}

TEST_F(SettingsFilePreferencesStoreTest, ServesManyThreads)
{
    SettingsFilePreferencesStore store(path());
    const auto write = [&](const QString& key) {
        for (int i = 1; i <= 50; ++i) {
            store.setInteger(key, i);
            EXPECT_EQ(store.integer(key), i);
        }
    };
    std::thread first(write, u"first"_s);
    std::thread second(write, u"second"_s);
    first.join();
    second.join();
    EXPECT_EQ(SettingsFilePreferencesStore(path()).integer(u"first"_s), 50);
    EXPECT_EQ(SettingsFilePreferencesStore(path()).integer(u"second"_s), 50);
}

} // namespace
} // namespace vellumry
