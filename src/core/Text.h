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

/// The first `count` user-perceived characters (extended grapheme clusters of UAX #29).
[[nodiscard]] QString prefixOfCharacters(const QString& text, int count);

} // namespace vellumry
