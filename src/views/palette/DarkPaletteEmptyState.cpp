#include "views/palette/DarkPaletteEmptyState.h"

#include "views/common/Icon.h"
#include "views/common/Theme.h"
#include "views/palette/QuickSearchStyle.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr QStringView headline = u"No results found";
constexpr QStringView advice = u"Try different keywords";

constexpr int symbolSize = 40;
constexpr int symbolGap = 14;
constexpr int lineGap = 4;
constexpr int raisedBy = 6; // the middle that the eye sees lies above the true one

} // namespace

DarkPaletteEmptyState::DarkPaletteEmptyState(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look)
{
    setAccessibleName(headline.toString());
    setAccessibleDescription(advice.toString());
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void DarkPaletteEmptyState::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int headlineHeight = theme.lineHeight(TextStyle::heading);
    const int adviceHeight = theme.lineHeight(TextStyle::body);
    const int wholeHeight = symbolSize + symbolGap + headlineHeight + lineGap + adviceHeight;
    int y = (height() - wholeHeight) / 2 - raisedBy;
    Icon(QStringLiteral("magnifyingglass"))
        .paint(painter, {(width() - symbolSize) / 2.0, qreal(y)}, symbolSize,
               QuickSearchStyle::faintTextColor);

    y += symbolSize + symbolGap;
    painter.setFont(theme.font(TextStyle::heading));
    painter.setPen(QuickSearchStyle::text);
    painter.drawText(QRect(0, y, width(), headlineHeight), Qt::AlignCenter, headline.toString());

    y += headlineHeight + lineGap;
    painter.setFont(theme.font(TextStyle::body));
    painter.setPen(QuickSearchStyle::badgeText);
    painter.drawText(QRect(0, y, width(), adviceHeight), Qt::AlignCenter, advice.toString());
}

} // namespace vellumry
