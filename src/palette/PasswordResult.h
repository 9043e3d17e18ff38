#pragma once

#include <QString>

namespace vellumry {

/// How large the alphabet of a password is.
enum class PasswordComplexity {
    simple, ///< lower-case letters and digits
    medium, ///< letters, digits and four symbols
    strong, ///< letters, digits and all symbols
};

/// A generated password, which is one row of the palette.
struct PasswordResult {
    QString id; ///< of the row; a new one for each result
    QString password;
    PasswordComplexity complexity = PasswordComplexity::simple;
    int length = 0; ///< the length used, after clamping

    friend bool operator==(const PasswordResult&, const PasswordResult&) = default;
};

} // namespace vellumry
