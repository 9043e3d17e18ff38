#include "expression/Scanner.h"

#include "expression/Expression.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace vellumry::expression {

namespace {

using namespace std::string_literals;

/// The token, a stroke, and what is left.
template <typename Scan>
std::string scanned(std::string_view text, Scan scan)
{
    ScalarView view(text);
    std::string token(scan(view));
    return token + "|" + std::string(view.rest());
}

std::string number(std::string_view text)
{
    return scanned(text, Scanner::scanNumber);
}

std::string identifier(std::string_view text)
{
    return scanned(text, Scanner::scanIdentifier);
}

std::string operatorToken(std::string_view text)
{
    return scanned(text, Scanner::scanOperator);
}

/// The name of a quoted token, or its error.
std::string quoted(std::string_view text)
{
    return scanned(text, [](ScalarView& view) -> std::string {
        const auto token = Scanner::scanQuoted(view);
        if (!token)
            return "nothing";
        return token->error ? token->error->description() + " in " + token->text : token->name;
    });
}

double value(std::string_view text)
{
    return Scanner::valueOf(text).value_or(std::nan(""));
}

TEST(ScannerTest, numbers)
{
    EXPECT_EQ(number("12"), "12|");
    EXPECT_EQ(number("12a"), "12|a");
    EXPECT_EQ(number("1.5"), "1.5|");
    EXPECT_EQ(number(".5"), ".5|");
    EXPECT_EQ(number("1.5.5"), "1.5|.5");
    EXPECT_EQ(number("a"), "|a");
    EXPECT_EQ(number(""), "|");
    EXPECT_EQ(number("-1"), "|-1");
    EXPECT_EQ(number("\u0661"), "|\u0661"); // a digit, but no ASCII
}

TEST(ScannerTest, aPointNeedsDigits)
{
    EXPECT_EQ(number("5."), "5|.");
    EXPECT_EQ(number("5.e3"), "5|.e3"); // and no exponent is looked for
    EXPECT_EQ(number("1..2"), "1|..2");
    EXPECT_EQ(number("."), "|.");
    EXPECT_EQ(number(".e3"), "|.e3");
}

TEST(ScannerTest, exponents)
{
    EXPECT_EQ(number("1e3"), "1e3|");
    EXPECT_EQ(number("1E3"), "1E3|");
    EXPECT_EQ(number("1e+3"), "1e+3|");
    EXPECT_EQ(number("1e-3"), "1e-3|");
    EXPECT_EQ(number(".5e1"), ".5e1|");
    EXPECT_EQ(number("1e"), "1|e");
    EXPECT_EQ(number("1e+"), "1|e+");
    EXPECT_EQ(number("1e+-3"), "1|e+-3");
    EXPECT_EQ(number("1e3.5"), "1e3|.5");
}

TEST(ScannerTest, hexadecimalNumbers)
{
    EXPECT_EQ(number("0x1F"), "0x1F|");
    EXPECT_EQ(number("0x1fG"), "0x1f|G");
    EXPECT_EQ(number("0x"), "0x|");
    EXPECT_EQ(number("0xg"), "0x|g");
    EXPECT_EQ(number("0x1.5"), "0x1|.5"); // no fraction
    EXPECT_EQ(number("0X1F"), "0|X1F");
    EXPECT_EQ(number("00x1"), "00|x1");
    EXPECT_EQ(number("1x1"), "1|x1");
}

TEST(ScannerTest, valuesOfNumbers)
{
    EXPECT_EQ(value("0"), 0);
    EXPECT_EQ(value("007"), 7);
    EXPECT_EQ(value("999999999999999"), 999999999999999.0);
    EXPECT_EQ(value("9007199254740993"), 9007199254740992.0); // halfway, to even
    EXPECT_EQ(value("0.1"), 0.1);
    EXPECT_EQ(value(".5"), 0.5);
    EXPECT_EQ(value("1e3"), 1000);
    EXPECT_EQ(value("1E-2"), 0.01);
    EXPECT_EQ(value("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(value("5e-324"), 5e-324);
    EXPECT_EQ(value("2.4703282292062328e-324"), 5e-324);
}

TEST(ScannerTest, numbersOutOfRangeAreInfiniteOrZero)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(value("1e999"), infinity);
    EXPECT_EQ(value("1e99999999999999999999"), infinity);
    EXPECT_EQ(value("1e+309"), infinity);
    EXPECT_EQ(value("1" + std::string(400, '0')), infinity);
    EXPECT_EQ(value("1e-999"), 0);
    EXPECT_EQ(value("1e-99999999999999999999"), 0);
    EXPECT_EQ(value("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(value("0e999"), 0);
    EXPECT_EQ(value("0.0e99999999999999999999"), 0);
    // What the digits and the exponent take from each other.
    EXPECT_EQ(value("1" + std::string(400, '0') + "e-400"), 1);
    EXPECT_EQ(value("0." + std::string(399, '0') + "1e400"), 1);
    EXPECT_EQ(value("1" + std::string(400, '0') + "e-50"), infinity);
    EXPECT_EQ(value("0." + std::string(400, '0') + "1e50"), 0);
}

TEST(ScannerTest, valuesOfHexadecimalNumbers)
{
    EXPECT_EQ(value("0x1F"), 31);
    EXPECT_EQ(value("0x1e3"), 483); // the "e" is a digit
    EXPECT_EQ(value("0xffffffffffffffff"), 0x1p64);
    EXPECT_EQ(value("0xffffffffffffffffffff"), 0x1p80);
    EXPECT_EQ(value("0x20000000000001"), 0x1p53); // halfway, to even
    EXPECT_EQ(value("0x200000000000010000000000000000"), 0x1p117);
    EXPECT_EQ(value("0x200000000000010000000000000001"), 0x20000000000002p64);
    EXPECT_EQ(value("0x0000000000000000000000000000001"), 1);
    EXPECT_EQ(value("0x" + std::string(255, 'f')), 0x1p1020);
    EXPECT_EQ(value("0x" + std::string(257, 'f')), std::numeric_limits<double>::infinity());
    EXPECT_EQ(value("0x" + std::string(100000, '1')), std::numeric_limits<double>::infinity());
    EXPECT_FALSE(Scanner::valueOf("0x").has_value());
}

TEST(ScannerTest, theLocalePlaysNoPart)
{
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // Where the locale is not installed this stays as it was, and the rest must hold all the same.
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    EXPECT_EQ(value("1.5"), 1.5);
    EXPECT_EQ(Expression("1.5*3").description(), "4.5");
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(ScannerTest, identifiers)
{
    EXPECT_EQ(identifier("abc"), "abc|");
    EXPECT_EQ(identifier("a1 b"), "a1| b");
    EXPECT_EQ(identifier("1a"), "|1a");
    EXPECT_EQ(identifier("#$@_"), "#$@_|");
    EXPECT_EQ(identifier("\u00E9t\u00E9"), "\u00E9t\u00E9|");
    EXPECT_EQ(identifier("\u4E2D\u6587"), "\u4E2D\u6587|");
    EXPECT_EQ(identifier("\U0001F600"), "\U0001F600|");
    EXPECT_EQ(identifier("a\u0301"), "a\u0301|"); // an accent may follow, but not begin
    EXPECT_EQ(identifier("\u0301a"), "|\u0301a");
    EXPECT_EQ(identifier("a-b"), "a|-b");
    EXPECT_EQ(identifier(""), "|");
}

TEST(ScannerTest, pointsInIdentifiers)
{
    EXPECT_EQ(identifier("a.b"), "a.b|");
    EXPECT_EQ(identifier("a.b.c"), "a.b.c|");
    EXPECT_EQ(identifier(".a"), ".a|");
    EXPECT_EQ(identifier("a.5"), "a.5|");
    EXPECT_EQ(identifier("a."), "a|.");
    EXPECT_EQ(identifier("a.b."), "a.b|.");
    EXPECT_EQ(identifier("a..b"), "a|..b");
    EXPECT_EQ(identifier("a.b..c"), "a.b|..c");
    EXPECT_EQ(identifier("."), "|.");
    EXPECT_EQ(identifier("..a"), "|..a");
    EXPECT_EQ(identifier(".+"), "|.+");
}

TEST(ScannerTest, anApostropheMayEndAnIdentifier)
{
    EXPECT_EQ(identifier("x'"), "x'|");
    EXPECT_EQ(identifier("x''"), "x'|'");
    EXPECT_EQ(identifier("x'y"), "x'|y");
    EXPECT_EQ(identifier("x.'"), "x|.'");
    EXPECT_EQ(identifier(".x'"), ".x'|");
}

TEST(ScannerTest, operators)
{
    EXPECT_EQ(operatorToken("+1"), "+|1");
    EXPECT_EQ(operatorToken("*+3"), "*+|3");
    EXPECT_EQ(operatorToken("<=>"), "<=>|");
    EXPECT_EQ(operatorToken("\u00D7\u2260"), "\u00D7\u2260|");
    EXPECT_EQ(operatorToken("a"), "|a");
    EXPECT_EQ(operatorToken(""), "|");
    EXPECT_EQ(operatorToken("\u2200x"), "\u2200|x");
}

TEST(ScannerTest, aDashEndsAnOperatorButMayBeginOne)
{
    EXPECT_EQ(operatorToken("-"), "-|");
    EXPECT_EQ(operatorToken("--"), "--|");
    EXPECT_EQ(operatorToken("-+"), "-+|");
    EXPECT_EQ(operatorToken("--+*"), "--+*|");
    EXPECT_EQ(operatorToken("-+-"), "-+|-");
    EXPECT_EQ(operatorToken("+-"), "+|-");
    EXPECT_EQ(operatorToken("*-"), "*|-");
}

TEST(ScannerTest, pointsBeginAnOperator)
{
    EXPECT_EQ(operatorToken("."), ".|");
    EXPECT_EQ(operatorToken("..."), "...|");
    EXPECT_EQ(operatorToken("..<"), "..<|");
    EXPECT_EQ(operatorToken("..-"), "..|-");
    EXPECT_EQ(operatorToken("+."), "+|.");
    EXPECT_EQ(operatorToken("-."), "-|.");
}

TEST(ScannerTest, bracketsAndCommasStandAlone)
{
    EXPECT_EQ(operatorToken("(("), "(|(");
    EXPECT_EQ(operatorToken("[["), "[|[");
    EXPECT_EQ(operatorToken(",,"), ",|,");
    EXPECT_EQ(operatorToken("+("), "+|(");
    EXPECT_EQ(operatorToken(")"), "|)");
    EXPECT_EQ(operatorToken("]"), "|]");
    EXPECT_EQ(operatorToken("{"), "|{");
}

TEST(ScannerTest, quotedTokens)
{
    EXPECT_EQ(quoted("'a b' c"), "'a b'| c");
    EXPECT_EQ(quoted("\"it's\""), "\"it's\"|");
    EXPECT_EQ(quoted("`a`"), "`a`|");
    EXPECT_EQ(quoted("''"), "''|");
    EXPECT_EQ(quoted("a"), "nothing|a");
    EXPECT_EQ(quoted(""), "nothing|");
}

TEST(ScannerTest, escapes)
{
    EXPECT_EQ(quoted(R"("\0\n\r\t")"), "\"\0\n\r\t\"|"s);
    EXPECT_EQ(quoted(R"("\u{41}\u{1F600}\u{E9}\u{20AC}")"), "\"A\U0001F600\u00E9\u20AC\"|");
    EXPECT_EQ(quoted(R"("\u{10FFFF}\u{000041}")"), "\"\U0010FFFFA\"|");
    EXPECT_EQ(quoted(R"("\"\\\q")"), "\"\"\\q\"|");
    EXPECT_EQ(quoted("'\\\u00E9'"), "'\u00E9'|");
}

TEST(ScannerTest, badEscapes)
{
    EXPECT_EQ(quoted(R"("\u{}")"), R"(Unexpected token `}` in "\u{}|")");
    EXPECT_EQ(quoted(R"("\u{12" x)"), R"(Unexpected token `"` in "\u{12"| x)");
    EXPECT_EQ(quoted(R"("\u{12)"), R"(Missing `}` in "\u{12|)");
    EXPECT_EQ(quoted(R"("\u{12 })"), R"(Missing `}` in "\u{12| })");
    EXPECT_EQ(quoted(R"("\u{)"), R"(Missing `}` in "\u{|)");
    EXPECT_EQ(quoted(R"("\u)"), R"(Missing `}` in "\u|)");
    EXPECT_EQ(quoted(R"("\ux" y)"), R"(Unexpected token `x"` in "\ux"| y)");
    EXPECT_EQ(quoted(R"("\u{g}")"), R"(Unexpected token `g}"` in "\u{g}"|)");
}

TEST(ScannerTest, escapesOfWhatIsNoScalar)
{
    EXPECT_EQ(quoted(R"("\u{D800}")"), R"(Unexpected token `D800}"` in "\u{D800}"|)");
    EXPECT_EQ(quoted(R"("\u{110000}")"), R"(Unexpected token `110000}"` in "\u{110000}"|)");
    EXPECT_EQ(quoted(R"("\u{FFFFFFFFFF}" a)"),
              R"(Unexpected token `FFFFFFFFFF}"` in "\u{FFFFFFFFFF}"| a)");
}

TEST(ScannerTest, quotesThatAreNotClosed)
{
    EXPECT_EQ(quoted("'"), "Unexpected token `'` in '|");
    EXPECT_EQ(quoted("'ab"), "Missing `'` in 'ab|");
    EXPECT_EQ(quoted("\"a'"), "Missing `\"` in \"a'|");
    EXPECT_EQ(quoted("'\\"), "Missing `'` in '\\|");
    EXPECT_EQ(quoted("'\\'"), "Missing `'` in '\\'|");
}

TEST(ScannerTest, validIdentifiers)
{
    for (const char* text :
         {"a", "a.b", ".a", "x'", "_1", "'quoted text'", "`a`", "\"\\n\"", "\u00E9"})
        EXPECT_TRUE(Expression::isValidIdentifier(text)) << text;
    for (const char* text :
         {"", "1", "a b", " a", "a.", ".", "a+", "'open", "'a'b", "\"\\u{}\"", "x''"})
        EXPECT_FALSE(Expression::isValidIdentifier(text)) << text;
}

TEST(ScannerTest, validOperators)
{
    for (const char* text : {"+", "--", "-+", "...", "<=>", ",", "\u00D7", "?:"})
        EXPECT_TRUE(Expression::isValidOperator(text)) << text;
    for (const char* text : {"", "(", "[", ")", "]", "a", "+-", "+.", "+ ", "((", "[]", "()"})
        EXPECT_FALSE(Expression::isValidOperator(text)) << text;
}

TEST(ScalarViewTest, readsScalars)
{
    ScalarView view("a\u00E9\u20AC\U0001F600");
    EXPECT_EQ(view.first(), U'a');
    EXPECT_EQ(view.popFirst(), U'a');
    EXPECT_EQ(view.popFirst(), U'\u00E9');
    EXPECT_EQ(view.popFirst(), U'\u20AC');
    EXPECT_EQ(view.first(), U'\U0001F600');
    EXPECT_EQ(view.popFirst(), U'\U0001F600');
    EXPECT_EQ(view.first(), std::nullopt);
    EXPECT_EQ(view.popFirst(), std::nullopt);
    view.setPosition(1);
    EXPECT_EQ(view.first(), U'\u00E9');
}

TEST(ScalarViewTest, bytesOutsideOfValidTextAreScalarsWithoutAClass)
{
    const std::string_view broken[] = {"\x80",             // nothing goes before it
                                       "\xC3",             // the end is missing
                                       "\xC3(",            // something else follows
                                       "\xC0\x80",         // longer than need be
                                       "\xE0\x80\x80",     // the same
                                       "\xF0\x80\x80\x80", // the same
                                       "\xED\xA0\x80",     // half of a pair
                                       "\xF4\x90\x80\x80", // beyond the last scalar
                                       "\xF8",
                                       "\xFF"};
    for (const std::string_view text : broken) {
        ScalarView view(text);
        EXPECT_EQ(view.popFirst(), ScalarView::invalid);
        EXPECT_EQ(view.position(), 1U);
    }
    using enum CharacterClass;
    for (const CharacterClass kind :
         {whitespace, digit, hexDigit, operatorCharacter, identifierHead, identifierCharacter})
        EXPECT_FALSE(is(ScalarView::invalid, kind));
}

TEST(ScalarViewTest, scansRuns)
{
    ScalarView view(" \t\n\rab \u00A0c");
    EXPECT_TRUE(view.skipWhitespace());
    EXPECT_FALSE(view.skipWhitespace());
    EXPECT_EQ(view.scanToEndOfToken(), "ab");
    EXPECT_TRUE(view.skipWhitespace());
    EXPECT_FALSE(view.skipWhitespace()); // a blank that does not break is none
    EXPECT_EQ(view.scanToEndOfToken(), "\u00A0c");
    EXPECT_TRUE(view.isEmpty());
    EXPECT_EQ(view.scanToEndOfToken(), "");
}

} // namespace

} // namespace vellumry::expression
