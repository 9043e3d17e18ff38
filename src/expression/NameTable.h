#pragma once

#include "expression/Precedence.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vellumry::expression {

/// Stands for a name. Names with a meaning of their own have fixed numbers, below
/// `NameTable::size`, so that precedences and built-in evaluators are found by number. All other
/// names are numbered from there on by the Subexpression that holds them.
using NameNumber = std::uint32_t;

/// A name that has a meaning, and how it binds as an infix operator.
struct KnownName {
    std::string_view name;
    Precedence precedence = Precedence::standard;
};

/// The names that have a meaning: operators with a precedence, and the built-in symbols. None is
/// longer than eight bytes, so that a name is compared as one number.
class NameTable {
public:
    using Entry = KnownName;

    static constexpr std::array entries = {
        Entry{",", {0, false}},
        Entry{"=", {1, true}},
        Entry{"*=", {1, true}},
        Entry{"/=", {1, true}},
        Entry{"%=", {1, true}},
        Entry{"+=", {1, true}},
        Entry{"-=", {1, true}},
        Entry{"<<=", {1, true}},
        Entry{">>=", {1, true}},
        Entry{"&=", {1, true}},
        Entry{"^=", {1, true}},
        Entry{"|=", {1, true}},
        Entry{":=", {1, true}},
        Entry{"?", {2, false}},
        Entry{":", {2, false}},
        Entry{"||", {3, false}},
        Entry{"or", {3, false}},
        Entry{"&&", {4, false}},
        Entry{"and", {4, false}},
        Entry{"<", {5, true}},
        Entry{"<=", {5, true}},
        Entry{">=", {5, true}},
        Entry{">", {5, true}},
        Entry{"==", {5, true}},
        Entry{"!=", {5, true}},
        Entry{"<>", {5, true}},
        Entry{"===", {5, true}},
        Entry{"!==", {5, true}},
        Entry{"lt", {5, true}},
        Entry{"le", {5, true}},
        Entry{"lte", {5, true}},
        Entry{"gt", {5, true}},
        Entry{"ge", {5, true}},
        Entry{"gte", {5, true}},
        Entry{"eq", {5, true}},
        Entry{"ne", {5, true}},
        Entry{"??", {6, false}},
        Entry{"?:", {6, false}},
        Entry{"is", {7, false}},
        Entry{"as", {7, false}},
        Entry{"isa", {7, false}},
        Entry{"..", {8, false}},
        Entry{"...", {8, false}},
        Entry{"..<", {8, false}},
        Entry{"+", {9, false}},
        Entry{"-", {9, false}},
        Entry{"|", {9, false}},
        Entry{"*", {10, false}},
        Entry{"/", {10, false}},
        Entry{"%", {10, false}},
        Entry{"&", {10, false}},
        Entry{"^", {11, false}},
        Entry{"<<", {12, false}},
        Entry{">>", {12, false}},
        Entry{">>>", {12, false}},
        Entry{"[]", {13, false}},
        Entry{"()"},
        Entry{"!"},
        Entry{"pi"},
        Entry{"true"},
        Entry{"false"},
        Entry{"sqrt"},
        Entry{"floor"},
        Entry{"ceil"},
        Entry{"round"},
        Entry{"cos"},
        Entry{"acos"},
        Entry{"sin"},
        Entry{"asin"},
        Entry{"tan"},
        Entry{"atan"},
        Entry{"abs"},
        Entry{"log"},
        Entry{"pow"},
        Entry{"atan2"},
        Entry{"mod"},
        Entry{"max"},
        Entry{"min"},
    };
    static constexpr NameNumber size = entries.size();

    /// The number of a name, or `size` for one without a meaning.
    [[nodiscard]] static constexpr NameNumber find(std::string_view name);

    [[nodiscard]] static constexpr Precedence precedence(NameNumber name)
    {
        return name < size ? entries[name].precedence : Precedence::standard;
    }
    [[nodiscard]] static constexpr Precedence precedence(std::string_view name)
    {
        return precedence(find(name));
    }

private:
    static constexpr std::size_t longest = sizeof(std::uint64_t);
    static constexpr std::size_t slotCount = 512; // sparse, so that most look-ups take one step

    struct Slot {
        std::uint64_t key = 0; // no name is empty
        NameNumber number = size;
    };
    using Slots = std::array<Slot, slotCount>;

    /// The bytes of a short name as one number.
    static constexpr std::uint64_t keyOf(std::string_view name)
    {
        std::uint64_t key = 0;
        for (const char character : name)
            key = (key << 8U) | static_cast<unsigned char>(character);
        return key;
    }

    static constexpr std::size_t slotOf(std::uint64_t key)
    {
        return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> 55U);
    }

    static constexpr Slots makeSlots()
    {
        Slots made{};
        for (NameNumber number = 0; number < size; ++number) {
            const std::uint64_t key = keyOf(entries[number].name);
            std::size_t index = slotOf(key);
            while (made[index].key != 0)
                index = (index + 1) % slotCount;
            made[index] = {key, number};
        }
        return made;
    }

    static const Slots slots;
};

inline constexpr NameTable::Slots NameTable::slots = makeSlots();

constexpr NameNumber NameTable::find(std::string_view name)
{
    if (name.empty() || name.size() > longest)
        return size;
    const std::uint64_t key = keyOf(name);
    std::size_t index = slotOf(key);
    while (slots[index].key != key && slots[index].key != 0)
        index = (index + 1) % slotCount;
    return slots[index].number;
}

/// The numbers of the names that rules speak of.
namespace name {

inline constexpr NameNumber comma = NameTable::find(",");
inline constexpr NameNumber plus = NameTable::find("+");
inline constexpr NameNumber times = NameTable::find("*");
inline constexpr NameNumber divide = NameTable::find("/");
inline constexpr NameNumber question = NameTable::find("?");
inline constexpr NameNumber colon = NameTable::find(":");
inline constexpr NameNumber ternary = NameTable::find("?:");
inline constexpr NameNumber subscript = NameTable::find("[]");
inline constexpr NameNumber call = NameTable::find("()");

} // namespace name

} // namespace vellumry::expression
