#pragma once

#include <QStringView>

namespace vellumry {

/// The rule behind endOfCharacter, for any text.
[[nodiscard]] qsizetype endOfCluster(QStringView text, qsizetype begin);

/// The end of the user-perceived character (extended grapheme cluster of UAX #29) that begins at
/// `begin`, which is 0 or the end of another one, and less than the size of the text. The toolkit's
/// own finder parts a flag that follows an emoji, and the halves of an emoji beside Thai or Tamil.
[[nodiscard]] inline qsizetype endOfCharacter(QStringView text, qsizetype begin)
{
    // Below the first combining mark only a line feed joins what stands before it.
    constexpr char16_t firstMark = 0x300;
    const qsizetype end = begin + 1;
    const bool isPlain = text[begin] < firstMark && text[begin] != u'\r' &&
                         (end == text.size() || text[end] < firstMark);
    return isPlain ? end : endOfCluster(text, begin);
}

} // namespace vellumry
