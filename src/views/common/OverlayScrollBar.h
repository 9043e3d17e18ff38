#pragma once

#include "core/Scheduler.h"

#include <QColor>
#include <QWidget>

#include <optional>

class QAbstractScrollArea;

namespace vellumry {

/// A scroll handle that lies over the right edge of a scroll area and takes no space. It shows
/// while the area scrolls or the pointer moves over it, and goes a while after. Its own scroll
/// bar stays hidden and keeps the position.
class OverlayScrollBar : public QWidget {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds lingerTime{800};

    struct Look {
        QColor handle;
        QColor handleHovered; ///< while hovered or dragged
        int thickness = 5;
        int thicknessHovered = 8;
        int margin = 2; ///< from the edges
    };

    /// Becomes a child of `area`; the scheduler outlives it.
    OverlayScrollBar(QAbstractScrollArea& area, Look look, Scheduler& scheduler);

    void setLook(const Look& appearance);

    /// Whether the handle is shown at present.
    [[nodiscard]] bool isHandleShown() const { return shown; }

    /// The handle's place in this widget; empty when everything fits.
    [[nodiscard]] QRectF handleRect() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    struct Drag {
        qreal pointerY;
        int scrollValue;
    };

    void place();
    void showHandle();
    [[nodiscard]] bool isInUse() const { return drag.has_value() || underMouse(); }

    QAbstractScrollArea& scrollArea;
    Look look;
    Debouncer hideWhenIdle;
    bool shown = false;
    std::optional<Drag> drag;
};

} // namespace vellumry
