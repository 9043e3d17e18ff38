#include "models/JSONWriter.h"

#include <algorithm>
#include <bit>
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

/// How far a block may be written beyond the text.
constexpr size_t blockRoom = 16;

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

/// Whether the unit stands for itself in a JSON text of UTF-8: plain ASCII without an escape.
bool isPlain(char16_t c)
{
    return c >= 0x20 && c < 0x80 && c != u'"' && c != u'\\';
}

/// Copies units up to the first that is not plain, or nearly up to the end: what is shorter than a
/// block is left. Writes up to a block beyond what it copies.
const char16_t* copyPlain(const char16_t* in, const char16_t* end, char*& out)
{
#if defined(__SSE2__)
    const __m128i quote = _mm_set1_epi8('"');
    const __m128i backslash = _mm_set1_epi8('\\');
    const __m128i lastControl = _mm_set1_epi8(0x1f);
    constexpr std::ptrdiff_t block = 16;
    while (end - in >= block) {
        // What does not fit a byte becomes 0xff, or 0 where the pack takes it for a negative
        // number; neither is plain.
        const __m128i bytes =
            _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(in)),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + 8)));
        const __m128i escaped = _mm_or_si128(
            _mm_or_si128(_mm_cmpeq_epi8(bytes, quote), _mm_cmpeq_epi8(bytes, backslash)),
            _mm_cmpeq_epi8(_mm_min_epu8(bytes, lastControl), bytes));
        // The sign bit tells what is beyond ASCII.
        const auto others = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(escaped, bytes)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
        const std::ptrdiff_t copied = others == 0 ? block : std::countr_zero(others);
        in += copied;
        out += copied;
        if (others != 0)
            break;
    }
#endif
    return in;
}

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
    out = writeDate(date, out, datePrecision);
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
    char* out = room(static_cast<size_t>(text.size()) * longestUnit + 2 + blockRoom);
    const auto* in = reinterpret_cast<const char16_t*>(text.utf16());
    const char16_t* const end = in + text.size();
    *out++ = '"';
    while (in != end) {
        in = copyPlain(in, end, out);
        // What is not plain mostly comes in runs, and so does a text of another script.
        while (in != end && !isPlain(*in))
            in = writeCharacter(in, end, out);
        // A tail that is too short for a block.
        while (in != end && isPlain(*in) && end - in < 16)
            *out++ = static_cast<char>(*in++);
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
