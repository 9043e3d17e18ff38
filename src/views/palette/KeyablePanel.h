#pragma once

#include <QPoint>
#include <QRect>
#include <QWidget>

#include <optional>

namespace vellumry {

class PanelActivation;

/// The palette's window: floats above all others, has no frame and no task-bar entry, takes the
/// keyboard when it is raised, and is moved by its background. Main thread only.
class KeyablePanel : public QWidget {
    Q_OBJECT

public:
    /// `activation` outlives the panel. Shows nothing yet.
    explicit KeyablePanel(PanelActivation& activation, QWidget* parent = nullptr);

    /// The widget that fills the panel from now on, which takes its size; owned by the panel.
    void setContentView(QWidget* view);

    /// Creates the system's window, unseen, so that the first showing need not. To be called when
    /// there is time, after start. Painting is left to that showing: fonts and glyphs would take
    /// five megabytes from everyone who has not raised the panel yet, to save some milliseconds.
    void prepare();

    /// Puts the panel in the middle of the screen that the pointer is on.
    void center();

    /// Where the panel was put, by center() or by the person's hand. Not geometry(), which for a
    /// moment after the showing can tell the corner within the window manager's frame instead.
    [[nodiscard]] QRect place() const { return {corner, size()}; }

    /// Shows the panel above all others where it was put, and gives it the keyboard.
    void orderFront();

    /// Takes the panel off the screen.
    void orderOut();

    /// Whether the panel has the keyboard.
    [[nodiscard]] bool isKey() const { return isActiveWindow(); }

Q_SIGNALS:
    void gainedKeyStatus();
    void resignedKeyStatus();

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void put(QPoint newCorner);
    void updateMask();

    PanelActivation& desktop;
    QPoint corner;
    std::optional<QPoint> dragOffset; ///< of the pointer from the panel's corner
    bool wasKey = false;
};

} // namespace vellumry
