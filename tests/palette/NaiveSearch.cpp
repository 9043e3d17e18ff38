#include "palette/NaiveSearch.h"

#include "core/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <vector>

namespace vellumry::test {

namespace {

struct ScoredSnippet {
    Snippet snippet;
    qint64 score;
};

QList<Snippet> newestFirst(QList<Snippet> snippets)
{
    std::stable_sort(snippets.begin(), snippets.end(), [](const Snippet& a, const Snippet& b) {
        return a.updatedAt() > b.updatedAt();
    });
    return snippets;
}

QList<Snippet> bestFirst(std::vector<ScoredSnippet> scored)
{
    std::stable_sort(
        scored.begin(), scored.end(),
        [](const ScoredSnippet& a, const ScoredSnippet& b) { return a.score > b.score; });
    QList<Snippet> result;
    for (const ScoredSnippet& pair : scored)
        result.append(pair.snippet);
    return result;
}

QString searchableText(const Snippet& snippet)
{
    const QStringList fields{snippet.title(), snippet.subtitle(), snippet.content(),
                             snippet.collection(), snippet.keywords().join(u' ')};
    return naiveLowerCased(fields.join(u' '));
}

qint64 relevanceScore(const Snippet& snippet, const QStringList& keywords)
{
    const QString title = naiveLowerCased(snippet.title());
    const QString subtitle = naiveLowerCased(snippet.subtitle());
    const QString content = naiveLowerCased(snippet.content());
    const QString collection = naiveLowerCased(snippet.collection());
    const QString own = naiveLowerCased(snippet.keywords().join(u' '));
    qint64 score = 0;
    for (const QString& keyword : keywords) {
        if (title == keyword)
            score += 200;
        else if (title.startsWith(keyword))
            score += 100;
        else if (title.contains(keyword))
            score += 50;
        if (subtitle.contains(keyword))
            score += 35;
        if (own.contains(keyword))
            score += 30;
        if (content.contains(keyword))
            score += 10;
        if (collection.contains(keyword))
            score += 5;
    }
    if (title.startsWith(keywords.join(u' ')))
        score += 150;
    return score;
}

QList<Snippet> searchDefault(const QString& query, const QList<Snippet>& snippets)
{
    const QStringList keywords = naiveSplitKeywords(query);
    if (keywords.isEmpty())
        return newestFirst(snippets);
    std::vector<ScoredSnippet> scored;
    for (const Snippet& snippet : snippets) {
        const QString text = searchableText(snippet);
        if (std::all_of(keywords.begin(), keywords.end(),
                        [&](const QString& keyword) { return text.contains(keyword); }))
            scored.push_back({snippet, relevanceScore(snippet, keywords)});
    }
    return bestFirst(std::move(scored));
}

QList<Snippet> searchWithSeparator(const QString& query, const QList<Snippet>& snippets)
{
    const QStringList parts = query.split(QStringLiteral(" > "));
    if (parts.size() < 2)
        return searchDefault(query, snippets);
    const QStringList collectionKeywords = naiveSplitKeywords(parts.first());
    const QStringList contentKeywords =
        naiveSplitKeywords(parts.mid(1).join(QStringLiteral(" > ")));
    std::vector<ScoredSnippet> scored;
    for (const Snippet& snippet : snippets) {
        const QString collection = naiveLowerCased(snippet.collection());
        const QString title = naiveLowerCased(snippet.title());
        const QString subtitle = naiveLowerCased(snippet.subtitle());
        const QString content = naiveLowerCased(snippet.content());
        const QString own = naiveLowerCased(snippet.keywords().join(u' '));
        const bool isInCollection =
            std::all_of(collectionKeywords.begin(), collectionKeywords.end(),
                        [&](const QString& keyword) { return collection.contains(keyword); });
        const bool holdsContent = std::all_of(
            contentKeywords.begin(), contentKeywords.end(), [&](const QString& keyword) {
                return title.contains(keyword) || subtitle.contains(keyword) ||
                       content.contains(keyword) || own.contains(keyword);
            });
        if (isInCollection && holdsContent)
            scored.push_back({snippet, contentKeywords.isEmpty()
                                           ? 0
                                           : relevanceScore(snippet, contentKeywords)});
    }
    return bestFirst(std::move(scored));
}

/// Whether a user-perceived character begins at a place.
bool isBoundary(const QString& text, qsizetype at)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(at);
    return finder.isAtBoundary();
}

/// The text with a plain mark in place of each mark, a plain prefix of each prefix and a letter of
/// each other character beyond U+0300. Its quotes and blanks are bounded as those of the text are,
/// but the finder has no rules of their own for the words of some scripts in it.
QString withPlainMarks(const QString& text)
{
    const QString letter(u'x');
    QString result;
    for (qsizetype i = 0; i < text.size();) {
        const bool isPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const QString character = text.mid(i, isPair ? 2 : 1);
        i += character.size();
        if (character[0] < QChar(0x300))
            result += character;
        else if (!isBoundary(letter + character, 1))
            result += QString(character.size(), QChar(0x301));
        else if (!isBoundary(letter + character + letter, 1 + character.size()))
            result += QString(character.size(), QChar(0x600));
        else
            result += QString(character.size(), u'x');
    }
    return result;
}

} // namespace

QString naiveLowerCased(const QString& text)
{
    if (text.isValidUtf16())
        return text.toLower();
    QString result;
    QString stretch;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isFirstOfPair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isFirstOfPair) {
            stretch += text[i++];
        } else if (text[i].isSurrogate()) {
            result += stretch.toLower() + text[i];
            stretch.clear();
            continue;
        }
        stretch += text[i];
    }
    return result + stretch.toLower();
}

QStringList naiveSplitKeywords(const QString& query)
{
    QStringList keywords;
    QString buffer;
    bool inQuotes = false;
    const auto flush = [&] {
        const QString keyword = trimmedHorizontally(buffer).toString();
        if (!keyword.isEmpty())
            keywords.append(keyword);
        buffer.clear();
    };
    const QString plain = withPlainMarks(query);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, plain);
    qsizetype begin = 0;
    while (finder.toNextBoundary() > 0) {
        const QString character = query.mid(begin, finder.position() - begin);
        begin = finder.position();
        if (character == QStringLiteral("\"")) {
            if (inQuotes)
                flush();
            inQuotes = !inQuotes;
        } else if (character == QStringLiteral(" ") && !inQuotes) {
            flush();
        } else {
            buffer += character;
        }
    }
    flush();
    return keywords;
}

QList<Snippet> naiveSearch(const QString& query, const QList<Snippet>& snippets)
{
    if (query.isEmpty())
        return newestFirst(snippets);
    QString lowerCased = naiveLowerCased(query);
    if (lowerCased.endsWith(QStringLiteral(" >")))
        lowerCased += u' ';
    return lowerCased.contains(QStringLiteral(" > ")) ? searchWithSeparator(lowerCased, snippets)
                                                      : searchDefault(lowerCased, snippets);
}

} // namespace vellumry::test
