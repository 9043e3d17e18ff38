#include "views/sheets/NoteView.h"

#include "views/common/Label.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/sheets/WrappingLabel.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QPainter>

namespace vellumry {

namespace {

constexpr int radius = 8;
constexpr int symbolSize = 16;
constexpr int symbolGap = 9;

struct Look {
    QColor ColorTokens::*ground;
    QColor ColorTokens::*symbol;
    QColor ColorTokens::*text;
    TextStyle style;
};

Look lookOf(NoteView::Kind kind)
{
    using T = ColorTokens;
    switch (kind) {
    case NoteView::Kind::information:
        return {&T::fill, &T::textSecondary, &T::textSecondary, TextStyle::label};
    case NoteView::Kind::warning:
        return {&T::warningTint, &T::warning, &T::textSecondary, TextStyle::label};
    case NoteView::Kind::error:
        return {&T::dangerTint, &T::danger, &T::danger, TextStyle::labelMedium};
    }
    Q_UNREACHABLE();
}

} // namespace

NoteView::NoteView(const Theme& look, Kind noteKind, const QString& text, QWidget* parent,
                   const QString& headline)
    : QWidget(parent), theme(look), kind(noteKind),
      label(new WrappingLabel(theme, lookOf(kind).style, lookOf(kind).text, text, this))
{
    setAccessibleName(text);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 10, 12, 10);
    row->setSpacing(symbolGap);
    row->addWidget(new SymbolView(theme, symbol(), symbolSize, lookOf(kind).symbol, this), 0,
                   Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    if (!headline.isEmpty())
        texts->addWidget(
            new Label(theme, TextStyle::labelStrong, &ColorTokens::textPrimary, headline, this));
    texts->addWidget(label);
    row->addLayout(texts, 1);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void NoteView::setText(const QString& text)
{
    label->setText(text);
    setAccessibleName(text);
}

QString NoteView::text() const
{
    return label->text();
}

QString NoteView::symbol() const
{
    return kind == Kind::error ? QStringLiteral("exclamationmark.triangle.fill")
                               : QStringLiteral("info.circle.fill");
}

void NoteView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    fillRounded(painter, rect(), radius, theme.colors().*lookOf(kind).ground);
}

void NoteView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (kind != Kind::error)
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace vellumry
