#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"
#include "views/sidebar/CustomColorPickerState.h"

#include <QObject>

#include <optional>

namespace vellumry {

class CollectionColors;
class SheetHost;
class SnippetListViewModel;

/// What the sidebar asks about one collection: its new name, a colour of one's own, whether it is
/// to be deleted. Each question is a sheet of its own. Main thread only.
class CollectionDialogs : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    struct Dependencies {
        SnippetListViewModel& viewModel;
        CollectionColors& colors;
        Scheduler& scheduler;
        const Theme& theme;
        SheetHost& sheets;
    };

    explicit CollectionDialogs(const Dependencies& dependencies, QObject* parent);

    void showRename(const QString& name);
    /// A moment later.
    void showColorPicker(const QString& name);
    /// A moment later.
    void showDelete(const QString& name);

    [[nodiscard]] const std::optional<QString>& collectionToRename() const { return toRename; }
    [[nodiscard]] const std::optional<QString>& collectionToDelete() const { return toDelete; }
    [[nodiscard]] const CustomColorPickerState& colorPickerState() const { return colorPicker; }

private:
    void presentColorPicker(const QString& name);
    void presentDelete(const QString& name);

    Dependencies with;
    std::optional<QString> toRename;
    std::optional<QString> toDelete;
    CustomColorPickerState colorPicker;
};

} // namespace vellumry
