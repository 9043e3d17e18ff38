#pragma once

#include <QString>
#include <QStringView>

namespace vellumry {

/// Horizontal white space: tab and the Unicode space separators (category Zs); no line breaks.
[[nodiscard]] bool isHorizontalSpace(QChar c);

/// White space of both kinds: horizontal, and the line breaks U+000A to U+000D, U+0085, U+2028
/// and U+2029.
[[nodiscard]] bool isSpaceOrLineBreak(QChar c);

/// `text` without horizontal white space at its ends.
[[nodiscard]] QStringView trimmedHorizontally(QStringView text);

/// `text` without white space and line breaks at its ends.
[[nodiscard]] QStringView trimmedWithLineBreaks(QStringView text);

/// `path` for people: with "~" in place of the home folder, if there is one and the path begins
/// with it. By the text alone: a folder whose name goes on where that of the home folder ends loses
/// that beginning as well.
[[nodiscard]] QString abbreviatedPath(const QString& path, const QString& homeFolder);

/// The first `count` user-perceived characters (extended grapheme clusters of UAX #29).
[[nodiscard]] QString prefixOfCharacters(const QString& text, int count);

/// How many of them there are.
[[nodiscard]] qsizetype characterCount(QStringView text);

} // namespace vellumry
