#include "library/FrozenOrder.h"

#include "library/DraftedLibrary.h"
#include "library/MoveOffsets.h"

#include <QHash>

#include <algorithm>
#include <iterator>

namespace vellumry {

namespace {

/// Where the list holds this very handle; -1 if nowhere.
qsizetype indexOfHandle(const QList<Snippet>& list, const Snippet& handle)
{
    const auto found = std::find_if(list.cbegin(), list.cend(), [&](const Snippet& snippet) {
        return snippet.sharesDataWith(handle);
    });
    return found == list.cend() ? -1 : found - list.cbegin();
}

} // namespace

QStringList FrozenOrder::ids() const
{
    QStringList result;
    result.reserve(rows.size());
    for (const Snippet& row : rows)
        result.append(row.id());
    return result;
}

bool FrozenOrder::isInCollection(const Snippet& snippet) const
{
    return !collection || snippet.collection() == *collection;
}

const QList<Snippet>& FrozenOrder::shown() const
{
    if (!hidesSome)
        return rows;
    if (!notHidden) {
        notHidden.emplace();
        std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(*notHidden),
                     [this](const Snippet& row) { return isInCollection(row); });
    }
    return *notHidden;
}

qsizetype FrozenOrder::shownRow(const QString& id, const DraftedLibrary& library) const
{
    const QList<Snippet>& list = shown();
    if (library.hasUniqueIds()) {
        const std::optional<Snippet> snippet = library.effective(id);
        return snippet ? indexOfHandle(list, *snippet) : -1;
    }
    const auto found = std::find_if(list.cbegin(), list.cend(),
                                    [&](const Snippet& snippet) { return snippet.id() == id; });
    return found == list.cend() ? -1 : found - list.cbegin();
}

void FrozenOrder::findHidden()
{
    notHidden.reset();
    hidesSome = collection && !std::all_of(rows.cbegin(), rows.cend(), [this](const Snippet& row) {
                    return isInCollection(row);
                });
}

void FrozenOrder::refresh(const QList<Snippet>& order,
                          const std::optional<QString>& selectedCollection,
                          const DraftedLibrary& library)
{
    const QList<Snippet> before = shown();
    rows = order;
    collection = selectedCollection;
    if (!library.hasUniqueIds())
        fill(library);
    findHidden();
    if (shown() != before)
        ++changes;
}

void FrozenOrder::update(const DraftedLibrary& library)
{
    const QList<Snippet> before = shown();
    fill(library);
    findHidden();
    if (shown() != before)
        ++changes;
}

/// Puts what is shown for its id into each row: of snippets with the same id it is the last one.
void FrozenOrder::fill(const DraftedLibrary& library)
{
    QHash<QString, Snippet> lastOfId;
    for (const Snippet& snippet : library.effective())
        lastOfId.insert(snippet.id(), snippet);
    for (Snippet& row : rows)
        row = lastOfId.value(row.id(), row);
}

void FrozenOrder::update(const Snippet& before, const Snippet& now)
{
    if (const qsizetype row = indexOfHandle(rows, before); row >= 0)
        update(row, now);
}

void FrozenOrder::update(qsizetype row, const Snippet& now)
{
    const Snippet before = rows.at(row);
    rows[row] = now;
    const bool wasShown = isInCollection(before);
    const bool isShown = isInCollection(now);
    if (wasShown != isShown)
        findHidden();
    else if (isShown && notHidden)
        (*notHidden)[indexOfHandle(*notHidden, before)] = now;
    if ((wasShown || isShown) && before != now)
        ++changes;
}

void FrozenOrder::append(const Snippet& snippet)
{
    rows.append(snippet);
    if (!isInCollection(snippet)) {
        hidesSome = true;
        return;
    }
    if (notHidden)
        notHidden->append(snippet);
    ++changes;
}

void FrozenOrder::remove(const Snippet& snippet)
{
    const qsizetype row = indexOfHandle(rows, snippet);
    if (row < 0)
        return;
    rows.removeAt(row);
    if (!isInCollection(snippet))
        return;
    if (notHidden)
        notHidden->removeAt(indexOfHandle(*notHidden, snippet));
    ++changes;
}

void FrozenOrder::remove(const QSet<QString>& ids)
{
    const qsizetype before = shown().size();
    rows.removeIf([&](const Snippet& row) { return ids.contains(row.id()); });
    notHidden.reset();
    if (shown().size() != before)
        ++changes;
}

void FrozenOrder::move(const std::set<qsizetype>& offsets, qsizetype target)
{
    const QList<Snippet> before = shown();
    moveOffsets(rows, offsets, target);
    notHidden.reset();
    if (shown() != before)
        ++changes;
}

} // namespace vellumry
