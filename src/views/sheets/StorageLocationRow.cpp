#include "views/sheets/StorageLocationRow.h"

#include "core/Text.h"
#include "views/common/Button.h"

#include <QVBoxLayout>

#include <utility>

namespace vellumry {

StorageLocationRow::StorageLocationRow(const Theme& theme, const Place& place,
                                       std::function<void()> action, QWidget* parent)
    : OptionRow(theme,
                {.symbol = place.icon,
                 .tileColor = place.iconColor,
                 .isTiled = true,
                 .title = place.title,
                 .detail = place.path,
                 .isPath = true,
                 .badge = place.badge},
                {}, std::move(action), parent)
{
}

LocalStorageRowWithChange::LocalStorageRowWithChange(const Theme& theme,
                                                     std::function<void()> onSelectDefault,
                                                     std::function<void()> onSelectCustom,
                                                     std::function<void()> onChange,
                                                     QWidget* parent)
    : QWidget(parent), standard(new StorageLocationRow(theme,
                                                       {.icon = QStringLiteral("internaldrive"),
                                                        .title = QStringLiteral("Local Storage"),
                                                        .path = {}},
                                                       std::move(onSelectDefault), this)),
      custom(new StorageLocationRow(theme,
                                    {.icon = QStringLiteral("folder.fill"),
                                     .title = QStringLiteral("Custom Folder"),
                                     .path = {}},
                                    std::move(onSelectCustom), this)),
      change(new Button(theme, Button::Kind::link, QStringLiteral("Change..."), this,
                        Button::Size::small))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(standard);
    column->addWidget(custom);
    custom->hide();
    connect(change, &Button::clicked, this, std::move(onChange));
    standard->setTrailing(change);
}

void LocalStorageRowWithChange::setPaths(const Paths& paths)
{
    const auto show = [&](StorageLocationRow& row, const QString& path) {
        auto contents = row.contents();
        contents.detail = abbreviatedPath(path, paths.homeFolder);
        row.setContents(contents);
        row.setSelected(paths.selectedPath == path);
    };
    show(*standard, paths.defaultPath);
    if (paths.customPath) {
        show(*custom, *paths.customPath);
        if (custom->isHidden()) {
            standard->setTrailing(nullptr);
            custom->setTrailing(change);
            custom->show();
            setTabOrder(custom, change);
        }
    }
}

} // namespace vellumry
