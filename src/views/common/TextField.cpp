#include "views/common/TextField.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr int radius = 6;
constexpr int padding = 10;
constexpr int ownMarginOfLineEdit = 2; // QLineEdit's text starts this far inside of it
constexpr int symbolSize = 14;
constexpr int symbolGap = 8;
constexpr int clearSide = 20;
constexpr int clearMargin = 6;
constexpr qreal focusWidth = 2;
constexpr int caretOverhang = 3; ///< above and below the letters

} // namespace

TextField::TextField(const Theme& look, const QString& placeholder, QWidget* parent, int height)
    : CaretLineEdit(look.colors().accent, 0, parent), theme(look), designedHeight(height)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, &TextField::applyTheme);
    applyTheme();
}

void TextField::applyTheme()
{
    QPalette colors = theme.palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    setPalette(colors);
    const QFont font = theme.font(style);
    setFont(font);
    setCaretColor(theme.colors().accent);
    setCaretHeight(QFontInfo(font).pixelSize() + caretOverhang);
    updateGeometry();
    update();
}

void TextField::setTextStyle(TextStyle textStyle)
{
    style = textStyle;
    applyTheme();
}

void TextField::setSymbol(const QString& name)
{
    symbolName = name;
    placeText();
}

void TextField::addClearButton(const QString& name, bool always)
{
    clearer = Button::withSymbol(theme, QStringLiteral("xmark.circle.fill"), name, this);
    clearer->setSymbol(clearer->symbol(), 14);
    clearer->setSide(clearSide);
    clearer->setCursor(Qt::ArrowCursor);
    connect(clearer, &Button::clicked, this, &TextField::clearRequested);
    if (!always) {
        clearer->setVisible(!text().isEmpty());
        connect(this, &QLineEdit::textChanged, this,
                [this](const QString& text) { clearer->setVisible(!text.isEmpty()); });
    }
    placeText();
}

void TextField::placeText()
{
    const int left = padding + (symbolName.isEmpty() ? 0 : symbolSize + symbolGap);
    const int right = clearer ? clearMargin + clearSide + 2 : padding;
    setTextMargins(left - ownMarginOfLineEdit, 0, right - ownMarginOfLineEdit, 0);
    if (!clearer)
        return;
    clearer->resize(clearer->sizeHint());
    clearer->move(width() - clearMargin - clearSide - Button::ringRoom,
                  (height() - clearer->height()) / 2);
}

void TextField::resizeEvent(QResizeEvent* event)
{
    CaretLineEdit::resizeEvent(event);
    placeText();
}

QSize TextField::sizeHint() const
{
    return {CaretLineEdit::sizeHint().width(), theme.rowHeight(designedHeight, style)};
}

QSize TextField::minimumSizeHint() const
{
    return {60, sizeHint().height()};
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        const ColorTokens& token = theme.colors();
        QPainter painter(this);
        fillRounded(painter, rect(), radius, token.field);
        if (hasFocus()) {
            const qreal half = focusWidth / 2;
            painter.setPen(QPen(token.focusRing, focusWidth));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half),
                                    radius - half, radius - half);
        } else {
            strokeRounded(painter, rect(), radius, token.fieldStroke);
        }
        if (!symbolName.isEmpty())
            Icon(symbolName)
                .paint(painter, QPointF(padding, (height() - symbolSize) / 2.0), symbolSize,
                       token.textTertiary);
    }
    CaretLineEdit::paintEvent(event);
}

} // namespace vellumry
