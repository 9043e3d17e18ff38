#include "views/common/KeyboardText.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

using hotkey::ModifierFlags;

TEST(KeyboardTextTest, namesTheModifiersAsThisSystemsKeysDo)
{
    const auto text = [](ModifierFlags modifiers) {
        return keyboardText({QStringLiteral("t"), modifiers});
    };
    EXPECT_EQ(text(ModifierFlags::command), QStringLiteral("Ctrl+T"));
    EXPECT_EQ(text(ModifierFlags::option), QStringLiteral("Alt+T"));
    EXPECT_EQ(text(ModifierFlags::shift), QStringLiteral("Shift+T"));
    EXPECT_EQ(text(ModifierFlags::control), QStringLiteral("Super+T"));
}

TEST(KeyboardTextTest, theModifiersHaveAFixedOrder)
{
    EXPECT_EQ(
        keyboardText({QStringLiteral("k"), ModifierFlags::control | ModifierFlags::shift |
                                               ModifierFlags::option | ModifierFlags::command}),
        QStringLiteral("Ctrl+Alt+Shift+Super+K"));
}

TEST(KeyboardTextTest, givesTheKeysOneByOne)
{
    EXPECT_EQ(keyboardKeys({QStringLiteral("+"), ModifierFlags::command}),
              QStringList({QStringLiteral("Ctrl"), QStringLiteral("+")}));
}

TEST(KeyboardTextTest, keysWithNamesBeginWithACapital)
{
    EXPECT_EQ(keyboardText({QStringLiteral("space"), ModifierFlags::option}),
              QStringLiteral("Alt+Space"));
    EXPECT_EQ(keyboardText({QStringLiteral("f5"), {}}), QStringLiteral("F5"));
}

} // namespace

} // namespace vellumry::test
