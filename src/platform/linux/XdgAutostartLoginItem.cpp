#include "platform/linux/XdgAutostartLoginItem.h"

#include "platform/FileSystem.h"
#include "platform/linux/DesktopEntry.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <array>
#include <utility>

namespace vellumry {

namespace {

constexpr char hiddenKey[] = "Hidden";
constexpr char gnomeEnabledKey[] = "X-GNOME-Autostart-enabled";
constexpr char execKey[] = "Exec";
/// Where this file is missing, desktops pass the entry by: a program that has been removed is not
/// started in vain at each login.
constexpr char tryExecKey[] = "TryExec";

/// What an entry must have, or people see of it, unless it says otherwise already.
constexpr std::array<std::pair<const char*, const char*>, 5> defaults{{
    {"Type", "Application"},
    {"Name", "Vellumry"},
    {"Comment", "Snippets at the press of a key"},
    {"Icon", "vellumry"},
    {"Terminal", "false"},
}};

} // namespace

XdgAutostartLoginItem::XdgAutostartLoginItem(FileSystem& fileSystem, const QString& folderPath,
                                             const QString& programPath)
    : files(fileSystem), folder(folderPath), path(folderPath + QStringLiteral("/vellumry.desktop")),
      program(programPath)
{
}

bool XdgAutostartLoginItem::isEnabled() const
{
    try {
        const auto entry = DesktopEntry::parse(files.read(path).bytes.view());
        return entry && !entry->value(execKey).value_or(QByteArray()).isEmpty() &&
               entry->value(hiddenKey) != "true" && entry->value(gnomeEnabledKey) != "false";
    } catch (const FileError&) {
        return false;
    }
}

void XdgAutostartLoginItem::registerItem()
{
    if (program.contains(u'='))
        throw LoginItemError(QStringLiteral("The path of the program, %1, has a \"=\" in it, which "
                                            "an autostart entry cannot name")
                                 .arg(program));
    try {
        files.createFolders(folder);
        DesktopEntry entry = files.exists(path) ? readEntry() : DesktopEntry();
        for (const auto& [key, value] : defaults) {
            if (!entry.value(key))
                entry.set(key, value);
        }
        entry.set(tryExecKey, DesktopEntry::file(program));
        entry.set(execKey, DesktopEntry::command(program));
        entry.remove(hiddenKey);
        entry.remove(gnomeEnabledKey);
        writeEntry(entry);
    } catch (const FileError& error) {
        throw LoginItemError(error.description());
    }
}

void XdgAutostartLoginItem::unregisterItem()
{
    try {
        if (!files.exists(path))
            return;
        DesktopEntry entry = readEntry();
        entry.set(hiddenKey, "true");
        writeEntry(entry);
    } catch (const FileError& error) {
        throw LoginItemError(error.description());
    }
}

DesktopEntry XdgAutostartLoginItem::readEntry() const
{
    auto entry = DesktopEntry::parse(files.read(path).bytes.view());
    if (!entry)
        throw LoginItemError(QStringLiteral("%1 is no desktop entry; it stays as it is").arg(path));
    return *std::move(entry);
}

void XdgAutostartLoginItem::writeEntry(const DesktopEntry& entry)
{
    // A link mostly leads to the entry of the menus, which is not ours to hide: it becomes a file.
    if (QFileInfo(path).isSymLink() && files.exists(path))
        files.copy(path, path);
    files.write(path, entry.bytes());
}

QString XdgAutostartLoginItem::userFolder()
{
    QString configuration = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    // A relative XDG_CONFIG_HOME does not count.
    if (!QDir::isAbsolutePath(configuration))
        configuration = QDir::homePath() + QStringLiteral("/.config");
    return configuration + QStringLiteral("/autostart");
}

} // namespace vellumry
