#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

/// The frame around a part of the editor; it shows where the focus is.
class EditorTextBox : public QWidget {
    Q_OBJECT

public:
    static constexpr int radius = 8;

    struct Look {
        QColor ColorTokens::*ground = &ColorTokens::field;
        QColor ColorTokens::*border = &ColorTokens::strokeStrong;
    };

    /// The theme outlives the box.
    EditorTextBox(const Theme& theme, Look look, QWidget* parent = nullptr);

    /// Whether something in the box has the focus that the box is to show.
    void setFocused(bool focused);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& theme;
    Look look;
    bool isFocused = false;
};

} // namespace vellumry
