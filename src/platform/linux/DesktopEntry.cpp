#include "platform/linux/DesktopEntry.h"

#include <algorithm>

namespace vellumry {

namespace {

constexpr char mainGroup[] = "[Desktop Entry]";

bool startsMainGroup(const QByteArray& line)
{
    return line.trimmed() == mainGroup;
}

bool saysNothing(const QByteArray& line)
{
    const QByteArray text = line.trimmed();
    return text.isEmpty() || text.startsWith('#');
}

bool isAbout(const QByteArray& line, const QByteArray& key)
{
    const qsizetype equals = line.indexOf('=');
    return equals >= 0 && QByteArrayView(line).first(equals).trimmed() == key;
}

QByteArray escaped(QByteArray value)
{
    return value.replace('\\', "\\\\")
        .replace('\n', "\\n")
        .replace('\t', "\\t")
        .replace('\r', "\\r");
}

} // namespace

DesktopEntry::DesktopEntry() : lines{mainGroup} {}

std::optional<DesktopEntry> DesktopEntry::parse(QByteArrayView bytes)
{
    QByteArray text = bytes.toByteArray();
    if (text.endsWith('\n'))
        text.chop(1);
    QList<QByteArray> lines = text.split('\n');
    if (std::ranges::none_of(lines, startsMainGroup)) {
        if (!std::ranges::all_of(lines, saysNothing))
            return std::nullopt;
        lines.append(mainGroup);
    }
    return DesktopEntry(std::move(lines));
}

std::optional<QByteArray> DesktopEntry::value(const QByteArray& key) const
{
    for (qsizetype i = groupEnd() - 1; i > groupStart(); --i) {
        if (isAbout(lines[i], key))
            return lines[i].sliced(lines[i].indexOf('=') + 1).trimmed();
    }
    return std::nullopt;
}

void DesktopEntry::set(const QByteArray& key, const QByteArray& value)
{
    const auto begin = lines.cbegin() + groupStart() + 1;
    const auto end = lines.cbegin() + groupEnd();
    const auto first =
        std::find_if(begin, end, [&](const QByteArray& line) { return isAbout(line, key); });
    qsizetype place = first - lines.cbegin();
    if (first == end) {
        while (lines[place - 1].trimmed().isEmpty())
            --place;
    }
    remove(key);
    lines.insert(place, key + '=' + value);
}

void DesktopEntry::remove(const QByteArray& key)
{
    const auto begin = lines.begin() + groupStart() + 1;
    const auto end = lines.begin() + groupEnd();
    lines.erase(
        std::remove_if(begin, end, [&](const QByteArray& line) { return isAbout(line, key); }),
        end);
}

QByteArray DesktopEntry::bytes() const
{
    return lines.join('\n') + '\n';
}

QByteArray DesktopEntry::command(const QString& programPath)
{
    // Two layers: the quotes of an argument, and around them the escapes of any value.
    QByteArray quoted;
    for (const char character : programPath.toUtf8()) {
        if (character == '"' || character == '`' || character == '$' || character == '\\')
            quoted += '\\';
        else if (character == '%')
            quoted += '%';
        quoted += character;
    }
    return '"' + escaped(quoted) + '"';
}

QByteArray DesktopEntry::file(const QString& absolutePath)
{
    return escaped(absolutePath.toUtf8());
}

qsizetype DesktopEntry::groupStart() const
{
    return std::ranges::find_if(lines, startsMainGroup) - lines.begin();
}

qsizetype DesktopEntry::groupEnd() const
{
    const auto afterStart = lines.begin() + groupStart() + 1;
    return std::find_if(afterStart, lines.end(),
                        [](const QByteArray& line) { return line.trimmed().startsWith('['); }) -
           lines.begin();
}

} // namespace vellumry
