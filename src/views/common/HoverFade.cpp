#include "views/common/HoverFade.h"

#include "views/common/Motion.h"

#include <QColor>

namespace vellumry {

namespace {

constexpr std::chrono::milliseconds hoverTime{90};

} // namespace

HoverFade::HoverFade(QWidget* widget) : QVariantAnimation(widget), target(widget)
{
    setStartValue(0.0);
    setEndValue(1.0);
    setEasingCurve(QEasingCurve::OutQuad);
    connect(this, &QVariantAnimation::valueChanged, widget, qOverload<>(&QWidget::update));
}

void HoverFade::setHovered(bool hovered)
{
    setDirection(hovered ? Forward : Backward);
    setDuration(int(animationTime(*target, hoverTime).count()));
    start();
}

QColor mixed(const QColor& from, const QColor& to, qreal progress)
{
    const auto between = [progress](float a, float b) { return float(a + (b - a) * progress); };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()), between(from.alphaF(), to.alphaF()));
}

} // namespace vellumry
