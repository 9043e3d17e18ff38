#pragma once

#include <QString>
#include <QStringView>

#include <string>

namespace vellumry {

/// The byte form in which text is searched: each UTF-16 unit on its own is written the way UTF-8
/// writes a code point of that value, in one to three bytes. It is UTF-8 for all but the units of
/// surrogate pairs, whether paired or alone. So a text occurs in another, unit by unit, exactly
/// when its bytes occur in the other's, for every text there can be. The byte 0xFF never occurs.
inline constexpr qsizetype mostBytesPerUnit = 3;

/// The text in lower case, whatever stands around a letter. The same as QString::toLower, but a
/// surrogate that stands alone is left alone; QString takes what follows one for its other half.
[[nodiscard]] QString lowerCased(const QString& text);

/// Writes the bytes of the lower-cased text to `out`, which has
/// room for mostBytesPerUnit bytes for each unit. Returns the end of what was written.
[[nodiscard]] unsigned char* encodeLowerCased(QStringView text, unsigned char* out);

/// The bytes of the text as it stands.
[[nodiscard]] std::string encoded(QStringView text);

} // namespace vellumry
