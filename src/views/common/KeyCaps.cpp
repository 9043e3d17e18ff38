#include "views/common/KeyCaps.h"

#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

#include <utility>

namespace vellumry {

namespace {

constexpr int side = 20;
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

int KeyCaps::capHeight() const
{
    return theme.rowHeight(side, TextStyle::captionMedium);
}

int KeyCaps::capWidth(const QString& key) const
{
    const qreal text = QFontMetricsF(theme.font(TextStyle::captionMedium)).horizontalAdvance(key);
    return std::max(capHeight(), qCeil(text) + 2 * padding);
}

QSize KeyCaps::sizeHint() const
{
    int wide = -gap;
    for (const QString& key : keys)
        wide += capWidth(key) + gap;
    return {wide, capHeight()};
}

void KeyCaps::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    int x = 0;
    for (const QString& key : std::as_const(keys)) {
        const QRectF cap(x, 0, capWidth(key), capHeight());
        fillRounded(painter, cap, radius, token.keycapStroke);
        fillRounded(painter, cap.adjusted(1, 1, -1, -bottomEdge), radius - 1, token.keycap);
        paintLine(painter, cap.adjusted(0, 0, 0, -1), key, theme.font(TextStyle::captionMedium),
                  token.keycapText, Qt::AlignHCenter);
        x += capWidth(key) + gap;
    }
}

} // namespace vellumry
