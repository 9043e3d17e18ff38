#include "views/sheets/CustomLocationChooser.h"

#include "core/Text.h"
#include "views/common/Button.h"
#include "views/sheets/DriveLook.h"

#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

constexpr int symbolSize = 15;

QVBoxLayout* plainColumn(QWidget* widget)
{
    auto* column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return column;
}

StorageLocationRow::Place placeOf(const OptionRow::Contents& contents)
{
    return {.icon = contents.symbol,
            .iconColor = contents.tileColor,
            .title = contents.title,
            .path = contents.detail};
}

void showPath(StorageLocationRow& row, const QString& path,
              const CustomLocationChooser::Paths& paths)
{
    auto contents = row.contents();
    contents.detail = CustomLocationChooser::shortenPath(path, paths.homeFolder);
    row.setContents(contents);
    row.setSelected(paths.selectedPath == path);
}

} // namespace

CloudDriveSelectionRow::CloudDriveSelectionRow(const Theme& theme, const DetectedCloudDrive& drive,
                                               const QString& homeFolder,
                                               std::function<void()> action, QWidget* parent)
    : StorageLocationRow(theme, placeOf(driveRowContents(drive, homeFolder)), std::move(action),
                         parent)
{
}

CustomLocationChooser::CustomLocationChooser(const Theme& theme,
                                             std::function<bool(const QString&)> isDrivePath,
                                             std::function<void()> onSelectCustom,
                                             std::function<void()> onChoose, QWidget* parent)
    : QWidget(parent), isCloudDrivePath(std::move(isDrivePath)),
      custom(new StorageLocationRow(theme,
                                    {.icon = QStringLiteral("folder.fill"),
                                     .title = QStringLiteral("Custom Folder"),
                                     .path = {}},
                                    std::move(onSelectCustom), this)),
      choose(new Button(theme, Button::Kind::bordered, QStringLiteral("Choose Custom Folder..."),
                        this, Button::Size::small))
{
    choose->setSymbol(QStringLiteral("folder.badge.plus"), symbolSize);
    QVBoxLayout* column = plainColumn(this);
    column->addWidget(custom);
    auto* row = new QHBoxLayout;
    row->setContentsMargins(SelectableButton::ringRoom - Button::ringRoom, 2, 0, 0);
    row->addWidget(choose);
    row->addStretch();
    column->addLayout(row);
    custom->hide();
    connect(choose, &Button::clicked, this, std::move(onChoose));
}

void CustomLocationChooser::setPaths(const Paths& paths)
{
    custom->setVisible(paths.customPath && !isCloudDrivePath(*paths.customPath));
    if (paths.customPath)
        showPath(*custom, *paths.customPath, paths);
}

QString CustomLocationChooser::shortenPath(const QString& path, const QString& homeFolder)
{
    return abbreviatedPath(path, homeFolder);
}

LocalLocationRowWithChoose::LocalLocationRowWithChoose(const Theme& theme, const QString& path,
                                                       const Actions& actions, QWidget* parent)
    : QWidget(parent), defaultPath(path),
      standard(new StorageLocationRow(theme,
                                      {.icon = QStringLiteral("internaldrive"),
                                       .title = QStringLiteral("Local Storage"),
                                       .path = path},
                                      actions.onSelectDefault, this)),
      custom(new CustomLocationChooser(theme, actions.isCloudDrivePath, actions.onSelectCustom,
                                       actions.onChoose, this))
{
    QVBoxLayout* column = plainColumn(this);
    column->addWidget(standard);
    column->addWidget(custom);
}

void LocalLocationRowWithChoose::setPaths(const CustomLocationChooser::Paths& paths)
{
    showPath(*standard, defaultPath, paths);
    custom->setPaths(paths);
}

} // namespace vellumry
