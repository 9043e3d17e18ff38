#include "platform/linux/FolderLook.h"

#include <QStringBuilder>

namespace vellumry {

FolderLook::FolderLook(const QString& lookedAt, FileSystem& fileSystem)
    : folder(lookedAt), files(fileSystem), seen(states().value_or(States()))
{
}

QStringList FolderLook::changedNames()
{
    const std::optional<States> now = states();
    if (!now)
        return {};
    QStringList changed;
    for (auto it = now->cbegin(); it != now->cend(); ++it) {
        const auto before = seen.constFind(it.key());
        if (before == seen.cend() || *before != it.value())
            changed.append(it.key());
    }
    for (auto it = seen.cbegin(); it != seen.cend(); ++it) {
        if (!now->contains(it.key()))
            changed.append(it.key());
    }
    seen = *now;
    return changed;
}

void FolderLook::accept(const QString& name)
{
    if (const auto state = stateOf(name))
        seen.insert(name, *state);
    else
        seen.remove(name);
}

std::optional<FolderLook::State> FolderLook::stateOf(const QString& name)
{
    const auto stamp = files.stamp(folder % u'/' % name);
    return stamp ? std::optional(State(stamp->size, stamp->modified)) : std::nullopt;
}

std::optional<FolderLook::States> FolderLook::states()
{
    try {
        States found;
        for (const QString& name : files.list(folder)) {
            if (const auto state = stateOf(name))
                found.insert(name, *state);
        }
        return found;
    } catch (const FileError&) {
        return std::nullopt;
    }
}

} // namespace vellumry
