#include "views/editor/KeywordTag.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Icon.h"
#include "views/common/Motion.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QKeyEvent>
#include <QPainter>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

constexpr int tagHeight = 24;
constexpr int radius = 6;
constexpr int leftPadding = 9;
constexpr int rightPadding = 5;
constexpr int gap = 5;
constexpr int crossSize = 11;
constexpr int crossHit = 24;
constexpr qreal focusWidth = 2;
constexpr auto appearTime = 200ms;

} // namespace

KeywordTag::KeywordTag(const Theme& look, const QString& term, QWidget* parent)
    : QAbstractButton(parent), theme(look), hover(new HoverFade(this)),
      appearing(new QVariantAnimation(this))
{
    makeAccessibleByClicks(staticMetaObject);
    setPlainText(*this, term);
    setAccessibleName(QStringLiteral("Remove ") + term);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    appearing->setStartValue(0.0);
    appearing->setEndValue(1.0);
    appearing->setEasingCurve(QEasingCurve::InOutQuad);
    connect(appearing, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QAbstractButton::clicked, this, &KeywordTag::removeRequested);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void KeywordTag::appear()
{
    appearing->setDuration(int(animationTime(*this, appearTime).count()));
    appearing->start();
}

QSize KeywordTag::sizeHint() const
{
    const QFontMetricsF metrics(theme.font(TextStyle::label));
    return {leftPadding + qCeil(metrics.horizontalAdvance(singleLine(text()))) + 1 + gap +
                crossSize + rightPadding,
            theme.rowHeight(tagHeight, TextStyle::label)};
}

QRect KeywordTag::crossRect() const
{
    return {width() - crossHit, 0, crossHit, height()};
}

bool KeywordTag::hitButton(const QPoint& position) const
{
    return crossRect().contains(position);
}

void KeywordTag::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (appearing->state() == QAbstractAnimation::Running)
        painter.setOpacity(appearing->currentValue().toReal());
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), radius, mixed(token.fill, token.fillPressed, hover->progress()));
    const qreal cross = width() - rightPadding - crossSize;
    paintLine(painter, QRectF(leftPadding, 0, cross - gap - leftPadding + 1, height()), text(),
              theme.font(TextStyle::label), token.textPrimary);
    Icon(QStringLiteral("xmark"))
        .paint(painter, {cross, (height() - crossSize) / 2.0}, crossSize, token.textTertiary);
    if (!hasFocus())
        return;
    constexpr qreal half = focusWidth / 2;
    painter.setPen(QPen(token.focusRing, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius - half,
                            radius - half);
}

void KeywordTag::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    hover->setHovered(true);
}

void KeywordTag::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    hover->setHovered(false);
}

void KeywordTag::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        click();
        break;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace vellumry
