#include "views/common/KeyboardText.h"

#include <array>

namespace vellumry {

namespace {

using hotkey::ModifierFlags;

/// A modifier as hot keys, their symbols and the toolkit know it, and its name on the keyboard.
struct Modifier {
    ModifierFlags flag;
    QStringView symbol;
    Qt::KeyboardModifier key;
    QStringView name;
};

// In the order in which they are shown.
constexpr std::array<Modifier, 4> modifiers{
    {{ModifierFlags::command, u"⌘", Qt::ControlModifier, u"Ctrl"},
     {ModifierFlags::option, u"⌥", Qt::AltModifier, u"Alt"},
     {ModifierFlags::shift, u"⇧", Qt::ShiftModifier, u"Shift"},
     {ModifierFlags::control, u"⌃", Qt::MetaModifier, u"Super"}}};

struct CapName {
    QStringView symbol;
    QStringView name;
};

constexpr std::array<CapName, 9> spokenCaps{{{u"␣", u"Space"},
                                             {u"↩", u"Return"},
                                             {u"⇥", u"Tab"},
                                             {u"⌫", u"Delete"},
                                             {u"⎋", u"Escape"},
                                             {u"↑", u"Up"},
                                             {u"↓", u"Down"},
                                             {u"←", u"Left"},
                                             {u"→", u"Right"}}};

} // namespace

QStringList keyboardKeys(const HotkeyConfig& config)
{
    QStringList keys;
    for (const Modifier& modifier : modifiers) {
        if (config.modifiers.contains(modifier.flag))
            keys.append(modifier.name.toString());
    }
    keys.append(config.key.size() == 1 ? config.key.toUpper()
                                       : config.key.left(1).toUpper() + config.key.mid(1));
    return keys;
}

QString keyboardText(const HotkeyConfig& config)
{
    return keyboardKeys(config).join(u'+');
}

QString shortcutText(const QKeySequence& shortcut)
{
    if (shortcut.isEmpty())
        return {};
    const QKeyCombination keys = shortcut[0];
    QStringList names;
    for (const Modifier& modifier : modifiers) {
        if (keys.keyboardModifiers().testFlag(modifier.key))
            names.append(modifier.name.toString());
    }
    names.append(QKeySequence(keys.key()).toString(QKeySequence::NativeText));
    return names.join(u'+');
}

QStringList keyboardCaps(const QStringList& symbols)
{
    QStringList caps;
    QStringList others = symbols;
    for (const Modifier& modifier : modifiers) {
        if (others.removeAll(modifier.symbol.toString()) > 0)
            caps.append(modifier.name.toString());
    }
    return caps + others;
}

QString spokenCap(const QString& cap)
{
    for (const CapName& each : spokenCaps) {
        if (each.symbol == cap)
            return each.name.toString();
    }
    return cap;
}

} // namespace vellumry
