#include "views/palette/PaletteFooter.h"

#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/Theme.h"
#include "views/palette/QuickSearchStyle.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr int marginLeft = 18;
constexpr int marginRight = 16;
constexpr int logoSize = 16;
constexpr int logoGap = 8;
constexpr int hintGap = 16;
constexpr int labelGap = 6;
constexpr int keyPadding = 6;
constexpr int keyRadius = 4;

} // namespace

PaletteFooter::PaletteFooter(const Theme& look, QWidget* parent) : QWidget(parent), theme(look)
{
    setAccessibleName(QStringLiteral("Vellumry"));
    setAccessibleDescription(QStringLiteral("Return: Copy, Right Arrow: Open, Escape: Close"));
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void PaletteFooter::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(QRectF(0, 0, width(), lineWidth(painter)), QuickSearchStyle::hairline);

    const QFont labelFont = theme.font(TextStyle::label);
    const QFont keyFont = theme.font(TextStyle::captionMedium);
    const QFontMetrics labelMetrics(labelFont);
    const QFontMetrics keyMetrics(keyFont);
    const int keySize = theme.rowHeight(QuickSearchStyle::keycapSize, TextStyle::captionMedium);

    Icon(QStringLiteral("SidebarLogo"))
        .paint(painter, {marginLeft, (height() - logoSize) / 2.0}, logoSize,
               QuickSearchStyle::iconNeutral);
    painter.setFont(labelFont);
    painter.setPen(QuickSearchStyle::badgeText);
    painter.drawText(rect().adjusted(marginLeft + logoSize + logoGap, 0, 0, 0),
                     Qt::AlignVCenter | Qt::AlignLeft, QStringLiteral("Vellumry"));

    int right = width() - marginRight;
    for (auto hint = hints.rbegin(); hint != hints.rend(); ++hint) {
        const QString label = hint->label.toString();
        const int labelWidth = labelMetrics.horizontalAdvance(label);
        painter.setFont(labelFont);
        painter.setPen(QuickSearchStyle::badgeText);
        painter.drawText(QRect(right - labelWidth, 0, labelWidth, height()), Qt::AlignCenter,
                         label);
        right -= labelWidth + labelGap;

        const QString key = hint->key.toString();
        const int keyWidth = std::max(keySize, keyMetrics.horizontalAdvance(key) + 2 * keyPadding);
        const QRect cap(right - keyWidth, (height() - keySize) / 2, keyWidth, keySize);
        fillRounded(painter, cap, keyRadius, QuickSearchStyle::keycapFill);
        strokeRounded(painter, cap, keyRadius, QuickSearchStyle::keycapStroke);
        painter.setFont(keyFont);
        painter.setPen(QuickSearchStyle::keycapText);
        painter.drawText(cap, Qt::AlignCenter, key);
        right -= keyWidth + hintGap;
    }
}

} // namespace vellumry
