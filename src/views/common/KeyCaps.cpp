#include "views/common/KeyCaps.h"

#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

namespace vellumry {

namespace {

constexpr int side = 20;
constexpr int padding = 6;
constexpr int radius = 4;
constexpr int gap = 4;
constexpr int bottomEdge = 2;

int capHeight(const Theme& theme)
{
    return theme.rowHeight(side, TextStyle::captionMedium);
}

int capWidth(const Theme& theme, const QString& key)
{
    const qreal text = QFontMetricsF(theme.font(TextStyle::captionMedium)).horizontalAdvance(key);
    return std::max(capHeight(theme), qCeil(text) + 2 * padding);
}

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
        wide += capWidth(theme, key) + gap;
    return {wide, capHeight(theme)};
}

void KeyCaps::paint(QPainter& painter, const Theme& theme, const QStringList& keys,
                    const QPointF& position)
{
    const ColorTokens& token = theme.colors();
    qreal x = position.x();
    for (const QString& key : keys) {
        const QRectF cap(x, position.y(), capWidth(theme, key), capHeight(theme));
        fillRounded(painter, cap, radius, token.keycapStroke);
        fillRounded(painter, cap.adjusted(1, 1, -1, -bottomEdge), radius - 1, token.keycap);
        paintLine(painter, cap.adjusted(0, 0, 0, -1), key, theme.font(TextStyle::captionMedium),
                  token.keycapText, Qt::AlignHCenter);
        x += cap.width() + gap;
    }
}

void KeyCaps::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paint(painter, theme, keys, {0, 0});
}

} // namespace vellumry
