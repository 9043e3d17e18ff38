#pragma once

#include "expression/Error.h"
#include "expression/ScalarView.h"

#include <optional>
#include <string>
#include <string_view>

namespace vellumry::expression {

/// Reads single tokens. Each operation gives the token at the position and moves behind it, or
/// gives nothing and leaves the position.
class Scanner {
public:
    /// "12", ".5", "1e-3", "0x1F"; "5." is "5" with a point behind it.
    static std::string_view scanNumber(ScalarView& view);
    /// What a token of `scanNumber` stands for: nothing for "0x" alone. Too large ones are
    /// infinite.
    static std::optional<double> valueOf(std::string_view number);

    /// A word, which may have points inside and an apostrophe behind it.
    static std::string_view scanIdentifier(ScalarView& view);

    /// A run of operator characters, or a single "(", "[" or ",".
    static std::string_view scanOperator(ScalarView& view);

    struct QuotedToken {
        std::string name; ///< with both quotes, the escapes decoded
        std::string text; ///< as typed; only of a token with an error
        std::optional<Error> error;
    };
    /// A token in "`", "'" or double quotes.
    static std::optional<QuotedToken> scanQuoted(ScalarView& view);
};

} // namespace vellumry::expression
