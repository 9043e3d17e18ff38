#include "hotkey/Identifier.h"

#include <random>

namespace vellumry::hotkey {

Identifier Identifier::make()
{
    std::random_device source;
    std::uniform_int_distribution<unsigned> anyByte(0, 0xFF);
    Identifier identifier;
    for (std::uint8_t& byte : identifier.bytes)
        byte = static_cast<std::uint8_t>(anyByte(source));
    // The marks of a random UUID: version 4, variant 1.
    identifier.bytes[6] = static_cast<std::uint8_t>((identifier.bytes[6] & 0x0FU) | 0x40U);
    identifier.bytes[8] = static_cast<std::uint8_t>((identifier.bytes[8] & 0x3FU) | 0x80U);
    return identifier;
}

} // namespace vellumry::hotkey
