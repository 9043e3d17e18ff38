#include "views/settings/HotkeyRecorderView.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <linux/input-event-codes.h>
#include <utility>

namespace vellumry {

namespace {

using hotkey::ModifierFlags;

struct RecordableKey {
    int key;       ///< what it types
    quint32 place; ///< where it is on a US keyboard
    QStringView name;
};

// The grave accent is missing, although a hot key can have it.
constexpr std::array<RecordableKey, 63> recordableKeys{{
    {Qt::Key_Return, KEY_ENTER, u"return"},
    {Qt::Key_Tab, KEY_TAB, u"tab"},
    {Qt::Key_Space, KEY_SPACE, u"space"},
    {Qt::Key_Backspace, KEY_BACKSPACE, u"delete"},
    {Qt::Key_Escape, KEY_ESC, u"escape"},
    {Qt::Key_F1, KEY_F1, u"f1"},
    {Qt::Key_F2, KEY_F2, u"f2"},
    {Qt::Key_F3, KEY_F3, u"f3"},
    {Qt::Key_F4, KEY_F4, u"f4"},
    {Qt::Key_F5, KEY_F5, u"f5"},
    {Qt::Key_F6, KEY_F6, u"f6"},
    {Qt::Key_F7, KEY_F7, u"f7"},
    {Qt::Key_F8, KEY_F8, u"f8"},
    {Qt::Key_F9, KEY_F9, u"f9"},
    {Qt::Key_F10, KEY_F10, u"f10"},
    {Qt::Key_F11, KEY_F11, u"f11"},
    {Qt::Key_F12, KEY_F12, u"f12"},
    {Qt::Key_A, KEY_A, u"a"},
    {Qt::Key_S, KEY_S, u"s"},
    {Qt::Key_D, KEY_D, u"d"},
    {Qt::Key_F, KEY_F, u"f"},
    {Qt::Key_H, KEY_H, u"h"},
    {Qt::Key_G, KEY_G, u"g"},
    {Qt::Key_Z, KEY_Z, u"z"},
    {Qt::Key_X, KEY_X, u"x"},
    {Qt::Key_C, KEY_C, u"c"},
    {Qt::Key_V, KEY_V, u"v"},
    {Qt::Key_B, KEY_B, u"b"},
    {Qt::Key_Q, KEY_Q, u"q"},
    {Qt::Key_W, KEY_W, u"w"},
    {Qt::Key_E, KEY_E, u"e"},
    {Qt::Key_R, KEY_R, u"r"},
    {Qt::Key_Y, KEY_Y, u"y"},
    {Qt::Key_T, KEY_T, u"t"},
    {Qt::Key_1, KEY_1, u"1"},
    {Qt::Key_2, KEY_2, u"2"},
    {Qt::Key_3, KEY_3, u"3"},
    {Qt::Key_4, KEY_4, u"4"},
    {Qt::Key_6, KEY_6, u"6"},
    {Qt::Key_5, KEY_5, u"5"},
    {Qt::Key_Equal, KEY_EQUAL, u"="},
    {Qt::Key_9, KEY_9, u"9"},
    {Qt::Key_7, KEY_7, u"7"},
    {Qt::Key_Minus, KEY_MINUS, u"-"},
    {Qt::Key_8, KEY_8, u"8"},
    {Qt::Key_0, KEY_0, u"0"},
    {Qt::Key_BracketRight, KEY_RIGHTBRACE, u"]"},
    {Qt::Key_O, KEY_O, u"o"},
    {Qt::Key_U, KEY_U, u"u"},
    {Qt::Key_BracketLeft, KEY_LEFTBRACE, u"["},
    {Qt::Key_I, KEY_I, u"i"},
    {Qt::Key_P, KEY_P, u"p"},
    {Qt::Key_L, KEY_L, u"l"},
    {Qt::Key_J, KEY_J, u"j"},
    {Qt::Key_Apostrophe, KEY_APOSTROPHE, u"'"},
    {Qt::Key_K, KEY_K, u"k"},
    {Qt::Key_Semicolon, KEY_SEMICOLON, u";"},
    {Qt::Key_Backslash, KEY_BACKSLASH, u"\\"},
    {Qt::Key_Comma, KEY_COMMA, u","},
    {Qt::Key_Slash, KEY_SLASH, u"/"},
    {Qt::Key_N, KEY_N, u"n"},
    {Qt::Key_M, KEY_M, u"m"},
    {Qt::Key_Period, KEY_DOT, u"."},
}};

/// X counts its key codes from here.
constexpr quint32 firstScanCode = 8;

constexpr ModifierFlags needed =
    ModifierFlags::command | ModifierFlags::option | ModifierFlags::control;

/// The modifier that a key is, if it is one.
std::optional<ModifierFlags> modifierOf(const QKeyEvent& event)
{
    const quint32 place = event.nativeScanCode() - firstScanCode;
    switch (event.key()) {
    case Qt::Key_Control:
        return ModifierFlags::command;
    case Qt::Key_Alt:
        return ModifierFlags::option;
    case Qt::Key_Shift:
        return ModifierFlags::shift;
    case Qt::Key_Meta:
        // What Alt becomes while Shift is held.
        if (place == KEY_LEFTALT || place == KEY_RIGHTALT)
            return ModifierFlags::option;
        return ModifierFlags::control;
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return ModifierFlags::control;
    default:
        return std::nullopt;
    }
}

/// Never has one of the low 16 bits.
ModifierFlags modifierFlags(Qt::KeyboardModifiers modifiers)
{
    ModifierFlags flags;
    if (modifiers.testFlag(Qt::ControlModifier))
        flags |= ModifierFlags::command;
    if (modifiers.testFlag(Qt::AltModifier))
        flags |= ModifierFlags::option;
    if (modifiers.testFlag(Qt::ShiftModifier))
        flags |= ModifierFlags::shift;
    if (modifiers.testFlag(Qt::MetaModifier))
        flags |= ModifierFlags::control;
    return flags;
}

} // namespace

// HotkeyRecorderNSView

HotkeyRecorderNSView::HotkeyRecorderNSView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

std::optional<QString> HotkeyRecorderNSView::keyStringFromEvent(const QKeyEvent& event)
{
    if (event.modifiers().testFlag(Qt::KeypadModifier))
        return std::nullopt;
    const int key = event.key() == Qt::Key_Backtab ? int(Qt::Key_Tab) : event.key();
    const auto* found = std::ranges::find(recordableKeys, key, &RecordableKey::key);
    if (found == recordableKeys.end())
        found = std::ranges::find(recordableKeys, event.nativeScanCode() - firstScanCode,
                                  &RecordableKey::place);
    if (found == recordableKeys.end())
        return std::nullopt;
    return found->name.toString();
}

bool HotkeyRecorderNSView::event(QEvent* event)
{
    if (recording) {
        // Neither the program's commands nor Tab's move to the next control may take a key.
        if (event->type() == QEvent::ShortcutOverride) {
            event->accept();
            return true;
        }
        if (event->type() == QEvent::KeyPress) {
            keyPressEvent(static_cast<QKeyEvent*>(event));
            return true;
        }
    }
    return QWidget::event(event);
}

void HotkeyRecorderNSView::keyPressEvent(QKeyEvent* event)
{
    if (!recording) {
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (const auto modifier = modifierOf(*event))
        flagsChanged(*event, *modifier);
    else
        keyDown(*event);
}

void HotkeyRecorderNSView::keyReleaseEvent(QKeyEvent* event)
{
    const auto modifier = modifierOf(*event);
    if (!recording || !modifier) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    event->accept();
    flagsChanged(*event, *modifier);
}

void HotkeyRecorderNSView::flagsChanged(const QKeyEvent& event, ModifierFlags flag)
{
    // Systems differ in whether an event counts its own key among the modifiers; that of
    // QKeyEvent itself only knows some of the keys.
    ModifierFlags flags = modifierFlags(event.QInputEvent::modifiers());
    if (event.type() == QEvent::KeyPress)
        flags |= flag;
    else
        flags.rawValue &= ~flag.rawValue;
    if (delegate)
        delegate->modifiersChanged(flags);
}

void HotkeyRecorderNSView::keyDown(const QKeyEvent& event)
{
    if (!delegate)
        return;
    if (event.key() == Qt::Key_Escape) {
        delegate->recordingCancelled();
        return;
    }
    const ModifierFlags modifiers = modifierFlags(event.modifiers());
    // Shift alone never makes a shortcut.
    if ((modifiers & needed) == ModifierFlags{})
        return;
    if (const auto key = keyStringFromEvent(event))
        delegate->hotkeyRecorded(*key, modifiers);
}

void HotkeyRecorderNSView::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    if (!recording || !delegate)
        return;
    // What is let go from now on is not heard here.
    delegate->modifiersChanged({});
    // After a click elsewhere no key comes any more; another window gives the keys back.
    if (event->reason() == Qt::MouseFocusReason)
        delegate->recordingCancelled();
}

// HotkeyRecorderView

HotkeyRecorderView::HotkeyRecorderView(Callbacks callbacks, QWidget* parent)
    : QWidget(parent), call(std::move(callbacks)), keyView(new HotkeyRecorderNSView(this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    keyView->setDelegate(this);
}

HotkeyRecorderView::~HotkeyRecorderView()
{
    keyView->setDelegate(nullptr);
}

void HotkeyRecorderView::setRecording(bool isRecording)
{
    keyView->setRecording(isRecording);
    if (isRecording)
        keyView->setFocus(Qt::OtherFocusReason);
    else if (keyView->hasFocus())
        keyView->clearFocus();
}

void HotkeyRecorderView::resizeEvent(QResizeEvent*)
{
    keyView->setGeometry(rect());
}

void HotkeyRecorderView::hotkeyRecorded(const QString& key, ModifierFlags modifiers)
{
    call.onHotkeyRecorded(key, modifiers);
}

void HotkeyRecorderView::recordingCancelled()
{
    call.onRecordingCancelled();
}

void HotkeyRecorderView::modifiersChanged(ModifierFlags modifiers)
{
    if (call.onModifiersChanged)
        call.onModifiersChanged(modifiers);
}

} // namespace vellumry
