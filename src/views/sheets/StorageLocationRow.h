#pragma once

#include "views/sheets/OptionRow.h"

#include <functional>
#include <optional>

namespace vellumry {

class Button;

/// A place where the library can live, to be chosen.
class StorageLocationRow : public OptionRow {
    Q_OBJECT

public:
    struct Place {
        QString icon;
        std::optional<QColor> iconColor = std::nullopt; ///< none for a place of this machine
        QString title;
        QString path; ///< for people
        QString badge = {};
    };

    /// The theme outlives the row.
    StorageLocationRow(const Theme& theme, const Place& place, std::function<void()> action,
                       QWidget* parent);
};

/// The places of this machine, in a row each: the default folder and, once there is one, the folder
/// that the person has picked. The last of them bears the button for picking one.
class LocalStorageRowWithChange : public QWidget {
    Q_OBJECT

public:
    struct Paths {
        std::optional<QString> customPath;
        QString defaultPath;
        std::optional<QString> selectedPath;
        QString homeFolder; ///< for showing paths
    };

    /// The theme outlives the rows.
    LocalStorageRowWithChange(const Theme& theme, std::function<void()> onSelectDefault,
                              std::function<void()> onSelectCustom, std::function<void()> onChange,
                              QWidget* parent);

    void setPaths(const Paths& paths);
    [[nodiscard]] StorageLocationRow& defaultRow() const { return *standard; }
    [[nodiscard]] StorageLocationRow& customRow() const { return *custom; }
    [[nodiscard]] Button& changeButton() const { return *change; }

private:
    StorageLocationRow* standard;
    StorageLocationRow* custom;
    Button* change;
};

} // namespace vellumry
