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

qsizetype characterCount(QStringView text)
{
    // Below the first combining mark each unit is a character, but for a carriage return with its
    // line feed. Only what stands with larger ones needs a walk.
    constexpr char16_t firstMark = 0x300;
    const auto isPlain = [](QChar c) { return c.unicode() < firstMark; };
    qsizetype count = 0;
    const auto end = text.end();
    for (auto at = text.begin(); at != end;) {
        auto stop = at;
        while (stop != end && isPlain(*stop)) {
            count += *stop == u'\n' && stop != text.begin() && stop[-1] == u'\r' ? 0 : 1;
            ++stop;
        }
        if (stop == end)
            break;
        // The plain unit before may carry the first mark; it was counted, and is again.
        const auto begin = stop == text.begin() ? stop : stop - 1;
        count -= stop - begin;
        at = stop;
        while (at != end && !isPlain(*at))
            ++at;
        if (at != end) // a prefix takes the next one in
            ++at;
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, begin, at - begin);
        while (finder.toNextBoundary() >= 0)
            ++count;
    }
    return count;
}

} // namespace vellumry
