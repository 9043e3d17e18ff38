#include "hotkey/KeyCombo.h"

#include "hotkey/RegistryTest.h"

#include <gtest/gtest.h>

#include <limits>

namespace vellumry::hotkey {

namespace {

using KeyComboTest = RegistryTest;
using Dictionary = KeyCombo::Dictionary;

constexpr auto commandShift = ModifierFlags::command | ModifierFlags::shift;

TEST_F(KeyComboTest, isMadeOfAKeyOrOfCodes)
{
    const KeyCombo combo(Key::t, ModifierFlags::option);
    EXPECT_EQ(combo.carbonKeyCode, 17U);
    EXPECT_EQ(combo.carbonModifiers, 0x800U);
    EXPECT_EQ(combo, KeyCombo(17U, 0x800U));
    EXPECT_NE(combo, KeyCombo(17U, 0x900U));
    EXPECT_NE(combo, KeyCombo(16U, 0x800U));
    EXPECT_EQ(KeyCombo(Key::t).carbonModifiers, 0U);
    // Other flags do not get in.
    EXPECT_EQ(KeyCombo(Key::t, ModifierFlags::option | ModifierFlags{0x10000}), combo);
}

TEST_F(KeyComboTest, computesKeyAndModifiers)
{
    KeyCombo combo(17U, 0x300U);
    EXPECT_EQ(combo.key(), Key::t);
    EXPECT_EQ(combo.modifiers(), commandShift);
    combo.setKey(Key::f5);
    combo.setModifiers(ModifierFlags::control);
    EXPECT_EQ(combo, KeyCombo(96U, 0x1000U));
    EXPECT_FALSE(KeyCombo(52U, 0U).key().has_value());
    EXPECT_FALSE(KeyCombo(127U, 0U).key().has_value());
}

TEST_F(KeyComboTest, equalityIsThatOfTheFields)
{
    // The same modifiers to look at, but another mask.
    EXPECT_EQ(KeyCombo(17U, 0x400U).modifiers(), KeyCombo(17U, 0U).modifiers());
    EXPECT_NE(KeyCombo(17U, 0x400U), KeyCombo(17U, 0U));
}

TEST_F(KeyComboTest, goesThroughADictionary)
{
    const KeyCombo combo(Key::t, ModifierFlags::option);
    const Dictionary expected{{"keyCode", std::int64_t{17}}, {"modifiers", std::int64_t{0x800}}};
    EXPECT_EQ(combo.dictionary(), expected);
    EXPECT_EQ(KeyCombo::fromDictionary(expected), combo);

    const KeyCombo largest(0xFFFFFFFFU, 0xFFFFFFFFU);
    EXPECT_EQ(KeyCombo::fromDictionary(largest.dictionary()), largest);
}

TEST_F(KeyComboTest, readsNoIncompleteDictionary)
{
    const std::int64_t number = 17;
    const std::int64_t tooLarge = std::int64_t{1} << 32;
    for (const Dictionary& dictionary : {
             Dictionary{},
             Dictionary{{"keyCode", number}},
             Dictionary{{"modifiers", number}},
             Dictionary{{"keycode", number}, {"modifiers", number}},
             Dictionary{{"keyCode", "17"}, {"modifiers", number}},
             Dictionary{{"keyCode", number}, {"modifiers", "17"}},
             Dictionary{{"keyCode", std::int64_t{-1}}, {"modifiers", number}},
             Dictionary{{"keyCode", number}, {"modifiers", tooLarge}},
         })
        EXPECT_FALSE(KeyCombo::fromDictionary(dictionary).has_value());
    // What else is there does not matter.
    EXPECT_TRUE(KeyCombo::fromDictionary(
                    Dictionary{{"keyCode", number}, {"modifiers", number}, {"name", "x"}})
                    .has_value());
}

TEST_F(KeyComboTest, describesModifiersThenKey)
{
    EXPECT_EQ(KeyCombo(Key::t, ModifierFlags::option).description(), "⌥T");
    EXPECT_EQ(KeyCombo(Key::three, commandShift).description(), "⇧⌘3");
    EXPECT_EQ(KeyCombo(Key::f5).description(), "F5");
    EXPECT_EQ(KeyCombo(52U, 0x800U).description(), "⌥");
    EXPECT_EQ(KeyCombo(52U, 0U).description(), "");
}

TEST_F(KeyComboTest, systemKeyCombosAreThoseSwitchedOnAndComplete)
{
    backend->symbolicHotKeys = std::vector<SymbolicHotKey>{
        {true, 49, 0x100},           {false, 49, 0x1000},     {std::nullopt, 1, 2},
        {true, std::nullopt, 0x100}, {true, 3, std::nullopt}, {true, 52, 0xFFFF},
    };
    const std::vector<KeyCombo> expected{{49U, 0x100U}, {52U, 0xFFFFU}};
    EXPECT_EQ(KeyCombo::systemKeyCombos(), expected);
}

TEST_F(KeyComboTest, systemKeyCombosAreEmptyWithoutAList)
{
    EXPECT_TRUE(KeyCombo::systemKeyCombos().empty());
    HotKeysController::setBackend(nullptr);
    EXPECT_TRUE(KeyCombo::systemKeyCombos().empty());
}

TEST_F(KeyComboTest, walksAMenuInOrder)
{
    const Menu menu{{
        {"n", ModifierFlags::command, {}},
        {"", ModifierFlags::command, {}},
        {"File", ModifierFlags::command, {{{"S", commandShift, {}}}}},
        {"?", ModifierFlags::command, {}},
        {"i",
         ModifierFlags::option,
         {{{"", {}, {{{"⌫", ModifierFlags::control, {}}}}}, {"e", {}, {}}}}},
        {"f5", ModifierFlags{0x10000}, {}},
    }};
    const std::vector<KeyCombo> expected{
        {Key::n, ModifierFlags::command},
        {Key::s, commandShift},
        {Key::i, ModifierFlags::option},
        {Key::delete_, ModifierFlags::control},
        {Key::e, {}},
        {Key::f5, {}},
    };
    EXPECT_EQ(KeyCombo::keyCombos(menu), expected);
    EXPECT_TRUE(KeyCombo::keyCombos(Menu{}).empty());
}

TEST_F(KeyComboTest, standardKeyCombosAreTheSystemsThenTheMainMenus)
{
    EXPECT_TRUE(KeyCombo::mainMenuKeyCombos().empty());
    Menu::main = []() -> std::optional<Menu> { return std::nullopt; };
    EXPECT_TRUE(KeyCombo::mainMenuKeyCombos().empty());

    Menu::main = []() -> std::optional<Menu> { return Menu{{{"q", ModifierFlags::command, {}}}}; };
    backend->symbolicHotKeys = std::vector<SymbolicHotKey>{{true, 49, 0x100}};
    const KeyCombo quit(Key::q, ModifierFlags::command);
    const KeyCombo space(Key::space, ModifierFlags::command);
    EXPECT_EQ(KeyCombo::mainMenuKeyCombos(), std::vector{quit});
    EXPECT_EQ(KeyCombo::standardKeyCombos(), (std::vector{space, quit}));
}

} // namespace

} // namespace vellumry::hotkey
