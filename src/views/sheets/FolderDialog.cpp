#include "views/sheets/FolderDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QUrl>

#include <utility>

namespace vellumry {

PickFolder FolderDialog::over(QWidget& widget)
{
    return [&widget](const QString& title, auto onAnswer) {
        auto* dialog = new QFileDialog(&widget, title);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(QFileDialog::Directory);
        dialog->setOption(QFileDialog::ShowDirsOnly);
        dialog->setDirectory(QDir::home());
        QObject::connect(dialog, &QDialog::finished, dialog,
                         [dialog, onAnswer = std::move(onAnswer)](int result) {
                             const QList<QUrl> places = dialog->selectedUrls();
                             if (result != QDialog::Accepted || places.isEmpty())
                                 onAnswer(std::nullopt);
                             else
                                 onAnswer(answer(places.constFirst()));
                         });
        dialog->open();
    };
}

PickedFile FolderDialog::answer(const QUrl& place)
{
    if (!place.isLocalFile())
        return {.path = {},
                .error = QStringLiteral("\"%1\" is not a folder of this computer.")
                             .arg(place.toDisplayString())};
    return {.path = QDir::cleanPath(place.toLocalFile()), .error = std::nullopt};
}

} // namespace vellumry
