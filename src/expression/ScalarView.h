#pragma once

#include "expression/CharacterClass.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace vellumry::expression {

/// A text, read scalar by scalar from a position that each scanning operation moves forward and
/// that can be put back. It does not own the text.
///
/// A byte that is no part of valid UTF-8 is read as a scalar of its own, which belongs to no class:
/// nothing but a quoted token can hold it.
class ScalarView {
public:
    /// What a byte outside of valid UTF-8 is read as.
    static constexpr char32_t invalid = 0x110000;

    explicit ScalarView(std::string_view source)
        : begin(source.data()), at(begin), end(begin + source.size())
    {
    }

    [[nodiscard]] bool isEmpty() const { return at == end; }
    [[nodiscard]] std::size_t position() const { return static_cast<std::size_t>(at - begin); }
    /// Only to a position that this view has given.
    void setPosition(std::size_t position) { at = begin + position; }
    [[nodiscard]] std::string_view rest() const { return {at, static_cast<std::size_t>(end - at)}; }
    /// Whether a character stands at the position.
    [[nodiscard]] bool startsWith(char character) const { return at != end && *at == character; }
    /// What stands between an earlier position and the present one.
    [[nodiscard]] std::string_view textSince(std::size_t position) const
    {
        return from(begin + position);
    }

    [[nodiscard]] std::optional<char32_t> first() const
    {
        return isEmpty() ? std::nullopt : std::optional(decode().scalar);
    }
    std::optional<char32_t> popFirst()
    {
        if (isEmpty())
            return std::nullopt;
        const Decoded next = decode();
        at += next.length;
        return next.scalar;
    }

    /// Consumes one scalar of the class and gives its text; else gives nothing.
    std::string_view scanCharacter(CharacterClass kind)
    {
        const char* const start = at;
        if (!isEmpty()) {
            const Decoded next = decode();
            if (is(next.scalar, kind))
                at += next.length;
        }
        return from(start);
    }
    bool scanCharacter(char character)
    {
        if (!startsWith(character))
            return false;
        ++at;
        return true;
    }
    /// Consumes the longest run of such scalars; nothing when there is none.
    std::string_view scanCharacters(CharacterClass kind)
    {
        const char* const start = at;
        while (!isEmpty()) {
            const Decoded next = decode();
            if (!is(next.scalar, kind))
                break;
            at += next.length;
        }
        return from(start);
    }
    std::string_view scanCharacters(char character)
    {
        const char* const start = at;
        while (scanCharacter(character)) {
        }
        return from(start);
    }

    /// Tells whether it has consumed any.
    bool skipWhitespace() { return !scanCharacters(CharacterClass::whitespace).empty(); }
    /// Consumes up to the next whitespace.
    std::string_view scanToEndOfToken()
    {
        const char* const start = at;
        while (!isEmpty() && !is(static_cast<unsigned char>(*at), CharacterClass::whitespace))
            ++at;
        return from(start);
    }

private:
    struct Decoded {
        char32_t scalar;
        std::size_t length;
    };

    [[nodiscard]] Decoded decode() const
    {
        const auto byte = static_cast<unsigned char>(*at);
        return byte < 0x80 ? Decoded{byte, 1} : decodeLong();
    }
    [[nodiscard]] Decoded decodeLong() const;

    [[nodiscard]] std::string_view from(const char* start) const
    {
        return {start, static_cast<std::size_t>(at - start)};
    }

    const char* begin;
    const char* at;
    const char* end;
};

} // namespace vellumry::expression
