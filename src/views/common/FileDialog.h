#pragma once

#include "library/PickedFile.h"
#include "platform/FileChooser.h"

#include <QPointer>

#include <functional>
#include <optional>

class QFileDialog;
class QWidget;

namespace vellumry {

/// A dialog for a file or a folder over a window: the desktop's own, where it shows one to
/// programs, or else the toolkit's. Deletes itself once it is answered; deleted before, it goes
/// from the screen without an answer, as it does with its window. Main thread only.
class FileDialog final : public QObject {
    Q_OBJECT

public:
    struct Request {
        FileChooser::Kind kind = FileChooser::Kind::openFile;
        QString title;
        QString fileName = {}; ///< to begin with, of a file to be saved
        QString mimeType = {}; ///< of the files that are offered; none for a folder
    };

    /// What was chosen, or nothing when the person cancels. A place beyond the files of this
    /// machine is an error.
    using AnswerHandler = std::function<void(const std::optional<PickedFile>& answer)>;

    /// Shows a dialog over the window of a widget, which owns it.
    static FileDialog* show(QWidget& over, const Request& request, AnswerHandler onAnswer);

    /// The dialogs of the desktop, for all that come; it outlives them. Without one, the toolkit's
    /// are shown.
    static void setDesktopChooser(FileChooser* chooser);

    ~FileDialog() override;

    /// What comes of a place that was chosen.
    [[nodiscard]] static PickedFile picked(const QUrl& place, FileChooser::Kind kind);

private:
    FileDialog(QWidget& over, const Request& request, AnswerHandler onAnswer);

    void showToolkitDialog();
    void end(const std::optional<QUrl>& place);

    QWidget& window;
    Request asked;
    AnswerHandler call;
    QPointer<QFileDialog> toolkitDialog;
};

} // namespace vellumry
