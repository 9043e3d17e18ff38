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

TEST(KeyboardTextTest, namesTheKeysOfAShortcutInTheSameOrder)
{
    EXPECT_EQ(shortcutText(QKeySequence(Qt::META | Qt::CTRL | Qt::Key_S)),
              QStringLiteral("Ctrl+Super+S"));
    EXPECT_EQ(shortcutText(QKeySequence(Qt::SHIFT | Qt::ALT | Qt::CTRL | Qt::Key_Comma)),
              QStringLiteral("Ctrl+Alt+Shift+,"));
    EXPECT_EQ(shortcutText(QKeySequence()), QString());
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

TEST(KeyboardTextTest, capsNameTheModifiersInTheSameOrder)
{
    const HotkeyConfig all{QStringLiteral("k"), ModifierFlags::control | ModifierFlags::shift |
                                                    ModifierFlags::option | ModifierFlags::command};
    EXPECT_EQ(keyboardCaps(all.keySymbols()).join(u'+'), keyboardText(all));
    EXPECT_EQ(keyboardCaps({QStringLiteral("⌥"), QStringLiteral("␣")}),
              (QStringList{QStringLiteral("Alt"), QStringLiteral("␣")}));
    EXPECT_TRUE(keyboardCaps({}).isEmpty());
}

TEST(KeyboardTextTest, capsAreSpokenInWords)
{
    const QStringList caps{QStringLiteral("␣"), QStringLiteral("↩"), QStringLiteral("⇥"),
                           QStringLiteral("⌫"), QStringLiteral("⎋"), QStringLiteral("Ctrl"),
                           QStringLiteral("F5")};
    QStringList words;
    for (const QString& cap : caps)
        words.append(spokenCap(cap));
    EXPECT_EQ(words.join(u' '), QStringLiteral("Space Return Tab Delete Escape Ctrl F5"));
}

} // namespace

} // namespace vellumry::test
