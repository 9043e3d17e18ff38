#include "hotkey/ModifierFlags.h"

#include <gtest/gtest.h>

#include <vector>

namespace vellumry::hotkey {

namespace {

struct Row {
    ModifierFlags flag;
    std::uint64_t value;
    std::uint32_t carbonValue;
    const char* symbol;
};

const std::vector<Row> rows{
    {ModifierFlags::control, 0x40000, 0x1000, "⌃"},
    {ModifierFlags::option, 0x80000, 0x800, "⌥"},
    {ModifierFlags::shift, 0x20000, 0x200, "⇧"},
    {ModifierFlags::command, 0x100000, 0x100, "⌘"},
};

TEST(ModifierFlagsTest, hasTheBitsOfEventsAndOfCarbon)
{
    for (const Row& row : rows) {
        EXPECT_EQ(row.flag.rawValue, row.value);
        EXPECT_EQ(row.flag.carbonFlags(), row.carbonValue);
        EXPECT_EQ(ModifierFlags::fromCarbon(row.carbonValue), row.flag);
    }
}

TEST(ModifierFlagsTest, convertsAndDescribesEveryCombination)
{
    for (unsigned choice = 0; choice < 16; ++choice) {
        ModifierFlags flags;
        std::uint32_t carbonMask = 0;
        std::string text;
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if ((choice & (1U << index)) == 0)
                continue;
            flags |= rows[index].flag;
            carbonMask |= rows[index].carbonValue;
            text += rows[index].symbol;
        }
        EXPECT_EQ(flags.carbonFlags(), carbonMask);
        EXPECT_EQ(ModifierFlags::fromCarbon(carbonMask), flags);
        EXPECT_EQ(flags.description(), text);
    }
}

TEST(ModifierFlagsTest, describesInItsOwnOrder)
{
    const ModifierFlags all = ModifierFlags::command | ModifierFlags::shift |
                              ModifierFlags::option | ModifierFlags::control;
    EXPECT_EQ(all.description(), "⌃⌥⇧⌘");
    EXPECT_EQ(ModifierFlags{}.description(), "");
}

TEST(ModifierFlagsTest, dropsAllOtherBits)
{
    EXPECT_EQ(ModifierFlags{0x10000 | 0x800000 | 0x1}.carbonFlags(), 0U);
    EXPECT_EQ((ModifierFlags::option | ModifierFlags{0x10000}).carbonFlags(), 0x800U);
    EXPECT_EQ(ModifierFlags{~std::uint64_t{0}}.carbonFlags(), 0x1B00U);
    EXPECT_EQ(ModifierFlags::fromCarbon(0xFFFFFFFF).rawValue, 0x1E0000U);
    EXPECT_EQ(ModifierFlags::fromCarbon(0x400).rawValue, 0U); // Carbon's Caps Lock.
    EXPECT_EQ(ModifierFlags{0x10000}.description(), "");
}

TEST(ModifierFlagsTest, isASet)
{
    const ModifierFlags both = ModifierFlags::command | ModifierFlags::shift;
    EXPECT_TRUE(both.contains(ModifierFlags::command));
    EXPECT_TRUE(both.contains({}));
    EXPECT_FALSE(both.contains(ModifierFlags::option));
    EXPECT_FALSE(ModifierFlags::command.contains(both));
    EXPECT_EQ(both & ModifierFlags::shift, ModifierFlags::shift);
    EXPECT_NE(both, ModifierFlags::shift);
}

} // namespace

} // namespace vellumry::hotkey
