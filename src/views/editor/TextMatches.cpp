#include "views/editor/TextMatches.h"

#include <algorithm>

namespace vellumry {

std::vector<qsizetype> TextMatches::matchesIn(const QString& text, qsizetype begin,
                                              qsizetype end) const
{
    std::vector<qsizetype> positions;
    if (wanted.isEmpty())
        return positions;
    const QStringView part = QStringView(text).sliced(begin, end - begin);
    for (qsizetype at = part.indexOf(wanted, 0, Qt::CaseInsensitive); at >= 0;
         at = part.indexOf(wanted, at + wanted.size(), Qt::CaseInsensitive))
        positions.push_back(begin + at);
    return positions;
}

void TextMatches::search(const QString& text, const QString& searchTerm)
{
    wanted = searchTerm;
    found = matchesIn(text, 0, text.size());
}

void TextMatches::follow(const TextEdit& edit)
{
    if (wanted.isEmpty())
        return;
    const TextEdit::Lines lines = edit.lines();
    const auto first = std::lower_bound(found.begin(), found.end(), lines.begin);
    const auto last = std::lower_bound(first, found.end(), lines.endBefore);
    std::for_each(last, found.end(),
                  [&](qsizetype& position) { position += lines.endAfter - lines.endBefore; });
    const std::vector<qsizetype> anew = matchesIn(edit.after, lines.begin, lines.endAfter);
    found.insert(found.erase(first, last), anew.begin(), anew.end());
}

} // namespace vellumry
