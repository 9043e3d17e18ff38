#include "palette/FuzzySearchService.h"

#include "core/Text.h"
#include "palette/SearchEncoding.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace vellumry {

namespace {

/// Puts together the terms of a query from its UTF-16 units.
class KeywordSplitter {
public:
    /// `isOnItsOwn` tells of a quote or a blank whether it is a user-perceived character by itself.
    /// One that is not is text as any other.
    void take(QChar unit, bool isOnItsOwn)
    {
        if (unit == u'"' && isOnItsOwn) {
            // An opening quote does not flush: what stands before it becomes part of the term.
            if (inQuotes)
                flush();
            inQuotes = !inQuotes;
        } else if (unit == u' ' && isOnItsOwn && !inQuotes) {
            flush();
        } else {
            buffer += unit;
        }
    }

    [[nodiscard]] QStringList finish()
    {
        flush();
        return keywords;
    }

private:
    void flush()
    {
        const QStringView keyword = trimmedHorizontally(buffer);
        if (!keyword.isEmpty())
            keywords.append(keyword.toString());
        buffer.clear();
    }

    QStringList keywords;
    QString buffer;
    bool inQuotes = false;
};

bool isPair(QStringView units)
{
    return units[0].isHighSurrogate() && units[1].isLowSurrogate();
}

QStringView firstCodePoint(QStringView text)
{
    return text.first(
        text.size() >= 2 && isPair(text.first(2)) ? 2 : std::min<qsizetype>(text.size(), 1));
}

QStringView lastCodePoint(QStringView text)
{
    return text.last(
        text.size() >= 2 && isPair(text.last(2)) ? 2 : std::min<qsizetype>(text.size(), 1));
}

/// Whether one user-perceived character ends and another begins between two code points.
bool isBoundary(QStringView before, QStringView after)
{
    // Within words of some scripts the finder tells syllables, to which a mark on a quote or a
    // blank does not belong. Behind a Latin letter, and without the rest of the word, it does not.
    QString text(u'a');
    text += before;
    text += after;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    characters.setPosition(1 + before.size());
    return characters.isAtBoundary();
}

/// Whether the unit, a quote or a blank, is a user-perceived character by itself. With a combining
/// mark it is not.
bool standsOnItsOwn(QStringView text, qsizetype at)
{
    constexpr char16_t firstMark = 0x300;
    const auto isPlain = [](QStringView neighbour) {
        return neighbour.isEmpty() || neighbour[0] < firstMark;
    };
    const QStringView unit = text.sliced(at, 1);
    const QStringView before = lastCodePoint(text.first(at));
    const QStringView after = firstCodePoint(text.sliced(at + 1));
    return (isPlain(before) || isBoundary(before, unit)) &&
           (isPlain(after) || isBoundary(unit, after));
}

} // namespace

FuzzySearchService::FuzzySearchService(ByteScanner::Instructions instructions) : index(instructions)
{
}

void FuzzySearchService::prepare(const QList<Snippet>& snippets) const
{
    index.prepare(snippets);
}

QList<Snippet> FuzzySearchService::search(const QString& query,
                                          const QList<Snippet>& snippets) const
{
    if (query.isEmpty())
        return updateOrder.sorted(snippets);
    QString lowerCasedQuery = lowerCased(query);
    // The filter takes effect as soon as its ">" is typed.
    if (lowerCasedQuery.endsWith(u" >"))
        lowerCasedQuery += u' ';
    return lowerCasedQuery.contains(separator) ? searchWithSeparator(lowerCasedQuery, snippets)
                                               : searchDefault(lowerCasedQuery, snippets);
}

QList<Snippet> FuzzySearchService::searchWithSeparator(const QString& query,
                                                       const QList<Snippet>& snippets) const
{
    // Separators may not overlap, so the first one from the left is where the query is split.
    const qsizetype at = query.indexOf(separator);
    if (at < 0)
        return searchDefault(query, snippets);
    const QStringView whole(query);
    return index.inCollection(splitKeywords(whole.first(at)),
                              splitKeywords(whole.sliced(at + separator.size())), snippets);
}

QList<Snippet> FuzzySearchService::searchDefault(const QString& query,
                                                 const QList<Snippet>& snippets) const
{
    const QStringList keywords = splitKeywords(query);
    return keywords.isEmpty() ? updateOrder.sorted(snippets)
                              : index.holdingAnywhere(keywords, snippets);
}

QStringList FuzzySearchService::splitKeywords(QStringView query)
{
    KeywordSplitter splitter;
    for (qsizetype i = 0; i < query.size(); ++i) {
        const bool mayEndTerm = query[i] == u'"' || query[i] == u' ';
        splitter.take(query[i], mayEndTerm && standsOnItsOwn(query, i));
    }
    return splitter.finish();
}

} // namespace vellumry
