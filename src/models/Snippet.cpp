#include "models/Snippet.h"

#include "core/Text.h"

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int longestSubtitle = 200;

/// Breaks become blanks before characters are counted, so a long text of two lines keeps its blank.
QString normalizedSubtitle(QString text)
{
    if (text.contains(u'\n') || text.contains(u'\r')) {
        text.replace(QLatin1StringView("\r\n"), QLatin1StringView(" "));
        text.replace(u'\n', u' ');
        text.replace(u'\r', u' ');
    }
    return prefixOfCharacters(text, longestSubtitle);
}

size_t hashOf(const std::optional<Date>& date, size_t seed)
{
    return date ? ::qHash(date->time_since_epoch().count(), seed) : seed;
}

} // namespace

Snippet::Snippet() : d(new Data) {}

Snippet::Snippet(SnippetFields given) : d(new Data)
{
    d->fields = std::move(given);
    d->fields.subtitle = normalizedSubtitle(std::move(d->fields.subtitle));
}

void Snippet::setSubtitle(const QString& value)
{
    d->fields.subtitle = normalizedSubtitle(value);
}

size_t qHash(const Snippet& snippet, size_t seed)
{
    const SnippetFields& f = snippet.fields();
    const size_t variables = qHashRangeCommutative(f.variables.constKeyValueBegin(),
                                                   f.variables.constKeyValueEnd(), seed);
    return qHashMulti(seed, f.id, f.title, f.subtitle, f.collection, f.content, f.keywords,
                      f.createdAt.time_since_epoch().count(),
                      f.updatedAt.time_since_epoch().count(), f.usageCount,
                      hashOf(f.lastUsedAt, seed), f.displayOrder.value_or(-1), variables);
}

void prefetchFields(const QList<Snippet>& snippets, qsizetype position)
{
    constexpr size_t cacheLine = 64;
    constexpr qsizetype recordAhead = 8;
    constexpr qsizetype textsAhead = 4;
    if (position + recordAhead < snippets.size()) {
        const SnippetFields& fields = snippets[position + recordAhead].fields();
        const auto* const begin = reinterpret_cast<const char*>(&fields);
        for (size_t offset = 0; offset < sizeof fields; offset += cacheLine)
            __builtin_prefetch(begin + offset);
    }
    if (position + textsAhead < snippets.size()) {
        const SnippetFields& fields = snippets[position + textsAhead].fields();
        __builtin_prefetch(fields.id.constData());
        __builtin_prefetch(fields.title.constData());
        __builtin_prefetch(fields.subtitle.constData());
        __builtin_prefetch(fields.keywords.constData());
        // The rest of a long text is read ahead by the processor itself.
        constexpr qsizetype unitsPerLine = cacheLine / sizeof(QChar);
        const qsizetype units = std::min(fields.content.size(), 16 * unitsPerLine);
        for (qsizetype unit = 0; unit < units; unit += unitsPerLine)
            __builtin_prefetch(fields.content.constData() + unit);
    }
}

void prefetchId(const QList<Snippet>& snippets, qsizetype position)
{
    constexpr qsizetype recordAhead = 32;
    constexpr qsizetype textAhead = 16;
    if (position + recordAhead < snippets.size())
        __builtin_prefetch(&snippets[position + recordAhead].id());
    if (position + textAhead < snippets.size())
        __builtin_prefetch(snippets[position + textAhead].id().constData());
}

} // namespace vellumry
