#pragma once

#include "expression/Precedence.h"

#include <algorithm>
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
    static constexpr std::array entries = {
        KnownName{",", {0, false}},
        KnownName{"=", {1, true}},
        KnownName{"*=", {1, true}},
        KnownName{"/=", {1, true}},
        KnownName{"%=", {1, true}},
        KnownName{"+=", {1, true}},
        KnownName{"-=", {1, true}},
        KnownName{"<<=", {1, true}},
        KnownName{">>=", {1, true}},
        KnownName{"&=", {1, true}},
        KnownName{"^=", {1, true}},
        KnownName{"|=", {1, true}},
        KnownName{":=", {1, true}},
        KnownName{"?", {2, false}},
        KnownName{":", {2, false}},
        KnownName{"||", {3, false}},
        KnownName{"or", {3, false}},
        KnownName{"&&", {4, false}},
        KnownName{"and", {4, false}},
        KnownName{"<", {5, true}},
        KnownName{"<=", {5, true}},
        KnownName{">=", {5, true}},
        KnownName{">", {5, true}},
        KnownName{"==", {5, true}},
        KnownName{"!=", {5, true}},
        KnownName{"<>", {5, true}},
        KnownName{"===", {5, true}},
        KnownName{"!==", {5, true}},
        KnownName{"lt", {5, true}},
        KnownName{"le", {5, true}},
        KnownName{"lte", {5, true}},
        KnownName{"gt", {5, true}},
        KnownName{"ge", {5, true}},
        KnownName{"gte", {5, true}},
        KnownName{"eq", {5, true}},
        KnownName{"ne", {5, true}},
        KnownName{"??", {6, false}},
        KnownName{"?:", {6, false}},
        KnownName{"is", {7, false}},
        KnownName{"as", {7, false}},
        KnownName{"isa", {7, false}},
        KnownName{"..", {8, false}},
        KnownName{"...", {8, false}},
        KnownName{"..<", {8, false}},
        KnownName{"+", {9, false}},
        KnownName{"-", {9, false}},
        KnownName{"|", {9, false}},
        KnownName{"*", {10, false}},
        KnownName{"/", {10, false}},
        KnownName{"%", {10, false}},
        KnownName{"&", {10, false}},
        KnownName{"^", {11, false}},
        KnownName{"<<", {12, false}},
        KnownName{">>", {12, false}},
        KnownName{">>>", {12, false}},
        KnownName{"[]", {13, false}},
        KnownName{"()"},
        KnownName{"!"},
        KnownName{"pi"},
        KnownName{"true"},
        KnownName{"false"},
        KnownName{"sqrt"},
        KnownName{"floor"},
        KnownName{"ceil"},
        KnownName{"round"},
        KnownName{"cos"},
        KnownName{"acos"},
        KnownName{"sin"},
        KnownName{"asin"},
        KnownName{"tan"},
        KnownName{"atan"},
        KnownName{"abs"},
        KnownName{"log"},
        KnownName{"pow"},
        KnownName{"atan2"},
        KnownName{"mod"},
        KnownName{"max"},
        KnownName{"min"},
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

    static_assert(std::all_of(entries.begin(), entries.end(),
                              [](const KnownName& entry) { return entry.name.size() <= longest; }));

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
