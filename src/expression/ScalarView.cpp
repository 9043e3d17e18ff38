#include "expression/ScalarView.h"

namespace vellumry::expression {

ScalarView::Decoded ScalarView::decodeLong() const
{
    constexpr Decoded broken{invalid, 1};
    const auto byteAt = [this](std::size_t index) -> char32_t {
        return index < rest().size() ? static_cast<unsigned char>(at[index]) : 0;
    };
    const char32_t head = byteAt(0);
    const std::size_t length = head >= 0xF0 ? 4 : head >= 0xE0 ? 3 : 2;
    if (head < 0xC2 || head > 0xF4)
        return broken;
    char32_t scalar = head & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const char32_t next = byteAt(i);
        if ((next & 0xC0U) != 0x80)
            return broken;
        scalar = (scalar << 6U) | (next & 0x3FU);
    }
    const bool isTooLong = (length == 3 && scalar < 0x800) || (length == 4 && scalar < 0x10000);
    const bool isSurrogate = scalar >= 0xD800 && scalar <= 0xDFFF;
    if (isTooLong || isSurrogate || scalar > 0x10FFFF)
        return broken;
    return {scalar, length};
}

} // namespace vellumry::expression
