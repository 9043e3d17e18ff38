#pragma once

#include "models/ConflictFile.h"

#include <QList>
#include <QObject>

#include <functional>

class QWidget;

namespace vellumry {

class DependencyContainer;
class SheetHost;
class Theme;

/// What the settings window is filled with: the settings and the sheets that come up over them.
/// Main thread only.
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

private:
    void showChangeLocation(SheetHost& sheets);
    void showConflicts(SheetHost& sheets, const QList<ConflictFile>& found);

    Dependencies with;
};

} // namespace vellumry
