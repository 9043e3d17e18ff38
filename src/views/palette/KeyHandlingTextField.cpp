#include "views/palette/KeyHandlingTextField.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>

#include <utility>

namespace vellumry {

namespace {

constexpr int caretWidth = 2;
constexpr int caretHeight = 24;

/// Makes the field's own caret, which has the text's colour, invisible.
class WithoutCaret final : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override
    {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

KeyHandlingTextField::KeyHandlingTextField(const QColor& color, KeyHandler handler, QWidget* parent)
    : QLineEdit(parent), caretColor(color), keyHandler(std::move(handler))
{
    setFrame(false);
    setFocusPolicy(Qt::StrongFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    auto* style = new WithoutCaret;
    style->setParent(this);
    setStyle(style);

    connect(&blinkTimer, &QTimer::timeout, this, [this] {
        isCaretShown = !isCaretShown;
        update();
    });
    connect(this, &QLineEdit::cursorPositionChanged, this, &KeyHandlingTextField::showCaret);
    qApp->installEventFilter(this);
}

KeyHandlingTextField::~KeyHandlingTextField() = default;

bool KeyHandlingTextField::isCursorAtEnd() const
{
    return !hasSelectedText() && cursorPosition() == text().size();
}

bool KeyHandlingTextField::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto* widget = static_cast<const QWidget*>(watched);
    if (widget->window() != window() || !window()->isActiveWindow())
        return false;
    return keyHandler(*static_cast<const QKeyEvent*>(event));
}

void KeyHandlingTextField::keyPressEvent(QKeyEvent* event)
{
    if (!keyHandler(*event))
        QLineEdit::keyPressEvent(event);
}

void KeyHandlingTextField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    if (!isCaretShown || !hasFocus() || hasSelectedText())
        return;
    // Behind the text, but before the placeholder, whose first letter it would stand upon.
    constexpr int gap = 1;
    const int position = cursorRect().center().x(); // the rectangle is widened around it
    const int x = text().isEmpty() ? position - gap - caretWidth + 1 : position + gap;
    QPainter painter(this);
    painter.fillRect(QRect(x, (height() - caretHeight) / 2, caretWidth, caretHeight), caretColor);
}

void KeyHandlingTextField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    showCaret();
}

void KeyHandlingTextField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    blinkTimer.stop();
    update();
}

void KeyHandlingTextField::showCaret()
{
    isCaretShown = true;
    const int period = QApplication::cursorFlashTime();
    if (period > 1 && hasFocus())
        blinkTimer.start(period / 2);
    else
        blinkTimer.stop();
    update();
}

} // namespace vellumry
