#include "platform/linux/DesktopEntry.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <utility>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

/// What a desktop makes of any value, by the words of the Desktop Entry Specification.
QByteArray unescaped(const QByteArray& value)
{
    QByteArray text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\') {
            text += value[i];
            continue;
        }
        switch (value.at(++i)) {
        case 's':
            text += ' ';
            break;
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case 'r':
            text += '\r';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            ADD_FAILURE() << "no such escape in " << value.constData();
        }
    }
    return text;
}

/// What a desktop makes of an "Exec" value: within the value quotes and the escapes between them,
/// then the field codes.
QStringList argumentsOf(const QByteArray& exec)
{
    const QByteArray text = unescaped(exec);
    QList<QByteArray> arguments;
    bool isQuoted = false;
    bool isOpen = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ' ' && !isQuoted) {
            isOpen = false;
            continue;
        }
        if (!isOpen)
            arguments.append(QByteArray());
        isOpen = true;
        if (c == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted && c == '\\') {
            EXPECT_TRUE(QByteArray("\"`$\\").contains(text.at(i + 1))) << exec.constData();
            arguments.last() += text[++i];
        } else {
            EXPECT_FALSE(isQuoted && (c == '`' || c == '$')) << exec.constData();
            EXPECT_TRUE(isQuoted || !QByteArray("\t\n'><~|&;$*?#()`\\").contains(c))
                << exec.constData();
            arguments.last() += c;
        }
    }
    EXPECT_FALSE(isQuoted) << exec.constData();
    QStringList result;
    for (const QByteArray& argument : std::as_const(arguments)) {
        QByteArray path;
        for (qsizetype i = 0; i < argument.size(); ++i) {
            if (argument[i] == '%') {
                EXPECT_EQ(argument.mid(++i, 1), "%") << "a field code: " << exec.constData();
            }
            path += argument.mid(i, 1);
        }
        result.append(QString::fromUtf8(path));
    }
    return result;
}

TEST(DesktopEntryTest, ANewEntryHasOnlyItsGroup)
{
    EXPECT_EQ(DesktopEntry().bytes(), QByteArray("[Desktop Entry]\n"));
    EXPECT_EQ(DesktopEntry().value("Exec"), std::nullopt);
}

TEST(DesktopEntryTest, KeepsValuesInTheOrderInWhichTheyCame)
{
    DesktopEntry entry;
    entry.set("Type", "Application");
    entry.set("Name", "A");
    entry.set("Type", "Link");
    EXPECT_EQ(entry.bytes(), QByteArray("[Desktop Entry]\nType=Link\nName=A\n"));
    EXPECT_EQ(entry.value("Name"), "A");
    entry.remove("Type");
    entry.remove("Icon");
    EXPECT_EQ(entry.bytes(), QByteArray("[Desktop Entry]\nName=A\n"));
}

TEST(DesktopEntryTest, ChangesNothingElse)
{
    const QByteArray before = "# mine\n"
                              "\n"
                              "[Desktop Entry]\n"
                              "Name=A\n"
                              "Name[de]=Ä\n"
                              "  Hidden  =  true \n"
                              "no value\n"
                              "X-Mine=a=b\n"
                              "\n"
                              "[Desktop Action New]\n"
                              "Hidden=foreign\n"
                              "Exec=other\n";
    auto entry = DesktopEntry::parse(before);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->bytes(), before);
    EXPECT_EQ(entry->value("Hidden"), "true");
    EXPECT_EQ(entry->value("X-Mine"), "a=b");
    EXPECT_EQ(entry->value("Exec"), std::nullopt) << "another group's";
    entry->set("Hidden", "false");
    entry->set("Exec", "x");
    entry->set("Name", "B");
    EXPECT_EQ(entry->bytes(), QByteArray("# mine\n"
                                         "\n"
                                         "[Desktop Entry]\n"
                                         "Name=B\n"
                                         "Name[de]=Ä\n"
                                         "Hidden=false\n"
                                         "no value\n"
                                         "X-Mine=a=b\n"
                                         "Exec=x\n"
                                         "\n"
                                         "[Desktop Action New]\n"
                                         "Hidden=foreign\n"
                                         "Exec=other\n"));
}

TEST(DesktopEntryTest, OfTwoValuesTheLastCounts)
{
    auto entry = DesktopEntry::parse("[Desktop Entry]\nHidden=false\nName=A\nHidden=true");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->value("Hidden"), "true");
    entry->set("Hidden", "x");
    EXPECT_EQ(entry->bytes(), QByteArray("[Desktop Entry]\nHidden=x\nName=A\n"));
}

TEST(DesktopEntryTest, LinesMayEndAsOnOtherSystems)
{
    auto entry = DesktopEntry::parse("[Desktop Entry]\r\nHidden=true\r\nName=A\r\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->value("Hidden"), "true");
    entry->set("Hidden", "false");
    EXPECT_EQ(entry->bytes(), QByteArray("[Desktop Entry]\r\nHidden=false\nName=A\r\n"));
}

TEST(DesktopEntryTest, AFileThatSaysNothingIsAnEntryWithoutValues)
{
    EXPECT_EQ(DesktopEntry::parse("").value().bytes(), QByteArray("\n[Desktop Entry]\n"));
    auto entry = DesktopEntry::parse("# nothing yet\n");
    ASSERT_TRUE(entry);
    entry->set("Name", "A");
    EXPECT_EQ(entry->bytes(), QByteArray("# nothing yet\n[Desktop Entry]\nName=A\n"));
}

TEST(DesktopEntryTest, OtherFilesAreNoEntry)
{
    for (const QByteArray& bytes :
         {QByteArray("Hidden=true\n"), QByteArray("[Other]\nHidden=true\n"), QByteArray("<html>\n"),
          QByteArray("\0\xFF\xFE", 3), QByteArray("x[Desktop Entry]\n")})
        EXPECT_FALSE(DesktopEntry::parse(bytes)) << bytes.toHex().constData();
}

const QStringList oddPaths{u"/usr/bin/vellumry"_s,
                           u"/opt/My Programs/vellumry"_s,
                           u"/a\"b/vellumry"_s,
                           u"/a'b"_s,
                           u"/a\\b"_s,
                           u"/a\\\\b\\"_s,
                           u"/$HOME/`id`"_s,
                           u"/100%/%f"_s,
                           u"/%%"_s,
                           u"/a;b&c|d>e<f~g*h?i#j(k)"_s,
                           u"/tab\there\nline\rend"_s,
                           u"/Ünï/漢字"_s,
                           u"/\\s\\n"_s};

TEST(DesktopEntryTest, ACommandIsOneArgumentWhateverIsInThePath)
{
    for (const QString& path : oddPaths) {
        const QByteArray exec = DesktopEntry::command(path);
        EXPECT_FALSE(exec.contains('\n')) << "a value is one line";
        EXPECT_EQ(argumentsOf(exec), QStringList{path}) << exec.constData();
    }
    EXPECT_EQ(DesktopEntry::command(u"/usr/bin/vellumry"_s), QByteArray("\"/usr/bin/vellumry\""));
    EXPECT_EQ(DesktopEntry::command(u"/a $b\\c"_s), QByteArray(R"("/a \\$b\\\\c")"));
}

TEST(DesktopEntryTest, AFileIsNamedWhateverIsInItsPath)
{
    for (const QString& path : oddPaths) {
        const QByteArray value = DesktopEntry::file(path);
        EXPECT_FALSE(value.contains('\n')) << "a value is one line";
        EXPECT_EQ(unescaped(value), path.toUtf8());
    }
    EXPECT_EQ(DesktopEntry::file(u"/opt/My 100% \\b"_s), QByteArray(R"(/opt/My 100% \\b)"));
}

} // namespace
} // namespace vellumry
