#pragma once

#include "expression/Symbol.h"

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

namespace vellumry::expression {

/// Why a text is no expression, or an expression has no value. Thrown by evaluation.
class Error : public std::exception {
public:
    enum class Case : std::uint8_t {
        message,
        unexpectedToken,
        missingDelimiter,
        undefinedSymbol,
        arityMismatch,
        arrayBounds
    };

    [[nodiscard]] static Error message(std::string text);
    [[nodiscard]] static Error unexpectedToken(std::string token);
    [[nodiscard]] static Error missingDelimiter(std::string delimiter);
    [[nodiscard]] static Error undefinedSymbol(Symbol symbol);
    [[nodiscard]] static Error arityMismatch(Symbol symbol);
    [[nodiscard]] static Error arrayBounds(Symbol symbol, double index);
    /// What a text without an expression gives: an unexpected token without a text.
    [[nodiscard]] static const Error& emptyExpression();

    [[nodiscard]] Case kind() const { return which; }
    /// The message, token or delimiter; empty for the other cases.
    [[nodiscard]] const std::string& text() const { return words; }
    /// Of the last three cases.
    [[nodiscard]] const std::optional<Symbol>& symbol() const { return subject; }
    /// Of `arrayBounds`; 0 for the others.
    [[nodiscard]] double index() const { return number; }

    /// One line for people: "Unexpected token `)`".
    [[nodiscard]] const std::string& description() const { return line; }
    [[nodiscard]] const char* what() const noexcept override { return line.c_str(); }

    friend bool operator==(const Error& a, const Error& b)
    {
        return a.which == b.which && a.words == b.words && a.subject == b.subject &&
               a.number == b.number;
    }

private:
    Error(Case kind, std::string text, std::optional<Symbol> about, double index,
          std::string description);

    Case which;
    std::string words;
    std::optional<Symbol> subject;
    double number;
    std::string line;
};

} // namespace vellumry::expression
