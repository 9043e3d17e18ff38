#include "views/window/EmptyStateView.h"

#include "views/common/Button.h"
#include "views/common/Icon.h"
#include "views/common/KeyCaps.h"
#include "views/common/Label.h"
#include "views/common/Motion.h"
#include "views/common/TextPainting.h"

#include <QBoxLayout>
#include <QPainter>
#include <QShowEvent>

#include <utility>

namespace vellumry {

namespace {

constexpr int artSide = 132;
constexpr int sheetInsetX = 22;
constexpr int sheetInsetY = 14;
constexpr int sheetRadius = 14;
constexpr int symbolSize = 76;
constexpr int moreLead = 2;
constexpr qreal firstScale = 0.8;
constexpr std::chrono::milliseconds appearTime{500};

} // namespace

/// A text of several lines that stand further apart than those of other texts.
class EmptyStateView::Lines final : public Label {
public:
    Lines(const Theme& look, const QString& text, QWidget* parent)
        : Label(look, TextStyle::body, &ColorTokens::textSecondary, text, parent), theme(look)
    {
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {Label::sizeHint().width(), lineHeight() * int(lines().size())};
    }
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        int y = 0;
        for (const QString& line : lines()) {
            paintLine(painter, QRectF(0, y, width(), lineHeight()), line, font(),
                      theme.colors().textSecondary, Qt::AlignHCenter);
            y += lineHeight();
        }
    }

private:
    [[nodiscard]] QStringList lines() const { return text().split(u'\n'); }
    [[nodiscard]] int lineHeight() const { return theme.lineHeight(TextStyle::body) + moreLead; }

    const Theme& theme;
};

/// Two translucent sheets, laid one over the other, behind the symbol.
class EmptyStateView::Art final : public QWidget {
public:
    explicit Art(EmptyStateView& view) : QWidget(&view), empty(view)
    {
        setFixedSize(artSide, artSide);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        const QPointF middle = QRectF(rect()).center();
        const ColorTokens& token = empty.theme.colors();
        painter.translate(middle);
        painter.scale(empty.iconScale(), empty.iconScale());
        painter.setPen(Qt::NoPen);
        painter.setBrush(token.accentTint);
        const QRectF sheet(sheetInsetX - middle.x(), sheetInsetY - middle.y(),
                           artSide - 2 * sheetInsetX, artSide - 2 * sheetInsetY);
        for (const auto& [angle, shift] :
             {std::pair(-11.0, QPointF(-12, 3)), std::pair(8.0, QPointF(12, 2))}) {
            painter.save();
            painter.rotate(angle);
            painter.translate(shift);
            painter.drawRoundedRect(sheet, sheetRadius, sheetRadius);
            painter.restore();
        }
        Icon(QStringLiteral("doc.text.fill"))
            .paint(painter, {-symbolSize / 2.0, -symbolSize / 2.0}, symbolSize, token.accent);
    }

private:
    EmptyStateView& empty;
};

EmptyStateView::EmptyStateView(const Theme& look, std::function<void()> onCreateFirst,
                               QWidget* parent)
    : QWidget(parent), theme(look), scaling(new QVariantAnimation(this)),
      create(new Button(theme, Button::Kind::primary, QStringLiteral("Create First Snippet"), this,
                        Button::Size::large))
{
    auto* art = new Art(*this);
    scaling->setStartValue(firstScale);
    scaling->setEndValue(1.0);
    scaling->setEasingCurve(QEasingCurve::OutBack);
    connect(scaling, &QVariantAnimation::valueChanged, art, qOverload<>(&QWidget::update));
    create->setSymbol(QStringLiteral("plus"));
    create->setDefault(true);
    connect(create, &Button::clicked, this, std::move(onCreateFirst));
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));

    auto* column = new QVBoxLayout(this);
    column->setSpacing(0);
    const auto addCentered = [column](QWidget* widget) {
        column->addWidget(widget, 0, Qt::AlignHCenter);
    };
    column->addStretch();
    addCentered(art);
    column->addSpacing(18);
    addCentered(new Label(theme, TextStyle::hero, &ColorTokens::textPrimary,
                          QStringLiteral("Welcome to Vellumry"), this));
    column->addSpacing(8);
    addCentered(new Lines(theme,
                          QStringLiteral("Create your first snippet to get started.\n"
                                         "Use snippets to quickly paste frequently used text."),
                          this));
    column->addSpacing(24 - Button::ringRoom);
    addCentered(create);
    column->addSpacing(20 - Button::ringRoom);
    auto* hint = new QHBoxLayout;
    hint->setSpacing(8);
    hint->addStretch();
    hint->addWidget(new Label(theme, TextStyle::label, &ColorTokens::textTertiary,
                              QStringLiteral("New snippet"), this));
    hint->addWidget(new KeyCaps(theme, {QStringLiteral("Ctrl"), QStringLiteral("N")}, this));
    hint->addStretch();
    column->addLayout(hint);
    column->addStretch();
}

void EmptyStateView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    scaling->stop();
    scaling->setDuration(int(animationTime(*this, appearTime).count()));
    scaling->start();
}

void EmptyStateView::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), theme.colors().editor);
}

} // namespace vellumry
