#pragma once

#include "platform/LoginItem.h"

namespace vellumry {

class DesktopEntry;
class FileSystem;

/// Launch at login by an entry in the user's autostart folder, see the Desktop Application
/// Autostart Specification. The entry may have been made or changed by others: everything in it
/// that has no part in the launch stays. Switched off it stays too, hidden.
class XdgAutostartLoginItem final : public LoginItem {
public:
    /// `files` outlives this object. `folder` need not exist; `programPath` is what the desktop is
    /// to start.
    XdgAutostartLoginItem(FileSystem& files, const QString& folder, const QString& programPath);

    [[nodiscard]] bool isEnabled() const override;
    void registerItem() override;
    void unregisterItem() override;

    /// The autostart folder of the running user.
    [[nodiscard]] static QString userFolder();

private:
    [[nodiscard]] DesktopEntry readEntry() const;
    void writeEntry(const DesktopEntry& entry);

    FileSystem& files;
    const QString folder;
    const QString path;
    const QString program;
};

} // namespace vellumry
