#include "views/settings/HotkeyRecorderView.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <utility>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using hotkey::ModifierFlags;

struct Row {
    int key;
    quint32 place;
    QString name;
};

/// Every key that can be recorded.
const QList<Row>& rows()
{
    static const QList<Row> all{
        {Qt::Key_Return, KEY_ENTER, u"return"_s},
        {Qt::Key_Tab, KEY_TAB, u"tab"_s},
        {Qt::Key_Space, KEY_SPACE, u"space"_s},
        {Qt::Key_Backspace, KEY_BACKSPACE, u"delete"_s},
        {Qt::Key_Escape, KEY_ESC, u"escape"_s},
        {Qt::Key_F1, KEY_F1, u"f1"_s},
        {Qt::Key_F2, KEY_F2, u"f2"_s},
        {Qt::Key_F3, KEY_F3, u"f3"_s},
        {Qt::Key_F4, KEY_F4, u"f4"_s},
        {Qt::Key_F5, KEY_F5, u"f5"_s},
        {Qt::Key_F6, KEY_F6, u"f6"_s},
        {Qt::Key_F7, KEY_F7, u"f7"_s},
        {Qt::Key_F8, KEY_F8, u"f8"_s},
        {Qt::Key_F9, KEY_F9, u"f9"_s},
        {Qt::Key_F10, KEY_F10, u"f10"_s},
        {Qt::Key_F11, KEY_F11, u"f11"_s},
        {Qt::Key_F12, KEY_F12, u"f12"_s},
        {Qt::Key_A, KEY_A, u"a"_s},
        {Qt::Key_B, KEY_B, u"b"_s},
        {Qt::Key_C, KEY_C, u"c"_s},
        {Qt::Key_D, KEY_D, u"d"_s},
        {Qt::Key_E, KEY_E, u"e"_s},
        {Qt::Key_F, KEY_F, u"f"_s},
        {Qt::Key_G, KEY_G, u"g"_s},
        {Qt::Key_H, KEY_H, u"h"_s},
        {Qt::Key_I, KEY_I, u"i"_s},
        {Qt::Key_J, KEY_J, u"j"_s},
        {Qt::Key_K, KEY_K, u"k"_s},
        {Qt::Key_L, KEY_L, u"l"_s},
        {Qt::Key_M, KEY_M, u"m"_s},
        {Qt::Key_N, KEY_N, u"n"_s},
        {Qt::Key_O, KEY_O, u"o"_s},
        {Qt::Key_P, KEY_P, u"p"_s},
        {Qt::Key_Q, KEY_Q, u"q"_s},
        {Qt::Key_R, KEY_R, u"r"_s},
        {Qt::Key_S, KEY_S, u"s"_s},
        {Qt::Key_T, KEY_T, u"t"_s},
        {Qt::Key_U, KEY_U, u"u"_s},
        {Qt::Key_V, KEY_V, u"v"_s},
        {Qt::Key_W, KEY_W, u"w"_s},
        {Qt::Key_X, KEY_X, u"x"_s},
        {Qt::Key_Y, KEY_Y, u"y"_s},
        {Qt::Key_Z, KEY_Z, u"z"_s},
        {Qt::Key_0, KEY_0, u"0"_s},
        {Qt::Key_1, KEY_1, u"1"_s},
        {Qt::Key_2, KEY_2, u"2"_s},
        {Qt::Key_3, KEY_3, u"3"_s},
        {Qt::Key_4, KEY_4, u"4"_s},
        {Qt::Key_5, KEY_5, u"5"_s},
        {Qt::Key_6, KEY_6, u"6"_s},
        {Qt::Key_7, KEY_7, u"7"_s},
        {Qt::Key_8, KEY_8, u"8"_s},
        {Qt::Key_9, KEY_9, u"9"_s},
        {Qt::Key_Equal, KEY_EQUAL, u"="_s},
        {Qt::Key_Minus, KEY_MINUS, u"-"_s},
        {Qt::Key_BracketRight, KEY_RIGHTBRACE, u"]"_s},
        {Qt::Key_BracketLeft, KEY_LEFTBRACE, u"["_s},
        {Qt::Key_Apostrophe, KEY_APOSTROPHE, u"'"_s},
        {Qt::Key_Semicolon, KEY_SEMICOLON, u";"_s},
        {Qt::Key_Backslash, KEY_BACKSLASH, u"\\"_s},
        {Qt::Key_Comma, KEY_COMMA, u","_s},
        {Qt::Key_Slash, KEY_SLASH, u"/"_s},
        {Qt::Key_Period, KEY_DOT, u"."_s},
    };
    return all;
}

/// A press as an X server reports it; the place is that of the keyboard, or 0 for none.
QKeyEvent pressOf(int key, Qt::KeyboardModifiers modifiers = {}, quint32 place = 0)
{
    const quint32 scanCode = place == 0 ? 0 : place + 8;
    return {QEvent::KeyPress, key, modifiers, scanCode, 0, 0};
}

QString nameOf(const QKeyEvent& event)
{
    return HotkeyRecorderNSView::keyStringFromEvent(event).value_or(u"none"_s);
}

TEST(KeyStringFromEventTest, NamesEachKeyByWhatItTypes)
{
    ASSERT_EQ(rows().size(), 63);
    for (const Row& row : rows())
        EXPECT_EQ(nameOf(pressOf(row.key)), row.name);
}

TEST(KeyStringFromEventTest, NamesEachKeyByItsPlaceWhereItTypesSomethingElse)
{
    for (const Row& row : rows())
        EXPECT_EQ(nameOf(pressOf(Qt::Key_unknown, {}, row.place)), row.name);
}

TEST(KeyStringFromEventTest, WhatAKeyTypesComesFirst)
{
    EXPECT_EQ(nameOf(pressOf(Qt::Key_Z, Qt::AltModifier, KEY_Y)), u"z"_s);
}

TEST(KeyStringFromEventTest, ShiftedKeysAndOtherScriptsGoByTheirPlace)
{
    EXPECT_EQ(nameOf(pressOf(Qt::Key_NumberSign, Qt::ShiftModifier, KEY_3)), u"3"_s);
    EXPECT_EQ(nameOf(pressOf(Qt::Key_QuoteDbl, Qt::ShiftModifier, KEY_APOSTROPHE)), u"'"_s);
    EXPECT_EQ(nameOf(pressOf(0x0424, Qt::AltModifier, KEY_A)), u"a"_s);
    EXPECT_EQ(nameOf(pressOf(Qt::Key_Backtab, Qt::ShiftModifier, KEY_TAB)), u"tab"_s);
}

TEST(KeyStringFromEventTest, OtherKeysHaveNoName)
{
    EXPECT_EQ(nameOf(pressOf(Qt::Key_QuoteLeft, {}, KEY_GRAVE)), u"none"_s)
        << "though a hot key could have it";
    const QList<std::pair<int, quint32>> others{
        {Qt::Key_Delete, KEY_DELETE},  {Qt::Key_Left, KEY_LEFT},   {Qt::Key_Home, KEY_HOME},
        {Qt::Key_PageUp, KEY_PAGEUP},  {Qt::Key_F13, KEY_F13},     {Qt::Key_CapsLock, KEY_CAPSLOCK},
        {Qt::Key_AltGr, KEY_RIGHTALT}, {Qt::Key_Print, KEY_SYSRQ}, {Qt::Key_Menu, KEY_COMPOSE},
        {Qt::Key_section, KEY_102ND},  {Qt::Key_unknown, 0}};
    for (const auto& [key, place] : others)
        EXPECT_EQ(nameOf(pressOf(key, {}, place)), u"none"_s) << key;
}

TEST(KeyStringFromEventTest, TheKeypadHasNoNames)
{
    EXPECT_EQ(nameOf(pressOf(Qt::Key_5, Qt::KeypadModifier, KEY_KP5)), u"none"_s);
    EXPECT_EQ(nameOf(pressOf(Qt::Key_Enter, Qt::KeypadModifier, KEY_KPENTER)), u"none"_s);
    EXPECT_EQ(nameOf(pressOf(Qt::Key_Minus, Qt::KeypadModifier, KEY_KPMINUS)), u"none"_s);
}

/// Writes down what it is told.
class RecordingDelegate final : public HotkeyRecorderDelegate {
public:
    void hotkeyRecorded(const QString& key, ModifierFlags modifiers) override
    {
        calls.append(QString::fromStdString(modifiers.description()) + key);
        lastModifiers = modifiers;
    }
    void recordingCancelled() override { calls.append(u"cancelled"_s); }
    void modifiersChanged(ModifierFlags modifiers) override
    {
        calls.append(u'[' + QString::fromStdString(modifiers.description()) + u']');
        lastModifiers = modifiers;
    }

    QStringList take() { return std::exchange(calls, {}); }

    QStringList calls;
    ModifierFlags lastModifiers;
};

class HotkeyRecorderNSViewTest : public testing::Test {
protected:
    HotkeyRecorderNSViewTest() { view.setDelegate(&delegate); }

    /// Whether the view kept the event to itself.
    bool send(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, quint32 place = 0)
    {
        QKeyEvent event(type, key, modifiers, place == 0 ? 0 : place + 8, 0, 0);
        event.ignore();
        QCoreApplication::sendEvent(&view, &event);
        return event.isAccepted();
    }
    bool press(int key, Qt::KeyboardModifiers modifiers = {}, quint32 place = 0)
    {
        return send(QEvent::KeyPress, key, modifiers, place);
    }
    bool release(int key, Qt::KeyboardModifiers modifiers = {}, quint32 place = 0)
    {
        return send(QEvent::KeyRelease, key, modifiers, place);
    }

    RecordingDelegate delegate;
    HotkeyRecorderNSView view;
};

TEST_F(HotkeyRecorderNSViewTest, PassesKeysOnWhileItDoesNotRecord)
{
    EXPECT_FALSE(press(Qt::Key_A, Qt::AltModifier));
    EXPECT_FALSE(press(Qt::Key_Alt));
    EXPECT_FALSE(release(Qt::Key_Alt, Qt::AltModifier));
    EXPECT_FALSE(press(Qt::Key_Escape));
    EXPECT_FALSE(send(QEvent::ShortcutOverride, Qt::Key_N, Qt::ControlModifier));
    EXPECT_EQ(delegate.calls, QStringList());
}

TEST_F(HotkeyRecorderNSViewTest, KeepsEveryKeyWhileItRecords)
{
    view.setRecording(true);
    EXPECT_TRUE(send(QEvent::ShortcutOverride, Qt::Key_N, Qt::ControlModifier));
    EXPECT_TRUE(press(Qt::Key_A));
    EXPECT_TRUE(press(Qt::Key_Tab));
    EXPECT_TRUE(press(Qt::Key_F10));
    EXPECT_TRUE(press(Qt::Key_Left));
    EXPECT_EQ(delegate.calls, QStringList()) << "and none of these makes a hot key";
}

TEST_F(HotkeyRecorderNSViewTest, ShiftAloneNeverMakesAShortcut)
{
    view.setRecording(true);
    press(Qt::Key_A);
    press(Qt::Key_A, Qt::ShiftModifier);
    press(Qt::Key_F5);
    press(Qt::Key_F5, Qt::ShiftModifier);
    EXPECT_EQ(delegate.calls, QStringList());
    press(Qt::Key_A, Qt::AltModifier);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_A, Qt::MetaModifier);
    press(Qt::Key_A, Qt::AltModifier | Qt::ShiftModifier);
    press(Qt::Key_F5, Qt::ControlModifier);
    EXPECT_EQ(delegate.calls, (QStringList{u"⌥a"_s, u"⌘a"_s, u"⌃a"_s, u"⌥⇧a"_s, u"⌘f5"_s}));
}

TEST_F(HotkeyRecorderNSViewTest, AKeyWithoutANameIsIgnored)
{
    view.setRecording(true);
    press(Qt::Key_QuoteLeft, Qt::AltModifier, KEY_GRAVE);
    press(Qt::Key_5, Qt::AltModifier | Qt::KeypadModifier, KEY_KP5);
    press(Qt::Key_Left, Qt::ControlModifier, KEY_LEFT);
    EXPECT_EQ(delegate.calls, QStringList());
}

TEST_F(HotkeyRecorderNSViewTest, EscapeCancelsWithWhateverModifiers)
{
    view.setRecording(true);
    press(Qt::Key_Escape);
    press(Qt::Key_Escape, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(delegate.calls, (QStringList{u"cancelled"_s, u"cancelled"_s}))
        << "so that its name is never recorded";
}

TEST_F(HotkeyRecorderNSViewTest, TellsTheModifiersAsTheyArePressedAndLetGo)
{
    view.setRecording(true);
    // As X tells it: without the key of the event itself.
    press(Qt::Key_Control);
    press(Qt::Key_Shift, Qt::ControlModifier);
    press(Qt::Key_Alt, Qt::ControlModifier | Qt::ShiftModifier);
    press(Qt::Key_Super_L, Qt::ControlModifier | Qt::ShiftModifier | Qt::AltModifier);
    EXPECT_EQ(delegate.take(), (QStringList{u"[⌘]"_s, u"[⇧⌘]"_s, u"[⌥⇧⌘]"_s, u"[⌃⌥⇧⌘]"_s}));
    release(Qt::Key_Control, Qt::ControlModifier | Qt::ShiftModifier);
    release(Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_EQ(delegate.take(), (QStringList{u"[⇧]"_s, u"[]"_s}));
    // And as others tell it.
    press(Qt::Key_Alt, Qt::AltModifier);
    press(Qt::Key_Super_R, Qt::AltModifier | Qt::MetaModifier);
    release(Qt::Key_Alt, Qt::MetaModifier);
    press(Qt::Key_Meta);
    EXPECT_EQ(delegate.take(), (QStringList{u"[⌥]"_s, u"[⌃⌥]"_s, u"[⌃]"_s, u"[⌃]"_s}));
}

TEST_F(HotkeyRecorderNSViewTest, AltBehindShiftIsStillAlt)
{
    view.setRecording(true);
    press(Qt::Key_Shift);
    press(Qt::Key_Meta, Qt::ShiftModifier, KEY_LEFTALT);
    EXPECT_EQ(delegate.take(), (QStringList{u"[⇧]"_s, u"[⌥⇧]"_s}));
    press(Qt::Key_Meta, Qt::ShiftModifier, KEY_LEFTMETA);
    EXPECT_EQ(delegate.take(), QStringList{u"[⌃⇧]"_s});
}

TEST_F(HotkeyRecorderNSViewTest, TheLowSixteenBitsAreClear)
{
    view.setRecording(true);
    press(Qt::Key_Shift, Qt::ControlModifier | Qt::GroupSwitchModifier);
    EXPECT_EQ(delegate.lastModifiers.rawValue, 0x120000U);
    press(Qt::Key_A,
          Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier | Qt::GroupSwitchModifier);
    EXPECT_EQ(delegate.lastModifiers.rawValue, 0x1c0000U);
}

TEST_F(HotkeyRecorderNSViewTest, AClickThatTakesTheKeysCancels)
{
    const auto loseFocus = [this](Qt::FocusReason reason) {
        QFocusEvent event(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(&view, &event);
        return delegate.take();
    };
    EXPECT_EQ(loseFocus(Qt::MouseFocusReason), QStringList());
    view.setRecording(true);
    EXPECT_EQ(loseFocus(Qt::ActiveWindowFocusReason), QStringList{u"[]"_s});
    EXPECT_EQ(loseFocus(Qt::PopupFocusReason), QStringList{u"[]"_s});
    EXPECT_EQ(loseFocus(Qt::MouseFocusReason), (QStringList{u"[]"_s, u"cancelled"_s}));
}

TEST_F(HotkeyRecorderNSViewTest, DoesWithoutADelegate)
{
    view.setDelegate(nullptr);
    view.setRecording(true);
    EXPECT_TRUE(press(Qt::Key_A, Qt::AltModifier));
    EXPECT_TRUE(press(Qt::Key_Alt));
    EXPECT_TRUE(press(Qt::Key_Escape));
    EXPECT_EQ(delegate.calls, QStringList());
}

} // namespace
} // namespace vellumry::test
