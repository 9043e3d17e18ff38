#pragma once

#include <QWidget>

namespace vellumry {

/// The window around the settings view. It ends, with its contents, when it is closed.
class SettingsWindow final : public QWidget {
    Q_OBJECT

public:
    /// Takes the contents over.
    explicit SettingsWindow(QWidget* contents, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The window has left the screen, closed or hidden.
    void disappeared();

protected:
    void hideEvent(QHideEvent* event) override;
};

} // namespace vellumry
