#pragma once

#include "settings/AppearanceMode.h"
#include "views/common/Button.h"

#include <functional>

namespace vellumry {

/// One of the looks to choose from. Those with the same parent are a choice of one: Tab reaches the
/// chosen one, and the arrow keys choose another.
class AppearanceModeButton final : public Button {
    Q_OBJECT

public:
    struct Colors {
        QColor normalBackground;
        QColor normalBorder;
        QColor normalText;
        QColor selectedBackground;
        QColor selectedBorder;
        QColor selectedText;

        [[nodiscard]] static Colors of(const ColorTokens& token);
    };

    /// `action` is run when the person chooses the mode. The theme outlives the button.
    AppearanceModeButton(const Theme& theme, AppearanceMode mode, std::function<void()> action,
                         QWidget* parent = nullptr);

    [[nodiscard]] AppearanceMode mode() const { return shownMode; }
    [[nodiscard]] bool isSelected() const { return isChecked(); }
    void setSelected(bool isSelected) { setChecked(isSelected); }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    AppearanceMode shownMode;
};

} // namespace vellumry
