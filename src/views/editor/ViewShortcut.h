#pragma once

#include <QObject>
#include <Qt>

#include <functional>

class QKeyEvent;
class QWidget;

namespace vellumry {

/// A key that acts for a view wherever in its window the focus is, and before a menu's of the same
/// name: as long as the view is shown, the window is the active one and no sheet lies above.
class ViewShortcut : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of `view`. Acts with exactly these modifiers.
    ViewShortcut(Qt::Key key, Qt::KeyboardModifiers modifiers, std::function<void()> action,
                 QWidget* view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool isReachable() const;

    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    std::function<void()> action;
    QWidget* view;
};

} // namespace vellumry
