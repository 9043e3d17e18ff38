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

    explicit ScalarView(std::string_view source) : text(source) {}

    [[nodiscard]] bool isEmpty() const { return offset == text.size(); }
    [[nodiscard]] std::size_t position() const { return offset; }
    /// Only to a position that this view has given.
    void setPosition(std::size_t position) { offset = position; }
    [[nodiscard]] std::string_view rest() const { return text.substr(offset); }
    /// What stands between an earlier position and the present one.
    [[nodiscard]] std::string_view textSince(std::size_t position) const
    {
        return text.substr(position, offset - position);
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
        offset += next.length;
        return next.scalar;
    }

    /// Consumes one scalar of the class and gives its text; else gives nothing.
    std::string_view scanCharacter(CharacterClass kind)
    {
        const std::size_t start = offset;
        if (!isEmpty()) {
            const Decoded next = decode();
            if (is(next.scalar, kind))
                offset += next.length;
        }
        return textSince(start);
    }
    bool scanCharacter(char character)
    {
        if (isEmpty() || text[offset] != character)
            return false;
        ++offset;
        return true;
    }
    /// Consumes the longest run of such scalars; nothing when there is none.
    std::string_view scanCharacters(CharacterClass kind)
    {
        const std::size_t start = offset;
        while (!isEmpty()) {
            const Decoded next = decode();
            if (!is(next.scalar, kind))
                break;
            offset += next.length;
        }
        return textSince(start);
    }
    std::string_view scanCharacters(char character)
    {
        const std::size_t start = offset;
        while (scanCharacter(character)) {
        }
        return textSince(start);
    }

    /// Tells whether it has consumed any.
    bool skipWhitespace() { return !scanCharacters(CharacterClass::whitespace).empty(); }
    /// Consumes up to the next whitespace.
    std::string_view scanToEndOfToken()
    {
        const std::size_t start = offset;
        while (!isEmpty() &&
               !is(static_cast<unsigned char>(text[offset]), CharacterClass::whitespace))
            ++offset;
        return textSince(start);
    }

private:
    struct Decoded {
        char32_t scalar;
        std::size_t length;
    };

    [[nodiscard]] Decoded decode() const
    {
        const auto byte = static_cast<unsigned char>(text[offset]);
        return byte < 0x80 ? Decoded{byte, 1} : decodeLong();
    }
    [[nodiscard]] Decoded decodeLong() const;

    std::string_view text;
    std::size_t offset = 0;
};

} // namespace vellumry::expression
