#pragma once

#include <QString>

namespace vellumry {

/// Puts what the person chose on the clipboard.
class ClipboardServiceProtocol {
public:
    virtual ~ClipboardServiceProtocol() = default;

    /// Replaces the clipboard's contents by plain text.
    virtual void copy(const QString& text) = 0;

    /// The same with a password, which no history of the clipboard should keep.
    virtual void copySecret(const QString& text) = 0;
};

} // namespace vellumry
