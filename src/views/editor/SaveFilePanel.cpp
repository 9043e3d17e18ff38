#include "views/editor/SaveFilePanel.h"

#include "views/common/AlertCard.h"
#include "views/common/FileDialog.h"
#include "views/common/SheetHost.h"

#include <QMimeDatabase>

#include <memory>
#include <utility>

namespace vellumry {

SaveFilePanel::SaveFilePanel(const Theme& look, std::function<SheetHost&()> host)
    : theme(look), sheets(std::move(host))
{
}

void SaveFilePanel::ask(const Request& request, std::function<void(const QString&)> onChosen)
{
    const QMimeType wanted = QMimeDatabase().mimeTypeForName(request.mimeType);
    const QString type = wanted.isValid() ? request.mimeType : QStringLiteral("text/plain");
    QString name = request.fileName;
    name.replace(u'/', u'-').remove(QChar(0));

    FileDialog::show(*sheets().window(),
                     {.kind = FileChooser::Kind::saveFile,
                      .title = request.title,
                      .fileName = name,
                      .mimeType = type},
                     [this, onChosen = std::move(onChosen)](const auto& answer) {
                         if (answer && answer->error)
                             warn(QStringLiteral("The file cannot be saved there"), *answer->error);
                         else if (answer)
                             onChosen(answer->path);
                     });
}

void SaveFilePanel::warn(const QString& message, const QString& informativeText)
{
    SheetHost& host = sheets();
    // The alert is known to its own answer once it is there.
    auto card = std::make_shared<QWidget*>(nullptr);
    const auto close = [&host, card] { host.dismiss(*card); };
    auto* alert = new AlertCard(
        theme, {.symbol = QStringLiteral("exclamationmark.triangle.fill"),
                .symbolColor = &ColorTokens::warning,
                .title = message,
                .message = informativeText,
                .answers = {{QStringLiteral("OK"), Button::Kind::primary, close, true}}});
    *card = alert;
    host.present(alert, {.onCancel = close, .firstFocus = alert->firstFocus()});
}

} // namespace vellumry
