#include "views/common/NoteView.h"

#include "views/common/AccessibleRole.h"
#include "views/common/Button.h"
#include "views/common/Strokes.h"
#include "views/common/SymbolView.h"
#include "views/common/WrappingLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShowEvent>

namespace vellumry {

namespace {

constexpr int radius = 8;
constexpr int symbolGap = 9;
constexpr int headlineGap = 1;
constexpr QMargins margins(12, 10, 12, 10);

struct Look {
    QColor ColorTokens::*ground;
    QColor ColorTokens::*symbol;
    QColor ColorTokens::*text;
    TextStyle style;
};

Look lookOf(NoteView::Kind kind, bool hasHeadline)
{
    using T = ColorTokens;
    switch (kind) {
    case NoteView::Kind::information:
        return {&T::fill, &T::textSecondary, &T::textSecondary, TextStyle::label};
    case NoteView::Kind::warning:
        return {&T::warningTint, &T::warning, hasHeadline ? &T::textSecondary : &T::textPrimary,
                TextStyle::label};
    case NoteView::Kind::error:
        return {&T::dangerTint, &T::danger, &T::danger, TextStyle::labelMedium};
    }
    Q_UNREACHABLE();
}

} // namespace

NoteView::NoteView(const Theme& look, Kind noteKind, const Contents& contents, QWidget* parent)
    : QWidget(parent), theme(look), kind(noteKind), symbolName(contents.symbol),
      headline(contents.headline), line(new QHBoxLayout(this))
{
    const bool hasHeadline = !headline.isEmpty();
    const Look colors = lookOf(kind, hasHeadline);
    message = new WrappingLabel(theme, colors.style, colors.text, contents.text, this);
    nameByTexts();
    line->setContentsMargins(margins);
    line->setSpacing(symbolGap);
    line->addWidget(new SymbolView(theme, symbolName, contents.symbolSize, colors.symbol, this), 0,
                    Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(headlineGap);
    if (hasHeadline)
        texts->addWidget(new WrappingLabel(theme, TextStyle::labelStrong, &ColorTokens::textPrimary,
                                           headline, this));
    texts->addWidget(message);
    line->addLayout(texts, 1);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

NoteView* NoteView::forErrors(const Theme& theme, QWidget* parent)
{
    return new NoteView(theme, Kind::error,
                        {.symbol = QStringLiteral("exclamationmark.triangle.fill")}, parent);
}

void NoteView::setText(const QString& text)
{
    if (message->text() == text)
        return;
    message->setText(text);
    nameByTexts();
    if (isVisible())
        announceProblem();
}

QString NoteView::text() const
{
    return message->text();
}

void NoteView::addButton(QWidget* button)
{
    // What shows the focus around it lies in the margin.
    line->setContentsMargins(margins -
                             QMargins(0, Button::ringRoom, Button::ringRoom, Button::ringRoom));
    // With a button the line is higher than its texts.
    line->setAlignment(line->itemAt(0)->widget(), Qt::AlignVCenter);
    line->addWidget(button);
}

void NoteView::nameByTexts()
{
    QStringList texts{headline, text()};
    texts.removeAll(QString());
    setAccessibleName(texts.join(QStringLiteral(", ")));
}

void NoteView::announceProblem()
{
    if (kind != Kind::information)
        announce(*this);
}

void NoteView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    fillRounded(painter, contentsRect(), radius, theme.colors().*lookOf(kind, false).ground);
}

void NoteView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Not when its window is minimised no more.
    if (!event->spontaneous())
        announceProblem();
}

} // namespace vellumry
