#pragma once

#include <cstdint>
#include <string>

namespace vellumry::hotkey {

/// A set of modifier keys, as the bits that events and the stored settings carry. The four
/// modifiers are those of the product; which keys of the keyboard they are is the backend's affair
/// (on X11 command is Ctrl, option is Alt, control is Super).
struct ModifierFlags {
    std::uint64_t rawValue = 0;

    static const ModifierFlags command;
    static const ModifierFlags shift;
    static const ModifierFlags option;
    static const ModifierFlags control;

    /// From and to Carbon's mask; bits other than the four modifiers are dropped.
    [[nodiscard]] static ModifierFlags fromCarbon(std::uint32_t carbonModifiers);
    [[nodiscard]] std::uint32_t carbonFlags() const;

    /// "⌃⌥⇧⌘", or those of them that are set, in this order. UTF-8.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] constexpr bool contains(ModifierFlags other) const
    {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    constexpr ModifierFlags& operator|=(ModifierFlags other)
    {
        rawValue |= other.rawValue;
        return *this;
    }
    friend constexpr ModifierFlags operator|(ModifierFlags left, ModifierFlags right)
    {
        return {left.rawValue | right.rawValue};
    }
    friend constexpr ModifierFlags operator&(ModifierFlags left, ModifierFlags right)
    {
        return {left.rawValue & right.rawValue};
    }
    friend constexpr bool operator==(ModifierFlags, ModifierFlags) = default;
};

inline constexpr ModifierFlags ModifierFlags::command{0x100000};
inline constexpr ModifierFlags ModifierFlags::shift{0x20000};
inline constexpr ModifierFlags ModifierFlags::option{0x80000};
inline constexpr ModifierFlags ModifierFlags::control{0x40000};

/// Carbon's bits for the four modifiers.
inline constexpr std::uint32_t carbonCommandBit = 0x100;
inline constexpr std::uint32_t carbonShiftBit = 0x200;
inline constexpr std::uint32_t carbonOptionBit = 0x800;
inline constexpr std::uint32_t carbonControlBit = 0x1000;

} // namespace vellumry::hotkey
