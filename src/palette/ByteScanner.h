#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace vellumry {

/// How often each byte occurs in what is to be scanned; a sample is enough.
using ByteHistogram = std::array<uint32_t, 256>;

/// A sequence of bytes prepared for being looked for.
struct Needle {
    /// `bytes` is not empty.
    Needle(std::string bytes, const ByteHistogram& histogram);

    [[nodiscard]] size_t size() const { return bytes.size(); }

    std::string bytes;
    /// The first bytes once more, filled up with zeros, for comparing them in one go.
    alignas(32) std::array<unsigned char, 32> head{};
    uint32_t headMask; ///< a bit for each byte of `head` that counts
    /// Where the two rarest bytes stand; these are looked for first. The same place twice in a
    /// needle of one byte.
    size_t rarest = 0;
    size_t secondRarest = 0;
};

/// Finds bytes in bytes, with the widest instructions that the processor has.
class ByteScanner {
public:
    enum class Instructions { portable, sse2, avx2 };

    /// How many bytes behind the end of what is scanned may be read; whatever they are, they change
    /// nothing.
    static constexpr size_t overrun = 64;

    [[nodiscard]] static bool supports(Instructions instructions);

    /// The widest instructions supported.
    [[nodiscard]] static Instructions best();

    /// The instructions must be supported.
    explicit ByteScanner(Instructions instructions = best());

    /// Where the needle first occurs between `begin` and `end`; null where it does not.
    [[nodiscard]] const unsigned char* find(const unsigned char* begin, const unsigned char* end,
                                            const Needle& needle) const
    {
        // Signed, as `begin` may lie behind `end`.
        if (end - begin < static_cast<std::ptrdiff_t>(needle.size()))
            return nullptr;
        return findStart(begin, end - needle.size(), needle);
    }

private:
    using Find = const unsigned char* (*)(const unsigned char* first, const unsigned char* last,
                                          const Needle& needle);

    [[nodiscard]] static Find function(Instructions instructions);

    Find findStart; ///< looks among the starts from `first` to `last`, both included
};

} // namespace vellumry
