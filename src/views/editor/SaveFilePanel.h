#pragma once

#include "library/SaveFileDialog.h"
#include "views/common/Theme.h"

namespace vellumry {

class SheetHost;

/// The desktop's own dialog for the place of a file, where it has one, and a sheet for what has
/// failed.
class SaveFilePanel final : public SaveFileDialog {
public:
    /// `sheets` tells over which window the dialog and the alert stand; asked each time.
    SaveFilePanel(const Theme& theme, std::function<SheetHost&()> sheets);

    void ask(const Request& request, std::function<void(const QString& path)> onChosen) override;
    void warn(const QString& message, const QString& informativeText) override;

private:
    const Theme& theme;
    std::function<SheetHost&()> sheets;
};

} // namespace vellumry
