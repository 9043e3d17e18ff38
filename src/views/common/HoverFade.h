#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace vellumry {

/// How far something under the pointer has taken on its other look, from 0 to 1. Repaints the
/// widget as it changes; its child.
class HoverFade final : public QVariantAnimation {
public:
    explicit HoverFade(QWidget* widget);

    void setHovered(bool hovered);
    [[nodiscard]] qreal progress() const { return currentValue().toReal(); }

private:
    QWidget* target;
};

/// A colour on the way from one to another.
[[nodiscard]] QColor mixed(const QColor& from, const QColor& to, qreal progress);

} // namespace vellumry
