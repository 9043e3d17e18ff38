#pragma once

#include "views/common/Theme.h"

#include <QWidget>

namespace vellumry {

class TextField;

/// A control that yields a colour: a field of saturation and brightness, a strip of hues, and the
/// digits. All three can be worked with the mouse and with the keyboard.
class ColorWell : public QWidget {
    Q_OBJECT

public:
    /// The theme outlives the well.
    ColorWell(const Theme& theme, const QColor& initialColor, QWidget* parent = nullptr);
    ~ColorWell() override;

    [[nodiscard]] QColor color() const;
    void setColor(const QColor& color);

    [[nodiscard]] QWidget* shadeField() const;
    [[nodiscard]] QWidget* hueStrip() const;
    [[nodiscard]] TextField* digits() const { return hex; }

Q_SIGNALS:
    void colorChanged(const QColor& color);

private:
    class Shades;
    class Hues;

    void note();

    float hue = 0;
    float saturation = 0;
    float brightness = 0;
    Shades* shades;
    Hues* hues;
    TextField* hex;
};

} // namespace vellumry
