#pragma once

#include "views/common/Theme.h"

#include <QObject>
#include <QPointer>

class QKeyEvent;
class QMenuBar;

namespace vellumry {

class CollectionSidebarView;
class PopupMenu;

/// The application's menus in the main window. While the sidebar is on the screen they are behind
/// its menu button, as one list; where it is not, the menu bar shows, so that they can be reached
/// at any time. A bar that the desktop shows in its own place stands for both. F10 opens them, and
/// so does Alt, pressed and let go alone.
class ApplicationMenus : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of `contents`, which hold the sidebar and are below the bar.
    ApplicationMenus(CollectionSidebarView& sidebar, const Theme& theme, QWidget& contents);

    /// The bar of the window, with the menus in it, the application's own first. Not owned; it may
    /// go at any time, and another one may take its place.
    void setBar(QMenuBar& newBar);
    /// Whether a sheet covers what the menus act upon: then the bar offers the application's own
    /// menu alone.
    void setCovered(bool isCovered);
    void applyTheme();

    /// What the button opens; none before there was a bar.
    [[nodiscard]] PopupMenu* list() const { return menu; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Shows the menus of the bar as the program's other menus.
    void dressMenus();
    [[nodiscard]] PopupMenu* makeList() const;
    [[nodiscard]] bool isButtonOnScreen() const;
    void arrange();
    void offerMenus();
    bool handleKey(const QKeyEvent& event);
    bool open();

    QWidget& contents;
    CollectionSidebarView& sidebarView;
    const QWidget* columns; ///< what the sidebar comes and goes with
    const Theme& theme;
    QPointer<QMenuBar> bar;
    PopupMenu* menu = nullptr;
    bool covered = false;
    bool isAltAlone = false; ///< Alt is down, and nothing has happened since
};

} // namespace vellumry
