#include "views/common/CaretLineEdit.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>

#include <algorithm>
#include <iterator>

namespace vellumry {

namespace {

constexpr int caretWidth = 2;

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

CaretLineEdit::CaretLineEdit(const QColor& color, int height, QWidget* parent)
    : QLineEdit(parent), caretColor(color), caretHeight(height)
{
    setFrame(false);
    auto* style = new WithoutCaret;
    style->setParent(this);
    setStyle(style);
    connect(&blinkTimer, &QTimer::timeout, this, [this] {
        isCaretShown = !isCaretShown;
        update();
    });
    connect(this, &QLineEdit::cursorPositionChanged, this, &CaretLineEdit::showCaret);
}

CaretLineEdit::~CaretLineEdit() = default;

void CaretLineEdit::setCaretColor(const QColor& color)
{
    caretColor = color;
    update();
}

void CaretLineEdit::setCaretHeight(int height)
{
    caretHeight = height;
    update();
}

void CaretLineEdit::amendEdit(const QString& amended, int caret)
{
    const QSignalBlocker quiet(this);
    // The step that the edit belongs to is done once more, with this outcome, so that undo and redo
    // never come by what was amended.
    undo();
    const QString before = text();
    const auto differing =
        std::mismatch(before.cbegin(), before.cend(), amended.cbegin(), amended.cend()).first;
    const auto begin = differing - before.cbegin();
    const auto last = std::mismatch(before.crbegin(), std::make_reverse_iterator(differing),
                                    amended.crbegin(), amended.crend() - begin)
                          .first;
    const auto tail = last - before.crbegin();
    setSelection(int(begin), int(before.size() - tail - begin));
    insert(amended.sliced(begin, amended.size() - tail - begin));
    setCursorPosition(caret);
    showCaret();
}

void CaretLineEdit::paintEvent(QPaintEvent* event)
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

void CaretLineEdit::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    showCaret();
}

void CaretLineEdit::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    blinkTimer.stop();
    update();
}

void CaretLineEdit::showCaret()
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
