#include "expression/Expression.h"
#include "expression/ReferenceExpression.h"
#include "expression/readsBack.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace vellumry::expression {

namespace {

std::string printed(std::string_view text)
{
    return Expression::parse(text, false).description();
}

/// Checks that a text prints as it stands, and so reads back.
void expectKept(const std::vector<std::string>& texts)
{
    for (const std::string& text : texts)
        EXPECT_EQ(printed(text), text);
}

TEST(PrinterTest, literals)
{
    EXPECT_EQ(printed("1.0"), "1");
    EXPECT_EQ(printed(".5"), "0.5");
    EXPECT_EQ(printed("0x1F"), "31");
    EXPECT_EQ(printed("1e20"), "1e+20");
    EXPECT_EQ(printed("(((7)))"), "7");
}

TEST(PrinterTest, anErrorPrintsItsText)
{
    EXPECT_EQ(printed("1 +  0x"), "1 +  0x");
    EXPECT_EQ(Subexpression::error(Error::message("m"), "as typed").description(), "as typed");
}

TEST(PrinterTest, infixOperatorsHaveOneBlankOnEachSide)
{
    EXPECT_EQ(printed("1+2"), "1 + 2");
    EXPECT_EQ(printed("a  or  b"), "a or b");
    EXPECT_EQ(printed("2 -3"), "2 - 3");
    EXPECT_EQ(printed("1 , 2"), "1, 2");
    EXPECT_EQ(printed("a?b:c"), "a ? b : c");
    EXPECT_EQ(printed("a?:b"), "a ?: b");
    EXPECT_EQ(printed("2 ( 3 , 4 )"), "2(3, 4)");
    EXPECT_EQ(printed("2 [ 3 ]"), "2[3]");
}

TEST(PrinterTest, parenthesesOnlyWhereTheTreeNeedsThem)
{
    EXPECT_EQ(printed("(1+2)+3"), "1 + 2 + 3");
    EXPECT_EQ(printed("(1*2)+(3*4)"), "1 * 2 + 3 * 4");
    EXPECT_EQ(printed("1<(2<3)"), "1 < 2 < 3");
    expectKept({"1 + (2 + 3)", "(1 + 2) * 3", "1 - (2 - 3)", "2 * (3 + 4)", "(1 < 2) < 3",
                "(1 = 2) = 3", "1, (2, 3)", "(1, 2) + 3", "1 ^ (2 ^ 3)"});
}

TEST(PrinterTest, ternaries)
{
    EXPECT_EQ(printed("(a ? b : c) ? d : e"), "a ? b : c ? d : e");
    EXPECT_EQ(printed("(a || b) ? (c + d) : (e == f)"), "a || b ? c + d : e == f");
    expectKept({"a ? b : (c ? d : e)", "a ? (b ? c : d) : e", "(a = b) ? c : d", "(a ? b : c) || d",
                "a == (b ? c : d)", "x = a ? b : c", "a ? (b, c) : d"});
}

TEST(PrinterTest, prefixAndPostfixStandDirectlyAtTheirArgument)
{
    EXPECT_EQ(printed("- 5"), "-5");
    EXPECT_EQ(printed("a !"), "a!");
    expectKept({"-a", "!f(1)", "-a[1]", "-[1]", "a!", "f(1)!", "a[1]!", "2x", "f(1)x"});
}

TEST(PrinterTest, anArgumentThatIsAnOperatorNodeGetsParentheses)
{
    EXPECT_EQ(printed("- - 5"), "-(-5)");
    expectKept({"-(1 + 2)", "(1 + 2)!", "(-a)!", "-(a!)", "-(2(3))", "-(2[3])", "(a!)?"});
}

TEST(PrinterTest, anArgumentThatWouldRunIntoTheOperatorGetsParentheses)
{
    // As numbers, names and operators they would be other tokens.
    expectKept({"(2)e3", "(0)x1", "(a)b", "(a)'b'", ".(x)", ".(5)", "((a)'b')!"});
    EXPECT_EQ(printed("2 e"), "2e");
    EXPECT_EQ(printed("-.x"), "-.x");
}

TEST(PrinterTest, callsAndArrays)
{
    EXPECT_EQ(printed("f ( 1,2 )"), "f(1, 2)");
    EXPECT_EQ(printed("f()"), "f()");
    EXPECT_EQ(printed("[1,2]"), "[1, 2]");
    EXPECT_EQ(printed("[]"), "[]");
    EXPECT_EQ(printed("a[1]"), "a[1]");
    expectKept({"f((1, 2), 3)", "[(1, 2)]", "a[(1, 2)]", "2((3, 4))", "2[(3, 4)]", "f(g(1), [2])"});
}

TEST(PrinterTest, whatIsCalledGetsParenthesesWhereTheTreeNeedsThem)
{
    expectKept({"(1 + 2)(3)", "(-a)(3)", "(a!)(3)", "(a ? b : c)(3)", "(1 + 2)[3]", "2(3)(4)",
                "2[3](4)", "(2(3))[4]", "(2(3)) * 4", "2[3] * 4"});
}

TEST(PrinterTest, quotedNamesGetTheirEscapesBack)
{
    EXPECT_EQ(printed(R"("\0\n\r\t")"), R"("\0\n\r\t")");
    EXPECT_EQ(printed(R"("\u{1}\u{1f}\u{7F}\u{9f}")"), R"("\u{1}\u{1F}\u{7F}\u{9F}")");
    EXPECT_EQ(printed(R"("\u{E9}\u{1F600}")"), "\"\u00E9\U0001F600\"");
    EXPECT_EQ(printed(R"("\q")"), R"("q")");
    // A quote or a backslash inside would end the token or begin an escape.
    EXPECT_EQ(printed(R"("a\"b\\c")"), R"("a\u{22}b\u{5C}c")");
    EXPECT_EQ(printed(R"('"')"), R"('"')");
    expectKept({R"('a\nb'(1))", R"('a\nb'[1])", R"(1 'a\nb' 2)", "`x`!"});
    EXPECT_EQ(Subexpression::symbol(Symbol::variable("'")).description(), "'");
    EXPECT_EQ(Subexpression::symbol(Symbol::variable("'a\n")).description(), "'a\\n");
    EXPECT_EQ(Subexpression::symbol(Symbol::variable("a\nb")).description(), "a\nb");
}

TEST(PrinterTest, bareOperatorsPrintTheirNames)
{
    EXPECT_EQ(Subexpression::symbol(Symbol::infix("+")).description(), "+");
    EXPECT_EQ(Subexpression::symbol(Symbol::prefix("-")).description(), "-");
    EXPECT_EQ(Subexpression::symbol(Symbol::postfix("!")).description(), "!");
}

TEST(PrinterTest, foldedNumbersPrintTheirSigns)
{
    EXPECT_EQ(Expression("2 - 5").description(), "-3");
    EXPECT_EQ(Expression("x - (2 - 5)").description(), "x - -3");
    EXPECT_EQ(Expression("(2 - 5)(x)").description(), "(-3)(x)");
    EXPECT_EQ(Expression("- x(2 - 5)").description(), "-x(-3)");
}

TEST(PrinterTest, someTreesPrintATextThatReadsOtherwise)
{
    const ParsedExpression parsed = Expression::parse("a + (b!) + c", false);
    EXPECT_EQ(parsed.description(), "a + b! + c");
    EXPECT_NE(Expression::parse(parsed.description(), false).root, parsed.root);
    EXPECT_FALSE(test::readsBack(parsed.root));
}

/// Trees such as the parser can make, of all kinds.
class RandomTrees {
public:
    explicit RandomTrees(unsigned seed) : random(seed) {}

    Subexpression tree(int depth, bool isFirst = true)
    {
        switch (depth == 0 ? below(2) : below(10)) {
        case 0:
            return Subexpression::literal(static_cast<double>(below(1000)) / 8);
        case 1:
            return Subexpression::symbol(
                Symbol::variable(one({"a", "b.c", ".d", "x'", "'q u'", "\"\n\"", "\u00E9", "_1"})));
        case 2:
            return Subexpression::symbol(Symbol::prefix(one({"-", "!", "+", "~~", ".", "--"})),
                                         {tree(depth - 1)});
        case 3:
            if (!isFirst)
                return tree(depth - 1, false);
            return Subexpression::symbol(Symbol::postfix(one({"!", "-", "e", "x1", ".", "'q'"})),
                                         {tree(depth - 1)});
        case 4: {
            const std::vector<Subexpression> all = arguments(depth, below(4));
            return Subexpression::symbol(
                Symbol::function(one({"f", "'g'", "[]", "max"}), static_cast<int>(all.size())),
                all);
        }
        case 5:
            return Subexpression::symbol(Symbol::array(one({"a", "b"})), {tree(depth - 1)});
        case 6:
            return ternary(depth, isFirst);
        case 7:
            return called(depth, isFirst);
        default:
            return infix(depth, isFirst);
        }
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    std::string one(const std::vector<std::string>& names)
    {
        return names[below(static_cast<unsigned>(names.size()))];
    }

    std::vector<Subexpression> arguments(int depth, unsigned count)
    {
        std::vector<Subexpression> all;
        for (unsigned i = 0; i < count; ++i)
            all.push_back(tree(depth - 1));
        return all;
    }

    Subexpression infix(int depth, bool isFirst)
    {
        const std::string name =
            one({"+", "-",  "*",  "/",   "^",  "<",  "==", "=",  "or",     "&&", "?",
                 ",", "??", "..", "foo", "-+", "<<", "?:", "is", "\u00D7", "..."});
        return Subexpression::symbol(Symbol::infix(name),
                                     {tree(depth - 1, isFirst), tree(depth - 1, false)});
    }

    Subexpression ternary(int depth, bool isFirst)
    {
        return Subexpression::symbol(
            Symbol::infix("?:"),
            {tree(depth - 1, isFirst), tree(depth - 1, false), tree(depth - 1, false)});
    }

    /// A call or subscript of anything but a variable, which would be a function or an array.
    Subexpression called(int depth, bool isFirst)
    {
        Subexpression target = tree(depth - 1, isFirst);
        if (target.kind() == Subexpression::Kind::symbol &&
            target.symbol().kind() == Symbol::Case::variable)
            return target;
        std::vector<Subexpression> all = arguments(depth, below(3));
        if (below(2) == 0 || all.empty()) {
            all.insert(all.begin(), target);
            return Subexpression::symbol(Symbol::infix("()"), all);
        }
        return Subexpression::symbol(Symbol::infix("[]"), {target, all.front()});
    }

    std::mt19937 random;
};

TEST(PrinterTest, randomTreesReadBackWhereverThePrintingAllows)
{
    RandomTrees trees(1);
    int compared = 0;
    for (int i = 0; i < 20000; ++i) {
        const Subexpression tree = trees.tree(i % 5);
        if (!test::readsBack(tree))
            continue;
        ++compared;
        const std::string text = tree.description();
        const ParsedExpression parsed = Expression::parse(text, false);
        ASSERT_EQ(test::dump(parsed.root), test::dump(tree)) << text;
        ASSERT_EQ(parsed.root, tree);
        ASSERT_EQ(parsed.description(), text);
    }
    EXPECT_GT(compared, 12000);
}

} // namespace

} // namespace vellumry::expression
