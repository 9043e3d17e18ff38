#pragma once

#include <QString>

namespace vellumry {

/// The desktop's clipboard, as far as the program writes to it. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces the clipboard's contents by plain text.
    virtual void setString(const QString& text) = 0;
};

} // namespace vellumry
