#include "settings/HotkeyService.h"

#include "hotkey/FakeHotKeyBackend.h"
#include "hotkey/HotKey.h"
#include "hotkey/HotKeysController.h"
#include "support/LogCapture.h"

#include <QSet>
#include <gtest/gtest.h>

#include <algorithm>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using hotkey::HotKeysController;
using hotkey::Key;
using hotkey::KeyCombo;
using hotkey::ModifierFlags;

/// Drives the real registry over a window system of plain values: a box in the registry is what a
/// registration leaves, and a press is an event handed to it.
class HotkeyServiceTest : public testing::Test {
protected:
    /// Makes it the window system in use.
    static hotkey::FakeHotKeyBackend* plainValues()
    {
        auto made = std::make_unique<hotkey::FakeHotKeyBackend>();
        auto* backend = made.get();
        HotKeysController::setBackend(std::move(made));
        return backend;
    }

    /// The combinations that are registered now.
    static QList<KeyCombo> registered()
    {
        QList<KeyCombo> result;
        for (const auto& [number, box] : HotKeysController::hotKeys)
            result.append(box.hotKey->keyCombo);
        return result;
    }

    static void press(std::uint32_t kind = hotkey::HotKeyEvent::pressed)
    {
        if (HotKeysController::hotKeys.empty())
            return;
        hotkey::HotKeyEvent event;
        event.kind = kind;
        event.hotKeyID = {HotKeysController::eventHotKeySignature,
                          HotKeysController::hotKeys.rbegin()->first};
        HotKeysController::handleEvent(&event);
    }

    std::function<void()> counting()
    {
        return [this] { ++presses; };
    }

    hotkey::FakeHotKeyBackend* backend = plainValues(); ///< owned by the registry
    HotkeyConfig setting{u"t"_s, ModifierFlags::option};
    int presses = 0;
    test::LogCapture capture;
    HotkeyService service{[this] { return setting; }};
};

TEST_F(HotkeyServiceTest, NothingIsRegisteredAtFirst)
{
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_FALSE(service.currentKey());
    EXPECT_FALSE(service.currentModifiers());
    EXPECT_FALSE(service.isPaused());
    EXPECT_TRUE(capture.lines.isEmpty());
}

TEST_F(HotkeyServiceTest, APressRunsTheAction)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    EXPECT_EQ(registered(), QList<KeyCombo>{KeyCombo(Key::t, ModifierFlags::option)});
    EXPECT_EQ(capture.lines, QStringList{u"HotkeyService: 已注册热键 ⌥T"_s});
    EXPECT_EQ(service.currentKey(), u"t"_s);
    EXPECT_EQ(service.currentModifiers(), ModifierFlags::option);
    press();
    EXPECT_EQ(presses, 1);
    press(hotkey::HotKeyEvent::released);
    EXPECT_EQ(presses, 1);
}

TEST_F(HotkeyServiceTest, WhatTheDesktopDecidesIsToldAndLogged)
{
    using State = hotkey::DesktopShortcut::State;
    int changes = 0;
    QObject::connect(&service, &HotkeyServiceProtocol::desktopShortcutChanged, &service,
                     [&changes] { ++changes; });
    EXPECT_EQ(service.desktopShortcut(), std::nullopt);
    backend->decide({State::asked, ""});
    backend->decide({State::granted, "Alt+T"});
    EXPECT_EQ(service.desktopShortcut(), (hotkey::DesktopShortcut{State::granted, "Alt+T"}));
    backend->decide({State::refused, ""});
    backend->decide({State::unavailable, ""});
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(capture.lines,
              (QStringList{u"HotkeyService: the desktop has bound the hot key: Alt+T"_s,
                           u"HotkeyService: the desktop has not allowed the hot key"_s,
                           u"HotkeyService: the desktop has no portal for hot keys"_s}));
}

TEST_F(HotkeyServiceTest, ADesktopThatOutlivesTheServiceTellsNobody)
{
    {
        const HotkeyService other([this] { return setting; });
    }
    backend->decide({hotkey::DesktopShortcut::State::granted, "Alt+T"});
    EXPECT_TRUE(capture.lines.isEmpty());
}

TEST_F(HotkeyServiceTest, ACombinationThatSomebodyHoldsIsToldAndStaysWithoutEffect)
{
    backend->refusal = {hotkey::hotKeyTaken, std::nullopt};
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    EXPECT_EQ(capture.lines,
              (QStringList{u"HotkeyService: 已注册热键 ⌥T"_s,
                           u"HotkeyService: ⌥T has no effect: another program holds it, or the "
                           u"window system gives out no hot keys"_s}));
    EXPECT_EQ(registered().size(), 1) << "the object stays";
    EXPECT_TRUE(backend->held.empty());
    EXPECT_EQ(service.currentKey(), u"t"_s);
}

TEST_F(HotkeyServiceTest, ANewRegistrationReplacesTheOldOne)
{
    int other = 0;
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    service.registerGlobalHotkey(u"space"_s, ModifierFlags::command | ModifierFlags::shift,
                                 [&] { ++other; });
    EXPECT_EQ(registered(),
              QList<KeyCombo>{KeyCombo(Key::space, ModifierFlags::command | ModifierFlags::shift)});
    EXPECT_EQ(capture.lines.last(), u"HotkeyService: 已注册热键 ⇧⌘SPACE"_s);
    press();
    EXPECT_EQ(presses, 0);
    EXPECT_EQ(other, 1);
}

TEST_F(HotkeyServiceTest, ModifiersAreReducedToTheFour)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags{0xFFFF'FFFF'FFFF'FFFF}, {});
    EXPECT_EQ(registered().value(0, KeyCombo(0, 0)).modifiers(),
              ModifierFlags::command | ModifierFlags::option | ModifierFlags::control |
                  ModifierFlags::shift);
    EXPECT_EQ(capture.lines, QStringList{u"HotkeyService: 已注册热键 ⌃⌥⇧⌘T"_s});
    EXPECT_EQ(service.currentModifiers(), ModifierFlags{0xFFFF'FFFF'FFFF'FFFF});
}

TEST_F(HotkeyServiceTest, LetterCaseDoesNotCount)
{
    service.registerGlobalHotkey(u"F5"_s, {}, {});
    EXPECT_EQ(registered(), QList<KeyCombo>{KeyCombo(Key::f5)});
    EXPECT_EQ(capture.lines, QStringList{u"HotkeyService: 已注册热键 F5"_s});
}

TEST_F(HotkeyServiceTest, AnInvalidKeyIsToldAndLeavesNoHotKey)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    service.registerGlobalHotkey(u"Enter"_s, ModifierFlags::option, counting());
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_EQ(capture.lines.last(), u"HotkeyService: 无效的按键 'Enter'"_s);
    EXPECT_EQ(service.currentKey(), u"Enter"_s);
    press();
    EXPECT_EQ(presses, 0);
}

TEST_F(HotkeyServiceTest, ThereAre64KeyNames)
{
    const QList<QPair<QString, Key>> others = {
        {u"space"_s, Key::space},    {u"return"_s, Key::return_}, {u"tab"_s, Key::tab},
        {u"delete"_s, Key::delete_}, {u"escape"_s, Key::escape},  {u"-"_s, Key::minus},
        {u"="_s, Key::equal},        {u"["_s, Key::leftBracket},  {u"]"_s, Key::rightBracket},
        {u"\\"_s, Key::backslash},   {u";"_s, Key::semicolon},    {u"'"_s, Key::quote},
        {u","_s, Key::comma},        {u"."_s, Key::period},       {u"/"_s, Key::slash},
        {u"`"_s, Key::grave}};
    QSet<int> keys;
    for (char16_t letter = u'a'; letter <= u'z'; ++letter) {
        // The names of letters, digits and function keys are also those of the key itself.
        const QString name(1, QChar(letter));
        const auto key = HotkeyService::keyFromString(name);
        ASSERT_TRUE(key) << qPrintable(name);
        EXPECT_EQ(hotkey::description(*key), name.toUpper().toStdString());
        EXPECT_EQ(HotkeyService::keyFromString(name.toUpper()), key);
        keys.insert(static_cast<int>(*key));
    }
    for (int digit = 0; digit <= 9; ++digit) {
        const auto key = HotkeyService::keyFromString(QString::number(digit));
        ASSERT_TRUE(key) << digit;
        EXPECT_EQ(hotkey::description(*key), std::to_string(digit));
        keys.insert(static_cast<int>(*key));
    }
    for (int number = 1; number <= 12; ++number) {
        const QString name = u"f"_s + QString::number(number);
        const auto key = HotkeyService::keyFromString(name);
        EXPECT_EQ(key, hotkey::keyFromString(name.toStdString())) << qPrintable(name);
        ASSERT_TRUE(key);
        keys.insert(static_cast<int>(*key));
    }
    for (const auto& [name, key] : others) {
        EXPECT_EQ(HotkeyService::keyFromString(name), key) << qPrintable(name);
        keys.insert(static_cast<int>(key));
    }
    EXPECT_EQ(keys.size(), 64);
}

TEST_F(HotkeyServiceTest, OtherNamesAreNoKeys)
{
    for (const QString& name :
         {u""_s,     u" "_s,  u"enter"_s, u"esc"_s, u"backspace"_s, u"up"_s, u"uparrow"_s,
          u"home"_s, u"f0"_s, u"f13"_s,   u"f20"_s, u"10"_s,        u"ä"_s,  u"zero"_s,
          u"\""_s,   u"+"_s,  u"aa"_s,    u"t "_s,  u"keypad1"_s,   u"⎋"_s,  u"leftbracket"_s})
        EXPECT_FALSE(HotkeyService::keyFromString(name)) << qPrintable(name);
}

TEST_F(HotkeyServiceTest, UnregisteringForgetsEverything)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    service.unregisterHotkey();
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_FALSE(service.currentKey());
    EXPECT_FALSE(service.currentModifiers());
    service.unregisterHotkey();
    EXPECT_EQ(capture.lines.size(), 1);
}

TEST_F(HotkeyServiceTest, UnregisteringDuringAPauseKeepsThePause)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    service.pauseHotkey();
    service.unregisterHotkey();
    EXPECT_TRUE(service.isPaused());
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    EXPECT_FALSE(service.isPaused());
    EXPECT_EQ(registered().size(), 1);
}

TEST_F(HotkeyServiceTest, APauseTakesTheKeyOffAndIsToldOnce)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    capture.lines.clear();
    service.pauseHotkey();
    service.pauseHotkey();
    EXPECT_EQ(capture.lines, QStringList{u"HotkeyService: 热键已暂停"_s});
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_EQ(service.currentKey(), u"t"_s);
    EXPECT_TRUE(service.isPaused());
}

TEST_F(HotkeyServiceTest, WithoutAPauseThereIsNothingToResume)
{
    service.resumeHotkey();
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_TRUE(capture.lines.isEmpty());
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    capture.lines.clear();
    service.resumeHotkey();
    EXPECT_TRUE(capture.lines.isEmpty());
    EXPECT_EQ(registered().size(), 1);
}

TEST_F(HotkeyServiceTest, AfterAPauseTheSettingDecides)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    const std::uint32_t number = HotKeysController::hotKeysCount;
    service.pauseHotkey();
    setting = {u"f5"_s, ModifierFlags::control};
    capture.lines.clear();
    service.resumeHotkey();
    EXPECT_EQ(registered(), QList<KeyCombo>{KeyCombo(Key::f5, ModifierFlags::control)});
    EXPECT_EQ(service.currentKey(), u"f5"_s);
    EXPECT_EQ(service.currentModifiers(), ModifierFlags::control);
    EXPECT_FALSE(service.isPaused());
    EXPECT_EQ(capture.lines, (QStringList{u"HotkeyService: 已注册热键 ⌃F5"_s,
                                          u"HotkeyService: 热键已恢复 ⌃F5"_s}));
    EXPECT_GT(HotKeysController::hotKeysCount, number);
    press();
    EXPECT_EQ(presses, 1);
}

TEST_F(HotkeyServiceTest, AfterUnregisteringAResumedKeyDoesNothing)
{
    service.registerGlobalHotkey(u"f1"_s, {}, counting());
    service.unregisterHotkey();
    service.pauseHotkey();
    service.resumeHotkey();
    EXPECT_EQ(registered(), QList<KeyCombo>{KeyCombo(Key::t, ModifierFlags::option)});
    press();
    EXPECT_EQ(presses, 0);
}

TEST_F(HotkeyServiceTest, AnInvalidSettingLeavesNoHotKeyAfterAPause)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
    service.pauseHotkey();
    setting.key = u"nonsense"_s;
    capture.lines.clear();
    service.resumeHotkey();
    EXPECT_TRUE(registered().isEmpty());
    EXPECT_EQ(capture.lines, (QStringList{u"HotkeyService: 无效的按键 'nonsense'"_s,
                                          u"HotkeyService: 热键已恢复 ⌥NONSENSE"_s}));
}

TEST_F(HotkeyServiceTest, TheActionMayChangeTheHotKey)
{
    service.registerGlobalHotkey(u"t"_s, ModifierFlags::option, [this] {
        const QString big(1000, u'x');
        service.unregisterHotkey();
        service.registerGlobalHotkey(u"f2"_s, {}, counting());
        presses += static_cast<int>(big.size());
    });
    press();
    EXPECT_EQ(presses, 1000);
    press();
    EXPECT_EQ(presses, 1001);
    EXPECT_EQ(registered(), QList<KeyCombo>{KeyCombo(Key::f2)});
}

TEST_F(HotkeyServiceTest, TheHotKeyEndsWithTheService)
{
    {
        HotkeyService other([this] { return setting; });
        other.registerGlobalHotkey(u"t"_s, ModifierFlags::option, counting());
        EXPECT_EQ(registered().size(), 1);
    }
    EXPECT_TRUE(registered().isEmpty());
}

} // namespace
} // namespace vellumry
