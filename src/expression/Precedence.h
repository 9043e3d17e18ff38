#pragma once

#include <cstdint>

namespace vellumry::expression {

/// How strongly an infix operator binds.
struct Precedence {
    std::int8_t level;
    bool isRightAssociative;

    /// Of what is in no table: as for "+".
    static const Precedence standard;

    /// True when `a op1 b op2 c` is `(a op1 b) op2 c`, this being op1's.
    [[nodiscard]] constexpr bool takesPrecedence(const Precedence& over) const
    {
        return level > over.level || (level == over.level && !isRightAssociative);
    }

    friend constexpr bool operator==(const Precedence&, const Precedence&) = default;
};

inline constexpr Precedence Precedence::standard{9, false};

} // namespace vellumry::expression
