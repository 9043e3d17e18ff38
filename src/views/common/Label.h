#pragma once

#include "views/common/Theme.h"

#include <QLabel>

namespace vellumry {

/// A text in one of the theme's styles and colours; follows the theme. Plain text only.
class Label : public QLabel {
    Q_OBJECT

public:
    using Color = QColor ColorTokens::*;

    /// The theme outlives the label.
    Label(const Theme& theme, TextStyle style, Color color, const QString& text,
          QWidget* parent = nullptr);

private:
    void applyTheme();

    const Theme& theme;
    TextStyle style;
    Color color;
};

} // namespace vellumry
