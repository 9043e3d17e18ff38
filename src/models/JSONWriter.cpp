#include "models/JSONWriter.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
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

#if defined(__SSE2__)

/// What is shorter than this is copied one by one.
constexpr std::ptrdiff_t smallestBlock = 4;

/// The next units as bytes, as many as fit and zeros behind them. What does not fit a byte becomes
/// 0xff, or 0 where the pack takes it for a negative number.
template <int units>
__m128i loadBytes(const char16_t* in)
{
    const auto* const source = reinterpret_cast<const __m128i*>(in);
    if constexpr (units == 16)
        return _mm_packus_epi16(_mm_loadu_si128(source), _mm_loadu_si128(source + 1));
    else if constexpr (units == 8)
        return _mm_packus_epi16(_mm_loadu_si128(source), _mm_setzero_si128());
    else
        return _mm_packus_epi16(_mm_loadl_epi64(source), _mm_setzero_si128());
}

/// Copies the next units up to the first that is not plain; true if all of them are.
template <int units>
bool copyPlainBlock(const char16_t*& in, char*& out)
{
    const __m128i bytes = loadBytes<units>(in);
    const __m128i escaped =
        _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('"')),
                                  _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'))),
                     _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(0x1f)), bytes));
    // The sign bit tells what is beyond ASCII.
    const auto others = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(escaped, bytes))) &
                        ((1U << units) - 1);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
    const int copied = others == 0 ? units : std::countr_zero(others);
    in += copied;
    out += copied;
    return others == 0;
}

/// Copies units up to the first that is not plain, or up to less than the smallest block before the
/// end. Writes up to a block of 16 beyond what it copies.
const char16_t* copyPlain(const char16_t* in, const char16_t* end, char*& out)
{
    while (end - in >= 16) {
        if (!copyPlainBlock<16>(in, out))
            return in;
    }
    if (end - in >= 8 && !copyPlainBlock<8>(in, out))
        return in;
    if (end - in >= smallestBlock)
        copyPlainBlock<smallestBlock>(in, out);
    return in;
}

#else

constexpr std::ptrdiff_t smallestBlock = std::numeric_limits<std::ptrdiff_t>::max();

const char16_t* copyPlain(const char16_t* in, const char16_t*, char*&)
{
    return in;
}

#endif

/// A line break and the indentation behind it. Writes up to a block beyond it.
char* writeLineBreak(char* out, size_t indent)
{
    *out++ = '\n';
    for (size_t at = 0; at < indent; at += blockRoom)
        std::memset(out + at, ' ', blockRoom);
    return out + indent;
}

} // namespace

void JSONWriter::clear(const ByteSink* newSink)
{
    sink = newSink;
    used = 0;
    depth = 0;
    isFirst = true;
    isAfterKey = false;
}

void JSONWriter::givePieces()
{
    size_t given = 0;
    for (; used - given >= pieceSize; given += pieceSize)
        (*sink)({buffer.get() + given, static_cast<qsizetype>(pieceSize)});
    used -= given;
    std::memmove(buffer.get(), buffer.get() + given, used);
}

char* JSONWriter::startKey(size_t size)
{
    startElement();
    char* out = room(size + 4);
    *out++ = '"';
    return out;
}

void JSONWriter::endKey(char* out)
{
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
    const size_t indent = static_cast<size_t>(depth) * indentWidth;
    char* out = room(indent + 2 + blockRoom);
    if (!isFirst)
        out = writeLineBreak(out, indent);
    *out++ = bracket;
    used = static_cast<size_t>(out - buffer.get());
    isFirst = false;
}

/// What stands before a key or a value: the comma, the line break and the indentation.
void JSONWriter::startElement()
{
    if (isAfterKey) {
        isAfterKey = false;
        return;
    }
    const size_t indent = static_cast<size_t>(depth) * indentWidth;
    char* out = room(indent + 2 + blockRoom);
    if (!isFirst)
        *out++ = ',';
    isFirst = false;
    if (depth > 0)
        out = writeLineBreak(out, indent);
    used = static_cast<size_t>(out - buffer.get());
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
        while (in != end && isPlain(*in) && end - in < smallestBlock)
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
