#pragma once

#include "expression/ParsedExpression.h"

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace vellumry::expression {

/// What texts have been read as, failures included. It has no limit; only `clear` empties it.
/// Any thread.
class ParseCache {
public:
    /// The one of the process.
    [[nodiscard]] static ParseCache& shared();

    /// What is stored for the text, or else what `parse` makes of it, which is then stored.
    [[nodiscard]] ParsedExpression get(std::string_view text,
                                       ParsedExpression (*parse)(std::string_view));

    void clear();
    void clear(std::string_view text);

    [[nodiscard]] std::size_t size() const;

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept
        {
            return std::hash<std::string_view>()(text);
        }
    };

    mutable std::mutex mutex;
    std::unordered_map<std::string, ParsedExpression, Hash, std::equal_to<>> entries;
};

} // namespace vellumry::expression
