#include "views/common/Button.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Icon.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QKeyEvent>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int radius = 6;
constexpr int largeRadius = 8;
constexpr int symbolGap = 6;
constexpr qreal ringWidth = 2;

} // namespace

Button::Button(const Theme& look, Kind buttonKind, const QString& text, QWidget* parent,
               Size buttonSize)
    : QAbstractButton(parent), theme(look), kind(buttonKind), size(buttonSize),
      hover(new HoverFade(this))
{
    makeAccessibleByClicks(staticMetaObject);
    setPlainText(*this, text);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

Button* Button::withSymbol(const Theme& theme, const QString& symbol, const QString& name,
                           QWidget* parent)
{
    auto* button = new Button(theme, Kind::icon, {}, parent);
    button->setSymbol(symbol);
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

void Button::setSymbol(const QString& name, int pixels)
{
    symbolName = name;
    symbolSize = pixels;
    updateGeometry();
    update();
}

void Button::setKind(Kind newKind)
{
    kind = newKind;
    updateGeometry();
    update();
}

void Button::setFaceHeight(int pixels)
{
    faceHeight = pixels;
    updateGeometry();
}

void Button::setFaceScale(qreal scale)
{
    faceScale = scale;
    update();
}

void Button::setAccented(bool isAccented)
{
    accented = isAccented;
    update();
}

void Button::setSide(int pixels)
{
    side = pixels;
    updateGeometry();
}

QSize Button::sizeHint() const
{
    int wide = side;
    int high = side;
    if (kind != Kind::icon) {
        high = theme.rowHeight(designedHeight(), textStyle());
        wide =
            2 * padding() + qCeil(QFontMetricsF(theme.font(textStyle())).horizontalAdvance(text()));
        if (!symbolName.isEmpty())
            wide += symbolSize + symbolGap;
    }
    return {wide + 2 * ringRoom, high + 2 * ringRoom};
}

QSize Button::minimumSizeHint() const
{
    const QSize whole = sizeHint();
    return kind == Kind::icon ? whole : whole - QSize(2 * padding(), 0);
}

TextStyle Button::textStyle() const
{
    switch (size) {
    case Size::small:
        return TextStyle::labelMedium;
    case Size::large:
        return TextStyle::bodyStrong;
    default:
        return TextStyle::bodyMedium;
    }
}

int Button::designedHeight() const
{
    if (faceHeight > 0)
        return faceHeight;
    switch (size) {
    case Size::small:
        return 26;
    case Size::regular:
        return 30;
    case Size::alert:
        return 34;
    case Size::large:
        return 36;
    }
    Q_UNREACHABLE();
}

int Button::padding() const
{
    if (kind == Kind::link)
        return 6;
    if (size == Size::small)
        return 9;
    return size == Size::large ? 18 : 12;
}

Button::Colors Button::colors() const
{
    const ColorTokens& token = theme.colors();
    if (!isEnabled())
        return {token.fill, token.fill, token.fill, token.textDisabled, Qt::transparent};
    // A danger has no fills of its own for these states: it is darkened.
    constexpr int darker = 112;
    constexpr int darkest = 125;
    switch (kind) {
    case Kind::primary:
        return {token.accentFill, token.accentFillHover, token.accentFillPressed, token.onAccent,
                Qt::transparent};
    case Kind::secondary:
        return {token.fill, token.fillHover, token.fillPressed, token.textPrimary, Qt::transparent};
    case Kind::bordered:
        return {token.card, token.cardHover, token.fillPressed, token.textPrimary,
                token.fieldStroke};
    case Kind::rest: {
        const auto faint = [&](float opacity) {
            QColor color = token.secondaryMark;
            color.setAlphaF(opacity);
            return color;
        };
        return {faint(0.35F), faint(0.45F), faint(0.55F), token.textPrimary, Qt::transparent};
    }
    case Kind::done: {
        QColor fill = token.successFill;
        fill.setAlphaF(0.9F);
        return {fill, token.successFill, token.successFill, token.onSuccess, Qt::transparent};
    }
    case Kind::confirmed:
        return {token.card, token.cardHover, token.fillPressed, token.success, token.fieldStroke};
    case Kind::danger:
        return {token.dangerFill, token.dangerFill.darker(darker), token.dangerFill.darker(darkest),
                token.onDanger, Qt::transparent};
    case Kind::quietDanger: {
        QColor strong = token.dangerTint;
        strong.setAlphaF(std::min(1.0F, strong.alphaF() * 2));
        return {token.dangerTint, strong, strong, token.danger, Qt::transparent};
    }
    case Kind::link:
        return {Qt::transparent, token.fill, token.fillPressed, token.accent, Qt::transparent};
    case Kind::ghost:
        return {Qt::transparent, token.fill, token.fillPressed, token.textSecondary,
                Qt::transparent};
    case Kind::icon:
        return {Qt::transparent, token.fill, token.fillPressed,
                accented ? token.accent : token.textSecondary, Qt::transparent};
    }
    Q_UNREACHABLE();
}

void Button::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const Colors look = colors();
    const QRectF face = QRectF(rect()).adjusted(ringRoom, ringRoom, -ringRoom, -ringRoom);
    const int corner = size == Size::large ? largeRadius : radius;
    if (faceScale != 1) {
        painter.translate(face.center());
        painter.scale(faceScale, faceScale);
        painter.translate(-face.center());
    }
    QColor fill = look.fill;
    // Towards a fill from nothing, it is the opacity alone that changes.
    if (fill.alpha() == 0) {
        fill = look.hover;
        fill.setAlpha(0);
    }
    fillRounded(painter, face, corner,
                isDown() ? look.pressed : mixed(fill, look.hover, hover->progress()));
    if (look.border.alpha() > 0)
        strokeRounded(painter, face, corner, look.border);
    paintContents(painter, face, look.text);
    if (isRingShown())
        paintRing(painter, face, corner);
}

void Button::paintRing(QPainter& painter, const QRectF& face, qreal corner) const
{
    const qreal out = ringRoom - ringWidth / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.colors().focusRing, ringWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(face.adjusted(-out, -out, out, out), corner + out, corner + out);
}

void Button::paintContents(QPainter& painter, const QRectF& face, const QColor& color) const
{
    if (kind == Kind::icon) {
        const QPointF half(symbolSize / 2.0, symbolSize / 2.0);
        Icon(symbolName).paint(painter, face.center() - half, symbolSize, color);
        return;
    }
    const QFont font = theme.font(textStyle());
    const qreal textWidth = QFontMetricsF(font).horizontalAdvance(text());
    const qreal symbolRoom = symbolName.isEmpty() ? 0 : symbolSize + symbolGap;
    const qreal room = face.width() - symbolRoom;
    const qreal x = face.x() + std::max<qreal>(0, (face.width() - symbolRoom - textWidth) / 2);
    if (symbolRoom > 0)
        Icon(symbolName)
            .paint(painter, {x, face.center().y() - symbolSize / 2.0}, symbolSize, color);
    // The width of a text is not that of its pixels: a little more room keeps it whole.
    paintLine(painter,
              QRectF(x + symbolRoom, face.y(), std::min(room, textWidth + 1), face.height()),
              text(), font, color);
}

void Button::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    hover->setHovered(isEnabled());
}

void Button::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    hover->setHovered(false);
}

void Button::focusInEvent(QFocusEvent* event)
{
    // A window that becomes active again gives the focus back as it was.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
        ringShown = event->reason() != Qt::MouseFocusReason;
    QAbstractButton::focusInEvent(event);
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // A key that is held down may have been meant for what had the focus before.
        if (!event->isAutoRepeat())
            click();
    } else {
        QAbstractButton::keyPressEvent(event);
    }
}

void Button::changeEvent(QEvent* event)
{
    QAbstractButton::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        hover->setHovered(false);
}

} // namespace vellumry
