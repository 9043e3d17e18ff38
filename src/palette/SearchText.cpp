#include "palette/SearchText.h"

#include "palette/SearchEncoding.h"

#include <QHash>
#include <QStringView>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace vellumry {

namespace {

constexpr unsigned char recordEnd = 0xff;

bool isSameText(const QString& a, const QString& b)
{
    // Texts are mostly shared between one state of the library and the next.
    return a.size() == b.size() && (a.constData() == b.constData() || a == b);
}

bool haveSameTexts(const Snippet& a, const Snippet& b)
{
    return a.sharesDataWith(b) ||
           (isSameText(a.title(), b.title()) && isSameText(a.subtitle(), b.subtitle()) &&
            isSameText(a.content(), b.content()) && isSameText(a.collection(), b.collection()) &&
            a.keywords() == b.keywords());
}

/// Whether b is likely to be a later state of a. Only a guess is needed: texts are compared.
bool isSameSnippet(const Snippet& a, const Snippet& b)
{
    return a.sharesDataWith(b) || isSameText(a.id(), b.id());
}

/// How many handles are compared in one go.
constexpr qsizetype handleBlock = 64;

/// Whether the lists hold the very same data from `begin` to `end`. A handle is one address, so
/// comparing their bytes does, and is several times as fast as comparing one after the other.
bool shareData(const QList<Snippet>& a, const QList<Snippet>& b, qsizetype begin, qsizetype end)
{
    static_assert(sizeof(Snippet) == sizeof(void*));
    const void* first = a.constData() + begin;
    const void* second = b.constData() + begin;
    return std::memcmp(first, second, static_cast<size_t>(end - begin) * sizeof(Snippet)) == 0;
}

/// An upper bound for the bytes of a record.
size_t mostBytes(const Snippet& snippet)
{
    qsizetype units = snippet.title().size() + snippet.subtitle().size() +
                      snippet.content().size() + snippet.collection().size() + 5;
    for (const QString& keyword : snippet.keywords())
        units += keyword.size() + 1;
    return static_cast<size_t>(units * mostBytesPerUnit);
}

size_t byteCount(const SearchText::Record& record)
{
    return record.ends.back() + size_t{1};
}

} // namespace

void SearchText::update(const QList<Snippet>& snippets)
{
    // The copy that is held keeps the list's memory from being changed or used anew, so the same
    // address means the same snippets.
    if (bytes && snippets.constData() == prepared.constData() && snippets.size() == prepared.size())
        return;

    const auto changed = bytes ? changedInPlace(snippets) : std::nullopt;
    if (changed)
        replace(snippets, *changed);
    else
        rearrange(snippets, reusableSlots(snippets));
    prepared = snippets;
    finish();
}

/// The positions of the snippets whose texts changed; nothing if snippets came, went or moved.
std::optional<std::vector<qsizetype>>
SearchText::changedInPlace(const QList<Snippet>& snippets) const
{
    if (snippets.size() != prepared.size())
        return std::nullopt;
    std::vector<qsizetype> positions;
    for (qsizetype begin = 0; begin < snippets.size(); begin += handleBlock) {
        const qsizetype end = std::min(begin + handleBlock, snippets.size());
        if (shareData(prepared, snippets, begin, end))
            continue;
        for (qsizetype i = begin; i < end; ++i) {
            if (!isSameSnippet(prepared[i], snippets[i]))
                return std::nullopt;
            if (!haveSameTexts(prepared[i], snippets[i]))
                positions.push_back(i);
        }
    }
    return positions;
}

/// For each snippet of the list the record that already holds its text, or noSlot. No record is
/// given twice.
std::vector<SearchText::Slot> SearchText::reusableSlots(const QList<Snippet>& snippets) const
{
    std::vector<Slot> reusable(static_cast<size_t>(snippets.size()), noSlot);
    const auto pair = [&](qsizetype before, qsizetype now) {
        if (haveSameTexts(prepared[before], snippets[now]))
            reusable[static_cast<size_t>(now)] = slots[static_cast<size_t>(before)];
    };

    // What stands before and behind the place of the change is paired by position, ...
    const qsizetype shorter = std::min(prepared.size(), snippets.size());
    qsizetype head = 0;
    while (head < shorter && isSameSnippet(prepared[head], snippets[head])) {
        pair(head, head);
        ++head;
    }
    qsizetype beforeEnd = prepared.size();
    qsizetype nowEnd = snippets.size();
    while (beforeEnd > head && nowEnd > head &&
           isSameSnippet(prepared[beforeEnd - 1], snippets[nowEnd - 1]))
        pair(--beforeEnd, --nowEnd);

    // ... what stands between by id.
    if (head == beforeEnd || head == nowEnd)
        return reusable;
    QHash<QStringView, qsizetype> positionOfId;
    positionOfId.reserve(beforeEnd - head);
    for (qsizetype i = head; i < beforeEnd; ++i)
        positionOfId.insert(prepared[i].id(), i);
    for (qsizetype i = head; i < nowEnd; ++i) {
        if (const auto found = positionOfId.constFind(snippets[i].id());
            found != positionOfId.cend()) {
            pair(*found, i);
            positionOfId.erase(found);
        }
    }
    return reusable;
}

void SearchText::replace(const QList<Snippet>& snippets, const std::vector<qsizetype>& positions)
{
    for (const qsizetype position : positions) {
        Slot& slot = slots[static_cast<size_t>(position)];
        inListOrder = inListOrder && slot + size_t{1} == all.size();
        blotOut(slot);
        slot = static_cast<Slot>(all.size());
        buildSearchableText(snippets[position], position);
    }
    if (isWorn())
        layOut(snippets, slots);
}

void SearchText::rearrange(const QList<Snippet>& snippets, std::vector<Slot> reusable)
{
    std::vector<bool> isReused(all.size());
    for (const Slot slot : reusable) {
        if (slot != noSlot)
            isReused[slot] = true;
    }
    for (const Slot slot : slots) {
        if (!isReused[slot])
            blotOut(slot);
    }
    if (used == 0 || isWorn()) {
        layOut(snippets, std::move(reusable));
        return;
    }
    for (qsizetype position = 0; position < snippets.size(); ++position) {
        Slot& slot = reusable[static_cast<size_t>(position)];
        if (slot != noSlot) {
            all[slot].position = static_cast<quint32>(position);
        } else {
            slot = static_cast<Slot>(all.size());
            buildSearchableText(snippets[position], position);
        }
    }
    slots = std::move(reusable);
    inListOrder = std::is_sorted(slots.begin(), slots.end());
}

/// Makes the text anew in the order of the list. What is there is copied, the rest is folded.
void SearchText::layOut(const QList<Snippet>& snippets, std::vector<Slot> reusable)
{
    const auto oldBytes = std::exchange(bytes, nullptr);
    const size_t oldLive = used - blotted;
    const std::vector<Record> oldRecords = std::exchange(all, {});
    capacity = used = blotted = 0;

    const auto count = static_cast<size_t>(snippets.size());
    reserve(oldLive + count);
    all.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const auto position = static_cast<qsizetype>(i);
        const Slot old = std::exchange(reusable[i], static_cast<Slot>(i));
        if (old == noSlot) {
            prefetchFields(snippets, position);
            buildSearchableText(snippets[position], position);
        } else {
            appendCopy(oldBytes.get(), oldRecords[old], position);
        }
    }
    slots = std::move(reusable);
    inListOrder = true;
    reserve(used); // gives back what is too much
    takeSample();
}

/// Appends the lower-cased texts of the snippet as a new record.
void SearchText::buildSearchableText(const Snippet& snippet, qsizetype position)
{
    const size_t needed = used + mostBytes(snippet);
    if (needed + ByteScanner::overrun > capacity)
        reserve(std::max(needed, capacity + capacity / 2));

    unsigned char* const start = bytes.get() + used;
    unsigned char* out = start;
    Record record{.start = used, .position = static_cast<quint32>(position)};
    const auto endField = [&](Field field, unsigned char separator) {
        record.ends[field] = static_cast<quint32>(out - start);
        *out++ = separator;
    };
    out = encodeLowerCased(snippet.title(), out);
    endField(title, ' ');
    out = encodeLowerCased(snippet.subtitle(), out);
    endField(subtitle, ' ');
    out = encodeLowerCased(snippet.content(), out);
    endField(content, ' ');
    out = encodeLowerCased(snippet.collection(), out);
    endField(collection, ' ');
    bool isFirst = true;
    for (const QString& keyword : snippet.keywords()) {
        if (!std::exchange(isFirst, false))
            *out++ = ' ';
        out = encodeLowerCased(keyword, out);
    }
    endField(keywords, recordEnd);

    used += static_cast<size_t>(out - start);
    all.push_back(record);
}

void SearchText::appendCopy(const unsigned char* text, const Record& record, qsizetype position)
{
    const size_t count = byteCount(record);
    if (used + count + ByteScanner::overrun > capacity)
        reserve(std::max(used + count, capacity + capacity / 2));
    std::memcpy(bytes.get() + used, text + record.start, count);
    all.push_back({.start = used, .ends = record.ends, .position = static_cast<quint32>(position)});
    used += count;
}

/// Takes the text away: no needle is found where there are only record ends.
void SearchText::blotOut(Slot slot)
{
    Record& record = all[slot];
    std::memset(bytes.get() + record.start, recordEnd, byteCount(record));
    blotted += byteCount(record);
    record.ends = {};
}

/// Moves the text into memory for `size` bytes and the overrun.
void SearchText::reserve(size_t size)
{
    // Memory of this size comes as pages of its own: growing it moves no bytes, and pages that were
    // never written take no room.
    capacity = size + ByteScanner::overrun;
    auto* const memory = static_cast<unsigned char*>(std::realloc(bytes.get(), capacity));
    if (!memory)
        throw std::bad_alloc();
    static_cast<void>(bytes.release());
    bytes.reset(memory);
}

void SearchText::finish()
{
    std::memset(bytes.get() + used, recordEnd, ByteScanner::overrun);
}

/// Counts the bytes of at most 1,024 stretches spread evenly.
void SearchText::takeSample()
{
    constexpr size_t stretch = 64;
    constexpr size_t mostStretches = 1024;
    sample.fill(0);
    const size_t step = std::max(stretch, used / mostStretches);
    for (size_t at = 0; at < used; at += step) {
        const size_t stretchEnd = std::min(at + stretch, used);
        for (size_t i = at; i < stretchEnd; ++i)
            ++sample[bytes[i]];
    }
}

size_t SearchText::recordAt(const unsigned char* place, size_t from) const
{
    const auto offset = static_cast<quint64>(place - begin());
    // The record is mostly near: steps of growing size find the stretch that holds it.
    size_t step = 1;
    while (from + step < all.size() && all[from + step].start <= offset) {
        from += step;
        step *= 2;
    }
    const auto first = all.begin() + static_cast<std::ptrdiff_t>(from);
    const auto last = all.begin() + static_cast<std::ptrdiff_t>(std::min(from + step, all.size()));
    const auto behind =
        std::upper_bound(first, last, offset,
                         [](quint64 value, const Record& record) { return value < record.start; });
    return static_cast<size_t>(behind - all.begin()) - 1;
}

} // namespace vellumry
