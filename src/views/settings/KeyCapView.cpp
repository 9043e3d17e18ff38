#include "views/settings/KeyCapView.h"

#include "views/common/KeyboardText.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

namespace vellumry {

namespace {

constexpr int side = 22;
constexpr int padding = 6;
constexpr int radius = 4;
constexpr int bottomEdge = 2;

} // namespace

KeyCapView::Colors KeyCapView::Colors::of(const ColorTokens& token)
{
    return {.normalBackground = token.keycap,
            .normalBorder = token.keycapStroke,
            .normalText = token.keycapText,
            .recordingBackground = token.keycap,
            .recordingBorder = token.accentStroke,
            .recordingText = token.accent};
}

KeyCapView::KeyCapView(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void KeyCapView::setKey(const QString& symbol, bool isRecording)
{
    text = symbol;
    recording = isRecording;
    setAccessibleName(spokenCap(symbol));
    updateGeometry();
    update();
}

QSize KeyCapView::sizeHint() const
{
    const int high = theme.rowHeight(side, TextStyle::captionMedium);
    const qreal wide = QFontMetricsF(theme.font(TextStyle::captionMedium)).horizontalAdvance(text);
    return {std::max(high, qCeil(wide) + 2 * padding), high};
}

void KeyCapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const Colors colors = Colors::of(theme.colors());
    const QRectF cap(rect());
    fillRounded(painter, cap, radius, recording ? colors.recordingBorder : colors.normalBorder);
    fillRounded(painter, cap.adjusted(1, 1, -1, -bottomEdge), radius - 1,
                recording ? colors.recordingBackground : colors.normalBackground);
    paintLine(painter, cap.adjusted(0, 0, 0, -1), text, theme.font(TextStyle::captionMedium),
              recording ? colors.recordingText : colors.normalText, Qt::AlignHCenter);
}

} // namespace vellumry
