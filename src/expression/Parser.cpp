#include "expression/Parser.h"

#include <algorithm>
#include <string>
#include <utility>

namespace vellumry::expression {

using Case = Symbol::Case;

Subexpression Parser::parse()
{
    open(Purpose::whole, '\0', 0);
    for (;;) {
        if (!isAtDelimiter() && readToken())
            continue;
        const Index result = finishFrame();
        switch (frame().purpose) {
        case Purpose::whole:
            return tree.take(result);
        case Purpose::group:
            if (!view.scanCharacter(')'))
                throw Error::missingDelimiter(")");
            stack.push_back(result);
            close();
            break;
        case Purpose::arguments:
        case Purpose::subscript:
            addArgument(result);
            break;
        }
    }
}

bool Parser::isAtDelimiter() const
{
    switch (frame().purpose) {
    case Purpose::whole:
        return std::any_of(outerDelimiters.begin(), outerDelimiters.end(),
                           [this](std::string_view each) { return view.rest().starts_with(each); });
    case Purpose::group:
        return view.startsWith(')');
    case Purpose::arguments:
    case Purpose::subscript:
        break;
    }
    return view.startsWith(',') || view.startsWith(frame().closing);
}

/// Whether the last element is something that brackets can belong to.
bool Parser::endsInOperand() const
{
    return !stackIsEmpty() && !tree[stack.back()].isError() && !tree[stack.back()].isBareOperator();
}

void Parser::open(Purpose purpose, char closing, Index target)
{
    frames.push_back({purpose, closing, target, stack.size()});
    if (frame().hasArguments() && view.scanCharacter(closing))
        close();
    else
        beginOperand();
}

/// Ends the innermost frame, whose closing character has been read. What it stands for is the last
/// element of the frame around it.
void Parser::close()
{
    const Frame closed = frame();
    frames.pop_back();
    if (closed.hasArguments()) {
        Node& target = tree[closed.target];
        if (closed.purpose == Purpose::subscript) {
            const std::uint32_t expected = target.isSymbol(Case::infix) ? 2 : 1;
            if (target.argumentCount != expected)
                throw Error::arityMismatch(tree.symbolOf(closed.target));
        }
        if (target.isSymbol(Case::function))
            target.setArity(static_cast<int>(target.argumentCount));
    }
    precededByWhitespace = view.skipWhitespace();
    operandPosition = false;
}

/// Begins to read a whole expression, or one more argument.
void Parser::beginOperand()
{
    view.skipWhitespace();
    operandPosition = true;
    precededByWhitespace = true;
}

bool Parser::readToken()
{
    if (const std::string_view number = Scanner::scanNumber(view); !number.empty()) {
        finishToken();
        readNumber(number);
        return true;
    }
    if (const std::string_view name = Scanner::scanIdentifier(view); !name.empty()) {
        finishToken();
        readName(name);
        return true;
    }
    if (const std::string_view name = Scanner::scanOperator(view); !name.empty()) {
        finishToken();
        readOperator(name);
        return true;
    }
    return readQuoted();
}

void Parser::finishToken()
{
    followedByWhitespace = view.skipWhitespace() || view.isEmpty();
}

void Parser::readNumber(std::string_view number)
{
    if (const std::optional<double> value = Scanner::valueOf(number))
        pushOperand(tree.addLiteral(*value));
    else
        pushOperand(
            tree.addError(Error::unexpectedToken(std::string(number)), std::string(number)));
}

bool Parser::readQuoted()
{
    std::optional<Scanner::QuotedToken> token = Scanner::scanQuoted(view);
    if (!token)
        return false;
    finishToken();
    if (token->error)
        pushOperand(tree.addError(*std::move(token->error), std::move(token->text)));
    else
        readName(token->name);
    return true;
}

void Parser::pushOperand(Index operand)
{
    stack.push_back(operand);
    operandPosition = false;
    precededByWhitespace = followedByWhitespace;
}

/// A variable, or, behind an operand, an operator: any word can stand between two operands.
void Parser::readName(std::string_view name)
{
    stack.push_back(tree.addSymbol(operandPosition ? Case::variable : Case::infix, name));
    operandPosition = !operandPosition;
    precededByWhitespace = followedByWhitespace;
}

void Parser::readOperator(std::string_view name)
{
    switch (name.front()) { // these three are operators by themselves
    case '(':
        return openParenthesis();
    case '[':
        return openBracket();
    case ',':
        return readComma();
    default:
        break;
    }
    Case symbolCase = Case::infix;
    if (precededByWhitespace != followedByWhitespace)
        symbolCase = precededByWhitespace ? Case::prefix : Case::postfix;
    stack.push_back(tree.addSymbol(symbolCase, name));
    operandPosition = true;
    precededByWhitespace = followedByWhitespace;
}

void Parser::openParenthesis()
{
    if (!endsInOperand())
        return open(Purpose::group, ')', 0);
    open(Purpose::arguments, ')', bracketedOperand(Case::function, "()"));
}

void Parser::openBracket()
{
    if (!endsInOperand()) {
        const Index list = tree.addSymbol(Case::function, "[]");
        stack.push_back(list);
        return open(Purpose::arguments, ']', list);
    }
    open(Purpose::subscript, ']', bracketedOperand(Case::array, "[]"));
}

/// Makes of the last operand what brackets behind it mean: a variable names what the brackets
/// belong to, anything else is the first argument of an operator.
Parser::Index Parser::bracketedOperand(Case ofVariable, std::string_view operatorName)
{
    const Index operand = stack.back();
    if (tree[operand].isSymbol(Case::variable)) {
        tree[operand].symbolCase = ofVariable;
        return operand;
    }
    stack.back() = tree.addSymbol(Case::infix, operatorName);
    tree.appendArgument(stack.back(), operand);
    return stack.back();
}

void Parser::readComma()
{
    if (!stackIsEmpty() && tree[stack.back()].isBare(Case::infix))
        tree[stack.back()].symbolCase = Case::postfix;
    stack.push_back(tree.addSymbol(Case::infix, ","));
    operandPosition = true;
    precededByWhitespace = false; // the blanks behind it have been skipped with the token
}

/// The end of the innermost frame: puts its elements together and gives the result.
Parser::Index Parser::finishFrame()
{
    if (!isAtDelimiter()) {
        const std::size_t start = view.position();
        const std::string_view token = view.scanToEndOfToken();
        view.setPosition(start);
        if (!token.empty())
            throw Error::unexpectedToken(std::string(token));
    }
    const std::size_t base = frame().base;
    collapseStack(tree, stack, base);
    if (stackIsEmpty())
        throwEmpty();
    const Index first = stack[base];
    if (tree[first].isError())
        throw Error(tree.errorOf(first));
    if (tree[first].isBareOperator())
        throw Error::unexpectedToken(tree.description(first));
    stack.shrink(base);
    return first;
}

void Parser::addArgument(Index argument)
{
    tree.appendArgument(frame().target, argument);
    if (view.scanCharacter(','))
        return beginOperand();
    if (!view.scanCharacter(frame().closing))
        throw Error::missingDelimiter(std::string(1, frame().closing));
    close();
}

/// An expression without anything in it. Inside of brackets with arguments, however many groups are
/// open in them, it is told by what stands in its place.
void Parser::throwEmpty()
{
    while (!frames.empty() && !frame().hasArguments())
        frames.pop_back();
    if (frames.empty())
        throw Error(Error::emptyExpression());
    const std::size_t start = view.position();
    if (view.popFirst())
        throw Error::unexpectedToken(std::string(view.textSince(start)));
    throw Error::missingDelimiter(std::string(1, frame().closing));
}

} // namespace vellumry::expression
