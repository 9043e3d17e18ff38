#pragma once

#include "models/DetectedCloudDrive.h"
#include "views/sheets/StorageLocationRow.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace vellumry {

/// A cloud drive as a place for the library.
class CloudDriveSelectionRow : public StorageLocationRow {
    Q_OBJECT

public:
    /// The theme outlives the row.
    CloudDriveSelectionRow(const Theme& theme, const DetectedCloudDrive& drive,
                           const QString& homeFolder, std::function<void()> action,
                           QWidget* parent);
};

/// A folder of the person's own: a row, once there is one that no other row stands for, and the
/// button for choosing it.
class CustomLocationChooser : public QWidget {
    Q_OBJECT

public:
    struct Paths {
        std::optional<QString> customPath;
        std::optional<QString> selectedPath;
        QString homeFolder;
    };

    /// The theme outlives the chooser. `isCloudDrivePath` tells whether a row of a drive stands
    /// for a path.
    CustomLocationChooser(const Theme& theme,
                          std::function<bool(const QString& path)> isCloudDrivePath,
                          std::function<void()> onSelectCustom, std::function<void()> onChoose,
                          QWidget* parent);

    void setPaths(const Paths& paths);
    [[nodiscard]] StorageLocationRow& row() const { return *custom; }
    [[nodiscard]] Button& chooseButton() const { return *choose; }

    /// A path with "~" for the home folder.
    [[nodiscard]] static QString shortenPath(const QString& path, const QString& homeFolder);

private:
    std::function<bool(const QString&)> isCloudDrivePath;
    StorageLocationRow* custom;
    Button* choose;
};

/// The places of this machine: the default folder, and one of the person's own.
class LocalLocationRowWithChoose : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<bool(const QString& path)> isCloudDrivePath;
        std::function<void()> onSelectDefault;
        std::function<void()> onSelectCustom;
        std::function<void()> onChoose;
    };

    /// The theme outlives the rows.
    LocalLocationRowWithChoose(const Theme& theme, const QString& defaultPath,
                               const Actions& actions, QWidget* parent);

    void setPaths(const CustomLocationChooser::Paths& paths);
    [[nodiscard]] StorageLocationRow& defaultRow() const { return *standard; }
    [[nodiscard]] CustomLocationChooser& chooser() const { return *custom; }

private:
    QString defaultPath;
    StorageLocationRow* standard;
    CustomLocationChooser* custom;
};

} // namespace vellumry
