#pragma once

#include "models/ConflictFile.h"

#include <QList>
#include <QObject>

#include <functional>

class QWidget;

namespace vellumry {

class DependencyContainer;
class SettingsView;
class SheetHost;
class Theme;

/// The settings as the contents of a window of their own or as a sheet, with the sheets that come
/// up over them. Main thread only.
class SettingsContents : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    struct Dependencies {
        DependencyContainer& container;
        std::function<Theme&()> theme; ///< asked for when it is needed
    };

    explicit SettingsContents(Dependencies dependencies, QObject* parent = nullptr);

    /// New contents for a window, which takes them over.
    [[nodiscard]] QWidget* make();

    /// Shows the settings as a sheet.
    void present(SheetHost& sheets);

private:
    [[nodiscard]] SettingsView* makeView();
    void connectSheets(SettingsView& view, SheetHost& sheets);
    void showChangeLocation(SheetHost& sheets);
    void showConflicts(SheetHost& sheets, const QList<ConflictFile>& found);

    Dependencies with;
};

} // namespace vellumry
