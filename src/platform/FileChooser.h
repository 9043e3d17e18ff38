#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace vellumry {

/// The dialogs in which a person chooses a file or a folder, as the desktop itself shows them to
/// all its programs. Not every desktop does. Main thread only.
class FileChooser {
public:
    enum class Kind { folder, openFile, saveFile };

    struct Request {
        Kind kind = Kind::openFile;
        QString title;
        QString fileName = {};     ///< to begin with, of a file to be saved
        QString mimeType = {};     ///< of the files that are offered; none for a folder
        QString fileTypeName = {}; ///< for people
        quint64 x11Window = 0;     ///< over which the dialog stands; 0 where windows have no number
    };

    struct Handlers {
        /// What was chosen, or nothing when the person cancels.
        std::function<void(const std::optional<QUrl>& place)> onAnswer;
        /// The desktop shows no such dialog.
        std::function<void()> whenUnavailable;
    };

    virtual ~FileChooser() = default;

    /// Shows a dialog and calls one of the handlers, later. When the owner is destroyed before,
    /// the dialog goes and nobody is called.
    virtual void ask(const Request& request, QObject& owner, Handlers handlers) = 0;
};

} // namespace vellumry
