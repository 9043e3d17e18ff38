#include "models/JSONWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <new>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vellumry {

namespace {

constexpr size_t indentWidth = 2;

/// Longest JSON form of one UTF-16 unit: \u00XX.
constexpr size_t longestUnit = 6;

char* writeEscape(char16_t c, char* out)
{
    static constexpr char digits[] = "0123456789abcdef";
    *out++ = '\\';
    switch (c) {
    case u'"':
    case u'\\':
        *out++ = static_cast<char>(c);
        return out;
    case u'\n':
        *out++ = 'n';
        return out;
    case u'\r':
        *out++ = 'r';
        return out;
    case u'\t':
        *out++ = 't';
        return out;
    default:
        break;
    }
    *out++ = 'u';
    *out++ = '0';
    *out++ = '0';
    *out++ = digits[c >> 4];
    *out++ = digits[c & 15];
    return out;
}

/// Writes the character that begins at `in` as UTF-8, escaped where JSON asks for it.
const char16_t* writeCharacter(const char16_t* in, const char16_t* end, char*& out)
{
    char32_t c = *in++;
    if (c < 0x80) {
        if (c < 0x20 || c == u'"' || c == u'\\')
            out = writeEscape(static_cast<char16_t>(c), out);
        else
            *out++ = static_cast<char>(c);
        return in;
    }
    if (QChar::isSurrogate(c)) {
        if (QChar::isHighSurrogate(c) && in != end && QChar::isLowSurrogate(*in)) {
            c = QChar::surrogateToUcs4(static_cast<char16_t>(c), *in++);
            *out++ = static_cast<char>(0xf0 | (c >> 18));
            *out++ = static_cast<char>(0x80 | ((c >> 12) & 0x3f));
            *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3f));
            *out++ = static_cast<char>(0x80 | (c & 0x3f));
            return in;
        }
        c = QChar::ReplacementCharacter;
    }
    if (c < 0x800) {
        *out++ = static_cast<char>(0xc0 | (c >> 6));
    } else {
        *out++ = static_cast<char>(0xe0 | (c >> 12));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3f));
    }
    *out++ = static_cast<char>(0x80 | (c & 0x3f));
    return in;
}

#if defined(__SSE2__)
/// Copies 16 units at once as long as they are plain ASCII; stops before the first block that
/// is not.
const char16_t* copyPlainBlocks(const char16_t* in, const char16_t* end, char*& out)
{
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    const __m128i lastControl = _mm_set1_epi8(0x1f);
    const __m128i beyondAscii = _mm_set1_epi16(static_cast<short>(0xff80));
    while (end - in >= 16) {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8));
        const __m128i wide = _mm_and_si128(_mm_or_si128(low, high), beyondAscii);
        const __m128i block = _mm_packus_epi16(low, high);
        const __m128i special = _mm_or_si128(
            _mm_or_si128(_mm_cmpeq_epi8(block, quote), _mm_cmpeq_epi8(block, backslash)),
            _mm_cmpeq_epi8(_mm_min_epu8(block, lastControl), block));
        const __m128i plainWide = _mm_cmpeq_epi16(wide, _mm_setzero_si128());
        if (_mm_movemask_epi8(plainWide) != 0xffff || _mm_movemask_epi8(special) != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), block);
        in += 16;
        out += 16;
    }
    return in;
}
#else
const char16_t* copyPlainBlocks(const char16_t* in, const char16_t*, char*&)
{
    return in;
}
#endif

} // namespace

void JSONWriter::clear()
{
    used = 0;
    depth = 0;
    isFirst = true;
    isAfterKey = false;
}

void JSONWriter::key(QByteArrayView name)
{
    startElement();
    char* out = room(static_cast<size_t>(name.size()) + 4);
    *out++ = '"';
    std::memcpy(out, name.data(), static_cast<size_t>(name.size()));
    out += name.size();
    *out++ = '"';
    *out++ = ':';
    *out++ = ' ';
    used = static_cast<size_t>(out - buffer.get());
    isAfterKey = true;
}

void JSONWriter::key(const QString& name)
{
    startElement();
    quoted(name);
    append(": ");
    isAfterKey = true;
}

void JSONWriter::value(const QString& text)
{
    startElement();
    quoted(text);
}

void JSONWriter::value(qint64 number)
{
    startElement();
    char* out = room(24);
    used = static_cast<size_t>(std::to_chars(out, out + 24, number).ptr - buffer.get());
}

void JSONWriter::value(bool truth)
{
    startElement();
    append(truth ? QByteArrayView("true") : QByteArrayView("false"));
}

void JSONWriter::value(Date date)
{
    startElement();
    char* out = room(34);
    *out++ = '"';
    out = writeDate(date, out);
    *out++ = '"';
    used = static_cast<size_t>(out - buffer.get());
}

void JSONWriter::open(char bracket)
{
    startElement();
    *room(1) = bracket;
    ++used;
    ++depth;
    isFirst = true;
}

void JSONWriter::close(char bracket)
{
    --depth;
    if (!isFirst)
        newLine();
    *room(1) = bracket;
    ++used;
    isFirst = false;
}

/// What stands before a key or a value: the comma, the line break and the indentation.
void JSONWriter::startElement()
{
    if (isAfterKey) {
        isAfterKey = false;
        return;
    }
    if (!isFirst) {
        *room(1) = ',';
        ++used;
    }
    isFirst = false;
    if (depth > 0)
        newLine();
}

void JSONWriter::newLine()
{
    const auto indent = static_cast<size_t>(depth) * indentWidth;
    char* out = room(indent + 1);
    *out++ = '\n';
    std::memset(out, ' ', indent);
    used += indent + 1;
}

void JSONWriter::quoted(const QString& text)
{
    char* out = room(static_cast<size_t>(text.size()) * longestUnit + 2);
    const auto* in = reinterpret_cast<const char16_t*>(text.utf16());
    const char16_t* const end = in + text.size();
    *out++ = '"';
    while (in != end) {
        in = copyPlainBlocks(in, end, out);
        // One block by hand, then try whole blocks again.
        const char16_t* const blockEnd = in + std::min<std::ptrdiff_t>(16, end - in);
        while (in < blockEnd)
            in = writeCharacter(in, end, out);
    }
    *out++ = '"';
    used = static_cast<size_t>(out - buffer.get());
}

/// Room for `count` more bytes; the one place where the buffer grows.
char* JSONWriter::room(size_t count)
{
    if (capacity - used < count) {
        const size_t wanted = std::max(capacity * 2, used + count + 4096);
        // realloc moves large blocks by remapping pages; new[] would copy them.
        char* grown = static_cast<char*>(std::realloc(buffer.get(), wanted));
        if (!grown)
            throw std::bad_alloc();
        (void)buffer.release();
        buffer.reset(grown);
        capacity = wanted;
    }
    return buffer.get() + used;
}

void JSONWriter::append(QByteArrayView text)
{
    std::memcpy(room(static_cast<size_t>(text.size())), text.data(),
                static_cast<size_t>(text.size()));
    used += static_cast<size_t>(text.size());
}

} // namespace vellumry
