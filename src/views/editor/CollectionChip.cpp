#include "views/editor/CollectionChip.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/PlainText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QKeyEvent>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int chipHeight = 28;
constexpr int radius = 6;
constexpr int leftPadding = 9;
constexpr int rightPadding = 8;
constexpr int gap = 7;
constexpr int folderSize = 14;
constexpr int dotSize = 8;
constexpr int chevronSize = 12;
constexpr int besideName =
    leftPadding + folderSize + gap + dotSize + gap + gap + chevronSize + rightPadding;
constexpr int leastName = 40;
constexpr int ring = Button::ringRoom;
constexpr qreal ringWidth = 2;

} // namespace

CollectionChip::CollectionChip(const Theme& look, QWidget* parent)
    : QAbstractButton(parent), theme(look), hover(new HoverFade(this))
{
    makeAccessibleByClicks(staticMetaObject);
    setToolTip(QStringLiteral("Select Collection"));
    setAccessibleDescription(toolTip());
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void CollectionChip::setCollection(const QString& name, const QColor& color)
{
    setPlainText(*this, name);
    setAccessibleName(name);
    dot = color;
    updateGeometry();
    update();
}

QSize CollectionChip::sizeHint() const
{
    const QFontMetricsF metrics(theme.font(TextStyle::labelMedium));
    return {besideName + qCeil(metrics.horizontalAdvance(singleLine(text()))) + 1 + 2 * ring,
            theme.rowHeight(chipHeight, TextStyle::labelMedium) + 2 * ring};
}

QSize CollectionChip::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), besideName + leastName + 2 * ring), sizeHint().height()};
}

void CollectionChip::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const QRectF face = QRectF(rect()).adjusted(ring, ring, -ring, -ring);
    const qreal middle = face.center().y();
    fillRounded(painter, face, radius,
                isDown() ? token.fillPressed
                         : mixed(token.fill, token.fillHover, hover->progress()));
    qreal x = face.x() + leftPadding;
    Icon(QStringLiteral("folder.fill"))
        .paint(painter, {x, middle - folderSize / 2.0}, folderSize, token.textSecondary);
    x += folderSize + gap;
    fillRounded(painter, QRectF(x, middle - dotSize / 2.0, dotSize, dotSize), dotSize / 2.0, dot);
    x += dotSize + gap;
    const qreal chevron = face.right() - rightPadding - chevronSize;
    paintLine(painter, QRectF(x, face.y(), chevron - gap - x, face.height()), text(),
              theme.font(TextStyle::labelMedium), token.textPrimary);
    Icon(QStringLiteral("chevron.up.chevron.down"))
        .paint(painter, {chevron, middle - chevronSize / 2.0}, chevronSize, token.textSecondary);
    if (hasFocus()) {
        const qreal out = ring - ringWidth / 2;
        painter.setPen(QPen(token.focusRing, ringWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(face.adjusted(-out, -out, out, out), radius + out, radius + out);
    }
}

void CollectionChip::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    hover->setHovered(true);
}

void CollectionChip::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    hover->setHovered(false);
}

void CollectionChip::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
        event->key() == Qt::Key_Down)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace vellumry
