#include "core/Text.h"

#include "core/CharacterBreaks.h"

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
    qsizetype end = 0;
    for (int i = 0; i < count && end < text.size(); ++i)
        end = endOfCharacter(text, end);
    return text.left(end);
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype end = 0; end < text.size(); end = endOfCharacter(text, end))
        ++count;
    return count;
}

} // namespace vellumry
