#include "views/common/Shadow.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>

#include <vector>

namespace vellumry {

namespace {

constexpr int passes = 3; ///< of a box blur, which come close to a Gaussian one

/// Blurs one line of `count` bytes that stand `step` apart.
void blurLine(uchar* first, int count, qsizetype step, int radius, std::vector<int>& sums)
{
    sums.assign(size_t(count) + 1, 0);
    for (int i = 0; i < count; ++i)
        sums[size_t(i) + 1] = sums[size_t(i)] + first[i * step];
    for (int i = 0; i < count; ++i) {
        const int from = std::max(0, i - radius);
        const int to = std::min(count, i + radius + 1);
        first[i * step] = uchar((sums[size_t(to)] - sums[size_t(from)]) / (2 * radius + 1));
    }
}

void blur(QImage& alpha, int radius)
{
    std::vector<int> sums;
    uchar* bits = alpha.bits();
    const qsizetype line = alpha.bytesPerLine();
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < alpha.height(); ++y)
            blurLine(bits + y * line, alpha.width(), 1, radius, sums);
        for (int x = 0; x < alpha.width(); ++x)
            blurLine(bits + x, alpha.height(), line, radius, sums);
    }
}

/// A picture whose corners are `corner` pixels wide and whose middle can be stretched.
QPixmap ninePatch(int corner, qreal blurRadius, qreal radius, const QColor& color)
{
    const int size = 2 * corner + 1;
    QImage alpha(size, size, QImage::Format_Alpha8);
    alpha.fill(Qt::transparent);
    QPainter painter(&alpha);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(
        QRectF(0, 0, size, size).adjusted(blurRadius, blurRadius, -blurRadius, -blurRadius), radius,
        radius);
    painter.end();
    blur(alpha, std::max(1, qRound(blurRadius / passes)));

    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(color.red(), color.green(), color.blue()));
    painter.begin(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, alpha.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    painter.end();
    return QPixmap::fromImage(picture);
}

} // namespace

void Shadow::paint(QPainter& painter, const QRectF& rect, int radius, const QColor& color) const
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QString key = QStringLiteral("vellumry/shadow/%1/%2/%3/%4")
                            .arg(blur)
                            .arg(radius)
                            .arg(ratio)
                            .arg(color.name(QColor::HexArgb));
    const int corner = 2 * blur + radius;
    const int pixels = qRound(corner * ratio);
    QPixmap patch;
    if (!QPixmapCache::find(key, &patch)) {
        patch = ninePatch(pixels, blur * ratio, radius * ratio, color);
        QPixmapCache::insert(key, patch);
    }

    const QRectF outer = rect.adjusted(-blur, y - blur, blur, y + blur);
    // A rectangle that is smaller than two corners still gets whole ones, one over the other.
    const qreal wide = std::min<qreal>(corner, outer.width() / 2);
    const qreal high = std::min<qreal>(corner, outer.height() / 2);
    const qreal columns[] = {outer.left(), outer.left() + wide, outer.right() - wide,
                             outer.right()};
    const qreal rows[] = {outer.top(), outer.top() + high, outer.bottom() - high, outer.bottom()};
    const qreal sourceX[] = {0, wide * ratio, patch.width() - wide * ratio, qreal(patch.width())};
    const qreal sourceY[] = {0, high * ratio, patch.height() - high * ratio, qreal(patch.height())};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const QRectF target(QPointF(columns[column], rows[row]),
                                QPointF(columns[column + 1], rows[row + 1]));
            const QRectF source(QPointF(sourceX[column], sourceY[row]),
                                QPointF(sourceX[column + 1], sourceY[row + 1]));
            if (!target.isEmpty())
                painter.drawPixmap(target, patch, source);
        }
    }
}

} // namespace vellumry
