#include "views/common/FileDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMimeDatabase>

#include <utility>

namespace vellumry {

namespace {

using Kind = FileChooser::Kind;

FileChooser* desktopChooser = nullptr;

quint64 x11WindowOf(const QWidget& widget)
{
    return QGuiApplication::platformName() == QLatin1StringView("xcb") ? widget.window()->winId()
                                                                       : 0;
}

} // namespace

void FileDialog::setDesktopChooser(FileChooser* chooser)
{
    desktopChooser = chooser;
}

FileDialog* FileDialog::show(QWidget& over, const Request& request, AnswerHandler onAnswer)
{
    auto* dialog = new FileDialog(over, request, std::move(onAnswer));
    if (!desktopChooser) {
        dialog->showToolkitDialog();
        return dialog;
    }
    desktopChooser->ask(
        {.kind = request.kind,
         .title = request.title,
         .fileName = request.fileName,
         .mimeType = request.mimeType,
         .fileTypeName = QMimeDatabase().mimeTypeForName(request.mimeType).comment(),
         .x11Window = x11WindowOf(over)},
        *dialog,
        {.onAnswer = [dialog](const auto& place) { dialog->end(place); },
         .whenUnavailable = [dialog] { dialog->showToolkitDialog(); }});
    return dialog;
}

FileDialog::FileDialog(QWidget& over, const Request& request, AnswerHandler onAnswer)
    : QObject(&over), window(over), asked(request), call(std::move(onAnswer))
{
}

FileDialog::~FileDialog()
{
    delete toolkitDialog;
}

void FileDialog::showToolkitDialog()
{
    toolkitDialog = new QFileDialog(&window, asked.title);
    toolkitDialog->setAttribute(Qt::WA_DeleteOnClose);
    toolkitDialog->setDirectory(QDir::home());
    switch (asked.kind) {
    case Kind::folder:
        toolkitDialog->setFileMode(QFileDialog::Directory);
        toolkitDialog->setOption(QFileDialog::ShowDirsOnly);
        break;
    case Kind::openFile:
        toolkitDialog->setFileMode(QFileDialog::ExistingFile);
        break;
    case Kind::saveFile:
        toolkitDialog->setFileMode(QFileDialog::AnyFile);
        toolkitDialog->setAcceptMode(QFileDialog::AcceptSave);
        toolkitDialog->setDefaultSuffix(
            QMimeDatabase().mimeTypeForName(asked.mimeType).preferredSuffix());
        break;
    }
    if (!asked.mimeType.isEmpty())
        toolkitDialog->setMimeTypeFilters({asked.mimeType});
    if (!asked.fileName.isEmpty())
        toolkitDialog->selectFile(asked.fileName);
    connect(toolkitDialog, &QDialog::finished, this, [this](int result) {
        const QList<QUrl> places = toolkitDialog->selectedUrls();
        const bool isChosen = result == QDialog::Accepted && !places.isEmpty();
        end(isChosen ? std::optional(places.constFirst()) : std::nullopt);
    });
    toolkitDialog->open();
}

void FileDialog::end(const std::optional<QUrl>& place)
{
    toolkitDialog = nullptr; // It deletes itself.
    deleteLater();
    call(place ? std::optional(picked(*place, asked.kind)) : std::nullopt);
}

PickedFile FileDialog::picked(const QUrl& place, Kind kind)
{
    if (!place.isLocalFile()) {
        const QString what =
            kind == Kind::folder ? QStringLiteral("folder") : QStringLiteral("file");
        return {.path = {},
                .error = QStringLiteral("\"%1\" is not a %2 of this computer.")
                             .arg(place.toDisplayString(), what)};
    }
    return {.path = QDir::cleanPath(place.toLocalFile()), .error = std::nullopt};
}

} // namespace vellumry
