#include "views/common/RoundedMask.h"

#include <QPainterPath>

namespace vellumry {

QRegion roundedMask(const QSize& size, int radius)
{
    QPainterPath path;
    path.addRoundedRect(QRectF(QPointF(0, 0), QSizeF(size)), radius, radius);
    return QRegion(path.toFillPolygon().toPolygon());
}

} // namespace vellumry
