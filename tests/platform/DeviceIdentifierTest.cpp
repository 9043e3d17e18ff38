#include "platform/DeviceIdentifier.h"

#include "platform/MachineIdentifier.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;

bool matches(const QString& text, const QString& pattern)
{
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

TEST(DeviceIdentifier, IsTheMachinesWhereItHasOne)
{
    EXPECT_EQ(DeviceIdentifier::from(u"abc"_s, u"host"_s), u"abc"_s);
    EXPECT_EQ(DeviceIdentifier::from(u"abc"_s, u""_s), u"abc"_s);
}

TEST(DeviceIdentifier, FallsBackToTheHostNameAndChance)
{
    const QString first = DeviceIdentifier::from(std::nullopt, u"my host"_s);
    const QString second = DeviceIdentifier::from(std::nullopt, u"my host"_s);
    EXPECT_TRUE(matches(first, u"my host-[0-9A-F]{8}"_s)) << qPrintable(first);
    EXPECT_TRUE(matches(second, u"my host-[0-9A-F]{8}"_s)) << qPrintable(second);
    EXPECT_NE(first, second);
    EXPECT_TRUE(matches(DeviceIdentifier::from(std::nullopt, u""_s), u"Unknown-[0-9A-F]{8}"_s));
}

TEST(DeviceIdentifier, NamesThisMachine)
{
    const QString current = DeviceIdentifier::current();
    if (const auto machine = machineIdentifier()) {
        EXPECT_EQ(current, *machine);
        EXPECT_EQ(DeviceIdentifier::current(), current);
    } else {
        EXPECT_TRUE(matches(current, u".+-[0-9A-F]{8}"_s)) << qPrintable(current);
    }
}

} // namespace
} // namespace vellumry
