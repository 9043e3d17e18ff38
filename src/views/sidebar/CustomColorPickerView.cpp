#include "views/sidebar/CustomColorPickerView.h"

#include "settings/CategoryColorService.h"
#include "views/common/Button.h"
#include "views/common/Label.h"
#include "views/common/SheetLayout.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/sidebar/ColorWell.h"

#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace vellumry {

namespace {

constexpr int swatchSide = 56;
constexpr int swatchRadius = 10;
constexpr int arrowSize = 20;
constexpr int arrowGap = 20;

class Swatch final : public QWidget {
public:
    Swatch(const Theme& look, const QString& name, QWidget* parent)
        : QWidget(parent), theme(look), label(name)
    {
        setFixedSize(swatchSide, swatchSide);
    }

    void setColor(const QColor& shown)
    {
        color = shown;
        setAccessibleName(QStringLiteral("%1: %2").arg(label, toHex(shown)));
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        fillRounded(painter, rect(), swatchRadius, color);
        strokeRounded(painter, rect(), swatchRadius, theme.colors().strokeStrong);
    }

private:
    const Theme& theme;
    QString label;
    QColor color;
};

} // namespace

CustomColorPickerView::CustomColorPickerView(const Theme& theme, const QString& collectionName,
                                             const QColor& initialColor,
                                             std::function<void(const QColor&)> onConfirm,
                                             std::function<void()> onCancel, QWidget* parent)
    : QWidget(parent), colorWell(new ColorWell(theme, initialColor, this)),
      cancel(new Button(theme, Button::Kind::secondary, QStringLiteral("Cancel"), this)),
      confirm(new Button(theme, Button::Kind::primary, QStringLiteral("Confirm"), this))
{
    const QString title = QStringLiteral("Choose Color");
    setAccessibleName(title);
    QVBoxLayout* column = SheetLayout::smallSheet(*this);
    column->addWidget(
        new Label(theme, TextStyle::sheetTitle, &ColorTokens::textPrimary, title, this));
    column->addSpacing(2);
    auto* name = new Label(theme, TextStyle::body, &ColorTokens::textSecondary,
                           QStringLiteral("Collection: ") + collectionName, this);
    name->setMinimumWidth(0);
    name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    column->addWidget(name);
    column->addSpacing(18);

    auto* swatches = new QHBoxLayout;
    swatches->setSpacing(0);
    swatches->addStretch();
    const auto addSwatch = [&](const QString& label) {
        auto* swatch = new Swatch(theme, label, this);
        auto* stack = new QVBoxLayout;
        stack->setSpacing(6);
        stack->addWidget(swatch);
        stack->addWidget(
            new Label(theme, TextStyle::caption, &ColorTokens::textSecondary, label, this), 0,
            Qt::AlignHCenter);
        swatches->addLayout(stack);
        return swatch;
    };
    Swatch* before = addSwatch(QStringLiteral("Before"));
    swatches->addSpacing(arrowGap);
    auto* arrow = new SymbolView(theme, QStringLiteral("arrow.right"), arrowSize,
                                 &ColorTokens::textTertiary, this);
    auto* arrowStack = new QVBoxLayout;
    arrowStack->addSpacing((swatchSide - arrowSize) / 2);
    arrowStack->addWidget(arrow);
    arrowStack->addStretch();
    swatches->addLayout(arrowStack);
    swatches->addSpacing(arrowGap);
    Swatch* after = addSwatch(QStringLiteral("After"));
    swatches->addStretch();
    column->addLayout(swatches);
    column->addSpacing(18);
    column->addWidget(colorWell);
    SheetLayout::addFooter(*this, {cancel, confirm}, 18);

    before->setColor(initialColor);
    after->setColor(initialColor);
    connect(colorWell, &ColorWell::colorChanged, after, &Swatch::setColor);
    confirm->setDefault(true);
    connect(cancel, &Button::clicked, this, std::move(onCancel));
    connect(confirm, &Button::clicked, this,
            [this, done = std::move(onConfirm)] { done(colorWell->color()); });
}

} // namespace vellumry
