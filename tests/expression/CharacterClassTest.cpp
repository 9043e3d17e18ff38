#include "expression/CharacterClass.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

namespace vellumry::expression {

namespace {

using Ranges = std::vector<std::pair<char32_t, char32_t>>;

/// Every scalar there is, against a plain list.
void expectClass(CharacterClass kind, std::u32string_view single, const Ranges& ranges)
{
    for (char32_t scalar = 0; scalar <= 0x110000; ++scalar) {
        bool isMember = single.find(scalar) != std::u32string_view::npos;
        for (const auto& [first, last] : ranges)
            isMember |= scalar >= first && scalar <= last;
        ASSERT_EQ(is(scalar, kind), isMember) << std::hex << static_cast<unsigned>(scalar);
    }
}

Ranges headRanges()
{
    Ranges ranges{
        {'A', 'Z'},       {'a', 'z'},       {0xB2, 0xB5},     {0xB7, 0xBA},     {0xBC, 0xBE},
        {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x167F},  {0x1681, 0x180D},
        {0x180F, 0x1DBF}, {0x1E00, 0x1FFF}, {0x200B, 0x200D}, {0x202A, 0x202E}, {0x2060, 0x206F},
        {0x2070, 0x20CF}, {0x2100, 0x218F}, {0x2460, 0x24FF}, {0x2776, 0x2793}, {0x2C00, 0x2DFF},
        {0x2E80, 0x2FFF}, {0x3004, 0x3007}, {0x3021, 0x302F}, {0x3031, 0xD7FF}, {0xF900, 0xFD3D},
        {0xFD40, 0xFDCF}, {0xFDF0, 0xFE1F}, {0xFE30, 0xFE44}, {0xFE47, 0xFFFD}};
    for (char32_t plane = 0x10000; plane <= 0xE0000; plane += 0x10000)
        ranges.emplace_back(plane, plane + 0xFFFD);
    return ranges;
}

constexpr std::u32string_view singleHeads = U"#$@_\u00A8\u00AA\u00AD\u00AF\u203F\u2040\u2054";

TEST(CharacterClassTest, whitespaceIsFourCharacters)
{
    expectClass(CharacterClass::whitespace, U"\t\n\r ", {});
}

TEST(CharacterClassTest, digitsAreAscii)
{
    expectClass(CharacterClass::digit, {}, {{'0', '9'}});
    expectClass(CharacterClass::hexDigit, {}, {{'0', '9'}, {'A', 'F'}, {'a', 'f'}});
}

TEST(CharacterClassTest, operatorCharacters)
{
    expectClass(CharacterClass::operatorCharacter,
                U"/=+!*%<>&|^~?:\u00AD\u00A9\u00AB\u00AC\u00AE\u00B0\u00B1\u00B6\u00BB\u00BF\u00D7"
                U"\u00F7\u2016\u2017",
                {{0xA1, 0xA7},
                 {0x2020, 0x2027},
                 {0x2030, 0x203E},
                 {0x2041, 0x2053},
                 {0x2055, 0x205E},
                 {0x2190, 0x23FF},
                 {0x2500, 0x2775},
                 {0x2794, 0x2BFF},
                 {0x2E00, 0x2E7F},
                 {0x3001, 0x3003},
                 {0x3008, 0x3030}});
}

TEST(CharacterClassTest, identifierHeads)
{
    expectClass(CharacterClass::identifierHead, singleHeads, headRanges());
}

TEST(CharacterClassTest, identifierCharacters)
{
    Ranges ranges = headRanges();
    ranges.insert(
        ranges.end(),
        {{'0', '9'}, {0x300, 0x36F}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0xFE20, 0xFE2F}});
    expectClass(CharacterClass::identifierCharacter, singleHeads, ranges);
}

} // namespace

} // namespace vellumry::expression
