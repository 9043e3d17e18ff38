#include "views/editor/BareTextField.h"

#include "core/Text.h"
#include "views/common/Strokes.h"

#include <QKeyEvent>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int ownMarginOfLineEdit = 2;
constexpr int radius = 6;
constexpr int caretOverhang = 3;
constexpr qreal focusWidth = 2;

} // namespace

BareTextField::BareTextField(const Theme& colors, const Look& appearance,
                             const QString& placeholder, int longest, QWidget* parent)
    : CaretLineEdit(colors.colors().accent, 0, parent), theme(colors), look(appearance),
      limit(longest)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    const int side = (look.hasFocusFrame ? outset : 0) - ownMarginOfLineEdit;
    setTextMargins(side, 0, side, 0);
    connect(this, &QLineEdit::textEdited, this, &BareTextField::takeEdit);
    connect(&theme, &Theme::changed, this, &BareTextField::applyTheme);
    applyTheme();
}

void BareTextField::applyTheme()
{
    QPalette colors = theme.palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, theme.colors().*look.color);
    setPalette(colors);
    const QFont font = theme.font(look.style);
    setFont(font);
    setCaretColor(theme.colors().accent);
    setCaretHeight(QFontInfo(font).pixelSize() + caretOverhang);
    updateGeometry();
}

QString BareTextField::allowed(QString text) const
{
    text.remove(u'\n').remove(u'\r');
    return limit > 0 ? prefixOfCharacters(text, limit) : text;
}

void BareTextField::takeEdit(const QString& text)
{
    const QString kept = allowed(text);
    if (kept != text)
        amendEdit(kept, int(allowed(text.left(cursorPosition())).size()));
    Q_EMIT edited(kept);
}

void BareTextField::updateText(const QString& modelText)
{
    if (text() != modelText)
        setText(modelText);
}

QSize BareTextField::sizeHint() const
{
    return {CaretLineEdit::sizeHint().width(), theme.rowHeight(look.height, look.style)};
}

QSize BareTextField::minimumSizeHint() const
{
    return {60, sizeHint().height()};
}

bool BareTextField::event(QEvent* event)
{
    // Tab, too, which would move the focus before any other handler saw it.
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<const QKeyEvent*>(event)))
        return true;
    return CaretLineEdit::event(event);
}

bool BareTextField::handleKey(const QKeyEvent& event)
{
    const auto run = [](const std::function<void()>& action) {
        if (action)
            action();
        return bool(action);
    };
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return run(keys.onSubmit);
    case Qt::Key_Escape:
        return run(keys.onEscape);
    case Qt::Key_Tab:
        return event.modifiers() == Qt::NoModifier && run(keys.onTab);
    case Qt::Key_Backtab:
        return run(keys.onShiftTab);
    default:
        return false;
    }
}

void BareTextField::focusInEvent(QFocusEvent* event)
{
    CaretLineEdit::focusInEvent(event);
    Q_EMIT focusChanged(true);
}

void BareTextField::focusOutEvent(QFocusEvent* event)
{
    CaretLineEdit::focusOutEvent(event);
    Q_EMIT focusChanged(false);
}

void BareTextField::paintEvent(QPaintEvent* event)
{
    if (look.hasFocusFrame && hasFocus()) {
        constexpr qreal half = focusWidth / 2;
        QPainter painter(this);
        fillRounded(painter, rect(), radius, theme.colors().field);
        painter.setPen(QPen(theme.colors().focusRing, focusWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius - half,
                                radius - half);
    }
    CaretLineEdit::paintEvent(event);
}

} // namespace vellumry
