#include "settings/HotkeyConflictChecker.h"

#include "hotkey/FakeHotKeyBackend.h"
#include "hotkey/NullHotKeyBackend.h"

#include <QHash>
#include <QList>
#include <gtest/gtest.h>

#include <utility>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::FakeHotKeyBackend;
using hotkey::HotKeyBackend;
using hotkey::HotKeyID;
using hotkey::ModifierFlags;

constexpr ModifierFlags command = ModifierFlags::command;
constexpr ModifierFlags option = ModifierFlags::option;
constexpr ModifierFlags control = ModifierFlags::control;
constexpr ModifierFlags shift = ModifierFlags::shift;
/// Bits that an event may carry beside the four modifiers.
constexpr ModifierFlags otherBits{0x10'0000'0001'0100};

const QString taken = u"This shortcut is already in use by another app"_s;

struct Row {
    QString key;
    ModifierFlags modifiers;
    QString name;
};

/// Writes down what is tried before a fake window system answers.
class WatchedBackend final : public HotKeyBackend {
public:
    struct Trial {
        std::uint32_t keyCode;
        std::uint32_t modifiers;
        HotKeyID hotKeyID;
    };

    [[nodiscard]] Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                              HotKeyID hotKeyID) override
    {
        trials.append({keyCode, modifiers, hotKeyID});
        return fake.registerHotKey(keyCode, modifiers, hotKeyID);
    }
    void unregisterHotKey(Reference reference) override { fake.unregisterHotKey(reference); }
    EventHandlerReference installEventHandler(EventHandler handler) override
    {
        return fake.installEventHandler(std::move(handler));
    }
    [[nodiscard]] std::optional<std::vector<hotkey::SymbolicHotKey>> copySymbolicHotKeys() override
    {
        return fake.copySymbolicHotKeys();
    }
    void releaseKeyboard() override {}

    QList<Trial> trials;
    FakeHotKeyBackend fake;
};

class HotkeyConflictCheckerTest : public testing::Test {
protected:
    WatchedBackend backend;
    HotkeyConflictChecker checker{backend};
};

TEST_F(HotkeyConflictCheckerTest, TheSystemHas22Shortcuts)
{
    const QList<Row> rows = {{u"c"_s, command, u"Copy"_s},
                             {u"v"_s, command, u"Paste"_s},
                             {u"x"_s, command, u"Cut"_s},
                             {u"z"_s, command, u"Undo"_s},
                             {u"a"_s, command, u"Select All"_s},
                             {u"s"_s, command, u"Save"_s},
                             {u"q"_s, command, u"Quit"_s},
                             {u"w"_s, command, u"Close Window"_s},
                             {u"n"_s, command, u"New"_s},
                             {u"o"_s, command, u"Open"_s},
                             {u"p"_s, command, u"Print"_s},
                             {u"f"_s, command, u"Find"_s},
                             {u"h"_s, command, u"Hide"_s},
                             {u"m"_s, command, u"Minimize"_s},
                             {u","_s, command, u"Preferences"_s},
                             {u"tab"_s, command, u"Switch App"_s},
                             {u"space"_s, command, u"Spotlight"_s},
                             {u"space"_s, control, u"Input Source"_s},
                             {u"3"_s, command | shift, u"Screenshot"_s},
                             {u"4"_s, command | shift, u"Screenshot Selection"_s},
                             {u"5"_s, command | shift, u"Screenshot Options"_s},
                             {u"space"_s, command | shift, u"Show Finder Search"_s}};
    ASSERT_EQ(rows.size(), 22);
    for (const Row& row : rows) {
        const QString warning = u"Conflicts with system shortcut: "_s + row.name;
        EXPECT_EQ(HotkeyConflictChecker::checkSystemShortcuts(row.key, row.modifiers), warning);
        EXPECT_EQ(HotkeyConflictChecker::checkSystemShortcuts(row.key.toUpper(),
                                                              row.modifiers | otherBits),
                  warning);
        EXPECT_EQ(HotkeyConflictChecker::checkSystemShortcuts(row.key, row.modifiers | option),
                  std::nullopt)
            << "the modifiers must be equal";
        EXPECT_EQ(checker.check(row.key, row.modifiers), warning);
    }
    EXPECT_TRUE(backend.trials.isEmpty()) << "a hit in a table is not tried";
}

TEST_F(HotkeyConflictCheckerTest, TheProgramHasFourShortcuts)
{
    const QList<Row> rows = {{u"n"_s, command, u"New Snippet"_s},
                             {u"s"_s, command, u"Save"_s},
                             {u"i"_s, command | shift, u"Import"_s},
                             {u"e"_s, command | shift, u"Export"_s}};
    for (const Row& row : rows) {
        const QString warning = u"Conflicts with app shortcut: "_s + row.name;
        EXPECT_EQ(HotkeyConflictChecker::checkAppShortcuts(row.key, row.modifiers), warning);
        EXPECT_EQ(
            HotkeyConflictChecker::checkAppShortcuts(row.key.toUpper(), row.modifiers | otherBits),
            warning);
        EXPECT_EQ(HotkeyConflictChecker::checkAppShortcuts(row.key, row.modifiers | control),
                  std::nullopt);
    }
    EXPECT_EQ(HotkeyConflictChecker::checkAppShortcuts(u"c"_s, command), std::nullopt);
    EXPECT_EQ(HotkeyConflictChecker::checkAppShortcuts(u"i"_s, command), std::nullopt);
}

TEST_F(HotkeyConflictCheckerTest, TheSystemsTableComesFirst)
{
    EXPECT_EQ(checker.check(u"3"_s, command | shift),
              u"Conflicts with system shortcut: Screenshot"_s);
    EXPECT_EQ(checker.check(u"i"_s, command | shift), u"Conflicts with app shortcut: Import"_s);
    EXPECT_EQ(checker.check(u"n"_s, command), u"Conflicts with system shortcut: New"_s);
    EXPECT_EQ(checker.check(u"s"_s, command), u"Conflicts with system shortcut: Save"_s);
    EXPECT_TRUE(backend.trials.isEmpty());
}

TEST_F(HotkeyConflictCheckerTest, WhatNoTableHasIsTriedOnTheSystemAndGivenBack)
{
    EXPECT_EQ(checker.check(u"t"_s, option | shift), std::nullopt);
    ASSERT_EQ(backend.trials.size(), 1);
    EXPECT_EQ(backend.trials[0].keyCode, 17U);
    EXPECT_EQ(backend.trials[0].modifiers, hotkey::carbonOptionBit | hotkey::carbonShiftBit);
    EXPECT_EQ(backend.trials[0].hotKeyID, (HotKeyID{0x564C4D59, 9999})) << "VLMY";
    EXPECT_TRUE(backend.fake.held.empty());
    EXPECT_EQ(backend.fake.unregistered.size(), 1U);
    EXPECT_EQ(backend.fake.handlersInstalled, 0) << "nobody would answer its events";
}

TEST_F(HotkeyConflictCheckerTest, WhatSomebodyHoldsIsTaken)
{
    (void)backend.fake.registerHotKey(17, hotkey::carbonOptionBit, {1, 1});
    EXPECT_EQ(checker.check(u"T"_s, option | otherBits), taken);
    EXPECT_EQ(backend.fake.held.size(), 1U) << "the holder keeps it";
    EXPECT_TRUE(backend.fake.unregistered.empty());
}

TEST_F(HotkeyConflictCheckerTest, AnyRefusalIsATakenShortcut)
{
    backend.fake.refusal = {hotkey::hotKeyInvalid, std::nullopt};
    EXPECT_EQ(checker.checkLiveConflict(u"t"_s, option), taken);
    backend.fake.refusal = {hotkey::hotKeyNoError, std::nullopt};
    EXPECT_EQ(checker.checkLiveConflict(u"t"_s, option), taken) << "no reference came back";
    backend.fake.refusal = {hotkey::hotKeyTaken, 5};
    EXPECT_EQ(checker.checkLiveConflict(u"t"_s, option), taken) << "the status counts";
    EXPECT_TRUE(backend.fake.unregistered.empty());

    hotkey::NullHotKeyBackend nothing;
    EXPECT_EQ(HotkeyConflictChecker(nothing).check(u"t"_s, option), taken);
}

TEST_F(HotkeyConflictCheckerTest, AnUnknownKeyPassesUntried)
{
    backend.fake.refusal = {hotkey::hotKeyTaken, std::nullopt};
    for (const QString& key : {u""_s, u"enter"_s, u"f13"_s, u"ä"_s, u"nonsense"_s})
        EXPECT_EQ(checker.check(key, option), std::nullopt) << qPrintable(key);
    EXPECT_TRUE(backend.trials.isEmpty());
}

TEST_F(HotkeyConflictCheckerTest, ThereAre64KeyCodes)
{
    const QHash<QString, std::uint32_t> codes = {
        {u"a"_s, 0},       {u"s"_s, 1},    {u"d"_s, 2},     {u"f"_s, 3},      {u"h"_s, 4},
        {u"g"_s, 5},       {u"z"_s, 6},    {u"x"_s, 7},     {u"c"_s, 8},      {u"v"_s, 9},
        {u"b"_s, 11},      {u"q"_s, 12},   {u"w"_s, 13},    {u"e"_s, 14},     {u"r"_s, 15},
        {u"y"_s, 16},      {u"t"_s, 17},   {u"1"_s, 18},    {u"2"_s, 19},     {u"3"_s, 20},
        {u"4"_s, 21},      {u"6"_s, 22},   {u"5"_s, 23},    {u"="_s, 24},     {u"9"_s, 25},
        {u"7"_s, 26},      {u"-"_s, 27},   {u"8"_s, 28},    {u"0"_s, 29},     {u"]"_s, 30},
        {u"o"_s, 31},      {u"u"_s, 32},   {u"["_s, 33},    {u"i"_s, 34},     {u"p"_s, 35},
        {u"return"_s, 36}, {u"l"_s, 37},   {u"j"_s, 38},    {u"'"_s, 39},     {u"k"_s, 40},
        {u";"_s, 41},      {u"\\"_s, 42},  {u","_s, 43},    {u"/"_s, 44},     {u"n"_s, 45},
        {u"m"_s, 46},      {u"."_s, 47},   {u"tab"_s, 48},  {u"space"_s, 49}, {u"`"_s, 50},
        {u"delete"_s, 51}, {u"f5"_s, 96},  {u"f6"_s, 97},   {u"f7"_s, 98},    {u"f3"_s, 99},
        {u"f8"_s, 100},    {u"f9"_s, 101}, {u"f11"_s, 103}, {u"f10"_s, 109},  {u"f12"_s, 111},
        {u"f4"_s, 118},    {u"f2"_s, 120}, {u"f1"_s, 122},  {u"escape"_s, 53}};
    ASSERT_EQ(codes.size(), 64);
    for (auto it = codes.begin(); it != codes.end(); ++it) {
        EXPECT_EQ(HotkeyConflictChecker::carbonKeyCode(it.key()), it.value())
            << qPrintable(it.key());
        EXPECT_EQ(HotkeyConflictChecker::carbonKeyCode(it.key().toUpper()), it.value());
    }
    EXPECT_EQ(HotkeyConflictChecker::carbonKeyCode(u"enter"_s), std::nullopt);
    EXPECT_EQ(HotkeyConflictChecker::carbonKeyCode(u""_s), std::nullopt);
}

} // namespace
} // namespace vellumry
