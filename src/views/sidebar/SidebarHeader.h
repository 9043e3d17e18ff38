#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>

class QMenu;
class QUrl;

namespace vellumry {

class Button;

/// The head of the sidebar: the logo and the name, which lead to the program's web site, and the
/// button of the application menu.
class SidebarHeader : public QWidget {
    Q_OBJECT

public:
    using OpenExternally = std::function<void(const QUrl&)>;

    /// The theme outlives the header.
    SidebarHeader(const Theme& theme, OpenExternally openExternally, QWidget* parent);

    /// The menu that the button opens; without one there is no button. Not owned.
    void setApplicationMenu(QMenu* menu);
    void openApplicationMenu();

    [[nodiscard]] Button* brandButton() const { return brand; }
    [[nodiscard]] Button* menuButton() const { return menu; }

private:
    Button* brand;
    Button* menu;
    QMenu* applicationMenu = nullptr;
};

} // namespace vellumry
