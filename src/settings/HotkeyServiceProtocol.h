#pragma once

#include "hotkey/DesktopShortcut.h"
#include "hotkey/ModifierFlags.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace vellumry {

/// The program's one global hot key. Main thread only.
class HotkeyServiceProtocol : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// From now on a press of the combination, anywhere on the system, runs `action`; it replaces
    /// what was registered before. `key` is a name as HotkeyConfig has it. A name that is no key
    /// is logged and leaves no hot key; a combination that the system refuses stays silent.
    virtual void registerGlobalHotkey(const QString& key, hotkey::ModifierFlags modifiers,
                                      std::function<void()> action) = 0;

    /// Takes the hot key off the system and forgets it and its action.
    virtual void unregisterHotkey() = 0;

    /// Takes the hot key off the system for a while, and keeps the action.
    virtual void pauseHotkey() = 0;

    /// Ends the pause: puts the hot key of the settings, whatever it is now, on the system.
    virtual void resumeHotkey() = 0;

    /// What the desktop has made of the hot key, where it is the one to decide; nothing where the
    /// combination itself is in force.
    [[nodiscard]] virtual std::optional<hotkey::DesktopShortcut> desktopShortcut() const
    {
        return std::nullopt;
    }

Q_SIGNALS:
    void desktopShortcutChanged();
};

} // namespace vellumry
