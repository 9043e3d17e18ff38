#pragma once

#include <QString>

#include <functional>

namespace vellumry {

/// Asks the person where a file shall go, and tells them when it could not be written there. The
/// views implement it. Main thread only.
class SaveFileDialog {
public:
    struct Request {
        QString title;    ///< of the dialog
        QString fileName; ///< to begin with; may hold what no file name can
        QString mimeType; ///< allowed; one that the platform does not know means plain text
    };

    virtual ~SaveFileDialog() = default;

    /// Calls `onChosen` with an absolute path, at once or later, or not at all when the person
    /// cancels. New folders can be made on the way.
    virtual void ask(const Request& request, std::function<void(const QString& path)> onChosen) = 0;

    /// Shows an alert in the style of a warning.
    virtual void warn(const QString& message, const QString& informativeText) = 0;
};

} // namespace vellumry
