#pragma once

#include "expression/Scanner.h"
#include "expression/TreeBuilder.h"
#include "expression/collapseStack.h"

#include <span>
#include <string_view>

namespace vellumry::expression {

/// Reads one expression, token by token. For one use.
///
/// Brackets are no recursion: each open one is a frame, which ends where its closing character
/// stands, and whose elements lie on top of those of the frames around it.
class Parser {
public:
    /// Reads from the position of the view up to the first of the delimiters, or to the end.
    Parser(ScalarView& source, std::span<const std::string_view> delimiters)
        : view(source), outerDelimiters(delimiters)
    {
    }

    /// Throws Error for a text that is no expression; the view stands where it was found out.
    [[nodiscard]] Subexpression parse();

private:
    using Index = TreeBuilder::Index;

    enum class Purpose : std::uint8_t { whole, group, arguments, subscript };

    struct Frame {
        Purpose purpose;
        char closing;
        Index target;     ///< the symbol that takes the arguments
        std::size_t base; ///< where its elements begin

        [[nodiscard]] bool hasArguments() const
        {
            return purpose == Purpose::arguments || purpose == Purpose::subscript;
        }
    };

    [[nodiscard]] Frame& frame() { return frames.back(); }
    [[nodiscard]] const Frame& frame() const { return frames.back(); }
    [[nodiscard]] bool stackIsEmpty() const { return stack.size() == frame().base; }
    [[nodiscard]] bool isAtDelimiter() const;
    [[nodiscard]] bool endsInOperand() const;

    void open(Purpose purpose, char closing, Index target);
    void close();
    void beginOperand();

    bool readToken();
    void readNumber(std::string_view number);
    bool readQuoted();
    void readName(std::string_view name);
    void readOperator(std::string_view name);
    void openParenthesis();
    void openBracket();
    [[nodiscard]] Index bracketedOperand(Symbol::Case ofVariable, std::string_view operatorName);
    void readComma();

    void finishToken();
    void pushOperand(Index operand);
    Index finishFrame();
    void addArgument(Index argument);
    [[noreturn]] void throwEmpty();

    ScalarView& view;
    const std::span<const std::string_view> outerDelimiters;
    TreeBuilder tree;
    NodeStack stack;
    SmallVector<Frame, 8> frames;
    bool operandPosition = true;
    bool precededByWhitespace = true;
    bool followedByWhitespace = false;
};

} // namespace vellumry::expression
