// Expressions: parse, fold and evaluate of short ones, against a packaged evaluator and against the
// least that can be done, and how the cost of a parse grows with the length of the text.

#include "expression/Expression.h"
#include "support/Ratio.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <muParser.h>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace vellumry;
using bench::keep;
using expression::Expression;

const std::vector<std::string> shortExpressions{"2+3*4",           "sqrt(2)*pi",
                                                "max(1,2,3)+10%3", "(1+2)*(3-4)/5",
                                                "1.5*2 - 0.25",    "pow(2, 10) - abs(-24)"};

/// The least that can be done: a descent over the text that computes as it reads, without a tree,
/// for the symbols that the short expressions use.
class Descent {
public:
    explicit Descent(std::string_view source) : at(source.data()), end(at + source.size()) {}

    double sum()
    {
        double value = product();
        for (;;) {
            if (accept('+'))
                value += product();
            else if (accept('-'))
                value -= product();
            else
                return value;
        }
    }

private:
    double product()
    {
        double value = operand();
        for (;;) {
            if (accept('*'))
                value *= operand();
            else if (accept('/'))
                value /= operand();
            else if (accept('%'))
                value = std::fmod(value, operand());
            else
                return value;
        }
    }

    double operand()
    {
        skipBlanks();
        if (accept('-'))
            return -operand();
        if (accept('(')) {
            const double value = sum();
            accept(')');
            return value;
        }
        if (at != end && *at >= 'a' && *at <= 'z')
            return word();
        double value = 0;
        at = std::from_chars(at, end, value).ptr;
        return value;
    }

    double word()
    {
        const char* const start = at;
        while (at != end && *at >= 'a' && *at <= 'z')
            ++at;
        const std::string_view name(start, static_cast<size_t>(at - start));
        if (name == "pi")
            return std::numbers::pi;
        accept('(');
        double value = sum();
        if (name == "sqrt")
            value = std::sqrt(value);
        else if (name == "abs")
            value = std::fabs(value);
        while (accept(',')) {
            const double next = sum();
            value = name == "pow" ? std::pow(value, next) : std::max(value, next);
        }
        accept(')');
        return value;
    }

    void skipBlanks()
    {
        while (at != end && *at == ' ')
            ++at;
    }

    bool accept(char character)
    {
        skipBlanks();
        if (at == end || *at != character)
            return false;
        ++at;
        return true;
    }

    const char* at;
    const char* end;
};

double ours(const std::string& text)
{
    return Expression(Expression::parse(text, false)).evaluate();
}

/// muParser with the symbols that it lacks.
mu::Parser otherParser()
{
    mu::Parser parser;
    parser.DefineConst("pi", std::numbers::pi);
    parser.DefineFun("pow", static_cast<double (*)(double, double)>(std::pow));
    parser.DefineOprtChars("%");
    parser.DefineOprt("%", static_cast<double (*)(double, double)>(std::fmod), mu::prMUL_DIV);
    return parser;
}

bool allAgree(mu::Parser& other)
{
    return std::all_of(shortExpressions.begin(), shortExpressions.end(),
                       [&other](const std::string& text) {
                           other.SetExpr(text);
                           const double value = ours(text);
                           return value == Descent(text).sum() && value == other.Eval();
                       });
}

void measureShort()
{
    mu::Parser other = otherParser();
    if (!allAgree(other)) {
        std::printf("the evaluators disagree; nothing to measure\n");
        return;
    }
    const auto forEach = [](auto evaluate) {
        return [evaluate] {
            for (const std::string& text : shortExpressions)
                keep(evaluate(text));
        };
    };
    const auto times = bench::medianTimes(
        {
            {forEach(ours), {}},
            {forEach([&other](const std::string& text) {
                 other.SetExpr(text);
                 return other.Eval();
             }),
             {}},
            {forEach([](const std::string& text) { return Descent(text).sum(); }), {}},
            {forEach([](const std::string& text) { return Expression(text).evaluate(); }), {}},
        },
        31);
    const int count = static_cast<int>(shortExpressions.size());
    constexpr const char* descent = "a descent straight to a double";
    const std::string what = "parse, fold and evaluate of short expressions";
    bench::printTimes({what, count, times[0], "muParser SetExpr + Eval", times[1], 1.0 / 12});
    bench::printTimes({what, count, times[0], descent, times[2], 15});
    bench::printTimes({what + ", stretch", count, times[0], descent, times[2], 4});
    bench::printTimes({"the same, parsed before", count, times[3], descent, times[2], {}});
}

struct Growing {
    const char* what;
    std::string start;
    std::string repeated;
    std::string end;
};

std::string textOf(const Growing& growing, size_t length)
{
    std::string text = growing.start;
    while (text.size() + growing.end.size() < length)
        text += growing.repeated;
    return text + growing.end;
}

/// A chain in which each operator binds more strongly than the one before, again and again.
const std::string risingOperators = "1=2?3||4&&5<6??7 is 8..9+1*2^3<<4=";

void measureGrowth()
{
    const std::vector<Growing> all{
        {"long sum", "1", "+1", ""},
        {"rising precedence", "1=", risingOperators, "1"},
        {"right-associative chain", "1", "<2", ""},
        {"open brackets", "", "(", "1"},
        {"nested calls", "", "f(", "1"},
        {"ternaries", "1", " ? 2 : 3", ""},
        {"prefix operators", "", "- ", "1"},
        {"prefix operators, bound", "", "-(", "1"},
        {"postfix operators", "1", "! ", ""},
        {"undone postfixes", "1", "< (2!) 3", ""},
        {"long argument list", "f(1", ",1", ")"},
        {"long list", "1", ", 1", ""},
        {"operators without operands", "1", " * - + /", ""},
        {"words", "a", " b", ""},
        {"one long number", "", "1", ""},
        {"one long operator", "", "+", ""},
        {"garbage", "", "1.2e'\\u{x}\" )]@", ""},
    };
    for (const Growing& growing : all) {
        std::vector<std::string> texts;
        std::vector<bench::Variant> variants;
        for (size_t length = 10; length <= 100000; length *= 10)
            texts.push_back(textOf(growing, length));
        variants.reserve(texts.size());
        for (const std::string& text : texts)
            variants.push_back({[&text] { keep(Expression::parse(text, false)); }, {}});
        const auto times = bench::medianTimes(variants, 5);
        for (size_t i = 1; i < times.size(); ++i)
            bench::printTimes({std::string("parse of a ") + growing.what,
                               static_cast<int>(texts[i].size()), times[i],
                               "ten times the tenth of it",
                               times[i - 1] * static_cast<double>(texts[i].size()) /
                                   static_cast<double>(texts[i - 1].size()),
                               1.5});
    }
}

} // namespace

int main()
{
    // What grows is to be the parsing: beyond a size the allocator would give the memory of each
    // tree back to the system and fetch it anew, which costs more than the reading of the text.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    measureShort();
    std::printf("\n");
    measureGrowth();
    return 0;
}
