#include "views/common/Icon.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace vellumry {

namespace {

QByteArray symbolInColor(const QString& name, const QColor& color)
{
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().replace("currentColor", color.name().toLatin1());
}

} // namespace

QPixmap Icon::pixmap(int size, const QColor& color, qreal devicePixelRatio) const
{
    const QString key = QStringLiteral("vellumry/%1/%2/%3/%4")
                            .arg(symbolName, color.name())
                            .arg(size)
                            .arg(devicePixelRatio);
    QPixmap picture;
    if (QPixmapCache::find(key, &picture))
        return picture;

    const int pixels = qRound(size * devicePixelRatio);
    picture = QPixmap(pixels, pixels);
    picture.fill(Qt::transparent);
    QSvgRenderer renderer(symbolInColor(symbolName, color));
    QPainter painter(&picture);
    renderer.render(&painter, QRectF(0, 0, pixels, pixels));
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, picture);
    return picture;
}

void Icon::paint(QPainter& painter, const QPointF& position, int size, const QColor& color) const
{
    painter.drawPixmap(position, pixmap(size, color, painter.device()->devicePixelRatioF()));
}

} // namespace vellumry
