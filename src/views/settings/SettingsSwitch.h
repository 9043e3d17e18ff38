#pragma once

#include "views/common/Button.h"

namespace vellumry {

/// A switch: isChecked() is whether it is on.
class SettingsSwitch final : public Button {
    Q_OBJECT

public:
    /// `name` tells what is switched. The theme outlives the switch.
    SettingsSwitch(const Theme& theme, const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
};

} // namespace vellumry
