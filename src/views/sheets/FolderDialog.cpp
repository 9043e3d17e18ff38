#include "views/sheets/FolderDialog.h"

#include "views/common/FileDialog.h"

#include <utility>

namespace vellumry {

PickFolder FolderDialog::over(QWidget& widget)
{
    return [&widget](const QString& title, auto onAnswer) {
        FileDialog::show(widget, {.kind = FileChooser::Kind::folder, .title = title},
                         std::move(onAnswer));
    };
}

} // namespace vellumry
