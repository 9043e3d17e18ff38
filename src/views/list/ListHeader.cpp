#include "views/list/ListHeader.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/CountPill.h"
#include "views/common/Icon.h"
#include "views/common/Strokes.h"
#include "views/common/TextPainting.h"

#include <QPainter>

namespace vellumry {

namespace {

constexpr int headerHeight = 52;
constexpr int leftMargin = 16;
constexpr int addSymbol = 18;
constexpr int rightMargin = 10;
constexpr int gap = 8;
constexpr int symbolSize = 16;
constexpr int dotSize = 10;

} // namespace

ListHeader::ListHeader(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look),
      add(Button::withSymbol(theme, QStringLiteral("plus"), QStringLiteral("New Snippet"), this))
{
    setAccessibleRole(*this, QAccessible::Heading);
    add->setToolTip(QStringLiteral("New Snippet (Ctrl+N)"));
    add->setAccented(true);
    add->setSymbol(QStringLiteral("plus"), addSymbol);
    setFixedHeight(headerHeight);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void ListHeader::setContents(const Contents& contents)
{
    shown = contents;
    setAccessibleName(QStringLiteral("%1, %2").arg(shown.title).arg(shown.count));
    update();
}

void ListHeader::resizeEvent(QResizeEvent*)
{
    add->resize(add->sizeHint());
    add->move(width() - rightMargin - add->width() + Button::ringRoom,
              (height() - add->height()) / 2);
}

void ListHeader::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    const qreal middle = height() / 2.0;
    qreal x = leftMargin;
    if (shown.collectionColor) {
        fillRounded(painter, QRectF(x, middle - dotSize / 2.0, dotSize, dotSize), dotSize / 2.0,
                    *shown.collectionColor);
        x += dotSize + gap;
    } else {
        Icon(QStringLiteral("square.grid.2x2"))
            .paint(painter, {x, middle - symbolSize / 2.0}, symbolSize, token.textSecondary);
        x += symbolSize + gap;
    }

    const QString count = QString::number(shown.count);
    const QFont titleFont = theme.font(TextStyle::heading);
    const qreal room = add->x() - gap - CountPill::width(theme, count) - gap - x;
    const qreal titleWidth =
        std::min(room, QFontMetricsF(titleFont).horizontalAdvance(singleLine(shown.title)) + 1);
    paintLine(painter, QRectF(x, 0, titleWidth, height()), shown.title, titleFont,
              token.textPrimary);
    x += titleWidth + gap;
    CountPill::paint(painter, theme, {x, middle}, count);
}

} // namespace vellumry
