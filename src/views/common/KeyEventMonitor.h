#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

namespace vellumry {

/// Sees each key press in the window of a view before the widget that has the focus does, as long
/// as the view is shown, the window is the active one and no sheet covers it.
class KeyEventMonitor : public QObject {
    Q_OBJECT

public:
    /// Answers whether it has consumed the key, which then goes no further.
    using Handler = std::function<bool(const QKeyEvent&)>;

    /// Becomes a child of `view`. Of several monitors the latest is asked first.
    KeyEventMonitor(Handler handler, QWidget* view);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Handler handler;
    QWidget* view;
};

/// Whether the key comes with Shift, Control, Alt or Super.
[[nodiscard]] bool hasModifier(const QKeyEvent& event);

} // namespace vellumry
