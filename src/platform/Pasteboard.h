#pragma once

#include <QString>

namespace vellumry {

/// The desktop's clipboard, as far as the program writes to it. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces the clipboard's contents by plain text.
    virtual void setString(const QString& text) = 0;

    /// The same with a text that histories of the clipboard are asked to leave out.
    virtual void setSecretString(const QString& text) = 0;
};

} // namespace vellumry
