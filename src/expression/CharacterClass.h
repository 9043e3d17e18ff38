#pragma once

#include <array>
#include <cstdint>

namespace vellumry::expression {

/// What a Unicode scalar can be part of. One scalar may belong to several classes.
enum class CharacterClass : std::uint8_t {
    whitespace = 1, ///< tab, line feed, carriage return and blank, no more
    digit = 2,
    hexDigit = 4,
    operatorCharacter = 8, ///< without "-" and ".", which have a rule of their own
    identifierHead = 16,
    identifierCharacter = 32
};

namespace detail {

/// The classes of the ASCII characters.
constexpr std::array<std::uint8_t, 128> asciiClasses()
{
    std::array<std::uint8_t, 128> classes{};
    const auto add = [&classes](const char* characters, auto... kinds) {
        for (; *characters != '\0'; ++characters)
            classes[static_cast<unsigned char>(*characters)] |=
                static_cast<std::uint8_t>((static_cast<unsigned>(kinds) | ...));
    };
    using enum CharacterClass;
    add("\t\n\r ", whitespace);
    add("0123456789", digit, hexDigit, identifierCharacter);
    add("ABCDEFabcdef", hexDigit);
    add("/=+!*%<>&|^~?:", operatorCharacter);
    add("#$@_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", identifierHead,
        identifierCharacter);
    return classes;
}

inline constexpr std::array<std::uint8_t, 128> ascii = asciiClasses();

[[nodiscard]] bool isBeyondAscii(char32_t scalar, CharacterClass kind);

} // namespace detail

[[nodiscard]] inline bool is(char32_t scalar, CharacterClass kind)
{
    return scalar < detail::ascii.size()
               ? (detail::ascii[scalar] & static_cast<std::uint8_t>(kind)) != 0
               : detail::isBeyondAscii(scalar, kind);
}

} // namespace vellumry::expression
