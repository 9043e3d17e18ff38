#include "views/editor/EditorTextBox.h"

#include "views/common/Strokes.h"

#include <QPainter>

namespace vellumry {

EditorTextBox::EditorTextBox(const Theme& colors, Look appearance, QWidget* parent)
    : QWidget(parent), theme(colors), look(appearance)
{
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void EditorTextBox::setFocused(bool focused)
{
    isFocused = focused;
    update();
}

void EditorTextBox::paintEvent(QPaintEvent*)
{
    constexpr qreal focusWidth = 2;
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), radius, token.*look.ground);
    if (!isFocused) {
        strokeRounded(painter, rect(), radius, token.*look.border);
        return;
    }
    constexpr qreal half = focusWidth / 2;
    painter.setPen(QPen(token.focusRing, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius - half,
                            radius - half);
}

} // namespace vellumry
