#include "views/common/KeyboardText.h"

namespace vellumry {

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

} // namespace vellumry
