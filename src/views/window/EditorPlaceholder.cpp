#include "views/window/EditorPlaceholder.h"

#include "views/common/Label.h"
#include "views/common/SymbolView.h"

#include <QPainter>
#include <QVBoxLayout>

namespace vellumry {

namespace {

constexpr int symbolSize = 44;
constexpr int gap = 12;

} // namespace

EditorPlaceholder::EditorPlaceholder(const Theme& look, QWidget* parent)
    : QWidget(parent), theme(look)
{
    auto* column = new QVBoxLayout(this);
    column->setSpacing(gap);
    column->addStretch();
    column->addWidget(new SymbolView(theme, QStringLiteral("doc.text"), symbolSize,
                                     &ColorTokens::textDisabled, this),
                      0, Qt::AlignHCenter);
    column->addWidget(new Label(theme, TextStyle::body, &ColorTokens::textTertiary,
                                QStringLiteral("Select a snippet to edit"), this),
                      0, Qt::AlignHCenter);
    column->addStretch();
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void EditorPlaceholder::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), theme.colors().editor);
}

} // namespace vellumry
