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

} // namespace

QKeySequence keyEquivalent(const HotkeyConfig& config)
{
    using hotkey::ModifierFlags;
    const QKeySequence key(menuName(config.key.toLower()), QKeySequence::PortableText);
    if (key.isEmpty())
        return {};
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ControlModifier, config.modifiers.contains(ModifierFlags::command));
    modifiers.setFlag(Qt::AltModifier, config.modifiers.contains(ModifierFlags::option));
    modifiers.setFlag(Qt::ShiftModifier, config.modifiers.contains(ModifierFlags::shift));
    modifiers.setFlag(Qt::MetaModifier, config.modifiers.contains(ModifierFlags::control));
    return QKeyCombination(modifiers, key[0].key());
}

} // namespace vellumry
