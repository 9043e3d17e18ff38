#include "views/sidebar/ColorWell.h"

#include "settings/CategoryColorService.h"
#include "views/common/AccessibleRole.h"
#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/common/TextField.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

constexpr int shadesHeight = 132;
constexpr int hueHeight = 20; ///< that of the knob, which is higher than the strip
constexpr int hueThickness = 14;
constexpr int shadesRadius = 8;
constexpr int knobSize = 16;
constexpr int fieldWidth = 104;
constexpr int fieldHeight = 30;
constexpr float keyStep = 0.01F;
constexpr float bigKeyStep = 0.1F;
constexpr int hueStops = 6;
constexpr int wholeTurn = 360; ///< in degrees, as hues are told
constexpr qreal focusWidth = 2;
const QColor knobEdge(0, 0, 0, 115);

QColor hsv(float hue, float saturation, float brightness)
{
    return QColor::fromHsvF(hue, saturation, brightness);
}

float held(float value)
{
    return std::clamp(value, 0.0F, 1.0F);
}

void paintKnob(QPainter& painter, const QPointF& center, int size, qreal width, const QColor& color)
{
    const qreal radius = size / 2.0;
    painter.setPen(QPen(knobEdge, 1));
    painter.setBrush(Qt::white);
    painter.drawEllipse(center, radius + 0.5, radius + 0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(center, radius - width, radius - width);
}

void paintFocus(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color)
{
    painter.setPen(QPen(color, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
}

/// A direction, in steps, that an arrow key stands for.
std::pair<float, float> direction(const QKeyEvent& event)
{
    const float step = event.modifiers().testFlag(Qt::ShiftModifier) ? bigKeyStep : keyStep;
    switch (event.key()) {
    case Qt::Key_Left:
        return {-step, 0.0F};
    case Qt::Key_Right:
        return {step, 0.0F};
    case Qt::Key_Up:
        return {0.0F, step};
    case Qt::Key_Down:
        return {0.0F, -step};
    default:
        return {0.0F, 0.0F};
    }
}

/// A surface on which the person sets values with the mouse or the arrow keys.
class Surface : public QWidget {
public:
    Surface(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
    {
        setFocusPolicy(Qt::StrongFocus);
        setCursor(Qt::CrossCursor);
    }

protected:
    virtual void setPosition(float x, float y) = 0;
    virtual void moveBy(float x, float y) = 0;

    void mousePressEvent(QMouseEvent* event) override { follow(event->position()); }
    void mouseMoveEvent(QMouseEvent* event) override { follow(event->position()); }
    void keyPressEvent(QKeyEvent* event) override
    {
        const auto [x, y] = direction(*event);
        if (x == 0 && y == 0)
            QWidget::keyPressEvent(event);
        else
            moveBy(x, y);
    }
    void focusInEvent(QFocusEvent*) override { update(); }
    void focusOutEvent(QFocusEvent*) override { update(); }

    const Theme& theme;

private:
    void follow(const QPointF& position)
    {
        setPosition(held(float(position.x() / width())), held(float(1 - position.y() / height())));
    }
};

} // namespace

class ColorWell::Shades final : public Surface {
public:
    Shades(const Theme& look, ColorWell& colorWell) : Surface(look, &colorWell), well(colorWell)
    {
        setAccessibleRole(*this, QAccessible::Slider);
        setFixedHeight(shadesHeight);
        setAccessibleName(QStringLiteral("Saturation and brightness"));
    }

    /// Tells screen readers the values, if they are others. The value of a slider is one number.
    void tell()
    {
        const QString values = QStringLiteral("Saturation %1%, brightness %2%")
                                   .arg(qRound(well.saturation * 100))
                                   .arg(qRound(well.brightness * 100));
        if (values != accessibleDescription())
            setAccessibleDescription(values);
    }

protected:
    void setPosition(float x, float y) override
    {
        well.saturation = x;
        well.brightness = y;
        well.note();
    }
    void moveBy(float x, float y) override
    {
        setPosition(held(well.saturation + x), held(well.brightness + y));
    }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const QRectF area = rect();
        QLinearGradient across(area.topLeft(), area.topRight());
        across.setColorAt(0, Qt::white);
        across.setColorAt(1, hsv(well.hue, 1, 1));
        painter.setBrush(across);
        painter.drawRoundedRect(area, shadesRadius, shadesRadius);
        QLinearGradient up(area.bottomLeft(), area.topLeft());
        up.setColorAt(0, Qt::black);
        up.setColorAt(1, QColor(0, 0, 0, 0));
        painter.setBrush(up);
        painter.drawRoundedRect(area, shadesRadius, shadesRadius);
        strokeRounded(painter, area, shadesRadius, theme.colors().strokeStrong);
        if (hasFocus())
            paintFocus(painter, area, shadesRadius, theme.colors().focusRing);
        constexpr qreal half = knobSize / 2.0 + 1;
        paintKnob(painter,
                  {std::clamp(well.saturation * area.width(), half, area.width() - half),
                   std::clamp((1 - well.brightness) * area.height(), half, area.height() - half)},
                  knobSize, 2.5, well.color());
    }

private:
    ColorWell& well;
};

class ColorWell::Hues final : public Surface {
public:
    Hues(const Theme& look, ColorWell& colorWell) : Surface(look, &colorWell), well(colorWell)
    {
        static const bool isInstalled = [] {
            QAccessible::installFactory([](const QString&, QObject* object) {
                auto* const hues = dynamic_cast<Hues*>(object);
                return hues ? static_cast<QAccessibleInterface*>(new Interface(*hues)) : nullptr;
            });
            return true;
        }();
        (void)isInstalled;
        setFixedHeight(hueHeight);
        setAccessibleName(QStringLiteral("Hue"));
    }

    /// Tells screen readers the value, if it is another.
    void tell()
    {
        if (std::exchange(told, degrees()) == degrees())
            return;
        QAccessibleValueChangeEvent changed(this, degrees());
        QAccessible::updateAccessibility(&changed);
    }

protected:
    void setPosition(float x, float) override
    {
        well.hue = x;
        well.note();
    }
    void moveBy(float x, float y) override { setPosition(held(well.hue + x + y), 0); }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const QRectF strip(0, (height() - hueThickness) / 2.0, width(), hueThickness);
        QLinearGradient rainbow(strip.topLeft(), strip.topRight());
        for (int stop = 0; stop <= hueStops; ++stop) {
            const float at = float(stop) / hueStops;
            rainbow.setColorAt(at, hsv(at, 1, 1));
        }
        painter.setBrush(rainbow);
        painter.drawRoundedRect(strip, hueThickness / 2.0, hueThickness / 2.0);
        strokeRounded(painter, strip, hueThickness / 2.0, theme.colors().strokeStrong);
        if (hasFocus())
            paintFocus(painter, strip, hueThickness / 2.0, theme.colors().focusRing);
        constexpr qreal half = hueHeight / 2.0;
        paintKnob(painter,
                  {std::clamp(well.hue * strip.width(), half, width() - half), height() / 2.0},
                  hueHeight - 2, 3, hsv(well.hue, 1, 1));
    }

private:
    class Interface final : public QAccessibleWidget, public QAccessibleValueInterface {
    public:
        explicit Interface(Hues& strip)
            : QAccessibleWidget(&strip, QAccessible::Slider), hues(strip)
        {
        }

        void* interface_cast(QAccessible::InterfaceType type) override
        {
            return type == QAccessible::ValueInterface
                       ? static_cast<QAccessibleValueInterface*>(this)
                       : QAccessibleWidget::interface_cast(type);
        }
        [[nodiscard]] QString text(QAccessible::Text kind) const override
        {
            return kind == QAccessible::Value ? QString::number(hues.degrees()) + u'°'
                                              : QAccessibleWidget::text(kind);
        }

        [[nodiscard]] QVariant currentValue() const override { return hues.degrees(); }
        void setCurrentValue(const QVariant& value) override
        {
            hues.setPosition(held(value.toFloat() / wholeTurn), 0);
        }
        [[nodiscard]] QVariant minimumValue() const override { return 0; }
        [[nodiscard]] QVariant maximumValue() const override { return wholeTurn; }
        [[nodiscard]] QVariant minimumStepSize() const override { return 1; }

    private:
        Hues& hues;
    };

    [[nodiscard]] int degrees() const { return qRound(well.hue * wholeTurn); }

    ColorWell& well;
    int told = 0;
};

ColorWell::ColorWell(const Theme& theme, const QColor& initialColor, QWidget* parent)
    : QWidget(parent), shades(new Shades(theme, *this)), hues(new Hues(theme, *this)),
      hex(new TextField(theme, {}, this, fieldHeight))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(shades);
    column->addSpacing(7);
    column->addWidget(hues);
    column->addSpacing(9);
    auto* row = new QHBoxLayout;
    row->setSpacing(10);
    row->addWidget(new Label(theme, TextStyle::label, &ColorTokens::textSecondary,
                             QStringLiteral("Hex"), this));
    hex->setFixedWidth(fieldWidth);
    hex->setTextStyle(TextStyle::contentSmall);
    hex->setAccessibleName(QStringLiteral("Hex"));
    row->addWidget(hex);
    row->addStretch();
    column->addLayout(row);

    setColor(initialColor);
    connect(hex, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (const auto typed = colorFromHex(text)) {
            const int cursor = hex->cursorPosition();
            setColor(*typed);
            hex->setText(text); // as it was typed, with or without the "#"
            hex->setCursorPosition(cursor);
        }
    });
}

ColorWell::~ColorWell() = default;

QWidget* ColorWell::shadeField() const
{
    return shades;
}

QWidget* ColorWell::hueStrip() const
{
    return hues;
}

QColor ColorWell::color() const
{
    return hsv(hue, saturation, brightness).toRgb();
}

void ColorWell::setColor(const QColor& color)
{
    float newHue = 0;
    color.getHsvF(&newHue, &saturation, &brightness);
    // A grey has no hue: the strip stays where it is.
    if (newHue >= 0)
        hue = newHue;
    note();
}

void ColorWell::note()
{
    hex->setText(toHex(color()));
    shades->update();
    shades->tell();
    hues->update();
    hues->tell();
    Q_EMIT colorChanged(color());
}

} // namespace vellumry
