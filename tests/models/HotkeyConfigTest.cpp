#include "models/HotkeyConfig.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

constexpr ModifierFlags all =
    ModifierFlags::command | ModifierFlags::option | ModifierFlags::control | ModifierFlags::shift;

Qt::Key equivalentOf(const QString& key)
{
    return HotkeyConfig{key, ModifierFlags::option}.keyEquivalent();
}

TEST(HotkeyConfigTest, IsEqualWhenBothFieldsAre)
{
    const HotkeyConfig config{u"t"_s, ModifierFlags::option};
    EXPECT_EQ(config, (HotkeyConfig{u"t"_s, ModifierFlags::option}));
    EXPECT_NE(config, (HotkeyConfig{u"T"_s, ModifierFlags::option}));
    EXPECT_NE(config, (HotkeyConfig{u"t"_s, ModifierFlags::control}));
}

TEST(HotkeyConfigTest, TheTextHasTheModifiersInTheirOrderAndTheKeyInCapitals)
{
    EXPECT_EQ((HotkeyConfig{u"t"_s, ModifierFlags::option}).displayString(), u"⌥T"_s);
    EXPECT_EQ((HotkeyConfig{u"space"_s, ModifierFlags::option}).displayString(), u"⌥SPACE"_s);
    EXPECT_EQ((HotkeyConfig{u"f12"_s, all}).displayString(), u"⌃⌥⇧⌘F12"_s);
    EXPECT_EQ((HotkeyConfig{u";"_s, {}}).displayString(), u";"_s);
    EXPECT_EQ((HotkeyConfig{u""_s, ModifierFlags::command}).displayString(), u"⌘"_s);
    EXPECT_EQ((HotkeyConfig{u"a"_s, ModifierFlags{0x10100}}).displayString(), u"A"_s)
        << "other bits have no symbol";
}

TEST(HotkeyConfigTest, EachKeyHasItsSymbol)
{
    for (const auto& [key, symbol] :
         {std::pair{u"space"_s, u"␣"_s}, std::pair{u"return"_s, u"↩"_s},
          std::pair{u"tab"_s, u"⇥"_s}, std::pair{u"delete"_s, u"⌫"_s},
          std::pair{u"escape"_s, u"⎋"_s}, std::pair{u"Space"_s, u"␣"_s},
          std::pair{u"ESCAPE"_s, u"⎋"_s}, std::pair{u"t"_s, u"T"_s}, std::pair{u"f5"_s, u"F5"_s},
          std::pair{u"["_s, u"["_s}, std::pair{u"enter"_s, u"ENTER"_s}, std::pair{u""_s, u""_s}}) {
        EXPECT_EQ((HotkeyConfig{key, ModifierFlags::option}).keySymbols(),
                  (QStringList{u"⌥"_s, symbol}))
            << qPrintable(key);
    }
    EXPECT_EQ((HotkeyConfig{u"t"_s, all}).keySymbols(),
              (QStringList{u"⌃"_s, u"⌥"_s, u"⇧"_s, u"⌘"_s, u"T"_s}));
    EXPECT_EQ((HotkeyConfig{u"t"_s, {}}).keySymbols(), QStringList{u"T"_s});
}

TEST(HotkeyConfigTest, EachModifierHasItsSymbol)
{
    EXPECT_EQ(HotkeyConfig::modifierSymbols({}), QStringList());
    EXPECT_EQ(HotkeyConfig::modifierSymbols(ModifierFlags::control), QStringList{u"⌃"_s});
    EXPECT_EQ(HotkeyConfig::modifierSymbols(ModifierFlags::option), QStringList{u"⌥"_s});
    EXPECT_EQ(HotkeyConfig::modifierSymbols(ModifierFlags::shift), QStringList{u"⇧"_s});
    EXPECT_EQ(HotkeyConfig::modifierSymbols(ModifierFlags::command), QStringList{u"⌘"_s});
    EXPECT_EQ(HotkeyConfig::modifierSymbols(ModifierFlags{~quint64{0}}),
              (QStringList{u"⌃"_s, u"⌥"_s, u"⇧"_s, u"⌘"_s}));
}

TEST(HotkeyConfigTest, KeysByNameHaveTheirEquivalents)
{
    for (const auto& [name, key] : {std::pair{u"space"_s, Qt::Key_Space},
                                    std::pair{u"return"_s, Qt::Key_Return},
                                    std::pair{u"enter"_s, Qt::Key_Return},
                                    std::pair{u"tab"_s, Qt::Key_Tab},
                                    std::pair{u"delete"_s, Qt::Key_Backspace},
                                    std::pair{u"backspace"_s, Qt::Key_Backspace},
                                    std::pair{u"escape"_s, Qt::Key_Escape},
                                    std::pair{u"esc"_s, Qt::Key_Escape},
                                    std::pair{u"up"_s, Qt::Key_Up},
                                    std::pair{u"uparrow"_s, Qt::Key_Up},
                                    std::pair{u"down"_s, Qt::Key_Down},
                                    std::pair{u"downarrow"_s, Qt::Key_Down},
                                    std::pair{u"left"_s, Qt::Key_Left},
                                    std::pair{u"leftarrow"_s, Qt::Key_Left},
                                    std::pair{u"right"_s, Qt::Key_Right},
                                    std::pair{u"rightarrow"_s, Qt::Key_Right},
                                    std::pair{u"home"_s, Qt::Key_Home},
                                    std::pair{u"end"_s, Qt::Key_End},
                                    std::pair{u"pageup"_s, Qt::Key_PageUp},
                                    std::pair{u"pagedown"_s, Qt::Key_PageDown},
                                    std::pair{u"clear"_s, Qt::Key_Clear}}) {
        EXPECT_EQ(equivalentOf(name), key) << qPrintable(name);
        EXPECT_EQ(equivalentOf(name.toUpper()), key) << qPrintable(name);
    }
}

TEST(HotkeyConfigTest, ASingleCharacterIsItsOwnEquivalent)
{
    EXPECT_EQ(equivalentOf(u"a"_s), Qt::Key_A);
    EXPECT_EQ(equivalentOf(u"Z"_s), Qt::Key_Z);
    EXPECT_EQ(equivalentOf(u"0"_s), Qt::Key_0);
    EXPECT_EQ(equivalentOf(u"`"_s), Qt::Key_QuoteLeft);
    EXPECT_EQ(equivalentOf(u"\\"_s), Qt::Key_Backslash);
    EXPECT_EQ(equivalentOf(u" "_s), Qt::Key_Space);
    EXPECT_EQ(equivalentOf(u"é"_s), Qt::Key_Eacute);
    EXPECT_EQ(equivalentOf(u"e\u0301"_s), Qt::Key_Eacute) << "a letter and its accent";
    EXPECT_EQ(equivalentOf(u"😀"_s), static_cast<Qt::Key>(0x1F600)) << "two code units";
}

TEST(HotkeyConfigTest, AnythingElseIsTheLetterOfTheDefaultHotKey)
{
    for (const QString& name : {u""_s, u"f5"_s, u"aa"_s, u"nonsense"_s, u"arrow"_s, u"keypad1"_s})
        EXPECT_EQ(equivalentOf(name), Qt::Key_T) << qPrintable(name);
}

} // namespace
} // namespace vellumry
