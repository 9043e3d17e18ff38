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
    // Buttons have room for their focus line around them, which takes the place of a margin.
    constexpr int ring = Button::ringRoom;
    auto* whole = new QVBoxLayout(&sheet);
    whole->setContentsMargins(margin, margin, margin - ring, bottomMargin - ring);
    whole->setSpacing(0);
    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, ring, 0);
    column->setSpacing(0);
    whole->addLayout(column);
    return column;
}

void addFooter(const QWidget& sheet, std::initializer_list<Button*> buttons, int gap)
{
    auto* footer = new QHBoxLayout;
    footer->setSpacing(0);
    footer->setContentsMargins(0, gap - Button::ringRoom, 0, 0);
    footer->addStretch();
    for (Button* button : buttons)
        footer->addWidget(button);
    static_cast<QVBoxLayout*>(sheet.layout())->addLayout(footer);
}

} // namespace vellumry::SheetLayout
