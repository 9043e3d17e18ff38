#include "core/Text.h"

#include <QTextBoundaryFinder>

namespace vellumry {

namespace {

template <typename Predicate>
QStringView trimmed(QStringView text, Predicate isSpace)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isSpace(text[begin]))
        ++begin;
    while (end > begin && isSpace(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

} // namespace

bool isHorizontalSpace(QChar c)
{
    return c == u'\t' || c == u' ' || (c > u'\x7f' && c.category() == QChar::Separator_Space);
}

bool isSpaceOrLineBreak(QChar c)
{
    return isHorizontalSpace(c) || (c >= u'\n' && c <= u'\r') || c == u'\x85' || c == u'\u2028' ||
           c == u'\u2029';
}

QStringView trimmedHorizontally(QStringView text)
{
    return trimmed(text, isHorizontalSpace);
}

QStringView trimmedWithLineBreaks(QStringView text)
{
    return trimmed(text, isSpaceOrLineBreak);
}

QString abbreviatedPath(const QString& path, const QString& homeFolder)
{
    if (homeFolder.isEmpty() || !path.startsWith(homeFolder))
        return path;
    return u'~' + path.sliced(homeFolder.size());
}

QString prefixOfCharacters(const QString& text, int count)
{
    // A character has at least one UTF-16 unit, so a short text needs no walk.
    if (text.size() <= count)
        return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int i = 0; i < count; ++i) {
        if (finder.toNextBoundary() < 0)
            return text;
    }
    return text.left(finder.position());
}

} // namespace vellumry
