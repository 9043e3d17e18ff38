#include "views/common/KeyboardText.h"

#include <array>
#include <utility>

namespace vellumry {

namespace {

struct CapName {
    QStringView symbol;
    QStringView name;
};

// In the order in which they are shown.
constexpr std::array<CapName, 4> modifierCaps{
    {{u"⌘", u"Ctrl"}, {u"⌥", u"Alt"}, {u"⇧", u"Shift"}, {u"⌃", u"Super"}}};

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
    using hotkey::ModifierFlags;
    QStringList keys;
    if (config.modifiers.contains(ModifierFlags::command))
        keys.append(QStringLiteral("Ctrl"));
    if (config.modifiers.contains(ModifierFlags::option))
        keys.append(QStringLiteral("Alt"));
    if (config.modifiers.contains(ModifierFlags::shift))
        keys.append(QStringLiteral("Shift"));
    if (config.modifiers.contains(ModifierFlags::control))
        keys.append(QStringLiteral("Super"));
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
    for (const auto& [modifier, name] :
         {std::pair(Qt::ControlModifier, u"Ctrl"), std::pair(Qt::AltModifier, u"Alt"),
          std::pair(Qt::ShiftModifier, u"Shift"), std::pair(Qt::MetaModifier, u"Super")}) {
        if (keys.keyboardModifiers().testFlag(modifier))
            names.append(QString::fromUtf16(name));
    }
    names.append(QKeySequence(keys.key()).toString(QKeySequence::NativeText));
    return names.join(u'+');
}

QStringList keyboardCaps(const QStringList& symbols)
{
    QStringList modifiers;
    QStringList others = symbols;
    for (const CapName& modifier : modifierCaps) {
        if (others.removeAll(modifier.symbol.toString()) > 0)
            modifiers.append(modifier.name.toString());
    }
    return modifiers + others;
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
