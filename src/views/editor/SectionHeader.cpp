#include "views/editor/SectionHeader.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/CountPill.h"
#include "views/common/Icon.h"
#include "views/common/OutsetItem.h"
#include "views/common/TextPainting.h"

#include <QHBoxLayout>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int headerHeight = 28;
constexpr int ring = Button::ringRoom;
constexpr int symbolSize = 14;
constexpr int gap = 7;

} // namespace

SectionHeader::SectionHeader(const Theme& look, const QString& symbolName, const QString& text,
                             QWidget* parent)
    : QWidget(parent), theme(look), symbol(symbolName), title(text), row(new QHBoxLayout(this))
{
    setAccessibleRole(*this, QAccessible::Heading);
    setAccessibleName(title);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    row->setContentsMargins({});
    row->setSpacing(0);
    row->addStretch();
    connect(&theme, &Theme::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void SectionHeader::setCount(const QString& text)
{
    counted = text;
    setAccessibleName(counted.isEmpty() ? title : QString(title + QStringLiteral(", ") + counted));
    update();
}

void SectionHeader::addButton(QWidget* button)
{
    row->addWidget(button);
}

QLayoutItem* SectionHeader::makeLayoutItem()
{
    raise();
    return new OutsetItem(this, {0, ring, ring, ring});
}

QSize SectionHeader::sizeHint() const
{
    return {0, theme.rowHeight(headerHeight, TextStyle::labelStrong) + 2 * ring};
}

void SectionHeader::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const ColorTokens& token = theme.colors();
    Icon(symbol).paint(painter, {0, (height() - symbolSize) / 2.0}, symbolSize,
                       token.textSecondary);
    const QFont font = theme.font(TextStyle::labelStrong);
    const qreal x = symbolSize + gap;
    const qreal wide = QFontMetricsF(font).horizontalAdvance(title) + 1;
    paintLine(painter, QRectF(x, 0, wide, height()), title, font, token.textSecondary);
    if (!counted.isEmpty())
        CountPill::paint(painter, theme, {x + wide + gap, height() / 2.0}, counted);
}

} // namespace vellumry
