#include "views/common/LiftedPicture.h"

#include "views/common/Shadow.h"

#include <QPainter>
#include <QPainterPath>

namespace vellumry {

namespace {

constexpr int shadowRoom = 24;
constexpr qreal opacity = 0.96;
constexpr qreal borderWidth = 1.5;

} // namespace

LiftedPicture::LiftedPicture(const Theme& look, QWidget& source, const QPixmap& shown,
                             const QRect& place, const QPoint& grip, int corner)
    : QWidget(source.window()), theme(look), picture(shown), hold(grip - place.topLeft()),
      radius(corner)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(place.size() + QSize(2 * shadowRoom, 2 * shadowRoom));
    follow(source.mapToGlobal(grip));
    show();
    raise();
}

void LiftedPicture::follow(const QPoint& pointer)
{
    move(parentWidget()->mapFromGlobal(pointer) - hold - QPoint(shadowRoom, shadowRoom));
}

void LiftedPicture::putDown()
{
    hide();
    deleteLater();
}

void LiftedPicture::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(shadowRoom, shadowRoom, -shadowRoom, -shadowRoom);
    Shadow::drag.paint(painter, card, radius, theme.colors().shadow);
    painter.setOpacity(opacity);
    QPainterPath outline;
    outline.addRoundedRect(card, radius, radius);
    painter.save();
    painter.setClipPath(outline);
    painter.drawPixmap(card.topLeft(), picture);
    painter.restore();
    constexpr qreal half = borderWidth / 2;
    painter.setPen(QPen(theme.colors().accent, borderWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(card.adjusted(half, half, -half, -half), radius - half, radius - half);
}

} // namespace vellumry
