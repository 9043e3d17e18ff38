#include "views/common/SheetLayout.h"

#include "views/common/Button.h"

#include <QVBoxLayout>

namespace vellumry::SheetLayout {

namespace {

constexpr int sheetWidth = 360;
constexpr int margin = 20;
constexpr int bottomMargin = 16;

} // namespace

QVBoxLayout* smallSheet(QWidget& sheet)
{
    sheet.setFixedWidth(sheetWidth);
    auto* column = new QVBoxLayout(&sheet);
    column->setContentsMargins(margin, margin, margin, bottomMargin - Button::ringRoom);
    column->setSpacing(0);
    return column;
}

void addFooter(QVBoxLayout& column, std::initializer_list<Button*> buttons, int gap)
{
    auto* footer = new QHBoxLayout;
    footer->setSpacing(0);
    footer->setContentsMargins(0, gap - Button::ringRoom, -Button::ringRoom, 0);
    footer->addStretch();
    for (Button* button : buttons)
        footer->addWidget(button);
    column.addLayout(footer);
}

} // namespace vellumry::SheetLayout
