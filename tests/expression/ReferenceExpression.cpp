#include "expression/ReferenceExpression.h"

#include "expression/Expression.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <numbers>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace vellumry::test {

namespace {

/// A failure, as its description.
struct Failure {
    std::string description;
    bool isEmpty = false;
};

[[noreturn]] void unexpected(const std::string& token)
{
    throw Failure{"Unexpected token `" + token + "`"};
}

[[noreturn]] void missing(const std::string& delimiter)
{
    throw Failure{"Missing `" + delimiter + "`"};
}

std::string utf8(unsigned long scalar)
{
    if (scalar < 0x80)
        return {static_cast<char>(scalar)};
    std::string text;
    unsigned long limit = 0x40; // what the first byte has room for, and one bit less each time
    do {
        text.insert(text.begin(), static_cast<char>(0x80 | scalar % 64));
        scalar /= 64;
        limit /= 2;
    } while (scalar >= limit);
    return static_cast<char>((0x100 - 2 * limit) | scalar) + text;
}

struct Part {
    std::string kind; ///< "literal", "error", or the case of a symbol
    std::string name; ///< of an error its description
    double value = 0;
    std::vector<Part> arguments;

    [[nodiscard]] bool isOperator() const
    {
        return kind == "infix" || kind == "prefix" || kind == "postfix";
    }
    [[nodiscard]] bool isBare() const { return isOperator() && arguments.empty(); }
    [[nodiscard]] bool isError() const { return kind == "error"; }
};

std::string numberText(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string dumpOf(const Part& part)
{
    if (part.kind == "literal")
        return numberText(part.value);
    std::string text = "(" + part.kind + " " + part.name;
    for (const Part& argument : part.arguments)
        text += " " + dumpOf(argument);
    return text + ")";
}

struct Binding {
    int level;
    bool isRightAssociative;
};

Binding bindingOf(const std::string& name)
{
    static const std::vector<std::pair<Binding, std::set<std::string>>> levels{
        {{0, false}, {","}},
        {{1, true}, {"=", "*=", "/=", "%=", "+=", "-=", "<<=", ">>=", "&=", "^=", "|=", ":="}},
        {{2, false}, {"?", ":"}},
        {{3, false}, {"||", "or"}},
        {{4, false}, {"&&", "and"}},
        {{5, true},
         {"<", "<=", ">=", ">", "==", "!=", "<>", "===", "!==", "lt", "le", "lte", "gt", "ge",
          "gte", "eq", "ne"}},
        {{6, false}, {"??", "?:"}},
        {{7, false}, {"is", "as", "isa"}},
        {{8, false}, {"..", "...", "..<"}},
        {{9, false}, {"+", "-", "|"}},
        {{10, false}, {"*", "/", "%", "&"}},
        {{11, false}, {"^"}},
        {{12, false}, {"<<", ">>", ">>>"}},
        {{13, false}, {"[]"}}};
    for (const auto& [binding, names] : levels) {
        if (names.count(name) > 0)
            return binding;
    }
    return {9, false};
}

bool takesPrecedence(const std::string& name, const std::string& over)
{
    const Binding a = bindingOf(name);
    const Binding b = bindingOf(over);
    return a.level > b.level || (a.level == b.level && !a.isRightAssociative);
}

using Stack = std::vector<Part>;

/// How a part prints, where that shows in an error: all that can get there is told by the library.
std::string printed(const Part& part);

/// One round from an index on; gives the index of the next one, which is always the last thing
/// done.
std::optional<size_t> collapseFrom(Stack& stack, size_t i)
{
    if (i + 1 >= stack.size())
        return std::nullopt;
    const auto replace = [&stack, i](size_t count, Part part) {
        const auto first = stack.begin() + static_cast<std::ptrdiff_t>(i);
        stack.erase(first, first + static_cast<std::ptrdiff_t>(count));
        stack.insert(stack.begin() + static_cast<std::ptrdiff_t>(i), std::move(part));
    };
    const Part lhs = stack[i];
    const Part rhs = stack[i + 1];
    if (lhs.isError())
        throw Failure{lhs.name};
    if (lhs.isBare()) {
        if (rhs.isError())
            throw Failure{rhs.name};
        if (rhs.isBare())
            return i + 1;
        replace(2, {"prefix", lhs.name, 0, {rhs}});
        return 0;
    }
    if (rhs.isError())
        throw Failure{rhs.name};
    if (rhs.isBare() && rhs.kind != "postfix" && i + 2 < stack.size()) {
        Part& next = stack[i + 2];
        if (next.isError())
            throw Failure{next.name};
        if (next.isBare()) {
            if (next.kind == "prefix")
                return i + 2;
            if (rhs.name == "+" || rhs.name == "/" || rhs.name == "*") {
                next.kind = "prefix";
                return i + 2;
            }
            stack[i + 1].kind = "postfix";
            return i;
        }
        if (i + 3 < stack.size()) {
            const Part& op2 = stack[i + 3];
            if (!(op2.isOperator() && i + 4 < stack.size() && takesPrecedence(rhs.name, op2.name)))
                return i + 2;
        }
        const Part operand = next;
        if (rhs.name == ":" && lhs.kind == "infix" && lhs.name == "?")
            replace(3, {"infix", "?:", 0, {lhs.arguments[0], lhs.arguments[1], operand}});
        else
            replace(3, {"infix", rhs.name, 0, {lhs, operand}});
        return 0;
    }
    if (rhs.isBare()) {
        replace(2, {"postfix", rhs.name, 0, {lhs}});
        return 0;
    }
    if (lhs.kind == "postfix") {
        stack[i] = lhs.arguments[0];
        stack.insert(stack.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                     {"infix", lhs.name, 0, {}});
        return i;
    }
    unexpected(printed(rhs));
}

void collapse(Stack& stack)
{
    for (std::optional<size_t> i = 0; i;)
        i = collapseFrom(stack, *i);
}

class Reader {
public:
    explicit Reader(const std::string& source) : text(source) {}

    Part expression(const std::vector<char>& delimiters);

private:
    [[nodiscard]] char peek(size_t ahead = 0) const
    {
        return position + ahead < text.size() ? text[position + ahead] : '\0';
    }
    [[nodiscard]] bool atEnd() const { return position >= text.size(); }
    [[nodiscard]] bool isOneOf(const char* characters) const
    {
        return !atEnd() && peek() != '\0' &&
               std::string(characters).find(peek()) != std::string::npos;
    }
    static constexpr const char* digits = "0123456789";
    static constexpr const char* operators = "/=+!*%<>&|^~?:";
    static constexpr const char* heads = "#$@_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

    bool accept(char character)
    {
        if (atEnd() || peek() != character)
            return false;
        ++position;
        return true;
    }
    std::string run(const std::string& characters)
    {
        std::string found;
        while (isOneOf(characters.c_str()))
            found += text[position++];
        return found;
    }
    bool blanks() { return !run("\t\n\r ").empty(); }
    [[nodiscard]] bool stands(const std::vector<char>& delimiters) const
    {
        for (const char delimiter : delimiters) {
            if (!atEnd() && peek() == delimiter)
                return true;
        }
        return false;
    }
    std::string restOfToken()
    {
        std::string found;
        while (!atEnd() && !isOneOf("\t\n\r "))
            found += text[position++];
        return found;
    }

    bool number(Part& token);
    bool identifier(Part& token);
    bool operatorToken(Part& token);
    bool quoted(Part& token);
    void exponent(std::string& token);
    std::vector<Part> arguments(char closing);
    void parenthesis(Stack& stack);
    void bracket(Stack& stack);

    const std::string text;
    size_t position = 0;
};

void Reader::exponent(std::string& token)
{
    const size_t start = position;
    std::string found;
    if (!isOneOf("eE"))
        return;
    found += text[position++];
    if (isOneOf("+-"))
        found += text[position++];
    const std::string power = run(digits);
    if (power.empty())
        position = start;
    else
        token += found + power;
}

bool Reader::number(Part& token)
{
    const size_t start = position;
    std::string found = run(digits);
    if (found == "0" && accept('x')) {
        const std::string hex = run("0123456789abcdefABCDEF");
        found = "0x" + hex;
        if (hex.empty()) {
            token = {"error", "Unexpected token `0x`", 0, {}};
            return true;
        }
        token = {"literal", "", std::strtod(found.c_str(), nullptr), {}};
        return true;
    }
    const size_t point = position;
    if (accept('.')) {
        const std::string fraction = run(digits);
        if (!fraction.empty()) {
            found += "." + fraction;
            exponent(found);
        } else {
            position = found.empty() ? start : point;
        }
    } else if (!found.empty()) {
        exponent(found);
    }
    if (found.empty())
        return false;
    token = {"literal", "", std::strtod(found.c_str(), nullptr), {}};
    return true;
}

bool Reader::identifier(Part& token)
{
    const std::string inside = std::string(heads) + digits;
    const size_t start = position;
    std::string name;
    if (accept('.')) {
        name = ".";
    } else if (isOneOf(heads)) {
        name += text[position++];
        if (accept('.'))
            name += '.';
    } else {
        return false;
    }
    for (std::string more = run(inside); !more.empty(); more = run(inside)) {
        name += more;
        if (accept('.'))
            name += '.';
    }
    if (name == ".") {
        position = start;
        return false;
    }
    if (name.back() == '.') {
        --position;
        name.pop_back();
    } else if (accept('\'')) {
        name += '\'';
    }
    token = {"variable", name, 0, {}};
    return true;
}

bool Reader::operatorToken(Part& token)
{
    std::string name = run(".");
    if (name.empty())
        name = run("-");
    name += run(operators);
    if (name.empty() && isOneOf("([,"))
        name += text[position++];
    token = {"infix", name, 0, {}};
    return !name.empty();
}

bool Reader::quoted(Part& token)
{
    if (!isOneOf("`'\""))
        return false;
    const char quote = text[position++];
    std::string name(1, quote);
    for (;;) {
        if (atEnd()) {
            const bool isLonger = text[position - 1] != quote || name.size() > 1;
            token = {"error",
                     (isLonger ? std::string("Missing `") : std::string("Unexpected token `")) +
                         quote + "`",
                     0,
                     {}};
            return true;
        }
        const char next = text[position++];
        if (next == quote) {
            token = {"variable", name + quote, 0, {}};
            return true;
        }
        if (next != '\\') {
            name += next;
            continue;
        }
        if (atEnd())
            continue;
        const char escape = text[position++];
        if (escape == '0') {
            name += '\0';
        } else if (escape == 'n') {
            name += '\n';
        } else if (escape == 'r') {
            name += '\r';
        } else if (escape == 't') {
            name += '\t';
        } else if (escape != 'u') {
            name += escape;
        } else {
            std::string code;
            size_t back = position;
            const bool isOpen = accept('{');
            if (isOpen) {
                back = position;
                code = run("0123456789abcdefABCDEF");
            }
            const bool isClosed = isOpen && accept('}');
            const unsigned long scalar = code.empty() ? 0 : std::strtoul(code.c_str(), nullptr, 16);
            if (isClosed && code.empty()) {
                token = {"error", "Unexpected token `}`", 0, {}};
                return true;
            }
            if (isClosed && scalar <= 0x10FFFF && (scalar < 0xD800 || scalar > 0xDFFF)) {
                name += utf8(scalar);
                continue;
            }
            if (isClosed)
                position = back;
            const std::string rest = restOfToken();
            token = {
                "error", rest.empty() ? "Missing `}`" : "Unexpected token `" + rest + "`", 0, {}};
            return true;
        }
    }
}

std::vector<Part> Reader::arguments(char closing)
{
    std::vector<Part> found;
    if (accept(closing))
        return found;
    do {
        try {
            found.push_back(expression({',', closing}));
        } catch (const Failure& failure) {
            if (!failure.isEmpty)
                throw;
            if (!atEnd())
                unexpected(std::string(1, text[position++]));
            break;
        }
    } while (accept(','));
    if (!accept(closing))
        missing(std::string(1, closing));
    return found;
}

void Reader::parenthesis(Stack& stack)
{
    if (stack.empty() || stack.back().isError() || stack.back().isBare()) {
        stack.push_back(expression({')'}));
        if (!accept(')'))
            missing(")");
        return;
    }
    std::vector<Part> found = arguments(')');
    Part& top = stack.back();
    if (top.kind == "variable") {
        top = {"function", top.name, 0, std::move(found)};
    } else {
        found.insert(found.begin(), top);
        top = {"infix", "()", 0, std::move(found)};
    }
}

void Reader::bracket(Stack& stack)
{
    std::vector<Part> found = arguments(']');
    if (stack.empty() || stack.back().isError() || stack.back().isBare()) {
        stack.push_back({"function", "[]", 0, std::move(found)});
        return;
    }
    Part& top = stack.back();
    if (top.kind == "variable") {
        if (found.size() != 1)
            throw Failure{"Array " + top.name + "[] expects 1 argument"};
        top = {"array", top.name, 0, std::move(found)};
    } else {
        if (found.size() != 1)
            throw Failure{"Subscript operator [] expects 1 argument"};
        top = {"infix", "[]", 0, {top, found[0]}};
    }
}

Part Reader::expression(const std::vector<char>& delimiters)
{
    Stack stack;
    bool operandPosition = true;
    bool precededByWhitespace = true;
    blanks();
    while (!stands(delimiters)) {
        Part token;
        if (!number(token) && !identifier(token) && !operatorToken(token) && !quoted(token))
            break;
        const bool followedByWhitespace = blanks() || atEnd();
        if (token.kind == "literal" || token.isError()) {
            stack.push_back(token);
            operandPosition = false;
            precededByWhitespace = followedByWhitespace;
        } else if (token.kind == "variable") {
            if (!operandPosition)
                token.kind = "infix";
            stack.push_back(token);
            operandPosition = !operandPosition;
            precededByWhitespace = followedByWhitespace;
        } else if (token.name == "(" || token.name == "[") {
            if (token.name == "(")
                parenthesis(stack);
            else
                bracket(stack);
            operandPosition = false;
            precededByWhitespace = blanks();
        } else if (token.name == ",") {
            if (!stack.empty() && stack.back().isBare() && stack.back().kind == "infix")
                stack.back().kind = "postfix";
            stack.push_back(token);
            operandPosition = true;
            precededByWhitespace = blanks();
        } else if (precededByWhitespace && !followedByWhitespace) {
            token.kind = "prefix";
            stack.push_back(token);
            operandPosition = true;
            precededByWhitespace = false;
        } else if (!precededByWhitespace && followedByWhitespace) {
            token.kind = "postfix";
            stack.push_back(token);
            operandPosition = true;
            precededByWhitespace = true;
        } else {
            stack.push_back(token);
            operandPosition = true;
            precededByWhitespace = followedByWhitespace;
        }
    }
    if (!stands(delimiters)) {
        const size_t start = position;
        const std::string rest = restOfToken();
        position = start;
        if (!rest.empty())
            unexpected(rest);
    }
    collapse(stack);
    if (stack.empty())
        throw Failure{"Empty expression", true};
    if (stack[0].isError())
        throw Failure{stack[0].name};
    if (stack[0].isBare())
        unexpected(printed(stack[0]));
    return stack[0];
}

using Operation = std::function<double(const std::vector<double>&)>;

const std::map<std::string, Operation>& operations()
{
    using Values = std::vector<double>;
    static const std::map<std::string, Operation> all{
        {"variable pi", [](const Values&) { return std::numbers::pi; }},
        {"infix +", [](const Values& v) { return v[0] + v[1]; }},
        {"infix -", [](const Values& v) { return v[0] - v[1]; }},
        {"infix *", [](const Values& v) { return v[0] * v[1]; }},
        {"infix /", [](const Values& v) { return v[0] / v[1]; }},
        {"infix %", [](const Values& v) { return std::fmod(v[0], v[1]); }},
        {"prefix -", [](const Values& v) { return -v[0]; }},
        {"sqrt 1", [](const Values& v) { return std::sqrt(v[0]); }},
        {"floor 1", [](const Values& v) { return std::floor(v[0]); }},
        {"ceil 1", [](const Values& v) { return std::ceil(v[0]); }},
        {"round 1", [](const Values& v) { return std::round(v[0]); }},
        {"cos 1", [](const Values& v) { return std::cos(v[0]); }},
        {"acos 1", [](const Values& v) { return std::acos(v[0]); }},
        {"sin 1", [](const Values& v) { return std::sin(v[0]); }},
        {"asin 1", [](const Values& v) { return std::asin(v[0]); }},
        {"tan 1", [](const Values& v) { return std::tan(v[0]); }},
        {"atan 1", [](const Values& v) { return std::atan(v[0]); }},
        {"abs 1", [](const Values& v) { return std::fabs(v[0]); }},
        {"log 1", [](const Values& v) { return std::log(v[0]); }},
        {"pow 2", [](const Values& v) { return std::pow(v[0], v[1]); }},
        {"atan2 2", [](const Values& v) { return std::atan2(v[0], v[1]); }},
        {"mod 2", [](const Values& v) { return std::fmod(v[0], v[1]); }},
    };
    return all;
}

double call(const Part& part, const std::vector<double>& values)
{
    const std::set<std::string> ofOne{"sqrt", "floor", "ceil", "round", "cos", "acos",
                                      "sin",  "asin",  "tan",  "atan",  "abs", "log"};
    const std::string& name = part.name;
    if (name == "[]")
        unexpected("[");
    const auto entry = operations().find(name + " " + std::to_string(values.size()));
    if (entry != operations().end())
        return entry->second(values);
    const std::string expects = "Function " + name + "() expects ";
    if (ofOne.count(name) > 0)
        throw Failure{expects + "1 argument"};
    if (name == "pow" || name == "atan2" || name == "mod")
        throw Failure{expects + "2 arguments"};
    if (name == "max" || name == "min") {
        if (values.size() < 2)
            throw Failure{expects + "at least 2 arguments"};
        double best = values[0];
        for (const double value : values)
            best = (name == "max" ? value > best : value < best) ? value : best;
        return best;
    }
    throw Failure{"Undefined function " + name + "()"};
}

double evaluate(const Part& part)
{
    if (part.kind == "literal")
        return part.value;
    std::vector<double> values;
    for (const Part& argument : part.arguments)
        values.push_back(evaluate(argument));
    if (part.kind == "function")
        return call(part, values);
    if (part.kind == "infix" && part.name == ",")
        unexpected(",");
    const auto entry = operations().find(part.kind + " " + part.name);
    if (entry != operations().end())
        return entry->second(values);
    const std::map<std::string, std::string> words{
        {"?:", "ternary operator"}, {"[]", "subscript operator"}, {"()", "function call operator"}};
    std::string description = part.kind + (part.isOperator() ? " operator " : " ") + part.name;
    if (part.kind == "infix" && words.count(part.name) > 0)
        description = words.at(part.name) + " " + part.name;
    if (part.kind == "array")
        description += "[]";
    throw Failure{"Undefined " + description};
}

expression::Subexpression treeOf(const Part& part)
{
    using expression::Subexpression;
    using expression::Symbol;
    if (part.kind == "literal")
        return Subexpression::literal(part.value);
    std::vector<Subexpression> arguments;
    for (const Part& argument : part.arguments)
        arguments.push_back(treeOf(argument));
    const std::map<std::string, Symbol::Case> cases{
        {"variable", Symbol::Case::variable}, {"infix", Symbol::Case::infix},
        {"prefix", Symbol::Case::prefix},     {"postfix", Symbol::Case::postfix},
        {"function", Symbol::Case::function}, {"array", Symbol::Case::array}};
    return Subexpression::symbol(
        Symbol::make(cases.at(part.kind), part.name, static_cast<int>(arguments.size())),
        arguments);
}

std::string printed(const Part& part)
{
    return treeOf(part).description();
}

} // namespace

Reference readPlainly(const std::string& text)
{
    Reference reference;
    try {
        const Part part = Reader(text).expression({});
        reference.tree = dumpOf(part);
        reference.value = evaluate(part);
    } catch (const Failure& failure) {
        reference.error = failure.description;
    }
    return reference;
}

std::string dump(const expression::Subexpression& tree)
{
    using expression::Subexpression;
    using expression::Symbol;
    switch (tree.kind()) {
    case Subexpression::Kind::literal:
        return numberText(tree.value());
    case Subexpression::Kind::error:
        return "(error " + tree.error().description() + ")";
    case Subexpression::Kind::symbol:
        break;
    }
    constexpr const char* cases[] = {"variable", "infix", "prefix", "postfix", "function", "array"};
    const Symbol symbol = tree.symbol();
    std::string text =
        std::string("(") + cases[static_cast<size_t>(symbol.kind())] + " " + symbol.name();
    for (size_t i = 0; i < tree.argumentCount(); ++i)
        text += " " + dump(tree.argument(i));
    return text + ")";
}

} // namespace vellumry::test
