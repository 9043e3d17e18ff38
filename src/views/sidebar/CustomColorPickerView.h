#pragma once

#include "views/common/Theme.h"

#include <QWidget>

#include <functional>

namespace vellumry {

class Button;
class ColorWell;

/// The sheet that asks for a colour of one's own for a collection.
class CustomColorPickerView : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the view.
    CustomColorPickerView(const Theme& theme, const QString& collectionName,
                          const QColor& initialColor,
                          std::function<void(const QColor& color)> onConfirm,
                          std::function<void()> onCancel, QWidget* parent = nullptr);

    [[nodiscard]] ColorWell& well() const { return *colorWell; }
    [[nodiscard]] Button* confirmButton() const { return confirm; }
    [[nodiscard]] Button* cancelButton() const { return cancel; }

private:
    ColorWell* colorWell;
    Button* cancel;
    Button* confirm;
};

} // namespace vellumry
