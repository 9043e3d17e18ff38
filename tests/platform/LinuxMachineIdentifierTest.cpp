#include "platform/linux/LinuxMachineIdentifier.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

std::optional<QString> identifierFrom(const QByteArray& content)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"machine-id"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    return readMachineIdFile(file.fileName());
}

const QByteArray digits = "0123456789abcdef0123456789abcdef";

TEST(LinuxMachineIdentifier, IsTheFilesDigits)
{
    EXPECT_EQ(identifierFrom(digits + "\n"), QString::fromLatin1(digits));
    EXPECT_EQ(identifierFrom(digits), QString::fromLatin1(digits));
}

TEST(LinuxMachineIdentifier, AnyOtherFormIsNone)
{
    EXPECT_FALSE(identifierFrom(""));
    EXPECT_FALSE(identifierFrom("\n"));
    EXPECT_FALSE(identifierFrom("uninitialized\n"));
    EXPECT_FALSE(identifierFrom(digits.left(31) + "\n"));
    EXPECT_FALSE(identifierFrom(digits + "0\n"));
    EXPECT_FALSE(identifierFrom(digits.left(31) + "g\n"));
    EXPECT_FALSE(identifierFrom(digits + "\n" + digits + "\n"));
    EXPECT_FALSE(identifierFrom(QByteArray(32, '\0')));
    EXPECT_FALSE(identifierFrom("01234567-89ab-cdef-0123-456789abcdef\n"));
    EXPECT_FALSE(identifierFrom(QByteArray(1'000'000, 'a')));
}

TEST(LinuxMachineIdentifier, AFileThatCannotBeReadIsNone)
{
    const QTemporaryDir folder;
    EXPECT_FALSE(readMachineIdFile(folder.filePath(u"missing"_s)));
    EXPECT_FALSE(readMachineIdFile(folder.path()));
    EXPECT_FALSE(readMachineIdFile(u""_s));
}

} // namespace
} // namespace vellumry
