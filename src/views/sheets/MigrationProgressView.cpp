#include "views/sheets/MigrationProgressView.h"

#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>

namespace vellumry {

namespace {

constexpr int paddingX = 12;
constexpr int paddingY = 10;
constexpr int radius = 8;
constexpr int barHeight = 6;
constexpr int barGap = 8;

constexpr QStringView line = u"Migrating your data...";

} // namespace

MigrationProgressView::MigrationProgressView(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setProgress(0);
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void MigrationProgressView::setProgress(double value)
{
    shown = std::clamp(value, 0.0, 1.0);
    setAccessibleName(line.toString() + u' ' + percentText());
    update();
}

QString MigrationProgressView::percentText() const
{
    constexpr int whole = 100;
    // Not before the end does it say that this is it.
    return QString::number(qFloor(shown * whole + 1e-9)) + u'%';
}

QSize MigrationProgressView::sizeHint() const
{
    return {0, 2 * paddingY + theme.lineHeight(TextStyle::label) + barGap + barHeight};
}

void MigrationProgressView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    fillRounded(painter, rect(), radius, token.fill);
    const QRectF inner = QRectF(rect()).adjusted(paddingX, paddingY, -paddingX, -paddingY);
    const QRectF text(inner.x(), inner.y(), inner.width(), theme.lineHeight(TextStyle::label));
    paintLine(painter, text, line.toString(), theme.font(TextStyle::labelMedium),
              token.textPrimary);
    paintLine(painter, text, percentText(), theme.font(TextStyle::label), token.textSecondary,
              Qt::AlignRight);
    QRectF bar(inner.x(), inner.bottom() - barHeight, inner.width(), barHeight);
    fillRounded(painter, bar, barHeight / 2.0, token.fillPressed);
    bar.setWidth(std::max<qreal>(barHeight, bar.width() * shown));
    if (shown > 0)
        fillRounded(painter, bar, barHeight / 2.0, token.accentFill);
}

} // namespace vellumry
