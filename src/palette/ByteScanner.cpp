#include "palette/ByteScanner.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
#include <utility>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace vellumry {

namespace {

using Bytes = const unsigned char*;

Bytes findPortable(Bytes first, Bytes last, const Needle& needle)
{
    const unsigned char probe = static_cast<unsigned char>(needle.bytes[needle.rarest]);
    const unsigned char second = static_cast<unsigned char>(needle.bytes[needle.secondRarest]);
    while (first <= last) {
        const void* found =
            std::memchr(first + needle.rarest, probe, static_cast<size_t>(last - first) + 1);
        if (!found)
            return nullptr;
        first = static_cast<Bytes>(found) - needle.rarest;
        if (first[needle.secondRarest] == second &&
            std::memcmp(first, needle.bytes.data(), needle.size()) == 0)
            return first;
        ++first;
    }
    return nullptr;
}

#if defined(__x86_64__)

/// Compares what is behind the first `compared` bytes, which are known to be equal.
inline bool restEquals(Bytes start, const Needle& needle, size_t compared)
{
    return needle.size() <= compared ||
           std::memcmp(start + compared, needle.bytes.data() + compared,
                       needle.size() - compared) == 0;
}

// Both of the following test 64 starts a turn for the two rarest bytes at their places, and compare
// the whole needle only where both stand.

Bytes findSse2(Bytes first, Bytes last, const Needle& needle)
{
    constexpr std::ptrdiff_t width = 16;
    const __m128i probe = _mm_set1_epi8(needle.bytes[needle.rarest]);
    const __m128i second = _mm_set1_epi8(needle.bytes[needle.secondRarest]);
    const __m128i head = _mm_load_si128(reinterpret_cast<const __m128i*>(needle.head.data()));
    const uint32_t headMask = needle.headMask & 0xffff;

    for (; first <= last; first += 4 * width) {
        __m128i candidates[4];
        for (int i = 0; i < 4; ++i) {
            const auto* a = reinterpret_cast<const __m128i*>(first + needle.rarest) + i;
            const auto* b = reinterpret_cast<const __m128i*>(first + needle.secondRarest) + i;
            candidates[i] = _mm_and_si128(_mm_cmpeq_epi8(_mm_loadu_si128(a), probe),
                                          _mm_cmpeq_epi8(_mm_loadu_si128(b), second));
        }
        const __m128i any = _mm_or_si128(_mm_or_si128(candidates[0], candidates[1]),
                                         _mm_or_si128(candidates[2], candidates[3]));
        if (_mm_movemask_epi8(any) == 0)
            continue;
        for (std::ptrdiff_t i = 0; i < 4; ++i) {
            auto bits = static_cast<uint32_t>(_mm_movemask_epi8(candidates[i]));
            for (; bits != 0; bits &= bits - 1) {
                const Bytes start = first + i * width + std::countr_zero(bits);
                if (start > last)
                    return nullptr;
                const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(start));
                const auto equal =
                    static_cast<uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(text, head)));
                if ((~equal & headMask) == 0 && restEquals(start, needle, width))
                    return start;
            }
        }
    }
    return nullptr;
}

/// Scans are short and end at a hit: left to itself the processor reads too little ahead, and waits
/// for memory half of the time. Half as far ahead is slower than not at all.
constexpr std::ptrdiff_t prefetchDistance = 1024;

__attribute__((target("avx2,bmi"))) Bytes findAvx2(Bytes first, Bytes last, const Needle& needle)
{
    constexpr std::ptrdiff_t width = 32;
    const __m256i probe = _mm256_set1_epi8(needle.bytes[needle.rarest]);
    const __m256i second = _mm256_set1_epi8(needle.bytes[needle.secondRarest]);
    const __m256i head = _mm256_load_si256(reinterpret_cast<const __m256i*>(needle.head.data()));
    const uint32_t headMask = needle.headMask;

    for (; first <= last; first += 2 * width) {
        _mm_prefetch(reinterpret_cast<const char*>(first + prefetchDistance), _MM_HINT_T0);
        __m256i candidates[2];
        for (int i = 0; i < 2; ++i) {
            const auto* a = reinterpret_cast<const __m256i*>(first + needle.rarest) + i;
            const auto* b = reinterpret_cast<const __m256i*>(first + needle.secondRarest) + i;
            candidates[i] = _mm256_and_si256(_mm256_cmpeq_epi8(_mm256_loadu_si256(a), probe),
                                             _mm256_cmpeq_epi8(_mm256_loadu_si256(b), second));
        }
        const __m256i any = _mm256_or_si256(candidates[0], candidates[1]);
        if (_mm256_testz_si256(any, any) != 0)
            continue;
        const uint64_t lower = static_cast<uint32_t>(_mm256_movemask_epi8(candidates[0]));
        const uint64_t upper = static_cast<uint32_t>(_mm256_movemask_epi8(candidates[1]));
        for (uint64_t bits = upper << width | lower; bits != 0; bits &= bits - 1) {
            const Bytes start = first + std::countr_zero(bits);
            if (start > last)
                return nullptr;
            const __m256i text = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(start));
            const auto equal =
                static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(text, head)));
            if ((~equal & headMask) == 0 && restEquals(start, needle, width))
                return start;
        }
    }
    return nullptr;
}

#endif

} // namespace

Needle::Needle(std::string given, const ByteHistogram& histogram) : bytes(std::move(given))
{
    const size_t headSize = std::min(bytes.size(), head.size());
    std::copy_n(bytes.begin(), headSize, head.begin());
    headMask = headSize == head.size() ? ~uint32_t{0} : (uint32_t{1} << headSize) - 1;

    const auto frequency = [&](size_t i) {
        return histogram[static_cast<unsigned char>(bytes[i])];
    };
    for (size_t i = 1; i < bytes.size(); ++i) {
        if (frequency(i) < frequency(rarest))
            rarest = i;
    }
    secondRarest = rarest == 0 ? bytes.size() - 1 : 0;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i != rarest && frequency(i) < frequency(secondRarest))
            secondRarest = i;
    }
}

bool ByteScanner::supports(Instructions instructions)
{
#if defined(__x86_64__)
    return instructions != Instructions::avx2 ||
           (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi"));
#else
    return instructions == Instructions::portable;
#endif
}

ByteScanner::Instructions ByteScanner::best()
{
    for (const Instructions instructions : {Instructions::avx2, Instructions::sse2}) {
        if (supports(instructions))
            return instructions;
    }
    return Instructions::portable;
}

ByteScanner::Find ByteScanner::function([[maybe_unused]] Instructions instructions)
{
#if defined(__x86_64__)
    if (instructions == Instructions::avx2)
        return findAvx2;
    if (instructions == Instructions::sse2)
        return findSse2;
#endif
    return findPortable;
}

ByteScanner::ByteScanner(Instructions instructions) : findStart(function(instructions)) {}

} // namespace vellumry
