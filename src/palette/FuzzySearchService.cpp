#include "palette/FuzzySearchService.h"

#include "core/CharacterBreaks.h"
#include "core/Text.h"
#include "palette/SearchEncoding.h"

#include <algorithm>

namespace vellumry {

namespace {

/// Puts together the terms of a query from its user-perceived characters. A quote or a blank with a
/// combining mark is a character of its own, and neither a quote nor a blank.
class KeywordSplitter {
public:
    void take(QStringView character)
    {
        if (character == u"\"") {
            // An opening quote does not flush: what stands before it becomes part of the term.
            if (inQuotes)
                flush();
            inQuotes = !inQuotes;
        } else if (character == u" " && !inQuotes) {
            flush();
        } else {
            buffer += character;
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
    for (qsizetype begin = 0, end = 0; begin < query.size(); begin = end) {
        end = endOfCharacter(query, begin);
        splitter.take(query.sliced(begin, end - begin));
    }
    return splitter.finish();
}

} // namespace vellumry
