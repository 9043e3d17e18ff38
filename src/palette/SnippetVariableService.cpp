#include "palette/SnippetVariableService.h"

#include "core/Text.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <optional>

namespace vellumry {

namespace {

/// One match of the pattern.
struct Match {
    qsizetype begin;
    qsizetype end;
    QStringView capture;
};

/// The pattern's \s.
bool isSpace(QChar c)
{
    if (c.unicode() < 0x80)
        return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
    const QChar::Category category = c.category();
    return category == QChar::Separator_Space || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

bool isBrace(QChar c)
{
    return c == u'{' || c == u'}';
}

/// The capture of a match whose inside, between the braces, is `inside`; nothing if that is no
/// match. `inside` holds no brace.
std::optional<QStringView> captureOf(QStringView inside)
{
    const auto first = std::find_if_not(inside.begin(), inside.end(), isSpace);
    if (first == inside.end()) {
        // The leading \s* takes all it can and leaves the capture the last unit that it may hold.
        qsizetype last = inside.size() - 1;
        while (last >= 0 && inside[last] == u'\n')
            --last;
        return last < 0 ? std::nullopt : std::optional(inside.sliced(last, 1));
    }
    qsizetype end = inside.size();
    while (isSpace(inside[end - 1]))
        --end;
    const qsizetype begin = first - inside.begin();
    const QStringView name = inside.sliced(begin, end - begin);
    return name.contains(u'\n') ? std::nullopt : std::optional(name);
}

/// Goes through the matches of the pattern from left to right.
class PlaceholderScanner {
public:
    explicit PlaceholderScanner(QStringView scanned) : text(scanned) {}

    std::optional<Match> next()
    {
        qsizetype begin;
        while ((begin = nextOpening()) >= 0) {
            // No brace may stand inside, so the next one has to be the first of the closing two.
            const qsizetype inside = begin + 2;
            qsizetype brace = inside;
            while (brace < text.size() && !isBrace(text[brace]))
                ++brace;
            if (brace == text.size())
                break;
            const bool closes = text.sliced(brace).startsWith(u"}}");
            // Of three opening braces the last two count.
            position = closes ? brace + 2 : brace == inside ? begin + 1 : brace;
            if (!closes)
                continue;
            if (const auto capture = captureOf(text.sliced(inside, brace - inside)))
                return Match{.begin = begin, .end = position, .capture = *capture};
        }
        position = text.size();
        return std::nullopt;
    }

private:
    /// Where the next two opening braces are. One is looked for many at a time, two are not.
    [[nodiscard]] qsizetype nextOpening() const
    {
        qsizetype brace = text.indexOf(u'{', position);
        while (brace >= 0 && !text.sliced(brace + 1).startsWith(u'{'))
            brace = text.indexOf(u'{', brace + 1);
        return brace;
    }

    QStringView text;
    qsizetype position = 0;
};

bool isBlank(QStringView value)
{
    return trimmedWithLineBreaks(value).isEmpty();
}

} // namespace

const SnippetVariableService& SnippetVariableService::shared()
{
    static const SnippetVariableService service;
    return service;
}

QList<SnippetVariableService::Placeholder>
SnippetVariableService::placeholders(QStringView text) const
{
    QList<Placeholder> found;
    PlaceholderScanner scanner(text);
    while (const auto match = scanner.next()) {
        const QStringView name = trimmedHorizontally(match->capture);
        if (!name.isEmpty())
            found.append({match->begin, match->end - match->begin, name});
    }
    return found;
}

QStringList SnippetVariableService::extractNames(const QString& text) const
{
    QStringList names;
    QSet<QStringView> seen;
    PlaceholderScanner scanner(text);
    while (const auto placeholder = scanner.next()) {
        const QStringView name = trimmedHorizontally(placeholder->capture);
        if (name.isEmpty() || seen.contains(name))
            continue;
        seen.insert(name);
        names.append(name.toString());
    }
    return names;
}

QString SnippetVariableService::resolve(const QString& content,
                                        const QMap<QString, QString>& values) const
{
    if (content.isEmpty() || values.isEmpty())
        return content;
    // One pass that copies what stands between the replaced placeholders.
    QString result;
    qsizetype copied = 0;
    PlaceholderScanner scanner(content);
    while (const auto placeholder = scanner.next()) {
        const QStringView name = trimmedHorizontally(placeholder->capture);
        if (name.isEmpty())
            continue;
        const auto value = values.constFind(name.toString());
        if (value == values.cend() || isBlank(*value))
            continue;
        result += QStringView(content).sliced(copied, placeholder->begin - copied);
        result += *value;
        copied = placeholder->end;
    }
    if (copied == 0)
        return content;
    return result += QStringView(content).sliced(copied);
}

QMap<QString, QString> SnippetVariableService::prunedValues(const QMap<QString, QString>& values,
                                                            const QString& text) const
{
    if (values.isEmpty())
        return {};
    return prunedValues(values, extractNames(text));
}

QMap<QString, QString> SnippetVariableService::prunedValues(const QMap<QString, QString>& values,
                                                            const QStringList& names) const
{
    QMap<QString, QString> kept;
    for (const QString& name : names) {
        const auto value = values.constFind(name);
        if (value != values.cend() && !isBlank(*value))
            kept.insert(name, *value);
    }
    return kept;
}

} // namespace vellumry
