#pragma once

#include "views/common/AccessibleRow.h"
#include "views/common/HoverFade.h"
#include "views/common/Theme.h"

#include <functional>
#include <optional>

namespace vellumry {

class PopupMenu;

/// One row of the sidebar: a pseudo-collection with its symbol, or a collection with its dot.
class CollectionRowView : public AccessibleRow {
    Q_OBJECT

public:
    static constexpr int rowHeight = 32;
    static constexpr int radius = 6;

    /// What the row shows.
    struct Contents {
        QString icon; ///< a symbol; empty for a collection, which has a dot
        QString title;
        qsizetype count = 0;
        bool isSelected = false;
        bool isFocused = false; ///< the sidebar has the keys
        QColor ColorTokens::*iconColor = &ColorTokens::textSecondary;
        std::optional<QColor> collectionColor;

        friend bool operator==(const Contents&, const Contents&) = default;
    };

    /// What the row does. A row without onRename has no menu.
    struct Actions {
        std::function<void()> onSelect;
        std::function<void(bool isHovered)> onHoverChange;
        std::function<void()> onRename = {};
        std::function<void()> onExport = {};
        std::function<void()> onDelete = {};
        std::function<void(const QString& preset)> onColorChange = {};
        std::function<void()> onCustomColor = {};
        /// The row has got the focus by Tab.
        std::function<void()> onTabFocus;
    };

    /// The theme outlives the row.
    CollectionRowView(const Theme& theme, Actions actions, QWidget* parent);

    void setContents(const Contents& contents);
    [[nodiscard]] const Contents& contents() const { return shown; }
    [[nodiscard]] bool isHovered() const { return hovered; }

    /// The place of a row that is being dragged: an outline with faint contents.
    void setOpenPlace(bool open);
    /// The row as it lies on the sheet, for dragging.
    [[nodiscard]] QPixmap picture();

    /// The context menu; none for a pseudo-collection. Belongs to the caller.
    [[nodiscard]] PopupMenu* makeMenu();

    [[nodiscard]] QSize sizeHint() const override;
    void press() override;

Q_SIGNALS:
    /// The row is being dragged off its place, held there.
    void dragStarted(const QPoint& grip);
    void dragMoved(const QPoint& screenPosition);
    void dragEnded(const QPoint& screenPosition);

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    struct Press {
        QPoint grip;           ///< within the row
        QPoint screenPosition; ///< for the row itself can move under the pointer
    };

    [[nodiscard]] bool isFarFromPress(const QMouseEvent& event) const;
    void endPress(const QMouseEvent& event);
    void setHovered(bool isHovered);
    void paintContents(QPainter& painter, const QRectF& row) const;

    const Theme& theme;
    Actions actions;
    Contents shown;
    bool hovered = false;
    bool isOpenPlace = false;
    HoverFade* hover;
    std::optional<Press> pressed;
    bool isDragging = false;
};

} // namespace vellumry
