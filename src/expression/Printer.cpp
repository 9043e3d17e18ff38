#include "expression/Printer.h"

#include "expression/Scanner.h"
#include "expression/stringify.h"

namespace vellumry::expression {

namespace {

using Case = Symbol::Case;

/// A scalar of a quoted name as its escape, where it needs one: a control character, or what would
/// end the token or begin an escape.
void appendEscaped(std::string& text, std::string_view bytes, char32_t scalar, char quote)
{
    const bool isControl = scalar < 0x20 || (scalar >= 0x7F && scalar < 0xA0);
    if (!isControl && scalar != U'\\' && scalar != static_cast<unsigned char>(quote)) {
        text += bytes;
        return;
    }
    switch (scalar) {
    case U'\0':
        text += "\\0";
        break;
    case U'\n':
        text += "\\n";
        break;
    case U'\r':
        text += "\\r";
        break;
    case U'\t':
        text += "\\t";
        break;
    default:
        constexpr std::string_view digits = "0123456789ABCDEF";
        text += "\\u{";
        if (scalar >= 0x10)
            text += digits[scalar >> 4U]; // all that get here are below 0x100
        text += digits[scalar & 0xFU];
        text += '}';
    }
}

std::string escaped(std::string_view name)
{
    const char quote = name.empty() ? '\0' : name.front();
    if (quote != '`' && quote != '\'' && quote != '"')
        return std::string(name);
    const bool isClosed = name.size() > 1 && name.back() == quote;
    std::string text(1, quote);
    ScalarView inside(name.substr(1, name.size() - (isClosed ? 2 : 1)));
    while (!inside.isEmpty()) {
        const std::size_t start = inside.position();
        const char32_t scalar = *inside.popFirst();
        appendEscaped(text, inside.textSince(start), scalar, quote);
    }
    if (isClosed)
        text += quote;
    return text;
}

bool isTernary(const Node& node)
{
    return node.name == name::ternary && node.argumentCount == 3;
}

/// How an infix node binds in print: a ternary as the "?" and ":" that it is read from, not as the
/// operator "?:" of the table, so that it reads back.
Precedence precedence(const Node& node)
{
    return NameTable::precedence(isTernary(node) ? name::question : node.name);
}

/// The token that the parser would read at the beginning of a text.
std::string_view scanToken(std::string_view text)
{
    ScalarView view(text);
    std::string_view token = Scanner::scanNumber(view);
    if (token.empty())
        token = Scanner::scanIdentifier(view);
    if (token.empty())
        token = Scanner::scanOperator(view);
    if (token.empty() && Scanner::scanQuoted(view))
        token = view.textSince(0);
    return token;
}

} // namespace

std::string Printer::print()
{
    std::string text;
    pushNode(static_cast<Index>(tree.nodes.size() - 1));
    while (!tasks.empty()) {
        const Task task = tasks.back();
        tasks.pop_back();
        switch (task.kind) {
        case Task::Kind::text:
            text += task.text;
            break;
        case Task::Kind::name:
            text += escapedName(task.node);
            break;
        case Task::Kind::node:
            if (at(task.node).isLiteral())
                text += stringify(at(task.node).value);
            else if (at(task.node).isError())
                text += tree.failures[at(task.node).error].text;
            else
                expand(task.node);
            break;
        }
    }
    return text;
}

// What is to be printed last is pushed first.

void Printer::pushInParentheses(Index node, bool isNeeded)
{
    if (isNeeded)
        pushText(")");
    pushNode(node);
    if (isNeeded)
        pushText("(");
}

/// The last `count` arguments with ", " between them.
void Printer::pushArguments(Index node, std::size_t count)
{
    Index argument = node - 1;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0)
            pushText(", ");
        pushInParentheses(argument, isComma(argument));
        argument = before(argument);
    }
}

void Printer::expand(Index node)
{
    const Node& symbol = at(node);
    switch (symbol.symbolCase) {
    case Case::variable:
        pushName(node);
        return;
    case Case::infix:
        expandInfix(node);
        return;
    case Case::prefix:
    case Case::postfix:
        expandUnary(node);
        return;
    case Case::function:
    case Case::array:
        break;
    }
    const bool isList = symbol.symbolCase == Case::function && symbol.name == name::subscript;
    const bool isSquare = isList || symbol.symbolCase == Case::array;
    pushText(isSquare ? "]" : ")");
    pushArguments(node, symbol.argumentCount);
    pushText(isSquare ? "[" : "(");
    if (!isList)
        pushName(node);
}

void Printer::expandInfix(Index node)
{
    const Node& symbol = at(node);
    if (symbol.argumentCount == 0) {
        pushName(node);
        return;
    }
    const Index left = firstArgument(node);
    const bool leftNeedsParentheses = at(left).isInfixNode() && !takesPrecedence(left, node);
    if (symbol.name == name::call || symbol.name == name::subscript) {
        pushText(symbol.name == name::call ? ")" : "]");
        pushArguments(node, symbol.argumentCount - 1);
        pushText(symbol.name == name::call ? "(" : "[");
        pushInParentheses(left, leftNeedsParentheses || bindsLooser(left));
        return;
    }
    // Two operands, the three of a ternary, or whatever a tree built by hand may hold.
    Index operand = node - 1;
    for (std::size_t i = symbol.argumentCount; i-- > 1;) {
        pushInParentheses(operand, at(operand).isInfixNode() && takesPrecedence(node, operand));
        operand = before(operand);
        if (isTernary(symbol)) {
            pushText(i == 1 ? " ? " : " : ");
        } else if (symbol.name == name::comma) {
            pushText(", ");
        } else {
            pushText(" ");
            pushName(node);
            pushText(" ");
        }
    }
    pushInParentheses(left, leftNeedsParentheses);
}

void Printer::expandUnary(Index node)
{
    const Node& symbol = at(node);
    if (symbol.argumentCount == 0) {
        pushName(node);
        return;
    }
    const Index argument = node - 1;
    const bool needsParentheses = at(argument).isOperator() || runsInto(node, argument);
    const bool isPrefix = symbol.symbolCase == Case::prefix;
    if (!isPrefix)
        pushName(node);
    pushInParentheses(argument, needsParentheses);
    if (isPrefix)
        pushName(node);
}

Printer::Index Printer::firstArgument(Index node) const
{
    Index argument = node - 1;
    for (std::size_t i = 1; i < at(node).argumentCount; ++i)
        argument = before(argument);
    return argument;
}

bool Printer::isComma(Index node) const
{
    return at(node).isInfixNode() && at(node).name == name::comma;
}

bool Printer::takesPrecedence(Index node, Index over) const
{
    return precedence(at(node)).takesPrecedence(precedence(at(over)));
}

/// Whether brackets directly behind the node would be read as those of its last part.
bool Printer::bindsLooser(Index node) const
{
    const Node& operand = at(node);
    if (operand.isLiteral())
        return operand.value < 0;
    return operand.isOperator() && operand.name != name::call && operand.name != name::subscript;
}

/// Whether a prefix or postfix operator and its argument would be read as other tokens when they
/// stand side by side.
bool Printer::runsInto(Index symbol, Index argument) const
{
    const std::string name = escapedName(symbol);
    if (at(symbol).symbolCase == Case::prefix)
        return scanToken(name + firstToken(argument)) != name;
    // A call or an array ends in a bracket, which nothing can run into.
    if (at(argument).argumentCount > 0 || at(argument).isSymbol(Case::function))
        return false;
    const std::string token = firstToken(argument);
    return scanToken(token + name) != token;
}

/// What a node that is no operator begins with; all of it unless it has arguments.
std::string Printer::firstToken(Index node) const
{
    if (at(node).isLiteral())
        return stringify(at(node).value);
    if (at(node).isError())
        return tree.failures[at(node).error].text;
    if (at(node).isSymbol(Case::function) && at(node).name == name::subscript)
        return "[";
    return escapedName(node);
}

std::string Printer::escapedName(Index node) const
{
    return escaped(tree.nameOf(at(node)));
}

} // namespace vellumry::expression
