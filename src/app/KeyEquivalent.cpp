#include "app/KeyEquivalent.h"

namespace vellumry {

namespace {

/// The keys whose names here are not those that menus know them by.
QString menuName(const QString& key)
{
    if (key == QLatin1String("delete"))
        return QStringLiteral("backspace");
    return key;
}

Qt::KeyboardModifiers menuModifiers(hotkey::ModifierFlags flags)
{
    using hotkey::ModifierFlags;
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, flags.contains(ModifierFlags::command));
    modifiers.setFlag(Qt::AltModifier, flags.contains(ModifierFlags::option));
    modifiers.setFlag(Qt::ShiftModifier, flags.contains(ModifierFlags::shift));
    modifiers.setFlag(Qt::MetaModifier, flags.contains(ModifierFlags::control));
    return modifiers;
}

} // namespace

QKeySequence keyEquivalent(const HotkeyConfig& config)
{
    return QKeyCombination(menuModifiers(config.modifiers), config.keyEquivalent());
}

QKeySequence shownHotKey(const HotkeyConfig& config)
{
    const QKeySequence key(menuName(config.key.toLower()), QKeySequence::PortableText);
    if (key.isEmpty())
        return {};
    return QKeyCombination(menuModifiers(config.modifiers), key[0].key());
}

} // namespace vellumry
