#include "palette/SearchEncoding.h"

#include <QChar>

#include <array>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vellumry {

namespace {

/// U+0130, capital I with dot, is the one letter whose lower case is two: i and U+0307.
constexpr char16_t capitalIWithDot = 0x0130;
constexpr char16_t combiningDotAbove = 0x0307;

/// The lower case of each UTF-16 unit, in pages of 256. Most pages hold no capital at all; they
/// share the first one, which is never read.
class LowerCaseTable {
public:
    static const LowerCaseTable& shared()
    {
        static const LowerCaseTable table;
        return table;
    }

    [[nodiscard]] char16_t lowerCase(char16_t unit) const
    {
        const unsigned char page = pageOf[unit >> 8];
        return page == unchanged ? unit : pages[page][unit & 0xff];
    }

private:
    static constexpr unsigned char unchanged = 0;

    LowerCaseTable() : pages(1)
    {
        for (unsigned high = 0; high < 256; ++high) {
            std::array<char16_t, 256> page{};
            bool hasCapital = false;
            for (unsigned low = 0; low < 256; ++low) {
                const auto unit = static_cast<char16_t>(high << 8 | low);
                page[low] = QChar::isSurrogate(unit) ? unit : QChar(unit).toLower().unicode();
                hasCapital = hasCapital || page[low] != unit;
            }
            if (hasCapital) {
                pageOf[high] = static_cast<unsigned char>(pages.size());
                pages.push_back(page);
            }
        }
    }

    std::array<unsigned char, 256> pageOf{};
    std::vector<std::array<char16_t, 256>> pages;
};

inline unsigned char* encodeUnit(char16_t unit, unsigned char* out)
{
    if (unit < 0x80) {
        *out++ = static_cast<unsigned char>(unit);
    } else if (unit < 0x800) {
        *out++ = static_cast<unsigned char>(0xc0 | unit >> 6);
        *out++ = static_cast<unsigned char>(0x80 | (unit & 0x3f));
    } else {
        *out++ = static_cast<unsigned char>(0xe0 | unit >> 12);
        *out++ = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3f));
        *out++ = static_cast<unsigned char>(0x80 | (unit & 0x3f));
    }
    return out;
}

/// Encodes the character at `in`, of one or two units, and moves `in` behind it.
inline unsigned char* encodeNextLowerCased(const char16_t*& in, const char16_t* end,
                                           const LowerCaseTable& table, unsigned char* out)
{
    const char16_t unit = *in++;
    if (unit < 0x80)
        return encodeUnit(unit >= u'A' && unit <= u'Z' ? unit | 0x20 : unit, out);
    if (unit == capitalIWithDot)
        return encodeUnit(combiningDotAbove, encodeUnit(u'i', out));
    if (QChar::isHighSurrogate(unit) && in < end && QChar::isLowSurrogate(*in)) {
        const char32_t lower = QChar::toLower(QChar::surrogateToUcs4(unit, *in++));
        return encodeUnit(QChar::lowSurrogate(lower), encodeUnit(QChar::highSurrogate(lower), out));
    }
    return encodeUnit(table.lowerCase(unit), out);
}

#if defined(__SSE2__)

constexpr qsizetype blockUnits = 16;

/// Encodes the 16 units at `in` if all of them are ASCII; false otherwise.
inline bool encodeBlockLowerCased(const char16_t* in, unsigned char* out)
{
    const auto* source = reinterpret_cast<const __m128i*>(in);
    const __m128i first = _mm_loadu_si128(source);
    const __m128i second = _mm_loadu_si128(source + 1);
    const __m128i beyondAscii = _mm_and_si128(_mm_or_si128(first, second), _mm_set1_epi16(-0x80));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(beyondAscii, _mm_setzero_si128())) != 0xffff)
        return false;
    const __m128i bytes = _mm_packus_epi16(first, second);
    const __m128i isCapital = _mm_and_si128(_mm_cmpgt_epi8(bytes, _mm_set1_epi8('A' - 1)),
                                            _mm_cmplt_epi8(bytes, _mm_set1_epi8('Z' + 1)));
    const __m128i lower = _mm_or_si128(bytes, _mm_and_si128(isCapital, _mm_set1_epi8(0x20)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), lower);
    return true;
}

#endif

bool isPair(QStringView text, qsizetype at)
{
    return at + 1 < text.size() && text[at].isHighSurrogate() && text[at + 1].isLowSurrogate();
}

} // namespace

QString lowerCased(const QString& text)
{
    if (text.isValidUtf16())
        return text.toLower();
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isPair(text, i))
            result += text.mid(i++, 2).toLower();
        else if (text[i].isSurrogate())
            result += text[i];
        else
            result += QString(text[i]).toLower();
    }
    return result;
}

unsigned char* encodeLowerCased(QStringView text, unsigned char* out)
{
    const LowerCaseTable& table = LowerCaseTable::shared();
    const char16_t* in = text.utf16();
    const char16_t* const end = in + text.size();
#if defined(__SSE2__)
    while (end - in >= blockUnits) {
        if (encodeBlockLowerCased(in, out)) {
            in += blockUnits;
            out += blockUnits;
            continue;
        }
        const char16_t* const blockEnd = in + blockUnits;
        while (in < blockEnd)
            out = encodeNextLowerCased(in, end, table, out);
    }
#endif
    while (in < end)
        out = encodeNextLowerCased(in, end, table, out);
    return out;
}

std::string encoded(QStringView text)
{
    std::string bytes(static_cast<size_t>(text.size() * mostBytesPerUnit), '\0');
    auto* const begin = reinterpret_cast<unsigned char*>(bytes.data());
    unsigned char* out = begin;
    for (const QChar c : text)
        out = encodeUnit(c.unicode(), out);
    bytes.resize(static_cast<size_t>(out - begin));
    return bytes;
}

} // namespace vellumry
