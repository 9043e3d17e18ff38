#include "views/common/KeyCaps.h"

#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

namespace vellumry {

namespace {

constexpr int listSide = 20;
constexpr int padding = 6;
constexpr int radius = 4;
constexpr int gap = 4;
constexpr int bottomEdge = 2;

} // namespace

KeyCaps::KeyCaps(const Theme& look, const QStringList& names, QWidget* parent)
    : QWidget(parent), theme(look), keys(names)
{
    setAccessibleName(keys.join(u'+'));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

QSize KeyCaps::sizeOf(const Theme& theme, const QStringList& keys)
{
    int wide = -gap;
    for (const QString& key : keys)
        wide += capSize(theme, key, listSide).width() + gap;
    return {wide, capSize(theme, {}, listSide).height()};
}

void KeyCaps::paint(QPainter& painter, const Theme& theme, const QStringList& keys,
                    const QPointF& position)
{
    const ColorTokens& token = theme.colors();
    QPointF place = position;
    for (const QString& key : keys) {
        const QRectF cap(place, capSize(theme, key, listSide));
        paintCap(
            painter, theme, cap, key,
            {.background = token.keycap, .border = token.keycapStroke, .text = token.keycapText});
        place.rx() += cap.width() + gap;
    }
}

QSize KeyCaps::capSize(const Theme& theme, const QString& key, int side)
{
    const int high = theme.rowHeight(side, TextStyle::captionMedium);
    const qreal text = QFontMetricsF(theme.font(TextStyle::captionMedium)).horizontalAdvance(key);
    return {std::max(high, qCeil(text) + 2 * padding), high};
}

void KeyCaps::paintCap(QPainter& painter, const Theme& theme, const QRectF& cap, const QString& key,
                       const CapColors& colors)
{
    fillRounded(painter, cap, radius, colors.border);
    fillRounded(painter, cap.adjusted(1, 1, -1, -bottomEdge), radius - 1, colors.background);
    paintLine(painter, cap.adjusted(0, 0, 0, -1), key, theme.font(TextStyle::captionMedium),
              colors.text, Qt::AlignHCenter);
}

void KeyCaps::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paint(painter, theme, keys, {0, 0});
}

} // namespace vellumry
