#include "views/common/SymbolView.h"

#include "views/common/Icon.h"

#include <QPainter>

namespace vellumry {

SymbolView::SymbolView(const Theme& look, const QString& name, int size,
                       QColor ColorTokens::*symbolColor, QWidget* parent)
    : QWidget(parent), theme(look), symbol(name), color(symbolColor)
{
    setFixedSize(size, size);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void SymbolView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    Icon(symbol).paint(painter, {0, 0}, width(), theme.colors().*color);
}

} // namespace vellumry
