#include "library/DraftedLibrary.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace vellumry {

const QList<Snippet>& DraftedLibrary::effective() const
{
    if (edits.isEmpty())
        return stored;
    if (overlaid)
        return *overlaid;
    overlaid = stored;
    if (hasUniqueIds()) {
        for (const Snippet& draft : edits) {
            if (const qsizetype position = indexOf(draft.id()); position >= 0)
                (*overlaid)[position] = draft;
        }
    } else {
        for (Snippet& snippet : *overlaid)
            snippet = edits.value(snippet.id(), snippet);
    }
    return *overlaid;
}

QList<Snippet> DraftedLibrary::drafted() const
{
    QList<Snippet> result;
    if (!hasUniqueIds()) {
        for (const Snippet& snippet : effective()) {
            if (edits.contains(snippet.id()))
                result.append(snippet);
        }
        return result;
    }
    std::vector<qsizetype> places;
    for (const Snippet& draft : edits) {
        if (const qsizetype position = indexOf(draft.id()); position >= 0)
            places.push_back(position);
    }
    std::sort(places.begin(), places.end());
    for (const qsizetype position : places)
        result.append(effectiveAt(position));
    return result;
}

std::optional<Snippet> DraftedLibrary::effective(const QString& id) const
{
    const qsizetype position = indexOf(id);
    if (position < 0)
        return std::nullopt;
    return effectiveAt(position);
}

const Snippet& DraftedLibrary::effectiveAt(qsizetype position) const
{
    const Snippet& snippet = stored[position];
    const auto draft = edits.constFind(snippet.id());
    return draft == edits.cend() ? snippet : *draft;
}

const DraftedLibrary::Counts& DraftedLibrary::counts() const
{
    if (countOf)
        return *countOf;
    countOf.emplace();
    // Snippets that were read from one file share the memory of their collection's name.
    const QString* name = nullptr;
    qsizetype count = 0;
    const auto add = [&] {
        if (count > 0)
            (*countOf)[*name] += std::exchange(count, 0);
    };
    for (const Snippet& snippet : effective()) {
        const QString& collection = snippet.collection();
        if (!name || name->constData() != collection.constData() ||
            name->size() != collection.size()) {
            add();
            name = &collection;
        }
        ++count;
    }
    add();
    return *countOf;
}

bool DraftedLibrary::setSnippets(const QList<Snippet>& snippets)
{
    const QList<Snippet> before = std::exchange(stored, snippets);
    const bool isIndexed =
        hasUniqueIds() && std::equal(stored.cbegin(), stored.cend(), before.cbegin(), before.cend(),
                                     [](const Snippet& a, const Snippet& b) {
                                         return a.sharesDataWith(b) || a.id() == b.id();
                                     });
    if (!isIndexed)
        index();
    countOf.reset();
    note();
    return stored != before;
}

void DraftedLibrary::index()
{
    positions.clear();
    gaps.clear();
    positions.reserve(stored.size());
    for (qsizetype i = stored.size() - 1; i >= 0; --i)
        positions.insert(stored.at(i).id(), i);
}

qsizetype DraftedLibrary::indexOf(const QString& id) const
{
    const auto place = positions.constFind(id);
    if (place == positions.cend())
        return -1;
    return *place - gapsBefore(*place);
}

/// Closes all gaps once there are many.
void DraftedLibrary::leaveGap(qsizetype place)
{
    constexpr size_t many = 256;
    gaps.insert(gaps.begin() + gapsBefore(place), place);
    if (gaps.size() < many)
        return;
    for (qsizetype& other : positions)
        other -= gapsBefore(other);
    gaps.clear();
}

qsizetype DraftedLibrary::gapsBefore(qsizetype place) const
{
    return std::lower_bound(gaps.begin(), gaps.end(), place) - gaps.begin();
}

bool DraftedLibrary::replace(qsizetype position, const Snippet& snippet)
{
    if (stored.at(position) == snippet)
        return false;
    const Snippet before = effectiveAt(position);
    stored[position] = snippet;
    recount(before, effectiveAt(position));
    note();
    return true;
}

void DraftedLibrary::append(const Snippet& snippet)
{
    if (!positions.contains(snippet.id()))
        positions.insert(snippet.id(), stored.size() + std::ssize(gaps));
    stored.append(snippet);
    if (countOf)
        ++(*countOf)[effectiveAt(stored.size() - 1).collection()];
    note();
}

bool DraftedLibrary::remove(const QString& id)
{
    const qsizetype position = indexOf(id);
    if (position < 0)
        return false;
    if (hasUniqueIds()) {
        uncount(effectiveAt(position).collection());
        stored.removeAt(position);
        leaveGap(positions.take(id));
    } else {
        stored.removeIf([&](const Snippet& snippet) { return snippet.id() == id; });
        index();
        countOf.reset();
    }
    note();
    return true;
}

bool DraftedLibrary::setDraft(const Snippet& draft)
{
    const auto known = edits.constFind(draft.id());
    if (known != edits.cend() && *known == draft)
        return false;
    const std::optional<Snippet> before = effective(draft.id());
    edits.insert(draft.id(), draft);
    if (before)
        recount(*before, draft);
    note();
    return true;
}

bool DraftedLibrary::removeDraft(const QString& id)
{
    const qsizetype position = indexOf(id);
    const std::optional<Snippet> before = effective(id);
    if (edits.remove(id) == 0)
        return false;
    if (before)
        recount(*before, stored.at(position));
    note();
    return true;
}

bool DraftedLibrary::clearDrafts()
{
    if (edits.isEmpty())
        return false;
    edits.clear();
    countOf.reset();
    note();
    return true;
}

void DraftedLibrary::recount(const Snippet& before, const Snippet& now)
{
    if (!hasUniqueIds())
        countOf.reset(); // there are more of them than the one
    if (!countOf || before.collection() == now.collection())
        return;
    ++(*countOf)[now.collection()];
    uncount(before.collection());
}

void DraftedLibrary::uncount(const QString& collection)
{
    if (!countOf)
        return;
    if (const auto count = countOf->find(collection); --*count == 0)
        countOf->erase(count);
}

void DraftedLibrary::note()
{
    ++changes;
    overlaid.reset();
}

} // namespace vellumry
