#include "hotkey/ModifierFlags.h"

#include <array>
#include <string_view>

namespace vellumry::hotkey {

namespace {

struct ModifierRow {
    ModifierFlags flag;
    std::uint32_t carbonBit;
    std::string_view symbol;
};

// In the order of the description.
constexpr std::array<ModifierRow, 4> modifierRows{{
    {ModifierFlags::control, carbonControlBit, "⌃"},
    {ModifierFlags::option, carbonOptionBit, "⌥"},
    {ModifierFlags::shift, carbonShiftBit, "⇧"},
    {ModifierFlags::command, carbonCommandBit, "⌘"},
}};

} // namespace

ModifierFlags ModifierFlags::fromCarbon(std::uint32_t carbonModifiers)
{
    ModifierFlags flags;
    for (const ModifierRow& row : modifierRows) {
        if ((carbonModifiers & row.carbonBit) != 0)
            flags |= row.flag;
    }
    return flags;
}

std::uint32_t ModifierFlags::carbonFlags() const
{
    std::uint32_t mask = 0;
    for (const ModifierRow& row : modifierRows) {
        if (contains(row.flag))
            mask |= row.carbonBit;
    }
    return mask;
}

std::string ModifierFlags::description() const
{
    std::string text;
    for (const ModifierRow& row : modifierRows) {
        if (contains(row.flag))
            text += row.symbol;
    }
    return text;
}

} // namespace vellumry::hotkey
