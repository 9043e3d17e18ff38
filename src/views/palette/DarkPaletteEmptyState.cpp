#include "views/palette/DarkPaletteEmptyState.h"

#include "views/common/Fonts.h"
#include "views/common/Icon.h"
#include "views/palette/QuickSearchStyle.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr QStringView headline = u"No results found";
constexpr QStringView advice = u"Try different keywords";

constexpr int symbolSize = 40;
constexpr int symbolGap = 14;
constexpr int headlineHeight = 20;
constexpr int lineGap = 4;
constexpr int adviceHeight = 18;
constexpr int wholeHeight = symbolSize + symbolGap + headlineHeight + lineGap + adviceHeight;
constexpr int raisedBy = 6; // the middle that the eye sees lies above the true one

} // namespace

DarkPaletteEmptyState::DarkPaletteEmptyState(QWidget* parent) : QWidget(parent)
{
    setAccessibleName(headline.toString());
    setAccessibleDescription(advice.toString());
}

void DarkPaletteEmptyState::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    int y = (height() - wholeHeight) / 2 - raisedBy;
    Icon(QStringLiteral("magnifyingglass"))
        .paint(painter, {(width() - symbolSize) / 2.0, qreal(y)}, symbolSize,
               QuickSearchStyle::faintTextColor);

    y += symbolSize + symbolGap;
    painter.setFont(uiFont(15, QFont::DemiBold));
    painter.setPen(QuickSearchStyle::text);
    painter.drawText(QRect(0, y, width(), headlineHeight), Qt::AlignCenter, headline.toString());

    y += headlineHeight + lineGap;
    painter.setFont(uiFont(13));
    painter.setPen(QuickSearchStyle::badgeText);
    painter.drawText(QRect(0, y, width(), adviceHeight), Qt::AlignCenter, advice.toString());
}

} // namespace vellumry
