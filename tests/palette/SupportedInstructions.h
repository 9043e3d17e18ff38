#pragma once

#include "palette/ByteScanner.h"

#include <vector>

namespace vellumry::test {

/// The instructions that this machine can scan with; tests run with each of them.
[[nodiscard]] inline std::vector<ByteScanner::Instructions> supportedInstructions()
{
    using enum ByteScanner::Instructions;
    std::vector<ByteScanner::Instructions> result;
    for (const auto instructions : {portable, sse2, avx2}) {
        if (ByteScanner::supports(instructions))
            result.push_back(instructions);
    }
    return result;
}

} // namespace vellumry::test
