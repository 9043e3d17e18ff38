#include "settings/HotkeyConflictChecker.h"

#include "hotkey/HotKeyBackend.h"
#include "settings/HotkeyService.h"

#include <QStringBuilder>
#include <QStringView>

#include <algorithm>
#include <array>
#include <span>

namespace vellumry {

namespace {

using hotkey::ModifierFlags;

struct Shortcut {
    QStringView key;
    ModifierFlags modifiers;
    QStringView name;
};

constexpr ModifierFlags command = ModifierFlags::command;
constexpr ModifierFlags control = ModifierFlags::control;
constexpr ModifierFlags commandShift = ModifierFlags::command | ModifierFlags::shift;

constexpr std::array<Shortcut, 22> systemShortcuts{{
    {u"c", command, u"Copy"},
    {u"v", command, u"Paste"},
    {u"x", command, u"Cut"},
    {u"z", command, u"Undo"},
    {u"a", command, u"Select All"},
    {u"s", command, u"Save"},
    {u"q", command, u"Quit"},
    {u"w", command, u"Close Window"},
    {u"n", command, u"New"},
    {u"o", command, u"Open"},
    {u"p", command, u"Print"},
    {u"f", command, u"Find"},
    {u"h", command, u"Hide"},
    {u"m", command, u"Minimize"},
    {u",", command, u"Preferences"},
    {u"tab", command, u"Switch App"},
    {u"space", command, u"Spotlight"},
    {u"space", control, u"Input Source"},
    {u"3", commandShift, u"Screenshot"},
    {u"4", commandShift, u"Screenshot Selection"},
    {u"5", commandShift, u"Screenshot Options"},
    {u"space", commandShift, u"Show Finder Search"},
}};

// The first two stand in the table above as well, which is asked first: a second line of defence.
constexpr std::array<Shortcut, 4> appShortcuts{{
    {u"n", command, u"New Snippet"},
    {u"s", command, u"Save"},
    {u"i", commandShift, u"Import"},
    {u"e", commandShift, u"Export"},
}};

/// Marks a registration that is only tried; no handler knows it.
constexpr hotkey::HotKeyID trialID{hotkey::fourCharacterCode("VLMY"), 9999};

std::optional<QString> conflict(std::span<const Shortcut> shortcuts, const QString& key,
                                ModifierFlags modifiers, QStringView warning)
{
    const QString name = key.toLower();
    const ModifierFlags pressed = modifiers & HotkeyService::allModifiers;
    const auto found = std::ranges::find_if(shortcuts, [&](const Shortcut& shortcut) {
        return shortcut.key == name && shortcut.modifiers == pressed;
    });
    if (found == shortcuts.end())
        return std::nullopt;
    return QString(warning % found->name);
}

} // namespace

std::optional<QString> HotkeyConflictChecker::check(const QString& key,
                                                    ModifierFlags modifiers) const
{
    if (auto warning = checkSystemShortcuts(key, modifiers))
        return warning;
    if (auto warning = checkAppShortcuts(key, modifiers))
        return warning;
    return checkLiveConflict(key, modifiers);
}

std::optional<QString> HotkeyConflictChecker::checkSystemShortcuts(const QString& key,
                                                                   ModifierFlags modifiers)
{
    return conflict(systemShortcuts, key, modifiers, u"Conflicts with system shortcut: ");
}

std::optional<QString> HotkeyConflictChecker::checkAppShortcuts(const QString& key,
                                                                ModifierFlags modifiers)
{
    return conflict(appShortcuts, key, modifiers, u"Conflicts with app shortcut: ");
}

std::optional<QString> HotkeyConflictChecker::checkLiveConflict(const QString& key,
                                                                ModifierFlags modifiers) const
{
    const auto code = carbonKeyCode(key);
    if (!code)
        return std::nullopt;
    const auto trial = backend.registerHotKey(*code, modifiers.carbonFlags(), trialID);
    if (trial.status != hotkey::hotKeyNoError || !trial.reference)
        return QStringLiteral("This shortcut is already in use by another app");
    backend.unregisterHotKey(*trial.reference);
    return std::nullopt;
}

std::optional<std::uint32_t> HotkeyConflictChecker::carbonKeyCode(const QString& key)
{
    const auto named = HotkeyService::keyFromString(key);
    return named ? std::optional(hotkey::carbonKeyCode(*named)) : std::nullopt;
}

} // namespace vellumry
