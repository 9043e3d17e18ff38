#include "core/CharacterBreaks.h"

#include <QChar>

#include <algorithm>
#include <iterator>

namespace vellumry {

namespace {

/// What decides whether a code point joins the one before it.
enum class Kind {
    other,
    control,
    extend, ///< marks that take no room of their own
    nonJoiner,
    linker, ///< marks that tie a consonant to the next
    joiner,
    spacingMark,
    prepend,
    regional,
    hangulL,
    hangulV,
    hangulT,
    hangulLV,
    hangulLVT,
    pictograph,
    consonant, ///< of the scripts whose consonants are tied
};

struct Range {
    char32_t first;
    char32_t last;
    Kind kind;
};

/// What its category does not tell of a code point: the properties Extended_Pictographic and
/// Indic_Conjunct_Break, the parts of Hangul, and the exceptions of Grapheme_Cluster_Break.
constexpr Range ranges[] = {
    {0x00A9, 0x00A9, Kind::pictograph},   {0x00AE, 0x00AE, Kind::pictograph},
    {0x0600, 0x0605, Kind::prepend},      {0x06DD, 0x06DD, Kind::prepend},
    {0x070F, 0x070F, Kind::prepend},      {0x0890, 0x0891, Kind::prepend},
    {0x08E2, 0x08E2, Kind::prepend},      {0x0915, 0x0939, Kind::consonant},
    {0x094D, 0x094D, Kind::linker},       {0x0958, 0x095F, Kind::consonant},
    {0x0978, 0x097F, Kind::consonant},    {0x0995, 0x09B9, Kind::consonant},
    {0x09CD, 0x09CD, Kind::linker},       {0x09DC, 0x09DF, Kind::consonant},
    {0x09F0, 0x09F1, Kind::consonant},    {0x0A95, 0x0AB9, Kind::consonant},
    {0x0ACD, 0x0ACD, Kind::linker},       {0x0AF9, 0x0AF9, Kind::consonant},
    {0x0B15, 0x0B39, Kind::consonant},    {0x0B4D, 0x0B4D, Kind::linker},
    {0x0B5C, 0x0B5F, Kind::consonant},    {0x0B71, 0x0B71, Kind::consonant},
    {0x0C15, 0x0C39, Kind::consonant},    {0x0C4D, 0x0C4D, Kind::linker},
    {0x0C58, 0x0C5A, Kind::consonant},    {0x0D15, 0x0D3A, Kind::consonant},
    {0x0D4D, 0x0D4D, Kind::linker},       {0x0D4E, 0x0D4E, Kind::prepend},
    {0x0E33, 0x0E33, Kind::spacingMark},  {0x0EB3, 0x0EB3, Kind::spacingMark},
    {0x102B, 0x102C, Kind::other},        {0x1038, 0x1038, Kind::other},
    {0x1062, 0x1064, Kind::other},        {0x1067, 0x106D, Kind::other},
    {0x1083, 0x1083, Kind::other},        {0x1087, 0x108C, Kind::other},
    {0x108F, 0x108F, Kind::other},        {0x109A, 0x109C, Kind::other},
    {0x1100, 0x115F, Kind::hangulL},      {0x1160, 0x11A7, Kind::hangulV},
    {0x11A8, 0x11FF, Kind::hangulT},      {0x1A61, 0x1A61, Kind::other},
    {0x1A63, 0x1A64, Kind::other},        {0x200C, 0x200C, Kind::nonJoiner},
    {0x200D, 0x200D, Kind::joiner},       {0x203C, 0x203C, Kind::pictograph},
    {0x2049, 0x2049, Kind::pictograph},   {0x2122, 0x2122, Kind::pictograph},
    {0x2139, 0x2139, Kind::pictograph},   {0x2194, 0x2199, Kind::pictograph},
    {0x21A9, 0x21AA, Kind::pictograph},   {0x231A, 0x231B, Kind::pictograph},
    {0x2328, 0x2328, Kind::pictograph},   {0x2388, 0x2388, Kind::pictograph},
    {0x23CF, 0x23CF, Kind::pictograph},   {0x23E9, 0x23F3, Kind::pictograph},
    {0x23F8, 0x23FA, Kind::pictograph},   {0x24C2, 0x24C2, Kind::pictograph},
    {0x25AA, 0x25AB, Kind::pictograph},   {0x25B6, 0x25B6, Kind::pictograph},
    {0x25C0, 0x25C0, Kind::pictograph},   {0x25FB, 0x25FE, Kind::pictograph},
    {0x2600, 0x2605, Kind::pictograph},   {0x2607, 0x2612, Kind::pictograph},
    {0x2614, 0x2685, Kind::pictograph},   {0x2690, 0x2705, Kind::pictograph},
    {0x2708, 0x2712, Kind::pictograph},   {0x2714, 0x2714, Kind::pictograph},
    {0x2716, 0x2716, Kind::pictograph},   {0x271D, 0x271D, Kind::pictograph},
    {0x2721, 0x2721, Kind::pictograph},   {0x2728, 0x2728, Kind::pictograph},
    {0x2733, 0x2734, Kind::pictograph},   {0x2744, 0x2744, Kind::pictograph},
    {0x2747, 0x2747, Kind::pictograph},   {0x274C, 0x274C, Kind::pictograph},
    {0x274E, 0x274E, Kind::pictograph},   {0x2753, 0x2755, Kind::pictograph},
    {0x2757, 0x2757, Kind::pictograph},   {0x2763, 0x2767, Kind::pictograph},
    {0x2795, 0x2797, Kind::pictograph},   {0x27A1, 0x27A1, Kind::pictograph},
    {0x27B0, 0x27B0, Kind::pictograph},   {0x27BF, 0x27BF, Kind::pictograph},
    {0x2934, 0x2935, Kind::pictograph},   {0x2B05, 0x2B07, Kind::pictograph},
    {0x2B1B, 0x2B1C, Kind::pictograph},   {0x2B50, 0x2B50, Kind::pictograph},
    {0x2B55, 0x2B55, Kind::pictograph},   {0x3030, 0x3030, Kind::pictograph},
    {0x303D, 0x303D, Kind::pictograph},   {0x3297, 0x3297, Kind::pictograph},
    {0x3299, 0x3299, Kind::pictograph},   {0xA960, 0xA97C, Kind::hangulL},
    {0xAA7B, 0xAA7B, Kind::other},        {0xAA7D, 0xAA7D, Kind::other},
    {0xD7B0, 0xD7C6, Kind::hangulV},      {0xD7CB, 0xD7FB, Kind::hangulT},
    {0xFF9E, 0xFF9F, Kind::extend},       {0x110BD, 0x110BD, Kind::prepend},
    {0x110CD, 0x110CD, Kind::prepend},    {0x111C2, 0x111C3, Kind::prepend},
    {0x11720, 0x11721, Kind::other},      {0x1193F, 0x1193F, Kind::prepend},
    {0x11941, 0x11941, Kind::prepend},    {0x11A3A, 0x11A3A, Kind::prepend},
    {0x11A84, 0x11A89, Kind::prepend},    {0x11D46, 0x11D46, Kind::prepend},
    {0x1F000, 0x1F0FF, Kind::pictograph}, {0x1F10D, 0x1F10F, Kind::pictograph},
    {0x1F12F, 0x1F12F, Kind::pictograph}, {0x1F16C, 0x1F171, Kind::pictograph},
    {0x1F17E, 0x1F17F, Kind::pictograph}, {0x1F18E, 0x1F18E, Kind::pictograph},
    {0x1F191, 0x1F19A, Kind::pictograph}, {0x1F1AD, 0x1F1E5, Kind::pictograph},
    {0x1F1E6, 0x1F1FF, Kind::regional},   {0x1F201, 0x1F20F, Kind::pictograph},
    {0x1F21A, 0x1F21A, Kind::pictograph}, {0x1F22F, 0x1F22F, Kind::pictograph},
    {0x1F232, 0x1F23A, Kind::pictograph}, {0x1F23C, 0x1F23F, Kind::pictograph},
    {0x1F249, 0x1F3FA, Kind::pictograph}, {0x1F3FB, 0x1F3FF, Kind::extend},
    {0x1F400, 0x1F53D, Kind::pictograph}, {0x1F546, 0x1F64F, Kind::pictograph},
    {0x1F680, 0x1F6FF, Kind::pictograph}, {0x1F774, 0x1F77F, Kind::pictograph},
    {0x1F7D5, 0x1F7FF, Kind::pictograph}, {0x1F80C, 0x1F80F, Kind::pictograph},
    {0x1F848, 0x1F84F, Kind::pictograph}, {0x1F85A, 0x1F85F, Kind::pictograph},
    {0x1F888, 0x1F88F, Kind::pictograph}, {0x1F8AE, 0x1F8FF, Kind::pictograph},
    {0x1F90C, 0x1F93A, Kind::pictograph}, {0x1F93C, 0x1F945, Kind::pictograph},
    {0x1F947, 0x1FAFF, Kind::pictograph}, {0x1FC00, 0x1FFFD, Kind::pictograph},
    {0xE0020, 0xE007F, Kind::extend}};

/// What is in no range.
Kind kindByCategory(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return Kind::extend;
    case QChar::Mark_SpacingCombining:
        return Kind::spacingMark;
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return Kind::control;
    default:
        return Kind::other;
    }
}

Kind kindOf(char32_t c)
{
    const auto isBetween = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    // Most of the texts of the world need no search.
    if (isBetween(0x3400, 0x9FFF)) // ideographs
        return Kind::other;
    if (isBetween(0xAC00, 0xD7A3)) // Hangul syllables
        return (c - 0xAC00) % 28 == 0 ? Kind::hangulLV : Kind::hangulLVT;
    if (isBetween(0x00AF, 0x05FF)) // Latin, Greek, Cyrillic, Armenian, Hebrew
        return kindByCategory(c);
    const Range* const found = std::partition_point(
        std::begin(ranges), std::end(ranges), [c](const Range& range) { return range.last < c; });
    return found != std::end(ranges) && found->first <= c ? found->kind : kindByCategory(c);
}

/// One character while it grows, code point by code point.
class Cluster {
public:
    explicit Cluster(Kind first) { add(first); }

    /// Whether a code point of this kind belongs to the character as well. The rules are named as
    /// in the standard.
    [[nodiscard]] bool takes(Kind next) const
    {
        using enum Kind;
        if (last == control || next == control) // GB4, GB5
            return false;
        switch (next) {
        case extend: // GB9, GB9a
        case nonJoiner:
        case linker:
        case joiner:
        case spacingMark:
            return true;
        case hangulL: // GB6
        case hangulLV:
        case hangulLVT:
            return last == hangulL || last == prepend;
        case hangulV: // GB6, GB7
            return last == hangulL || last == hangulV || last == hangulLV || last == prepend;
        case hangulT: // GB7, GB8
            return last == hangulV || last == hangulLV || last == hangulT || last == hangulLVT ||
                   last == prepend;
        case consonant: // GB9c
            return isLinked || last == prepend;
        case pictograph: // GB11
            return (isPictograph && last == joiner) || last == prepend;
        case regional: // GB12, GB13
            return isHalfFlag || last == prepend;
        default: // GB9b, GB999
            return last == prepend;
        }
    }

    void add(Kind next)
    {
        using enum Kind;
        isHalfFlag = next == regional && !isHalfFlag;
        isPictograph = next == pictograph ||
                       (isPictograph && last != joiner && (isExtending(next) || next == joiner));
        const bool keepsConjunct = next == extend || next == joiner || next == linker;
        isLinked = isConjunct && keepsConjunct && (isLinked || next == linker);
        isConjunct = next == consonant || (isConjunct && keepsConjunct);
        last = next;
    }

private:
    static bool isExtending(Kind kind)
    {
        return kind == Kind::extend || kind == Kind::nonJoiner || kind == Kind::linker;
    }

    Kind last = Kind::other;
    bool isHalfFlag = false;   ///< ends in the first letter of a flag
    bool isPictograph = false; ///< ends in a pictograph, with marks or a joiner behind it
    bool isConjunct = false;   ///< ends in a consonant, with marks behind it
    bool isLinked = false;     ///< one of those marks is a linker
};

/// The code point at `at`, which moves behind it.
char32_t next(QStringView text, qsizetype& at)
{
    const char16_t unit = text[at++].unicode();
    if (QChar::isHighSurrogate(unit) && at < text.size() && text[at].isLowSurrogate())
        return QChar::surrogateToUcs4(unit, text[at++].unicode());
    return unit;
}

} // namespace

qsizetype endOfCluster(QStringView text, qsizetype begin)
{
    qsizetype end = begin;
    const char32_t first = next(text, end);
    if (first == u'\r') // GB3
        return end < text.size() && text[end] == u'\n' ? end + 1 : end;
    Cluster cluster(kindOf(first));
    while (end < text.size()) {
        qsizetype after = end;
        const Kind kind = kindOf(next(text, after));
        if (!cluster.takes(kind))
            break;
        cluster.add(kind);
        end = after;
    }
    return end;
}

} // namespace vellumry
