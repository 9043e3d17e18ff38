#pragma once

#include <QStringView>

namespace vellumry {

/// Ends the process after printing the text to standard error: for what must never be, and what
/// going on would make worse.
[[noreturn]] void fatalError(QStringView text);

/// The end for a key that stands twice where keys must be unique.
[[noreturn]] void fatalDuplicateKey(QStringView key);

} // namespace vellumry
